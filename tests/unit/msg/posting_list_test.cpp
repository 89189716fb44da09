#include "msg/posting_list.h"

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <random>
#include <vector>

namespace zepkit10 {
namespace {

struct Record {
  std::int32_t index = 0;
};
using List = PostingList<Record>;

std::int32_t Post(List& list) { return list.Post(std::make_shared<Record>()); }

void Post(List& list, int count) {
  for (int i = 0; i < count; ++i) Post(list);
}

/// The posting index of what a lookup found; -1 where it found nothing.
std::int32_t IndexOf(const List::Entry& entry) { return entry ? entry->index : -1; }

std::vector<std::int32_t> IndexesOf(const List::Entries& entries) {
  std::vector<std::int32_t> indexes;
  for (const auto& entry : entries) indexes.push_back(entry->index);
  return indexes;
}

using Indexes = std::vector<std::int32_t>;

TEST(PostingListTest, ANewListHasNothing) {
  List list;
  EXPECT_EQ(0, list.Count());
  EXPECT_EQ(-1, list.LastIndex());
  for (const std::int32_t index : {INT_MIN, -1, 0, 1, INT_MAX}) {
    EXPECT_EQ(nullptr, list.Find(index));
    EXPECT_EQ(nullptr, list.At(index));
    EXPECT_EQ(nullptr, list.Remove(index));
    EXPECT_EQ(nullptr, list.RemoveAt(index));
  }
  EXPECT_TRUE(list.RemoveAll(list).empty());
}

TEST(PostingListTest, PostingsAreNumberedFrom0) {
  List list;
  for (std::int32_t i = 0; i < 5; ++i) {
    EXPECT_EQ(i, Post(list));
    EXPECT_EQ(i, list.LastIndex());
    EXPECT_EQ(i + 1, list.Count());
  }
  EXPECT_EQ((Indexes{0, 1, 2, 3, 4}), IndexesOf(list.All()));
}

TEST(PostingListTest, FindsByPostingIndexAndByPosition) {
  List list;
  Post(list, 3);
  for (std::int32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(i, IndexOf(list.Find(i)));
    EXPECT_EQ(i, IndexOf(list.At(i + 1)));
    EXPECT_EQ(list.Find(i), list.At(i + 1));
  }
  for (const std::int32_t outside : {INT_MIN, -1, 3, INT_MAX}) {
    EXPECT_EQ(nullptr, list.Find(outside));
  }
  for (const std::int32_t outside : {INT_MIN, -1, 0, 4, INT_MAX}) {
    EXPECT_EQ(nullptr, list.At(outside));
  }
}

TEST(PostingListTest, RemovalShiftsPositionsAndKeepsPostingIndexes) {
  List list;
  Post(list, 3);
  const auto second = list.Find(1);
  EXPECT_EQ(second, list.Remove(1));
  EXPECT_EQ(1, second.use_count());
  EXPECT_EQ(2, list.Count());
  EXPECT_EQ(nullptr, list.Find(1));
  EXPECT_EQ(2, IndexOf(list.Find(2)));
  EXPECT_EQ(2, IndexOf(list.At(2)));
  EXPECT_EQ(nullptr, list.Remove(1));
  EXPECT_EQ(2, list.LastIndex());
  EXPECT_EQ(3, Post(list));
}

TEST(PostingListTest, RemovesByPosition) {
  List list;
  Post(list, 4);
  for (const std::int32_t outside : {INT_MIN, -1, 0, 5, INT_MAX}) {
    EXPECT_EQ(nullptr, list.RemoveAt(outside));
  }
  EXPECT_EQ(1, IndexOf(list.RemoveAt(2)));
  EXPECT_EQ(2, IndexOf(list.RemoveAt(2)));
  EXPECT_EQ(3, IndexOf(list.RemoveAt(2)));
  EXPECT_EQ(nullptr, list.RemoveAt(2));
  EXPECT_EQ((Indexes{0}), IndexesOf(list.All()));
}

TEST(PostingListTest, AnEmptiedListGoesOnCounting) {
  List list;
  Post(list, 2);
  list.Remove(0);
  list.Remove(1);
  EXPECT_EQ(0, list.Count());
  EXPECT_EQ(1, list.LastIndex());
  EXPECT_EQ(2, Post(list));
  EXPECT_EQ(2, IndexOf(list.Find(2)));
  EXPECT_EQ(2, IndexOf(list.At(1)));
  EXPECT_EQ(nullptr, list.Find(0));
}

TEST(PostingListTest, TheCounterEndsWithThe32BitRange) {
  List list(INT_MAX - 1);
  EXPECT_EQ(INT_MAX - 1, Post(list));
  EXPECT_EQ(INT_MAX - 1, list.LastIndex());
  for (int attempt = 0; attempt < 2; ++attempt) {
    const auto record = std::make_shared<Record>();
    try {
      list.Post(record);
      ADD_FAILURE() << "posted";
    } catch (const Failure& failure) {
      EXPECT_EQ((Failure{6, {}, {}}), failure);
    }
    EXPECT_EQ(1, record.use_count());
    EXPECT_EQ(0, record->index);
    EXPECT_EQ(1, list.Count());
    EXPECT_EQ(INT_MAX - 1, list.LastIndex());
  }
  EXPECT_EQ(INT_MAX - 1, IndexOf(list.Find(INT_MAX - 1)));
  EXPECT_EQ(nullptr, list.Find(INT_MAX));
  EXPECT_EQ(nullptr, list.Find(INT_MIN));
}

TEST(PostingListTest, FarApartPostingIndexesAreFound) {
  List list;
  Post(list);
  auto last = std::make_shared<Record>();
  last->index = INT_MAX;
  list.Append(last);
  EXPECT_EQ(last, list.Find(INT_MAX));
  EXPECT_EQ(last, list.At(2));
  for (const std::int32_t between : {1, 2, INT_MAX - 1}) EXPECT_EQ(nullptr, list.Find(between));
}

TEST(PostingListTest, AnotherListTakesOverRecordsAndTheCounter) {
  List list, other;
  Post(list, 5);
  other.Append(list.Find(1));
  other.Append(list.Find(4));
  EXPECT_EQ(-1, other.LastIndex());
  other.ContinueNumberingOf(list);
  EXPECT_EQ(4, other.LastIndex());
  EXPECT_EQ(list.Find(1), other.Find(1));
  EXPECT_EQ(list.Find(4), other.At(2));
  EXPECT_EQ(nullptr, other.Find(2));
  EXPECT_EQ(5, Post(other));
  EXPECT_EQ(5, Post(list));
}

TEST(PostingListTest, RemovesWhatAnotherListHas) {
  List list, other;
  Post(list, 6);
  for (const std::int32_t index : {0, 2, 3, 5}) other.Append(list.Find(index));
  list.Remove(3);
  EXPECT_EQ((Indexes{0, 2, 5}), IndexesOf(list.RemoveAll(other)));
  EXPECT_EQ((Indexes{1, 4}), IndexesOf(list.All()));
  EXPECT_EQ((Indexes{0, 2, 3, 5}), IndexesOf(other.All()));
  EXPECT_TRUE(list.RemoveAll(other).empty());
  EXPECT_EQ((Indexes{1, 4}), IndexesOf(list.RemoveAll(list)));
  EXPECT_EQ(0, list.Count());
  EXPECT_EQ(5, list.LastIndex());
}

/// A record that looks at its list when it goes.
struct Watcher {
  ~Watcher() {
    if (list) seen->push_back(list->Find(index) ? -1 : list->Count());
  }
  std::int32_t index = 0;
  const PostingList<Watcher>* list = nullptr;
  std::vector<std::int32_t>* seen = nullptr;
};

TEST(PostingListTest, NothingIsReleasedWhileTheListChanges) {
  PostingList<Watcher> list, other;
  std::vector<std::int32_t> seen;
  for (int i = 0; i < 5; ++i) {
    auto record = std::make_shared<Watcher>();
    record->list = &list;
    record->seen = &seen;
    list.Post(std::move(record));
  }
  list.Remove(2);
  list.RemoveAt(1);
  EXPECT_EQ((std::vector<std::int32_t>{4, 3}), seen);
  list.RemoveAll(list);
  EXPECT_EQ((std::vector<std::int32_t>{4, 3, 0, 0, 0}), seen);
}

TEST(PostingListTest, AgreesWithAMap) {
  std::mt19937 random(20240917);
  List list;
  std::map<std::int32_t, List::Entry> expected;
  const auto check = [&](std::int32_t index) {
    const auto found = expected.find(index);
    EXPECT_EQ(found == expected.end() ? nullptr : found->second, list.Find(index));
  };
  for (int step = 0; step < 20000; ++step) {
    const auto index = static_cast<std::int32_t>(random() % 1200) + list.LastIndex() - 1100;
    switch (random() % 5) {
      case 0:
      case 1: {
        const std::int32_t posted = Post(list);
        expected[posted] = list.Find(posted);
        break;
      }
      case 2:
        EXPECT_EQ(expected.count(index) ? index : -1, IndexOf(list.Remove(index)));
        expected.erase(index);
        break;
      case 3:
        // From the front, as a queue is read.
        if (random() % 2 && list.Count() > 300) expected.erase(IndexOf(list.RemoveAt(1)));
        break;
      default:
        check(index);
    }
    ASSERT_EQ(expected.size(), static_cast<std::size_t>(list.Count()));
  }
  std::int32_t position = 0;
  for (const auto& [index, entry] : expected) {
    EXPECT_EQ(entry, list.At(++position));
    check(index);
  }
}

TEST(PostingListTest, AMillionPostingsTakeLinearTime) {
  constexpr std::int32_t kCount = 1000000;
  List list, odd;
  Post(list, kCount);
  for (std::int32_t i = 0; i < kCount; ++i) ASSERT_EQ(i, IndexOf(list.Find(i)));
  for (std::int32_t i = 1; i < kCount; i += 2) odd.Append(list.Find(i));
  EXPECT_EQ(odd.All(), list.RemoveAll(odd));
  for (std::int32_t i = 0; i < kCount; ++i) ASSERT_EQ(i % 2 ? -1 : i, IndexOf(list.Find(i)));
  for (std::int32_t i = 0; i < kCount; i += 2) ASSERT_EQ(i, IndexOf(list.RemoveAt(1)));
  EXPECT_EQ(0, list.Count());
}

}  // namespace
}  // namespace zepkit10

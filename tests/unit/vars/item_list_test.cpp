#include "vars/item_list.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

namespace zepkit10 {
namespace {

/// An item that is counted but not owned: every test keeps its items itself.
struct Item {
  explicit Item(std::int32_t number) : serial(number) {}
  std::int32_t Serial() const { return serial; }
  void Retain() { ++references; }
  void Drop() { --references; }

  std::int32_t serial;
  int references = 0;
};

class ItemListTest : public testing::Test {
 protected:
  /// Adds an item whose name, if any, nothing else has.
  Item& Add(std::u16string_view name = {}) {
    items_.push_back(std::make_unique<Item>(static_cast<std::int32_t>(items_.size() * 3)));
    list_.Append(Ref<Item>(items_.back().get()));
    if (!name.empty()) list_.SetName(*items_.back(), {}, name);
    return *items_.back();
  }

  std::vector<std::unique_ptr<Item>> items_;
  ItemList<Item> list_;
};

Failure FailureOf(const ItemList<Item>& list, std::int32_t position) {
  try {
    list.At(position);
  } catch (const Failure& failure) {
    return failure;
  }
  return {};
}

TEST_F(ItemListTest, ItemsStandInOrderOfInsertion) {
  EXPECT_EQ(0u, list_.Count());
  Item& first = Add(u"b");
  Item& second = Add(u"a");
  EXPECT_EQ(2u, list_.Count());
  EXPECT_EQ(&first, list_.At(1).get());
  EXPECT_EQ(&second, list_.At(2).get());
  EXPECT_EQ(1, first.references);
  EXPECT_EQ(&first, list_.begin()->get());
}

TEST_F(ItemListTest, PositionsOutsideRaise9WithoutASource) {
  const Failure outside{9, {}, {}};
  EXPECT_EQ(outside, FailureOf(list_, 1));
  Add();
  EXPECT_EQ(outside, FailureOf(list_, 0));
  EXPECT_EQ(outside, FailureOf(list_, 2));
  EXPECT_EQ(outside, FailureOf(list_, std::numeric_limits<std::int32_t>::min()));
  EXPECT_EQ(outside, FailureOf(list_, std::numeric_limits<std::int32_t>::max()));
}

TEST_F(ItemListTest, NamesAreComparedExactly) {
  using namespace std::string_view_literals;
  Item& lower = Add(u"name");
  Item& odd = Add(u"a\0b"sv);
  EXPECT_EQ(&lower, list_.FindByName(u"name"));
  EXPECT_EQ(nullptr, list_.FindByName(u"Name"));
  EXPECT_EQ(&odd, list_.FindByName(u"a\0b"sv));
  EXPECT_EQ(nullptr, list_.FindByName(u"a"));
}

TEST_F(ItemListTest, AnItemWithoutANameIsNotFound) {
  Add();
  EXPECT_EQ(nullptr, list_.FindByName(u""));
}

TEST_F(ItemListTest, TheEmptyTextIsANameOnceItIsGiven) {
  Add();
  Item& named = Add();
  list_.SetName(named, u"", u"");
  EXPECT_EQ(&named, list_.FindByName(u""));
  list_.SetName(named, u"", u"full");
  EXPECT_EQ(nullptr, list_.FindByName(u""));
  EXPECT_EQ(&named, list_.FindByName(u"full"));
}

TEST_F(ItemListTest, ARenamedItemIsFoundUnderItsNewNameOnly) {
  Item& item = Add(u"old");
  list_.SetName(item, u"old", u"new");
  EXPECT_EQ(nullptr, list_.FindByName(u"old"));
  EXPECT_EQ(&item, list_.FindByName(u"new"));
}

TEST_F(ItemListTest, RemovedItemsLeaveNoTrace) {
  Item& first = Add(u"a");
  Item& second = Add(u"b");
  Item& third = Add(u"c");
  list_.Remove(second, u"b");
  EXPECT_EQ(0, second.references);
  EXPECT_EQ(nullptr, list_.FindByName(u"b"));
  EXPECT_EQ(&third, list_.At(2).get());
  list_.Remove(second, u"b");
  list_.Remove(second, u"a");  // an item takes only its own name with it
  EXPECT_EQ(&first, list_.FindByName(u"a"));
  EXPECT_EQ(2u, list_.Count());
}

TEST_F(ItemListTest, TakeAllEmptiesTheListAndHandsOverTheItems) {
  Item& first = Add(u"a");
  Add(u"b");
  {
    const auto taken = list_.TakeAll();
    EXPECT_EQ(0u, list_.Count());
    EXPECT_EQ(nullptr, list_.FindByName(u"a"));
    ASSERT_EQ(2u, taken->size());
    EXPECT_EQ(&first, taken->front().get());
    EXPECT_EQ(1, first.references);
    list_.Remove(first, u"a");
  }
  EXPECT_EQ(0, first.references);
  EXPECT_EQ(nullptr, list_.TakeAll());
  EXPECT_EQ(list_.begin(), list_.end());
}

TEST_F(ItemListTest, AgreesWithAPlainListOnRandomChanges) {
  std::mt19937 random(3);
  std::vector<std::pair<Item*, std::u16string>> expected;
  for (int step = 0; step < 20000; ++step) {
    const std::u16string name(1 + random() % 2, static_cast<char16_t>(u'a' + random() % 26));
    const auto same = std::find_if(expected.begin(), expected.end(),
                                   [&](const auto& each) { return each.second == name; });
    ASSERT_EQ(same == expected.end() ? nullptr : same->first, list_.FindByName(name));
    if (same == expected.end()) {
      if (expected.empty() || random() % 3 > 0) {
        expected.emplace_back(&Add(name), name);
      } else {
        auto& renamed = expected[random() % expected.size()];
        list_.SetName(*renamed.first, renamed.second, name);
        renamed.second = name;
      }
    } else {
      list_.Remove(*same->first, name);
      expected.erase(same);
    }
    ASSERT_EQ(expected.size(), list_.Count());
    if (expected.empty()) continue;
    const std::size_t position = random() % expected.size();
    ASSERT_EQ(expected[position].first, list_.At(static_cast<std::int32_t>(position) + 1).get());
  }
}

}  // namespace
}  // namespace zepkit10

// The containers behind the collections, changed at random: postings against a map, named items
// against a plain list. The first four bytes are the first posting index, each of the others an
// operation or what it works on.
#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/expect.h"
#include "fuzz/input.h"
#include "msg/posting_list.h"
#include "vars/item_list.h"

namespace {

using namespace zepkit10;

struct Record {
  std::int32_t index = 0;
};
using Postings = PostingList<Record>;

/// A list of postings and the map that it should be.
struct Pair {
  explicit Pair(std::int32_t first) : list(first), next(first) {}

  Postings list;
  std::map<std::int32_t, Postings::Entry> map;
  std::int64_t next;

  void Post() {
    constexpr std::int64_t kEnd = 2147483647;
    const auto record = std::make_shared<Record>();
    try {
      const std::int32_t index = list.Post(record);
      Expect(next < kEnd && index == next && record->index == index, "another posting index");
      map[index] = record;
      ++next;
    } catch (const Failure& failure) {
      Expect(failure.number == 6 && next == kEnd, "not posted");
    }
  }

  Postings::Entry Find(std::int32_t index) const {
    const auto found = map.find(index);
    return found == map.end() ? nullptr : found->second;
  }

  Postings::Entry At(std::int32_t position) const {
    if (position < 1 || static_cast<std::size_t>(position) > map.size()) return nullptr;
    return std::next(map.begin(), position - 1)->second;
  }

  void Forget(const Postings::Entry& entry) {
    if (entry) map.erase(entry->index);
  }

  void Check() const {
    Expect(list.Count() == static_cast<std::int32_t>(map.size()), "another count");
    Expect(list.LastIndex() == next - 1, "another last index");
    Expect(std::equal(map.begin(), map.end(), list.All().begin(), list.All().end(),
                      [](const auto& left, const auto& right) { return left.second == right; }),
           "other postings");
  }
};

/// Any index, or one near what is in the list.
std::int32_t IndexNear(const Pair& pair, Input& input) {
  if (input.UpTo(15) == 0) return input.Any<std::int32_t>();
  const std::int64_t from = pair.map.empty() ? pair.next : pair.map.begin()->first;
  return static_cast<std::int32_t>(std::min<std::int64_t>(from + input.UpTo(40) - 2, 2147483647));
}

void ChangePostings(Pair& pair, Pair& other, Input& input) {
  switch (input.UpTo(7)) {
    case 0:
    case 1:
      pair.Post();
      break;
    case 2: {
      const std::int32_t index = IndexNear(pair, input);
      const auto expected = pair.Find(index);
      Expect(pair.list.Find(index) == expected, "found another posting");
      Expect(pair.list.Remove(index) == expected, "removed another posting");
      pair.Forget(expected);
      break;
    }
    case 3: {
      const std::int32_t position = input.UpTo(30) - 1;
      const auto expected = pair.At(position);
      Expect(pair.list.At(position) == expected, "another posting at a position");
      Expect(pair.list.RemoveAt(position) == expected, "removed another position");
      pair.Forget(expected);
      break;
    }
    case 4: {
      const auto entry = pair.Find(IndexNear(pair, input));
      if (!entry || (!other.map.empty() && other.map.rbegin()->first >= entry->index)) break;
      if (entry->index >= other.next) break;  // a later posting would not be in order
      other.list.Append(entry);
      other.map[entry->index] = entry;
      break;
    }
    case 5:
      if (!other.map.empty() && other.map.rbegin()->first >= pair.next) break;
      other.list.ContinueNumberingOf(pair.list);
      other.next = pair.next;
      break;
    case 6: {
      const auto taken = pair.list.RemoveAll(other.list);
      std::vector<Postings::Entry> expected;
      for (const auto& [index, entry] : other.map) {
        if (const auto own = pair.Find(index)) expected.push_back(own);
        pair.map.erase(index);
      }
      Expect(std::equal(taken.begin(), taken.end(), expected.begin(), expected.end()),
             "others were taken out");
      break;
    }
    default: {
      const std::int32_t index = IndexNear(pair, input);
      Expect(pair.list.Find(index) == pair.Find(index), "another posting");
    }
  }
}

/// An item that is counted, but owned by the run.
struct Item {
  std::int32_t serial;
  int references = 0;

  std::int32_t Serial() const { return serial; }
  void Retain() { ++references; }
  void Drop() { --references; }
};

/// A list of items and the plain list that it should be.
class Items {
 public:
  void Change(Input& input);
  void Check() const;

 private:
  struct Named {
    Item* item;
    std::optional<std::u16string> name;
  };
  using Place = std::vector<Named>::iterator;

  void Add(const std::optional<std::u16string>& name);
  Place Locate(std::u16string_view name) {
    return std::find_if(plain_.begin(), plain_.end(),
                        [&](const Named& named) { return named.name == name; });
  }

  std::vector<std::unique_ptr<Item>> all_;  // those that were taken out, too
  ItemList<Item> list_;
  std::vector<Named> plain_;
};

void Items::Add(const std::optional<std::u16string>& name) {
  const auto serial = static_cast<std::int32_t>(all_.size()) * 2;
  all_.push_back(std::make_unique<Item>(Item{serial}));
  Item& item = *all_.back();
  list_.Append(Ref<Item>(&item));
  if (name) list_.SetName(item, {}, *name);
  plain_.push_back({&item, name});
}

void Items::Change(Input& input) {
  constexpr std::u16string_view kNames[] = {u"", u"a", u"b", u"ab", u"A", u"c", u"d", u"e"};
  const std::u16string name(kNames[input.UpTo(7)]);
  const Place same = Locate(name);
  Expect(list_.FindByName(name) == (same == plain_.end() ? nullptr : same->item), "another item");
  switch (input.UpTo(4)) {
    case 0:
      Add({});
      break;
    case 1:
      if (same == plain_.end()) Add(name);
      break;
    case 2: {
      if (plain_.empty() || (same != plain_.end() && !name.empty())) break;
      Named& renamed = plain_[static_cast<std::size_t>(input.UpTo(255)) % plain_.size()];
      if (same != plain_.end() && same->item != renamed.item) break;
      list_.SetName(*renamed.item, renamed.name.value_or(u""), name);
      renamed.name = name;
      break;
    }
    case 3: {
      if (all_.empty()) break;
      Item& item = *all_[static_cast<std::size_t>(input.UpTo(255)) % all_.size()];
      const auto found = std::find_if(plain_.begin(), plain_.end(),
                                      [&](const Named& named) { return named.item == &item; });
      const bool here = found != plain_.end();
      list_.Remove(item, here ? found->name.value_or(u"") : name);
      if (here) plain_.erase(found);
      break;
    }
    default: {
      if (input.UpTo(7) > 0) break;
      const auto all = list_.TakeAll();
      const auto taken = all ? *all : ItemList<Item>::Items();
      Expect(
          std::equal(taken.begin(), taken.end(), plain_.begin(), plain_.end(),
                     [](const auto& left, const Named& right) { return left.get() == right.item; }),
          "others were taken out");
      plain_.clear();
    }
  }
}

void Items::Check() const {
  Expect(list_.Count() == plain_.size(), "another count of items");
  std::int32_t position = 0;
  for (const Named& named : plain_) {
    Expect(list_.At(++position).get() == named.item, "another item at a position");
    if (named.name) Expect(list_.FindByName(*named.name) == named.item, "another name");
  }
  for (const std::int32_t outside : {-1, 0, position + 1}) {
    try {
      list_.At(outside);
      Expect(false, "an item outside");
    } catch (const Failure& failure) {
      Expect(failure.number == 9, "another error");
    }
  }
  int references = 0;
  for (const auto& item : all_) references += item->references;
  Expect(references == static_cast<int>(plain_.size()), "references are left");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 1000;
  if (size > kLongest) return 0;
  Input input(data, size);
  const auto first = static_cast<std::int32_t>(input.Any<std::uint32_t>() >> 1);
  Pair pair(first), other(first);
  Items items;
  while (!input.AtEnd()) {
    const int target = input.UpTo(2);
    if (target == 0) ChangePostings(pair, other, input);
    if (target == 1) ChangePostings(other, pair, input);
    if (target == 2) items.Change(input);
    pair.Check();
    other.Check();
    items.Check();
  }
  return 0;
}

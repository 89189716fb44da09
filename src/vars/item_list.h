#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "frame/errors.h"
#include "platform/automation/ref.h"

namespace zepkit10 {

/// The ordered, keyed container behind every collection: items in order of insertion, found by
/// position, by key or by name. An item's key is its serial, so keys grow with the positions. Names
/// are compared code unit by code unit; an item may have none.
template <class Item>
class ItemList {
 public:
  using Items = std::deque<Ref<Item>>;

  std::size_t Count() const { return items_ ? items_->size() : 0; }
  auto begin() const { return items_ ? items_->cbegin() : typename Items::const_iterator(); }
  auto end() const { return items_ ? items_->cend() : typename Items::const_iterator(); }

  /// The item at a position from 1 to `Count`; error 9 outside.
  const Ref<Item>& At(std::int32_t position) const {
    if (position < 1 || static_cast<std::size_t>(position) > Count()) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrSubscriptOutOfRange);
    }
    return (*items_)[static_cast<std::size_t>(position) - 1];
  }

  /// The item of that name, or null.
  Item* FindByName(std::u16string_view name) const {
    const auto found = names_.find(name);
    return found == names_.end() ? nullptr : found->second;
  }

  void Append(Ref<Item> item) {
    if (!items_) items_ = std::make_unique<Items>();
    items_->push_back(std::move(item));
  }

  /// Gives an item its name, in place of the one it had. No other item may have it.
  void SetName(Item& item, std::u16string_view old_name, std::u16string_view new_name) {
    names_.emplace(new_name, &item);
    // An item without a name may get the empty one.
    if (old_name != new_name) ForgetName(item, old_name);
  }

  /// Takes an item out. One that is not here is no fault.
  void Remove(const Item& item, std::u16string_view name) noexcept {
    ForgetName(item, name);
    const auto found = std::lower_bound(
        begin(), end(), item.Serial(),
        [](const Ref<Item>& left, std::int32_t key) { return left->Serial() < key; });
    if (found != end() && found->get() == &item) items_->erase(found);
  }

  /// Empties the list and returns what it held; null where that was nothing. Needs no memory.
  std::unique_ptr<Items> TakeAll() noexcept {
    names_.clear();
    return std::move(items_);
  }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view name) const {
      return std::hash<std::u16string_view>()(name);
    }
  };

  void ForgetName(const Item& item, std::u16string_view name) noexcept {
    const auto found = names_.find(name);
    if (found != names_.end() && found->second == &item) names_.erase(found);
  }

  std::unique_ptr<Items> items_;  // even an empty deque needs memory
  std::unordered_map<std::u16string, Item*, Hash, std::equal_to<>> names_;
};

}  // namespace zepkit10

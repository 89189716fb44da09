#include "util/collection_object.h"

#include "platform/automation/enumerator.h"

namespace zepkit10 {
namespace {

using enum ZepVbErrors3To98;

/// Keys are compared without letter case.
std::u16string Fold(std::u16string_view key) {
  std::u16string folded(key);
  CharUpperBuffW(MutableText(folded), static_cast<DWORD>(folded.size()));
  return folded;
}

}  // namespace

void Collection::Add(const VARIANT& Item, const VARIANT& Key, const VARIANT& Before,
                     const VARIANT& After) {
  auto entry = std::make_unique<Entry>();
  entry->value = CopyOf(Item);
  const std::size_t place = PlaceFor(Before, After);
  if (!IsMissing(&Key)) {
    const auto key = TextOf(Key);
    if (!key) RaiseRuntimeError(zepVbErrTypeMismatch);
    entry->key = Fold(*key);
    if (keys_.contains(*entry->key)) {
      RaiseRuntimeError(
          ZepVbErrors298To746::zepVbErrThisKeyAlreadyAssociatedWithAnElementOfThisCollection);
    }
  }
  // No failure comes between the two.
  if (entries_.size() == entries_.capacity()) entries_.reserve(2 * entries_.size() + 1);
  if (entry->key) keys_.emplace(*entry->key, entry.get());
  entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(place), std::move(entry));
}

void Collection::Append(Variant value) {
  entries_.push_back(std::make_unique<Entry>(Entry{std::move(value), {}}));
}

std::int32_t Collection::Count() const { return static_cast<std::int32_t>(entries_.size()); }

Variant Collection::Item(const VARIANT& Index) const {
  return CopyOf(entries_[PositionOf(Index)]->value.get());
}

Microsoft::WRL::ComPtr<IUnknown> Collection::NewEnum() const {
  auto snapshot = std::make_shared<std::vector<Variant>>();
  snapshot->reserve(entries_.size());
  for (const auto& entry : entries_) snapshot->push_back(CopyOf(entry->value.get()));
  return Enumerator<VariantEnumeratorTraits>::Create(std::move(snapshot));
}

void Collection::Remove(const VARIANT& Index) {
  // An index that is an object is asked for its value, and may change the collection.
  const auto position = static_cast<std::ptrdiff_t>(PositionOf(Index));
  const auto found = entries_.begin() + position;
  // Released last: the value may be an object that calls back.
  const std::unique_ptr<Entry> removed = std::move(*found);
  entries_.erase(found);
  if (removed->key) keys_.erase(*removed->key);
}

/// The position, from 0, that a number (from 1) or a key names.
std::size_t Collection::PositionOf(const VARIANT& index) const {
  if (const auto key = TextOf(index)) {
    const auto found = keys_.find(Fold(*key));
    if (found == keys_.end()) RaiseRuntimeError(zepVbErrBadCall);
    const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const auto& each) { return each.get() == found->second; });
    return static_cast<std::size_t>(entry - entries_.begin());
  }
  const std::int32_t position = ConvertToLong(index);
  if (position < 1 || position > Count()) RaiseRuntimeError(zepVbErrSubscriptOutOfRange);
  return static_cast<std::size_t>(position) - 1;
}

std::size_t Collection::PlaceFor(const VARIANT& before, const VARIANT& after) const {
  if (!IsMissing(&before) && !IsMissing(&after)) RaiseRuntimeError(zepVbErrBadCall);
  if (!IsMissing(&before)) return PositionOf(before);
  if (!IsMissing(&after)) return PositionOf(after) + 1;
  return entries_.size();
}

}  // namespace zepkit10

#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <utility>

#include "frame/errors.h"

namespace zepkit10 {

/// Numbered postings in ascending order of their posting indexes. A posting index, from 0, names a
/// record for good; positions, from 1, shift when records are removed. Whatever takes records out
/// hands them to the caller, so that nothing is released while the list changes.
///
/// Record has a member `std::int32_t index`. A posted record is shared and does not change.
template <class Record>
class PostingList {
 public:
  using Entry = std::shared_ptr<const Record>;
  using Entries = std::deque<Entry>;

  explicit PostingList(std::int32_t next_index = 0) : next_index_(next_index) {}

  std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
  const Entries& All() const { return entries_; }

  /// The posting index that was handed out last; -1 before the first.
  std::int32_t LastIndex() const { return next_index_ - 1; }

  /// Posts a record under the next posting index, which becomes the record's. Error 6, and nothing
  /// is posted, where the next posting index would leave the 32-bit range.
  std::int32_t Post(std::shared_ptr<Record> record) {
    if (next_index_ == std::numeric_limits<std::int32_t>::max()) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
    }
    record->index = next_index_;
    entries_.push_back(std::move(record));
    return next_index_++;
  }

  /// Adds a record under the posting index that it has; it must be above those that are here.
  void Append(Entry entry) { entries_.push_back(std::move(entry)); }

  /// Lets later postings go on where those of another list will.
  void ContinueNumberingOf(const PostingList& other) { next_index_ = other.next_index_; }

  /// The record of a posting index; null if there is none.
  Entry Find(std::int32_t index) const {
    const auto found = Locate(index);
    return found == entries_.end() ? nullptr : *found;
  }

  /// The record at a position; null outside 1 to `Count`.
  Entry At(std::int32_t position) const {
    return position < 1 || position > Count() ? nullptr : entries_[Offset(position)];
  }

  /// Takes the record of a posting index out; null if there is none.
  Entry Remove(std::int32_t index) {
    const auto found = Locate(index);
    return found == entries_.end() ? nullptr : Take(found);
  }

  /// Takes the record at a position out; null outside 1 to `Count`.
  Entry RemoveAt(std::int32_t position) {
    if (position < 1 || position > Count()) return nullptr;
    return Take(entries_.begin() + static_cast<std::ptrdiff_t>(Offset(position)));
  }

  /// Takes out every record whose posting index `other` has too, in linear time. Those that are
  /// not here are no fault; on an exception the list is as before.
  Entries RemoveAll(const PostingList& other) {
    Entries kept, taken;
    auto named = other.entries_.begin();
    for (const Entry& entry : entries_) {
      while (named != other.entries_.end() && (*named)->index < entry->index) ++named;
      const bool both = named != other.entries_.end() && (*named)->index == entry->index;
      (both ? taken : kept).push_back(entry);
    }
    entries_.swap(kept);
    return taken;
  }

 private:
  using Place = typename Entries::const_iterator;

  static std::size_t Offset(std::int32_t position) {
    return static_cast<std::size_t>(position) - 1;
  }

  Place Locate(std::int32_t index) const {
    if (entries_.empty() || index < entries_.front()->index) return entries_.end();
    // The offset while nothing was removed behind the first record, and otherwise past the record.
    const auto guess = std::int64_t{index} - entries_.front()->index;
    auto end = entries_.end();
    if (guess < Count()) {
      const Place place = entries_.begin() + static_cast<std::ptrdiff_t>(guess);
      if ((*place)->index == index) return place;
      end = place;
    }
    const Place place =
        std::lower_bound(entries_.begin(), end, index,
                         [](const Entry& entry, std::int32_t key) { return entry->index < key; });
    return place != end && (*place)->index == index ? place : entries_.end();
  }

  Entry Take(Place place) {
    Entry taken = *place;
    entries_.erase(place);
    return taken;
  }

  Entries entries_;
  std::int32_t next_index_;
};

}  // namespace zepkit10

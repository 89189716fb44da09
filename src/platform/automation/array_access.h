#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>

namespace zepkit10 {

/// A client's array of one dimension, locked while this lives: its elements cannot move. Null and
/// an array without memory have no elements; an array of more dimensions raises `zepErrBadCall`.
class ArrayAccess {
 public:
  explicit ArrayAccess(SAFEARRAY* array);
  ~ArrayAccess();
  ArrayAccess(const ArrayAccess&) = delete;
  ArrayAccess& operator=(const ArrayAccess&) = delete;

  bool IsEmpty() const { return count_ == 0; }
  std::uint32_t Count() const { return count_; }
  /// The bounds as the array says; of an array without elements the lower is above the upper.
  std::int64_t LowerBound() const { return lower_; }
  std::int64_t UpperBound() const { return lower_ + count_ - 1; }

  /// The place of the element at an index, which raises error 9 outside the bounds.
  void* At(std::int64_t index) const;

 private:
  SAFEARRAY* array_ = nullptr;  // null where there is nothing to unlock
  std::uint32_t count_ = 0;
  std::int64_t lower_ = 0;
};

}  // namespace zepkit10

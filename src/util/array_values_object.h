#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <optional>

#include "platform/automation/array_access.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

namespace zepkit10 {

/// A client's array: neither copied nor locked.
struct ArrayArgument {
  VARTYPE type;      // of the elements
  SAFEARRAY* array;  // null where it was never allocated
};

/// The array that an automation value holds or refers to; nothing for any other value.
std::optional<ArrayArgument> ArrayIn(const VARIANT& value) noexcept;

/// The first dimension. Without elements the upper bound is below the lower one.
struct ArrayBounds {
  std::int64_t lower;
  std::int64_t upper;
};

/// Nothing for an array without allocation.
std::optional<ArrayBounds> BoundsOf(const SAFEARRAY* array) noexcept;

bool IsEmpty(const SAFEARRAY* array) noexcept;

/// Error 6 for a bound above the range of an index.
void CheckUpperBound(std::int64_t bound);

/// The elements of a client's array, locked while this lives. More than one dimension raises
/// `zepErrBadCall`, elements that no automation value can hold raise error 13.
class ArrayElements {
 public:
  explicit ArrayElements(const ArrayArgument& argument);

  VARTYPE Type() const { return argument_.type; }
  std::int64_t Count() const { return access_.Count(); }
  std::int64_t LowerBound() const { return access_.LowerBound(); }

  /// A by-reference value for the element at a position, counted from 0. It owns nothing.
  VARIANT At(std::int64_t position) const;
  void* Place(std::int64_t position) const { return access_.At(LowerBound() + position); }

 private:
  ArrayArgument argument_;
  ArrayAccess access_;
};

/// A new array of one dimension and of a model's element type, filled from its lower bound on.
class ArrayCopy {
 public:
  /// Error 6 where the upper bound is beyond the range of an index.
  ArrayCopy(const ArrayArgument& model, std::int64_t lower_bound, std::int64_t count);

  /// Appends elements from a position on, converted by the platform where their type is another:
  /// error 13 or 6 for one that cannot be, 13 too for an object without the interface of a typed
  /// array. There must be room for them.
  void Append(const ArrayElements& source, std::int64_t position, std::int64_t count);
  void Append(const ArrayElements& source) { Append(source, 0, source.Count()); }

  Variant Take();

 private:
  void AppendElement(const VARIANT& element);
  void AppendRecord(const VARIANT& element);
  void Narrow(Variant* object) const;
  BYTE* NextPlace() const;

  VARTYPE type_;
  SafeArray array_;
  std::int64_t filled_ = 0;
};

/// An array without elements and without allocation.
Variant EmptiedCopy(VARTYPE type);

}  // namespace zepkit10

#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>

#include "platform/automation/variant.h"

namespace zepkit10 {

/// The members of `Library` and `Global` that work on arrays in automation values. They look at one
/// dimension only, take any element type and any bounds, and read locked and fixed-size arrays as
/// well as others. An array without allocation (a null pointer) has no elements.
class ArrayMembers {
 public:
  static Variant CutArray(const VARIANT& Src, std::int32_t FirstItem, std::int32_t Length);
  static bool IsArrayEmpty(const VARIANT& ArrayToTest);
  static bool IsArrayStatic(const VARIANT& ArrayToTest);
  static Variant Max(SAFEARRAY** Params);
  static Variant MergeArrays(const VARIANT& Src1, const VARIANT& Src2, std::int32_t NewBase);
  static Variant Min(SAFEARRAY** Params);
  static Variant TransformArray(const VARIANT& SrcArray, std::int32_t NewBase);
  static Variant TransformPArray(const VARIANT& PArray, VARIANT_BOOL* Found);
  static std::int32_t ZepLBound(const VARIANT& Arr, std::int32_t IfEmpty);
  static std::int32_t ZepLBound(const VARIANT& Arr, const LONG* IfEmpty);
  static std::int32_t ZepUBound(const VARIANT& Arr, std::int32_t IfEmpty);
  static std::int32_t ZepUBound(const VARIANT& Arr, const LONG* IfEmpty);
};

}  // namespace zepkit10

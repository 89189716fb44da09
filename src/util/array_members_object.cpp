#include "util/array_members_object.h"

#include <limits>
#include <vector>

#include "frame/errors.h"
#include "platform/automation/number.h"
#include "util/array_values_object.h"
#include "util/nested_values_object.h"

namespace zepkit10 {
namespace {

using enum ZepErrors;

ArrayArgument RequireArray(const VARIANT& value, ZepErrors otherwise = zepErrBadCall) {
  const auto argument = ArrayIn(value);
  if (!argument) RaiseInCalledClass(otherwise);
  return *argument;
}

/// A bound that an index cannot express counts as one that cannot be asked for.
std::int32_t BoundOr(std::optional<std::int64_t> bound, std::int32_t if_empty) {
  using Index = std::numeric_limits<std::int32_t>;
  if (!bound || *bound < Index::min() || *bound > Index::max()) return if_empty;
  return static_cast<std::int32_t>(*bound);
}

std::optional<ArrayBounds> BoundsIn(const VARIANT& value) {
  const auto argument = ArrayIn(value);
  return argument ? BoundsOf(argument->array) : std::nullopt;
}

Variant Rebase(const ArrayArgument& source, std::int32_t new_base) {
  const ArrayElements elements(source);
  ArrayCopy copy(source, new_base, elements.Count());
  copy.Append(elements);
  return copy.Take();
}

/// A copy that has no elements either, and the same bounds.
Variant CopyOfEmpty(const ArrayArgument& source) {
  if (!source.array || !BoundsOf(source.array)) return EmptiedCopy(source.type);
  if (source.array->cDims == 1) return ArrayCopy(source, BoundsOf(source.array)->lower, 0).Take();
  VARIANT view{};
  view.vt = static_cast<VARTYPE>(VT_ARRAY | source.type);
  view.parray = source.array;
  return CopyOf(view);
}

/// Takes over the values.
Variant ArrayOf(std::vector<Variant>& values, std::int64_t lower_bound) {
  if (values.empty()) return EmptiedCopy(VT_VARIANT);
  const auto count = static_cast<std::int64_t>(values.size());
  CheckUpperBound(lower_bound + count - 1);
  SafeArray array =
      SafeArray::Create(VT_VARIANT, static_cast<LONG>(lower_bound), static_cast<ULONG>(count));
  VARIANT* place = array.Elements<VARIANT>();
  for (Variant& value : values) *place++ = value.Detach();
  Variant result;
  result.Out()->vt = VT_ARRAY | VT_VARIANT;
  result.Out()->parray = array.Detach();
  return result;
}

/// The value that comes first when the greatest (`sign` 1) or the least (-1) come first.
Variant Extreme(SAFEARRAY* params, int sign) {
  VARTYPE type = VT_VARIANT;
  if (params && FAILED(SafeArrayGetVartype(params, &type))) type = VT_VARIANT;
  NestedValues values({type, params});
  VARIANT value;
  Variant winner, winning_number;
  bool found = false;
  while (values.Next(&value)) {
    // What an object gives as its number may differ from one question to the next.
    if (!Follow(&value)) RaiseInCalledClass(zepErrBadCall);
    Variant candidate = CopyOf(value);
    auto number = NumberOf(candidate.get());
    if (!number) RaiseInCalledClass(zepErrBadCall);
    if (!found || CompareNumbers(number->get(), winning_number.get()) * sign > 0) {
      winner = std::move(candidate);
      winning_number = std::move(*number);
      found = true;
    }
  }
  if (!found) RaiseInCalledClass(zepErrBadCall);
  return winner;
}

}  // namespace

Variant ArrayMembers::CutArray(const VARIANT& Src, std::int32_t FirstItem, std::int32_t Length) {
  const ArrayArgument source = RequireArray(Src);
  if (Length < 0) RaiseInCalledClass(zepErrBadCall);
  if (IsEmpty(source.array) || Length == 0) return EmptiedCopy(source.type);
  CheckUpperBound(std::int64_t{FirstItem} + Length - 1);
  const ArrayElements elements(source);
  const std::int64_t position = FirstItem - elements.LowerBound();
  if (position < 0 || position + Length > elements.Count()) RaiseInCalledClass(zepErrBadCall);
  ArrayCopy cut(source, FirstItem, Length);
  cut.Append(elements, position, Length);
  return cut.Take();
}

bool ArrayMembers::IsArrayEmpty(const VARIANT& ArrayToTest) {
  return IsEmpty(RequireArray(ArrayToTest).array);
}

bool ArrayMembers::IsArrayStatic(const VARIANT& ArrayToTest) {
  constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  const SAFEARRAY* array = RequireArray(ArrayToTest).array;
  return !IsEmpty(array) && (array->fFeatures & kFixed);
}

Variant ArrayMembers::Max(SAFEARRAY** Params) { return Extreme(*Params, 1); }

Variant ArrayMembers::MergeArrays(const VARIANT& Src1, const VARIANT& Src2, std::int32_t NewBase) {
  const ArrayArgument first = RequireArray(Src1), second = RequireArray(Src2);
  if (IsEmpty(first.array) && IsEmpty(second.array)) return CopyOfEmpty(first);
  if (IsEmpty(second.array)) return Rebase(first, NewBase);
  const ArrayElements second_elements(second);
  if (IsEmpty(first.array)) {
    ArrayCopy converted(first, NewBase, second_elements.Count());
    converted.Append(second_elements);
    return converted.Take();
  }
  const ArrayElements first_elements(first);
  ArrayCopy merged(first, NewBase, first_elements.Count() + second_elements.Count());
  merged.Append(first_elements);
  merged.Append(second_elements);
  return merged.Take();
}

Variant ArrayMembers::Min(SAFEARRAY** Params) { return Extreme(*Params, -1); }

Variant ArrayMembers::TransformArray(const VARIANT& SrcArray, std::int32_t NewBase) {
  const ArrayArgument source = RequireArray(SrcArray);
  return IsEmpty(source.array) ? EmptiedCopy(source.type) : Rebase(source, NewBase);
}

Variant ArrayMembers::TransformPArray(const VARIANT& PArray, VARIANT_BOOL* Found) {
  const ArrayArgument outer = RequireArray(PArray, zepErrUnexpected);
  if (IsEmpty(outer.array)) return EmptiedCopy(VT_VARIANT);
  const ArrayElements elements(outer);
  std::vector<Variant> values;
  for (std::int64_t i = 0; i < elements.Count(); ++i) {
    const VARIANT element = elements.At(i);
    const auto nested = ArrayIn(element);
    if (!nested) {
      values.push_back(CopyOf(element));
      continue;
    }
    if (Found) *Found = VARIANT_TRUE;
    if (IsEmpty(nested->array)) continue;
    const ArrayElements inner(*nested);
    for (std::int64_t j = 0; j < inner.Count(); ++j) values.push_back(CopyOf(inner.At(j)));
  }
  return ArrayOf(values, elements.LowerBound());
}

std::int32_t ArrayMembers::ZepLBound(const VARIANT& Arr, std::int32_t IfEmpty) {
  const auto bounds = BoundsIn(Arr);
  return BoundOr(bounds ? std::optional(bounds->lower) : std::nullopt, IfEmpty);
}

std::int32_t ArrayMembers::ZepLBound(const VARIANT& Arr, const LONG* IfEmpty) {
  return ZepLBound(Arr, IfEmpty ? *IfEmpty : 0);
}

std::int32_t ArrayMembers::ZepUBound(const VARIANT& Arr, std::int32_t IfEmpty) {
  const auto bounds = BoundsIn(Arr);
  return BoundOr(bounds ? std::optional(bounds->upper) : std::nullopt, IfEmpty);
}

std::int32_t ArrayMembers::ZepUBound(const VARIANT& Arr, const LONG* IfEmpty) {
  return ZepUBound(Arr, IfEmpty ? *IfEmpty : -1);
}

}  // namespace zepkit10

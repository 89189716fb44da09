// Calls through the vtable.

#include <array>
#include <cstring>
#include <iterator>

#include "monkey/journal.h"
#include "monkey/round.h"

namespace monkey {
namespace {

constexpr std::size_t kMostParameters = 16;
constexpr int kLeftOver = 0xCC;  // what stands where a result is to be put

/// The type of what the platform passes for a parameter that is not by reference.
VARTYPE SlotType(const Parameter& parameter) {
  return parameter.is_array ? static_cast<VARTYPE>(VT_ARRAY | parameter.type) : parameter.type;
}

void* PlaceIn(VARTYPE type, VARIANT& variable) {
  return type == VT_VARIANT ? static_cast<void*>(&variable) : &variable.byref;
}

}  // namespace

VARIANT Round::SlotFor(const Parameter& parameter, ArgumentCatalogue& catalogue, VARTYPE* type) {
  *type = SlotType(parameter);
  if (!parameter.by_reference) {
    const bool any = parameter.type == VT_VARIANT && !parameter.is_array && OneIn(2);
    return any ? catalogue.Any() : VariableFor(parameter, catalogue);
  }
  VARIANT slot{};
  if (!OneIn(16)) slot.byref = PlaceIn(*type, VariableFor(parameter, catalogue));
  *type |= VT_BYREF;
  return slot;
}

bool Round::CallThroughVtable(IDispatch* object, Target& target, ArgumentCatalogue& catalogue) {
  const auto& parameters = target.member->parameters;
  std::array<VARIANT, kMostParameters> slots;
  std::array<VARIANT*, kMostParameters> pointers;
  std::array<VARTYPE, kMostParameters> types;
  VARIANT result, returned;
  std::memset(&result, kLeftOver, sizeof result);
  VARTYPE result_type = VT_EMPTY;
  Unchanged by_value;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    pointers[i] = &slots[i];
    if (parameters[i].is_result) {
      result_type = SlotType(parameters[i]);
      types[i] = static_cast<VARTYPE>(VT_BYREF | result_type);
      slots[i].byref = OneIn(16) ? nullptr : PlaceIn(result_type, result);
    } else {
      slots[i] = SlotFor(parameters[i], catalogue, &types[i]);
      const bool has_type = types[i] == VT_VARIANT || slots[i].vt == types[i];
      if (!parameters[i].by_reference && has_type) by_value.Watch(slots[i]);
    }
  }
  const bool lacks_result =
      result_type != VT_EMPTY && slots[parameters.size() - 1].byref == nullptr;
  SetErrorInfo(0, nullptr);
  {
    const Inside inside(*this, object);
    DispCallFunc(object, target.member->offset, CC_STDCALL, VT_ERROR,
                 static_cast<UINT>(parameters.size()), types.data(), pointers.data(), &returned);
  }
  if (FAILED(returned.scode)) TakeNoteOf(returned.scode, object, target);
  CheckVtableOutcome(returned.scode, lacks_result);
  by_value.Check();
  if (result_type == VT_EMPTY || lacks_result) return returned.scode == S_OK;
  if (FAILED(returned.scode)) {
    CheckCleared(result_type, result);
    return false;
  }
  if (result_type != VT_VARIANT) result.vt = result_type;
  Consume(result);
  return true;
}

}  // namespace monkey

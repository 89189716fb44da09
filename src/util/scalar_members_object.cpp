#include "util/scalar_members_object.h"

#include <algorithm>
#include <limits>

#include "frame/errors.h"
#include "platform/automation/array_access.h"
#include "platform/automation/client_variable.h"
#include "platform/automation/number.h"
#include "platform/automation/type_name.h"
#include "platform/text_bytes.h"
#include "util/array_values_object.h"
#include "util/tag_counter.h"

namespace zepkit10 {
namespace {

using enum ZepErrors;
using enum ZepVbErrors3To98;

using Calculation = Variant (*)(const VARIANT&, const VARIANT&);

/// The default step, of the type that the literal has.
Variant One() {
  Variant one;
  one.Out()->vt = VT_I2;
  one.Out()->iVal = 1;
  return one;
}

Variant Change(VARIANT* what, const VARIANT& by_what, Calculation calculate) {
  auto number = NumberOf(*what);
  auto step = IsMissing(&by_what) ? One() : NumberOf(by_what);
  if (!number || !step) RaiseInCalledClass(zepErrBadParam);
  Variant calculated = calculate(number->get(), step->get());
  ClientVariable variable(what);
  Variant fitting = variable.Fit(std::move(calculated));
  Variant result = CopyOf(fitting.get());  // in front of what cannot be undone
  variable.Assign(std::move(fitting));
  return result;
}

constinit TagCounter tags;

/// The bytes from index 1 on, whatever the array's lower bound is.
std::span<const std::uint8_t> BytesFromOne(const ArrayAccess& bytes, std::int64_t count) {
  if (count <= 0) return {};
  return {static_cast<const std::uint8_t*>(bytes.At(1)), static_cast<std::size_t>(count)};
}

}  // namespace

Bstr ScalarMembers::ByteArrayToString(SAFEARRAY** ByteArray, ZepStringType StringType) {
  if (IsEmpty(*ByteArray)) return Bstr(0);
  const ArrayAccess bytes(*ByteArray);
  if ((*ByteArray)->cbElements != 1) RaiseRuntimeError(zepVbErrTypeMismatch);
  const bool pairs = IsUtf16(StringType);
  const std::int64_t count = bytes.UpperBound();
  return Decode(BytesFromOne(bytes, pairs ? count / 2 * 2 : count), StringType);
}

Variant ScalarMembers::Decr(VARIANT* What, const VARIANT& ByWhat) {
  return Change(What, ByWhat, Subtract);
}

std::u16string ScalarMembers::FinalizeString(std::u16string_view Source,
                                             std::u16string_view FinalString) {
  std::u16string text(Source);
  if (!Source.ends_with(FinalString)) text += FinalString;
  return text;
}

Variant ScalarMembers::Incr(VARIANT* What, const VARIANT& ByWhat) {
  return Change(What, ByWhat, Add);
}

void ScalarMembers::MessageBeep(ZepMsgType MsgType) {
  if (!::MessageBeep(static_cast<UINT>(MsgType))) RaiseInCalledClass(zepErrBadCall);
}

std::u16string ScalarMembers::NewTag() { return tags.Next(); }

SafeArray ScalarMembers::StringToByteArray(std::u16string_view StringToConv,
                                           ZepStringType StringType) {
  if (StringToConv.empty()) return {};
  const std::size_t size = EncodedSize(StringToConv, StringType);
  CheckUpperBound(static_cast<std::int64_t>(size));
  SafeArray array = SafeArray::Create(VT_UI1, 1, static_cast<ULONG>(size));
  Encode(StringToConv, StringType, array.Elements<std::uint8_t>());
  return array;
}

void ScalarMembers::SwapVars(VARIANT* Var1, VARIANT* Var2) {
  if (TypeNameOf(*Var1) != TypeNameOf(*Var2)) RaiseInCalledClass(zepErrBadParam);
  ClientVariable::Swap(ClientVariable(Var1), ClientVariable(Var2));
}

}  // namespace zepkit10

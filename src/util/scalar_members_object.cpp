#include "util/scalar_members_object.h"

#include <algorithm>
#include <limits>

#include "frame/errors.h"
#include "platform/automation/array_access.h"
#include "platform/automation/client_variable.h"
#include "platform/automation/number.h"
#include "platform/automation/type_name.h"
#include "platform/code_page.h"
#include "util/array_values_object.h"
#include "util/tag_counter.h"

namespace zepkit10 {
namespace {

using enum ZepErrors;
using enum ZepStringType;
using enum ZepVbErrors3To98;

using Calculation = Variant (*)(const VARIANT&, const VARIANT&);

Variant Change(VARIANT* what, const VARIANT& by_what, Calculation calculate) {
  auto number = NumberOf(*what);
  auto step = IsMissing(&by_what) ? Variant(1) : NumberOf(by_what);
  if (!number || !step) RaiseInCalledClass(zepErrBadParam);
  Variant result = calculate(number->get(), step->get());
  ClientVariable variable(what);
  variable.Assign(std::move(result));
  return CopyOf(variable.get());
}

constinit TagCounter tags;

/// Low byte first.
std::string Utf16Bytes(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

/// Characters from U+8000 on overflow, which clients rely on.
std::u16string Utf16Text(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<std::uint8_t>(bytes[i]);
    const auto high = static_cast<std::uint8_t>(bytes[i + 1]);
    if (high >= 0x80) RaiseRuntimeError(zepVbErrOverflow);
    text += static_cast<char16_t>(low | high << 8);
  }
  return text;
}

/// The bytes from index 1 on, whatever the array's lower bound is.
std::string_view BytesFromOne(const ArrayAccess& bytes, std::int64_t count) {
  if (count <= 0) return {};
  const auto* first = static_cast<const char*>(bytes.At(1));
  return {first, static_cast<std::size_t>(count)};
}

std::u16string DecodeOem(std::string_view bytes) {
  std::string ansi(bytes);
  ConvertOemToAnsi(ansi);
  return TextOfBytes(ansi, kAnsiCodePage);
}

std::string Encode(std::u16string_view text, ZepStringType type) {
  if (type == zepSTUnicode) return Utf16Bytes(text);
  if (type != zepSTAscii && type != zepSTAnsi) RaiseInCalledClass(zepErrBadCall);
  std::string bytes = BytesOf(text, kAnsiCodePage);
  if (type == zepSTAscii) ConvertAnsiToOem(bytes);
  return bytes;
}

}  // namespace

std::u16string ScalarMembers::ByteArrayToString(SAFEARRAY** ByteArray, ZepStringType StringType) {
  if (IsEmpty(*ByteArray)) return {};
  const ArrayAccess bytes(*ByteArray);
  if ((*ByteArray)->cbElements != 1) RaiseRuntimeError(zepVbErrTypeMismatch);
  switch (StringType) {
    case zepSTAscii:
      return DecodeOem(BytesFromOne(bytes, bytes.UpperBound()));
    case zepSTAnsi:
      return TextOfBytes(BytesFromOne(bytes, bytes.UpperBound()), kAnsiCodePage);
    case zepSTUnicode:
      return Utf16Text(BytesFromOne(bytes, bytes.UpperBound() / 2 * 2));
    default:
      RaiseInCalledClass(zepErrBadCall);
  }
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
  const std::string bytes = Encode(StringToConv, StringType);
  CheckUpperBound(static_cast<std::int64_t>(bytes.size()));
  SafeArray array = SafeArray::Create(VT_UI1, 1, static_cast<ULONG>(bytes.size()));
  std::copy(bytes.begin(), bytes.end(), array.Elements<char>());
  return array;
}

void ScalarMembers::SwapVars(VARIANT* Var1, VARIANT* Var2) {
  if (TypeNameOf(*Var1) != TypeNameOf(*Var2)) RaiseInCalledClass(zepErrBadParam);
  ClientVariable::Swap(ClientVariable(Var1), ClientVariable(Var2));
}

}  // namespace zepkit10

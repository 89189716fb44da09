#pragma once

#include <windows.h>
#include <oaidl.h>

#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/automation/string.h"

namespace zepkit10 {

/// An automation value that owns what it holds.
class Variant {
 public:
  Variant() noexcept { VariantInit(&value_); }
  explicit Variant(std::int32_t number) noexcept : Variant() {
    value_.vt = VT_I4;
    value_.lVal = number;
  }
  explicit Variant(double number) noexcept : Variant() {
    value_.vt = VT_R8;
    value_.dblVal = number;
  }
  explicit Variant(std::u16string_view text) : Variant() {
    value_.bstrVal = MakeBstr(text);
    value_.vt = VT_BSTR;
  }
  explicit Variant(IDispatch* object) noexcept : Variant() {
    value_.pdispVal = object;
    value_.vt = VT_DISPATCH;
    if (object) object->AddRef();
  }
  Variant(Variant&& other) noexcept : value_(other.Detach()) {}
  Variant& operator=(Variant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  const VARIANT& get() const { return value_; }
  /// For platform functions that fill or replace a value.
  VARIANT* Out() { return &value_; }
  VARIANT Detach() noexcept {
    VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }

 private:
  VARIANT value_;
};

/// A copy that owns what it holds; what comes by reference is copied from its place. Objects are
/// shared, arrays and texts are not.
Variant CopyOf(const VARIANT& value);

/// The value converted as the platform converts it for the user; error 13 or 6 where it cannot be.
std::int32_t ConvertToLong(const VARIANT& value);

/// The value behind by-reference Variants; null where one points nowhere or to itself.
const VARIANT* Follow(const VARIANT* value) noexcept;

/// True where an optional Variant parameter was left out, be it by the client's own caller.
inline bool IsMissing(const VARIANT* value) noexcept {
  if (!value) return true;
  const VARIANT* followed = Follow(value);
  return followed && followed->vt == VT_ERROR && followed->scode == DISP_E_PARAMNOTFOUND;
}

/// A 16- or 32-bit integer, by value or by reference; nothing for any other type.
std::optional<std::int32_t> IntegerOf(const VARIANT& value) noexcept;

/// A string, by value or by reference; nothing for any other type. Valid as long as the value.
std::optional<std::u16string_view> TextOf(const VARIANT& value) noexcept;

/// The value converted to text as the platform converts it for the user.
std::optional<std::u16string> ConvertToText(const VARIANT& value);

}  // namespace zepkit10

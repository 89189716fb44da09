#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/automation/ref.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/string.h"
#include "platform/automation/variant.h"

/// How the ABI's types become C++ types in a class's methods and back. `FromAbi` only looks at what
/// the caller owns; `ToAbi` gives ownership to the caller.
namespace zepkit10 {

template <class T>
requires(std::is_arithmetic_v<T> || std::is_pointer_v<T>) T FromAbi(T value) { return value; }
inline std::u16string_view FromAbi(BSTR text) { return ViewOf(text); }
inline const VARIANT& FromAbi(const VARIANT& value) { return value; }

/// Thrown where a client passes a null pointer for something by reference; becomes E_POINTER.
struct NullPointer {};

/// A value by reference, which the caller owns and the member may change.
template <class T>
T* Required(T* reference) {
  if (!reference) throw NullPointer();
  return reference;
}

template <class T>
requires(std::is_arithmetic_v<T> || std::is_enum_v<T>) T ToAbi(T value) { return value; }
inline VARIANT_BOOL ToAbi(bool flag) { return flag ? VARIANT_TRUE : VARIANT_FALSE; }
inline BSTR ToAbi(const std::u16string& text) { return MakeBstr(text); }
inline BSTR ToAbi(Bstr text) { return text.Detach(); }
inline VARIANT ToAbi(Variant value) { return value.Detach(); }
inline SAFEARRAY* ToAbi(SafeArray array) { return array.Detach(); }

/// What a member gives back that needs no guard: one that calls nobody outside of the library, and
/// sets the floating-point environment itself if it depends on it.
template <class T = void>
struct Unguarded {
  T value;

  Unguarded(T result) : value(result) {}
  operator T() const { return value; }
};
template <>
struct Unguarded<void> {};

template <class T>
T ToAbi(Unguarded<T> result) {
  return result.value;
}

template <class T>
auto ToAbi(const Ref<T>& object) -> decltype(object->Abi()) {
  if (!object) return nullptr;
  object->AddRef();
  return object->Abi();
}

template <class T>
T* ToAbi(Microsoft::WRL::ComPtr<T> object) {
  return object.Detach();
}

/// An array of Long whose lower bound is 1.
template <std::size_t Count>
SAFEARRAY* ToAbi(const std::array<std::int32_t, Count>& numbers) {
  SAFEARRAY* made = SafeArrayCreateVector(VT_I4, 1, Count);
  if (!made) throw std::bad_alloc();
  static_assert(sizeof(std::int32_t) == sizeof(LONG));
  CopyMemory(made->pvData, numbers.data(), sizeof numbers);
  return made;
}

}  // namespace zepkit10

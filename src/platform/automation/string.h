#pragma once

#include <windows.h>
#include <oaidl.h>

#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace zepkit10 {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the platform's text is UTF-16");

/// The text of a BSTR; a null BSTR is the empty text. Valid as long as the BSTR.
inline std::u16string_view ViewOf(BSTR text) {
  return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

inline std::u16string_view ViewOf(std::wstring_view text) {
  return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}

/// For platform functions that take text without `const` but do not write to it.
inline wchar_t* MutableText(const std::u16string& text) {
  return reinterpret_cast<wchar_t*>(const_cast<char16_t*>(text.c_str()));
}

inline const wchar_t* WideText(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}

/// A new BSTR of the whole text, embedded NULs included. The caller owns it.
inline BSTR MakeBstr(std::u16string_view text) {
  BSTR made = SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()),
                                static_cast<UINT>(text.size()));
  if (!made) throw std::bad_alloc();
  return made;
}

/// A BSTR on its way to a client, to be filled in place.
class Bstr {
 public:
  /// `std::bad_alloc` where there is no room for so many UTF-16 units.
  explicit Bstr(std::size_t length)
      : text_(length <= kMaxLength ? SysAllocStringLen(nullptr, static_cast<UINT>(length))
                                   : nullptr) {
    if (!text_) throw std::bad_alloc();
  }
  Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  ~Bstr() { SysFreeString(text_); }
  Bstr& operator=(const Bstr&) = delete;

  char16_t* data() { return reinterpret_cast<char16_t*>(text_); }
  BSTR Detach() noexcept { return std::exchange(text_, nullptr); }

 private:
  static constexpr std::size_t kMaxLength = 0x7FFFFFFF / sizeof(wchar_t) - 3;

  BSTR text_;
};

}  // namespace zepkit10

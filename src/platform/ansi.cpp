#include "platform/ansi.h"

#include <windows.h>

#include "platform/automation/string.h"

namespace zepkit10 {
namespace {

std::string Convert(std::u16string_view text, DWORD flags) {
  const auto* wide = reinterpret_cast<const wchar_t*>(text.data());
  const int count = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(CP_ACP, flags, wide, count, nullptr, 0, nullptr, nullptr);
  std::string ansi(size, '\0');
  WideCharToMultiByte(CP_ACP, flags, wide, count, ansi.data(), size, nullptr, nullptr);
  return ansi;
}

}  // namespace

std::string AnsiOf(std::u16string_view text) { return Convert(text, 0); }

std::string AnsiNameOf(std::u16string_view name) {
  // UTF-8 as ANSI code page lacks nothing and takes no flags.
  return Convert(name, GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS);
}

std::u16string TextOfAnsi(std::string_view ansi) {
  const int count = static_cast<int>(ansi.size());
  const int size = MultiByteToWideChar(CP_ACP, 0, ansi.data(), count, nullptr, 0);
  std::wstring text(size, L'\0');
  MultiByteToWideChar(CP_ACP, 0, ansi.data(), count, text.data(), size);
  return std::u16string(ViewOf(text));
}

}  // namespace zepkit10

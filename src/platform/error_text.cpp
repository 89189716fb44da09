#include "platform/error_text.h"

#include <windows.h>

#include <limits>

#include "enums.h"
#include "platform/automation/module.h"
#include "platform/automation/string.h"
#include "util/decimal_text.h"

namespace zepkit10 {
namespace {

constexpr std::int64_t kFirstStringId = 1001;  // of zepErrAwaitTerm, which has no entry itself

std::u16string FromStringTable(std::int32_t number) {
  const std::int64_t id =
      std::int64_t{number} - static_cast<std::int32_t>(ZepErrors::zepErrAwaitTerm) + kFirstStringId;
  if (id < 0 || id > std::numeric_limits<WORD>::max()) return {};
  const wchar_t* text = nullptr;
  const int length =
      LoadStringW(ThisModule(), static_cast<UINT>(id), reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? std::u16string(ViewOf(std::wstring_view(text, length))) : std::u16string();
}

std::u16string FromMessageTable(std::int32_t number) {
  wchar_t text[256];
  DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS, ThisModule(),
                     static_cast<DWORD>(number), 0, text, std::size(text), nullptr);
  while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) --length;
  return std::u16string(ViewOf(std::wstring_view(text, length)));
}

}  // namespace

std::u16string ErrorText(std::int32_t number) {
  std::u16string text = number > 0 ? FromMessageTable(number) : FromStringTable(number);
  if (!text.empty()) return text;
  return u"Description for err #" + DecimalText(number) + u" not found";
}

}  // namespace zepkit10

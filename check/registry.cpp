#include "registry.h"

namespace zepcheck {

std::optional<std::wstring> ReadClasses(const Place& place, const std::wstring& key,
                                        const wchar_t* name) {
  HKEY opened = nullptr;
  const REGSAM view = place.is_64_bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
  const std::wstring path = L"Software\\Classes\\" + key;
  if (RegOpenKeyExW(place.root, path.c_str(), 0, KEY_READ | view, &opened)) return std::nullopt;
  std::wstring text(256, L'\0');
  LSTATUS status;
  do {
    text.resize(2 * text.size());
    auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    // Environment variables in the text are expanded.
    status = RegGetValueW(opened, nullptr, name, RRF_RT_REG_SZ, nullptr, text.data(), &size);
  } while (status == ERROR_MORE_DATA);
  RegCloseKey(opened);
  if (status) return std::nullopt;
  return text.c_str();
}

}  // namespace zepcheck

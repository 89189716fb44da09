#include "registry.h"

namespace zepcheck {

std::optional<std::wstring> ReadClasses(const Place& place, const std::wstring& key,
                                        const wchar_t* name) {
  HKEY opened = nullptr;
  const REGSAM view = place.is_64_bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
  const std::wstring path = L"Software\\Classes\\" + key;
  if (RegOpenKeyExW(place.root, path.c_str(), 0, KEY_READ | view, &opened)) return std::nullopt;
  wchar_t text[1024];
  DWORD size = sizeof text;
  // Environment variables in the text are expanded.
  const LSTATUS status = RegGetValueW(opened, nullptr, name, RRF_RT_REG_SZ, nullptr, text, &size);
  RegCloseKey(opened);
  if (status) return std::nullopt;
  return std::wstring(text);
}

}  // namespace zepcheck

#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace zepcheck {

/// Where classes are registered: for whom, and for programs of which bitness.
struct Place {
  HKEY root;  // HKEY_LOCAL_MACHINE for all users, HKEY_CURRENT_USER for one
  bool is_64_bit;
};

/// A text below Software\Classes, the key's own value without a name; nothing if it is not there.
std::optional<std::wstring> ReadClasses(const Place& place, const std::wstring& key,
                                        const wchar_t* name = nullptr);

}  // namespace zepcheck

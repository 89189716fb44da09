#pragma once

#include <optional>
#include <string>

namespace zepcheck {

bool FileExists(const std::wstring& path);

/// Whether a program file or DLL is for 64-bit programs; nothing for any other file.
std::optional<bool> Is64BitFile(const std::wstring& path);

/// "1.0.0" from the file's description of itself, empty if it has none.
std::wstring VersionOfFile(const std::wstring& path);

/// Whether two paths are the same text but for letter case.
bool IsSamePath(const std::wstring& first, const std::wstring& second);

/// The path of this program.
std::wstring OwnPath();

}  // namespace zepcheck

#include "temporary_folder.h"

#include <windows.h>

namespace zepcheck {
namespace {

void Remove(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found)) {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      Remove(folder + L"\\" + name);
    } else {
      DeleteFileW((folder + L"\\" + name).c_str());
    }
  }
  if (search != INVALID_HANDLE_VALUE) FindClose(search);
  RemoveDirectoryW(folder.c_str());
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  wchar_t parent[MAX_PATH + 1];
  if (!GetTempPathW(MAX_PATH + 1, parent)) return;
  const std::wstring stem =
      std::wstring(parent) + L"zepcheck " + std::to_wstring(GetCurrentProcessId());
  // A folder of this name may be left from a process of the same number that was ended.
  constexpr int kMostTries = 1000;
  for (int i = 1; i <= kMostTries; ++i) {
    const std::wstring path = stem + L" " + std::to_wstring(i);
    if (CreateDirectoryW(path.c_str(), nullptr)) {
      path_ = path;
      return;
    }
    if (GetLastError() != ERROR_ALREADY_EXISTS) return;
  }
}

TemporaryFolder::~TemporaryFolder() {
  if (!path_.empty()) Remove(path_);
}

}  // namespace zepcheck

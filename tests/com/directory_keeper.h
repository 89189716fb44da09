#pragma once

#include <windows.h>

#include <string>

inline std::wstring CurrentDirectory() {
  wchar_t path[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, path);
  return path;
}

/// Dialogs may change the current directory of the program.
class DirectoryKeeper {
 public:
  ~DirectoryKeeper() { SetCurrentDirectoryW(directory_.c_str()); }

 private:
  const std::wstring directory_ = CurrentDirectory();
};

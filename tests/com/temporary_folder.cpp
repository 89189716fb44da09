#include "com/temporary_folder.h"

#include <windows.h>
#include <gtest/gtest.h>

namespace {

bool IsLink(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

/// Wine can neither make links nor remove them; its host can. Waits until the path has become a
/// link, or is none any more.
void RunOnHost(const wchar_t* program, std::wstring arguments, const std::wstring& link,
               bool exists) {
  for (wchar_t& c : arguments) {
    if (c == L'\\') c = L'/';
  }
  const std::size_t end = link.rfind(L'\\') + 1;
  std::wstring command = arguments + L" \"" + link.substr(end) + L"\"";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process;
  if (!CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      link.substr(0, end).c_str(), &startup, &process)) {
    return;
  }
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  for (int i = 0; i < 500 && IsLink(link) != exists; ++i) Sleep(10);
}

/// Names behind this prefix may be long and are taken as they are.
constexpr wchar_t kVerbatim[] = L"\\\\?\\";

std::wstring Verbatim(const std::wstring& path) { return kVerbatim + path; }

void RemoveTree(const std::wstring& path);

void RemoveContent(const std::wstring& path) {
  WIN32_FIND_DATAW entry;
  HANDLE search = FindFirstFileW((path + L"\\*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return;
  std::vector<std::wstring> names;
  do {
    names.emplace_back(entry.cFileName);
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  for (const std::wstring& name : names) {
    if (name != L"." && name != L"..") RemoveTree(path + L"\\" + name);
  }
}

void RemoveTree(const std::wstring& path) {
  if (IsLink(path)) {
    if (!RemoveDirectoryW(path.c_str())) {
      RunOnHost(L"Z:\\bin\\rm", L"rm", path.substr(std::size(kVerbatim) - 1), false);
    }
    return;
  }
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return;
  if (attributes & FILE_ATTRIBUTE_DIRECTORY) RemoveContent(path);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (!DeleteFileW(path.c_str())) RemoveDirectoryW(path.c_str());
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  static int count = 0;
  wchar_t parent[MAX_PATH + 1];
  GetTempPathW(MAX_PATH + 1, parent);
  wchar_t full[MAX_PATH + 1];  // without short names, so that listings show the same path
  if (GetLongPathNameW(parent, full, MAX_PATH + 1) == 0) wcscpy(full, parent);
  do {
    path_ = std::wstring(full) + L"zep" + std::to_wstring(GetCurrentProcessId()) + L"_" +
            std::to_wstring(++count) + L"\\";
  } while (!CreateDirectoryW(path_.c_str(), nullptr) && GetLastError() == ERROR_ALREADY_EXISTS);
}

TemporaryFolder::~TemporaryFolder() {
  // While they lead somewhere: those that do not are no longer seen.
  for (const std::wstring& link : links_) RemoveTree(Verbatim(link));
  const std::wstring folder = Verbatim(path_.substr(0, path_.size() - 1));
  RemoveTree(folder);
  EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(folder.c_str()));
}

std::wstring TemporaryFolder::File(std::wstring_view name, std::string_view bytes) const {
  const std::wstring path = *this / name;
  HANDLE file = CreateFileW(Verbatim(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_NE(INVALID_HANDLE_VALUE, file) << GetLastError();
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
  EXPECT_EQ(bytes.size(), written);
  return path;
}

std::wstring TemporaryFolder::Directory(std::wstring_view name) const {
  const std::wstring path = *this / name;
  EXPECT_TRUE(CreateDirectoryW(Verbatim(path).c_str(), nullptr)) << GetLastError();
  return path;
}

std::wstring TemporaryFolder::Nest(std::wstring_view name, int depth) const {
  std::wstring names(name);
  std::wstring last = Directory(names);
  for (int i = 1; i < depth; ++i) last = Directory(names.append(L"\\").append(name));
  return last;
}

bool TemporaryFolder::Link(std::wstring_view name, const std::wstring& target) {
  const std::wstring path = *this / name;
  CreateSymbolicLinkW(path.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
  if (!IsLink(path)) RunOnHost(L"Z:\\bin\\ln", L"ln -s \"" + target + L"\"", path, true);
  links_.push_back(path);
  return IsLink(path);
}

void TemporaryFolder::SetAttributes(std::wstring_view name, unsigned long attributes) const {
  EXPECT_TRUE(SetFileAttributesW(Verbatim(*this / name).c_str(), attributes));
}

bool TemporaryFolder::Has(std::wstring_view name) const {
  return GetFileAttributesW(Verbatim(*this / name).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string TemporaryFolder::Read(std::wstring_view name) const {
  HANDLE file = CreateFileW(Verbatim(*this / name).c_str(), GENERIC_READ,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(INVALID_HANDLE_VALUE, file) << GetLastError();
  if (file == INVALID_HANDLE_VALUE) return {};
  std::string bytes(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  CloseHandle(file);
  EXPECT_EQ(bytes.size(), read);
  return bytes;
}

void TemporaryFolder::Remove(std::wstring_view name) const { RemoveTree(Verbatim(*this / name)); }

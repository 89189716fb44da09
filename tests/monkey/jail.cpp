#include "monkey/jail.h"

#include <windows.h>

#include <cstdio>
#include <set>
#include <vector>

#include "com/import_hook.h"

DECLARE_IMPORT(CloseHandle, 4);
DECLARE_IMPORT(CreateDirectoryW, 8);
DECLARE_IMPORT(CreateFileW, 28);
DECLARE_IMPORT(FindFirstFileExW, 24);
DECLARE_IMPORT(GetFileAttributesW, 4);
DECLARE_IMPORT(GetPrivateProfileStringA, 24);
DECLARE_IMPORT(GetProfileStringA, 20);
DECLARE_IMPORT(WriteFile, 20);
DECLARE_IMPORT(WritePrivateProfileStringA, 16);
DECLARE_IMPORT(WriteProfileStringA, 12);

namespace monkey {
namespace {

constexpr long kDiskSpace = 20000;  // bytes that one call may write

std::wstring folder;  // in which everything has to be
std::set<HANDLE> open_files;
long free_space = kDiskSpace;

using Close = ImportHook<&__imp_CloseHandle>;
using MakeDirectory = ImportHook<&__imp_CreateDirectoryW>;
using Open = ImportHook<&__imp_CreateFileW>;
using Find = ImportHook<&__imp_FindFirstFileExW>;
using Attributes = ImportHook<&__imp_GetFileAttributesW>;
using ReadProfile = ImportHook<&__imp_GetPrivateProfileStringA>;
using ReadUserProfile = ImportHook<&__imp_GetProfileStringA>;
using Write = ImportHook<&__imp_WriteFile>;
using WriteProfile = ImportHook<&__imp_WritePrivateProfileStringA>;
using WriteUserProfile = ImportHook<&__imp_WriteProfileStringA>;

constexpr wchar_t kVerbatim[] = L"\\\\?\\";

bool IsInside(const wchar_t* name) {
  static wchar_t room[32768];
  const DWORD length = GetFullPathNameW(name, std::size(room), room, nullptr);
  if (length == 0 || length >= std::size(room)) return false;
  std::wstring full(room, length);
  if (full.starts_with(kVerbatim)) full.erase(0, std::size(kVerbatim) - 1);
  if (full.find(L"\\..") != std::wstring::npos || full.find(L'/') != std::wstring::npos)
    return false;
  full += L'\\';
  return _wcsnicmp(full.c_str(), folder.c_str(), folder.size()) == 0;
}

/// Refuses a name that leads outside.
bool Passes(const wchar_t* name) {
  if (IsInside(name)) return true;
  SetLastError(ERROR_ACCESS_DENIED);
  return false;
}

/// The system looks for names without a folder in its own one.
bool Passes(const char* name) {
  const std::string narrow(name);
  const bool has_folder = narrow.find_first_of("\\/:") != std::string::npos;
  return has_folder && Passes(std::wstring(narrow.begin(), narrow.end()).c_str());
}

HANDLE WINAPI OpenInside(const wchar_t* name, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                         HANDLE pattern) {
  if (!Passes(name)) return INVALID_HANDLE_VALUE;
  HANDLE file = Open::kSystem(name, access, share, security, disposition, flags, pattern);
  if (file != INVALID_HANDLE_VALUE) open_files.insert(file);
  return file;
}

BOOL WINAPI CloseTracked(HANDLE handle) {
  open_files.erase(handle);
  return Close::kSystem(handle);
}

BOOL WINAPI WriteWhereThereIsRoom(HANDLE file, const void* bytes, DWORD count, DWORD* written,
                                  OVERLAPPED* overlapped) {
  free_space -= static_cast<long>(count);
  if (free_space >= 0) return Write::kSystem(file, bytes, count, written, overlapped);
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

BOOL WINAPI MakeDirectoryInside(const wchar_t* name, SECURITY_ATTRIBUTES* security) {
  return Passes(name) && MakeDirectory::kSystem(name, security);
}

HANDLE WINAPI FindInside(const wchar_t* name, FINDEX_INFO_LEVELS level, void* data,
                         FINDEX_SEARCH_OPS operation, void* filter, DWORD flags) {
  if (!Passes(name)) return INVALID_HANDLE_VALUE;
  return Find::kSystem(name, level, data, operation, filter, flags);
}

DWORD WINAPI AttributesInside(const wchar_t* name) {
  return Passes(name) ? Attributes::kSystem(name) : INVALID_FILE_ATTRIBUTES;
}

DWORD GiveDefault(const char* otherwise, char* room, DWORD size) {
  lstrcpynA(room, otherwise, static_cast<int>(size));
  return static_cast<DWORD>(lstrlenA(room));
}

DWORD WINAPI ReadProfileInside(const char* section, const char* key, const char* otherwise,
                               char* room, DWORD size, const char* name) {
  return Passes(name) ? ReadProfile::kSystem(section, key, otherwise, room, size, name)
                      : GiveDefault(otherwise, room, size);
}

DWORD WINAPI ReadNoUserProfile(const char*, const char*, const char* otherwise, char* room,
                               DWORD size) {
  return GiveDefault(otherwise, room, size);
}

BOOL WINAPI WriteProfileInside(const char* section, const char* key, const char* text,
                               const char* name) {
  return Passes(name) && WriteProfile::kSystem(section, key, text, name);
}

BOOL WINAPI WriteNoUserProfile(const char*, const char*, const char*) { return TRUE; }

std::wstring MakeFolder() {
  wchar_t parent[MAX_PATH + 1], name[32];
  GetTempPathW(MAX_PATH + 1, parent);
  // Digits of one count: what is done with a path depends on its length.
  std::swprintf(name, std::size(name), L"monkey%08lu", GetCurrentProcessId());
  const std::wstring path = std::wstring(parent) + name;
  CreateDirectoryW(path.c_str(), nullptr);
  return path + L"\\";
}

void RemoveContent(const std::wstring& path) {
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW((kVerbatim + path + L"*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return;
  std::vector<std::wstring> files, folders;
  do {
    const std::wstring name = entry.cFileName;
    const bool is_folder = entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
    if (name != L"." && name != L"..") (is_folder ? folders : files).push_back(path + name);
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  for (const std::wstring& file : files) DeleteFileW((kVerbatim + file).c_str());
  for (const std::wstring& inner : folders) {
    RemoveContent(inner + L"\\");
    RemoveDirectoryW((kVerbatim + inner).c_str());
  }
}

void MakeFile(const std::wstring& path, const char* text) {
  const HANDLE file = Open::kSystem(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  Write::kSystem(file, text, static_cast<DWORD>(std::char_traits<char>::length(text)), &written,
                 nullptr);
  Close::kSystem(file);
}

}  // namespace

struct Jail::Hooks {
  const Close close{CloseTracked};
  const MakeDirectory make_directory{MakeDirectoryInside};
  const Open open{OpenInside};
  const Find find{FindInside};
  const Attributes attributes{AttributesInside};
  const ReadProfile read_profile{ReadProfileInside};
  const ReadUserProfile read_user_profile{ReadNoUserProfile};
  const Write write{WriteWhereThereIsRoom};
  const WriteProfile write_profile{WriteProfileInside};
  const WriteUserProfile write_user_profile{WriteNoUserProfile};
};

Jail::Jail() : path_(MakeFolder()), hooks_(std::make_unique<Hooks>()) {
  folder = path_;
  SetCurrentDirectoryW(path_.c_str());
}

Jail::~Jail() {
  CleanUp();
  wchar_t parent[MAX_PATH + 1];
  GetTempPathW(MAX_PATH + 1, parent);
  SetCurrentDirectoryW(parent);
  RemoveContent(path_);
  RemoveDirectoryW(path_.c_str());
}

void Jail::CleanUp() {
  for (const HANDLE file : open_files) Close::kSystem(file);
  open_files.clear();
  RemoveContent(path_);
  constexpr char kSettings[] =
      "[x]\r\nx=1\r\na=2\r\n1=3\r\n[Text]\r\nx=4\r\na "
      "name=5\r\n[1]\r\na=6\r\nText=7\r\n[a]\r\nx=8\r\n";
  CreateDirectoryW((path_ + L"folder").c_str(), nullptr);
  for (const wchar_t* name : {L"a.txt", L"settings.ini", L"folder\\c.txt"}) {
    MakeFile(path_ + name, kSettings);
  }
  MakeFile(path_ + L"b", "");
}

void Jail::Refill() { free_space = kDiskSpace; }

}  // namespace monkey

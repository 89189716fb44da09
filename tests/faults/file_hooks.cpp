#include "faults/file_hooks.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "com/fault_plan.h"
#include "com/import_hook.h"

DECLARE_IMPORT(CloseHandle, 4);
DECLARE_IMPORT(CreateDirectoryW, 8);
DECLARE_IMPORT(CreateFileW, 28);
DECLARE_IMPORT(FindClose, 4);
DECLARE_IMPORT(FindFirstFileExW, 24);
DECLARE_IMPORT(FindNextFileW, 8);
DECLARE_IMPORT(GetFileAttributesW, 4);
DECLARE_IMPORT(GetFileInformationByHandle, 8);
DECLARE_IMPORT(GetFileSizeEx, 8);
DECLARE_IMPORT(GetFullPathNameW, 16);
DECLARE_IMPORT(GetPrivateProfileStringA, 24);
DECLARE_IMPORT(GetProfileStringA, 20);
DECLARE_IMPORT(ReadFile, 20);
DECLARE_IMPORT(SetEndOfFile, 4);
DECLARE_IMPORT(SetFilePointerEx, 20);
DECLARE_IMPORT(WriteFile, 20);
DECLARE_IMPORT(WritePrivateProfileStringA, 16);
DECLARE_IMPORT(WriteProfileStringA, 12);

namespace faults {
namespace {

template <auto* slot>
using Hook = ImportHook<slot>;

FileFault current;
std::set<HANDLE> open_handles;
std::vector<int> empty_readings;
int readings = 0;

bool FailsAsError(Operation& operation) {
  if (current.is_short || !Fails(operation)) return false;
  SetLastError(current.error);
  return true;
}

#define OPERATION(name) Operation operation_##name(Kind::kFile, #name)
OPERATION(CreateDirectoryW);
OPERATION(CreateFileW);
OPERATION(FindFirstFileExW);
OPERATION(FindNextFileW);
OPERATION(GetFileAttributesW);
OPERATION(GetFileInformationByHandle);
OPERATION(GetFileSizeEx);
OPERATION(GetFullPathNameW);
OPERATION(GetPrivateProfileStringA);
OPERATION(GetProfileStringA);
OPERATION(ReadFile);
OPERATION(SetEndOfFile);
OPERATION(SetFilePointerEx);
OPERATION(WriteFile);
OPERATION(WritePrivateProfileStringA);
OPERATION(WriteProfileStringA);
#undef OPERATION

HANDLE Kept(HANDLE opened) {
  if (IsInside() && opened != INVALID_HANDLE_VALUE) {
    const InsideHook inside;
    open_handles.insert(opened);
  }
  return opened;
}

void Forget(HANDLE closed) {
  const InsideHook inside;
  open_handles.erase(closed);
}

HANDLE WINAPI Create(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                     DWORD disposition, DWORD flags, HANDLE pattern) {
  if (FailsAsError(operation_CreateFileW)) return INVALID_HANDLE_VALUE;
  return Kept(Hook<&__imp_CreateFileW>::kSystem(name, access, share, security, disposition, flags,
                                                pattern));
}
BOOL WINAPI Close(HANDLE file) {
  Forget(file);
  return Hook<&__imp_CloseHandle>::kSystem(file);
}
HANDLE WINAPI FindFirst(const wchar_t* name, FINDEX_INFO_LEVELS level, void* data,
                        FINDEX_SEARCH_OPS search, void* filter, DWORD flags) {
  if (FailsAsError(operation_FindFirstFileExW)) return INVALID_HANDLE_VALUE;
  return Kept(Hook<&__imp_FindFirstFileExW>::kSystem(name, level, data, search, filter, flags));
}
BOOL WINAPI FindEnd(HANDLE search) {
  Forget(search);
  return Hook<&__imp_FindClose>::kSystem(search);
}
BOOL WINAPI FindNext(HANDLE search, WIN32_FIND_DATAW* data) {
  return !FailsAsError(operation_FindNextFileW) &&
         Hook<&__imp_FindNextFileW>::kSystem(search, data);
}
BOOL WINAPI Read(HANDLE file, void* bytes, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
  ++readings;
  if (current.is_short && Fails(operation_ReadFile)) {
    const InsideHook inside;
    empty_readings.push_back(readings - 1);
    return Hook<&__imp_ReadFile>::kSystem(file, bytes, 0, count, overlapped);
  }
  return !FailsAsError(operation_ReadFile) &&
         Hook<&__imp_ReadFile>::kSystem(file, bytes, size, count, overlapped);
}
BOOL WINAPI Write(HANDLE file, const void* bytes, DWORD size, DWORD* count,
                  OVERLAPPED* overlapped) {
  const bool cut = current.is_short && Fails(operation_WriteFile);
  return !FailsAsError(operation_WriteFile) &&
         Hook<&__imp_WriteFile>::kSystem(file, bytes, cut ? size / 2 : size, count, overlapped);
}
BOOL WINAPI Size(HANDLE file, LARGE_INTEGER* size) {
  return !FailsAsError(operation_GetFileSizeEx) && Hook<&__imp_GetFileSizeEx>::kSystem(file, size);
}
BOOL WINAPI Move(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* position, DWORD method) {
  return !FailsAsError(operation_SetFilePointerEx) &&
         Hook<&__imp_SetFilePointerEx>::kSystem(file, distance, position, method);
}
BOOL WINAPI Cut(HANDLE file) {
  return !FailsAsError(operation_SetEndOfFile) && Hook<&__imp_SetEndOfFile>::kSystem(file);
}
BOOL WINAPI Information(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
  return !FailsAsError(operation_GetFileInformationByHandle) &&
         Hook<&__imp_GetFileInformationByHandle>::kSystem(file, information);
}
DWORD WINAPI Attributes(const wchar_t* name) {
  if (FailsAsError(operation_GetFileAttributesW)) return INVALID_FILE_ATTRIBUTES;
  return Hook<&__imp_GetFileAttributesW>::kSystem(name);
}
DWORD WINAPI FullPath(const wchar_t* name, DWORD size, wchar_t* path, wchar_t** part) {
  if (FailsAsError(operation_GetFullPathNameW)) return 0;
  return Hook<&__imp_GetFullPathNameW>::kSystem(name, size, path, part);
}
BOOL WINAPI MakeDirectory(const wchar_t* name, SECURITY_ATTRIBUTES* security) {
  return !FailsAsError(operation_CreateDirectoryW) &&
         Hook<&__imp_CreateDirectoryW>::kSystem(name, security);
}
/// A file that cannot be read has no entries.
DWORD FindNoEntry(const char* missing, char* buffer, DWORD size) {
  const std::size_t length = std::min<std::size_t>(std::strlen(missing), size - 1);
  std::memcpy(buffer, missing, length);
  buffer[length] = '\0';
  return static_cast<DWORD>(length);
}
DWORD WINAPI ReadProfile(const char* section, const char* key, const char* missing, char* buffer,
                         DWORD size, const char* file) {
  if (FailsAsError(operation_GetPrivateProfileStringA)) return FindNoEntry(missing, buffer, size);
  return Hook<&__imp_GetPrivateProfileStringA>::kSystem(section, key, missing, buffer, size, file);
}
DWORD WINAPI ReadSystemProfile(const char* section, const char* key, const char* missing,
                               char* buffer, DWORD size) {
  if (FailsAsError(operation_GetProfileStringA)) return FindNoEntry(missing, buffer, size);
  return Hook<&__imp_GetProfileStringA>::kSystem(section, key, missing, buffer, size);
}
BOOL WINAPI WriteProfile(const char* section, const char* key, const char* value,
                         const char* file) {
  return !FailsAsError(operation_WritePrivateProfileStringA) &&
         Hook<&__imp_WritePrivateProfileStringA>::kSystem(section, key, value, file);
}
BOOL WINAPI WriteSystemProfile(const char* section, const char* key, const char* value) {
  return !FailsAsError(operation_WriteProfileStringA) &&
         Hook<&__imp_WriteProfileStringA>::kSystem(section, key, value);
}

}  // namespace

struct FileHooks::All {
  const Hook<&__imp_CreateFileW> create{Create};
  const Hook<&__imp_CloseHandle> close{Close};
  const Hook<&__imp_FindFirstFileExW> find_first{FindFirst};
  const Hook<&__imp_FindNextFileW> find_next{FindNext};
  const Hook<&__imp_FindClose> find_end{FindEnd};
  const Hook<&__imp_ReadFile> read{Read};
  const Hook<&__imp_WriteFile> write{Write};
  const Hook<&__imp_GetFileSizeEx> size{Size};
  const Hook<&__imp_SetFilePointerEx> move{Move};
  const Hook<&__imp_SetEndOfFile> cut{Cut};
  const Hook<&__imp_GetFileInformationByHandle> information{Information};
  const Hook<&__imp_GetFileAttributesW> attributes{Attributes};
  const Hook<&__imp_GetFullPathNameW> full_path{FullPath};
  const Hook<&__imp_CreateDirectoryW> make_directory{MakeDirectory};
  const Hook<&__imp_GetPrivateProfileStringA> read_profile{ReadProfile};
  const Hook<&__imp_WritePrivateProfileStringA> write_profile{WriteProfile};
  const Hook<&__imp_GetProfileStringA> read_system_profile{ReadSystemProfile};
  const Hook<&__imp_WriteProfileStringA> write_system_profile{WriteSystemProfile};
};

FileHooks::FileHooks(const FileFault& fault) : all_(std::make_unique<All>()) { current = fault; }
FileHooks::~FileHooks() = default;

std::size_t FileHooks::OpenHandles() { return open_handles.size(); }

void FileHooks::CloseHandles() {
  for (HANDLE file : std::exchange(open_handles, {})) Hook<&__imp_CloseHandle>::kSystem(file);
}

const std::vector<int>& FileHooks::EmptyReadings() { return empty_readings; }

void FileHooks::CountReadings() {
  empty_readings.clear();
  readings = 0;
}

}  // namespace faults

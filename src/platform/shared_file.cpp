#include "platform/shared_file.h"

#include "platform/automation/string.h"
#include "platform/file_system.h"

namespace zepkit10 {
namespace {

bool IsReadOnly(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION information;
  return GetFileInformationByHandle(file, &information) &&
         (information.dwFileAttributes & FILE_ATTRIBUTE_READONLY);
}

}  // namespace

FileHandle OpenShared(std::u16string_view path, DWORD access, DWORD disposition) {
  FileHandle file = OwnFile(CreateFileW(WideText(SystemName(path)), access, FILE_SHARE_READ,
                                        nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
  // Some systems let an administrator write to a file in spite of its attribute.
  if (file && (access & GENERIC_WRITE) && IsReadOnly(file.get())) {
    file = nullptr;
    SetLastError(ERROR_ACCESS_DENIED);
  }
  return file;
}

}  // namespace zepkit10

#include "platform/file_errors.h"

#include <windows.h>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepVbErrors3To98;

struct Row {
  DWORD system_error;
  ZepVbErrors3To98 number;
};

constexpr DWORD kDiskQuotaExceeded = 1295;  // not in every set of headers

constexpr Row kTable[] = {
    {ERROR_INVALID_PARAMETER, zepVbErrBadCall},
    {ERROR_NEGATIVE_SEEK, zepVbErrBadCall},

    {ERROR_NOT_ENOUGH_MEMORY, zepVbErrOutOfMemory},
    {ERROR_OUTOFMEMORY, zepVbErrOutOfMemory},
    {ERROR_NO_SYSTEM_RESOURCES, zepVbErrOutOfMemory},
    {ERROR_COMMITMENT_LIMIT, zepVbErrOutOfMemory},

    {ERROR_INVALID_NAME, zepVbErrBadFileNameOrNumber},
    {ERROR_INVALID_HANDLE, zepVbErrBadFileNameOrNumber},
    {ERROR_FILENAME_EXCED_RANGE, zepVbErrBadFileNameOrNumber},
    {ERROR_BUFFER_OVERFLOW, zepVbErrBadFileNameOrNumber},

    {ERROR_FILE_NOT_FOUND, zepVbErrFileNotFound},
    {ERROR_NO_MORE_FILES, zepVbErrFileNotFound},

    {ERROR_OPEN_FILES, zepVbErrFileAlreadyOpen},

    {ERROR_READ_FAULT, zepVbErrDeviceIOError},
    {ERROR_WRITE_FAULT, zepVbErrDeviceIOError},
    {ERROR_GEN_FAILURE, zepVbErrDeviceIOError},
    {ERROR_CRC, zepVbErrDeviceIOError},
    {ERROR_SEEK, zepVbErrDeviceIOError},
    {ERROR_SECTOR_NOT_FOUND, zepVbErrDeviceIOError},
    {ERROR_IO_DEVICE, zepVbErrDeviceIOError},
    {ERROR_FILE_CORRUPT, zepVbErrDeviceIOError},
    {ERROR_DISK_CORRUPT, zepVbErrDeviceIOError},
    {ERROR_BROKEN_PIPE, zepVbErrDeviceIOError},
    {ERROR_NO_DATA, zepVbErrDeviceIOError},
    {ERROR_OPERATION_ABORTED, zepVbErrDeviceIOError},

    {ERROR_FILE_EXISTS, zepVbErrFileAlreadyExists},
    {ERROR_ALREADY_EXISTS, zepVbErrFileAlreadyExists},

    {ERROR_DISK_FULL, zepVbErrDiskFull},
    {ERROR_HANDLE_DISK_FULL, zepVbErrDiskFull},
    {kDiskQuotaExceeded, zepVbErrDiskFull},
    {ERROR_FILE_TOO_LARGE, zepVbErrDiskFull},

    {ERROR_HANDLE_EOF, zepVbErrInputPastEOF},

    {ERROR_TOO_MANY_OPEN_FILES, zepVbErrTooManyFiles},

    {ERROR_BAD_UNIT, zepVbErrDeviceUnavailable},
    {ERROR_INVALID_DRIVE, zepVbErrDeviceUnavailable},
    {ERROR_DEV_NOT_EXIST, zepVbErrDeviceUnavailable},
    {ERROR_DEVICE_NOT_CONNECTED, zepVbErrDeviceUnavailable},
    {ERROR_DEVICE_REMOVED, zepVbErrDeviceUnavailable},

    {ERROR_SHARING_VIOLATION, zepVbErrPermissionDenied},
    {ERROR_LOCK_VIOLATION, zepVbErrPermissionDenied},
    {ERROR_WRITE_PROTECT, zepVbErrPermissionDenied},
    {ERROR_BUSY, zepVbErrPermissionDenied},
    {ERROR_USER_MAPPED_FILE, zepVbErrPermissionDenied},

    {ERROR_NOT_READY, zepVbErrDiskNotReady},
    {ERROR_NO_MEDIA_IN_DRIVE, zepVbErrDiskNotReady},
    {ERROR_UNRECOGNIZED_MEDIA, zepVbErrDiskNotReady},

    {ERROR_NOT_SAME_DEVICE, zepVbErrCantRenameWithDifferentDrive},

    {ERROR_PATH_NOT_FOUND, zepVbErrPathNotFound},
    {ERROR_BAD_PATHNAME, zepVbErrPathNotFound},
    {ERROR_DIRECTORY, zepVbErrPathNotFound},
    {ERROR_BAD_NETPATH, zepVbErrPathNotFound},
    {ERROR_BAD_NET_NAME, zepVbErrPathNotFound},
};

}  // namespace

ZepVbErrors3To98 RuntimeErrorOf(unsigned long system_error) noexcept {
  for (const Row& row : kTable) {
    if (row.system_error == system_error) return row.number;
  }
  // Refused access of any kind: to a directory, a file that is read-only, a folder in use …
  return zepVbErrPathOrFileAccessError;
}

void RaiseFileError(unsigned long system_error, std::u16string_view class_name) {
  RaiseRuntimeError(RuntimeErrorOf(system_error), class_name);
}

}  // namespace zepkit10

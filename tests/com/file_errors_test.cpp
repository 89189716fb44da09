// The runtime's numbers for the errors of the system's file functions.
#include "platform/file_errors.h"

#include "com/component.h"

namespace {

TEST(FileErrorsTest, EveryKindHasItsNumber) {
  const std::map<DWORD, int> expected = {
      {ERROR_INVALID_PARAMETER, 5},
      {ERROR_OUTOFMEMORY, 7},
      {ERROR_INVALID_NAME, 52},
      {ERROR_FILE_NOT_FOUND, 53},
      {ERROR_OPEN_FILES, 55},
      {ERROR_WRITE_FAULT, 57},
      {ERROR_CRC, 57},
      {ERROR_FILE_EXISTS, 58},
      {ERROR_DISK_FULL, 61},
      {ERROR_HANDLE_DISK_FULL, 61},
      {ERROR_HANDLE_EOF, 62},
      {ERROR_TOO_MANY_OPEN_FILES, 67},
      {ERROR_INVALID_DRIVE, 68},
      {ERROR_SHARING_VIOLATION, 70},
      {ERROR_LOCK_VIOLATION, 70},
      {ERROR_WRITE_PROTECT, 70},
      {ERROR_NOT_READY, 71},
      {ERROR_NOT_SAME_DEVICE, 74},
      {ERROR_ACCESS_DENIED, 75},
      {ERROR_CURRENT_DIRECTORY, 75},
      {ERROR_PATH_NOT_FOUND, 76},
      {ERROR_BAD_NETPATH, 76},
      {ERROR_DIRECTORY, 76},
  };
  for (const auto& [error, number] : expected) {
    EXPECT_EQ(number, static_cast<int>(zepkit10::RuntimeErrorOf(error))) << error;
  }
}

TEST(FileErrorsTest, AnyOtherIsAnAccessError) {
  EXPECT_EQ(75, static_cast<int>(zepkit10::RuntimeErrorOf(0xFFFFFFFF)));
  EXPECT_EQ(75, static_cast<int>(zepkit10::RuntimeErrorOf(ERROR_DIR_NOT_EMPTY)));
}

}  // namespace

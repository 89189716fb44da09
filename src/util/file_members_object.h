#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace zepkit10 {

/// The members of `Library` and `Global` that work on files, directories and INI entries.
class FileMembers {
 public:
  /// Puts the full paths of the files found into a new array from 0 and returns their number; -1
  /// where the listing cannot be started. Without files the array stays as it is. A locked or
  /// fixed-size array raises error 10 in any case. An empty `FileSpec` stands for every file.
  static std::int32_t GetFiles(std::u16string_view Path, std::u16string_view FileSpec,
                               SAFEARRAY** Files, bool Recursive);
  /// The name of a subdirectory, counted from 1 in the system's order, hidden ones included; empty
  /// where there is none.
  static std::u16string GetSubDir(std::u16string_view Path, std::int16_t DirInd);
  static std::u16string IniEntry(std::u16string_view FileName, std::u16string_view Section,
                                 std::u16string_view Key);
  static void SetIniEntry(std::u16string_view FileName, std::u16string_view Section,
                          std::u16string_view Key, std::u16string_view NewIniEntry);
  static bool IsValidDir(std::u16string_view Path);
  static bool IsValidFile(std::u16string_view Path);
  /// Creates a directory and its missing parents, from the root on: a drive, the share of a server,
  /// or the current drive's root are never made.
  static bool MakeDir(std::u16string_view Path);
};

}  // namespace zepkit10

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
  static std::int32_t GetFiles(std::u16string_view Path, std::u16string_view FileSpec,
                               SAFEARRAY** Files, bool Recursive);
  static std::u16string GetSubDir(std::u16string_view Path, std::int16_t DirInd);
  static std::u16string IniEntry(std::u16string_view FileName, std::u16string_view Section,
                                 std::u16string_view Key);
  static void SetIniEntry(std::u16string_view FileName, std::u16string_view Section,
                          std::u16string_view Key, std::u16string_view NewIniEntry);
  static bool IsValidDir(std::u16string_view Path);
  static bool IsValidFile(std::u16string_view Path);
  static bool MakeDir(std::u16string_view Path);
};

}  // namespace zepkit10

#include "util/file_members_object.h"

#include "frame/errors.h"

namespace zepkit10 {

using enum ZepErrors;

std::int32_t FileMembers::GetFiles(std::u16string_view, std::u16string_view, SAFEARRAY**, bool) {
  RaiseInCalledClass(zepErrUnexpected);
}
std::u16string FileMembers::GetSubDir(std::u16string_view, std::int16_t) {
  RaiseInCalledClass(zepErrUnexpected);
}
std::u16string FileMembers::IniEntry(std::u16string_view, std::u16string_view,
                                     std::u16string_view) {
  RaiseInCalledClass(zepErrUnexpected);
}
void FileMembers::SetIniEntry(std::u16string_view, std::u16string_view, std::u16string_view,
                              std::u16string_view) {
  RaiseInCalledClass(zepErrUnexpected);
}
bool FileMembers::IsValidDir(std::u16string_view) { RaiseInCalledClass(zepErrUnexpected); }
bool FileMembers::IsValidFile(std::u16string_view) { RaiseInCalledClass(zepErrUnexpected); }
bool FileMembers::MakeDir(std::u16string_view) { RaiseInCalledClass(zepErrUnexpected); }

}  // namespace zepkit10

#include "util/file_members_object.h"

#include "frame/errors.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/string.h"
#include "platform/file_system.h"
#include "platform/file_tree.h"
#include "platform/profile.h"

namespace zepkit10 {

using enum ZepErrors;
using enum ZepVbErrors3To98;

namespace {

std::u16string DirectoryName(std::u16string_view path) {
  std::u16string name(path);
  if (!name.ends_with(u'\\')) name.append(1, u'\\');
  return name;
}

void CheckReplaceable(SAFEARRAY* array) {
  constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  if (!array) return;
  if (array->cLocks > 0 || (array->fFeatures & kFixed)) {
    RaiseRuntimeError(zepVbErrArrayFixedOrLocked);
  }
  if (!(array->fFeatures & FADF_BSTR)) RaiseRuntimeError(zepVbErrTypeMismatch);
}

SafeArray ArrayOf(const std::vector<std::u16string>& texts) {
  SafeArray array = SafeArray::Create(VT_BSTR, 0, static_cast<ULONG>(texts.size()));
  BSTR* element = array.Elements<BSTR>();
  for (const std::u16string& text : texts) *element++ = MakeBstr(text);
  return array;
}

/// The length of what leads to the first directory that can be made: a drive of a verbatim path, a
/// share of a server, or the root of the current drive.
std::size_t RootLength(std::u16string_view path) {
  const auto after = [path](std::size_t from, int names) {
    for (; names > 0 && from < path.size(); --names) from = path.find(u'\\', from) + 1;
    return from;
  };
  if (path.starts_with(u"\\\\?\\UNC\\")) return after(8, 2);
  if (path.starts_with(u"\\\\?\\") || path.starts_with(u"\\\\.\\")) return after(4, 1);
  if (path.starts_with(u"\\\\")) return after(2, 2);
  return path.starts_with(u'\\') ? 1 : 0;
}

}  // namespace

std::int32_t FileMembers::GetFiles(std::u16string_view Path, std::u16string_view FileSpec,
                                   SAFEARRAY** Files, bool Recursive) {
  const auto found = FilesIn(DirectoryName(Path), FileSpec, Recursive);
  if (!found) return -1;
  if (found->empty()) return 0;
  CheckReplaceable(*Files);
  SafeArray array = ArrayOf(*found);
  if (FAILED(SafeArrayDestroy(*Files))) RaiseRuntimeError(zepVbErrArrayFixedOrLocked);
  *Files = array.Detach();
  return static_cast<std::int32_t>(found->size());
}

std::u16string FileMembers::GetSubDir(std::u16string_view Path, std::int16_t DirInd) {
  DirectoryListing listing(DirectoryName(Path), u"*");
  for (std::int16_t count = 0; count < DirInd && listing.Next();) {
    if (listing.IsSubdirectory() && ++count == DirInd) return std::u16string(listing.Name());
  }
  return {};
}

std::u16string FileMembers::IniEntry(std::u16string_view FileName, std::u16string_view Section,
                                     std::u16string_view Key) {
  if (!FileName.empty() && !IsFile(FileName)) RaiseInCalledClass(zepErrFileNotFound);
  const auto value = ReadProfileEntry(FileName, Section, Key);
  if (!value) RaiseInCalledClass(zepErrEntryNotExistant);
  return *value;
}

void FileMembers::SetIniEntry(std::u16string_view FileName, std::u16string_view Section,
                              std::u16string_view Key, std::u16string_view NewIniEntry) {
  WriteProfileEntry(FileName, Section, Key, NewIniEntry);
}

bool FileMembers::IsValidDir(std::u16string_view Path) { return IsDirectory(Path); }

bool FileMembers::IsValidFile(std::u16string_view Path) { return IsFile(Path); }

bool FileMembers::MakeDir(std::u16string_view Path) {
  if (Path.empty()) return false;
  const std::u16string path = DirectoryName(Path);
  std::size_t end = path.find(u'\\', RootLength(path));
  if (end == std::u16string::npos) return IsDirectory(path);  // a root alone
  for (; end != std::u16string::npos; end = path.find(u'\\', end + 1)) {
    const auto prefix = std::u16string_view(path).substr(0, end);
    if (!IsDirectory(prefix) && !MakeDirectory(prefix)) return false;
  }
  return true;
}

}  // namespace zepkit10

#include "platform/file_system.h"

#include "platform/automation/string.h"

namespace zepkit10 {
namespace {

// Directories must leave room for a short name (12 characters) below the limit of 260.
constexpr std::size_t kShortPath = MAX_PATH - 12 - 1;
constexpr char16_t kNoName[] = u"|";

bool HasNul(std::u16string_view text) { return text.find(u'\0') != std::u16string_view::npos; }

bool IsVerbatim(std::u16string_view path) {
  return path.starts_with(u"\\\\?\\") || path.starts_with(u"\\\\.\\");
}

std::u16string FullPath(const std::u16string& path) {
  std::wstring full(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFullPathNameW(WideText(path), static_cast<DWORD>(full.size()), full.data(), nullptr);
    const bool fits = length < full.size();
    full.resize(length);
    if (fits) return std::u16string(ViewOf(full));
  }
}

DWORD AttributesOf(std::u16string_view path) {
  return GetFileAttributesW(WideText(SystemName(path)));
}

/// A pattern behind a prefixed name, from which the system does not take the trailing dots and
/// spaces. One in "*." means names without an extension: to the system, a wildcard of its own.
std::u16string PatternAsSystemReads(std::u16string_view pattern) {
  std::u16string read(pattern.substr(0, pattern.find_last_not_of(u". ") + 1));
  if (pattern.ends_with(u'.') && read.ends_with(u'*')) read.back() = u'<';
  return read;
}

std::u16string SearchName(std::u16string_view directory, std::u16string_view pattern) {
  if (pattern.empty()) pattern = u"*";
  std::u16string name = SystemName(directory, pattern.size());
  const bool prefixed = IsVerbatim(name) && !IsVerbatim(directory);
  return prefixed ? name.append(PatternAsSystemReads(pattern)) : name.append(pattern);
}

}  // namespace

std::u16string SystemName(std::u16string_view path, std::size_t room) {
  if (HasNul(path)) return kNoName;
  std::u16string name(path);
  if (IsVerbatim(path)) return name;
  const std::u16string full = FullPath(name);
  if (full.size() + room < kShortPath || IsVerbatim(full)) return name;
  if (full.starts_with(u"\\\\")) return std::u16string(u"\\\\?\\UNC").append(full, 1);
  return std::u16string(u"\\\\?\\").append(full);
}

bool IsDirectory(std::u16string_view path) {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsFile(std::u16string_view path) {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool MakeDirectory(std::u16string_view path) {
  return CreateDirectoryW(WideText(SystemName(path)), nullptr);
}

DirectoryListing::DirectoryListing(std::u16string_view directory, std::u16string_view pattern) {
  if (HasNul(directory) || HasNul(pattern)) return;
  search_ = FindFirstFileExW(WideText(SearchName(directory, pattern)), FindExInfoStandard, &entry_,
                             FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  at_first_ = search_ != INVALID_HANDLE_VALUE;
  started_ = at_first_ || GetLastError() == ERROR_FILE_NOT_FOUND;
}

DirectoryListing::~DirectoryListing() {
  if (search_ != INVALID_HANDLE_VALUE) FindClose(search_);
}

bool DirectoryListing::Next() {
  if (search_ == INVALID_HANDLE_VALUE) return false;
  if (at_first_) {
    at_first_ = false;
    return true;
  }
  // Whatever ends a listing, a directory that went away included, is its end.
  return FindNextFileW(search_, &entry_);
}

std::u16string_view DirectoryListing::Name() const {
  return ViewOf(std::wstring_view(entry_.cFileName));
}

bool DirectoryListing::NameEndsIn(std::u16string_view ending) const {
  const auto ends = [ending](std::wstring_view name) {
    if (name.size() < ending.size()) return false;
    const auto length = static_cast<int>(ending.size());
    const auto* other = reinterpret_cast<const wchar_t*>(ending.data());
    const wchar_t* last = name.data() + (name.size() - ending.size());
    return CompareStringOrdinal(last, length, other, length, TRUE) == CSTR_EQUAL;
  };
  return ending.empty() || ends(entry_.cFileName) || ends(entry_.cAlternateFileName);
}

bool DirectoryListing::IsSubdirectory() const {
  return Has(FILE_ATTRIBUTE_DIRECTORY) && Name() != u"." && Name() != u"..";
}

bool DirectoryListing::IsNormalFile() const {
  return !Has(FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
}

bool DirectoryListing::IsReparsePoint() const { return Has(FILE_ATTRIBUTE_REPARSE_POINT); }

}  // namespace zepkit10

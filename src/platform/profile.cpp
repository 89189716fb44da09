#include "platform/profile.h"

#include <windows.h>

#include <algorithm>

#include "platform/ansi.h"

namespace zepkit10 {
namespace {

// What the system is told to return for a missing entry; an entry of this value counts as missing.
constexpr char kMissing[] = "### Def ###";
constexpr DWORD kBufferSize = 256;

/// The system takes texts up to a NUL: with one inside it would work on other entries than named.
/// It refuses what its own strings cannot hold, and not every system survives that.
bool IsUnfit(std::u16string_view text) {
  constexpr std::size_t kLongest = 32766;
  return text.size() > kLongest || text.find(u'\0') != text.npos;
}

bool AnyIsUnfit(std::initializer_list<std::u16string_view> texts) {
  return std::any_of(texts.begin(), texts.end(), IsUnfit);
}

}  // namespace

std::optional<std::u16string> ReadProfileEntry(std::u16string_view file,
                                               std::u16string_view section,
                                               std::u16string_view key) {
  if (AnyIsUnfit({file, section, key})) return {};
  const std::string ansi_section = AnsiOf(section);
  const std::string ansi_key = AnsiOf(key);
  char buffer[kBufferSize];
  const DWORD length =
      file.empty()
          ? GetProfileStringA(ansi_section.c_str(), ansi_key.c_str(), kMissing, buffer, kBufferSize)
          : GetPrivateProfileStringA(ansi_section.c_str(), ansi_key.c_str(), kMissing, buffer,
                                     kBufferSize, AnsiNameOf(file).c_str());
  const std::string_view value(buffer, length);
  if (value == kMissing) return {};
  return TextOfAnsi(value);
}

void WriteProfileEntry(std::u16string_view file, std::u16string_view section,
                       std::u16string_view key, std::u16string_view value) {
  if (AnyIsUnfit({file, section, key, value})) return;
  const std::string ansi_section = AnsiOf(section);
  const std::string ansi_key = AnsiOf(key);
  const std::string ansi_value = AnsiOf(value);
  if (file.empty()) {
    WriteProfileStringA(ansi_section.c_str(), ansi_key.c_str(), ansi_value.c_str());
  } else {
    WritePrivateProfileStringA(ansi_section.c_str(), ansi_key.c_str(), ansi_value.c_str(),
                               AnsiNameOf(file).c_str());
  }
}

}  // namespace zepkit10

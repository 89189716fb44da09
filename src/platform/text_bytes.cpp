#include "platform/text_bytes.h"

#include <windows.h>

#include <algorithm>
#include <bit>
#include <numeric>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepStringType;

static_assert(std::endian::native == std::endian::little, "UTF-16 is copied, low byte first");

const CodePage& Ansi() {
  static const std::unique_ptr<const CodePage> page = ReadCodePage(CP_ACP);
  return *page;
}

/// The OEM code page is reached through the ANSI code page.
std::unique_ptr<CodePage> MakeOem() {
  constexpr DWORD kByteValues = 0x100;
  std::array<char, kByteValues> bytes, to_oem, to_ansi;
  std::iota(bytes.begin(), bytes.end(), '\0');
  CharToOemBuffA(bytes.data(), to_oem.data(), kByteValues);
  OemToCharBuffA(bytes.data(), to_ansi.data(), kByteValues);
  auto page = std::make_unique<CodePage>(Ansi());
  for (std::uint8_t& byte : page->to_byte) byte = static_cast<std::uint8_t>(to_oem[byte]);
  for (std::size_t value = 0; value < kByteValues; ++value) {
    page->to_unit[value] = Ansi().to_unit[static_cast<std::uint8_t>(to_ansi[value])];
  }
  return page;
}

const CodePage& Oem() {
  static const std::unique_ptr<const CodePage> page = MakeOem();
  return *page;
}

const CodePage& PageOf(ZepStringType type) { return type == zepSTAscii ? Oem() : Ansi(); }

// Long texts go by blocks of a fixed size, for which the compiler uses vector instructions.
constexpr std::size_t kBlock = 64;
constexpr unsigned kAscii = 0x7F;

/// Widens or narrows each unit of a block; the result is the bits that occurred.
template <class From, class To>
From CopyBlock(const From* __restrict from, To* __restrict to) {
  From bits = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    bits |= from[i];
    to[i] = static_cast<To>(from[i]);
  }
  return bits;
}

template <class To>
bool KeepsAscii(const To* table) {
  for (unsigned unit = 0; unit <= kAscii; ++unit) {
    if (table[unit] != unit) return false;
  }
  return true;
}

/// Converts each unit for itself, by way of a table. In long texts, blocks of ASCII are only
/// widened or narrowed where that comes to the same.
template <class From, class To>
void Convert(std::span<const From> from, To* to, const To* table) {
  constexpr std::size_t kLong = 16 * kBlock;
  const bool keeps_ascii = from.size() >= kLong && KeepsAscii(table);
  for (std::size_t done = 0; done < from.size(); done += kBlock) {
    const From* const block = from.data() + done;
    const std::size_t count = std::min(kBlock, from.size() - done);
    if (keeps_ascii && count == kBlock && CopyBlock(block, to + done) <= kAscii) continue;
    for (std::size_t i = 0; i < count; ++i) to[done + i] = table[block[i]];
  }
}

/// The bits that occur in a text.
char16_t BitsIn(std::u16string_view text) {
  char16_t bits = 0;
  for (; text.size() >= kBlock; text.remove_prefix(kBlock)) {
    for (std::size_t i = 0; i < kBlock; ++i) bits |= text.data()[i];
  }
  for (const char16_t unit : text) bits |= unit;
  return bits;
}

Bstr DecodeUtf16(std::span<const std::uint8_t> bytes) {
  constexpr char16_t kNegative = 0x8000;
  constexpr std::size_t kPart = 4096;  // what was copied is still near when it is looked at
  const std::size_t count = bytes.size() / 2;
  Bstr text(count);
  char16_t bits = 0;
  for (std::size_t done = 0; done < count; done += kPart) {
    const std::size_t units = std::min(kPart, count - done);
    std::copy_n(&bytes[2 * done], 2 * units, reinterpret_cast<std::uint8_t*>(text.data() + done));
    bits |= BitsIn({text.data() + done, units});
  }
  if (bits & kNegative) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  return text;
}

}  // namespace

std::unique_ptr<CodePage> ReadCodePage(unsigned code_page) {
  auto page = std::make_unique<CodePage>();
  for (std::size_t unit = 0; unit < page->to_byte.size(); ++unit) {
    const auto wide = static_cast<wchar_t>(unit);
    char bytes[8];
    const int size =
        WideCharToMultiByte(code_page, 0, &wide, 1, bytes, sizeof bytes, nullptr, nullptr);
    page->to_byte[unit] = static_cast<std::uint8_t>(size == 1 ? bytes[0] : '?');
  }
  for (std::size_t value = 0; value < page->to_unit.size(); ++value) {
    const auto byte = static_cast<char>(value);
    wchar_t wide[4];
    const int size = MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, &byte, 1, wide, 4);
    page->to_unit[value] = size == 1 ? wide[0] : u'?';
  }
  return page;
}

bool IsUtf16(ZepStringType type) {
  if (type != zepSTAscii && type != zepSTAnsi && type != zepSTUnicode) {
    RaiseInCalledClass(ZepErrors::zepErrBadCall);
  }
  return type == zepSTUnicode;
}

std::size_t EncodedSize(std::u16string_view text, ZepStringType type) {
  return IsUtf16(type) ? 2 * text.size() : text.size();
}

void Encode(std::u16string_view text, ZepStringType type, std::uint8_t* bytes) {
  if (IsUtf16(type)) {
    std::copy_n(reinterpret_cast<const std::uint8_t*>(text.data()), 2 * text.size(), bytes);
  } else {
    Convert(std::span(text), bytes, PageOf(type).to_byte.data());
  }
}

Bstr Decode(std::span<const std::uint8_t> bytes, ZepStringType type) {
  if (IsUtf16(type)) return DecodeUtf16(bytes);
  Bstr text(bytes.size());
  Convert(bytes, text.data(), PageOf(type).to_unit.data());
  return text;
}

}  // namespace zepkit10

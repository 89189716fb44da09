#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "enums.h"

/// Slices of a buffer's bytes, and the lengths of the text that bytes hold. Positions count from 1.
namespace zepkit10 {

using Bytes = std::vector<std::uint8_t>;

/// `length` bytes or characters from position `start` on.
struct Slice {
  std::int32_t start;
  std::int32_t length;

  friend bool operator==(const Slice&, const Slice&) = default;
};

/// True where the slice begins at 1 or later, has no negative length and ends within `count`.
bool IsWithin(const Slice& slice, std::int32_t count);

/// The bytes of a slice of characters. Error 6 where doubling overflows; `zepErrUnexpected` for a
/// string type that is none.
Slice ToBytes(const Slice& characters, ZepStringType type);

/// What is left of a slice of a buffer that has `count` bytes now.
Slice Clamp(const Slice& slice, std::int32_t count);

/// A change of a buffer's bytes: from position `start` on, `old_length` bytes became `new_length`
/// others, and what stands behind them moved by the difference.
struct Edit {
  std::int32_t start;
  std::int32_t old_length;
  std::int32_t new_length;

  friend bool operator==(const Edit&, const Edit&) = default;
};

/// What an edit of a view is to its parent, of which the view shows a slice.
Edit InParent(const Edit& edit, const Slice& slice);

/// What an edit of a parent is to a view: the view showed the slice `before` of the bytes before
/// the edit and shows the slice `after` of those behind it.
Edit InView(const Edit& edit, const Slice& before, const Slice& after);

/// Puts bytes in the place of a slice within the data, which grows or shrinks by the difference.
void Replace(Bytes& data, const Slice& slice, std::span<const std::uint8_t> bytes);

/// How many characters so many bytes are: of UTF-16 the half, rounded to the nearest, halves to
/// even. `zepErrUnexpected` for a string type that is none.
std::int32_t CharacterCount(std::int32_t byte_count, ZepStringType type);

/// How many bytes so many characters take. Errors as of `ToBytes`.
std::int32_t ByteCount(std::int32_t character_count, ZepStringType type);

}  // namespace zepkit10

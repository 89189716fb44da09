#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zepkit10 {

/// A text as a window can show it: lines end with a line feed each but the last one, tabs are
/// spaces, and so is every other character that has no picture, NUL among them.
std::u16string ShownText(std::u16string_view text);

/// The same in one line, for a title.
std::u16string ShownTitle(std::u16string_view text);

/// A row of a text on the screen.
struct TextRow {
  std::size_t begin;
  std::size_t length;  // in UTF-16 units, without the space or line feed that it was broken at

  friend bool operator==(const TextRow&, const TextRow&) = default;
};

struct TextFit {
  std::size_t length;  // of the beginning that fits, in UTF-16 units
  int width;           // of that beginning
};

/// Tells how much of a text without line feeds fits into a row.
using FitText = std::function<TextFit(std::u16string_view text)>;

struct WrappedText {
  std::vector<TextRow> rows;  // one at least
  int width = 0;              // of the widest row or more: what fits may end behind a break
};

/// Breaks a text into rows: at line feeds, at spaces where a line is too long, and in the middle of
/// a word that is too long itself.
WrappedText WrapText(std::u16string_view text, const FitText& fit);

}  // namespace zepkit10

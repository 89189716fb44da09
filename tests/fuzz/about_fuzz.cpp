// Texts in a pane: shown, broken into rows, and scrolled. First come the width of a row, the
// heights of rows, how often the text is repeated, the gap and some moves, then a NUL and the text,
// whose bytes from E0 on are halves of surrogate pairs.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "about/text_pane.h"
#include "about/text_rows.h"
#include "fuzz/expect.h"
#include "fuzz/input.h"
#include "unit/about/naive_rows.h"

namespace {

using namespace zepkit10;

/// Some characters have no width.
int WidthOf(char16_t c) { return c == u'.' ? 0 : 1 + c % 3; }

int WidthOf(std::u16string_view text) {
  int width = 0;
  for (const char16_t c : text) width += WidthOf(c);
  return width;
}

std::u16string WithPairs(std::u16string text) {
  for (char16_t& c : text) {
    if (c >= 0xF0) {
      c = static_cast<char16_t>(0xDC00 + c);
    } else if (c >= 0xE0) {
      c = static_cast<char16_t>(0xD800 + c);
    }
  }
  return text;
}

std::u16string Repeated(std::u16string_view text, int times) {
  std::u16string repeated;
  for (; times > 0; --times) repeated += text;
  return repeated;
}

WrappedText Wrapped(std::u16string_view text, int limit) {
  return WrapText(text, [limit](std::u16string_view line) {
    std::size_t length = 0;
    int width = 0;
    while (length < line.size() && width + WidthOf(line[length]) <= limit) {
      width += WidthOf(line[length++]);
    }
    return TextFit{length, width};
  });
}

/// Rows of a text, each of which was measured.
void CheckRows(std::u16string_view text, int limit) {
  const WrappedText wrapped = Wrapped(text, limit);
  Expect(wrapped.rows == naive::Rows(text, limit, WidthOf), "other rows");
  Expect(wrapped.width <= limit, "a width that does not fit");
  for (const TextRow& row : wrapped.rows) {
    const int width = WidthOf(text.substr(row.begin, row.length));
    Expect(width <= wrapped.width || row.length <= 2, "a row is wider than the widest");
  }
}

/// Every row of a pane: where it begins and ends.
struct PlainRow {
  std::int64_t top, bottom;
};

std::vector<PlainRow> PlainRows(TextPane::Block heading, TextPane::Block lines, int gap) {
  std::vector<PlainRow> rows;
  std::int64_t top = 0;
  for (std::size_t i = 0; i < heading.rows; ++i, top += heading.row_height) {
    rows.push_back({top, top + heading.row_height});
  }
  if (heading.rows > 0 && lines.rows > 0) top += gap;
  for (std::size_t i = 0; i < lines.rows; ++i, top += lines.row_height) {
    rows.push_back({top, top + lines.row_height});
  }
  return rows;
}

void CheckPane(TextPane::Block heading, TextPane::Block lines, Input& moves) {
  const int gap = moves.UpTo(30);
  TextPane pane(heading, lines, gap);
  const auto rows = PlainRows(heading, lines, gap);
  const std::int64_t height = rows.empty() ? 0 : rows.back().bottom;
  Expect(pane.Rows() == rows.size(), "another count of rows");
  Expect(pane.ContentHeight() == height, "another height");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Expect(pane.TopOf(i) == rows[i].top, "a row elsewhere");
    Expect(pane.IsHeading(i) == (i < heading.rows), "another heading");
  }
  std::int64_t page = 0, position = 0;
  while (const int move = moves.UpTo(3)) {
    if (move == 1) {
      page = moves.Any<std::uint16_t>();
      pane.SetPageHeight(static_cast<int>(page));
    }
    const std::int64_t to = move == 2   ? moves.Any<std::int64_t>()
                            : move == 3 ? moves.Any<std::int16_t>()
                                        : position;
    const std::int64_t last = std::max<std::int64_t>(height - page, 0);
    const std::int64_t moved = to < 0 ? 0 : to > last ? last : to;
    const bool moves_pane = moved != position;
    position = moved;
    if (move != 1) Expect(pane.ScrollTo(to) == moves_pane, "moved or not");
    Expect(pane.MaxPosition() == last && pane.Position() == position, "another position");
    const auto found = std::find_if(rows.begin(), rows.end(), [position](const PlainRow& row) {
      return row.bottom > position;
    });
    Expect(pane.RowAt(static_cast<int>(position)) == static_cast<std::size_t>(found - rows.begin()),
           "another row");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 4096;
  if (size > kLongest) return 0;
  Input input(data, size);
  const int limit = input.UpTo(60) * input.UpTo(60);
  const TextPane::Block heading{static_cast<std::size_t>(input.UpTo(4)), 1 + input.UpTo(40)};
  const int line_height = 1 + input.UpTo(40);
  const int repeat = std::max(input.UpTo(60) - 40, 0);
  Input moves = input;
  while (!input.AtEnd() && input.Any<char>() != 0) {
  }
  std::u16string text = WithPairs(input.Text());
  // Rows as long as any are seldom found one by one.
  if (repeat > 0) text = Repeated(text, repeat);
  const std::u16string shown = ShownText(text);
  Expect(shown == naive::ShownText(text), "shown differently");
  std::u16string title = shown;
  std::replace(title.begin(), title.end(), u'\n', u' ');
  Expect(ShownTitle(text) == title, "another title");
  CheckRows(shown, limit);
  CheckPane(heading, {Wrapped(shown, limit).rows.size(), line_height}, moves);
  return 0;
}

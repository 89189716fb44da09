#include "unit/about/naive_rows.h"

namespace zepkit10::naive {
namespace {

/// Where the row that begins at `begin` of a line ends.
std::size_t EndOfRow(std::u16string_view line, std::size_t begin, int limit,
                     int (*width_of)(char16_t)) {
  constexpr std::size_t kMaxRow = 1024;
  std::size_t fits = begin;
  for (int width = 0; fits < line.size() && fits - begin < kMaxRow; ++fits) {
    width += width_of(line[fits]);
    if (width > limit) break;
  }
  if (fits == line.size()) return fits;
  for (std::size_t space = fits; space > begin; --space) {
    if (line[space] == u' ') return space;
  }
  const std::size_t end = fits > begin ? fits : begin + 1;
  const bool inside_pair = end < line.size() && line[end] >= 0xDC00 && line[end] < 0xE000;
  if (!inside_pair) return end;
  return end - begin > 1 ? end - 1 : end + 1;
}

}  // namespace

std::u16string ShownText(std::u16string_view text) {
  std::u16string shown;
  char16_t before = 0;
  for (const char16_t c : text) {
    const bool second_of_line_end = c == u'\n' && before == u'\r';
    before = c;
    if (second_of_line_end) continue;
    if (c == u'\n' || c == u'\r') {
      shown += u'\n';
    } else if (c == u'\t') {
      shown += u"    ";
    } else if (c < 32 || (c >= 127 && c <= 159)) {
      shown += u' ';
    } else {
      shown += c;
    }
  }
  return shown;
}

std::vector<TextRow> Rows(std::u16string_view text, int limit, int (*width_of)(char16_t)) {
  std::vector<TextRow> rows;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t line_end = std::min(text.find(u'\n', begin), text.size());
    const std::u16string_view until_end = text.substr(0, line_end);
    for (;;) {
      const std::size_t end = EndOfRow(until_end, begin, limit, width_of);
      rows.push_back({begin, end - begin});
      begin = end;
      if (begin == line_end) break;
      if (text[begin] == u' ') ++begin;
      if (begin == line_end) break;
    }
    begin = line_end + 1;
  }
  return rows;
}

}  // namespace zepkit10::naive

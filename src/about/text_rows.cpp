#include "about/text_rows.h"

#include <algorithm>

namespace zepkit10 {
namespace {

/// No screen shows more in one row. Measuring a whole line at each break would take quadratic time.
constexpr std::size_t kMaxRow = 1024;

constexpr std::u16string_view kTab = u"    ";

bool IsControl(char16_t unit) { return unit < u' ' || (unit >= 0x7F && unit < 0xA0); }

bool IsTrailing(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Where the rest of a line is to be broken of which only `fits` units fit.
std::size_t BreakOf(std::u16string_view line, std::size_t fits) {
  // A space right behind what fits may hang over.
  const std::size_t space = line.rfind(u' ', fits);
  if (space != line.npos && space > 0) return space;
  std::size_t end = std::max<std::size_t>(fits, 1);
  if (end < line.size() && IsTrailing(line[end])) end += end > 1 ? -1 : 1;
  return end;
}

void WrapLine(std::u16string_view text, std::size_t begin, std::size_t end, const FitText& fit,
              WrappedText& wrapped) {
  do {
    const std::u16string_view rest = text.substr(begin, end - begin);
    const auto [fits, width] = fit(rest.substr(0, kMaxRow));
    wrapped.width = std::max(wrapped.width, width);
    if (fits >= rest.size()) {
      wrapped.rows.push_back({begin, rest.size()});
      return;
    }
    const std::size_t length = BreakOf(rest, fits);
    wrapped.rows.push_back({begin, length});
    begin += length;
    if (begin < end && text[begin] == u' ') ++begin;
  } while (begin < end);
}

}  // namespace

std::u16string ShownText(std::u16string_view text) {
  std::u16string shown;
  shown.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\r' || text[i] == u'\n') {
      if (text.substr(i, 2) == u"\r\n") ++i;
      shown += u'\n';
    } else if (text[i] == u'\t') {
      shown += kTab;
    } else {
      shown += IsControl(text[i]) ? u' ' : text[i];
    }
  }
  return shown;
}

std::u16string ShownTitle(std::u16string_view text) {
  std::u16string title = ShownText(text);
  std::replace(title.begin(), title.end(), u'\n', u' ');
  return title;
}

WrappedText WrapText(std::u16string_view text, const FitText& fit) {
  WrappedText wrapped;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(u'\n', begin), text.size());
    WrapLine(text, begin, end, fit, wrapped);
    begin = end + 1;
  }
  return wrapped;
}

}  // namespace zepkit10

#include "platform/about_text.h"

#include <algorithm>

#include "platform/automation/string.h"
#include "platform/dpi.h"

namespace zepkit10 {
namespace {

constexpr std::size_t kMaxSpoken = 0x10000;

/// The beginning of a text, which breaks no pair of units.
std::u16string CutTo(std::size_t length, std::u16string text) {
  text.resize(length);
  if (text.back() == u'\r' || (text.back() & 0xFC00) == 0xD800) text.pop_back();
  return text;
}

/// Selects a font for as long as this lives.
class FontUse {
 public:
  FontUse(HDC context, HFONT font) : context_(context), before_(SelectObject(context, font)) {}
  ~FontUse() { SelectObject(context_, before_); }
  FontUse(const FontUse&) = delete;
  FontUse& operator=(const FontUse&) = delete;

 private:
  HDC context_;
  HGDIOBJ before_;
};

const wchar_t* Wide(std::u16string_view text) {
  return reinterpret_cast<const wchar_t*>(text.data());
}

LOGFONTW HeadingFont(LOGFONTW font) {
  font.lfHeight = MulDiv(font.lfHeight, 4, 3);
  font.lfWeight = FW_SEMIBOLD;
  return font;
}

/// The height of a row with the room to the next one.
int RowHeightOf(HDC context, HFONT font) {
  const FontUse use(context, font);
  TEXTMETRICW metrics{};
  GetTextMetricsW(context, &metrics);
  return std::max<int>(metrics.tmHeight + metrics.tmExternalLeading + metrics.tmHeight / 6, 1);
}

WrappedText WrapInFont(HDC context, HFONT font, std::u16string_view text, int max_width) {
  const FontUse use(context, font);
  return WrapText(text, [&](std::u16string_view line) -> TextFit {
    int fits = 0;
    SIZE size{};
    const auto length = static_cast<int>(line.size());
    if (!GetTextExtentExPointW(context, Wide(line), length, max_width, &fits, nullptr, &size)) {
      return {line.size(), 0};
    }
    if (fits == length) return {line.size(), static_cast<int>(size.cx)};
    return {static_cast<std::size_t>(fits), max_width};
  });
}

}  // namespace

Extent MeasureText(HDC context, HFONT font, std::u16string_view text) {
  const FontUse use(context, font);
  SIZE size{};
  GetTextExtentPoint32W(context, Wide(text), static_cast<int>(text.size()), &size);
  return {static_cast<int>(size.cx), static_cast<int>(size.cy)};
}

AboutText::AboutText(std::u16string_view heading, const std::u16string* lines)
    : heading_(ShownText(heading)),
      lines_(lines ? ShownText(*lines) : std::u16string()),
      has_lines_(lines != nullptr) {}

std::u16string AboutText::Spoken() const {
  std::u16string shown = heading_, text;
  if (!heading_.empty() && has_lines_) shown += u'\n';
  shown += lines_;
  for (const char16_t unit : shown) {
    if (unit == u'\n') text += u'\r';
    text += unit;
    if (text.size() > kMaxSpoken) return CutTo(kMaxSpoken, std::move(text));
  }
  return text;
}

void AboutText::Wrap(HDC context, int dpi, int max_width) {
  const LOGFONTW font = MessageFont(dpi);
  font_ = Font(font);
  heading_font_ = Font(HeadingFont(font));
  row_height_ = RowHeightOf(context, font_.get());
  // Slanted letters, and not every system paints a text as narrow as it measures it.
  const int slack = row_height_ / 2;
  heading_rows_ = {};
  line_rows_ = {};
  if (!heading_.empty()) {
    heading_rows_ = WrapInFont(context, heading_font_.get(), heading_, max_width - slack);
  }
  if (has_lines_) line_rows_ = WrapInFont(context, font_.get(), lines_, max_width - slack);
  width_ = std::max(heading_rows_.width, line_rows_.width) + slack;
  pane_ = TextPane({heading_rows_.rows.size(), RowHeightOf(context, heading_font_.get())},
                   {line_rows_.rows.size(), row_height_}, row_height_ / 2);
}

void AboutText::Draw(HDC context, Extent size) const {
  SetBkColor(context, GetSysColor(COLOR_WINDOW));
  SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
  std::size_t row = pane_.RowAt(pane_.Position());
  int top = 0;
  for (; row < pane_.Rows() && top < size.height; ++row) {
    const int bottom = static_cast<int>(pane_.TopOf(row + 1) - pane_.Position());
    DrawRow(context, row,
            {0, static_cast<int>(pane_.TopOf(row) - pane_.Position()), size.width, bottom});
    top = bottom;
  }
  if (top >= size.height) return;
  const RECT rest{0, top, size.width, size.height};
  FillRect(context, &rest, GetSysColorBrush(COLOR_WINDOW));
}

void AboutText::DrawRow(HDC context, std::size_t row, const RECT& area) const {
  const bool heading = pane_.IsHeading(row);
  const TextRow& place =
      heading ? heading_rows_.rows[row] : line_rows_.rows[row - heading_rows_.rows.size()];
  const FontUse use(context, heading ? heading_font_.get() : font_.get());
  const std::u16string_view text =
      std::u16string_view(heading ? heading_ : lines_).substr(place.begin, place.length);
  ExtTextOutW(context, area.left, area.top, ETO_OPAQUE | ETO_CLIPPED, &area, Wide(text),
              static_cast<UINT>(text.size()), nullptr);
}

}  // namespace zepkit10

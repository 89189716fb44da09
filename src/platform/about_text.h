#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>

#include "about/about_layout.h"
#include "about/text_pane.h"
#include "about/text_rows.h"

namespace zepkit10 {

/// A font handle that this owns.
class Font {
 public:
  Font() = default;
  explicit Font(const LOGFONTW& font) : handle_(CreateFontIndirectW(&font)) {}
  ~Font() {
    if (handle_) DeleteObject(handle_);
  }
  Font(const Font&) = delete;
  Font& operator=(Font&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  HFONT get() const { return handle_; }

 private:
  HFONT handle_ = nullptr;
};

/// The size of a text in one line; painted, it may be a little wider.
Extent MeasureText(HDC context, HFONT font, std::u16string_view text);

/// The texts of an about window: a heading and the lines below it.
class AboutText {
 public:
  /// An empty heading takes no room, and neither do lines that are missing: null.
  AboutText(std::u16string_view heading, const std::u16string* lines);

  /// The text for whoever cannot see it; of a very long one, the first 64 Ki units.
  std::u16string Spoken() const;

  /// Breaks it into rows of the fonts for a screen.
  void Wrap(HDC context, int dpi, int max_width);

  HFONT LineFont() const { return font_.get(); }
  Extent Size() const { return {width_, pane_.ContentHeight()}; }
  int RowHeight() const { return row_height_; }
  TextPane& Pane() { return pane_; }

  /// Paints what a pane of this size shows.
  void Draw(HDC context, Extent size) const;

 private:
  void DrawRow(HDC context, std::size_t row, const RECT& area) const;

  std::u16string heading_;
  std::u16string lines_;
  bool has_lines_;
  Font heading_font_;
  Font font_;
  WrappedText heading_rows_;
  WrappedText line_rows_;
  int width_ = 0;
  int row_height_ = 1;
  TextPane pane_;
};

}  // namespace zepkit10

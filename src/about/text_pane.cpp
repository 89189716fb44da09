#include "about/text_pane.h"

#include <algorithm>
#include <limits>

namespace zepkit10 {

TextPane::TextPane(Block heading, Block lines, int gap)
    : heading_(heading), lines_(lines), gap_(heading.rows && lines.rows ? gap : 0) {
  constexpr std::int64_t kMaxHeight = std::numeric_limits<int>::max();
  content_height_ = static_cast<int>(std::min(TopOf(Rows()), kMaxHeight));
}

void TextPane::SetPageHeight(int height) {
  page_height_ = height;
  ScrollTo(position_);
}

int TextPane::MaxPosition() const { return std::max(content_height_ - page_height_, 0); }

bool TextPane::ScrollTo(std::int64_t position) {
  const auto nearest = static_cast<int>(std::clamp<std::int64_t>(position, 0, MaxPosition()));
  if (nearest == position_) return false;
  position_ = nearest;
  return true;
}

void TextPane::ScrollLike(const TextPane& other) {
  if (other.content_height_ == 0) return;
  ScrollTo(std::int64_t{other.position_} * content_height_ / other.content_height_);
}

std::int64_t TextPane::HeadingHeight() const {
  return static_cast<std::int64_t>(heading_.rows) * heading_.row_height;
}

std::int64_t TextPane::TopOf(std::size_t row) const {
  if (IsHeading(row)) return static_cast<std::int64_t>(row) * heading_.row_height;
  return HeadingHeight() + gap_ +
         static_cast<std::int64_t>(row - heading_.rows) * lines_.row_height;
}

std::size_t TextPane::RowAt(int height) const {
  const std::int64_t in_lines = height - HeadingHeight() - gap_;
  if (height < HeadingHeight()) return static_cast<std::size_t>(height / heading_.row_height);
  if (in_lines < 0) return heading_.rows;
  return std::min(heading_.rows + static_cast<std::size_t>(in_lines / lines_.row_height), Rows());
}

}  // namespace zepkit10

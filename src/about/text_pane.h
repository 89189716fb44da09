#pragma once

#include <cstddef>
#include <cstdint>

namespace zepkit10 {

/// A heading and the lines below it as rows in a pane that shows a part of them. Heights in pixels.
class TextPane {
 public:
  struct Block {
    std::size_t rows = 0;
    int row_height = 1;
  };

  TextPane() = default;
  /// A gap is between the blocks where both have rows.
  TextPane(Block heading, Block lines, int gap);

  /// Of all rows; the greatest number that a scroll bar takes where there are more.
  int ContentHeight() const { return content_height_; }
  int PageHeight() const { return page_height_; }
  void SetPageHeight(int height);

  /// What of the content is above the pane.
  int Position() const { return position_; }
  int MaxPosition() const;
  /// Moves to the nearest position there is. False if that changes nothing.
  bool ScrollTo(std::int64_t position);
  /// Moves to where another pane is whose content is the same at another height.
  void ScrollLike(const TextPane& other);

  /// The first row that reaches below a height of the content, or the count of all rows.
  std::size_t RowAt(int height) const;
  /// Where a row begins.
  std::int64_t TopOf(std::size_t row) const;
  std::size_t Rows() const { return heading_.rows + lines_.rows; }
  bool IsHeading(std::size_t row) const { return row < heading_.rows; }

 private:
  std::int64_t HeadingHeight() const;

  Block heading_;
  Block lines_;
  int gap_ = 0;
  int content_height_ = 0;
  int page_height_ = 0;
  int position_ = 0;
};

}  // namespace zepkit10

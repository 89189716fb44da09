#pragma once

namespace zepkit10 {

/// A text that moves through a frame from right to left, again and again. Positions are those of
/// its left edge in the frame, in pixels. It starts where all of it can be read.
class Ticker {
 public:
  Ticker() = default;
  Ticker(int frame_width, int text_width) : frame_width_(frame_width), text_width_(text_width) {}

  int Position() const { return position_; }

  /// Moves on; a text that has left the frame comes in again from the right.
  void Step(int width) {
    position_ -= width;
    if (position_ + text_width_ <= 0) position_ = frame_width_;
  }

 private:
  int frame_width_ = 0;
  int text_width_ = 0;
  int position_ = 0;
};

}  // namespace zepkit10

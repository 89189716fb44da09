#pragma once

#include <cstdint>

namespace zepkit10 {

/// The counting loop over a function's range: from low to high with a step, the end and the step
/// fixed at the start. A loop with a negative step runs while x is not below the end, any other
/// while it is not above.
class Sampling {
 public:
  Sampling(double low, double high, double step) : x_(low), high_(high), step_(step) {}

  bool Running() const { return step_ < 0 ? !(x_ < high_) : !(x_ > high_); }
  double X() const { return x_; }

  /// Goes on to the next x.
  void Step() {
    const double before = x_;
    x_ += step_;
    stuck_ = x_ == before;
  }

  /// True once a step was lost in rounding: the loop then goes on at the same x.
  bool Stuck() const { return stuck_; }

 private:
  double x_;
  const double high_;
  const double step_;
  bool stuck_ = false;
};

/// The number of a sample, counted from 0: (x - low) / interval, rounded half to even. Error 11 for
/// an interval of 0, error 6 outside the 32-bit range.
std::int32_t SampleNumber(double x, double low, double interval);

}  // namespace zepkit10

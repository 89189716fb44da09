#pragma once

#include <memory>
#include <vector>

namespace zepkit10 {

class Evaluable;

/// A term made ready for being evaluated many times: a list of steps, each of which makes a new
/// value from the last one and from numbers that it knows by their places. Those of variables are
/// the variables' own, so that a number written there counts at once.
///
/// A plan knows of no faults and looks nothing up: a result that is not finite says no more than
/// that the term must be evaluated in the order of the rules. A finite one is the term's value to
/// the last bit.
class Plan {
 public:
  struct Step {
    double (*run)(double value, const Step& step);
    const double* first = nullptr;
    const double* second = nullptr;
    double* kept = nullptr;        // where the last value is put aside
    const Plan* nested = nullptr;  // of a variable that is a term itself
  };

  /// In the default floating-point environment.
  double Run() const {
    double value = 0;
    for (const Step& step : steps_) value = step.run(value, step);
    return value;
  }

 private:
  friend class Planner;
  std::vector<Step> steps_;
  std::vector<double> kept_;  // values put aside
};

}  // namespace zepkit10

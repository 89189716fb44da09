#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "expr/executable_code.h"
#include "expr/float_environment.h"
#include "expr/instruction.h"

namespace zepkit10 {

/// A term made ready for being evaluated many times: operations on numbers that are known by their
/// places. Those of variables are the variables' own, so that a number written there counts at
/// once.
///
/// A plan knows of no faults and looks nothing up: a result that is not finite says no more than
/// that the term must be evaluated in the order of the rules. A finite one is the term's value to
/// the last bit.
class Plan {
 public:
  /// A function that makes a new value from the last one.
  struct Step {
    double (*run)(double value, const Step& step);
    const double* first = nullptr;
    const double* second = nullptr;
    double* kept = nullptr;  // where the last value is put aside
    const Plan* nested = nullptr;
  };

  /// `value_count` tells how many values the instructions keep at once.
  Plan(std::vector<Instruction> instructions, std::size_t value_count);

  /// In any floating-point environment. After many runs machine code is made of the instructions
  /// where that is possible; until then they are run step by step.
  double Run() const {
    if (code_ && code_.RunsAnywhere()) [[likely]]
      return code_.Run();
    const DefaultFloatEnvironment environment;
    return RunInDefaultEnvironment();
  }
  double RunInDefaultEnvironment() const { return code_ ? code_.Run() : RunSteps(); }

  /// How many plans are run inside of each other, this one counted.
  int Depth() const { return depth_; }

  /// Makes machine code now. Null where the processor, the system or the plan does not allow it.
  const ExecutableCode* MakeCode() const noexcept;

 private:
  static constexpr std::uint64_t kRunsWorthCode = 500;

  double RunSteps() const;

  mutable std::vector<Instruction> instructions_;  // until there is code
  int depth_ = 1;
  std::vector<double> kept_;  // values put aside by the steps
  std::vector<Step> steps_;
  mutable std::uint64_t runs_ = 0;
  mutable ExecutableCode code_;
};

}  // namespace zepkit10

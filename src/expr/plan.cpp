#include "expr/plan.h"

#include <algorithm>
#include <new>
#include <utility>

#include "expr/machine_code.h"
#include "expr/plan_steps.h"

namespace zepkit10 {

Plan::Plan(std::vector<Instruction> instructions, std::size_t value_count)
    : instructions_(std::move(instructions)),
      kept_(value_count),
      steps_(StepsOf(instructions_, kept_)) {
  for (const Instruction& each : instructions_) {
    if (each.nested) depth_ = std::max(depth_, each.nested->Depth() + 1);
  }
}

const ExecutableCode* Plan::MakeCode() const noexcept {
  try {
    // Once: what was not possible will not be.
    const std::vector<Instruction> instructions = std::move(instructions_);
    if (!instructions.empty()) code_ = ExecutableCode(MachineCodeOf(instructions));
  } catch (const std::bad_alloc&) {
    // The steps do as well.
  }
  return code_ ? &code_ : nullptr;
}

double Plan::RunSteps() const {
  if (++runs_ == kRunsWorthCode && MakeCode()) return code_.Run();
  double value = 0;
  for (const Step& step : steps_) value = step.run(value, step);
  return value;
}

}  // namespace zepkit10

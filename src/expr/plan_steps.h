#pragma once

#include <span>
#include <vector>

#include "enums.h"
#include "expr/plan.h"

namespace zepkit10 {

/// The instructions as steps. `kept` has room for as many values as they keep at once.
std::vector<Plan::Step> StepsOf(std::span<const Instruction> instructions,
                                std::vector<double>& kept);

/// What a step does, for each kind of step and its operations. No step loses a value that is not
/// finite: where the operation would make a finite number of it, as a division by it does, the step
/// makes NaN. Null where no such step exists, and two must do.
using RunStep = double (*)(double value, const Plan::Step& step);

/// The value becomes `first`.
RunStep Load();
/// The value is put aside into `kept`.
RunStep Keep();
/// The value becomes that of the nested plan.
RunStep RunNested();
/// The value becomes its square.
RunStep Square();
/// The value becomes its function, or its absolute value.
RunStep Apply(ZepMathOperation function);
/// The value is joined with `first`.
RunStep Join(Joint joint);
/// The value becomes `first` joined with `second`.
RunStep JoinPair(Joint pair);
/// The same, after the last value is put aside into `kept`.
RunStep KeepAndJoinPair(Joint pair);
/// The value is joined with what `first` joined with `second` is.
RunStep JoinWithPair(Joint joint, Joint pair);
/// The value is joined with `first`, and the result with `second`.
RunStep JoinTwice(Joint one, Joint two);

}  // namespace zepkit10

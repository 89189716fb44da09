#pragma once

#include "expr/number_format.h"

namespace zepkit10 {

/// How the user writes numbers at the moment. Asked anew each time, so that a change in the
/// system's settings counts at once; beside parsing or writing a term that costs little.
NumberFormat UserNumberFormat();

}  // namespace zepkit10

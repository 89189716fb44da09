#pragma once

#include "expr/number_format.h"

namespace zepkit10 {

/// How the user writes numbers. Read once in the life of the process.
const NumberFormat& UserNumberFormat();

}  // namespace zepkit10

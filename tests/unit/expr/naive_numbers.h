#pragma once

#include "expr/number_format.h"

namespace zepkit10::naive {

/// Users' number formats, with a conversion that takes of digits, commas and points what the
/// platform takes.
const NumberFormat& EnglishNumbers();
const NumberFormat& GermanNumbers();

}  // namespace zepkit10::naive

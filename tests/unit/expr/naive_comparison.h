#pragma once

#include <string>
#include <string_view>

#include "expr/number_format.h"

namespace zepkit10::naive {

/// Parses and evaluates a term and gives its text, plainly and with the engine, with a set of
/// variables that are numbers, terms, cycles and missing. Tells where the two differ in value,
/// text, error or the variables asked for; empty where they agree.
std::string Difference(std::u16string_view text, const NumberFormat& numbers);

}  // namespace zepkit10::naive

#pragma once

#include <span>

#include "expr/executable_code.h"
#include "expr/instruction.h"

namespace zepkit10 {

/// The instructions as code for this processor that comes to their value. No bytes for other
/// processors than x86-64, for instructions that keep more than four values at once, for those
/// whose nested plans have no code, and for very many.
MachineCode MachineCodeOf(std::span<const Instruction> instructions);

}  // namespace zepkit10

#pragma once

#include <cstdint>

#include "enums.h"

namespace zepkit10 {

class Plan;

/// How a value is joined with an operand: the operand is added, subtracted, subtracted from …
enum class Joint : std::uint8_t { kSubFrom, kAdd, kSub, kMul, kDiv, kDivInto, kRaise, kRaiseInto };

/// The joint that comes to the same with value and operand exchanged.
constexpr Joint Mirrored(Joint joint) {
  using enum Joint;
  constexpr Joint kMirrored[] = {kSub, kAdd, kSubFrom, kMul, kDivInto, kDiv, kRaiseInto, kRaise};
  return kMirrored[static_cast<int>(joint)];
}

/// One operation of a planned term. Its values wait in a row, the last one for the next operation.
struct Instruction {
  enum class Kind : std::uint8_t {
    kLoad,        // the number becomes a new last value
    kRunNested,   // and so does what the nested plan comes to
    kSquare,      // the last value becomes its square
    kApply,       // the last value becomes its function, or its absolute value
    kJoin,        // the last value is joined with the number
    kJoinValues,  // the last but one is joined with the last, which goes
  };

  Kind kind;
  Joint joint{};
  ZepMathOperation function{};
  const double* number = nullptr;  // where it is whenever the plan runs; it is finite
  const Plan* nested = nullptr;
};

}  // namespace zepkit10

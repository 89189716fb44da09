#pragma once

#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

#include "enums.h"

namespace zepkit10 {

/// How many operands a node of this operation has.
constexpr int OperandCount(ZepMathOperation operation) {
  using enum ZepMathOperation;
  if (operation >= zepMOAdd && operation <= zepMORaise) return 2;
  return operation == zepMOAmount || (operation >= zepMOSqr && operation <= zepMOAtn) ? 1 : 0;
}

constexpr bool IsFunction(ZepMathOperation operation) {
  using enum ZepMathOperation;
  return operation >= zepMOSqr && operation <= zepMOAtn;
}

constexpr bool IsBinary(ZepMathOperation operation) { return OperandCount(operation) == 2; }

/// The priority of an operation, lowest first; nothing for a code that is none.
constexpr std::optional<ZepMathPriority> PriorityOf(ZepMathOperation operation) {
  using enum ZepMathPriority;
  constexpr ZepMathPriority kPriorities[] = {
      zepMPAmount, zepMPDash,     zepMPDash,     zepMPDot,      zepMPDot,     zepMPRaise,
      zepMPFnc,    zepMPFnc,      zepMPFnc,      zepMPFnc,      zepMPFnc,     zepMPFnc,
      zepMPFnc,    zepMPVariable, zepMPVariable, zepMPVariable, zepMPVariable};
  const auto code = static_cast<std::int32_t>(operation);
  if (code < 0 || code >= static_cast<std::int32_t>(std::size(kPriorities))) return {};
  return kPriorities[code];
}

/// How an operation is written; nothing for variables, numbers and codes that are none.
constexpr std::optional<std::u16string_view> TextOf(ZepMathOperation operation) {
  using enum ZepMathOperation;
  constexpr std::u16string_view kTexts[] = {u"|",   u"+",   u"-",   u"*",   u"/",   u"^",  u"SQR",
                                            u"EXP", u"LOG", u"SIN", u"COS", u"TAN", u"ATN"};
  if (operation == zepMOParC) return u")";
  if (operation == zepMOParO) return u"(";
  const auto code = static_cast<std::int32_t>(operation);
  if (code < 0 || code >= static_cast<std::int32_t>(std::size(kTexts))) return {};
  return kTexts[code];
}

}  // namespace zepkit10

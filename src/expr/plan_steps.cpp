#include "expr/plan_steps.h"

#include <array>
#include <cmath>
#include <optional>

#include "expr/plan_functions.h"

namespace zepkit10 {
namespace {

using enum Joint;
using Step = Plan::Step;

template <Joint joint>
double Joined(double value, double operand) {
  if constexpr (joint == kAdd) return value + operand;
  if constexpr (joint == kSub) return value - operand;
  if constexpr (joint == kSubFrom) return operand - value;
  if constexpr (joint == kMul) return value * operand;
  if constexpr (joint == kDiv) return std::isfinite(operand) ? value / operand : kNoValue;
  if constexpr (joint == kDivInto) return std::isfinite(value) ? operand / value : kNoValue;
  if constexpr (joint == kRaise) return PlannedPower(value, operand);
  if constexpr (joint == kRaiseInto) return PlannedPower(operand, value);
}

template <ZepMathOperation function>
double RunFunction(double value, const Step&) {
  constexpr PlannedFunction kFunction = PlannedFunctionOf(function);
  return kFunction(value);
}

template <Joint joint>
double RunJoin(double value, const Step& step) {
  return Joined<joint>(value, *step.first);
}

template <Joint pair>
double RunPair(double, const Step& step) {
  return Joined<pair>(*step.first, *step.second);
}

template <Joint pair>
double RunKeptPair(double value, const Step& step) {
  *step.kept = value;
  return Joined<pair>(*step.first, *step.second);
}

template <Joint joint, Joint pair>
double RunWithPair(double value, const Step& step) {
  return Joined<joint>(value, Joined<pair>(*step.first, *step.second));
}

template <Joint one, Joint two>
double RunTwice(double value, const Step& step) {
  return Joined<two>(Joined<one>(value, *step.first), *step.second);
}

// The joints of which two make one step, and those of pairs: an operand in front of a number is one
// behind it, the other way round.
constexpr Joint kFirstQuick = kSubFrom, kFirstOfPair = kAdd;
constexpr std::size_t kQuick = 4;
using Row = std::array<RunStep, 4>;

template <Joint one>
constexpr Row kTwice = {RunTwice<one, kSubFrom>, RunTwice<one, kAdd>, RunTwice<one, kSub>,
                        RunTwice<one, kMul>};
template <Joint joint>
constexpr Row kWithPair = {RunWithPair<joint, kAdd>, RunWithPair<joint, kSub>,
                           RunWithPair<joint, kMul>, RunWithPair<joint, kDiv>};

/// The entry of a table that begins with a joint; null outside.
template <class Table>
auto Find(const Table& table, Joint first, Joint joint) -> const typename Table::value_type* {
  const auto index = static_cast<std::size_t>(joint) - static_cast<std::size_t>(first);
  return index < table.size() ? &table[index] : nullptr;
}

RunStep FindStep(const Row& row, Joint first, Joint joint) {
  const RunStep* found = Find(row, first, joint);
  return found ? *found : nullptr;
}

}  // namespace

RunStep Load() {
  return [](double, const Step& step) { return *step.first; };
}

RunStep Keep() {
  return [](double value, const Step& step) { return *step.kept = value; };
}

RunStep RunNested() {
  return [](double, const Step& step) { return step.nested->RunInDefaultEnvironment(); };
}

RunStep Square() {
  return [](double value, const Step&) { return value * value; };
}

RunStep Apply(ZepMathOperation function) {
  using enum ZepMathOperation;
  switch (function) {
    case zepMOAmount:
      return RunFunction<zepMOAmount>;
    case zepMOSqr:
      return RunFunction<zepMOSqr>;
    case zepMOExp:
      return RunFunction<zepMOExp>;
    case zepMOLog:
      return RunFunction<zepMOLog>;
    case zepMOSin:
      return RunFunction<zepMOSin>;
    case zepMOCos:
      return RunFunction<zepMOCos>;
    case zepMOTan:
      return RunFunction<zepMOTan>;
    case zepMOAtn:
      return RunFunction<zepMOAtn>;
    default:
      return nullptr;
  }
}

RunStep Join(Joint joint) {
  static constexpr std::array<RunStep, 8> kSteps = {
      RunJoin<kSubFrom>, RunJoin<kAdd>,     RunJoin<kSub>,   RunJoin<kMul>,
      RunJoin<kDiv>,     RunJoin<kDivInto>, RunJoin<kRaise>, RunJoin<kRaiseInto>};
  return kSteps[static_cast<std::size_t>(joint)];
}

RunStep JoinPair(Joint pair) {
  static constexpr Row kSteps = {RunPair<kAdd>, RunPair<kSub>, RunPair<kMul>, RunPair<kDiv>};
  return FindStep(kSteps, kFirstOfPair, pair);
}

RunStep KeepAndJoinPair(Joint pair) {
  static constexpr Row kSteps = {RunKeptPair<kAdd>, RunKeptPair<kSub>, RunKeptPair<kMul>,
                                 RunKeptPair<kDiv>};
  return FindStep(kSteps, kFirstOfPair, pair);
}

RunStep JoinWithPair(Joint joint, Joint pair) {
  static constexpr std::array<Row, kQuick> kSteps = {kWithPair<kSubFrom>, kWithPair<kAdd>,
                                                     kWithPair<kSub>, kWithPair<kMul>};
  const Row* row = Find(kSteps, kFirstQuick, joint);
  return row ? FindStep(*row, kFirstOfPair, pair) : nullptr;
}

RunStep JoinTwice(Joint one, Joint two) {
  static constexpr std::array<Row, kQuick> kSteps = {kTwice<kSubFrom>, kTwice<kAdd>, kTwice<kSub>,
                                                     kTwice<kMul>};
  const Row* row = Find(kSteps, kFirstQuick, one);
  return row ? FindStep(*row, kFirstQuick, two) : nullptr;
}

}  // namespace zepkit10

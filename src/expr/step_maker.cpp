// Makes steps of instructions: where there is a step that does several of them, that one.
#include <optional>
#include <utility>

#include "expr/plan_steps.h"

namespace zepkit10 {
namespace {

using Kind = Instruction::Kind;

class StepMaker {
 public:
  StepMaker(std::span<const Instruction> instructions, std::vector<double>& kept)
      : left_(instructions), kept_(kept) {}

  std::vector<Plan::Step> Make() {
    while (!left_.empty()) left_ = left_.subspan(MakeNext());
    steps_.shrink_to_fit();
    return std::move(steps_);
  }

 private:
  struct Pair {
    Joint joint;
    const double *first, *second;
  };

  // Each tells how many instructions it made a step of.
  std::size_t MakeNext();
  std::size_t MakeNewValue(const Plan::Step& step);
  std::size_t MakePair(const Pair& pair);
  std::size_t MakeJoin();

  std::optional<Pair> PairAhead() const;
  std::optional<Joint> JointAhead(std::size_t index) const;
  const double* TakeOperand(const Instruction& instruction);
  bool Is(std::size_t index, Kind kind) const {
    return index < left_.size() && left_[index].kind == kind;
  }

  std::span<const Instruction> left_;
  std::vector<double>& kept_;
  std::vector<Plan::Step> steps_;
  std::size_t values_ = 0;  // how many there are: all but the last are kept
};

std::size_t StepMaker::MakeNext() {
  const Instruction& next = left_.front();
  switch (next.kind) {
    case Kind::kLoad:
      if (const auto pair = PairAhead()) return MakePair(*pair);
      return MakeNewValue({Load(), next.number});
    case Kind::kRunNested:
      return MakeNewValue({RunNested(), nullptr, nullptr, nullptr, next.nested});
    case Kind::kSquare:
      steps_.push_back({Square()});
      return 1;
    case Kind::kApply:
      steps_.push_back({Apply(next.function)});
      return 1;
    default:
      return MakeJoin();
  }
}

std::size_t StepMaker::MakeNewValue(const Plan::Step& step) {
  if (values_ > 0) steps_.push_back({Keep(), nullptr, nullptr, &kept_[values_ - 1]});
  steps_.push_back(step);
  ++values_;
  return 1;
}

std::size_t StepMaker::MakePair(const Pair& pair) {
  if (Is(2, Kind::kJoinValues)) {
    if (const RunStep run = JoinWithPair(left_[2].joint, pair.joint)) {
      steps_.push_back({run, pair.first, pair.second});
      return 3;
    }
  }
  if (values_ == 0) {
    steps_.push_back({JoinPair(pair.joint), pair.first, pair.second});
  } else {
    steps_.push_back({KeepAndJoinPair(pair.joint), pair.first, pair.second, &kept_[values_ - 1]});
  }
  ++values_;
  return 2;
}

std::size_t StepMaker::MakeJoin() {
  const Joint joint = *JointAhead(0);
  const double* operand = TakeOperand(left_[0]);
  const auto next_joint = JointAhead(1);
  if (const RunStep both = next_joint ? JoinTwice(joint, *next_joint) : nullptr) {
    steps_.push_back({both, operand, TakeOperand(left_[1])});
    return 2;
  }
  steps_.push_back({Join(joint), operand});
  return 1;
}

/// A number loaded and then joined with another one, or squared, if one step does that.
std::optional<StepMaker::Pair> StepMaker::PairAhead() const {
  const double* number = left_[0].number;
  if (Is(1, Kind::kSquare)) return Pair{Joint::kMul, number, number};
  if (!Is(1, Kind::kJoin) || !JoinPair(left_[1].joint)) return {};
  return Pair{left_[1].joint, number, left_[1].number};
}

/// How the last value is joined with what was put aside, or with a number.
std::optional<Joint> StepMaker::JointAhead(std::size_t index) const {
  if (Is(index, Kind::kJoin)) return left_[index].joint;
  if (Is(index, Kind::kJoinValues)) return Mirrored(left_[index].joint);
  return {};
}

const double* StepMaker::TakeOperand(const Instruction& instruction) {
  if (instruction.kind == Kind::kJoin) return instruction.number;
  --values_;
  return &kept_[values_ - 1];
}

}  // namespace

std::vector<Plan::Step> StepsOf(std::span<const Instruction> instructions,
                                std::vector<double>& kept) {
  return StepMaker(instructions, kept).Make();
}

}  // namespace zepkit10

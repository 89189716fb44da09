#include "expr/planner.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>
#include <vector>

#include "expr/evaluation.h"
#include "expr/operations.h"
#include "expr/plan_steps.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

constexpr int kDeepestNesting = 16;

Joint JointOf(ZepMathOperation operation, bool operand_is_right) {
  switch (operation) {
    case zepMOAdd:
      return Joint::kAdd;
    case zepMOSub:
      return operand_is_right ? Joint::kSub : Joint::kSubFrom;
    case zepMOMulti:
      return Joint::kMul;
    case zepMODivi:
      return operand_is_right ? Joint::kDiv : Joint::kDivInto;
    default:
      return operand_is_right ? Joint::kRaise : Joint::kRaiseInto;
  }
}

}  // namespace

/// Makes the steps of one term. Of two operands the one that needs more values put aside comes
/// first, so that there are never many. Nothing but faults would depend on the order.
class Planner {
 public:
  Planner(Evaluable& root, int nesting, std::uint64_t now)
      : root_(root),
        nesting_(nesting),
        now_(now),
        nodes_(root.Term().Nodes()),
        operands_(nodes_.size()) {}

  std::unique_ptr<const Plan> Make();

 private:
  using Index = std::uint32_t;
  struct Operand {
    Index left = 0, right = 0;
    Index values = 0;                // how many it needs at once; 0 for a plain number
    const double* number = nullptr;  // a plain number's place
    const Plan* nested = nullptr;
  };
  struct Pair {
    Joint joint;
    const double *first, *second;
  };
  enum class Stage { kBegin, kKeepAndBegin, kJoin, kJoinPair };
  struct Task {
    Index node;
    Stage stage;
  };

  bool FindOperands();
  bool Describe(Operand& operand, const Term::Node& node);
  bool IsSquare(Index index) const;
  std::optional<Pair> PairOf(Index index) const;
  bool LeftComesFirst(Index index) const;

  void Begin(Index index, bool keep);
  void BeginBoth(Index index, bool keep);
  void JoinOperands(Index index);
  void JoinNumber(Joint joint, const double* number);
  void Push(const Plan::Step& step) {
    plan_->steps_.push_back(step);
    last_joint_.reset();
  }
  void Later(Index node, Stage stage) { tasks_.push_back({node, stage}); }
  double* NextKept() { return &plan_->kept_[kept_++]; }

  Evaluable& root_;
  const int nesting_;
  const std::uint64_t now_;
  const std::vector<Term::Node>& nodes_;
  std::vector<Operand> operands_;    // of each node
  std::vector<Task> tasks_;          // the next one last
  std::size_t kept_ = 0;             // how many values are aside
  std::optional<Joint> last_joint_;  // of the last step, if it joins one number
  std::unique_ptr<Plan> plan_ = std::make_unique<Plan>();
};

std::unique_ptr<const Plan> Planner::Make() {
  if (!FindOperands()) return nullptr;
  plan_->kept_.resize(operands_.front().values);
  Later(0, Stage::kBegin);
  while (!tasks_.empty()) {
    const auto [node, stage] = tasks_.back();
    tasks_.pop_back();
    if (stage == Stage::kJoin) {
      JoinOperands(node);
    } else if (stage == Stage::kJoinPair) {
      const bool left_first = LeftComesFirst(node);
      const auto pair = *PairOf(left_first ? operands_[node].right : operands_[node].left);
      const Joint joint = JointOf(nodes_[node].operation, left_first);
      Push({JoinWithPair(joint, pair.joint), pair.first, pair.second});
    } else {
      Begin(node, stage == Stage::kKeepAndBegin);
    }
  }
  plan_->steps_.shrink_to_fit();
  return std::move(plan_);
}

bool Planner::FindOperands() {
  std::vector<Index> roots;  // of operands that wait for their operation, the leftmost last
  const auto take = [&roots] {
    const Index root = roots.back();
    roots.pop_back();
    return root;
  };
  for (Index i = static_cast<Index>(nodes_.size()); i-- > 0;) {
    Operand& operand = operands_[i];
    const int count = OperandCount(nodes_[i].operation);
    if (count == 0 && !Describe(operand, nodes_[i])) return false;
    if (count > 0) operand.left = take();
    if (count > 1) operand.right = take();
    const Index left = operands_[operand.left].values, right = operands_[operand.right].values;
    if (count == 1) operand.values = std::max(left, Index{1});
    if (count == 2) operand.values = left == right ? left + 1 : std::max(left, right);
    roots.push_back(i);
  }
  return true;
}

bool Planner::Describe(Operand& operand, const Term::Node& node) {
  operand.number = &node.number;
  if (node.operation == zepMONumber) return true;
  if (node.operation != zepMOGetVar) return false;
  Evaluable* variable = root_.FindVariable(node.name);
  if (!variable) return false;
  operand.number = variable->Term().Constant();
  if (operand.number) return true;
  operand.values = 1;
  if (nesting_ < kDeepestNesting) operand.nested = variable->PlanFor(nesting_ + 1, now_);
  return operand.nested;
}

bool Planner::IsSquare(Index index) const {
  const Term::Node& exponent = nodes_[operands_[index].right];
  return nodes_[index].operation == zepMORaise && exponent.operation == zepMONumber &&
         exponent.number == 2;
}

/// The node as an operation on two numbers that is one step.
std::optional<Planner::Pair> Planner::PairOf(Index index) const {
  if (!IsBinary(nodes_[index].operation)) return {};
  const double* left = operands_[operands_[index].left].number;
  const double* right = operands_[operands_[index].right].number;
  if (!left || !right) return {};
  if (IsSquare(index)) return Pair{Joint::kMul, left, left};
  const Joint joint = JointOf(nodes_[index].operation, true);
  return JoinPair(joint) ? std::optional(Pair{joint, left, right}) : std::nullopt;
}

bool Planner::LeftComesFirst(Index index) const {
  return operands_[operands_[index].left].values >= operands_[operands_[index].right].values;
}

void Planner::Begin(Index index, bool keep) {
  const Operand& operand = operands_[index];
  if (const auto pair = PairOf(index)) {
    return Push({keep ? KeepAndJoinPair(pair->joint) : JoinPair(pair->joint), pair->first,
                 pair->second, keep ? NextKept() : nullptr});
  }
  const int count = OperandCount(nodes_[index].operation);
  if (count == 2) return BeginBoth(index, keep);
  if (count == 1) {
    Later(index, Stage::kJoin);
    return Later(operand.left, keep ? Stage::kKeepAndBegin : Stage::kBegin);
  }
  if (keep) Push({Keep(), nullptr, nullptr, NextKept()});
  Push({operand.number ? Load() : RunNested(), operand.number, nullptr, nullptr, operand.nested});
}

void Planner::BeginBoth(Index index, bool keep) {
  const Operand& operand = operands_[index];
  const bool left_first = LeftComesFirst(index);
  const Index first = left_first ? operand.left : operand.right;
  const Index second = left_first ? operand.right : operand.left;
  const auto pair = PairOf(second);
  if (pair && JoinWithPair(JointOf(nodes_[index].operation, left_first), pair->joint)) {
    Later(index, Stage::kJoinPair);
  } else {
    Later(index, Stage::kJoin);
    if (!operands_[second].number) Later(second, Stage::kKeepAndBegin);
  }
  Later(first, keep ? Stage::kKeepAndBegin : Stage::kBegin);
}

void Planner::JoinOperands(Index index) {
  const Operand& operand = operands_[index];
  const ZepMathOperation operation = nodes_[index].operation;
  if (!IsBinary(operation)) return Push({Apply(operation)});
  if (IsSquare(index)) return Push({Square()});
  const bool left_first = LeftComesFirst(index);
  const double* number = operands_[left_first ? operand.right : operand.left].number;
  if (number) return JoinNumber(JointOf(operation, left_first), number);
  JoinNumber(JointOf(operation, !left_first), &plan_->kept_[--kept_]);
}

void Planner::JoinNumber(Joint joint, const double* number) {
  if (const RunStep both = last_joint_ ? JoinTwice(*last_joint_, joint) : nullptr) {
    plan_->steps_.back().run = both;
    plan_->steps_.back().second = number;
    last_joint_.reset();
    return;
  }
  Push({Join(joint), number});
  last_joint_ = joint;
}

std::unique_ptr<const Plan> MakePlan(Evaluable& root, int nesting, std::uint64_t now) noexcept {
  try {
    return Planner(root, nesting, now).Make();
  } catch (const std::bad_alloc&) {
    return nullptr;  // the term can be evaluated without
  }
}

}  // namespace zepkit10

#include "expr/planner.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include "expr/evaluation.h"
#include "expr/operations.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;
using Kind = Instruction::Kind;

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

/// Makes the instructions of one term. Of two operands the one that needs more values put aside
/// comes first, so that there are never many. Nothing but faults would depend on the order.
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
  enum class Stage { kBegin, kJoin };
  struct Task {
    Index node;
    Stage stage;
  };

  bool FindOperands();
  bool Describe(Operand& operand, const Term::Node& node);
  bool IsSquare(Index index) const;
  bool LeftComesFirst(Index index) const;

  void Begin(Index index);
  void JoinOperands(Index index);
  void Add(const Instruction& instruction) { instructions_.push_back(instruction); }
  void Later(Index node, Stage stage) { tasks_.push_back({node, stage}); }

  Evaluable& root_;
  const int nesting_;
  const std::uint64_t now_;
  const std::vector<Term::Node>& nodes_;
  std::vector<Operand> operands_;  // of each node
  std::vector<Task> tasks_;        // the next one last
  std::vector<Instruction> instructions_;
};

std::unique_ptr<const Plan> Planner::Make() {
  if (!FindOperands()) return nullptr;
  Later(0, Stage::kBegin);
  while (!tasks_.empty()) {
    const auto [node, stage] = tasks_.back();
    tasks_.pop_back();
    stage == Stage::kBegin ? Begin(node) : JoinOperands(node);
  }
  return std::make_unique<Plan>(std::move(instructions_), operands_.front().values);
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
  // One that was there already may have any depth.
  return operand.nested && operand.nested->Depth() < kDeepestNesting;
}

bool Planner::IsSquare(Index index) const {
  const Term::Node& exponent = nodes_[operands_[index].right];
  return nodes_[index].operation == zepMORaise && exponent.operation == zepMONumber &&
         exponent.number == 2;
}

bool Planner::LeftComesFirst(Index index) const {
  return operands_[operands_[index].left].values >= operands_[operands_[index].right].values;
}

void Planner::Begin(Index index) {
  const Operand& operand = operands_[index];
  const int count = OperandCount(nodes_[index].operation);
  if (operand.nested) return Add({.kind = Kind::kRunNested, .nested = operand.nested});
  if (count == 0) return Add({.kind = Kind::kLoad, .number = operand.number});
  Later(index, Stage::kJoin);
  const bool left_first = count == 1 || LeftComesFirst(index);
  const Index first = left_first ? operand.left : operand.right;
  const Index second = left_first ? operand.right : operand.left;
  if (count == 2 && !operands_[second].number) Later(second, Stage::kBegin);
  Later(first, Stage::kBegin);
}

void Planner::JoinOperands(Index index) {
  const Operand& operand = operands_[index];
  const ZepMathOperation operation = nodes_[index].operation;
  if (!IsBinary(operation)) return Add({.kind = Kind::kApply, .function = operation});
  if (IsSquare(index)) return Add({.kind = Kind::kSquare});
  const bool left_first = LeftComesFirst(index);
  const Joint joint = JointOf(operation, left_first);
  const double* number = operands_[left_first ? operand.right : operand.left].number;
  if (number) return Add({.kind = Kind::kJoin, .joint = joint, .number = number});
  Add({.kind = Kind::kJoinValues, .joint = joint});
}

}  // namespace

std::unique_ptr<const Plan> MakePlan(Evaluable& root, int nesting, std::uint64_t now) noexcept {
  try {
    return Planner(root, nesting, now).Make();
  } catch (const std::bad_alloc&) {
    return nullptr;  // the term can be evaluated without
  }
}

}  // namespace zepkit10

#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

#include "expr/float_environment.h"
#include "expr/plan.h"
#include "expr/term.h"

namespace zepkit10 {

/// Counts the changes of what terms mean.
inline std::atomic<std::uint64_t> meaning = 1;

/// Something that has a term, and knows what the term's variables stand for.
class Evaluable {
 public:
  virtual const zepkit10::Term& Term() const = 0;

  /// What a variable of the term stands for. Raises what there is to raise where it stands for
  /// nothing.
  virtual Evaluable& VariableNamed(char16_t name) = 0;

  /// The same without raising or making anything: null where it stands for nothing yet.
  virtual Evaluable* FindVariable(char16_t name) = 0;

  /// The plan of the term, null if there can be none. Good until the next `MeaningChanged`.
  /// `nesting` tells how many plans are being made around this one, and `now` the meaning that they
  /// are made in: one that changes meanwhile must not have a plan among them made again.
  const Plan* PlanFor(int nesting, std::uint64_t now);

 protected:
  ~Evaluable() = default;

 private:
  friend class Evaluation;
  friend double Evaluate(Evaluable& root);

  const Plan* PlanWorthHaving();
  double EvaluateInOrder();

  bool in_progress_ = false;
  std::uint64_t evaluated_in_ = 0;  // the meaning it was last evaluated in without a plan
  std::uint64_t planned_in_ = 0;    // the meaning it was last planned in
  std::unique_ptr<const Plan> plan_;
};

/// To be called after every change of a term or of what a variable stands for. Only a plain number
/// in place of another one is no change.
inline void MeaningChanged() noexcept { meaning.fetch_add(1, std::memory_order_relaxed); }

/// The value of a term with the current values of its variables, which may be terms themselves: a
/// chain of any length is followed, one that leads back to itself raises error 28. Operands are
/// evaluated right before left. Raises error 11 for a division by zero, 6 for an overflow and 5 for
/// any other invalid operation; the result is always finite. Errors of the runtime, a lookup's too,
/// name the Expression as their source; the library's own keep theirs. The thread's floating-point
/// environment does not matter.
inline double Evaluate(Evaluable& root) {
  if (const Plan* plan = root.PlanWorthHaving()) {
    const double value = plan->Run();
    if (IsFinite(value)) [[likely]]
      return value;
  }
  return root.EvaluateInOrder();
}

/// A plan is made for a second evaluation: most terms are evaluated once.
inline const Plan* Evaluable::PlanWorthHaving() {
  const std::uint64_t now = meaning.load(std::memory_order_relaxed);
  if (planned_in_ == now) [[likely]]
    return plan_.get();
  return std::exchange(evaluated_in_, now) == now ? PlanFor(0, now) : nullptr;
}

}  // namespace zepkit10

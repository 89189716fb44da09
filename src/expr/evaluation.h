#pragma once

#include "expr/term.h"

namespace zepkit10 {

/// Something that has a term, and knows what the term's variables stand for.
class Evaluable {
 public:
  virtual const zepkit10::Term& Term() const = 0;

  /// What a variable of the term stands for. Raises what there is to raise where it stands for
  /// nothing.
  virtual Evaluable& VariableNamed(char16_t name) = 0;

 protected:
  ~Evaluable() = default;

 private:
  friend class Evaluation;
  bool in_progress_ = false;
};

/// The value of a term with the current values of its variables, which may be terms themselves: a
/// chain of any length is followed, one that leads back to itself raises error 28. Operands are
/// evaluated right before left. Raises error 11 for a division by zero, 6 for an overflow and 5 for
/// any other invalid operation; the result is always finite. Errors of the runtime, a lookup's too,
/// name the Expression as their source; the library's own keep theirs.
double Evaluate(Evaluable& root);

}  // namespace zepkit10

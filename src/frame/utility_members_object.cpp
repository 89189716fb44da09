#include "frame/utility_members_object.h"

#include "expr/expression_object.h"

namespace zepkit10 {

double UtilityMembers::Compute(std::u16string_view EString) {
  const auto expression = Make<Expression>();
  expression->SetEString(EString);
  try {
    return expression->Value();
  } catch (...) {  // exhausted memory included
    RaiseZepError(ZepErrors::zepErrBadCharInTerm);
  }
}

}  // namespace zepkit10

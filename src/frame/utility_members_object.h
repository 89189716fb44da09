#pragma once

#include <string_view>

namespace zepkit10 {

/// The members that `Library` and `Global` have in common and that need no object of their own.
class UtilityMembers {
 public:
  /// The value of a term without variables. Whatever goes wrong after parsing is
  /// `zepErrBadCharInTerm`, with the library itself as its source.
  static double Compute(std::u16string_view EString);
};

}  // namespace zepkit10

#pragma once

#include <string_view>

#include "about/about_members_object.h"
#include "util/array_members_object.h"
#include "util/file_members_object.h"
#include "util/list_members_object.h"
#include "util/scalar_members_object.h"

namespace zepkit10 {

/// The members that `Library` and `Global` have in common and that need no object of their own.
/// Their errors name the class whose member the client called.
class UtilityMembers : public AboutMembers,
                       public ArrayMembers,
                       public FileMembers,
                       public ListMembers,
                       public ScalarMembers {
 public:
  /// The value of a term without variables. Whatever goes wrong after parsing is
  /// `zepErrBadCharInTerm`, with the library itself as its source.
  static double Compute(std::u16string_view EString);
};

}  // namespace zepkit10

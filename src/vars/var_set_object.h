#pragma once

#include "var_set_shim.h"
#include "vars/collection_object.h"
#include "vars/variable_object.h"

namespace zepkit10 {

class VarSets;

/// A named set of variables, in which the letters of terms are looked up.
class VarSet final : public ItemOf<CollectionOf<Deletable<VarSet, VarSetShim>, Variable>, VarSets> {
 public:
  Ref<Variable> Add(std::u16string_view Name);

  bool Explicit() const;
  void SetExplicit(bool NewValue);

  /// `zepErrBadCallContext` while the set has no name.
  std::u16string Name() const;
  void SetName(std::u16string_view NewName);

  /// The variable of a name, added where it is unknown and the set not explicit.
  Variable& VariableNamed(std::u16string_view name);

  Ref<Variable> ItemNotFound(std::u16string_view name);
  void ReleaseContent() { DeleteAll(); }

 private:
  bool name_set_ = false;
  bool explicit_ = false;
};

}  // namespace zepkit10

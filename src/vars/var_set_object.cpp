#include "vars/var_set_object.h"

#include "vars/var_sets_object.h"

namespace zepkit10 {

Ref<Variable> VarSet::Add(std::u16string_view Name) {
  EnsureAlive();
  EnsureUnused(Name);
  auto added = Make<Variable>();
  added->AttachParent(this);
  try {
    AppendNamed(added, Name);
  } catch (...) {  // exhausted memory included
    Raise(ZepErrors::zepErrBadCall);
  }
  return added;
}

bool VarSet::Explicit() const {
  EnsureAlive();
  return explicit_;
}

void VarSet::SetExplicit(bool NewValue) {
  EnsureAlive();
  explicit_ = NewValue;
}

std::u16string VarSet::Name() const {
  EnsureAlive();
  if (!name_set_) Raise(ZepErrors::zepErrBadCallContext);
  return ItemOf::Name();
}

void VarSet::SetName(std::u16string_view NewName) {
  ItemOf::SetName(NewName);
  name_set_ = true;
}

Variable& VarSet::VariableNamed(std::u16string_view name) {
  EnsureAlive();
  Variable* found = FindByName(name);
  return found ? *found : *ItemNotFound(name);
}

Ref<Variable> VarSet::ItemNotFound(std::u16string_view name) {
  if (explicit_) Raise(ZepErrors::zepErrItemNotExistant);
  return Add(name);
}

}  // namespace zepkit10

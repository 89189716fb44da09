#include "vars/var_sets_object.h"

#include "frame/library_object.h"

namespace zepkit10 {

Ref<VarSet> VarSets::Add(const VARIANT* Name) {
  EnsureAlive();
  std::optional<std::u16string> name;
  if (!IsMissing(Name)) {
    name = ConvertToText(*Name);
    if (!name) Raise(ZepErrors::zepErrBadParam);
    EnsureUnused(*name);
  }
  auto added = Make<VarSet>();
  added->AttachParent(this);
  if (name) {
    AppendNamed(added, *name);
  } else {
    Append(added);
  }
  return added;
}

Ref<Library> VarSets::Parent() const {
  EnsureAlive();
  return GetSharedLibrary();
}

}  // namespace zepkit10

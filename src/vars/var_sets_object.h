#pragma once

#include "frame/shared_library_object.h"
#include "var_sets_shim.h"
#include "vars/collection_object.h"
#include "vars/var_set_object.h"

namespace zepkit10 {

/// The library's collection of variable sets.
class VarSets final : public CollectionOf<Deletable<VarSets, VarSetsShim>, VarSet> {
 public:
  Ref<VarSet> Add(const VARIANT* Name);
  Ref<Library> Parent() const;

 private:
  const UserCount user_;
};

}  // namespace zepkit10

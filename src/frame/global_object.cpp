#include "frame/global_object.h"

#include "chart/charts_object.h"
#include "frame/library_object.h"
#include "vars/var_sets_object.h"

namespace zepkit10 {

Global::Global() = default;

Global::~Global() = default;

Ref<Charts> Global::Charts() const { return GetSharedLibrary()->Charts(); }

Ref<VarSets> Global::VarSets() const { return GetSharedLibrary()->VarSets(); }

Ref<Library> Global::Zep() const { return GetSharedLibrary(); }

}  // namespace zepkit10

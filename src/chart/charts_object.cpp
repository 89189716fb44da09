#include "chart/charts_object.h"

#include "frame/library_object.h"

namespace zepkit10 {

Ref<Chart> Charts::Add(std::u16string_view Name) {
  EnsureAlive();
  EnsureUnused(Name);
  auto added = Make<Chart>();
  added->AttachParent(this);
  try {
    AppendNamed(added, Name);
  } catch (...) {
    if (!added->Deleted()) added->Delete();
    throw;
  }
  return added;
}

Ref<Library> Charts::Parent() const {
  EnsureAlive();
  return GetSharedLibrary();
}

}  // namespace zepkit10

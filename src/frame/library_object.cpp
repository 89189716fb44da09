#include "frame/library_object.h"

#include "chart/charts_object.h"
#include "vars/var_sets_object.h"

namespace zepkit10 {
namespace {

template <class Singleton>
Ref<Singleton> Once(Ref<Singleton>& held) {
  if (!held) held = Make<Singleton>();
  return held;
}

template <class Collection>
void Empty(Ref<Collection>& held) noexcept try {
  if (const Ref<Collection> collection = std::exchange(held, nullptr)) collection->Shutdown();
} catch (...) {
}

}  // namespace

Library::Library() = default;

Library::~Library() { TearDown(); }

Ref<Charts> Library::Charts() { return Once(charts_); }

Ref<VarSets> Library::VarSets() { return Once(var_sets_); }

void Library::TearDown() noexcept {
  Empty(charts_);
  Empty(var_sets_);
}

}  // namespace zepkit10

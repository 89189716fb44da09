#pragma once

#include "chart/chart_object.h"
#include "charts_shim.h"
#include "frame/shared_library_object.h"

namespace zepkit10 {

/// The library's collection of charts.
class Charts final : public CollectionOf<Deletable<Charts, ChartsShim>, Chart> {
 public:
  Ref<Chart> Add(std::u16string_view Name);
  Ref<Library> Parent() const;

 private:
  const UserCount user_;
};

}  // namespace zepkit10

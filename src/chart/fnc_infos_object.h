#pragma once

#include "chart/fnc_info_object.h"
#include "fnc_infos_shim.h"

namespace zepkit10 {

class Chart;

/// The functions of one chart, and the box that holds all their ranges.
class FncInfos final : public CollectionOf<Deletable<FncInfos, FncInfosShim>, FncInfo> {
 public:
  explicit FncInfos(Chart& chart);

  Ref<FncInfo> Add(std::u16string_view Name);

  /// The largest or smallest bound of all functions; `zepErrBadCallContext` where there is none.
  double GreatestXHigh() const;
  double GreatestXLow() const;
  double GreatestYHigh() const;
  double GreatestYLow() const;

  Ref<Chart> Parent() const;

  /// Called by the chart at its own end.
  void Shutdown();

 private:
  template <class Better>
  double Extreme(double (FncInfo::*bound)() const, Better better) const;

  Ref<Chart> chart_;
};

}  // namespace zepkit10

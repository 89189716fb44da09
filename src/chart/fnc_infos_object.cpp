#include "chart/fnc_infos_object.h"

#include <functional>

#include "chart/chart_object.h"

namespace zepkit10 {

FncInfos::FncInfos(Chart& chart) : chart_(&chart) {}

Ref<FncInfo> FncInfos::Add(std::u16string_view Name) {
  EnsureAlive();
  EnsureUnused(Name);
  auto added = Make<FncInfo>();
  added->AttachParent(this);
  AppendNamed(added, Name);
  return added;
}

double FncInfos::GreatestXHigh() const { return Extreme(&FncInfo::XHigh, std::greater<>()); }
double FncInfos::GreatestXLow() const { return Extreme(&FncInfo::XLow, std::less<>()); }
double FncInfos::GreatestYHigh() const { return Extreme(&FncInfo::YHigh, std::greater<>()); }
double FncInfos::GreatestYLow() const { return Extreme(&FncInfo::YLow, std::less<>()); }

template <class Better>
double FncInfos::Extreme(double (FncInfo::*bound)() const, Better better) const {
  EnsureAlive();
  if (Items().Count() == 0) Raise(ZepErrors::zepErrBadCallContext);
  double best = ((*Items().begin()).get()->*bound)();
  for (const Ref<FncInfo>& each : Items()) {
    const double value = (each.get()->*bound)();
    if (better(value, best)) best = value;
  }
  return best;
}

Ref<Chart> FncInfos::Parent() const {
  EnsureAlive();
  return chart_;
}

void FncInfos::Shutdown() {
  CollectionOf::Shutdown();
  chart_ = nullptr;
}

}  // namespace zepkit10

#pragma once

#include "expr/expression_object.h"
#include "fnc_info_shim.h"
#include "vars/collection_object.h"

namespace zepkit10 {

class FncInfos;

/// A function to plot: its term, the ranges to show and the step of x. No value is checked.
class FncInfo final : public ItemOf<Deletable<FncInfo, FncInfoShim>, FncInfos> {
 public:
  Ref<zepkit10::Expression> Expression() const;
  void SetExpression(_Expression* NewExpression);

  double Interval() const { return Read(interval_); }
  void SetInterval(double NewInterval) { Write(interval_, NewInterval); }
  double XHigh() const { return Read(x_high_); }
  void SetXHigh(double NewXHigh) { Write(x_high_, NewXHigh); }
  double XLow() const { return Read(x_low_); }
  void SetXLow(double NewXLow) { Write(x_low_, NewXLow); }
  double YHigh() const { return Read(y_high_); }
  void SetYHigh(double NewYHigh) { Write(y_high_, NewYHigh); }
  double YLow() const { return Read(y_low_); }
  void SetYLow(double NewYLow) { Write(y_low_, NewYLow); }

  /// Also attaches the term to the chart's variable set.
  void AttachParent(FncInfos* parent);
  void AttachToChart();
  void ReleaseContent() { expression_ = nullptr; }

 private:
  double Read(double value) const {
    EnsureAlive();
    return value;
  }
  void Write(double& field, double value) {
    EnsureAlive();
    field = value;
  }

  Ref<zepkit10::Expression> expression_ = Make<zepkit10::Expression>();
  double interval_ = 0;
  double x_high_ = 0;
  double x_low_ = 0;
  double y_high_ = 0;
  double y_low_ = 0;
};

}  // namespace zepkit10

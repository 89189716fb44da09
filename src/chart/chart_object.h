#pragma once

#include <array>

#include "chart/fnc_infos_object.h"
#include "chart_events.h"
#include "chart_shim.h"
#include "platform/surface.h"
#include "vars/var_set_object.h"

namespace zepkit10 {

class Charts;

/// Plots functions into a picture, with axes, tick marks and labels, and tells its listeners every
/// function and every sample.
class Chart final : public ItemOf<Deletable<Chart, ChartShim>, Charts> {
 public:
  Chart();
  ~Chart() override;

  /// Stops the points of a running `Draw` before its next sample.
  void AbortDraw();

  double CoordMetric() const;
  void SetCoordMetric(double NewCoordMetric);

  /// Draws anew. A handler, or whatever runs while `Draw` yields, may do anything to the chart:
  /// once it is deleted `Draw` ends with `zepErrAwaitTerm`, otherwise it goes on with what is
  /// there.
  void Draw();

  /// How often each runtime error 1 to 76 befell a sample of the last `Draw`.
  const std::array<std::int32_t, 76>& Errors() const;
  Ref<zepkit10::FncInfos> FncInfos() const;
  Microsoft::WRL::ComPtr<IPictureDisp> Picture() const;

  /// In pixels; error 5 or 7 for a size that cannot be made, the size then stays.
  float PictureHeight() const;
  void SetPictureHeight(float NewPictureHeight);
  float PictureWidth() const;
  void SetPictureWidth(float NewPictureWidth);

  Ref<zepkit10::VarSet> VarSet() const;
  void SetVarSet(_VarSet* NewVarSet);

  void ReleaseContent();

 private:
  struct Variables {
    Ref<Variable> x;
    Ref<Variable> y;
  };

  void SetScale();
  void DrawAxes();
  void DrawTicks(float metric);
  void DrawFunction(const Ref<FncInfo>& function, int colour_index, const Variables& variables);
  void DrawSamples(const Ref<FncInfo>& function, Colour colour, const Variables& variables);
  void DrawSample(double x, Colour colour, const Variables& variables);
  Ref<Variable> VariableNamed(std::u16string_view name) const;

  ChartEvents events_{*this};
  Surface surface_;
  Ref<zepkit10::FncInfos> fnc_infos_;
  Ref<zepkit10::VarSet> var_set_;
  double coord_metric_ = 0;
  std::array<std::int32_t, 76> errors_{};
  bool abort_requested_ = false;
  int draws_running_ = 0;
};

}  // namespace zepkit10

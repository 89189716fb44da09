#include "chart/chart_object.h"

#include "chart/charts_object.h"
#include "chart/sampling.h"
#include "chart/ticks.h"
#include "platform/message_queue.h"
#include "platform/picture.h"

namespace zepkit10 {
namespace {

constexpr int kTickPixels = 4;  // from the axis to either side
constexpr int kSamplesBetweenYields = 100;
constexpr int kMaxDrawsRunning = 16;  // a handler that draws again, whose handler draws again …

class RunningDraw {
 public:
  explicit RunningDraw(int& count) : count_(count) {
    if (count_ == kMaxDrawsRunning) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace);
    }
    ++count_;
  }
  ~RunningDraw() { --count_; }
  RunningDraw(const RunningDraw&) = delete;
  RunningDraw& operator=(const RunningDraw&) = delete;

 private:
  int& count_;
};

}  // namespace

// The functions refer back to a chart that is still being made.
Chart::Chart() : ItemOf(&events_), fnc_infos_(Make<zepkit10::FncInfos>(*this)) {}

Chart::~Chart() = default;

void Chart::AbortDraw() {
  EnsureAlive();
  abort_requested_ = true;
}

double Chart::CoordMetric() const {
  EnsureAlive();
  return coord_metric_;
}

void Chart::SetCoordMetric(double NewCoordMetric) {
  EnsureAlive();
  coord_metric_ = NewCoordMetric;
}

const std::array<std::int32_t, 76>& Chart::Errors() const {
  EnsureAlive();
  return errors_;
}

Ref<FncInfos> Chart::FncInfos() const {
  EnsureAlive();
  return fnc_infos_;
}

Microsoft::WRL::ComPtr<IPictureDisp> Chart::Picture() const {
  EnsureAlive();
  return MakePicture(surface_);
}

float Chart::PictureHeight() const {
  EnsureAlive();
  return static_cast<float>(surface_.Height());
}

void Chart::SetPictureHeight(float NewPictureHeight) {
  EnsureAlive();
  surface_.Resize(surface_.Width(), NewPictureHeight);
}

float Chart::PictureWidth() const {
  EnsureAlive();
  return static_cast<float>(surface_.Width());
}

void Chart::SetPictureWidth(float NewPictureWidth) {
  EnsureAlive();
  surface_.Resize(NewPictureWidth, surface_.Height());
}

Ref<VarSet> Chart::VarSet() const {
  EnsureAlive();
  return var_set_;
}

void Chart::SetVarSet(_VarSet* NewVarSet) {
  EnsureAlive();
  auto* var_set = zepkit10::VarSet::From(NewVarSet);
  if (!var_set) Raise(ZepErrors::zepErrBadPropValue);
  var_set_ = Ref(var_set);
  for (const Ref<FncInfo>& each : fnc_infos_->Items()) each->AttachToChart();
}

void Chart::ReleaseContent() {
  if (const auto fnc_infos = std::exchange(fnc_infos_, nullptr)) fnc_infos->Shutdown();
  var_set_ = nullptr;
}

void Chart::Draw() {
  EnsureAlive();
  const RunningDraw running(draws_running_);
  if (!var_set_) Raise(ZepErrors::zepErrBadCallContext);
  abort_requested_ = false;
  errors_.fill(0);
  surface_.Clear();
  SetScale();
  DrawAxes();
  const Variables variables{VariableNamed(u"x"), VariableNamed(u"y")};
  const std::vector<Ref<FncInfo>> functions(fnc_infos_->Items().begin(), fnc_infos_->Items().end());
  int colour_index = 0;
  for (const Ref<FncInfo>& function : functions) {
    if (!function->Deleted()) DrawFunction(function, colour_index++, variables);
    EnsureAlive();
  }
}

void Chart::SetScale() {
  const double left = fnc_infos_->GreatestXLow(), top = fnc_infos_->GreatestYHigh();
  const double right = fnc_infos_->GreatestXHigh(), bottom = fnc_infos_->GreatestYLow();
  surface_.SetScale(left, top, right, bottom);
}

void Chart::DrawAxes() {
  const Axis& x = surface_.X();
  const Axis& y = surface_.Y();
  const Colour black = PaletteColour(0);
  surface_.LineAlongX(x.First(), x.Last(), 0, black);
  surface_.LineAlongY(0, y.First(), y.Last(), black);
  if (coord_metric_ != 0) DrawTicks(static_cast<float>(coord_metric_));
}

// The loops along y use the upper bound with the negative step, as those along x use the lower:
// with a range around 0 a positive metric marks the x axis only, a negative one the y axis only.
void Chart::DrawTicks(float metric) {
  const Axis& x = surface_.X();
  const Axis& y = surface_.Y();
  const Colour black = PaletteColour(0);
  const auto tick_x = static_cast<float>(x.ToUnits(kTickPixels));
  const auto tick_y = static_cast<float>(y.ToUnits(kTickPixels));
  const auto top = static_cast<float>(y.First()), left = static_cast<float>(x.First());
  const float bottom = top + static_cast<float>(y.Last() - y.First());
  const float right = left + static_cast<float>(x.Last() - x.First());
  for (const auto& [end, step] : {std::pair(top, -metric), std::pair(bottom, metric)}) {
    for (const float tick : PlanTicks(end, step, y))
      surface_.LineAlongX(tick_x, -tick_x, tick, black);
  }
  for (const auto& [end, step] : {std::pair(left, -metric), std::pair(right, metric)}) {
    for (const float tick : PlanTicks(end, step, x))
      surface_.LineAlongY(tick, -tick_y, tick_y, black);
  }
}

Ref<Variable> Chart::VariableNamed(std::u16string_view name) const {
  return Ref<Variable>(&var_set_->VariableNamed(name));
}

void Chart::DrawFunction(const Ref<FncInfo>& function, int colour_index,
                         const Variables& variables) {
  const std::u16string term = function->Expression()->EString();
  events_.NewFnc(term, function->XHigh(), function->XLow(), function->YHigh(), function->YLow(),
                 function->Interval());
  EnsureAlive();
  const Colour colour = PaletteColour(colour_index);
  if (function->Deleted()) return;
  variables.y->Bind(function->Expression());
  DrawSamples(function, colour, variables);
  if (!function->Deleted()) surface_.TextLine(colour_index, term, colour);
}

void Chart::DrawSamples(const Ref<FncInfo>& function, Colour colour, const Variables& variables) {
  Sampling sampling(function->XLow(), function->XHigh(), function->Interval());
  for (; sampling.Running() && !abort_requested_; sampling.Step()) {
    DrawSample(sampling.X(), colour, variables);
    EnsureAlive();
    if (function->Deleted()) return;
    const auto number = SampleNumber(sampling.X(), function->XLow(), function->Interval());
    // A loop that no longer moves must stay stoppable, whatever its number.
    if (number % kSamplesBetweenYields == 0 || sampling.Stuck()) {
      ProcessMessages();
      EnsureAlive();
      if (function->Deleted()) return;
    }
  }
}

void Chart::DrawSample(double x, Colour colour, const Variables& variables) {
  variables.x->SetValue(x);
  double y = 0;
  try {
    y = variables.y->Value();
    surface_.Point(static_cast<float>(x), static_cast<float>(y), colour);
  } catch (const Failure& failure) {
    const auto number = static_cast<std::size_t>(failure.number);
    if (failure.number < 1 || number > errors_.size()) throw;
    ++errors_[number - 1];
  } catch (const std::bad_alloc&) {
    ++errors_[static_cast<std::size_t>(ZepVbErrors3To98::zepVbErrOutOfMemory) - 1];
  }
  events_.NewPoint(x, y);
}

}  // namespace zepkit10

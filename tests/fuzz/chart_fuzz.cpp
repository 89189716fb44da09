// Coordinates, tick marks and samples: against the loops as they stand and against what the pixels
// of an axis are. The input is the bounds of an axis, its pixels, and the loops' bounds and steps,
// each number as a whole or as a small one.
#include <cmath>
#include <cstdint>
#include <limits>

#include "chart/coordinates.h"
#include "chart/palette.h"
#include "chart/sampling.h"
#include "chart/ticks.h"
#include "frame/errors.h"
#include "fuzz/expect.h"
#include "fuzz/input.h"
#include "unit/chart/naive_ticks.h"

namespace {

using namespace zepkit10;

double Number(Input& input) {
  switch (input.UpTo(3)) {
    case 0:
      return input.Any<double>();
    case 1:
      return input.Any<float>();
    case 2:
      return input.Any<std::int16_t>() / 16.0;
    default:
      return std::ldexp(input.Any<std::int8_t>(), input.Any<std::int8_t>());
  }
}

void CheckAxis(const Axis& axis, double position) {
  const double extent = axis.Last() - axis.First();
  const auto pixel = axis.ToPixel(position);
  const auto visible = axis.ToVisiblePixel(position);
  Expect(!pixel || std::isfinite(*pixel), "an infinite pixel");
  Expect(visible.has_value() == (pixel && *pixel >= 0 && *pixel < axis.Pixels()), "visible or not");
  Expect(!visible || *visible == *pixel, "another visible pixel");
  Expect(!pixel || (extent != 0 && std::isfinite(position)), "a pixel of no place");
  // Bounds so far from 0 leave no places for the pixels between them.
  const double size = std::fabs(extent);
  if (!(size > 1e-290 && size < 1e290)) return;
  if (!(std::fabs(axis.First()) < 1e6 * size)) return;
  const int last = axis.Pixels() - 1;
  for (const int each : {0, 1, last / 2, last}) {
    if (each > last) continue;
    Expect(axis.ToVisiblePixel(axis.First() + axis.ToUnits(each)) == each, "another pixel");
  }
  const double before = (position - axis.First()) / extent;
  if (last > 0 && before >= 0 && before <= 1) {
    Expect(visible && std::fabs(before * last - *visible) < 0.51, "a pixel far away");
  }
}

void CheckTicks(float end, float step, const Axis& axis) {
  constexpr int kRounds = 4000;
  const auto ticks = PlanTicks(end, step, axis);
  Expect(ticks.size() <= static_cast<std::size_t>(axis.Pixels()), "more ticks than pixels");
  const auto pixels = naive::VisiblePixels(ticks, axis);
  Expect(pixels.size() == ticks.size(), "two ticks on a pixel, or one on none");
  for (const float tick : ticks) {
    Expect(step < 0 ? tick >= end && tick <= 0 : tick <= end && tick >= 0, "a tick outside");
  }
  const auto expected = naive::TickPixels(end, step, axis, kRounds);
  Expect(!expected || *expected == pixels, "other ticks");
}

/// The number of the failure, 0 if there is none.
std::int32_t FailureOfNumber(double x, double low, double interval) {
  try {
    SampleNumber(x, low, interval);
    return 0;
  } catch (const Failure& failure) {
    return failure.number;
  }
}

void CheckNumber(double x, double low, double interval) {
  const double exact = (x - low) / interval;
  const bool fits = exact >= -2147483648.5 && exact < 2147483647.5;
  Expect(FailureOfNumber(x, low, interval) == (interval == 0 ? 11 : fits ? 0 : 6), "its error");
  if (interval == 0 || !fits) return;
  const double distance = std::fabs(SampleNumber(x, low, interval) - exact);
  Expect(distance <= 0.5, "a number that is not the nearest");
  Expect(distance < 0.5 || SampleNumber(x, low, interval) % 2 == 0, "a half not rounded to even");
}

void CheckSamples(double low, double high, double step) {
  constexpr int kMost = 300;
  int count = 0;
  double x = low;
  Sampling sampling(low, high, step);
  for (; count < kMost && sampling.Running() && !sampling.Stuck(); ++count) {
    Expect(sampling.X() == x || std::isnan(x), "another sample");
    CheckNumber(sampling.X(), low, step);
    // As long as rounding is far from halves of a step, samples are numbered one after the other.
    if (std::isnormal(step) && std::fabs(low) < 1e6 * std::fabs(step) && std::isfinite(x)) {
      Expect(SampleNumber(sampling.X(), low, step) == count, "numbered out of turn");
    }
    sampling.Step();
    Expect(sampling.Stuck() == (x + step == x), "stuck or not");
    x += step;
  }
  if (count == kMost || sampling.Stuck() || std::isnan(x)) return;
  Expect(step < 0 ? x < high : x > high, "ended early");
}

void CheckPalette(int index) {
  try {
    Expect(PaletteColour(index) <= 0xFFFFFF && index >= 0 && index <= 15, "no colour");
  } catch (const Failure& failure) {
    Expect(failure.number == 5 && (index < 0 || index > 15), "its error");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const double first = Number(input), last = Number(input);
  const int pixels = 1 + input.Any<std::uint16_t>() % (input.UpTo(7) ? 600 : 16384);
  const Axis axis(first, last, pixels);
  CheckAxis(axis, Number(input));
  const auto end = static_cast<float>(Number(input));
  CheckTicks(end, static_cast<float>(Number(input)), axis);
  const double low = Number(input), high = Number(input), step = Number(input);
  CheckSamples(low, high, step);
  CheckNumber(high, low, step);
  CheckPalette(input.Any<std::int32_t>());
  CheckPalette(input.UpTo(20) - 2);
  return 0;
}

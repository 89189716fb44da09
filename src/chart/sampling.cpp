#include "chart/sampling.h"

#include <cmath>
#include <limits>

#include "frame/errors.h"

namespace zepkit10 {

std::int32_t SampleNumber(double x, double low, double interval) {
  if (interval == 0) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrDivisionByZero);
  const double number = std::nearbyint((x - low) / interval);
  // Written so that a NaN is refused as well.
  if (!(number >= std::numeric_limits<std::int32_t>::min() &&
        number <= std::numeric_limits<std::int32_t>::max())) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  }
  return static_cast<std::int32_t>(number);
}

}  // namespace zepkit10

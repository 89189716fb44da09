#include "frame/object_serial.h"

#include <atomic>
#include <limits>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

std::atomic<std::int32_t> next_serial{0};

}  // namespace

std::int32_t NextObjectSerial() {
  std::int32_t serial = next_serial.load(std::memory_order_relaxed);
  do {
    if (serial == std::numeric_limits<std::int32_t>::max()) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
    }
  } while (!next_serial.compare_exchange_weak(serial, serial + 1, std::memory_order_relaxed));
  return serial;
}

}  // namespace zepkit10

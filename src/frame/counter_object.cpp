#include "frame/counter_object.h"

#include <utility>

namespace zepkit10 {

Counter::Counter() : AutomationObject(&events_) {}

void Counter::Decrement(std::int32_t DecrByWhat) {
  std::int32_t difference;
  if (__builtin_sub_overflow(value_, DecrByWhat, &difference)) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  }
  SetValue(difference);
}

void Counter::Increment(std::int32_t IncrByWhat) {
  std::int32_t sum;
  if (__builtin_add_overflow(value_, IncrByWhat, &sum)) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  }
  SetValue(sum);
}

void Counter::SetValue(std::int32_t NewValue) {
  const std::int32_t old_value = std::exchange(value_, NewValue);
  events_.ValueChanged(NewValue, old_value);
}

}  // namespace zepkit10

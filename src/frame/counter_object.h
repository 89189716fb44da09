#pragma once

#include "counter_events.h"
#include "counter_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

/// A 32-bit signed counter that tells its listeners every assignment of its value.
class Counter final : public AutomationObject<Counter, CounterShim> {
 public:
  static constexpr bool kCalculatesNothing = true;

  Counter();

  /// Both raise error 6 outside the 32-bit range; the value then stays.
  void Decrement(std::int32_t DecrByWhat);
  void Increment(std::int32_t IncrByWhat);

  Unguarded<std::int32_t> Value() const { return value_; }
  /// Raises `ValueChanged`, also for an equal value.
  void SetValue(std::int32_t NewValue);

 private:
  CounterEvents events_{*this};
  std::int32_t value_ = 0;
};

}  // namespace zepkit10

#pragma once

#include "frame/errors.h"
#include "frame/object_serial.h"
#include "platform/automation/event_source.h"
#include "platform/automation/object_core.h"
#include "platform/automation/ref.h"

namespace zepkit10 {

/// Base of every class of the type library: `class Counter : public AutomationObject<Counter,
/// CounterShim>`. The shim is a member, so that a class's methods may carry the type library's
/// names.
template <class Self, template <class> class ShimOf>
class AutomationObject : public ObjectCore {
 public:
  using Interface = typename ShimOf<Self>::Interface;

  /// The interface pointer that clients get; not counted.
  Interface* Abi() { return &shim_; }

  /// The object's serial: the process-wide number under which its owner keeps it.
  std::int32_t Serial() const { return serial_; }

  static constexpr const char16_t* ClassName() { return ShimOf<Self>::kClass.name; }

  /// The object of this class behind a client's pointer; null for a null or foreign pointer.
  static Self* From(IUnknown* pointer) noexcept {
    ObjectCore* core = Behind(pointer);
    return core && &core->Description() == &ShimOf<Self>::kClass ? static_cast<Self*>(core)
                                                                 : nullptr;
  }

 protected:
  explicit AutomationObject(EventSource* events = nullptr)
      : ObjectCore(ShimOf<Self>::kClass, &shim_, events), shim_(static_cast<Self&>(*this)) {}

  /// Raises one of the library's own errors in this class's name.
  [[noreturn, gnu::noinline]] static void Raise(ZepErrors number) {
    RaiseZepError(number, ClassName());
  }

 private:
  ShimOf<Self> shim_;
  const std::int32_t serial_ = NextObjectSerial();
};

}  // namespace zepkit10

#pragma once

#include "message_shim.h"
#include "platform/automation/automation_object.h"
#include "platform/automation/safe_array.h"

namespace zepkit10 {

class Messages;

/// A view of one posted message. It keeps its board alive until it is deleted through `Delete`.
class Message final : public AutomationObject<Message, MessageShim> {
 public:
  Message();
  ~Message() override;

  void Delete();
  bool Deleted() const;
  Variant Destination() const;
  std::int32_t Index() const;
  Variant MessageProperty() const;
  SafeArray Parameters() const;
  Ref<Messages> Parent() const;
  Variant Source() const;
  DATE Time() const;
};

}  // namespace zepkit10

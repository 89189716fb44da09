#pragma once

#include <memory>

#include "message_shim.h"
#include "msg/message_record_object.h"
#include "platform/automation/automation_object.h"
#include "platform/automation/safe_array.h"

namespace zepkit10 {

class Messages;

/// A view of one posted message. It keeps its board alive until it is deleted through `Delete`.
/// Once the board has the message no more, every member but `Deleted` and `Index` raises
/// `zepError`.
class Message final : public AutomationObject<Message, MessageShim> {
 public:
  Message(Ref<Messages> parent, std::shared_ptr<const MessageRecord> record);
  ~Message() override;

  void Delete();
  bool Deleted() const;
  Variant Destination() const;
  std::int32_t Index() const { return index_; }
  Variant MessageProperty() const;
  SafeArray Parameters() const;
  Ref<Messages> Parent() const;
  Variant Source() const;
  DATE Time() const;

 private:
  /// The record of a message that is not deleted. Held while values are copied: their objects may
  /// delete the message meanwhile.
  std::shared_ptr<const MessageRecord> Live() const;

  const std::int32_t index_;
  Ref<Messages> parent_;                         // null after `Delete`
  std::shared_ptr<const MessageRecord> record_;  // null after `Delete`
};

}  // namespace zepkit10

#include "msg/message_object.h"

#include "msg/messages_object.h"

namespace zepkit10 {

using enum ZepErrors;

Message::Message(Ref<Messages> parent, std::shared_ptr<const MessageRecord> record)
    : index_(record->index), parent_(std::move(parent)), record_(std::move(record)) {}

Message::~Message() = default;

void Message::Delete() {
  Live();
  // Released last: what the message held may run code that looks at the board and at this object.
  const auto record = std::exchange(record_, nullptr);
  const auto parent = std::exchange(parent_, nullptr);
  parent->Remove(index_, true);
}

bool Message::Deleted() const { return !parent_ || !parent_->Exists(index_); }

Variant Message::Destination() const { return CopyOf(Live()->destination.get()); }

Variant Message::MessageProperty() const { return CopyOf(Live()->message.get()); }

SafeArray Message::Parameters() const { return CopyOfParameters(Live()->parameters.get()); }

Ref<Messages> Message::Parent() const {
  Live();
  return parent_;
}

Variant Message::Source() const { return CopyOf(Live()->source.get()); }

DATE Message::Time() const { return Live()->time; }

std::shared_ptr<const MessageRecord> Message::Live() const {
  if (Deleted()) Raise(zepError);
  return record_;
}

}  // namespace zepkit10

#include "msg/message_object.h"

#include "msg/messages_object.h"

namespace zepkit10 {

using enum ZepErrors;

Message::Message() = default;

Message::~Message() = default;

void Message::Delete() { Raise(zepErrUnexpected); }
bool Message::Deleted() const { Raise(zepErrUnexpected); }
Variant Message::Destination() const { Raise(zepErrUnexpected); }
std::int32_t Message::Index() const { Raise(zepErrUnexpected); }
Variant Message::MessageProperty() const { Raise(zepErrUnexpected); }
SafeArray Message::Parameters() const { Raise(zepErrUnexpected); }
Ref<Messages> Message::Parent() const { Raise(zepErrUnexpected); }
Variant Message::Source() const { Raise(zepErrUnexpected); }
DATE Message::Time() const { Raise(zepErrUnexpected); }

}  // namespace zepkit10

#include "msg/messages_object.h"

#include "msg/message_object.h"

namespace zepkit10 {

using enum ZepErrors;

Messages::Messages() : AutomationObject(&events_) {}

Messages::~Messages() = default;

void Messages::Add(const VARIANT&, const VARIANT&, const VARIANT&, const VARIANT&) {
  Raise(zepErrUnexpected);
}
std::int32_t Messages::Count() const { Raise(zepErrUnexpected); }
bool Messages::Exists(std::int32_t) const { Raise(zepErrUnexpected); }
Ref<Message> Messages::First() { Raise(zepErrUnexpected); }
Ref<Messages> Messages::GetMessages(const VARIANT&, const VARIANT&, const VARIANT&, const VARIANT&,
                                    const VARIANT&) {
  Raise(zepErrUnexpected);
}
Ref<Message> Messages::Item(std::int32_t, bool) { Raise(zepErrUnexpected); }
Ref<Message> Messages::Last() { Raise(zepErrUnexpected); }
std::int32_t Messages::LastIndex() const { Raise(zepErrUnexpected); }
Ref<Messages> Messages::MessagesProperty(const VARIANT&, const VARIANT&, const VARIANT&,
                                         const VARIANT&, const VARIANT&) const {
  Raise(zepErrUnexpected);
}
Microsoft::WRL::ComPtr<IUnknown> Messages::NewEnum() { Raise(zepErrUnexpected); }
void Messages::Remove(std::int32_t, bool) { Raise(zepErrUnexpected); }

}  // namespace zepkit10

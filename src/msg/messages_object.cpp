#include "msg/messages_object.h"

#include "msg/message_filter_object.h"
#include "msg/message_object.h"
#include "platform/automation/enumerator.h"

namespace zepkit10 {

using enum ZepErrors;

namespace {

constexpr int kMaxPostingsRunning = 64;  // of handlers that post, to handlers that post …

}  // namespace

Messages::Messages() : AutomationObject(&events_) {}

Messages::~Messages() = default;

void Messages::Add(const VARIANT& Message, const VARIANT& Source, const VARIANT& Destination,
                   const VARIANT& Params) {
  if (postings_running_ == kMaxPostingsRunning) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace);
  }
  const std::int32_t index = list_.Post(MakeMessageRecord(Message, Source, Destination, Params));
  ++postings_running_;
  events_.NewMessage(index);
  --postings_running_;
}

Ref<Message> Messages::First() {
  if (Count() < 1) Raise(zepErrBadCallContext);
  return Item(1, false);
}

Ref<Messages> Messages::GetMessages(const VARIANT& Message, const VARIANT& Source,
                                    const VARIANT& Destination, const VARIANT& Params,
                                    const VARIANT& Time) {
  Ref<Messages> found = MessagesProperty(Message, Source, Destination, Params, Time);
  list_.RemoveAll(found->list_);
  return found;
}

Ref<Message> Messages::Item(std::int32_t Index, bool PostingIndex) {
  const auto record = PostingIndex ? list_.Find(Index) : list_.At(Index);
  if (!record) Raise(zepErrBadCall);
  return Make<Message>(Ref<Messages>(this), record);
}

Ref<Message> Messages::Last() {
  if (Count() < 1) Raise(zepErrBadCallContext);
  return Item(Count(), false);
}

Ref<Messages> Messages::MessagesProperty(const VARIANT& Message, const VARIANT& Source,
                                         const VARIANT& Destination, const VARIANT& Params,
                                         const VARIANT& Time) const {
  const MessageFilter filter(Message, Source, Destination, Params, Time);
  auto found = Make<Messages>();
  // Objects that are compared may post and remove messages.
  const auto snapshot = list_.All();
  for (const auto& record : snapshot) {
    if (filter.Matches(*record)) found->list_.Append(record);
  }
  found->list_.ContinueNumberingOf(list_);
  return found;
}

Microsoft::WRL::ComPtr<IUnknown> Messages::NewEnum() {
  auto snapshot = std::make_shared<std::vector<Variant>>();
  snapshot->reserve(list_.All().size());
  for (const auto& record : list_.All()) {
    snapshot->emplace_back(Make<Message>(Ref<Messages>(this), record)->Abi());
  }
  return Enumerator<VariantEnumeratorTraits>::Create(std::move(snapshot));
}

void Messages::Remove(std::int32_t Index, bool PostingIndex) {
  using enum ZepVbErrors3To98;
  if ((!PostingIndex && Index > Count()) || Count() < 1) Raise(zepErrBadCall);
  const auto removed = PostingIndex ? list_.Remove(Index) : list_.RemoveAt(Index);
  if (removed) return;
  RaiseRuntimeError(PostingIndex ? zepVbErrBadCall : zepVbErrSubscriptOutOfRange, ClassName());
}

}  // namespace zepkit10

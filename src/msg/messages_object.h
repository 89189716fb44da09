#pragma once

#include "messages_events.h"
#include "messages_shim.h"
#include "msg/message_record_object.h"
#include "msg/posting_list.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

class Message;

/// A numbered message board. A posting index names a message for good; positions, from 1, shift
/// when messages are removed.
class Messages final : public AutomationObject<Messages, MessagesShim> {
 public:
  Messages();
  ~Messages() override;

  /// Error 28 where handlers of `NewMessage` post within each other without end.
  void Add(const VARIANT& Message, const VARIANT& Source, const VARIANT& Destination,
           const VARIANT& Params);
  std::int32_t Count() const { return list_.Count(); }
  bool Exists(std::int32_t Index) const { return list_.Find(Index) != nullptr; }
  Ref<zepkit10::Message> First();
  /// As `MessagesProperty`, and takes out what it returns; nothing where it raises.
  Ref<Messages> GetMessages(const VARIANT& Message, const VARIANT& Source,
                            const VARIANT& Destination, const VARIANT& Params, const VARIANT& Time);
  /// `zepErrBadCall` where there is no such message.
  Ref<zepkit10::Message> Item(std::int32_t Index, bool PostingIndex);
  Ref<zepkit10::Message> Last();
  std::int32_t LastIndex() const { return list_.LastIndex(); }
  /// A board of the messages that equal every argument given; it goes on with this one's numbers.
  Ref<Messages> MessagesProperty(const VARIANT& Message, const VARIANT& Source,
                                 const VARIANT& Destination, const VARIANT& Params,
                                 const VARIANT& Time) const;
  Microsoft::WRL::ComPtr<IUnknown> NewEnum();
  /// `zepErrBadCall` for a position above `Count` and of an empty board; otherwise error 5 for a
  /// posting index that is not here and error 9 for a position below 1.
  void Remove(std::int32_t Index, bool PostingIndex);

 private:
  MessagesEvents events_{*this};
  PostingList<MessageRecord> list_;
  int postings_running_ = 0;
};

}  // namespace zepkit10

#pragma once

#include "messages_events.h"
#include "messages_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

class Message;

/// A numbered message board. A posting index names a message for good; positions, from 1, shift
/// when messages are removed.
class Messages final : public AutomationObject<Messages, MessagesShim> {
 public:
  Messages();
  ~Messages() override;

  void Add(const VARIANT& Message, const VARIANT& Source, const VARIANT& Destination,
           const VARIANT& Params);
  std::int32_t Count() const;
  bool Exists(std::int32_t Index) const;
  Ref<zepkit10::Message> First();
  Ref<Messages> GetMessages(const VARIANT& Message, const VARIANT& Source,
                            const VARIANT& Destination, const VARIANT& Params, const VARIANT& Time);
  Ref<zepkit10::Message> Item(std::int32_t Index, bool PostingIndex);
  Ref<zepkit10::Message> Last();
  std::int32_t LastIndex() const;
  Ref<Messages> MessagesProperty(const VARIANT& Message, const VARIANT& Source,
                                 const VARIANT& Destination, const VARIANT& Params,
                                 const VARIANT& Time) const;
  Microsoft::WRL::ComPtr<IUnknown> NewEnum();
  void Remove(std::int32_t Index, bool PostingIndex);

 private:
  MessagesEvents events_{*this};
};

}  // namespace zepkit10

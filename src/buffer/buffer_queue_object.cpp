#include "buffer/buffer_queue_object.h"

#include <limits>

#include "buffer/zep_variant_object.h"

namespace zepkit10 {

std::int32_t BufferQueue::Post(std::u16string_view message, ZepVariant& source,
                               const ZepVariant& addressee) {
  // Posting indexes only grow. When they come to their end, a new board starts at 0.
  if (messages_->LastIndex() >= std::numeric_limits<std::int32_t>::max() - 1 &&
      messages_->Count() == 0) {
    messages_ = Make<Messages>();
  }
  VARIANT no_parameters;
  no_parameters.vt = VT_ERROR;
  no_parameters.scode = DISP_E_PARAMNOTFOUND;
  const Variant text(message), sender(source.Abi()), receiver(addressee.Serial());
  messages_->Add(text.get(), sender.get(), receiver.get(), no_parameters);
  return messages_->LastIndex();
}

void BufferQueue::Remove(std::int32_t posting_index) noexcept try {
  if (messages_->Exists(posting_index)) messages_->Remove(posting_index, true);
} catch (...) {
}

}  // namespace zepkit10

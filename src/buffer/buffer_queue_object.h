#pragma once

#include <memory>
#include <string_view>

#include "msg/messages_object.h"

namespace zepkit10 {

class ZepVariant;

/// The message board over which the buffers of an apartment tell each other what happens. It lives
/// as long as any buffer. A posting is brought to its addressee at once, who removes it when done.
class BufferQueue {
 public:
  /// "change", "disconnectMe" or "disconnectYou"; the result is the posting index.
  std::int32_t Post(std::u16string_view message, ZepVariant& source, const ZepVariant& addressee);
  void Remove(std::int32_t posting_index) noexcept;

  /// How many changes ripple within each other, because handlers of one write other buffers.
  int& RipplesRunning() { return ripples_running_; }

 private:
  Ref<Messages> messages_ = Make<Messages>();
  int ripples_running_ = 0;
};

/// A message on the board, from its posting until its addressee has dealt with it.
class Posting {
 public:
  Posting(std::shared_ptr<BufferQueue> queue, std::u16string_view message, ZepVariant& source,
          const ZepVariant& addressee)
      : queue_(std::move(queue)), index_(queue_->Post(message, source, addressee)) {}
  ~Posting() { queue_->Remove(index_); }
  Posting(const Posting&) = delete;
  Posting& operator=(const Posting&) = delete;

 private:
  const std::shared_ptr<BufferQueue> queue_;
  const std::int32_t index_;
};

}  // namespace zepkit10

#include "buffer/ripple_object.h"

namespace zepkit10 {
namespace {

constexpr int kMaxRipplesRunning = 64;
constexpr std::u16string_view kChange = u"change";

}  // namespace

void Ripple::Start(ZepVariant& buffer, const Edit& edit) {
  if (buffer.notifying_) return;
  const std::shared_ptr<BufferQueue> queue = buffer.queue_;
  Ripple ripple(*queue);
  ripple.Enter(buffer, edit, nullptr, kNoPosting);
  ripple.Run();
}

Ripple::Ripple(BufferQueue& queue) : queue_(queue) {
  if (queue_.RipplesRunning() == kMaxRipplesRunning) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace);
  }
  ++queue_.RipplesRunning();
}

Ripple::~Ripple() {
  while (!steps_.empty()) Leave();
  --queue_.RipplesRunning();
}

void Ripple::Run() {
  while (!steps_.empty()) {
    Step& step = steps_.back();
    ZepVariant& buffer = *step.buffer;
    if (!step.views.empty()) {
      const std::shared_ptr<RangeLink> link = std::move(step.views.back());
      step.views.pop_back();
      if (link->view) Post(step, *link->view);
    } else if (!step.parent_told) {
      step.parent_told = true;
      if (buffer.is_range_) Post(step, *buffer.link_->parent);
    } else {
      buffer.events_.Change();
      Leave();
    }
  }
}

void Ripple::Enter(ZepVariant& buffer, const std::optional<Edit>& edit, const ZepVariant* skipped,
                   std::int32_t posting) {
  Step step{Ref<ZepVariant>(&buffer), edit, buffer.version_, {}, false, posting};
  step.views.reserve(buffer.views_.size());
  for (auto link = buffer.views_.rbegin(); link != buffer.views_.rend(); ++link) {
    if ((*link)->view != skipped) step.views.push_back(*link);
  }
  steps_.push_back(std::move(step));
  buffer.notifying_ = true;
}

void Ripple::Leave() noexcept {
  const Step step = std::move(steps_.back());
  steps_.pop_back();
  step.buffer->notifying_ = false;
  if (step.posting != kNoPosting) queue_.Remove(step.posting);
}

/// Brings a change to a view or to the parent of the buffer that announces it.
void Ripple::Post(const Step& step, ZepVariant& addressee) {
  const Ref<ZepVariant> sender = step.buffer, keeper(&addressee);
  const std::int32_t posting = queue_.Post(kChange, *sender, addressee);
  try {
    if (addressee.is_range_ && addressee.link_->parent == sender.get()) {
      const std::optional<Edit> edit = TakeOverFromParent(addressee, step);
      if (!addressee.notifying_) return Enter(addressee, edit, sender.get(), posting);
    } else if (sender->is_range_ && sender->link_->parent == &addressee) {
      const std::optional<Edit> edit = TakeOverFromView(addressee, step);
      if (!addressee.notifying_) return Enter(addressee, edit, sender.get(), posting);
    }
  } catch (...) {
    queue_.Remove(posting);
    throw;
  }
  queue_.Remove(posting);
}

std::optional<Edit> Ripple::TakeOverFromParent(ZepVariant& view, const Step& step) {
  const ZepVariant& parent = *step.buffer;
  RangeLink& link = *view.link_;
  const bool view_is_known = link.view_version == view.version_;
  const Slice before = view.range_;
  view.range_ = Clamp(before, parent.ByteLength());  // moves an empty view from behind the end
  if (view_is_known && link.parent_version == parent.version_) return std::nullopt;
  const bool edit_is_all = step.edit && view_is_known &&
                           link.parent_version + 1 == parent.version_ &&
                           step.version == parent.version_;
  const Edit edit = edit_is_all ? InView(*step.edit, before, view.range_)
                                : Edit{1, view.ByteLength(), view.range_.length};
  const Slice changed{view.range_.start - 1 + edit.start, edit.new_length};
  view.ReplaceBytes({edit.start, edit.old_length}, parent.BytesIn(changed));
  link.parent_version = parent.version_;
  link.view_version = ++view.version_;
  return edit;
}

std::optional<Edit> Ripple::TakeOverFromView(ZepVariant& parent, const Step& step) {
  ZepVariant& view = *step.buffer;
  RangeLink& link = *view.link_;
  const bool parent_is_known = link.parent_version == parent.version_;
  if (parent_is_known && link.view_version == view.version_) return std::nullopt;
  // A parent that was written while it announced a change may be shorter than its views think.
  const bool within = IsWithin(view.range_, parent.ByteLength());
  const Slice slice = within ? view.range_ : Clamp(view.range_, parent.ByteLength());
  const bool edit_is_all = step.edit && within && parent_is_known &&
                           link.view_version + 1 == view.version_ && step.version == view.version_;
  const Edit edit = edit_is_all ? InParent(*step.edit, slice)
                                : Edit{slice.start, slice.length, view.ByteLength()};
  const Slice changed{edit.start - slice.start + 1, edit.new_length};
  parent.ReplaceBytes({edit.start, edit.old_length}, view.BytesIn(changed));
  view.range_ = {slice.start, view.ByteLength()};
  link.parent_version = ++parent.version_;
  link.view_version = view.version_;
  return edit;
}

}  // namespace zepkit10

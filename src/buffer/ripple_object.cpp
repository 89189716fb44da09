#include "buffer/ripple_object.h"

namespace zepkit10 {
namespace {

constexpr int kMaxRipplesRunning = 64;
constexpr std::u16string_view kChange = u"change";

}  // namespace

Ripple::Ripple(ZepVariant& buffer) : queue_(buffer.queue_) {
  if (buffer.notifying_) return;
  if (queue_->RipplesRunning() == kMaxRipplesRunning) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace);
  }
  first_ = Prepare(buffer, nullptr, kNoPosting);
  MakeRoom();
}

Ripple::~Ripple() {
  if (steps_.empty()) return;
  while (!steps_.empty()) Leave();
  --queue_->RipplesRunning();
}

void Ripple::Run(const Edit& edit) {
  if (!first_) return;
  ++queue_->RipplesRunning();
  Enter(*std::exchange(first_, {}), edit);
  for (;;) {
    if (!steps_.back().views.empty()) {
      MakeRoom();
      Step& step = steps_.back();
      const std::shared_ptr<RangeLink> link = std::move(step.views.back());
      step.views.pop_back();
      if (link->view) Post(step, *link->view);
      continue;
    }
    ZepVariant& buffer = *steps_.back().buffer;
    if (buffer.is_range_ && !steps_.back().parent_told) {
      MakeRoom();
      steps_.back().parent_told = true;
      Post(steps_.back(), *buffer.link_->parent);
    } else {
      buffer.events_.Change();
      if (steps_.size() == 1) return;
      Leave();
    }
  }
}

Ripple::Step Ripple::Prepare(ZepVariant& buffer, const ZepVariant* skipped, std::int32_t posting) {
  Step step{Ref<ZepVariant>(&buffer), {}, 0, {}, false, posting};
  step.views.reserve(buffer.views_.size());
  for (auto link = buffer.views_.rbegin(); link != buffer.views_.rend(); ++link) {
    if ((*link)->view != skipped) step.views.push_back(*link);
  }
  return step;
}

void Ripple::Enter(Step step, const std::optional<Edit>& edit) noexcept {
  step.edit = edit;
  step.version = step.buffer->version_;
  step.buffer->notifying_ = true;
  steps_.push_back(std::move(step));
}

void Ripple::Leave() noexcept {
  const Step step = std::move(steps_.back());
  steps_.pop_back();
  step.buffer->notifying_ = false;
  if (step.posting != kNoPosting) queue_->Remove(step.posting);
}

void Ripple::MakeRoom() {
  if (steps_.size() == steps_.capacity()) steps_.reserve(2 * steps_.size() + 1);
}

/// Brings a change to a view or to the parent of the buffer that announces it.
void Ripple::Post(const Step& step, ZepVariant& addressee) {
  const Ref<ZepVariant> sender = step.buffer, keeper(&addressee);
  const std::int32_t posting = queue_->Post(kChange, *sender, addressee);
  try {
    Deliver(step, addressee, posting);
  } catch (...) {
    queue_->Remove(posting);
    throw;
  }
}

void Ripple::Deliver(const Step& step, ZepVariant& addressee, std::int32_t posting) {
  const ZepVariant& sender = *step.buffer;
  const bool to_view = addressee.is_range_ && addressee.link_->parent == &sender;
  const bool to_parent = sender.is_range_ && sender.link_->parent == &addressee;
  if (to_view || to_parent) {
    std::optional<Step> next;
    if (!addressee.notifying_) next = Prepare(addressee, &sender, posting);
    const auto edit =
        to_view ? TakeOverFromParent(addressee, step) : TakeOverFromView(addressee, step);
    if (next) return Enter(std::move(*next), edit);
  }
  queue_->Remove(posting);
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

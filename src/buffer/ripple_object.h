#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "buffer/buffer_queue_object.h"
#include "buffer/zep_variant_object.h"

namespace zepkit10 {

/// A change on its way from a buffer through its views and its parent, their views and parents, and
/// so on, until every buffer that it touches has announced it: each first posts "change" to its
/// views, then to its parent, then raises `Change`. What a posting causes ends before the next one
/// is made. The steps stand on a stack of their own, so that no depth of views overflows the
/// thread's. A buffer that is announcing a change does not announce another one meanwhile.
///
/// What the announcement by the buffer itself takes is made ready before the buffer is edited, and
/// so it is on the way, before a view or a parent takes an edit over: where that fails, the buffer
/// is as it was. A ripple that fails further on is not taken back. The views that it did not reach
/// are brought into step by the next one.
class Ripple {
 public:
  /// To be made before a buffer is edited. Error 28 where handlers let changes ripple within each
  /// other without end.
  explicit Ripple(ZepVariant& buffer);
  ~Ripple();
  Ripple(const Ripple&) = delete;
  Ripple& operator=(const Ripple&) = delete;

  /// Announces the edit that the buffer has got.
  void Run(const Edit& edit);

 private:
  static constexpr std::int32_t kNoPosting = -1;

  struct Step {
    Ref<ZepVariant> buffer;
    std::optional<Edit> edit;                       // the latest; none where the content stayed
    std::uint64_t version;                          // of the content that the edit led to
    std::vector<std::shared_ptr<RangeLink>> views;  // those still to be told, last first
    bool parent_told;
    std::int32_t posting;  // that brought the change here
  };

  /// A step that has not begun.
  static Step Prepare(ZepVariant& buffer, const ZepVariant* skipped, std::int32_t posting);
  /// Begins a step on a stack with room for it.
  void Enter(Step step, const std::optional<Edit>& edit) noexcept;
  void Leave() noexcept;
  void MakeRoom();
  void Post(const Step& step, ZepVariant& addressee);
  void Deliver(const Step& step, ZepVariant& addressee, std::int32_t posting);
  /// Each brings the content into step and returns what that changed: nothing where it was already.
  static std::optional<Edit> TakeOverFromParent(ZepVariant& view, const Step& parent);
  static std::optional<Edit> TakeOverFromView(ZepVariant& parent, const Step& view);

  const std::shared_ptr<BufferQueue> queue_;
  std::optional<Step> first_;  // none where the buffer is announcing a change already
  std::vector<Step> steps_;
};

}  // namespace zepkit10

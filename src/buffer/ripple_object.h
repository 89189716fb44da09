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
class Ripple {
 public:
  /// Announces the edit that a buffer has just got. Error 28 where handlers let changes ripple
  /// within each other without end.
  static void Start(ZepVariant& buffer, const Edit& edit);

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

  explicit Ripple(BufferQueue& queue);
  ~Ripple();
  Ripple(const Ripple&) = delete;
  Ripple& operator=(const Ripple&) = delete;

  void Run();
  void Enter(ZepVariant& buffer, const std::optional<Edit>& edit, const ZepVariant* skipped,
             std::int32_t posting);
  void Leave() noexcept;
  void Post(const Step& step, ZepVariant& addressee);
  /// Each brings the content into step and returns what that changed: nothing where it was already.
  static std::optional<Edit> TakeOverFromParent(ZepVariant& view, const Step& parent);
  static std::optional<Edit> TakeOverFromView(ZepVariant& parent, const Step& view);

  BufferQueue& queue_;
  std::vector<Step> steps_;
};

}  // namespace zepkit10

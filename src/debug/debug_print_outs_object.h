#pragma once

#include "debug/debug_print_out_object.h"
#include "debug_print_outs_shim.h"
#include "frame/shared_library_object.h"
#include "vars/collection_object.h"

namespace zepkit10 {

/// The library's collection of targets for `DebugPrint`. Targets have no names.
class DebugPrintOuts final
    : public CollectionOf<Deletable<DebugPrintOuts, DebugPrintOutsShim>, DebugPrintOut> {
 public:
  /// Adds a target and tries it out; one that is not usable is deleted again.
  Ref<DebugPrintOut> Add(IDispatch* NewOut, std::u16string_view CallString,
                         ZepDPOCallType CallType);
  bool Enabled() const;
  void SetEnabled(bool NewEnabled);
  Ref<Library> Parent() const;

  /// Delivers a text to the targets, in their order, if `Enabled`. What a target's member raises
  /// ends it. Targets that come meanwhile receive nothing, nor do those that are deleted before
  /// their turn.
  void Print(std::u16string_view text);

  /// How many calls of targets' members run within each other; counted by the targets.
  int& DeliveriesRunning() { return deliveries_running_; }

 private:
  const UserCount user_;
  bool enabled_ = true;
  int deliveries_running_ = 0;
};

}  // namespace zepkit10

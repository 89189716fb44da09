#pragma once

#include "debug/debug_print_out_object.h"
#include "debug_print_outs_shim.h"
#include "frame/shared_library_object.h"
#include "vars/collection_object.h"

namespace zepkit10 {

/// The library's collection of targets for `DebugPrint`.
class DebugPrintOuts final
    : public CollectionOf<Deletable<DebugPrintOuts, DebugPrintOutsShim>, DebugPrintOut> {
 public:
  Ref<DebugPrintOut> Add(IDispatch* NewOut, std::u16string_view CallString,
                         ZepDPOCallType CallType);
  bool Enabled() const;
  void SetEnabled(bool NewEnabled);
  Ref<Library> Parent() const;

  /// Delivers a text to every target, in their order, if `Enabled`.
  void Print(std::u16string_view text);

 private:
  const UserCount user_;
  bool enabled_ = true;
};

}  // namespace zepkit10

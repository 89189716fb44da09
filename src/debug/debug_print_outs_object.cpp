#include "debug/debug_print_outs_object.h"

#include "frame/library_object.h"

namespace zepkit10 {

Ref<DebugPrintOut> DebugPrintOuts::Add(IDispatch* NewOut, std::u16string_view CallString,
                                       ZepDPOCallType CallType) {
  EnsureAlive();
  auto added = Make<DebugPrintOut>(NewOut, CallString, CallType);
  added->AttachParent(this);
  Append(added);
  if (!added->Usable()) {
    // The member that was tried may have deleted it already.
    if (!added->Deleted()) added->Delete();
    Raise(ZepErrors::zepErrBadCall);
  }
  return added;
}

bool DebugPrintOuts::Enabled() const {
  EnsureAlive();
  return enabled_;
}

void DebugPrintOuts::SetEnabled(bool NewEnabled) {
  EnsureAlive();
  enabled_ = NewEnabled;
}

Ref<Library> DebugPrintOuts::Parent() const {
  EnsureAlive();
  return GetSharedLibrary();
}

void DebugPrintOuts::Print(std::u16string_view text) {
  if (!enabled_) return;
  const std::vector<Ref<DebugPrintOut>> targets(Items().begin(), Items().end());
  for (const Ref<DebugPrintOut>& target : targets) {
    if (!target->Deleted()) target->PrintText(text);
  }
}

}  // namespace zepkit10

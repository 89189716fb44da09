#include "debug/debug_print_outs_object.h"

#include "frame/library_object.h"

namespace zepkit10 {

using enum ZepErrors;

Ref<DebugPrintOut> DebugPrintOuts::Add(IDispatch*, std::u16string_view, ZepDPOCallType) {
  Raise(zepErrUnexpected);
}
bool DebugPrintOuts::Enabled() const { Raise(zepErrUnexpected); }
void DebugPrintOuts::SetEnabled(bool) { Raise(zepErrUnexpected); }
Ref<Library> DebugPrintOuts::Parent() const { Raise(zepErrUnexpected); }
void DebugPrintOuts::Print(std::u16string_view) { Raise(zepErrUnexpected); }

}  // namespace zepkit10

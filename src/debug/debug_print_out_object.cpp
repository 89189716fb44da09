#include "debug/debug_print_out_object.h"

#include "debug/debug_print_outs_object.h"

namespace zepkit10 {

using enum ZepErrors;

DebugPrintOut::DebugPrintOut(IDispatch* object, std::u16string_view call, ZepDPOCallType type)
    : object_(object), call_(call), type_(type) {}

DebugPrintOut::~DebugPrintOut() = default;

std::u16string DebugPrintOut::LinkedCall() const { Raise(zepErrUnexpected); }
ZepDPOCallType DebugPrintOut::LinkedCallType() const { Raise(zepErrUnexpected); }
Microsoft::WRL::ComPtr<IDispatch> DebugPrintOut::LinkedObject() const { Raise(zepErrUnexpected); }
void DebugPrintOut::PrintText(std::u16string_view) { Raise(zepErrUnexpected); }
bool DebugPrintOut::Usable() { Raise(zepErrUnexpected); }
void DebugPrintOut::ReleaseContent() { object_ = nullptr; }

}  // namespace zepkit10

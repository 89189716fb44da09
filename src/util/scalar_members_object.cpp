#include "util/scalar_members_object.h"

#include "frame/errors.h"

namespace zepkit10 {

using enum ZepErrors;

std::u16string ScalarMembers::ByteArrayToString(SAFEARRAY**, ZepStringType) {
  RaiseInCalledClass(zepErrUnexpected);
}
Variant ScalarMembers::Decr(VARIANT*, const VARIANT&) { RaiseInCalledClass(zepErrUnexpected); }
std::u16string ScalarMembers::FinalizeString(std::u16string_view, std::u16string_view) {
  RaiseInCalledClass(zepErrUnexpected);
}
Variant ScalarMembers::Incr(VARIANT*, const VARIANT&) { RaiseInCalledClass(zepErrUnexpected); }
void ScalarMembers::MessageBeep(ZepMsgType) { RaiseInCalledClass(zepErrUnexpected); }
std::u16string ScalarMembers::NewTag() { RaiseInCalledClass(zepErrUnexpected); }
SafeArray ScalarMembers::StringToByteArray(std::u16string_view, ZepStringType) {
  RaiseInCalledClass(zepErrUnexpected);
}
void ScalarMembers::SwapVars(VARIANT*, VARIANT*) { RaiseInCalledClass(zepErrUnexpected); }

}  // namespace zepkit10

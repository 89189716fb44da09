#include "util/array_members_object.h"

#include "frame/errors.h"

namespace zepkit10 {

using enum ZepErrors;

Variant ArrayMembers::CutArray(const VARIANT&, std::int32_t, std::int32_t) {
  RaiseInCalledClass(zepErrUnexpected);
}
bool ArrayMembers::IsArrayEmpty(const VARIANT&) { RaiseInCalledClass(zepErrUnexpected); }
bool ArrayMembers::IsArrayStatic(const VARIANT&) { RaiseInCalledClass(zepErrUnexpected); }
Variant ArrayMembers::Max(SAFEARRAY**) { RaiseInCalledClass(zepErrUnexpected); }
Variant ArrayMembers::MergeArrays(const VARIANT&, const VARIANT&, std::int32_t) {
  RaiseInCalledClass(zepErrUnexpected);
}
Variant ArrayMembers::Min(SAFEARRAY**) { RaiseInCalledClass(zepErrUnexpected); }
Variant ArrayMembers::TransformArray(const VARIANT&, std::int32_t) {
  RaiseInCalledClass(zepErrUnexpected);
}
Variant ArrayMembers::TransformPArray(const VARIANT&, VARIANT_BOOL*) {
  RaiseInCalledClass(zepErrUnexpected);
}
std::int32_t ArrayMembers::ZepLBound(const VARIANT&, std::int32_t) {
  RaiseInCalledClass(zepErrUnexpected);
}
std::int32_t ArrayMembers::ZepLBound(const VARIANT&, const LONG*) {
  RaiseInCalledClass(zepErrUnexpected);
}
std::int32_t ArrayMembers::ZepUBound(const VARIANT&, std::int32_t) {
  RaiseInCalledClass(zepErrUnexpected);
}
std::int32_t ArrayMembers::ZepUBound(const VARIANT&, const LONG*) {
  RaiseInCalledClass(zepErrUnexpected);
}

}  // namespace zepkit10

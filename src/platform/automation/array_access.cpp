#include "platform/automation/array_access.h"

#include "frame/errors.h"

namespace zepkit10 {

ArrayAccess::ArrayAccess(SAFEARRAY* array) {
  if (!array || array->cDims == 0) return;
  if (array->cDims > 1) RaiseInCalledClass(ZepErrors::zepErrBadCall);
  lower_ = array->rgsabound[0].lLbound;
  if (array->rgsabound[0].cElements == 0 || !array->pvData) return;
  if (FAILED(SafeArrayLock(array))) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrArrayFixedOrLocked);
  }
  array_ = array;
  count_ = array->rgsabound[0].cElements;
}

ArrayAccess::~ArrayAccess() {
  if (array_) SafeArrayUnlock(array_);
}

void* ArrayAccess::At(std::int64_t index) const {
  if (index < lower_ || index > UpperBound()) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrSubscriptOutOfRange);
  }
  const auto position = static_cast<std::size_t>(index - lower_);
  return static_cast<BYTE*>(array_->pvData) + position * array_->cbElements;
}

}  // namespace zepkit10

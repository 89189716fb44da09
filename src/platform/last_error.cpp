#include "platform/last_error.h"

#include <windows.h>

#include "frame/errors.h"

namespace zepkit10 {

void RaiseLastError() {
  switch (GetLastError()) {
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
    case ERROR_COMMITMENT_LIMIT:
    case ERROR_NO_MORE_USER_HANDLES:
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfMemory);
    default:  // 0 too: a system without a display gives no reason
      RaiseRuntimeError(ZepVbErrors298To746::zepVbErrCantLoadNorUnloadObject);
  }
}

}  // namespace zepkit10

#include "util/log_file_object.h"

#include "frame/errors.h"

namespace zepkit10 {

void AppendToLog(std::u16string_view, std::u16string_view) {
  RaiseInCalledClass(ZepErrors::zepErrUnexpected);
}

}  // namespace zepkit10

#include "frame/errors.h"

namespace zepkit10 {
namespace {

std::u16string SourceOf(std::u16string_view class_name) {
  std::u16string source = u"Zepkit10";
  if (!class_name.empty()) source.append(u".").append(class_name);
  return source;
}

}  // namespace

void RaiseZepError(ZepErrors number, std::u16string_view class_name) {
  throw Failure{static_cast<std::int32_t>(number), SourceOf(class_name), {}};
}

void RaiseInCalledClass(ZepErrors number) {
  throw Failure{static_cast<std::int32_t>(number), {}, {}};
}

void RaiseRuntimeError(ZepVbErrors3To98 number, std::u16string_view class_name) {
  throw Failure{static_cast<std::int32_t>(number),
                class_name.empty() ? std::u16string() : SourceOf(class_name),
                {}};
}

void RaiseRuntimeError(ZepVbErrors298To746 number) {
  throw Failure{static_cast<std::int32_t>(number), {}, {}};
}

}  // namespace zepkit10

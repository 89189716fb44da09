#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "enums.h"

namespace zepkit10 {

/// A failure on its way to the client. Logic and objects throw it; the ABI shims turn it into an
/// HRESULT with IErrorInfo.
struct Failure {
  /// A `ZepErrors` code (negative) or the number of a runtime error (1 to 65535).
  std::int32_t number;
  /// "Zepkit10.<Class>" or "Zepkit10". Empty stands for the class whose member the client called.
  std::u16string source;
  /// Empty stands for the text that belongs to the number in the user's language.
  std::u16string description;

  friend bool operator==(const Failure&, const Failure&) = default;
};

/// Raises one of the library's own errors with the source "Zepkit10.<class_name>", or plain
/// "Zepkit10" where no class name is given.
[[noreturn]] void RaiseZepError(ZepErrors number, std::u16string_view class_name = {});

/// Raises one of the library's own errors with the source "Zepkit10.<class whose member the client
/// called>".
[[noreturn]] void RaiseInCalledClass(ZepErrors number);

/// Raises an error of the runtime (5 bad call, 6 overflow, 11 division by zero …). Without a class
/// name the source names the class whose member the client called.
[[noreturn]] void RaiseRuntimeError(ZepVbErrors3To98 number, std::u16string_view class_name = {});
[[noreturn]] void RaiseRuntimeError(ZepVbErrors298To746 number);

}  // namespace zepkit10

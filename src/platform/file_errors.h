#pragma once

#include <string_view>

#include "enums.h"

namespace zepkit10 {

/// The runtime's number for an error code of the system's file functions.
ZepVbErrors3To98 RuntimeErrorOf(unsigned long system_error) noexcept;

/// Raises the runtime's error for an error code of the system's file functions. Without a class
/// name the source names the class whose member the client called.
[[noreturn]] void RaiseFileError(unsigned long system_error, std::u16string_view class_name = {});

}  // namespace zepkit10

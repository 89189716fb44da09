#pragma once

#include <windows.h>
#include <oaidl.h>

#include <optional>

#include "platform/automation/variant.h"

namespace zepkit10 {

/// A value as a number to calculate with: numbers, Empty and Booleans as they are (C's integer
/// types as wider ones), anything else as the Double that the platform makes of it for the user.
/// Nothing for what is not numeric. An object is asked for its default value.
std::optional<Variant> NumberOf(const VARIANT& value);

/// The sum and the difference of two numbers of `NumberOf`, with the platform's widening of the
/// type; error 6 where no type is wide enough.
Variant Add(const VARIANT& left, const VARIANT& right);
Variant Subtract(const VARIANT& left, const VARIANT& right);

/// Compares two numbers of `NumberOf` as the platform does, but those without a floating point
/// exactly: below 0, 0 or above 0.
int CompareNumbers(const VARIANT& left, const VARIANT& right);

}  // namespace zepkit10

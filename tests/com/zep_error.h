#pragma once

#include <span>

#include "com/client.h"
#include "com/component.h"

/// The library's own errors as clients see them.
namespace zep_error {

struct Text {
  ZepErrors number;
  const wchar_t* english;
  const wchar_t* german;
};

/// What every number says in both languages; zepErrAwaitTerm, which has no text of its own, left
/// out.
std::span<const Text> Texts();

/// What a number says to an English user.
std::wstring English(ZepErrors number);

}  // namespace zep_error

/// Asserts that a call failed with one of the library's own errors, raised by a class.
#define EXPECT_ZEP_ERROR(outcome, expected_number, class_name)    \
  EXPECT_ERROR(outcome, expected_number, L"Zepkit10." class_name, \
               zep_error::English(expected_number))

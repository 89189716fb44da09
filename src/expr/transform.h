#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "enums.h"
#include "expr/number_format.h"

/// The tables of the term engine, as clients read them. What an argument has no entry for raises
/// `zepErrBadParam`.
namespace zepkit10 {

std::int32_t OperationToPriority(std::int32_t operation);
std::u16string OperationToText(std::int32_t operation);

/// Of the token that a text starts with. A group that is not closed raises `zepErrBadBrackets` or
/// `zepErrBadValueDashes`.
std::int32_t TextToOperation(std::u16string_view text, const NumberFormat& numbers);
std::int32_t TextToPriority(std::u16string_view text, const NumberFormat& numbers);
std::u16string TextToToken(std::u16string_view text, const NumberFormat& numbers);

}  // namespace zepkit10

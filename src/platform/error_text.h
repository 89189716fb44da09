#pragma once

#include <cstdint>
#include <string>

namespace zepkit10 {

/// The description of an error in the user's language, English where there is no better match. For
/// a `ZepErrors` code it comes from the string table, for a runtime error from the message table.
/// Never empty: a number without a text of its own gets one that names the number.
std::u16string ErrorText(std::int32_t number);

}  // namespace zepkit10

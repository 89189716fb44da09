#pragma once

namespace zepcheck {

/// A program sees the classes of its own bitness only, and so does this one.
constexpr bool kIs64Bit = sizeof(void*) == 8;

/// "64-bit", "32-bit"
constexpr const wchar_t* BitnessText(bool is_64_bit) { return is_64_bit ? L"64-bit" : L"32-bit"; }

/// Whether this Windows also runs programs of the other bitness.
bool HasOtherBitness();

}  // namespace zepcheck

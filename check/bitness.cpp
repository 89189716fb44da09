#include "bitness.h"

#include <windows.h>

namespace zepcheck {

bool HasOtherBitness() {
  BOOL is_32_bit_on_64 = FALSE;
  return kIs64Bit || (IsWow64Process(GetCurrentProcess(), &is_32_bit_on_64) && is_32_bit_on_64);
}

}  // namespace zepcheck

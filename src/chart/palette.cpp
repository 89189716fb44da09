#include "chart/palette.h"

#include "frame/errors.h"

namespace zepkit10 {

Colour PaletteColour(int index) {
  constexpr Colour kPalette[] = {0x000000, 0x000080, 0x008000, 0x008080, 0x800000, 0x800080,
                                 0x808000, 0xC0C0C0, 0x808080, 0x0000FF, 0x00FF00, 0x00FFFF,
                                 0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};
  if (index < 0 || index > 15) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrBadCall);
  return kPalette[index];
}

}  // namespace zepkit10

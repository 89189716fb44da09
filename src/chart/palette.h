#pragma once

#include <cstdint>

namespace zepkit10 {

/// A colour as 0x00RRGGBB.
using Colour = std::uint32_t;

/// Colour 0 to 15 of the palette of the classic text-mode adapters; error 5 for any other.
Colour PaletteColour(int index);

}  // namespace zepkit10

#pragma once

namespace zepkit10 {

/// Frees every slot of thread storage that was allocated inside this DLL, by its own code or by the
/// compiler's runtime; for the end of the DLL.
void FreeThreadSlots() noexcept;

}  // namespace zepkit10

#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace zepkit10 {

/// A type library as UTF-8 text, one fact a line, types and members in the library's own order.
///
/// The text does not depend on the bitness of the library or of the program: a vtable slot is given
/// by its position (IUnknown has 0 to 2, IDispatch 3 to 6), not by its offset. A member's
/// helpstring stands once under its first function, since that is the only one that can be asked
/// for. Throws std::runtime_error where the library cannot be read.
std::string DumpTypeLibrary(ITypeLib& library);

}  // namespace zepkit10

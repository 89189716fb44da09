#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <vector>

namespace monkey {

// What a member may end with. Everything else is reported to the journal.

/// Looks at how a call through IDispatch ended.
void CheckDispatchOutcome(HRESULT outcome, const EXCEPINFO* exception, UINT position,
                          UINT arguments, const VARIANT* result);

/// Looks at how a call through the vtable ended, and takes the error information away.
/// `lacks_reference`: a null pointer was passed for something by reference.
void CheckVtableOutcome(HRESULT outcome, bool lacks_reference);

/// Looks at what stands in a cleared result: nothing but zeros.
void CheckCleared(VARTYPE type, const VARIANT& result);

/// Arguments by value, to be found unchanged.
class Unchanged {
 public:
  void Watch(const VARIANT& argument);
  void Check() const;

 private:
  struct Argument {
    VARIANT value;
    std::uint64_t print;
  };
  std::vector<Argument> arguments_;
};

}  // namespace monkey

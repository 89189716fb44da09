#pragma once

#include "com/fault_plan.h"
#include "com/import_hook.h"

namespace faults {

/// A function of the system that fails where the plan says so: it returns a result without doing
/// anything.
template <auto* slot, auto result>
class FailingImport {
 public:
  explicit FailingImport(const char* name) : hook_(kReplacement) { operation_.name = name; }

 private:
  using Hook = ImportHook<slot>;

  template <class Function>
  struct Replacement;
  template <class Returned, class... Arguments>
  struct Replacement<Returned(WINAPI*)(Arguments...)> {
    static Returned WINAPI Call(Arguments... arguments) {
      if (!Fails(operation_)) return Hook::kSystem(arguments...);
      SetLastError(ERROR_NOT_ENOUGH_MEMORY);
      return static_cast<Returned>(result);
    }
  };

  static constexpr auto kReplacement = Replacement<typename Hook::Function>::Call;
  static inline Operation operation_{Kind::kMemory, ""};

  const Hook hook_;
};

}  // namespace faults

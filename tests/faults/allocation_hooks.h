#pragma once

#include <memory>

namespace faults {

/// Lets the plan fail what the platform allocates for the component, as long as this lives: texts,
/// arrays and the values made of them, error information, streams and pictures, windows and what is
/// painted with. Blocks of `new` are always under the plan.
class AllocationHooks {
 public:
  AllocationHooks();
  ~AllocationHooks();

 private:
  struct All;
  const std::unique_ptr<All> all_;
};

}  // namespace faults

#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <deque>
#include <unordered_map>
#include <vector>

#include "util/array_values_object.h"

namespace zepkit10 {

/// Visits the values of an array and of the arrays nested in it, in order, each array once. The
/// depth is limited by memory only. An array that holds itself by reference raises
/// `zepErrBadCall`. All arrays visited stay locked while this lives, because values may be objects
/// that call back.
class NestedValues {
 public:
  explicit NestedValues(const ArrayArgument& outermost) { Enter(outermost); }

  /// The next value that is no array: by reference, owning nothing. False at the end.
  bool Next(VARIANT* value);

 private:
  struct Level {
    const ArrayElements* elements;
    SAFEARRAY* array;
    std::int64_t next;
  };

  void Enter(const ArrayArgument& nested);

  std::deque<ArrayElements> visited_;
  std::unordered_map<SAFEARRAY*, bool> is_open_;
  std::vector<Level> levels_;
};

}  // namespace zepkit10

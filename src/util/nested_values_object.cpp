#include "util/nested_values_object.h"

#include "frame/errors.h"

namespace zepkit10 {

bool NestedValues::Next(VARIANT* value) {
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.next == level.elements->Count()) {
      is_open_[level.array] = false;
      levels_.pop_back();
      continue;
    }
    *value = level.elements->At(level.next++);
    const auto nested = ArrayIn(*value);
    if (!nested) return true;
    Enter(*nested);
  }
  return false;
}

void NestedValues::Enter(const ArrayArgument& nested) {
  if (IsEmpty(nested.array)) return;
  const auto [entry, is_new] = is_open_.try_emplace(nested.array, true);
  if (!is_new) {
    if (entry->second) RaiseInCalledClass(ZepErrors::zepErrBadCall);
    return;  // its values were visited already
  }
  levels_.push_back({&visited_.emplace_back(nested), nested.array, 0});
}

}  // namespace zepkit10

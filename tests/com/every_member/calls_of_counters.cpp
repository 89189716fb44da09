#include "com/every_member/calls.h"

namespace call_table {

Rows CallsOfCounters() {
  return {
      New(L"Counter", L"counter"),    Put(L"counter.Value", {5}),
      Run(L"counter.Increment", {2}), Run(L"counter.Increment"),
      Run(L"counter.Decrement", {4}), Run(L"counter.Decrement"),
      Get(L"counter.Value").Gives(3),
  };
}

}  // namespace call_table

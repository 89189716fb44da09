#pragma once

#include <gtest/gtest.h>

#include <string>

#include "com/fault_plan.h"
#include "faults/file_hooks.h"
#include "platform/file_errors.h"

namespace faults {

inline constexpr FileFault kFileFaults[] = {
    {ERROR_DISK_FULL, false},     {ERROR_SHARING_VIOLATION, false},
    {ERROR_ACCESS_DENIED, false}, {ERROR_PATH_NOT_FOUND, false},
    {ERROR_SUCCESS, true},
};

/// The runtime's error for a fault that reaches the client.
inline long NumberOf(const FileFault& fault) {
  return static_cast<long>(
      zepkit10::RuntimeErrorOf(fault.is_short ? DWORD{ERROR_DISK_FULL} : fault.error));
}

/// Lets operation 1, 2, … of an attempt fail in every way, until an attempt says that there was
/// none of that number.
template <class Attempt>
void ForEachFileFault(Attempt&& attempt) {
  constexpr int kMaxOperations = 1000;
  for (const FileFault& fault : kFileFaults) {
    for (const Lasting lasting : {Lasting::kOnce, Lasting::kFromThenOn}) {
      for (int number = 1; number < kMaxOperations; ++number) {
        SCOPED_TRACE((fault.is_short ? "short" : "error " + std::to_string(fault.error)) +
                     (lasting == Lasting::kOnce ? ", once, operation " : ", from operation ") +
                     std::to_string(number));
        if (!attempt(fault, number, lasting)) break;
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

}  // namespace faults

#include "com/fault_plan.h"

#include <windows.h>

namespace faults {
namespace {

// Of the one thread that tests run on; others only find that they are not it.
enum Place { kTest, kInside, kOutside };
int place = kTest;
DWORD thread_inside = 0;

Kind kind_awaited = Kind::kMemory;
int awaited = 0;  // 0 without a plan
int counted = 0;
int failed = 0;
Lasting lasting = Lasting::kOnce;
Operation* operations = nullptr;

}  // namespace

InsideCall::InsideCall() noexcept : entered_(place == kTest) {
  if (!entered_) return;
  thread_inside = GetCurrentThreadId();
  place = kInside;
}
InsideCall::~InsideCall() {
  if (entered_) place = kTest;
}

OutsideCall::OutsideCall() noexcept : before_(place) {
  if (IsInside()) place = kOutside;
}
OutsideCall::~OutsideCall() {
  if (place == kOutside && thread_inside == GetCurrentThreadId()) place = before_;
}

bool IsInside() noexcept { return place == kInside && thread_inside == GetCurrentThreadId(); }

void Begin(Kind kind, int number, Lasting how_long) noexcept {
  kind_awaited = kind;
  awaited = number;
  counted = failed = 0;
  lasting = how_long;
}

int End() noexcept {
  awaited = 0;
  return failed;
}

Operation::Operation(Kind its_kind, const char* its_name) noexcept
    : kind(its_kind), name(its_name), next(operations) {
  operations = this;
}

Operation* Operations() noexcept { return operations; }

bool Fails(Operation& operation) noexcept {
  if (awaited == 0 || operation.kind != kind_awaited || !IsInside()) return false;
  ++counted;
  if (counted != awaited && (counted < awaited || lasting == Lasting::kOnce)) return false;
  ++failed;
  ++operation.failures;
  return true;
}

}  // namespace faults

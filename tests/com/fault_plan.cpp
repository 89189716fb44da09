#include "com/fault_plan.h"

#include <windows.h>

#include <cstdio>

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
bool reached_client = false;
Lasting lasting = Lasting::kOnce;
Until until = Until::kEnd;
Operation* operations = nullptr;

/// Gives the place before.
int LeaveComponent() noexcept {
  const int before = place;
  if (IsInside()) place = kOutside;
  return before;
}

void ReturnTo(int before) noexcept {
  if (place == kOutside && thread_inside == GetCurrentThreadId()) place = before;
}

}  // namespace

InsideCall::InsideCall() noexcept : entered_(place == kTest) {
  if (!entered_) return;
  thread_inside = GetCurrentThreadId();
  place = kInside;
}
InsideCall::~InsideCall() {
  if (entered_) place = kTest;
}

OutsideCall::OutsideCall() noexcept : before_(LeaveComponent()) {
  reached_client |= before_ != place;
}
OutsideCall::~OutsideCall() { ReturnTo(before_); }

InsideHook::InsideHook() noexcept : before_(LeaveComponent()) {}
InsideHook::~InsideHook() { ReturnTo(before_); }

bool IsInside() noexcept { return place == kInside && thread_inside == GetCurrentThreadId(); }
bool IsIdle() noexcept { return place == kTest; }

void Begin(Kind kind, int number, Lasting how_long, Until how_far) noexcept {
  kind_awaited = kind;
  awaited = number;
  counted = failed = 0;
  reached_client = false;
  lasting = how_long;
  until = how_far;
}

int End() noexcept {
  awaited = 0;
  return failed;
}

bool ReachedClient() noexcept { return reached_client; }

Operation::Operation(Kind its_kind, const char* its_name) noexcept
    : kind(its_kind), name(its_name), next(operations) {
  operations = this;
}

void TellFailures() {
  for (const Operation* each = operations; each; each = each->next) {
    if (each->failures) std::printf("%s failed %ld times\n", each->name, each->failures);
  }
}

bool Fails(Operation& operation) noexcept {
  if (awaited == 0 || operation.kind != kind_awaited || !IsInside()) return false;
  if (reached_client && until == Until::kClientIsReached) return false;
  ++counted;
  if (counted != awaited && (counted < awaited || lasting == Lasting::kOnce)) return false;
  ++failed;
  ++operation.failures;
  return true;
}

}  // namespace faults

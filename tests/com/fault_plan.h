#pragma once

#include <cstddef>

/// Which operations fail that the component performs while a client's call is inside of it. An
/// operation is a call of an allocator or of a function of the system that is hooked into.
namespace faults {

/// Marks the code from the entry of a client's call to its return. Where the component has called
/// the test back, the test's own calls are not looked at.
class InsideCall {
 public:
  InsideCall() noexcept;
  ~InsideCall();
  InsideCall(const InsideCall&) = delete;
  InsideCall& operator=(const InsideCall&) = delete;

 private:
  const bool entered_;
};

/// Marks code of the test that runs because the component, or the system for it, called it: a
/// client, or its user, now knows of the call.
class OutsideCall {
 public:
  OutsideCall() noexcept;
  ~OutsideCall();
  OutsideCall(const OutsideCall&) = delete;
  OutsideCall& operator=(const OutsideCall&) = delete;

 private:
  const int before_;
};

/// Marks what a hook does for itself, of which no client knows.
class InsideHook {
 public:
  InsideHook() noexcept;
  ~InsideHook();
  InsideHook(const InsideHook&) = delete;
  InsideHook& operator=(const InsideHook&) = delete;

 private:
  const int before_;
};

/// True on the thread whose call is inside of the component.
bool IsInside() noexcept;
/// True where no call of a client has been entered, not even one that has called the test back.
bool IsIdle() noexcept;

enum class Lasting { kOnce, kFromThenOn };

enum class Kind { kMemory, kFile };

/// Whether operations go on failing where the component has called the test back meanwhile.
enum class Until { kEnd, kClientIsReached };

/// From now on until `End`, the operation of a kind that has a number, from 1, fails, or it and all
/// behind it.
void Begin(Kind kind, int number, Lasting lasting, Until until = Until::kEnd) noexcept;
/// How many operations have failed since.
int End() noexcept;
/// Whether an `OutsideCall` was entered since.
bool ReachedClient() noexcept;

/// An operation, with how often it has failed so far.
struct Operation {
  Operation(Kind kind, const char* name) noexcept;

  Kind kind;
  const char* name;
  long failures = 0;
  Operation* next;
};
/// Prints how often each has failed.
void TellFailures();

/// Counts one operation; true where it is to fail.
bool Fails(Operation& operation) noexcept;

/// Blocks that `new` gave to the component inside of clients' calls and that live.
long ComponentBlocks() noexcept;

}  // namespace faults

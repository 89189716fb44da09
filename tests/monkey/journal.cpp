#include "monkey/journal.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace monkey::journal {
namespace {

constexpr std::size_t kDeepest = 16;
constexpr unsigned long kMostPrinted = 20;
constexpr ULONGLONG kSecond = 10'000'000;  // in the units of thread times
constexpr ULONGLONG kLongestCall = 60 * kSecond;
constexpr DWORD kGiveUp = 600'000;  // ms without progress, whatever the processor did

struct Place {
  Call call;
  std::uint64_t number;
};

std::string allowed;
std::uint64_t seed = 0, round_calls = 0;
std::array<Place, kDeepest> places;
std::atomic<std::size_t> depth = 0;
std::atomic<std::uint64_t> progress = 0, outermost = 0;
std::atomic<bool> hung = false;
Findings findings;
HANDLE monkeys_thread = nullptr;

std::string Replay(std::uint64_t calls) {
  return "./dev monkey --seed " + std::to_string(seed) + " --calls " + std::to_string(calls) +
         (allowed.empty() ? "" : " --only " + allowed);
}

void Print(const char* what, const std::string& detail) {
  std::printf("%s: %s\n", what, detail.c_str());
  std::uint64_t last = round_calls;
  for (std::size_t i = depth; i-- > 0;) {
    const Place& place = places[i];
    std::printf("  %s call %llu, %s %s, arguments: %s\n", i + 1 == depth ? "in" : "inside of",
                static_cast<unsigned long long>(place.number), place.call.binding,
                NameOf(*place.call.called_class, *place.call.member).c_str(),
                place.call.arguments->Kinds().c_str());
    if (i == 0) last = place.number;
  }
  std::printf("  seed %llu; again: %s\n", static_cast<unsigned long long>(seed),
              Replay(last).c_str());
  std::fflush(stdout);
}

[[noreturn]] void EndByCrash(const std::string& what) {
  Print("CRASH", what);
  TerminateProcess(GetCurrentProcess(), 2);
  std::abort();
}

std::string Describe(const EXCEPTION_RECORD& record) {
  char text[80];
  std::snprintf(text, sizeof text, "exception %08lx at %p", record.ExceptionCode,
                record.ExceptionAddress);
  return text;
}

LONG WINAPI OnUnhandled(EXCEPTION_POINTERS* exception) {
  EndByCrash(Describe(*exception->ExceptionRecord));
}

/// There is little stack left to find a handler with.
LONG CALLBACK OnStackOverflow(EXCEPTION_POINTERS* exception) {
  if (exception->ExceptionRecord->ExceptionCode == EXCEPTION_STACK_OVERFLOW) {
    EndByCrash(Describe(*exception->ExceptionRecord));
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

ULONGLONG ProcessorTime() {
  FILETIME created, exited, kernel, user;
  GetThreadTimes(monkeys_thread, &created, &exited, &kernel, &user);
  const auto value = [](const FILETIME& time) {
    return (ULONGLONG{time.dwHighDateTime} << 32) + time.dwLowDateTime;
  };
  return value(kernel) + value(user);
}

/// A stretch of the run in which one of the counters above stands still.
class Stretch {
 public:
  explicit Stretch(const std::atomic<std::uint64_t>& counter) : counter_(counter) {}

  /// True once in every stretch that is longer than this.
  bool IsLongerThan(ULONGLONG limit, ULONGLONG now) {
    const std::uint64_t count = counter_;
    if (count != count_) {
      count_ = count;
      since_ = now;
      told_ = false;
    }
    if (told_ || now - since_ <= limit) return false;
    return told_ = true;
  }

 private:
  const std::atomic<std::uint64_t>& counter_;
  std::uint64_t count_ = 0;
  ULONGLONG since_ = 0;
  bool told_ = false;
};

/// While the call may still run, so without memory.
void NameSlowCall() {
  const Place& place = places[depth > 0 ? depth - 1 : 0];
  std::printf("SLOW: seed %llu, call %llu, %s %s.%s\n", static_cast<unsigned long long>(seed),
              static_cast<unsigned long long>(place.number), place.call.binding,
              place.call.called_class->name.c_str(), place.call.member->name.c_str());
  std::fflush(stdout);
}

DWORD WINAPI Watch(void*) {
  Stretch step(progress), call(outermost), standstill(progress);
  for (;;) {
    Sleep(50);
    const ULONGLONG now = ProcessorTime();
    if (depth == 0) continue;
    // The monkey tells when the call ends, if it does.
    if (step.IsLongerThan(kSecond, now) || call.IsLongerThan(kLongestCall, now)) {
      hung = true;
      NameSlowCall();
    }
    if (standstill.IsLongerThan(kGiveUp, GetTickCount64())) {
      SuspendThread(monkeys_thread);
      Print("HANG", "no end");
      TerminateProcess(GetCurrentProcess(), 3);
    }
  }
}

void ReportHang() {
  hung = false;
  if (++findings.hangs <= kMostPrinted) Print("HANG", "more than a second");
}

}  // namespace

void Begin(const std::string& only) {
  allowed = only;
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &monkeys_thread, 0,
                  FALSE, DUPLICATE_SAME_ACCESS);
  SetUnhandledExceptionFilter(OnUnhandled);
  AddVectoredExceptionHandler(1, OnStackOverflow);
  std::set_terminate([] { EndByCrash("std::terminate"); });
  CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr);
}

void BeginRound(std::uint64_t its_seed) {
  seed = its_seed;
  round_calls = 0;
}

Running::Running(const Call& call) {
  const std::size_t at = depth;
  places.at(at) = {call, ++round_calls};
  ++progress;
  if (at == 0) ++outermost;
  depth = at + 1;
}

Running::~Running() {
  if (hung) ReportHang();
  ++progress;
  --depth;
}

void Progress() { ++progress; }

std::uint64_t CallsOfRound() { return round_calls; }

void ReportWrongOutcome(const std::string& what) {
  if (++findings.wrong_outcomes <= kMostPrinted) Print("WRONG", what);
}

void ReportLeak(const std::string& what) {
  if (++findings.leaks <= kMostPrinted) Print("LEAK", what);
}

const Findings& Found() { return findings; }

}  // namespace monkey::journal

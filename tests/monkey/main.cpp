// Calls every member of every class of the component with arguments at random, in any order, while
// event handlers and other code of clients interfere:
//     monkey --calls N --seed S [--only CLASS.Member]
// A run consists of rounds of 10,000 calls; round n is that of the seed S + n and can be repeated
// alone. Prints what it finds with the command that repeats it, and its figures in the last line.
// The exit code is 0 only where it found nothing.
#include <windows.h>
#include <ole2.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "com/allocation_spy.h"
#include "monkey/first_uses.h"
#include "monkey/jail.h"
#include "monkey/journal.h"
#include "monkey/resources.h"
#include "monkey/round.h"
#include "monkey/type_library.h"

namespace {

using namespace monkey;

constexpr std::uint64_t kCallsOfRound = 10'000;
constexpr std::size_t kLargestBlock =
    100'000'000;  // there is room for the longest text and no more

struct Options {
  std::uint64_t calls = 100'000;
  std::uint64_t seed = 1;
  std::string only;
  bool lists_members = false;
};

bool Parse(int count, char** arguments, Options* options) {
  for (int i = 1; i < count; ++i) {
    const std::string name = arguments[i];
    if (name == "--members") {
      options->lists_members = true;
      continue;
    }
    if (++i == count) return false;
    if (name == "--calls") {
      options->calls = std::strtoull(arguments[i], nullptr, 10);
    } else if (name == "--seed") {
      options->seed = std::strtoull(arguments[i], nullptr, 10);
    } else if (name == "--only") {
      options->only = arguments[i];
    } else {
      return false;
    }
  }
  return true;
}

std::wstring OwnPath() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

class Run {
 public:
  explicit Run(const Options& options) : options_(options) {
    for (std::size_t i = 0; i < classes_.size(); ++i) {
      for (const Member& member : classes_[i].members) {
        const std::string name = classes_[i].name + "." + member.name;
        if (options.only.empty() || name == options.only) chosen_.push_back(targets_.size());
        targets_.push_back({static_cast<int>(i), &member});
      }
    }
  }

  bool HasTargets() const { return !chosen_.empty(); }

  void Play() {
    journal::Begin(options_.only);
    // The platform keeps much of what it makes at its first use.
    jail_.CleanUp();
    MakeFirstUses();
    // The platform keeps much of what it makes at its first use.
    for (int i = 0; i < 2; ++i) PlayRound(kWarmUpSeed + i, kCallsOfRound, Round::Kind::kWarmUp);
    for (Target& target : targets_) target = {target.class_index, target.member};
    start_ = before_ = Resources::Now();
    std::uint64_t left = options_.calls, rounds = 0;
    for (std::uint64_t seed = options_.seed; left > 0; ++seed) {
      const std::uint64_t calls = std::min(left, kCallsOfRound);
      PlayRound(seed, calls, Round::Kind::kCounted);
      const Resources after = Resources::Now();
      Resources expected = before_;
      // Wine for 32 bits keeps a few more at times, and gives them up again; a leak grows past
      // that.
      constexpr long kKeptByPlatform = 8;
      if (std::labs(after.gdi_objects - start_.gdi_objects) <= kKeptByPlatform) {
        expected.gdi_objects = after.gdi_objects;
      }
      if (after != expected) journal::ReportLeak(Growth(expected, after));
      before_ = after;
      if (++rounds % kRoundsBetweenWords == 0) PrintProgress(rounds);
      left -= calls;
    }
  }

  void Report(DWORD milliseconds) const {
    unsigned long long called = 0, succeeded = 0, through_vtable = 0;
    std::size_t reached = 0, mastered = 0;
    for (const std::size_t i : chosen_) {
      const Target& target = targets_[i];
      reached += target.called > 0;
      mastered += target.succeeded > 0;
      if (options_.lists_members) PrintTarget(target);
    }
    for (const Target& target : targets_) {
      called += target.called;
      succeeded += target.succeeded;
      through_vtable += target.through_vtable;
    }
    const journal::Findings& found = journal::Found();
    std::printf(
        "%llu calls in %lu s: %llu through the vtable, %llu through IDispatch, %llu succeeded; "
        "%zu of %zu members called, %zu succeeded; %zu kinds of arguments\n",
        called, milliseconds / 1000, through_vtable, called - through_vtable, succeeded, reached,
        chosen_.size(), mastered, ArgumentCatalogue::KindCount());
    std::printf(
        "seeds %llu to %llu: 0 crashes, %lu hangs, %lu wrong outcomes, %lu leaking rounds; left: "
        "%s\n",
        static_cast<unsigned long long>(options_.seed),
        static_cast<unsigned long long>(options_.seed + (options_.calls - 1) / kCallsOfRound),
        found.hangs, found.wrong_outcomes, found.leaks, Growth(start_, before_).c_str());
  }

 private:
  static constexpr std::uint64_t kRoundsBetweenWords = 100;
  static constexpr std::uint64_t kWarmUpSeed = 4'000'000'000;

  void PlayRound(std::uint64_t seed, std::uint64_t calls, Round::Kind kind) {
    Round round(seed, classes_, targets_, chosen_, jail_, kind);
    round.Play(calls);
  }

  static void PrintProgress(std::uint64_t rounds) {
    std::printf("%llu rounds, %lu findings\n", static_cast<unsigned long long>(rounds),
                journal::Found().All());
    std::fflush(stdout);
  }

  void PrintTarget(const Target& target) const {
    std::printf(
        "%8llu %8llu %8llu %08lx %s\n", target.called, target.succeeded, target.time / 1'000'000,
        target.last_error,
        NameOf(classes_[static_cast<std::size_t>(target.class_index)], *target.member).c_str());
  }

  const Options options_;
  const std::vector<Class> classes_ = ReadClasses(OwnPath());
  std::vector<Target> targets_;
  std::vector<std::size_t> chosen_;
  Jail jail_;
  Resources start_, before_;
};

int PlayAll(const Options& options) {
  allocation_spy::Now();
  LimitBlocks(kLargestBlock);
  Run run(options);
  if (!run.HasTargets()) {
    std::fprintf(stderr, "no member is called %s\n", options.only.c_str());
    return 2;
  }
  const ULONGLONG start = GetTickCount64();
  run.Play();
  run.Report(static_cast<DWORD>(GetTickCount64() - start));
  return journal::Found().All() == 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  Options options;
  if (!Parse(count, arguments, &options) || options.calls == 0) {
    std::fprintf(stderr, "monkey --calls N --seed S [--only CLASS.Member] [--members]\n");
    return 2;
  }
  OleInitialize(nullptr);
  const int result = PlayAll(options);
  OleUninitialize();
  return result;
}

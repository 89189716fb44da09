#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

/// What the benchmarks of the component share: everything is a ratio of medians over rounds that
/// take turns.
inline constexpr int kRounds = 9;

inline double Seconds() {
  LARGE_INTEGER now, frequency;
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

inline double Timed(const std::function<void()>& work) {
  const double start = Seconds();
  work();
  return Seconds() - start;
}

inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

inline double Least(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

/// Medians of two ways to do something, in rounds that take turns.
struct Medians {
  double ours, theirs;
};
inline Medians Compare(const std::function<void()>& ours, const std::function<void()>& theirs,
                       int rounds = kRounds) {
  std::vector<double> our_times, their_times;
  for (int round = 0; round < rounds; ++round) {
    our_times.push_back(Timed(ours));
    their_times.push_back(Timed(theirs));
  }
  return {Median(our_times), Median(their_times)};
}

inline void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  std::fprintf(stderr, "%s failed: 0x%08lx\n", what, static_cast<unsigned long>(result));
  std::exit(1);
}

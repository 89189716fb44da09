// What splitting and joining a delimited list costs, beside what cannot be avoided: copying the
// characters once, and one allocation for each item.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "util/delimited_list.h"

namespace {

using zepkit10::ListFormat;
using zepkit10::ListReader;
using zepkit10::ListWriter;

constexpr int kItems = 1'000'000;
constexpr ListFormat kPlain{u",", u"", u""};
constexpr ListFormat kQuoted{u",", u"\"", u"\""};

std::u16string ListOf(const ListFormat& format) {
  ListWriter list(format);
  for (int i = 0; i < kItems; ++i) list.Append(i % 10 == 0 ? u"one more, or two" : u"another item");
  return list.Take();
}

std::vector<std::u16string> Split(std::u16string_view list, const ListFormat& format) {
  std::vector<std::u16string> items;
  for (ListReader reader(list, format); reader.Next();) items.emplace_back(reader.Item());
  return items;
}

/// The same number of pieces of the same length, allocated and copied without looking at them.
std::vector<std::unique_ptr<char16_t[]>> Copy(std::u16string_view list) {
  std::vector<std::unique_ptr<char16_t[]>> pieces;
  const std::size_t length = list.size() / kItems;
  for (int i = 0; i < kItems; ++i) {
    pieces.push_back(std::make_unique_for_overwrite<char16_t[]>(length));
    std::memcpy(pieces.back().get(), list.data() + i * length, length * sizeof(char16_t));
  }
  return pieces;
}

template <class Call>
double SecondsOf(Call call) {
  const std::clock_t start = std::clock();
  benchmark::DoNotOptimize(call());
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void SplitList(benchmark::State& state, const ListFormat& format) {
  const std::u16string list = ListOf(format);
  for (auto _ : state) benchmark::DoNotOptimize(Split(list, format));
  state.counters["times copying"] =
      SecondsOf([&] { return Split(list, format); }) / SecondsOf([&] { return Copy(list); });
}

void JoinList(benchmark::State& state, const ListFormat& format) {
  const auto items = Split(ListOf(format), format);
  const auto join = [&] {
    ListWriter list(format);
    for (const auto& item : items) list.Append(item);
    return list.Take();
  };
  const std::u16string list = join();
  for (auto _ : state) benchmark::DoNotOptimize(join());
  state.counters["times copying"] = SecondsOf(join) / SecondsOf([&] { return Copy(list); });
}

}  // namespace

BENCHMARK_CAPTURE(SplitList, plain, kPlain)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SplitList, quoted, kQuoted)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(JoinList, plain, kPlain)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(JoinList, quoted, kQuoted)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();

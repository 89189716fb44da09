// What parsing a term costs for each character, and what evaluating it costs beside the same
// calculation in C++ and in muParser. Variables are found at once, so it is the engine alone that
// is measured.
#include <benchmark/benchmark.h>
#include <muParser.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "expr/evaluation.h"
#include "expr/term.h"
#include "terms.h"

namespace {

using zepkit10::Evaluable;
using zepkit10::NumberFormat;
using zepkit10::ParseTerm;

const NumberFormat kNumbers{u'.', u',', [](std::u16string_view) { return std::nullopt; }};
constexpr double kX = 1.25, kY = 2.5;

class Variable final : public Evaluable {
 public:
  explicit Variable(double value) { term_.SetNumber(value); }
  const zepkit10::Term& Term() const override { return term_; }
  Evaluable& VariableNamed(char16_t) override { return *this; }
  Evaluable* FindVariable(char16_t) override { return this; }
  void Set(double value) { term_.SetNumber(value); }

 private:
  zepkit10::Term term_;
};

class Root final : public Evaluable {
 public:
  explicit Root(std::u16string_view text) : term_(ParseTerm(text, kNumbers)) {}
  const zepkit10::Term& Term() const override { return term_; }
  Evaluable& VariableNamed(char16_t name) override { return name == u'x' ? x_ : y_; }
  Evaluable* FindVariable(char16_t name) override { return &VariableNamed(name); }
  void SetX(double value) { x_.Set(value); }

 private:
  zepkit10::Term term_;
  Variable x_{kX}, y_{kY};
};

/// A term of at least so many characters.
std::u16string LongTerm(std::size_t length) {
  std::u16string text = u"x";
  while (text.size() < length) text += u"+2*SIN(x)^2-|y-1.5|/3";
  return text;
}

/// x in so many brackets, each with what stands in front of it.
std::u16string Nested(std::u16string_view opening, int count) {
  const std::u16string_view closing = opening[0] == u'|' ? u")|" : u")";
  std::u16string text;
  for (int i = 0; i < count; ++i) text += opening;
  text += u'x';
  for (int i = 0; i < count; ++i) text += closing;
  return text;
}

void Parse(benchmark::State& state, const std::u16string& text) {
  for (auto _ : state) benchmark::DoNotOptimize(ParseTerm(text, kNumbers));
  state.counters["s/char"] = benchmark::Counter(
      static_cast<double>(text.size()),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Seconds that one call takes, with another number each time. Shorter than what the system gives a
/// thread at once, so that most are not interrupted.
template <class Call>
double SecondsOf(Call call) {
  constexpr int kCalls = 40'000;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kCalls; ++i) benchmark::DoNotOptimize(call(kX + i * 0.001));
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  return taken.count() / kCalls;
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// What evaluating took in comparison, the geometric mean over all terms.
struct Ratios {
  double logarithms_to_compiled = 0, logarithms_to_muparser = 0;
  int count = 0;

  double ToCompiled() const { return std::exp(logarithms_to_compiled / count); }
  double ToMuParser() const { return std::exp(logarithms_to_muparser / count); }
} ratios;

// Measured in rounds that take turns, so that the ratio says more than this machine's speed.
void Evaluate(benchmark::State& state, const BenchTerm& term) {
  Root root(term.text);
  const auto ours = [&](double x) {
    root.SetX(x);
    return zepkit10::Evaluate(root);
  };
  mu::Parser parser;
  double mu_x = kX, mu_y = kY;
  parser.DefineVar("x", &mu_x);
  parser.DefineVar("y", &mu_y);
  parser.SetExpr(term.muparser);
  const auto muparser = [&](double x) {
    mu_x = x;
    return parser.Eval();
  };
  double y = kY;
  benchmark::DoNotOptimize(y);
  const auto compiled = [&](double x) {
    benchmark::DoNotOptimize(x);
    return term.compiled(x, y);
  };
  if (std::fabs(ours(kX) - muparser(kX)) > 1e-9) state.SkipWithError("not the same calculation");
  std::vector<double> our_times, mu_times, compiled_times;
  constexpr int kRounds = 51;
  for (int round = 0; round < kRounds; ++round) {
    our_times.push_back(SecondsOf(ours));
    mu_times.push_back(SecondsOf(muparser));
    compiled_times.push_back(SecondsOf(compiled));
  }
  for (auto _ : state) benchmark::DoNotOptimize(ours(kX));
  const double to_compiled = Median(our_times) / Median(compiled_times);
  const double to_muparser = Median(our_times) / Median(mu_times);
  state.counters["times C++"] = to_compiled;
  state.counters["times muParser"] = to_muparser;
  ratios.logarithms_to_compiled += std::log(to_compiled);
  ratios.logarithms_to_muparser += std::log(to_muparser);
  ++ratios.count;
}

void PrintMeanRatios() {
  if (ratios.count == 0) return;
  std::printf(
      "Evaluating takes %.2f times as long as C++ and %.2f times as long as muParser, the "
      "geometric means over %d terms\n",
      ratios.ToCompiled(), ratios.ToMuParser(), ratios.count);
}

std::string Narrow(std::u16string_view text) { return {text.begin(), text.end()}; }

}  // namespace

int main(int argc, char** argv) {
  for (const BenchTerm& term : kBenchTerms) {
    const std::string name = Narrow(term.text);
    benchmark::RegisterBenchmark(("Parse " + name).c_str(), Parse, std::u16string(term.text));
    benchmark::RegisterBenchmark(("Evaluate " + name).c_str(), Evaluate, term)->Iterations(100'000);
  }
  benchmark::RegisterBenchmark("Parse 1 kB", Parse, LongTerm(1'000));
  benchmark::RegisterBenchmark("Parse 1 MB", Parse, LongTerm(1'000'000));
  for (const auto* term : {u"(", u"(1+", u"SIN(", u"|("}) {
    benchmark::RegisterBenchmark(("Parse 1000000 times " + Narrow(term)).c_str(), Parse,
                                 Nested(term, 1'000'000));
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  PrintMeanRatios();
}

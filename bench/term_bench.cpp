// What parsing a term costs for each character, and what evaluating it costs beside the same
// calculation in C++. Variables are found at once, so it is the engine alone that is measured.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <map>
#include <string>

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

 private:
  zepkit10::Term term_;
};

class Root final : public Evaluable {
 public:
  explicit Root(std::u16string_view text) : term_(ParseTerm(text, kNumbers)) {}
  const zepkit10::Term& Term() const override { return term_; }
  Evaluable& VariableNamed(char16_t name) override { return name == u'x' ? x_ : y_; }
  Evaluable* FindVariable(char16_t name) override { return &VariableNamed(name); }

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

void Parse(benchmark::State& state, const std::u16string& text) {
  for (auto _ : state) benchmark::DoNotOptimize(ParseTerm(text, kNumbers));
  state.counters["s/char"] = benchmark::Counter(
      static_cast<double>(text.size()),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::map<std::u16string, double> ratios;  // by term, the last ones measured

/// Seconds of processor time that one call takes.
template <class Call>
double SecondsOf(Call call) {
  constexpr int kCalls = 500'000;
  const std::clock_t start = std::clock();
  for (int i = 0; i < kCalls; ++i) benchmark::DoNotOptimize(call());
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / kCalls;
}

void Evaluate(benchmark::State& state, const BenchTerm& term) {
  Root root(term.text);
  const zepkit10::DefaultFloatEnvironment environment;
  for (auto _ : state) benchmark::DoNotOptimize(zepkit10::Evaluate(root, environment));
  // Measured in the same run, so that the ratio says more than this machine's speed.
  const double ours = SecondsOf([&] { return zepkit10::Evaluate(root, environment); });
  const double compiled = SecondsOf([&] {
    double x = kX, y = kY;
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(y);
    return term.compiled(x, y);
  });
  state.counters["times C++"] = ours / compiled;
  ratios[term.text] = ours / compiled;
}

void PrintMeanRatio() {
  if (ratios.empty()) return;
  double logarithms = 0;
  for (const auto& [term, ratio] : ratios) logarithms += std::log(ratio);
  std::printf("Evaluating takes %.2f times as long as C++, the geometric mean over %zu terms\n",
              std::exp(logarithms / static_cast<double>(ratios.size())), ratios.size());
}

std::string Narrow(std::u16string_view text) { return {text.begin(), text.end()}; }

}  // namespace

int main(int argc, char** argv) {
  for (const BenchTerm& term : kBenchTerms) {
    const std::string name = Narrow(term.text);
    benchmark::RegisterBenchmark(("Parse " + name).c_str(), Parse, std::u16string(term.text));
    benchmark::RegisterBenchmark(("Evaluate " + name).c_str(), Evaluate, term);
  }
  benchmark::RegisterBenchmark("Parse 1 kB", Parse, LongTerm(1'000));
  benchmark::RegisterBenchmark("Parse 1 MB", Parse, LongTerm(1'000'000));
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  PrintMeanRatio();
}

// Terms as a C++ client evaluates them, through the vtable. Every figure is a ratio to something
// measured beside it, in rounds that take turns; the medians of the rounds are compared.
#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "../terms.h"
#include "client.h"
#include "measure.h"

namespace {

using Microsoft::WRL::ComPtr;

// Rounds shorter than what the system gives a thread at once, so that most are not interrupted.
constexpr int kTermRounds = 101, kEvaluations = 4000;

// Two virtual calls are part of what the component is compared with: they are the client's way in.
struct Interface {
  virtual void Set(double value) = 0;
  virtual double Get() = 0;
};
struct Compiled final : Interface {
  const BenchTerm* term;
  double x = 0;
  [[gnu::noipa]] void Set(double value) override { x = value; }
  [[gnu::noipa]] double Get() override { return term->compiled(x, 0.5); }
};

volatile double sink;

void MeasureTerms(_Global* zepkit) {
  const auto variables = NewVariables(zepkit);
  const auto x = AddVariable(variables.Get(), L"x");
  AddVariable(variables.Get(), L"y")->put_Value(0.5);
  const auto expression = Create<_Expression>(CLSID_Expression);
  Check(expression->putref_VarSet(variables.Get()), "Expression.VarSet");

  std::printf("Evaluation: x rewritten, then the value read, through the vtable\n");
  std::printf("  %12s %10s  term\n", "per second", "x compiled");
  Compiled compiled;
  Interface* volatile peer = &compiled;
  double logarithms = 0;
  for (const BenchTerm& term : kBenchTerms) {
    Check(expression->put_EString(Text(term.text)), "Expression.EString");
    compiled.term = &term;
    std::vector<double> ours, theirs;
    for (int round = 0; round < kTermRounds; ++round) {
      ours.push_back(Timed([&] {
        double value = 0;
        for (int i = 0; i < kEvaluations; ++i) {
          x->put_Value(i * 0.001);
          expression->get_Value(&value);
          sink = value;
        }
      }));
      theirs.push_back(Timed([&] {
        for (int i = 0; i < kEvaluations; ++i) {
          peer->Set(i * 0.001);
          sink = peer->Get();
        }
      }));
    }
    const double ratio = Median(ours) / Median(theirs);
    logarithms += std::log(ratio);
    std::printf("  %12.0f %10.2f  %ls\n", kEvaluations / Median(ours), ratio,
                reinterpret_cast<const wchar_t*>(term.text));
  }
  std::printf("  geometric mean: %.2f times the compiled term\n\n",
              std::exp(logarithms / static_cast<double>(std::size(kBenchTerms))));
  variables->Delete();
}

}  // namespace

int main() {
  Check(OleInitialize(nullptr), "OleInitialize");
  MeasureTerms(Create<_Global>(CLSID_Global).Get());
  OleUninitialize();
  return 0;
}

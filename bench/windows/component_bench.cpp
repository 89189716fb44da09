// The component as a C++ client uses it, through the vtable. Every figure is a ratio to something
// measured beside it, in rounds that take turns; the medians of the rounds are compared.
#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "../terms.h"
#include "Zepkit10.h"
#include "measure.h"

namespace {

using Microsoft::WRL::ComPtr;

// Rounds shorter than what the system gives a thread at once, so that most are not interrupted.
constexpr int kTermRounds = 101, kEvaluations = 4000;

BSTR Text(const char16_t* text) { return SysAllocString(reinterpret_cast<const wchar_t*>(text)); }

ComPtr<_VarSet> NewVariables(_Global* zepkit) {
  ComPtr<_VarSets> sets;
  ComPtr<_VarSet> variables;
  VARIANT unnamed{};
  unnamed.vt = VT_ERROR;
  unnamed.scode = DISP_E_PARAMNOTFOUND;
  Check(zepkit->get_VarSets(&sets), "VarSets");
  Check(sets->Add(&unnamed, &variables), "VarSets.Add");
  return variables;
}

ComPtr<_Variable> AddVariable(_VarSet* variables, const char16_t* name) {
  ComPtr<_Variable> added;
  Check(variables->Add(Text(name), &added), "VarSet.Add");
  return added;
}

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
  const auto x = AddVariable(variables.Get(), u"x");
  AddVariable(variables.Get(), u"y")->put_Value(0.5);
  ComPtr<_Expression> expression;
  Check(
      CoCreateInstance(CLSID_Expression, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&expression)),
      "Creating Zepkit10.Expression");
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

void MeasureChart(_Global* zepkit) {
  ComPtr<_Charts> charts;
  ComPtr<_Chart> chart;
  ComPtr<_FncInfos> functions;
  ComPtr<_FncInfo> function;
  ComPtr<_Expression> expression;
  const auto variables = NewVariables(zepkit);
  Check(zepkit->get_Charts(&charts), "Charts");
  Check(charts->Add(Text(u"bench"), &chart), "Charts.Add");
  chart->putref_VarSet(variables.Get());
  chart->get_FncInfos(&functions);
  functions->Add(Text(u"f"), &function);
  function->get_Expression(&expression);
  expression->put_EString(Text(u"SIN(x)*x/3"));
  function->put_XLow(-10);
  function->put_XHigh(10);
  function->put_YLow(-4);
  function->put_YHigh(4);
  function->put_Interval(20.0 / 999999);
  std::vector<double> times;
  for (int round = 0; round < 3; ++round) {
    times.push_back(Timed([&] { Check(chart->Draw(), "Chart.Draw"); }));
  }
  std::nth_element(times.begin(), times.begin() + 1, times.end());
  // Read by bench/run.sh, which measures the peer.
  std::printf("Chart: 1000000 samples of SIN(x)*x/3, no listener\n  %.3f seconds\n", times[1]);
  chart->Delete();
  variables->Delete();
}

}  // namespace

int main() {
  Check(OleInitialize(nullptr), "OleInitialize");
  {
    ComPtr<_Global> zepkit;
    Check(CoCreateInstance(CLSID_Global, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&zepkit)),
          "Creating Zepkit10.Global");
    MeasureTerms(zepkit.Get());
    MeasureChart(zepkit.Get());
  }
  OleUninitialize();
  return 0;
}

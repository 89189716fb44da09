// What a call costs: late bound, by name in large collections, and as an event. Each figure is a
// ratio to something that does no more than the protocol asks for.
#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "client.h"
#include "measure.h"

namespace {

using Microsoft::WRL::ComPtr;

constexpr int kCalls = 20'000;
// Rounds that take so little time that most of them are not interrupted.
constexpr int kCallsOfShortRound = 2'000, kShortRounds = 501;

/// An object that answers every call at once.
class DoNothing : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** result) override {
    *result = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  [[gnu::noipa]] HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* arguments,
                                                  VARIANT* result, EXCEPINFO*, UINT*) override {
    for (UINT i = 0; i < arguments->cArgs; ++i) seen += arguments->rgvarg[i].vt;
    if (result) result->vt = VT_EMPTY;
    return S_OK;
  }
  std::uint64_t seen = 0;
};

// ---- Late-bound calls

struct LateCall {
  DISPID id;
  WORD kind;
  std::vector<VARIANT> arguments;
};

[[gnu::noipa]] void Invoke(IDispatch* object, LateCall& call) {
  DISPID assigned = DISPID_PROPERTYPUT;
  const bool assigns = call.kind == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters{call.arguments.data(), assigns ? &assigned : nullptr,
                        static_cast<UINT>(call.arguments.size()), assigns ? 1u : 0u};
  for (int i = 0; i < kCallsOfShortRound; ++i) {
    VARIANT result;
    VariantInit(&result);
    object->Invoke(call.id, IID_NULL, LOCALE_USER_DEFAULT, call.kind, &parameters,
                   assigns ? nullptr : &result, nullptr, nullptr);
    VariantClear(&result);
  }
}

void MeasureLateCall(const char* name, IDispatch* object, LateCall call) {
  DoNothing nothing;
  const auto [ours, theirs] =
      Compare([&] { Invoke(object, call); }, [&] { Invoke(&nothing, call); }, kShortRounds);
  std::printf("  %-31s %5.1f ns, %.2f times a do-nothing Invoke\n", name,
              ours / kCallsOfShortRound * 1e9, ours / theirs);
}

void MeasureLateCalls(_Global* zepkit) {
  std::printf("Late-bound calls\n");
  const auto counter = Create<_Counter>(CLSID_Counter);
  VARIANT one{}, literal{}, number{};
  one.vt = VT_I4;
  one.lVal = 1;
  literal.vt = VT_I2;
  literal.iVal = 1;
  number.vt = VT_R8;
  number.dblVal = 0.5;
  const auto set = NewVariables(zepkit);
  const auto variable = AddVariable(set.Get(), L"x");
  MeasureLateCall("Counter.Increment(1)", counter.Get(), {2, DISPATCH_METHOD, {one}});
  MeasureLateCall("Counter.Increment(a script's 1)", counter.Get(),
                  {2, DISPATCH_METHOD, {literal}});
  MeasureLateCall("Counter.Value", counter.Get(), {0, DISPATCH_PROPERTYGET, {}});
  MeasureLateCall("Variable.Value = 0.5", variable.Get(), {0, DISPATCH_PROPERTYPUT, {number}});
  MeasureLateCall("Variable.Value", variable.Get(), {0, DISPATCH_PROPERTYGET, {}});
  set->Delete();
}

// ---- Names

template <class Owner, class Item>
double TimeOfItem(Owner* owner, const std::wstring& name) {
  const Text text(name);
  VARIANT index{};
  index.vt = VT_BSTR;
  index.bstrVal = text;
  return Timed([&] {
    for (int i = 0; i < kCalls; ++i) {
      ComPtr<Item> found;
      Check(owner->get_Item(index, &found), "Item");
    }
  });
}

void MeasureNames(_Global* zepkit) {
  std::printf("Items by name\n");
  constexpr int kSets = 100'000;
  ComPtr<_VarSets> sets;
  ComPtr<_VarSet> small, large;
  Check(zepkit->get_VarSets(&sets), "VarSets");
  const auto add = [&](const std::wstring& name, ComPtr<_VarSet>& set) {
    const Text text(name);
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text;
    Check(sets->Add(&value, set.ReleaseAndGetAddressOf()), "VarSets.Add");
  };
  add(L"small", small);
  std::vector<double> alone, among;
  for (int i = 0; i < kRounds; ++i) {
    alone.push_back(TimeOfItem<_VarSets, _VarSet>(sets.Get(), L"small"));
  }
  add(L"large", large);
  ComPtr<_VarSet> other;
  for (int i = 2; i < kSets; ++i) add(L"set " + std::to_wstring(i), other);
  for (int i = 0; i < kRounds; ++i) {
    among.push_back(TimeOfItem<_VarSets, _VarSet>(sets.Get(), L"small"));
  }
  std::printf("  VarSets.Item with %d sets: %.2f times that with 1\n", kSets,
              Median(among) / Median(alone));
  AddVariable(small.Get(), L"x");
  for (const wchar_t first : {L'a', L'A'}) {
    for (wchar_t c = first; c < first + 26; ++c) {
      AddVariable(large.Get(), std::wstring(1, c).c_str());
    }
  }
  const auto [of_many, of_one] =
      Compare([&] { TimeOfItem<_VarSet, _Variable>(large.Get(), L"x"); },
              [&] { TimeOfItem<_VarSet, _Variable>(small.Get(), L"x"); });
  std::printf("  VarSet.Item with 52 variables: %.2f times that with 1\n", of_many / of_one);
  sets->Clear();
}

// ---- Charts

constexpr int kSamples = 1'000'000;
constexpr int kHeardSamples = 1'000, kHeardRounds = 2'001;

/// A listener that keeps what it hears.
class PointListener final : public DoNothing {
 public:
  [[gnu::noipa]] HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* heard,
                                                  VARIANT*, EXCEPINFO*, UINT*) override {
    if (id != kNewPoint || heard->cArgs != 2) return S_OK;
    const VARIANT &x = heard->rgvarg[1], &y = heard->rgvarg[0];
    if (x.vt != VT_R8 || y.vt != VT_R8) return DISP_E_TYPEMISMATCH;
    points_[count_++ % points_.size()] = {x.dblVal, y.dblVal};
    return S_OK;
  }

  static constexpr DISPID kNewPoint = 2;

 private:
  std::vector<std::pair<double, double>> points_{kHeardSamples};
  std::size_t count_ = 0;
};

/// What a listener adds to Draw, beside what it takes to call the listener as often.
void MeasureListener(_Chart* chart) {
  PointListener listener;
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  Check(chart->QueryInterface(IID_PPV_ARGS(&container)), "IConnectionPointContainer");
  Check(container->FindConnectionPoint(DIID___Chart, &point), "FindConnectionPoint");
  VARIANT coordinates[2]{};
  coordinates[0].vt = coordinates[1].vt = VT_R8;
  DISPPARAMS arguments{coordinates, nullptr, 2, 0};
  IDispatch* volatile heard_by = &listener;
  const auto draw = [&] { Check(chart->Draw(), "Draw"); };
  std::vector<double> silent, heard, bare;
  for (int round = 0; round < kHeardRounds; ++round) {
    silent.push_back(Timed(draw));
    DWORD cookie = 0;
    Check(point->Advise(&listener, &cookie), "Advise");
    heard.push_back(Timed(draw));
    point->Unadvise(cookie);
    bare.push_back(Timed([&] {
      for (int i = 0; i < kHeardSamples; ++i) {
        heard_by->Invoke(PointListener::kNewPoint, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                         &arguments, nullptr, nullptr, nullptr);
      }
    }));
  }
  // Every Draw asks the system for messages now and then, which takes as long as the system is
  // busy: only the least times tell what a listener adds.
  const double added = Least(heard) - Least(silent);
  std::printf("  a listener adds %.1f ns to a sample, %.2f times what a bare Invoke of it takes\n",
              added / kHeardSamples * 1e9, added / Least(bare));
}

void MeasureCharts(_Global* zepkit) {
  std::printf("Chart.Draw of %d samples of SIN(x)*x/3\n", kSamples);
  ComPtr<_Charts> charts;
  ComPtr<_Chart> chart;
  ComPtr<_FncInfos> functions;
  ComPtr<_FncInfo> function;
  ComPtr<_Expression> expression;
  const auto set = NewVariables(zepkit);
  Check(zepkit->get_Charts(&charts), "Charts");
  Check(charts->Add(Text(L"bench"), &chart), "Charts.Add");
  Check(chart->putref_VarSet(set.Get()), "Chart.VarSet");
  Check(chart->get_FncInfos(&functions), "FncInfos");
  Check(functions->Add(Text(L"f"), &function), "FncInfos.Add");
  Check(function->get_Expression(&expression), "Expression");
  Check(expression->put_EString(Text(L"SIN(x)*x/3")), "EString");
  function->put_XLow(-10);
  function->put_XHigh(10);
  function->put_YLow(-4);
  function->put_YHigh(4);
  function->put_Interval(20.0 / (kSamples - 1));
  const auto draw = [&] { Check(chart->Draw(), "Draw"); };

  std::vector<std::uint32_t> pixels(480 * 320);
  const auto loop = [&] {
    for (int i = 0; i < kSamples; ++i) {
      const double x = -10 + i * (20.0 / (kSamples - 1)), y = std::sin(x) * x / 3;
      const auto column = static_cast<long>((x + 10) / 20 * 479);
      const auto row = static_cast<long>((4 - y) / 8 * 319);
      if (row >= 0 && row < 320) pixels[static_cast<std::size_t>(row * 480 + column)] = 0xFF0000;
      MSG message;
      if (i % 100 == 0) PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
    }
  };
  const auto silent = Compare(draw, loop);
  // The seconds are read by bench/run.sh, which measures another program.
  std::printf(
      "  %.3f seconds without a listener, %.2f times a compiled loop that looks for messages\n",
      silent.ours, silent.ours / silent.theirs);

  function->put_Interval(20.0 / (kHeardSamples - 1));
  MeasureListener(chart.Get());
  chart->Delete();
  set->Delete();
}

}  // namespace

int main() {
  Check(OleInitialize(nullptr), "OleInitialize");
  {
    const auto zepkit = Create<_Global>(CLSID_Global);
    MeasureLateCalls(zepkit.Get());
    MeasureCharts(zepkit.Get());
    MeasureNames(zepkit.Get());
  }
  OleUninitialize();
}

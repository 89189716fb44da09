// Hosts exist that trap floating-point faults or round another way. The component must neither be
// thrown out of a call nor give other results there, and must leave the host's settings as they
// were. Every member is called in one by every_member_test.cpp.
#include <limits>

#include "com/client.h"
#include "com/component.h"
#include "com/trapping_host.h"

namespace {

using client::Value;
using Microsoft::WRL::ComPtr;

class FloatEnvironmentTest : public component::Test {
 protected:
  double ValueOf(const wchar_t* term, HRESULT expected) {
    const auto expression = component::Create<_Expression>(CLSID_Expression);
    const BSTR text = SysAllocString(term);
    EXPECT_EQ(S_OK, InTrappingHost([&] { return expression->put_EString(text); }));
    double value = 0;
    EXPECT_EQ(expected, InTrappingHost([&] { return expression->get_Value(&value); }));
    SysFreeString(text);
    return value;
  }

  static ComPtr<_VarSet> AddVariables(_Global& zepkit) {
    ComPtr<_VarSets> sets;
    ComPtr<_VarSet> variables;
    VARIANT unnamed{};
    unnamed.vt = VT_ERROR;
    unnamed.scode = DISP_E_PARAMNOTFOUND;
    zepkit.get_VarSets(&sets);
    EXPECT_EQ(S_OK, sets->Add(&unnamed, &variables));
    return variables;
  }
};

TEST_F(FloatEnvironmentTest, FaultsAreErrorsAsEverywhere) {
  ValueOf(L"1/0", 0x800A000B);
  ValueOf(L"0/0", 0x800A000B);
  ValueOf(L"EXP(1000)", 0x800A0006);
  ValueOf(L"SQR(0-1)", 0x800A0005);
  ValueOf(L"LOG(0)", 0x800A0005);
}

TEST_F(FloatEnvironmentTest, ResultsAreThoseOfTheDefault) {
  EXPECT_EQ(1.0 / 3, ValueOf(L"1/3", S_OK));
  EXPECT_EQ(0.1, ValueOf(L"0.1", S_OK));
  EXPECT_EQ(0.0, ValueOf(L"EXP(0-1000)", S_OK));  // underflow is no fault
}

/// What is evaluated often is evaluated another way.
TEST_F(FloatEnvironmentTest, ManyEvaluationsAreAllThoseOfTheDefault) {
  const auto zepkit = component::Create<_Global>(CLSID_Global);
  const ComPtr<_VarSet> variables = AddVariables(*zepkit.Get());
  ASSERT_TRUE(variables);
  ComPtr<_Variable> x;
  const BSTR name = SysAllocString(L"x"), text = SysAllocString(L"1/x+0.1");
  ASSERT_EQ(S_OK, variables->Add(name, &x));
  const auto expression = component::Create<_Expression>(CLSID_Expression);
  expression->putref_VarSet(variables.Get());
  ASSERT_EQ(S_OK, expression->put_EString(text));
  for (int i = 0; i < 2000; ++i) {
    double value = 0;
    EXPECT_EQ(S_OK, InTrappingHost([&] { return x->put_Value(i % 5); }));
    const HRESULT hr = InTrappingHost([&] { return expression->get_Value(&value); },
                                      i % 2 == 0 ? kTrapAllRoundUp : kTrapFaults);
    const HRESULT expected = i % 5 == 0 ? static_cast<HRESULT>(0x800A000B) : S_OK;
    if (hr != expected || (hr == S_OK && value != 1.0 / (i % 5) + 0.1)) ADD_FAILURE() << i;
    // Half of them as most hosts do.
    if (i == 1000) {
      for (int again = 0; again < 1000; ++again) expression->get_Value(&value);
    }
  }
  SetErrorInfo(0, nullptr);
  SysFreeString(name);
  SysFreeString(text);
  variables->Delete();
}

TEST_F(FloatEnvironmentTest, ChartsTakeAnyNumber) {
  const auto zepkit = component::Create<_Global>(CLSID_Global);
  ComPtr<_Charts> charts;
  ComPtr<_Chart> chart;
  const ComPtr<_VarSet> variables = AddVariables(*zepkit.Get());
  ASSERT_TRUE(variables);
  ComPtr<_FncInfos> functions;
  ComPtr<_FncInfo> function;
  zepkit->get_Charts(&charts);
  ASSERT_EQ(S_OK, charts->Add(nullptr, &chart));
  chart->putref_VarSet(variables.Get());
  chart->get_FncInfos(&functions);
  ASSERT_EQ(S_OK, functions->Add(nullptr, &function));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double number :
       {0.0, 1e308, -1e308, 1e-320, nan, std::numeric_limits<double>::infinity()}) {
    InTrappingHost([&] { return function->put_XLow(number); });
    InTrappingHost([&] { return function->put_YHigh(number); });
    InTrappingHost([&] { return function->put_Interval(number); });
    InTrappingHost([&] { return chart->put_CoordMetric(number); });
    InTrappingHost(
        [&] { return chart->put_PictureWidth(std::numeric_limits<float>::quiet_NaN()); });
    const HRESULT hr = InTrappingHost([&] { return chart->Draw(); });
    EXPECT_TRUE(hr == S_OK || (hr & 0xFFFF0000) == 0x800A0000 || (hr & 0xFFFF0000) == 0x80040000);
  }
  SetErrorInfo(0, nullptr);
}

// The members themselves take integers only.
TEST_F(FloatEnvironmentTest, LateBoundArgumentsAreConvertedAsEverywhere) {
  const auto made = component::Create<IDispatch>(CLSID_Counter);
  const client::Object counter(made.Get(), client::Binding::kDispatch);
  const auto increment = [&](const Value& by) {
    return InTrappingHost([&] { return counter.Call(L"Increment", {by}); });
  };
  EXPECT_OK(increment(2.25));
  EXPECT_EQ(Value(2), counter.Get(L"Value").value);
  EXPECT_OK(increment(L"3.25"));
  EXPECT_EQ(Value(5), counter.Get(L"Value").value);
  EXPECT_EQ(DISP_E_OVERFLOW, increment(1e300).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, increment(L"number").result);
  EXPECT_EQ(Value(5), counter.Get(L"Value").value);
}

}  // namespace

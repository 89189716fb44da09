#include <limits>

#include "com/chart_fixture.h"
#include "com/foreign.h"

namespace {

using client::Object;
using client::Value;

constexpr const wchar_t* kNumbers[] = {L"Interval", L"XHigh", L"XLow", L"YHigh", L"YLow"};

class FncInfoTest : public WithChart {
 protected:
  const Object function_ = functions_.CallObject(L"Add", {L"f"});
};

TEST_P(FncInfoTest, StartsEmpty) {
  for (const wchar_t* number : kNumbers) EXPECT_EQ(function_.Get(number), 0.0) << number;
  EXPECT_EQ(function_.GetObject(L"Expression").Get(L"EString"),
            Create(CLSID_Expression).Get(L"EString").value);
}

TEST_P(FncInfoTest, TakesAnyNumber) {
  for (const double value : {-1.5, 0.0, 1e300, 4.9e-324, std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity()}) {
    for (const wchar_t* number : kNumbers) {
      EXPECT_OK(function_.Let(number, {value}));
      EXPECT_EQ(function_.Get(number), value) << number;
    }
  }
}

TEST_P(FncInfoTest, NumbersAreIndependent) {
  double value = 0;
  for (const wchar_t* number : kNumbers) EXPECT_OK(function_.Let(number, {++value}));
  value = 0;
  for (const wchar_t* number : kNumbers) EXPECT_EQ(function_.Get(number), ++value) << number;
}

TEST_P(FncInfoTest, NameIsUniqueInTheChart) {
  const Object other = functions_.CallObject(L"Add", {L"g"});
  EXPECT_ZEP_ERROR(function_.Let(L"Name", {L"g"}), zepErrItemAlreadyExists, L"FncInfo");
  EXPECT_ZEP_ERROR(function_.Let(L"Name", {L"f"}), zepErrItemAlreadyExists, L"FncInfo");
  EXPECT_EQ(function_.Get(L"Name"), L"f");
  EXPECT_OK(function_.Let(L"Name", {L""}));
  EXPECT_EQ(function_.Get(L"Name"), L"");
  EXPECT_EQ(functions_.Get(L"Item", {L""}), function_);
  EXPECT_EQ(functions_.Get(L"Item", {1}), function_);
  EXPECT_OK(other.Let(L"Name", {L"f"}));
  const Object elsewhere = charts_.CallObject(L"Add", {L"other"}).GetObject(L"FncInfos");
  EXPECT_OK(elsewhere.Call(L"Add", {L"f"}));
}

TEST_P(FncInfoTest, ItsTermIsEvaluatedInTheChartsVarSet) {
  EXPECT_EQ(function_.GetObject(L"Expression").Get(L"VarSet"), set_);
  const Object assigned = Create(CLSID_Expression);
  EXPECT_OK(assigned.Let(L"EString", {L"x+1"}));
  EXPECT_OK(function_.Set(L"Expression", {assigned}));
  EXPECT_EQ(function_.Get(L"Expression"), assigned);
  EXPECT_EQ(assigned.Get(L"VarSet"), set_);
}

TEST_P(FncInfoTest, AFunctionAddedBeforeTheVarSetGetsItLater) {
  const Object chart = charts_.CallObject(L"Add", {L"late"});
  const Object functions = chart.GetObject(L"FncInfos");
  const Object f = functions.CallObject(L"Add", {L"f"}).GetObject(L"Expression");
  const Object g = functions.CallObject(L"Add", {L"g"}).GetObject(L"Expression");
  EXPECT_EQ(f.Get(L"VarSet"), Value::Nothing());
  EXPECT_OK(chart.Set(L"VarSet", {set_}));
  EXPECT_EQ(f.Get(L"VarSet"), set_);
  EXPECT_EQ(g.Get(L"VarSet"), set_);
}

TEST_P(FncInfoTest, AnExpressionAssignedBeforeTheVarSetHasNone) {
  const Object function =
      charts_.CallObject(L"Add", {L"late"}).GetObject(L"FncInfos").CallObject(L"Add", {L"f"});
  const Object assigned = Create(CLSID_Expression);
  EXPECT_OK(assigned.Set(L"VarSet", {set_}));
  EXPECT_OK(function.Set(L"Expression", {assigned}));
  EXPECT_EQ(assigned.Get(L"VarSet"), Value::Nothing());
}

TEST_P(FncInfoTest, ExpressionMayBeShared) {
  const Object other = functions_.CallObject(L"Add", {L"g"});
  EXPECT_OK(other.Set(L"Expression", {function_.Get(L"Expression").value}));
  EXPECT_EQ(other.Get(L"Expression"), function_.Get(L"Expression").value);
  EXPECT_OK(function_.Call(L"Delete"));
  EXPECT_OK(other.GetObject(L"Expression").Let(L"EString", {L"x"}));
}

TEST_P(FncInfoTest, ExpressionMustBeOne) {
  const Object before = function_.GetObject(L"Expression");
  EXPECT_ZEP_ERROR(function_.Set(L"Expression", {Value::Nothing()}), zepErrBadPropValue,
                   L"FncInfo");
  foreign::Expression stranger;
  EXPECT_ZEP_ERROR(function_.Set(L"Expression", {Value(&stranger)}), zepErrBadPropValue,
                   L"FncInfo");
  EXPECT_EQ(1u, stranger.references);
  EXPECT_EQ(function_.Get(L"Expression"), before);
}

TEST_P(FncInfoTest, DeletedFunctionsRefuseEveryMember) {
  const Object expression = function_.GetObject(L"Expression");
  EXPECT_OK(function_.Call(L"Delete"));
  EXPECT_EQ(functions_.Get(L"Count"), 0);
  EXPECT_ZEP_ERROR(function_.Call(L"Delete"), zepErrAwaitTerm, L"FncInfo");
  EXPECT_ZEP_ERROR(function_.Get(L"Expression"), zepErrAwaitTerm, L"FncInfo");
  EXPECT_ZEP_ERROR(function_.Set(L"Expression", {expression}), zepErrAwaitTerm, L"FncInfo");
  EXPECT_ZEP_ERROR(function_.Set(L"Expression", {Value::Nothing()}), zepErrAwaitTerm, L"FncInfo");
  for (const wchar_t* number : kNumbers) {
    EXPECT_ZEP_ERROR(function_.Get(number), zepErrAwaitTerm, L"FncInfo");
    EXPECT_ZEP_ERROR(function_.Let(number, {1.0}), zepErrAwaitTerm, L"FncInfo");
  }
  EXPECT_ZEP_ERROR(function_.Get(L"Name"), zepErrAwaitTerm, L"FncInfo");
  EXPECT_ZEP_ERROR(function_.Let(L"Name", {L"f"}), zepErrAwaitTerm, L"FncInfo");
  EXPECT_ZEP_ERROR(function_.Get(L"Parent"), zepErrAwaitTerm, L"FncInfo");
  EXPECT_OK(functions_.Call(L"Add", {L"f"}));
}

RUN_IN_BOTH_BINDINGS(FncInfoTest);

}  // namespace

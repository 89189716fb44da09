#include "com/foreign.h"
#include "com/var_sets_fixture.h"

namespace {

using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

class ExpressionTest : public WithVarSet {
 protected:
  Object expression_ = Create(CLSID_Expression);
};

struct Computed {
  const wchar_t* term;
  double value;
  const wchar_t* text;
};

TEST_P(ExpressionTest, StartsAsTheNumber0) {
  EXPECT_EQ(expression_.Get(L"Value"), 0.0);
  EXPECT_EQ(expression_.Get(L"EString"), L"0");
  EXPECT_EQ(expression_.Get(L"VarSet"), Value::Nothing());
}

constexpr Computed kTerms[] = {{L"", 0, L"0"},
                               {L"   ", 0, L"0"},
                               {L"()", 0, L"0"},
                               {L"( ( ) )", 0, L"0"},
                               {L"42", 42, L"42"},
                               {L"  (6+1)  ", 7, L"6+1"},
                               {L"((7))", 7, L"7"},
                               {L"( 6+1 )", 7, L"6+1"},
                               {L"(2+1)*(2-1)", 3, L"2+1*2-1"},
                               {L"(1+2)*3", 9, L"1+2*3"},
                               {L"1+2*3", 7, L"1+2*3"},
                               {L"8-4-2", 2, L"8-4-2"},
                               {L"8-(4-2)", 6, L"8-4-2"},
                               {L"8/4*2", 4, L"8/4*2"},
                               {L"2^3^2", 64, L"2^3^2"},
                               {L"2^(3^2)", 512, L"2^3^2"},
                               {L"-3", -3, L"0-3"},
                               {L"+3", 3, L"0+3"},
                               {L"2*-3", -3, L"2*0-3"},
                               {L"2^-1", 0, L"2^0-1"},
                               {L"-", 0, L"0-0"},
                               {L"3+", 3, L"3+0"},
                               {L"*", 0, L"0*0"},
                               {L"|0-3|", 3, L"|0-3|"},
                               {L"1+|0-3|", 4, L"1+|0-3|"},
                               {L"|0-3|*2", 6, L"|0-3|*2"},
                               {L"||", 0, L"|0|"},
                               {L"|(|0-3|)-5|", 2, L"||0-3|-5|"},
                               {L"SQR16", 4, L"SQR16"},
                               {L"sqr(9+16)", 5, L"SQR9+16"},
                               {L"SQR9+16", 19, L"SQR9+16"},
                               {L"SQR16^2", 16, L"SQR16^2"},
                               {L"Exp(0)", 1, L"EXP0"},
                               {L"LOG(1)", 0, L"LOG1"},
                               {L"SIN(0)", 0, L"SIN0"},
                               {L"COS(0)", 1, L"COS0"},
                               {L"COS", 1, L"COS0"},
                               {L"TAN(0)", 0, L"TAN0"},
                               {L"ATN(0)", 0, L"ATN0"},
                               {L"2(3+1)", 8, L"2*3+1"},
                               {L"2SQR(9)", 6, L"2*SQR9"},
                               {L"0/5", 0, L"0/5"},
                               {L"EXP(0-1000)", 0, L"EXP0-1000"},
                               {L"1.5", 1.5, L"1.5"},
                               {L".5", 0.5, L"0.5"},
                               {L"1,234.5", 1234.5, L"1234.5"}};

TEST_P(ExpressionTest, ComputesTermsAndWritesThemWithoutBrackets) {
  for (const Computed& each : kTerms) {
    SCOPED_TRACE(testing::PrintToString(each.term));
    EXPECT_OK(expression_.Let(L"EString", {each.term}));
    EXPECT_EQ(expression_.Get(L"Value"), each.value);
    EXPECT_EQ(expression_.Get(L"EString"), each.text);
  }
}

TEST_P(ExpressionTest, ComputesFunctionsInRadians) {
  const std::pair<const wchar_t*, double> functions[] = {
      {L"SIN(2)", 0.9092974268256817}, {L"COS2", -0.4161468365471424},
      {L"tan2", -2.185039863261519},   {L"ATN2", 1.1071487177940904},
      {L"EXP2", 7.38905609893065},     {L"LOG2", 0.6931471805599453},
      {L"SQR2", 1.4142135623730951},   {L"4*ATN(1)", 3.141592653589793}};
  for (const auto& [term, value] : functions) {
    EXPECT_OK(expression_.Let(L"EString", {term}));
    const auto outcome = expression_.Get(L"Value");
    ASSERT_TRUE(outcome.ok());
    EXPECT_DOUBLE_EQ(value, outcome.value.raw().dblVal);
  }
}

TEST_P(ExpressionTest, RefusesFaultyTermsAndIsThenCleared) {
  const std::pair<const wchar_t*, ZepErrors> faulty[] = {{L"#", zepErrBadPropValue},
                                                         {L"$+1", zepErrBadPropValue},
                                                         {L"|x", zepErrBadPropValue},
                                                         {L"|", zepErrBadPropValue},
                                                         {L"|(x|", zepErrBadPropValue},
                                                         {L".", zepErrBadPropValue},
                                                         {L"\xE4", zepErrBadPropValue},
                                                         {L"x + 1", zepErrBadCall},
                                                         {L"x+1 +2", zepErrBadCall},
                                                         {L"2#", zepErrBadCall},
                                                         {L"x+(1", zepErrBadCall},
                                                         {L"x+|1", zepErrBadCall},
                                                         {L"SIN x", zepErrBadCall},
                                                         {L"(x+1", zepErrBadParam},
                                                         {L"((x)", zepErrBadParam},
                                                         {L"  (x  ", zepErrBadParam},
                                                         {L"(", zepErrBadParam},
                                                         {L")", zepErrExtractTerm},
                                                         {L"x)", zepErrExtractTerm},
                                                         {L"(x))", zepErrExtractTerm},
                                                         {L"(x+1)(x-1)", zepErrExtractTerm},
                                                         {L"(x+1)2", zepErrExtractTerm},
                                                         {L"2|x|", zepErrExtractTerm},
                                                         {L"|x|2", zepErrExtractTerm},
                                                         {L"1.2.3", zepErrExtractTerm},
                                                         {L"||x||", zepErrExtractTerm},
                                                         {L"SINCOSx", zepErrExtractTerm},
                                                         {L"x*(y+#)", zepErrBadCall},
                                                         {L"x*(#)", zepErrBadPropValue}};
  for (const auto& [term, error] : faulty) {
    SCOPED_TRACE(testing::PrintToString(term));
    EXPECT_OK(expression_.Let(L"EString", {L"1+1"}));
    EXPECT_ZEP_ERROR(expression_.Let(L"EString", {term}), error, L"Expression");
    EXPECT_EQ(expression_.Get(L"Value"), 0.0);
    EXPECT_EQ(expression_.Get(L"EString"), L"0");
  }
}

TEST_P(ExpressionTest, KeepsItsVariableSetWhenATermIsRefused) {
  EXPECT_OK(expression_.Set(L"VarSet", {set_}));
  EXPECT_FALSE(expression_.Let(L"EString", {L"#"}).ok());
  EXPECT_EQ(expression_.Get(L"VarSet"), set_);
}

TEST_P(ExpressionTest, EveryCodeUnitOfATermCounts) {
  EXPECT_ZEP_ERROR(expression_.Let(L"EString", {std::wstring(L"1\0", 2)}), zepErrBadCall,
                   L"Expression");
  EXPECT_ZEP_ERROR(expression_.Let(L"EString", {std::wstring(1, L'\0')}), zepErrBadPropValue,
                   L"Expression");
}

TEST_P(ExpressionTest, LettersAreVariablesAndMultiplied) {
  EXPECT_OK(expression_.Set(L"VarSet", {set_}));
  double value = 2;
  for (const wchar_t* name : {L"x", L"y", L"X", L"s", L"i"}) {
    EXPECT_OK(set_.CallObject(L"Add", {name}).Let(L"Value", {value++}));
  }
  const Computed terms[] = {
      {L"xy", 6, L"x*y"},         {L"2x", 4, L"2*x"},  {L"x2", 4, L"x*2"},
      {L"X-x", 2, L"X-x"},        {L"si", 30, L"s*i"}, {L"x(y+1)", 8, L"x*y+1"},
      {L"xSQR(9)", 6, L"x*SQR9"}, {L"-x", -2, L"0-x"}, {L"2*x^2+|x-y|", 9, L"2*x^2+|x-y|"}};
  for (const Computed& each : terms) {
    SCOPED_TRACE(testing::PrintToString(each.term));
    EXPECT_OK(expression_.Let(L"EString", {each.term}));
    EXPECT_EQ(expression_.Get(L"Value"), each.value);
    EXPECT_EQ(expression_.Get(L"EString"), each.text);
  }
}

TEST_P(ExpressionTest, VariablesNeedASetOnlyWhenTheyAreRead) {
  EXPECT_OK(expression_.Let(L"EString", {L"x+SQR(y)"}));
  EXPECT_EQ(expression_.Get(L"EString"), L"x+SQRy");
  EXPECT_ZEP_ERROR(expression_.Get(L"Value"), zepErrBadCallContext, L"Expression");
  EXPECT_OK(expression_.Set(L"VarSet", {set_}));
  EXPECT_EQ(expression_.Get(L"Value"), 0.0);
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_EQ(set_.GetObject(L"Item", {1}).Get(L"Name"), L"y");  // the right operand is read first
  EXPECT_OK(set_.GetObject(L"Item", {L"x"}).Let(L"Value", {5.0}));
  EXPECT_EQ(expression_.Get(L"Value"), 5.0);
  EXPECT_OK(expression_.Set(L"VarSet", {Value::Nothing()}));
  EXPECT_EQ(expression_.Get(L"VarSet"), Value::Nothing());
  EXPECT_ZEP_ERROR(expression_.Get(L"Value"), zepErrBadCallContext, L"Expression");
}

TEST_P(ExpressionTest, AnUnknownVariableRaisesWhatItsSetRaises) {
  EXPECT_OK(set_.Let(L"Explicit", {true}));
  EXPECT_OK(expression_.Set(L"VarSet", {set_}));
  EXPECT_OK(expression_.Let(L"EString", {L"1/(x-x)"}));
  EXPECT_ZEP_ERROR(expression_.Get(L"Value"), zepErrItemNotExistant, L"VarSet");
  EXPECT_EQ(set_.Get(L"Count"), 0);
  EXPECT_OK(set_.Call(L"Delete"));
  EXPECT_ZEP_ERROR(expression_.Get(L"Value"), zepErrAwaitTerm, L"VarSet");
  EXPECT_EQ(expression_.Get(L"VarSet"), set_);
  EXPECT_OK(expression_.Let(L"EString", {L"3"}));
  EXPECT_EQ(expression_.Get(L"Value"), 3.0);
}

TEST_P(ExpressionTest, ArithmeticFaultsAreErrorsOfTheRuntime) {
  const std::tuple<const wchar_t*, long, const wchar_t*> faults[] = {
      {L"1/0", 11, L"Division by zero"},
      {L"0/0", 11, L"Division by zero"},
      {L"2+SIN(1/(3-3))*4", 11, L"Division by zero"},
      {L"EXP(1000)", 6, L"Overflow"},
      {L"10^400", 6, L"Overflow"},
      {L"10^300*10^300", 6, L"Overflow"},
      {L"SQR(0-1)", 5, L"Invalid procedure call or argument"},
      {L"LOG(0)", 5, L"Invalid procedure call or argument"},
      {L"LOG(0-1)", 5, L"Invalid procedure call or argument"},
      {L"(0-8)^0.5", 5, L"Invalid procedure call or argument"}};
  for (const auto& [term, number, text] : faults) {
    SCOPED_TRACE(testing::PrintToString(term));
    EXPECT_OK(expression_.Let(L"EString", {term}));
    EXPECT_ERROR(expression_.Get(L"Value"), number, L"Zepkit10.Expression", text);
    EXPECT_OK(expression_.Get(L"EString"));
  }
}

TEST_P(ExpressionTest, ClearKeepsTheVariableSet) {
  EXPECT_OK(expression_.Set(L"VarSet", {set_}));
  EXPECT_OK(expression_.Let(L"EString", {L"1+1"}));
  EXPECT_OK(expression_.Call(L"Clear"));
  EXPECT_EQ(expression_.Get(L"Value"), 0.0);
  EXPECT_EQ(expression_.Get(L"EString"), L"0");
  EXPECT_EQ(expression_.Get(L"VarSet"), set_);
}

TEST_P(ExpressionTest, VarSetRefusesForeignObjects) {
  EXPECT_OK(expression_.Set(L"VarSet", {set_}));
  foreign::VarSet fake;
  EXPECT_ZEP_ERROR(expression_.Set(L"VarSet", {Value(&fake)}), zepErrBadPropValue, L"Expression");
  EXPECT_EQ(1u, fake.references);
  EXPECT_FALSE(expression_.Set(L"VarSet", {sets_}).ok());
  if (GetParam() == client::Binding::kDispatch) {
    EXPECT_EQ(DISP_E_TYPEMISMATCH, expression_.Set(L"VarSet", {sets_}).result);
    EXPECT_EQ(DISP_E_TYPEMISMATCH, expression_.Set(L"VarSet", {1}).result);
  }
  EXPECT_EQ(expression_.Get(L"VarSet"), set_);
}

TEST_P(ExpressionTest, ValueIsTheDefaultMember) {
  EXPECT_OK(expression_.Let(L"EString", {L"6*7"}));
  Value result;
  DISPPARAMS none{};
  EXPECT_EQ(S_OK, expression_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                            DISPATCH_PROPERTYGET, &none, &result.raw(), nullptr,
                                            nullptr));
  EXPECT_EQ(Value(42.0), result);
}

TEST_P(ExpressionTest, LongTermsNeedNoStack) {
  constexpr std::size_t kLength = 1000000;
  const std::wstring dashes =
      std::wstring(kLength / 2, L'(') + L"7" + std::wstring(kLength / 2, L')');
  EXPECT_OK(expression_.Let(L"EString", {dashes}));
  EXPECT_EQ(expression_.Get(L"Value"), 7.0);
  EXPECT_OK(expression_.Let(L"EString", {std::wstring(kLength, L'-')}));
  EXPECT_EQ(expression_.Get(L"Value"), 0.0);
  EXPECT_OK(expression_.Get(L"EString"));
  EXPECT_ZEP_ERROR(expression_.Let(L"EString", {std::wstring(kLength, L'(')}), zepErrBadParam,
                   L"Expression");
}

TEST_P(ExpressionTest, NullPointersOfVtableClients) {
  ComPtr<_Expression> expression;
  ASSERT_EQ(S_OK, expression_.get()->QueryInterface(IID_PPV_ARGS(&expression)));
  EXPECT_OK(expression_.Let(L"EString", {L"1+1"}));
  EXPECT_EQ(S_OK, expression->put_EString(nullptr));
  EXPECT_EQ(expression_.Get(L"Value"), 0.0);
  EXPECT_EQ(E_POINTER, expression->get_EString(nullptr));
  EXPECT_EQ(E_POINTER, expression->get_Value(nullptr));
  EXPECT_EQ(E_POINTER, expression->get_VarSet(nullptr));
  EXPECT_EQ(E_POINTER, expression->Transform(VARIANT{}, zepMTOpToPrio, nullptr));
  EXPECT_EQ(S_OK, expression->putref_VarSet(nullptr));
  auto* disguised = reinterpret_cast<_VarSet*>(sets_.get());
  EXPECT_EQ(zepErrBadPropValue, expression->putref_VarSet(disguised));
}

RUN_IN_BOTH_BINDINGS(ExpressionTest);

}  // namespace

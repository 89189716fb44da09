#include <cmath>
#include <limits>

#include "com/foreign.h"
#include "com/german_user.h"
#include "com/var_sets_fixture.h"
#include "platform/automation/module.h"
#include "vars/var_set_object.h"

namespace {

using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

class VariableTest : public WithVarSet {
 protected:
  Object x_ = set_.CallObject(L"Add", {L"x"});
};

TEST_P(VariableTest, StartsWithAnEmptyExpressionAttachedToItsSet) {
  const Object expression = x_.GetObject(L"Expression");
  EXPECT_EQ(x_.Get(L"Value"), 0.0);
  EXPECT_EQ(expression.Get(L"EString"), L"0");
  EXPECT_EQ(expression.Get(L"VarSet"), set_);
  EXPECT_EQ(x_.Get(L"Expression"), expression);
}

TEST_P(VariableTest, ValueIsThatOfItsExpression) {
  EXPECT_OK(x_.Let(L"Value", {2.5}));
  EXPECT_EQ(x_.Get(L"Value"), 2.5);
  const Object expression = x_.GetObject(L"Expression");
  EXPECT_EQ(expression.Get(L"Value"), 2.5);
  EXPECT_EQ(expression.Get(L"EString"), L"2.5");
  EXPECT_OK(expression.Let(L"EString", {L"3*4"}));
  EXPECT_EQ(x_.Get(L"Value"), 12.0);
  EXPECT_OK(x_.Let(L"Value", {-0.25}));
  EXPECT_EQ(x_.Get(L"Value"), -0.25);
  EXPECT_EQ(x_.Get(L"Expression"), expression);
}

TEST_P(VariableTest, ValueIsTheDefaultMember) {
  EXPECT_OK(x_.Let(L"Value", {7.0}));
  Value result;
  DISPPARAMS none{};
  EXPECT_EQ(S_OK, x_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                   DISPATCH_PROPERTYGET, &none, &result.raw(), nullptr, nullptr));
  EXPECT_EQ(Value(7.0), result);
  Value assigned = 8.5;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS one{&assigned.raw(), &put, 1, 1};
  EXPECT_EQ(S_OK, x_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                   DISPATCH_PROPERTYPUT, &one, nullptr, nullptr, nullptr));
  EXPECT_EQ(x_.Get(L"Value"), 8.5);
}

TEST_P(VariableTest, ValueRefusesWhatIsNotFinite) {
  EXPECT_OK(x_.Let(L"Value", {2.5}));
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double number : {kInfinity, -kInfinity, std::nan("")}) {
    EXPECT_ZEP_ERROR(x_.Let(L"Value", {number}), zepErrBadPropValue, L"Expression");
  }
  EXPECT_EQ(x_.Get(L"Value"), 2.5);
}

TEST_P(VariableTest, FollowsOtherVariables) {
  const Object y = Define(L"y", L"2*x");
  const Object z = Define(L"z", L"y^2+x");
  EXPECT_OK(x_.Let(L"Value", {3.0}));
  EXPECT_EQ(y.Get(L"Value"), 6.0);
  EXPECT_EQ(z.Get(L"Value"), 39.0);
  EXPECT_OK(x_.GetObject(L"Expression").Let(L"EString", {L"w+1"}));
  EXPECT_EQ(z.Get(L"Value"), 5.0);
  EXPECT_EQ(set_.Get(L"Count"), 4);  // w was added when it was looked up
  EXPECT_OK(set_.GetObject(L"Item", {L"w"}).Let(L"Value", {1.0}));
  EXPECT_EQ(z.Get(L"Value"), 18.0);
}

TEST_P(VariableTest, ARemovedVariableIsAddedAnewByWhatFollowsIt) {
  const Object y = Define(L"y", L"x+1");
  EXPECT_OK(x_.Let(L"Value", {3.0}));
  EXPECT_EQ(y.Get(L"Value"), 4.0);
  EXPECT_OK(x_.Call(L"Delete"));
  EXPECT_EQ(y.Get(L"Value"), 1.0);
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_OK(set_.Let(L"Explicit", {true}));
  EXPECT_OK(set_.Call(L"Remove", {L"x"}));
  EXPECT_ZEP_ERROR(y.Get(L"Value"), zepErrItemNotExistant, L"VarSet");
  EXPECT_EQ(set_.Get(L"Count"), 1);
}

TEST_P(VariableTest, ARenamedVariableIsFoundUnderItsNewName) {
  const Object y = Define(L"y", L"a+b");
  EXPECT_OK(x_.Let(L"Value", {5.0}));
  EXPECT_OK(x_.Let(L"Name", {L"a"}));
  EXPECT_EQ(y.Get(L"Value"), 5.0);
  EXPECT_OK(x_.Let(L"Name", {L"c"}));
  EXPECT_EQ(y.Get(L"Value"), 0.0);
}

TEST_P(VariableTest, FaultsArriveAsTheExpressionRaisesThem) {
  const Object y = Define(L"y", L"1/x");
  const Object z = Define(L"z", L"y+1");
  EXPECT_ERROR(y.Get(L"Value"), 11, L"Zepkit10.Expression", L"Division by zero");
  EXPECT_ERROR(z.Get(L"Value"), 11, L"Zepkit10.Expression", L"Division by zero");
  EXPECT_OK(y.GetObject(L"Expression").Let(L"EString", {L"SQRx"}));
  EXPECT_OK(x_.Let(L"Value", {-1.0}));
  EXPECT_ERROR(z.Get(L"Value"), 5, L"Zepkit10.Expression", L"Invalid procedure call or argument");
  EXPECT_OK(y.GetObject(L"Expression").Let(L"EString", {L"EXP(x*x)"}));
  EXPECT_OK(x_.Let(L"Value", {100.0}));
  EXPECT_ERROR(z.Get(L"Value"), 6, L"Zepkit10.Expression", L"Overflow");
  EXPECT_OK(x_.Let(L"Value", {1.0}));
  EXPECT_OK(z.Get(L"Value"));
}

TEST_P(VariableTest, ACycleRaises28) {
  EXPECT_OK(x_.GetObject(L"Expression").Let(L"EString", {L"x"}));
  EXPECT_ERROR(x_.Get(L"Value"), 28, L"Zepkit10.Expression", L"Out of stack space");
  const Object y = Define(L"y", L"SIN(z)+1");
  const Object z = Define(L"z", L"2*w");
  const Object w = Define(L"w", L"|y|");
  EXPECT_ERROR(y.Get(L"Value"), 28, L"Zepkit10.Expression", L"Out of stack space");
  EXPECT_ERROR(w.Get(L"Value"), 28, L"Zepkit10.Expression", L"Out of stack space");
  EXPECT_OK(z.Let(L"Value", {0.0}));
  EXPECT_EQ(y.Get(L"Value"), 1.0);
  EXPECT_EQ(w.Get(L"Value"), 1.0);
  EXPECT_OK(x_.Let(L"Value", {1.0}));
  EXPECT_EQ(x_.Get(L"Value"), 1.0);
}

TEST_P(VariableTest, ACycleRoundSeveralSetsRaises28) {
  const Object other = sets_.CallObject(L"Add");
  const Object distant = other.CallObject(L"Add", {L"x"});
  EXPECT_OK(x_.GetObject(L"Expression").Let(L"EString", {L"x+1"}));
  EXPECT_OK(x_.GetObject(L"Expression").Set(L"VarSet", {other}));
  EXPECT_EQ(x_.Get(L"Value"), 1.0);
  EXPECT_OK(distant.GetObject(L"Expression").Let(L"EString", {L"x+1"}));
  EXPECT_OK(distant.GetObject(L"Expression").Set(L"VarSet", {set_}));
  EXPECT_ERROR(x_.Get(L"Value"), 28, L"Zepkit10.Expression", L"Out of stack space");
}

TEST_P(VariableTest, AChainOf10000VariablesEvaluates) {
  constexpr int kLength = 10000;
  Object next = x_;
  EXPECT_OK(next.Let(L"Value", {1.0}));
  for (int i = 1; i < kLength; ++i) {
    const Object set = sets_.CallObject(L"Add");
    const Object variable = set.CallObject(L"Add", {L"x"});
    const Object expression = variable.GetObject(L"Expression");
    ASSERT_TRUE(expression.Let(L"EString", {L"(x+1)"}).ok());
    ASSERT_TRUE(expression.Set(L"VarSet", {next.GetObject(L"Parent")}).ok());
    next = variable;
  }
  EXPECT_EQ(next.Get(L"Value"), 1.0 * kLength);
}

TEST_P(VariableTest, NameIsOneCharacterAndUnique) {
  const Object y = set_.CallObject(L"Add", {L"y"});
  for (const std::wstring& name : {std::wstring(), std::wstring(L"xy"),
                                   std::wstring(L"\xD83D\xDE00"), std::wstring(100000, L'z')}) {
    EXPECT_ZEP_ERROR(x_.Let(L"Name", {name}), zepErrBadPropValue, L"Variable");
  }
  EXPECT_ZEP_ERROR(x_.Let(L"Name", {L"y"}), zepErrItemAlreadyExists, L"Variable");
  EXPECT_ZEP_ERROR(x_.Let(L"Name", {L"x"}), zepErrItemAlreadyExists, L"Variable");
  EXPECT_EQ(x_.Get(L"Name"), L"x");
  EXPECT_EQ(set_.Get(L"Item", {L"x"}), x_);
  EXPECT_OK(x_.Let(L"Name", {L"X"}));
  EXPECT_EQ(x_.Get(L"Name"), L"X");
  EXPECT_EQ(set_.Get(L"Item", {L"X"}), x_);
  EXPECT_EQ(set_.Get(L"Item", {1}), x_);
  EXPECT_OK(y.Let(L"Name", {L"x"}));
  EXPECT_EQ(set_.Get(L"Item", {L"x"}), y);
}

TEST_P(VariableTest, AnAssignedExpressionIsAttachedToTheSet) {
  const Object expression = Create(CLSID_Expression);
  EXPECT_OK(expression.Let(L"EString", {L"y+1"}));
  EXPECT_ZEP_ERROR(expression.Get(L"Value"), zepErrBadCallContext, L"Expression");
  EXPECT_OK(x_.Set(L"Expression", {expression}));
  EXPECT_EQ(x_.Get(L"Expression"), expression);
  EXPECT_EQ(expression.Get(L"VarSet"), set_);
  EXPECT_EQ(expression.Get(L"Value"), 1.0);
  EXPECT_OK(set_.GetObject(L"Item", {L"y"}).Let(L"Value", {4.0}));
  EXPECT_EQ(x_.Get(L"Value"), 5.0);
}

TEST_P(VariableTest, AnExpressionMayBeShared) {
  const Object other = sets_.CallObject(L"Add");
  const Object expression = Create(CLSID_Expression);
  const Object distant = other.CallObject(L"Add", {L"x"});
  EXPECT_OK(x_.Set(L"Expression", {expression}));
  EXPECT_OK(distant.Set(L"Expression", {expression}));
  EXPECT_EQ(expression.Get(L"VarSet"), other);
  EXPECT_OK(x_.Let(L"Value", {3.0}));
  EXPECT_EQ(distant.Get(L"Value"), 3.0);
  EXPECT_OK(expression.Let(L"EString", {L"y"}));
  EXPECT_OK(other.CallObject(L"Add", {L"y"}).Let(L"Value", {5.0}));
  EXPECT_EQ(x_.Get(L"Value"), 5.0);
  EXPECT_OK(x_.Set(L"Expression", {expression}));
  EXPECT_EQ(distant.Get(L"Value"), 0.0);
  EXPECT_EQ(expression.Get(L"VarSet"), set_);
  EXPECT_OK(distant.Call(L"Delete"));
  EXPECT_EQ(x_.Get(L"Value"), 0.0);
}

TEST_P(VariableTest, ExpressionRefusesNothingAndForeignObjects) {
  const Object expression = x_.GetObject(L"Expression");
  foreign::Expression fake;
  EXPECT_ZEP_ERROR(x_.Set(L"Expression", {Value::Nothing()}), zepErrBadPropValue, L"Variable");
  EXPECT_ZEP_ERROR(x_.Set(L"Expression", {Value(&fake)}), zepErrBadPropValue, L"Variable");
  EXPECT_FALSE(x_.Set(L"Expression", {set_}).ok());
  if (GetParam() == client::Binding::kDispatch) {
    EXPECT_EQ(DISP_E_TYPEMISMATCH, x_.Set(L"Expression", {set_}).result);
    EXPECT_EQ(DISP_E_TYPEMISMATCH, x_.Set(L"Expression", {1.0}).result);
  }
  EXPECT_EQ(1u, fake.references);
  EXPECT_EQ(x_.Get(L"Expression"), expression);
}

TEST_P(VariableTest, ExpressionRefusesAPointerToAnotherClass) {
  ComPtr<_Variable> variable;
  ASSERT_EQ(S_OK, x_.get()->QueryInterface(IID_PPV_ARGS(&variable)));
  auto* disguised = reinterpret_cast<_Expression*>(set_.get());
  EXPECT_EQ(zepErrBadPropValue, variable->putref_Expression(disguised));
  EXPECT_EQ(zepErrBadPropValue, variable->putref_Expression(nullptr));
  EXPECT_EQ(E_POINTER, variable->get_Expression(nullptr));
  EXPECT_EQ(zepErrBadPropValue, variable->put_Name(nullptr));
}

TEST_P(VariableTest, DeletedVariablesRefuseEveryMember) {
  const Object expression = x_.GetObject(L"Expression");
  EXPECT_OK(x_.Call(L"Delete"));
  EXPECT_EQ(set_.Get(L"Count"), 0);
  EXPECT_ZEP_ERROR(x_.Call(L"Delete"), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(x_.Get(L"Expression"), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(x_.Set(L"Expression", {Value::Nothing()}), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(x_.Get(L"Name"), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(x_.Let(L"Name", {L"xy"}), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(x_.Get(L"Parent"), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(x_.Get(L"Value"), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(x_.Let(L"Value", {std::nan("")}), zepErrAwaitTerm, L"Variable");
  // The Expression has a life of its own.
  EXPECT_OK(expression.Let(L"EString", {L"y+2"}));
  EXPECT_EQ(expression.Get(L"Value"), 2.0);
}

TEST_P(VariableTest, ADeletedVariableLetsItsExpressionGo) {
  if (!component::IsLinked()) GTEST_SKIP() << "counts objects";
  const long live = zepkit10::LiveObjects();
  EXPECT_OK(x_.Call(L"Delete"));
  EXPECT_EQ(live - 1, zepkit10::LiveObjects());
}

TEST_P(VariableTest, ItemsTakeOneOwnerAndNoneOther) {
  if (!component::IsLinked()) GTEST_SKIP() << "looks into the component";
  const auto number = [](auto&& attach) -> std::int32_t {
    try {
      attach();
    } catch (const zepkit10::Failure& failure) {
      return failure.number;
    }
    return 0;
  };
  auto* set = zepkit10::VarSet::From(set_.get());
  auto* variable = zepkit10::Variable::From(x_.get());
  const auto orphan = zepkit10::Make<zepkit10::Variable>();
  EXPECT_EQ(zepErrUnexpected, number([&] { variable->AttachParent(set); }));
  EXPECT_EQ(zepErrUnexpected, number([&] { variable->AttachParent(nullptr); }));
  EXPECT_EQ(zepErrUnexpected, number([&] { orphan->AttachParent(nullptr); }));
  EXPECT_EQ(0, number([&] { orphan->AttachParent(set); }));
  EXPECT_EQ(zepErrUnexpected, number([&] { orphan->AttachParent(set); }));
  orphan->Delete();
  EXPECT_EQ(x_.Get(L"Parent"), set_);
}

TEST_P(VariableTest, GermanValuesHaveADecimalComma) {
  SKIP_UNLESS_GERMAN();
  EXPECT_OK(x_.Let(L"Value", {-2.5}));
  EXPECT_EQ(x_.GetObject(L"Expression").Get(L"EString"), L"0-2,5");
  EXPECT_EQ(x_.Get(L"Value"), -2.5);
}

RUN_IN_BOTH_BINDINGS(VariableTest);

}  // namespace

// Terms that have been evaluated before, and again: whatever changes afterwards counts at once.
#include "com/var_sets_fixture.h"

namespace {

using client::Object;
using client::Value;

constexpr int kAgain = 4;

class ExpressionAgainTest : public WithVarSet {
 protected:
  static void ExpectAgain(const Object& evaluated, double value) {
    for (int i = 0; i < kAgain; ++i) EXPECT_EQ(evaluated.Get(L"Value"), value) << i;
  }
  static void ExpectFaultAgain(const Object& evaluated, ZepErrors error, const wchar_t* source) {
    for (int i = 0; i < kAgain; ++i) {
      EXPECT_ERROR(evaluated.Get(L"Value"), error, source, zep_error::English(error));
    }
  }
  static void ExpectFaultAgain(const Object& evaluated, long number, const wchar_t* text) {
    for (int i = 0; i < kAgain; ++i) {
      EXPECT_ERROR(evaluated.Get(L"Value"), number, L"Zepkit10.Expression", text);
    }
  }

  Object Number(const wchar_t* name, double value) const {
    const Object variable = set_.CallObject(L"Add", {name});
    EXPECT_OK(variable.Let(L"Value", {value}));
    return variable;
  }

  /// An Expression of a client's own that looks its letters up in the set.
  Object Follower(const wchar_t* term) const {
    const Object expression = Create(CLSID_Expression);
    EXPECT_OK(expression.Set(L"VarSet", {set_}));
    EXPECT_OK(expression.Let(L"EString", {term}));
    return expression;
  }
};

TEST_P(ExpressionAgainTest, NumbersOfVariables) {
  const Object x = Number(L"x", 3), y = Define(L"y", L"x*x-1"), z = Follower(L"2*y+x/4");
  ExpectAgain(z, 16.75);
  for (const auto& [number, value] :
       {std::pair(-3.0, 15.25), {0.0, -2.0}, {-0.0, -2.0}, {4.0, 31.0}}) {
    EXPECT_OK(x.Let(L"Value", {number}));
    ExpectAgain(z, value);
  }
  EXPECT_OK(x.GetObject(L"Expression").Let(L"EString", {L"5"}));
  ExpectAgain(z, 49.25);
  EXPECT_OK(y.Let(L"Value", {-1.5}));  // a number in place of a term
  ExpectAgain(z, -1.75);
  EXPECT_OK(y.Let(L"Value", {0.5}));
  ExpectAgain(z, 2.25);
  EXPECT_OK(y.GetObject(L"Expression").Call(L"Clear"));
  ExpectAgain(z, 1.25);
}

TEST_P(ExpressionAgainTest, ValuesOfOtherTypes) {
  const Object x = Number(L"x", 3), z = Follower(L"2*x+1");
  ExpectAgain(z, 7);
  const std::pair<Value, double> taken[] = {{L"7", 15}, {-4, -7}, {true, -1}, {Value(), 1}};
  for (const auto& [given, value] : taken) {
    EXPECT_OK(x.Let(L"Value", {given}));
    ExpectAgain(z, value);
  }
  VARIANT error{};
  error.vt = VT_ERROR;
  error.scode = E_FAIL;
  EXPECT_OK(x.Let(L"Value", {3.0}));
  for (const Value& refused : {Value(L"three"), Value(L""), Value::Null(), Value(error)}) {
    EXPECT_FALSE(x.Let(L"Value", {refused}).ok()) << refused;
    ExpectAgain(z, 7);
  }
}

TEST_P(ExpressionAgainTest, TermsOfVariables) {
  const Object x = Number(L"x", 3), y = Define(L"y", L"x+1"), z = Follower(L"y*y");
  const Object term = y.GetObject(L"Expression");
  ExpectAgain(z, 16);
  EXPECT_OK(term.Let(L"EString", {L"x-1"}));
  ExpectAgain(z, 4);
  EXPECT_ZEP_ERROR(term.Let(L"EString", {L"x #"}), zepErrBadCall, L"Expression");
  ExpectAgain(z, 0);
  EXPECT_OK(term.Let(L"EString", {L"w+x"}));
  ExpectAgain(z, 9);
  EXPECT_EQ(set_.Get(L"Count"), 3);
  EXPECT_OK(z.Let(L"EString", {L"y-w"}));
  ExpectAgain(z, 3);
}

TEST_P(ExpressionAgainTest, VariablesThatAreRemoved) {
  const Object x = Number(L"x", 3), y = Number(L"y", 5), z = Follower(L"x*10+y");
  const Object old = x.GetObject(L"Expression");
  ExpectAgain(z, 35);
  EXPECT_OK(x.Call(L"Delete"));
  EXPECT_OK(old.Let(L"Value", {7.0}));  // no longer that of a variable
  ExpectAgain(z, 5);
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_EQ(set_.GetObject(L"Item", {2}).Get(L"Name"), L"x");
  EXPECT_OK(set_.Call(L"Remove", {L"x"}));
  Number(L"x", 4);
  ExpectAgain(z, 45);
  EXPECT_OK(set_.Let(L"Explicit", {true}));
  ExpectAgain(z, 45);
  EXPECT_OK(set_.Call(L"Remove", {L"y"}));
  ExpectFaultAgain(z, zepErrItemNotExistant, L"Zepkit10.VarSet");
  EXPECT_EQ(set_.Get(L"Count"), 1);
  EXPECT_OK(set_.Let(L"Explicit", {false}));
  ExpectAgain(z, 40);
  EXPECT_OK(set_.Call(L"Clear"));
  ExpectAgain(z, 0);
  EXPECT_EQ(set_.GetObject(L"Item", {1}).Get(L"Name"), L"y");  // right before left
  EXPECT_EQ(set_.GetObject(L"Item", {2}).Get(L"Name"), L"x");
}

TEST_P(ExpressionAgainTest, VariablesThatAreRenamed) {
  const Object a = Number(L"a", 1), b = Number(L"b", 10), z = Follower(L"a-b");
  ExpectAgain(z, -9);
  EXPECT_OK(a.Let(L"Name", {L"c"}));
  EXPECT_OK(b.Let(L"Name", {L"a"}));
  EXPECT_OK(a.Let(L"Name", {L"b"}));
  ExpectAgain(z, 9);
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_OK(a.Let(L"Name", {L"B"}));
  ExpectAgain(z, 10);  // a new b
  EXPECT_EQ(set_.Get(L"Count"), 3);
  EXPECT_OK(a.Let(L"Value", {5.0}));
  ExpectAgain(z, 10);
  ExpectAgain(Follower(L"a-B"), 5);
}

TEST_P(ExpressionAgainTest, ExpressionsThatAreBoundElsewhere) {
  const Object x = Number(L"x", 3), y = Number(L"y", 5), z = Follower(L"x*10+y");
  const Object old = x.GetObject(L"Expression"), other = Create(CLSID_Expression);
  EXPECT_OK(other.Let(L"EString", {L"y+1"}));
  ExpectAgain(z, 35);
  EXPECT_OK(x.Set(L"Expression", {other}));
  ExpectAgain(z, 65);
  EXPECT_OK(old.Let(L"Value", {9.0}));
  ExpectAgain(z, 65);
  EXPECT_OK(y.Set(L"Expression", {old}));
  ExpectAgain(z, 109);
  EXPECT_OK(x.Set(L"Expression", {old}));  // shared
  ExpectAgain(z, 99);
  EXPECT_OK(x.Let(L"Value", {2.0}));
  ExpectAgain(z, 22);
}

TEST_P(ExpressionAgainTest, AnotherVariableSet) {
  Number(L"x", 3);
  const Object other = sets_.CallObject(L"Add", {L"other"});
  EXPECT_OK(other.CallObject(L"Add", {L"x"}).Let(L"Value", {4.0}));
  const Object z = Follower(L"x+1"), y = Define(L"y", L"2*x");
  const Object follower = Follower(L"y-1");
  ExpectAgain(z, 4);
  ExpectAgain(follower, 5);
  EXPECT_OK(z.Set(L"VarSet", {other}));
  ExpectAgain(z, 5);
  EXPECT_OK(y.GetObject(L"Expression").Set(L"VarSet", {other}));
  ExpectAgain(follower, 7);
  EXPECT_OK(z.Set(L"VarSet", {Value::Nothing()}));
  ExpectFaultAgain(z, zepErrBadCallContext, L"Zepkit10.Expression");
  EXPECT_OK(z.Set(L"VarSet", {other}));
  ExpectAgain(z, 5);
  EXPECT_OK(other.Call(L"Delete"));
  ExpectFaultAgain(z, zepErrAwaitTerm, L"Zepkit10.VarSet");
  ExpectFaultAgain(follower, zepErrAwaitTerm, L"Zepkit10.VarSet");
  EXPECT_OK(y.GetObject(L"Expression").Set(L"VarSet", {set_}));
  ExpectAgain(follower, 5);
  EXPECT_OK(sets_.Call(L"Clear"));
  ExpectFaultAgain(follower, zepErrAwaitTerm, L"Zepkit10.VarSet");
}

TEST_P(ExpressionAgainTest, FaultsAndWhatIsLeftOfThem) {
  const Object x = Number(L"x", 4), z = Follower(L"q+1/x");
  EXPECT_OK(x.Let(L"Value", {0.0}));
  ExpectFaultAgain(z, 11, L"Division by zero");
  EXPECT_EQ(set_.Get(L"Count"), 1);  // q was not asked for
  EXPECT_OK(x.Let(L"Value", {4.0}));
  ExpectAgain(z, 0.25);
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_OK(x.Let(L"Value", {0.0}));
  ExpectFaultAgain(z, 11, L"Division by zero");
  EXPECT_OK(set_.Call(L"Remove", {L"q"}));
  ExpectFaultAgain(z, 11, L"Division by zero");
  EXPECT_EQ(set_.Get(L"Count"), 1);
  EXPECT_OK(z.Let(L"EString", {L"SQRx+EXPx"}));
  ExpectAgain(z, 1);
  EXPECT_OK(x.Let(L"Value", {-1.0}));
  ExpectFaultAgain(z, 5, L"Invalid procedure call or argument");
  EXPECT_OK(x.Let(L"Value", {1000.0}));
  ExpectFaultAgain(z, 6, L"Overflow");
  EXPECT_OK(z.Let(L"EString", {L"1/(1/x)"}));
  ExpectAgain(z, 1000);
  EXPECT_OK(x.Let(L"Value", {0.0}));
  ExpectFaultAgain(z, 11, L"Division by zero");  // though 1 divided by that would be 0
}

TEST_P(ExpressionAgainTest, Cycles) {
  const Object x = Number(L"x", 3), y = Define(L"y", L"x+1"), z = Follower(L"y");
  ExpectAgain(z, 4);
  EXPECT_OK(x.GetObject(L"Expression").Let(L"EString", {L"0*y"}));
  ExpectFaultAgain(z, 28, L"Out of stack space");
  ExpectFaultAgain(x, 28, L"Out of stack space");
  EXPECT_OK(x.Let(L"Value", {1.0}));
  ExpectAgain(z, 2);
  EXPECT_OK(y.Set(L"Expression", {z}));  // which names y
  ExpectFaultAgain(z, 28, L"Out of stack space");
}

TEST_P(ExpressionAgainTest, LetterCase) {
  const Object lower = Number(L"x", 3), upper = Number(L"X", 7), z = Follower(L"X-x");
  ExpectAgain(z, 4);
  EXPECT_OK(upper.Call(L"Delete"));
  ExpectAgain(z, -3);
  EXPECT_OK(lower.Let(L"Value", {5.0}));
  ExpectAgain(z, -5);
}

RUN_IN_BOTH_BINDINGS(ExpressionAgainTest);

}  // namespace

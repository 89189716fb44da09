#include "expr/evaluation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

using enum ZepVbErrors3To98;

Failure Runtime(ZepVbErrors3To98 number) {
  return {static_cast<std::int32_t>(number), u"Zepkit10.Expression", {}};
}

double ValueOf(Evaluable& term) { return Evaluate(term); }

class EvaluationTest : public testing::Test {
 protected:
  void ExpectFault(std::u16string_view text, ZepVbErrors3To98 number) {
    EXPECT_EQ(FailureOf([&] { set_.Evaluate(text); }), Runtime(number))
        << std::string(text.begin(), text.end());
  }

  TestExpressions set_;
};

TEST_F(EvaluationTest, ATermAtFirstIsTheNumber0) {
  EXPECT_EQ(set_.Evaluate(Term()), 0);
  EXPECT_EQ(TermText(Term(), naive::EnglishNumbers()), u"0");
}

TEST_F(EvaluationTest, ANumberSetIsWhatItsTextWouldBe) {
  for (const double number : {0.0, 2.5, -2.5, 1e300, -1e-300}) {
    Term term;
    term.SetNumber(number);
    EXPECT_EQ(set_.Evaluate(term), number);
    const Term parsed =
        ParseTerm(NumberToText(number, naive::EnglishNumbers()), naive::EnglishNumbers());
    EXPECT_EQ(term.Nodes(), parsed.Nodes()) << number;
    EXPECT_EQ(set_.Evaluate(parsed), number);
    EXPECT_EQ(term.StackDepth(), parsed.StackDepth());
  }
}

TEST_F(EvaluationTest, NegativeZeroIsZero) {
  Term term;
  term.SetNumber(-0.0);
  EXPECT_FALSE(std::signbit(set_.Evaluate(term)));
  EXPECT_EQ(TermText(term, naive::EnglishNumbers()), u"0");
}

TEST_F(EvaluationTest, NodesOfNoKindAreUnexpected) {
  using enum ZepMathOperation;
  const Failure unexpected{
      static_cast<std::int32_t>(ZepErrors::zepErrUnexpected), u"Zepkit10.Expression", {}};
  for (const auto operation : {zepMOParC, zepMOParO, static_cast<ZepMathOperation>(17),
                               static_cast<ZepMathOperation>(-1)}) {
    const Term alone({{operation, 0, 0}});
    const Term below({{zepMOAdd, 0, 0}, {zepMONumber, 0, 1}, {operation, 0, 0}});
    for (const Term& term : {alone, below}) {
      EXPECT_EQ(FailureOf([&] { set_.Evaluate(term); }), unexpected);
      EXPECT_EQ(FailureOf([&] { TermText(term, naive::EnglishNumbers()); }), unexpected);
    }
  }
}

TEST_F(EvaluationTest, NothingToThePowerOfNothingIs1) {
  EXPECT_EQ(set_.Evaluate(u"0^0"), 1);
  EXPECT_EQ(set_.Evaluate(u"^"), 1);
}

TEST_F(EvaluationTest, EveryDivisionByZeroIs11) {
  for (const auto* text :
       {u"1/0", u"0/0", u"-1/0", u"1/(2-2)", u"1/(0*(0-1))", u"2*(3+1/0)", u"ATN(1/0)", u"1/(1/0)",
        u"EXP(0-1/0)", u"(1/0)^0", u"0^(-1)", u"0^(-1/2)", u"(0-0)^(-3)"}) {
    ExpectFault(text, zepVbErrDivisionByZero);
  }
}

TEST_F(EvaluationTest, AnOverflowIs6) {
  for (const auto* text :
       {u"10^400", u"EXP(710)", u"10^308*10", u"10^308+10^308*9", u"1/(10^308*10)",
        u"0-10^308-10^308", u"(10^300)^2", u"(-10)^401", u"10^300/(1/10^300)"}) {
    ExpectFault(text, zepVbErrOverflow);
  }
}

TEST_F(EvaluationTest, OtherInvalidOperationsAre5) {
  for (const auto* text : {u"SQR(-1)", u"LOG(0)", u"LOG(-1)", u"(-8)^(1/3)"}) {
    ExpectFault(text, zepVbErrBadCall);
  }
}

TEST_F(EvaluationTest, AnUnderflowIsNoFault) {
  EXPECT_EQ(set_.Evaluate(u"EXP(-1000)"), 0);
  EXPECT_EQ(set_.Evaluate(u"1/10^300/10^300"), 0);
  EXPECT_EQ(set_.Evaluate(u"(1/2)^1074"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(set_.Evaluate(u"(1/2)^1076"), 0);
}

TEST_F(EvaluationTest, TheRightOperandComesFirst) {
  set_.Set(u'x', 1.0);
  set_.Set(u'y', 2.0);
  set_.Set(u't', u"x-y");
  EXPECT_EQ(set_.Evaluate(u"(x-y)*t/x^y"), 1);
  EXPECT_EQ(set_.lookups, u"yxtyxyx");
  // The fault on the right is raised before the variable on the left is missed, and the other way
  // round.
  set_.lookups.clear();
  ExpectFault(u"q+1/0", zepVbErrDivisionByZero);
  EXPECT_EQ(set_.lookups, u"");
  ExpectFault(u"q+EXP(-1/0)", zepVbErrDivisionByZero);
  EXPECT_EQ(set_.lookups, u"");
  EXPECT_EQ(FailureOf([&] { set_.Evaluate(u"1/0+q"); }).number,
            static_cast<std::int32_t>(ZepErrors::zepErrItemNotExistant));
  ExpectFault(u"SQR(-1)+1/0", zepVbErrDivisionByZero);
}

TEST_F(EvaluationTest, AVariablesErrorGoesThrough) {
  set_.Set(u't', u"1/z");
  set_.Set(u'z', 0.0);
  ExpectFault(u"2+t", zepVbErrDivisionByZero);
  set_.Set(u't', u"q");
  EXPECT_EQ(
      FailureOf([&] { set_.Evaluate(u"2+t"); }),
      (Failure{
          static_cast<std::int32_t>(ZepErrors::zepErrItemNotExistant), u"Zepkit10.VarSet", {}}));
}

/// A term whose variables cannot be made.
class FailingLookup final : public Evaluable {
 public:
  const zepkit10::Term& Term() const override { return term_; }
  Evaluable& VariableNamed(char16_t) override { throw failure; }
  Evaluable* FindVariable(char16_t) override { return nullptr; }

  Failure failure;

 private:
  const zepkit10::Term term_ = ParseTerm(u"1+x", naive::EnglishNumbers());
};

TEST_F(EvaluationTest, AnErrorOfTheRuntimeInALookupComesFromTheExpression) {
  const auto overflow = static_cast<std::int32_t>(zepVbErrOverflow);
  const auto awaits = static_cast<std::int32_t>(ZepErrors::zepErrAwaitTerm);
  FailingLookup term;
  for (const auto* source : {u"", u"Zepkit10.VarSet"}) {
    term.failure = {overflow, source, u"text"};
    EXPECT_EQ(FailureOf([&] { ValueOf(term); }),
              (Failure{overflow, u"Zepkit10.Expression", u"text"}));
    term.failure = {awaits, source, u"text"};
    EXPECT_EQ(FailureOf([&] { ValueOf(term); }), (Failure{awaits, source, u"text"}));
  }
}

TEST_F(EvaluationTest, CyclesRaise28) {
  set_.Set(u'w', u"w");
  ExpectFault(u"w", zepVbErrOutOfStackSpace);
  set_.Set(u'a', u"b+1");
  set_.Set(u'b', u"2c");
  set_.Set(u'c', u"|a|");
  ExpectFault(u"1+a", zepVbErrOutOfStackSpace);
  EXPECT_EQ(FailureOf([&] { ValueOf(set_.At(u'b')); }), Runtime(zepVbErrOutOfStackSpace));
  // Nothing remembers the failure.
  set_.Set(u'c', 4.0);
  EXPECT_EQ(set_.Evaluate(u"a+b+c"), 21);
  // Twice the same variable is no cycle.
  EXPECT_EQ(set_.Evaluate(u"a*a-b*b"), 17);
}

TEST_F(EvaluationTest, AFailureLeavesNothingInProgress) {
  set_.Set(u'a', u"b+1");
  set_.Set(u'b', u"c/z");
  set_.Set(u'c', u"b2-b2+1");  // leads back to b
  set_.Set(u'z', 0.0);
  ExpectFault(u"a", zepVbErrOutOfStackSpace);
  set_.Set(u'c', u"z+1");
  ExpectFault(u"a", zepVbErrDivisionByZero);
  set_.Set(u'c', u"q");
  EXPECT_EQ(FailureOf([&] { set_.Evaluate(u"a"); }).number,
            static_cast<std::int32_t>(ZepErrors::zepErrItemNotExistant));
  set_.Set(u'c', u"z+1");
  set_.Set(u'z', 2.0);
  EXPECT_EQ(set_.Evaluate(u"a"), 2.5);
}

TEST_F(EvaluationTest, AChainOfTenThousandVariables) {
  constexpr char16_t kFirst = 0x100, kCount = 10'000;
  for (char16_t i = 0; i < kCount; ++i) {
    const char16_t next = static_cast<char16_t>(kFirst + i + 1);
    // No letter is left for so many names, so the terms are made from their nodes: 1+(next+1)/2.
    using enum ZepMathOperation;
    set_.At(static_cast<char16_t>(kFirst + i)).term = Term({{zepMOAdd, 0, 0},
                                                            {zepMONumber, 0, 1},
                                                            {zepMODivi, 0, 0},
                                                            {zepMOGetVar, next, 0},
                                                            {zepMONumber, 0, 2}});
  }
  set_.Set(kFirst + kCount, 2.0);
  EXPECT_EQ(ValueOf(set_.At(kFirst)), 2);
  set_.At(kFirst + kCount).term = set_.At(kFirst).term;  // closes the circle
  EXPECT_EQ(FailureOf([&] { ValueOf(set_.At(kFirst)); }), Runtime(zepVbErrOutOfStackSpace));
  set_.Set(kFirst + kCount, 4.0);
  EXPECT_EQ(ValueOf(set_.At(kFirst)), 2);
}

}  // namespace
}  // namespace zepkit10

// Terms of a million levels, on a stack of 256 KB: parsed, evaluated, written, destroyed.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "unit/expr/small_stack.h"
#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

constexpr std::size_t kCount = 1'000'000;

std::u16string Repeated(std::u16string_view piece, std::size_t count = kCount) {
  std::u16string text;
  text.reserve(piece.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

/// Where x is 1.
void ExpectValue(const std::u16string& text, double value, std::size_t shown_length) {
  OnSmallStack([&] {
    TestExpressions variables;
    variables.Set(u'x', 1.0);
    const Term term = ParseTerm(text, naive::EnglishNumbers());
    EXPECT_EQ(variables.Evaluate(term), value);
    EXPECT_EQ(TermText(term, naive::EnglishNumbers()).size(), shown_length);
    EXPECT_EQ(Term(term).Nodes().size(), term.Nodes().size());
  });
}

void ExpectError(const std::u16string& text, ZepErrors error) {
  OnSmallStack([&] {
    EXPECT_EQ(FailureOf([&] { ParseTerm(text, naive::EnglishNumbers()); }).number,
              static_cast<std::int32_t>(error));
  });
}

TEST(DeepTerms, Brackets) {
  ExpectValue(Repeated(u"(") + u"x" + Repeated(u")"), 1, 1);
  ExpectValue(Repeated(u"( ") + u"x" + Repeated(u" )"), 1, 1);
  ExpectValue(Repeated(u"(1+") + u"x" + Repeated(u")"), kCount + 1, 2 * kCount + 1);
  ExpectValue(u"x" + Repeated(u"+(1)"), kCount + 1, 2 * kCount + 1);
  ExpectValue(Repeated(u"(") + u"x" + Repeated(u"+1)"), kCount + 1, 2 * kCount + 1);
}

TEST(DeepTerms, Signs) {
  ExpectValue(Repeated(u"-"), 0, 2 * kCount + 1);
  ExpectValue(Repeated(u"-") + u"x", -1, 2 * kCount + 1);
  ExpectValue(Repeated(u"x"), 1, 2 * kCount - 1);
  ExpectValue(Repeated(u"(-") + u"x" + Repeated(u")"), 1, 2 * kCount + 1);
}

TEST(DeepTerms, ValueDashes) {
  ExpectValue(Repeated(u"|(") + u"x" + Repeated(u")|"), 1, 2 * kCount + 1);
  ExpectValue(Repeated(u"||+"), 0, 4 * kCount + 1);
  ExpectValue(Repeated(u"|x|-") + u"1", -static_cast<double>(kCount) + 1, 4 * kCount + 1);
  ExpectError(Repeated(u"|"), ZepErrors::zepErrExtractTerm);
  ExpectError(Repeated(u"|("), ZepErrors::zepErrBadPropValue);
}

TEST(DeepTerms, Powers) {
  ExpectValue(u"x" + Repeated(u"^1"), 1, 2 * kCount + 1);
  ExpectValue(Repeated(u"x^(") + u"1" + Repeated(u")"), 1, 2 * kCount + 1);
  ExpectValue(Repeated(u"^"), 1, 2 * kCount + 1);
}

TEST(DeepTerms, Functions) {
  ExpectValue(Repeated(u"SQR(") + u"x" + Repeated(u")"), 1, 3 * kCount + 1);
  ExpectError(Repeated(u"SIN"), ZepErrors::zepErrExtractTerm);
}

TEST(DeepTerms, Numbers) {
  ExpectError(Repeated(u"9"), ZepErrors::zepErrExtractTerm);
  ExpectError(Repeated(u"1.") + u"1", ZepErrors::zepErrExtractTerm);
  ExpectValue(Repeated(u"0") + u"." + Repeated(u"0"), 0, 1);
  ExpectValue(u"1" + Repeated(u",,"), 1, 1);
}

TEST(DeepTerms, BrokenOnes) {
  ExpectError(Repeated(u"("), ZepErrors::zepErrBadParam);
  ExpectError(Repeated(u"()"), ZepErrors::zepErrExtractTerm);
  ExpectError(Repeated(u")"), ZepErrors::zepErrExtractTerm);
  ExpectError(Repeated(u"(") + u"#" + Repeated(u")"), ZepErrors::zepErrBadPropValue);
  ExpectError(Repeated(u"1+(") + u"x#" + Repeated(u")"), ZepErrors::zepErrBadCall);
  ExpectError(Repeated(u"x+") + u"(", ZepErrors::zepErrBadCall);
}

}  // namespace
}  // namespace zepkit10

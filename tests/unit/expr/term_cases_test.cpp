// Which texts are terms, what they mean and how they are shown; which are none, and how they fail.
#include <gtest/gtest.h>

#include <bit>
#include <string>

#include "unit/expr/naive_numbers.h"
#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

using enum ZepErrors;

std::string Narrow(std::u16string_view text) { return {text.begin(), text.end()}; }

struct Sound {
  std::u16string_view term;
  double value;  // where x is 2 and y is 3
  std::u16string_view shown;
};

void ExpectSound(const Sound& expected, const NumberFormat& numbers) {
  TestExpressions variables;
  variables.Set(u'x', 2.0);
  variables.Set(u'y', 3.0);
  const Failure failure = FailureOf([&] {
    const Term term = ParseTerm(expected.term, numbers);
    EXPECT_EQ(TermText(term, numbers), expected.shown) << Narrow(expected.term);
    const double value = variables.Evaluate(term);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected.value))
        << Narrow(expected.term) << " is " << value;
  });
  EXPECT_EQ(failure.number, 0) << Narrow(expected.term);
}

struct Unsound {
  std::u16string_view term;
  ZepErrors error;
};

void ExpectUnsound(const Unsound& expected, const NumberFormat& numbers) {
  const Failure failure = FailureOf([&] { ParseTerm(expected.term, numbers); });
  EXPECT_EQ(failure.number, static_cast<std::int32_t>(expected.error)) << Narrow(expected.term);
  EXPECT_EQ(failure.source, u"Zepkit10.Expression");
}

TEST(TermCases, Operations) {
  constexpr Sound kTerms[] = {
      {u"2+3", 5, u"2+3"},           {u"8-4-2", 2, u"8-4-2"},
      {u"2*3+4", 10, u"2*3+4"},      {u"2+3*4", 14, u"2+3*4"},
      {u"12/3*2", 8, u"12/3*2"},     {u"12/(3*2)", 2, u"12/3*2"},
      {u"2^3^2", 64, u"2^3^2"},      {u"2^(3^2)", 512, u"2^3^2"},
      {u"2*3^2", 18, u"2*3^2"},      {u"|0-3|", 3, u"|0-3|"},
      {u"SQR16", 4, u"SQR16"},       {u"exp0", 1, u"EXP0"},
      {u"Log1", 0, u"LOG1"},         {u"sin0", 0, u"SIN0"},
      {u"COS0", 1, u"COS0"},         {u"tAN0", 0, u"TAN0"},
      {u"ATN0", 0, u"ATN0"},         {u"SQR16+9", 13, u"SQR16+9"},
      {u"SQR(16+9)", 5, u"SQR16+9"}, {u"SQRx^2", 2.0000000000000004, u"SQRx^2"},
      {u"SQR16x", 8, u"SQR16*x"},    {u"SQR(SQR16)", 2, u"SQRSQR16"},
  };
  for (const Sound& term : kTerms) ExpectSound(term, naive::EnglishNumbers());
}

TEST(TermCases, MultiplicationIsUnderstood) {
  constexpr Sound kTerms[] = {
      {u"2x", 4, u"2*x"},        {u"xy", 6, u"x*y"},           {u"x2", 4, u"x*2"},
      {u"x(y+1)", 8, u"x*y+1"},  {u"2(x)", 4, u"2*x"},         {u"2COS(0)", 2, u"2*COS0"},
      {u"xCOS0", 2, u"x*COS0"},  {u"2COS0^3", 2, u"2*COS0^3"}, {u"COS0xCOS0", 2, u"COS0*x*COS0"},
      {u"12/2x", 12, u"12/2*x"}, {u"2^xy", 12, u"2^x*y"},
  };
  for (const Sound& term : kTerms) ExpectSound(term, naive::EnglishNumbers());
}

TEST(TermCases, LettersAreVariablesUnlessTheySpellAFunction) {
  const NumberFormat& numbers = naive::EnglishNumbers();
  EXPECT_EQ(TermText(ParseTerm(u"si", numbers), numbers), u"s*i");
  EXPECT_EQ(TermText(ParseTerm(u"sin", numbers), numbers), u"SIN0");
  EXPECT_EQ(TermText(ParseTerm(u"xcosin", numbers), numbers), u"x*COSi*n");
  EXPECT_EQ(TermText(ParseTerm(u"Xx", numbers), numbers), u"X*x");
  EXPECT_EQ(TermText(ParseTerm(u"1E5", numbers), numbers), u"1*E*5");  // no exponent
  EXPECT_EQ(TermText(ParseTerm(u"expo", numbers), numbers), u"EXPo");
  EXPECT_EQ(TermText(ParseTerm(u"SQ", numbers), numbers), u"S*Q");
}

TEST(TermCases, NothingIsTheNumber0) {
  constexpr Sound kTerms[] = {
      {u"", 0, u"0"},          {u"   ", 0, u"0"},        {u"()", 0, u"0"},
      {u"( )", 0, u"0"},       {u" ( ( ) ) ", 0, u"0"},  {u"||", 0, u"|0|"},
      {u"| |", 0, u"|0|"},     {u"SIN", 0, u"SIN0"},     {u"COS()", 1, u"COS0"},
      {u"-x", -2, u"0-x"},     {u"+x", 2, u"0+x"},       {u"2^", 1, u"2^0"},
      {u"2*-3", -3, u"2*0-3"}, {u"2^-1", 0, u"2^0-1"},   {u"x-", 2, u"x-0"},
      {u"-", 0, u"0-0"},       {u"--x", -2, u"0-0-x"},   {u"x--y", -1, u"x-0-y"},
      {u"*x", 0, u"0*x"},      {u"x(-y)", -6, u"x*0-y"}, {u"COS-1", 0, u"COS0-1"},
  };
  for (const Sound& term : kTerms) ExpectSound(term, naive::EnglishNumbers());
}

TEST(TermCases, BlanksAtTheOutside) {
  constexpr Sound kTerms[] = {
      {u"  (x+1)  ", 3, u"x+1"}, {u"( x+1 )", 3, u"x+1"},   {u" ( ( x ) ) ", 2, u"x"},
      {u"1+( x )", 3, u"1+x"},   {u"| x-y |", 1, u"|x-y|"}, {u"|x |+1 ", 3, u"|x|+1"},
      {u"COS( 0 )", 1, u"COS0"}, {u"((x))", 2, u"x"},
  };
  for (const Sound& term : kTerms) ExpectSound(term, naive::EnglishNumbers());
  constexpr Unsound kNone[] = {
      {u"x + 1", zepErrBadCall},        {u"x +1", zepErrBadCall},      {u"x+ 1", zepErrBadCall},
      {u"(x) +1", zepErrBadCall},       {u"( x + 1 )", zepErrBadCall}, {u"SIN x", zepErrBadCall},
      {u"x+( 1 2)", zepErrBadCall},     {u"\tx", zepErrBadPropValue},  {u"x\t", zepErrBadCall},
      {u"\u00a0x", zepErrBadPropValue},
  };
  for (const Unsound& term : kNone) {
    ExpectUnsound(term, naive::EnglishNumbers());
  }
}

TEST(TermCases, ValueDashesAreOneOperand) {
  constexpr Sound kTerms[] = {
      {u"1+|0-3|", 4, u"1+|0-3|"},
      {u"|x|*2", 4, u"|x|*2"},
      {u"|x|-|y|", -1, u"|x|-|y|"},
      {u"|(|x|-y)|", 1, u"||x|-y|"},
      {u"COS|0|", 1, u"COS|0|"},
      {u"|x-y|^2", 1, u"|x-y|^2"},
      {u"2*COS(0)^2+|y-1|", 4, u"2*COS0^2+|y-1|"},
      {u"(|x|)", 2, u"|x|"},
  };
  for (const Sound& term : kTerms) ExpectSound(term, naive::EnglishNumbers());
}

TEST(TermCases, OperandsInARowAreNoTerm) {
  constexpr std::u16string_view kTerms[] = {
      u"(x+1)(x-1)", u"(x+1)2",    u"(x)y",         u"2|x|",      u"|x|2",      u"1.2.3",
      u"1.5.5",      u"||x||",     u"|x||y|",       u"|x|y|z|",   u"|x-|y||",   u"|(x)(y)|",
      u"SIN(x)2",    u"SINCOSx",   u"SINSIN",       u"(x)SIN(y)", u"|x|SIN(y)", u"x)",
      u")",          u")x",        u"1)2",          u"SIN)",      u"SIN|x||y|", u"()()",
      u"(x)()",      u"COS(0)|x|", u"(x+1)(x-1)+2", u"1+(x)(y)",
  };
  for (const auto& term : kTerms) ExpectUnsound({term, zepErrExtractTerm}, naive::EnglishNumbers());
}

TEST(TermCases, WhichErrorComesFirst) {
  constexpr Unsound kTerms[] = {
      // The first piece that cannot be delimited, or a later one.
      {u"#", zepErrBadPropValue},
      {u"#+(", zepErrBadPropValue},
      {u"x#", zepErrBadCall},
      {u"+#", zepErrBadCall},
      {u"SIN#", zepErrBadCall},
      {u".", zepErrBadPropValue},
      {u"x+.", zepErrBadCall},
      {u"|x", zepErrBadPropValue},
      {u"x|", zepErrBadCall},
      {u"|x|y|", zepErrBadCall},
      {u"|(x|", zepErrBadPropValue},
      {u"|x)|", zepErrBadPropValue},
      {u"\u0663", zepErrBadPropValue},  // digits and letters of other scripts
      {u"1\uff12", zepErrBadCall},
      {u"s\u0131n", zepErrBadCall},
      {u"x+(1", zepErrBadCall},
      // Only in front, a bracket that is never closed has an error of its own.
      {u"(x+1", zepErrBadParam},
      {u"(", zepErrBadParam},
      {u"  ((x)  ", zepErrBadParam},
      {u"(|x)|", zepErrBadCall},
      {u"((x+1)#", zepErrBadParam},
      // Brackets inside start over.
      {u"1+(#)", zepErrBadPropValue},
      {u"1+(x#)", zepErrBadCall},
      {u"1+|#|", zepErrBadPropValue},
      // The outer level before what is inside, then from the left.
      {u"(#)+x#", zepErrBadCall},
      {u"(x)(y)+#", zepErrBadCall},
      {u"1+(2*((x)(y))+#)+z", zepErrBadCall},
      {u"1+(2*((x)(y))+3)+z", zepErrExtractTerm},
      {u"(#)+(x#)", zepErrBadPropValue},
      {u"(x#)+(#)", zepErrBadCall},
      {u"(x)(y)+(#)", zepErrExtractTerm},
      {u"(#)+(x)(y)", zepErrBadPropValue},
      {u"((x)(y))+(#)", zepErrExtractTerm},
      {u"(#)(x)", zepErrExtractTerm},
      {u"SIN(#)2", zepErrExtractTerm},
      {u"SINCOS(#)", zepErrExtractTerm},
      {u"SIN(#)", zepErrBadPropValue},
      {u"1*(x#)+(y)(#)", zepErrBadCall},
      {u"1+(x#)*(#)", zepErrBadCall},
  };
  for (const Unsound& term : kTerms) ExpectUnsound(term, naive::EnglishNumbers());
}

TEST(TermCases, NumbersAsTheUserWritesThem) {
  constexpr Sound kEnglish[] = {
      {u"1.5", 1.5, u"1.5"},     {u".5", 0.5, u"0.5"},   {u"5.", 5, u"5"},
      {u"1,234", 1234, u"1234"}, {u"1,5", 15, u"15"},    {u"1,2,3.4", 123.4, u"123.4"},
      {u"1,", 1, u"1"},          {u"007", 7, u"7"},      {u"1.50,0", 1.5, u"1.5"},
      {u"0.1", 0.1, u"0.1"},     {u"x1.5", 3, u"x*1.5"}, {u"1.5x", 3, u"1.5*x"},
  };
  for (const Sound& term : kEnglish) ExpectSound(term, naive::EnglishNumbers());
  constexpr Sound kGerman[] = {
      {u"1,5", 1.5, u"1,5"},     {u",5", 0.5, u"0,5"},          {u"5,", 5, u"5"},
      {u"1.234", 1234, u"1234"}, {u"1.2.3,4", 123.4, u"123,4"}, {u"2*0,5", 1, u"2*0,5"},
  };
  for (const Sound& term : kGerman) ExpectSound(term, naive::GermanNumbers());
  ExpectUnsound({u"1,2,3", zepErrExtractTerm}, naive::GermanNumbers());
  ExpectUnsound({u".5", zepErrBadPropValue}, naive::GermanNumbers());
  ExpectUnsound({u",5", zepErrBadPropValue}, naive::EnglishNumbers());
  ExpectUnsound({u"1..2", zepErrExtractTerm}, naive::EnglishNumbers());
  ExpectUnsound({u"1..", zepErrBadCall}, naive::EnglishNumbers());
}

TEST(TermCases, ANumberTooLargeForADouble) {
  ExpectUnsound({std::u16string(400, u'9'), zepErrExtractTerm}, naive::EnglishNumbers());
  ExpectSound({std::u16string(400, u'0'), 0, u"0"}, naive::EnglishNumbers());
  ExpectSound({u"0." + std::u16string(400, u'0') + u"1", 0, u"0"}, naive::EnglishNumbers());
}

}  // namespace
}  // namespace zepkit10

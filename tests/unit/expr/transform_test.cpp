#include "expr/transform.h"

#include <gtest/gtest.h>

#include <string>

#include "frame/errors.h"
#include "unit/expr/naive_numbers.h"
#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

using enum ZepErrors;

const NumberFormat& kNumbers = naive::EnglishNumbers();

template <class Action>
void ExpectError(ZepErrors error, Action action) {
  EXPECT_EQ(FailureOf(action),
            (Failure{static_cast<std::int32_t>(error), u"Zepkit10.Expression", {}}));
}

TEST(Transform, OperationToPriority) {
  constexpr std::int32_t kPriorities[] = {0, 1, 1, 2, 2, 3, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 5};
  for (std::int32_t operation = 0; operation < 17; ++operation) {
    EXPECT_EQ(OperationToPriority(operation), kPriorities[operation]) << operation;
  }
  for (const std::int32_t none : {-1, 17, INT32_MIN, INT32_MAX}) {
    ExpectError(zepErrBadParam, [=] { OperationToPriority(none); });
  }
}

TEST(Transform, OperationToText) {
  constexpr std::u16string_view kTexts[] = {u"|",   u"+",   u"-",   u"*",   u"/",   u"^",  u"SQR",
                                            u"EXP", u"LOG", u"SIN", u"COS", u"TAN", u"ATN"};
  for (std::int32_t operation = 0; operation < 13; ++operation) {
    EXPECT_EQ(OperationToText(operation), kTexts[operation]) << operation;
  }
  EXPECT_EQ(OperationToText(15), u")");
  EXPECT_EQ(OperationToText(16), u"(");
  for (const std::int32_t none : {13, 14, 17, -1, INT32_MIN, INT32_MAX}) {
    ExpectError(zepErrBadParam, [=] { OperationToText(none); });
  }
}

TEST(Transform, TextToItsFirstToken) {
  struct {
    std::u16string_view text, token;
    std::int32_t operation, priority;
  } constexpr kCases[] = {
      {u"|x|+1", u"|x|", 0, 0},
      {u"||", u"||", 0, 0},
      {u"|(x|y)|", u"|(x|y)|", 0, 0},
      {u"+1", u"+", 1, 1},
      {u"-", u"-", 2, 1},
      {u"*2", u"*", 3, 2},
      {u"/2", u"/", 4, 2},
      {u"^2", u"^", 5, 3},
      {u"SQRx", u"SQR", 6, 4},
      {u"exp", u"exp", 7, 4},
      {u"Log(2)", u"Log", 8, 4},
      {u"sinx", u"sin", 9, 4},
      {u"cOsx", u"cOs", 10, 4},
      {u"TANGENT", u"TAN", 11, 4},
      {u"atn", u"atn", 12, 4},
      {u"x+1", u"x", 13, 5},
      {u"SI", u"S", 13, 5},
      {u"Z", u"Z", 13, 5},
      {u"1.5x", u"1.5", 14, 5},
      {u"1.2.3", u"1.2", 14, 5},
      {u"12", u"12", 14, 5},
      {u")(", u")", 15, 5},
      {u"(x+(1))*2", u"(x+(1))", 16, 5},
      {u"(|)|", u"(|)", 16, 5},
  };
  for (const auto& [text, token, operation, priority] : kCases) {
    EXPECT_EQ(TextToToken(text, kNumbers), token);
    EXPECT_EQ(TextToOperation(text, kNumbers), operation) << operation;
    EXPECT_EQ(TextToPriority(text, kNumbers), priority) << operation;
  }
}

TEST(Transform, TextThatStartsWithNoToken) {
  struct {
    std::u16string_view text;
    ZepErrors error;
  } constexpr kCases[] = {
      {u"", zepErrBadParam},           {u" x", zepErrBadParam},
      {u"#", zepErrBadParam},          {u".", zepErrBadParam},
      {u",5", zepErrBadParam},         {u"\u00e4", zepErrBadParam},
      {u"(", zepErrBadParam},          {u"((x)", zepErrBadParam},
      {u"|", zepErrBadValueDashes},    {u"|x", zepErrBadValueDashes},
      {u"|(x)", zepErrBadValueDashes}, {u"|(x|", zepErrBadBrackets},
      {u"|(", zepErrBadBrackets},      {u"|)|", zepErrBadBrackets},
      {u"|x)", zepErrBadBrackets},     {u"|(x|)", zepErrBadValueDashes},
      {u"|)(", zepErrBadBrackets},     {u"|)(|", zepErrBadBrackets},
      {{u"+", 0}, zepErrBadParam},     {{u"x)", 0}, zepErrBadParam},
  };
  for (const auto& [text, error] : kCases) {
    const std::u16string_view copy = text;
    ExpectError(error, [=] { TextToToken(copy, kNumbers); });
    ExpectError(error, [=] { TextToOperation(copy, kNumbers); });
    ExpectError(error, [=] { TextToPriority(copy, kNumbers); });
  }
}

}  // namespace
}  // namespace zepkit10

#include "com/both_bindings.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Outcome;
using client::Value;

class TransformTest : public BothBindings {
 protected:
  Outcome Transform(const Value& source, int mode) const {
    return expression_.Call(L"Transform", {source, mode});
  }

  Object expression_ = Create(CLSID_Expression);
};

constexpr int kCharModes[] = {zepMTCharToOp, zepMTCharToPrio, zepMTCharToCChar};
constexpr int kOpModes[] = {zepMTOpToPrio, zepMTOpToChar};

struct Operation {
  int code;
  int priority;
  const wchar_t* text;  // null where an operation has none
};

constexpr Operation kOperations[] = {
    {zepMOAmount, 0, L"|"}, {zepMOAdd, 1, L"+"},       {zepMOSub, 1, L"-"},
    {zepMOMulti, 2, L"*"},  {zepMODivi, 2, L"/"},      {zepMORaise, 3, L"^"},
    {zepMOSqr, 4, L"SQR"},  {zepMOExp, 4, L"EXP"},     {zepMOLog, 4, L"LOG"},
    {zepMOSin, 4, L"SIN"},  {zepMOCos, 4, L"COS"},     {zepMOTan, 4, L"TAN"},
    {zepMOAtn, 4, L"ATN"},  {zepMOGetVar, 5, nullptr}, {zepMONumber, 5, nullptr},
    {zepMOParC, 5, L")"},   {zepMOParO, 5, L"("}};

TEST_P(TransformTest, OperationsHavePrioritiesAndTexts) {
  int code = 0;
  for (const Operation& operation : kOperations) {
    EXPECT_EQ(code++, operation.code);
    EXPECT_EQ(Transform(operation.code, zepMTOpToPrio), operation.priority);
    if (operation.text) {
      EXPECT_EQ(Transform(operation.code, zepMTOpToChar), operation.text);
    } else {
      EXPECT_ZEP_ERROR(Transform(operation.code, zepMTOpToChar), zepErrBadParam, L"Expression");
    }
  }
}

TEST_P(TransformTest, CodesThatAreNoOperationAreRefused) {
  for (const int code : {-1, 17, INT_MIN, INT_MAX}) {
    for (const int mode : kOpModes) {
      EXPECT_ZEP_ERROR(Transform(code, mode), zepErrBadParam, L"Expression");
    }
  }
}

struct Start {
  const wchar_t* text;
  int operation;
  int priority;
  const wchar_t* token;
};

constexpr Start kStarts[] = {{L"|x-1|+|y|", zepMOAmount, 0, L"|x-1|"},
                             {L"||", zepMOAmount, 0, L"||"},
                             {L"|(|x|)|y", zepMOAmount, 0, L"|(|x|)|"},
                             {L"+x", zepMOAdd, 1, L"+"},
                             {L"-", zepMOSub, 1, L"-"},
                             {L"*2", zepMOMulti, 2, L"*"},
                             {L"/(", zepMODivi, 2, L"/"},
                             {L"^^", zepMORaise, 3, L"^"},
                             {L"SQRx", zepMOSqr, 4, L"SQR"},
                             {L"EXP(x)", zepMOExp, 4, L"EXP"},
                             {L"LOG2", zepMOLog, 4, L"LOG"},
                             {L"SINx", zepMOSin, 4, L"SIN"},
                             {L"COS", zepMOCos, 4, L"COS"},
                             {L"TANGENT", zepMOTan, 4, L"TAN"},
                             {L"ATN(1", zepMOAtn, 4, L"ATN"},
                             {L"sin(x)", zepMOSin, 4, L"sin"},
                             {L"sQrx", zepMOSqr, 4, L"sQr"},
                             {L"si", zepMOGetVar, 5, L"s"},
                             {L"x", zepMOGetVar, 5, L"x"},
                             {L"Z9", zepMOGetVar, 5, L"Z"},
                             {L"12.5x", zepMONumber, 5, L"12.5"},
                             {L"7", zepMONumber, 5, L"7"},
                             {L"1,234+1", zepMONumber, 5, L"1,234"},
                             {L"(x+(1))*2", zepMOParO, 5, L"(x+(1))"},
                             {L"()", zepMOParO, 5, L"()"},
                             {L")x", zepMOParC, 5, L")"}};

TEST_P(TransformTest, TextsStartWithAToken) {
  for (const Start& start : kStarts) {
    EXPECT_EQ(Transform(start.text, zepMTCharToOp), start.operation) << start.operation;
    EXPECT_EQ(Transform(start.text, zepMTCharToPrio), start.priority) << start.operation;
    EXPECT_EQ(Transform(start.text, zepMTCharToCChar), start.token) << start.operation;
  }
}

TEST_P(TransformTest, ATokenIsDelimitedToBeReturned) {
  const std::pair<const wchar_t*, ZepErrors> faulty[] = {
      {L"", zepErrBadParam},           {L" x", zepErrBadParam},       {L"#", zepErrBadParam},
      {L"\xE4", zepErrBadParam},       {L".", zepErrBadParam},        {L"(x+1", zepErrBadParam},
      {L"((x)", zepErrBadParam},       {L"|x", zepErrBadValueDashes}, {L"|", zepErrBadValueDashes},
      {L"|(x)", zepErrBadValueDashes}, {L"|x)|", zepErrBadBrackets},  {L"|(x", zepErrBadBrackets},
      {L"|(x|", zepErrBadBrackets},    {L"|)(", zepErrBadBrackets},   {L"|)(|", zepErrBadBrackets}};
  for (const auto& [text, error] : faulty) {
    EXPECT_ZEP_ERROR(Transform(text, zepMTCharToCChar), error, L"Expression");
  }
}

TEST_P(TransformTest, TheModeTellsTheKindOfSource) {
  VARIANT byte;
  byte.vt = VT_UI1;
  byte.bVal = 1;
  for (const int mode : kOpModes) {
    for (const Value& source : {Value(short{1}), Value(1.0), Value(L"1"), Value(L"+"), Value(true),
                                Value(), Value::Null(), Value(byte), Value(expression_)}) {
      EXPECT_ZEP_ERROR(Transform(source, mode), zepErrBadParam, L"Expression");
    }
  }
  for (const int mode : kCharModes) {
    for (const Value& source : {Value(1), Value(short{1}), Value(1.0), Value(true), Value(),
                                Value::Null(), Value(expression_)}) {
      EXPECT_ZEP_ERROR(Transform(source, mode), zepErrBadParam, L"Expression");
    }
  }
}

TEST_P(TransformTest, UnknownModesAreRefused) {
  for (const int mode : {5, 9, -1, INT_MIN, INT_MAX}) {
    EXPECT_ZEP_ERROR(Transform(1, mode), zepErrBadParam, L"Expression");
    EXPECT_ZEP_ERROR(Transform(L"+", mode), zepErrBadParam, L"Expression");
  }
}

TEST_P(TransformTest, ReferencesAreFollowed) {
  Value code = 5, text = L"SINx";
  LONG number = 16;
  VARIANT reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &number;
  EXPECT_EQ(Transform(code.Reference(), zepMTOpToPrio), 3);
  EXPECT_EQ(Transform(text.Reference(), zepMTCharToCChar), L"SIN");
  EXPECT_EQ(Transform(Value(reference), zepMTOpToChar), L"(");
  reference.vt = VT_BYREF | VT_BSTR;
  reference.pbstrVal = &text.raw().bstrVal;
  EXPECT_EQ(Transform(Value(reference), zepMTCharToOp), zepMOSin);
  SHORT small = 5;
  reference.vt = VT_BYREF | VT_I2;
  reference.piVal = &small;
  EXPECT_ZEP_ERROR(Transform(Value(reference), zepMTOpToPrio), zepErrBadParam, L"Expression");
}

TEST_P(TransformTest, ANullStringIsEmpty) {
  VARIANT null_string{};
  null_string.vt = VT_BSTR;
  for (const int mode : kCharModes) {
    EXPECT_ZEP_ERROR(Transform(Value(null_string), mode), zepErrBadParam, L"Expression");
  }
}

TEST_P(TransformTest, LeavesTheTermAlone) {
  EXPECT_OK(expression_.Let(L"EString", {L"3*4"}));
  EXPECT_EQ(Transform(L"7+1", zepMTCharToCChar), L"7");
  EXPECT_FALSE(Transform(L"(", zepMTCharToCChar).ok());
  EXPECT_EQ(expression_.Get(L"Value"), 12.0);
}

// Nothing but the class itself looks at what compiled code hands over.
TEST_P(TransformTest, AValueThatLeadsNowhereIsNone) {
  Microsoft::WRL::ComPtr<_Expression> direct;
  ASSERT_EQ(S_OK, expression_.get()->QueryInterface(IID_PPV_ARGS(&direct)));
  VARIANT loop;
  loop.vt = VT_BYREF | VT_VARIANT;
  loop.pvarVal = &loop;
  for (const ZepMathTransMode mode : {zepMTOpToPrio, zepMTOpToChar, zepMTCharToOp}) {
    Value result(5);
    EXPECT_EQ(static_cast<HRESULT>(zepErrBadParam), direct->Transform(loop, mode, &result.raw()));
    EXPECT_EQ(Value(), result);
  }
  SetErrorInfo(0, nullptr);
}

RUN_IN_BOTH_BINDINGS(TransformTest);

}  // namespace

// Arguments by value: how a client may pass them, and what late binding makes of them.
#include <limits>

#include "com/probe/probe_test.h"

namespace {

using client::Value;
using probe::ByReference;
using probe::Ended;

class BinderTest : public probe::ProbeTest {};

struct Echo {
  const wchar_t* member;
  VARTYPE type;
};

constexpr Echo kEchoes[] = {
    {L"EchoLong", VT_I4},   {L"EchoShort", VT_I2},  {L"EchoByte", VT_UI1},
    {L"EchoSingle", VT_R4}, {L"EchoDouble", VT_R8}, {L"EchoDate", VT_DATE},
    {L"EchoFlag", VT_BOOL}, {L"EchoText", VT_BSTR}, {L"EchoKind", VT_I4},
};

std::string Narrow(const wchar_t* text) { return {text, text + wcslen(text)}; }

Value OfType(VARTYPE type, double number) {
  Value value(number);
  EXPECT_EQ(S_OK, VariantChangeType(&value.raw(), &value.raw(), VARIANT_ALPHABOOL, type));
  return value;
}

/// What a client has in its variables: numbers, texts that read as numbers or do not, limits.
std::vector<Value> Catalogue() {
  std::vector<Value> values{L"7",          L"-1",
                            L"3.5",        L"1e3",
                            L"",           L"text",
                            L"True",       L"#FALSE#",
                            L"2001-02-03", L"99999",
                            L" 12 ",       L"&HFF",
                            L"1e400",      std::wstring_view(L"7\0", 2)};
  for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT,
                             VT_UINT, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL, VT_DECIMAL}) {
    for (const double number : {0.0, 1.0, 100.0}) values.push_back(OfType(type, number));
  }
  for (const double number :
       {-1.0, 0.5, 1.5, 2.5, 255.0, 256.0, 32767.5, 65536.0, 2147483647.0, 2147483648.0,
        -2147483649.0, 1e300, std::numeric_limits<double>::infinity()}) {
    values.push_back(number);
  }
  values.push_back(Value());
  values.push_back(Value::Null());
  VARIANT error;
  error.vt = VT_ERROR;
  error.scode = E_FAIL;
  values.push_back(Value(error));
  values.push_back(Value::Nothing());
  return values;
}

TEST_F(BinderTest, AcceptsEveryEncodingOfAnArgument) {
  for (const Echo& echo : kEchoes) {
    SCOPED_TRACE(Narrow(echo.member));
    Value given = OfType(echo.type, 1);
    const VARIANT typed = ByReference(echo.type, &given.raw().byref);
    Value reference(typed), inner(ByReference(given));
    for (const VARIANT& argument :
         {given.raw(), typed, ByReference(given), ByReference(reference), ByReference(inner)}) {
      const Ended ended = Call(echo.member, {argument});
      EXPECT_EQ(S_OK, ended.result);
      EXPECT_EQ(given, ended.value);
    }
  }
}

TEST_F(BinderTest, ConvertsAsThePlatformDoes) {
  auto catalogue = Catalogue();
  for (const Echo& echo : kEchoes) {
    for (Value& given : catalogue) {
      Value expected;
      const HRESULT hr =
          VariantChangeTypeEx(&expected.raw(), &given.raw(), LOCALE_USER_DEFAULT, 0, echo.type);
      for (const VARIANT& argument : {given.raw(), ByReference(given)}) {
        const Ended ended = Call(echo.member, {argument});
        EXPECT_EQ(hr, ended.result) << Narrow(echo.member) << " of " << given;
        if (FAILED(hr)) {
          EXPECT_EQ(0u, ended.position) << Narrow(echo.member) << " of " << given;
          EXPECT_EQ(Value(), ended.value);
        } else {
          EXPECT_EQ(expected, ended.value) << Narrow(echo.member) << " of " << given;
        }
      }
    }
  }
}

TEST_F(BinderTest, UsesTheLocaleOfTheCall) {
  constexpr LCID kGerman = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  Value text(L"1,5"), result;
  DISPPARAMS parameters{&text.raw(), nullptr, 1, 0};
  EXPECT_EQ(S_OK, object()->Invoke(5, IID_NULL, kGerman, DISPATCH_METHOD, &parameters,
                                   &result.raw(), nullptr, nullptr));
  EXPECT_EQ(Value(1.5), result);
}

TEST_F(BinderTest, KeepsTextAsItIs) {
  Value odd;
  odd.raw().vt = VT_BSTR;
  odd.raw().bstrVal = SysAllocStringByteLen("abc", 3);
  EXPECT_EQ(Value(L"\x6261"), Call(L"EchoText", {odd.raw()}).value);
  const Value embedded(std::wstring_view(L"a\0b", 3));
  EXPECT_EQ(embedded, Call(L"EchoText", {embedded.raw()}).value);
  Value null;
  null.raw().vt = VT_BSTR;
  EXPECT_EQ(Value(L""), Call(L"EchoText", {null.raw()}).value);
}

TEST_F(BinderTest, VariantsComeWithoutTheirReferences) {
  auto catalogue = Catalogue();
  for (Value& given : catalogue) {
    Value inner(ByReference(given));
    for (const VARIANT& argument : {given.raw(), ByReference(given), ByReference(inner)}) {
      const Ended ended = Call(L"EchoValue", {argument});
      EXPECT_EQ(S_OK, ended.result) << given;
      EXPECT_EQ(given, ended.value);
    }
  }
  int number = 5;
  EXPECT_EQ(Value(5), Call(L"EchoValue", {ByReference(VT_I4, &number)}).value);
  probe::ClientArray array({1, L"two"});
  SAFEARRAY* variable = array.get();
  for (const VARIANT& argument : {array.Raw(), ByReference(VT_ARRAY | VT_VARIANT, &variable)}) {
    EXPECT_EQ((std::vector<Value>{1, L"two"}),
              probe::Elements(Call(L"EchoValue", {argument}).value.raw()));
  }
}

TEST_F(BinderTest, ObjectsAreAskedForTheWantedInterface) {
  struct {
    const wchar_t* member;
    VARTYPE result;
  } const members[] = {
      {L"EchoProbe", VT_DISPATCH}, {L"EchoDispatch", VT_DISPATCH}, {L"EchoUnknown", VT_UNKNOWN}};
  for (const auto& [member, type] : members) {
    SCOPED_TRACE(Narrow(member));
    Value dispatch(object()), unknown(object()), nothing = Value::Nothing(), null = Value::Null();
    unknown.raw().vt = VT_UNKNOWN;
    IDispatch* variable = object();
    for (const VARIANT& argument :
         {dispatch.raw(), unknown.raw(), ByReference(dispatch), ByReference(unknown),
          ByReference(VT_DISPATCH, &variable), ByReference(VT_UNKNOWN, &variable)}) {
      const Ended ended = Call(member, {argument});
      EXPECT_EQ(S_OK, ended.result);
      EXPECT_EQ(type, ended.value.type());
      EXPECT_EQ(static_cast<IUnknown*>(object()), ended.value.raw().punkVal);
    }
    for (const VARIANT& argument :
         {nothing.raw(), null.raw(), ByReference(nothing), ByReference(null)}) {
      const Ended ended = Call(member, {argument});
      EXPECT_EQ(S_OK, ended.result);
      EXPECT_EQ(type, ended.value.type());
      EXPECT_EQ(nullptr, ended.value.raw().punkVal);
    }
    for (const Value& other : {Value(), Value(5), Value(L"")}) {
      EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(member, {other.raw()}).result);
    }
  }
  const Value foreign(Call(L"List").value);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"EchoProbe", {foreign.raw()}).result);
  EXPECT_EQ(S_OK, Call(L"EchoDispatch", {foreign.raw()}).result);
}

TEST_F(BinderTest, ArraysAreConvertedElementByElement) {
  probe::ClientArray texts({L"7", 8.0, true}, 5);
  Ended ended = Call(L"EchoLongs", {texts.Raw()});
  EXPECT_EQ(S_OK, ended.result);
  EXPECT_EQ(VT_ARRAY | VT_I4, ended.value.type());
  EXPECT_EQ((std::vector<Value>{7, 8, -1}), probe::Elements(ended.value.raw()));
  EXPECT_EQ(5, ended.value.raw().parray->rgsabound[0].lLbound);

  probe::ClientArray words({L"7", L"word"});
  ended = Call(L"EchoLongs", {words.Raw()});
  EXPECT_EQ(DISP_E_TYPEMISMATCH, ended.result);
  EXPECT_EQ(0u, ended.position);

  const Value empty, number(5);
  ended = Call(L"EchoLongs", {empty.raw()});
  EXPECT_EQ(S_OK, ended.result);
  EXPECT_EQ(nullptr, ended.value.raw().parray);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"EchoLongs", {number.raw()}).result);
}

// An array that is described but has no memory for its elements.
TEST_F(BinderTest, ArraysWithoutElementsInMemoryAreRefused) {
  for (const VARTYPE type : {VT_VARIANT, VT_I2}) {
    SAFEARRAY* hollow = nullptr;
    ASSERT_EQ(S_OK, SafeArrayAllocDescriptorEx(type, 1, &hollow));
    hollow->cbElements = type == VT_I2 ? 2 : sizeof(VARIANT);
    hollow->rgsabound[0] = {3, 0};
    VARIANT argument;
    argument.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    argument.parray = hollow;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"EchoLongs", {argument}).result);
    SafeArrayDestroyDescriptor(hollow);
  }
}

TEST_F(BinderTest, ArraysKeepTheirDimensions) {
  const Ended ended = Call(L"EchoLongs", {Call(L"Grid").value.raw()});
  ASSERT_EQ(S_OK, ended.result);
  SAFEARRAY* grid = ended.value.raw().parray;
  ASSERT_EQ(2u, SafeArrayGetDim(grid));
  LONG indexes[] = {2, 5}, lower[2] = {}, upper[2] = {}, element = 0;
  for (UINT i = 0; i < 2; ++i) {
    SafeArrayGetLBound(grid, i + 1, &lower[i]);
    SafeArrayGetUBound(grid, i + 1, &upper[i]);
  }
  EXPECT_EQ(0, lower[0]);
  EXPECT_EQ(2, upper[0]);
  EXPECT_EQ(5, lower[1]);
  EXPECT_EQ(6, upper[1]);
  EXPECT_EQ(S_OK, SafeArrayGetElement(grid, indexes, &element));
  EXPECT_EQ(25, element);
}

TEST_F(BinderTest, AVariantIsNoTypeOfAValue) {
  VARIANT illegal{};
  illegal.vt = VT_VARIANT;
  EXPECT_EQ(DISP_E_BADVARTYPE, Call(L"EchoValue", {illegal}).result);
  EXPECT_EQ(DISP_E_BADVARTYPE, Call(L"EchoValue", {ByReference(illegal)}).result);
}

TEST_F(BinderTest, TooManyAndTooFewArgumentsAreRefused) {
  const Value one(1), two(2), three(3);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Nothing", {one.raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"EchoLong", {one.raw(), two.raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Divide", {one.raw(), two.raw(), three.raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"EchoLong").result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Divide", {one.raw()}).result);
  const Ended left_out = Call(L"Divide", {Value::Missing().raw(), two.raw()});
  EXPECT_EQ(DISP_E_PARAMNOTOPTIONAL, left_out.result);
  EXPECT_EQ(1u, left_out.position);
}

TEST_F(BinderTest, TellsTheArgumentToBlame) {
  const Value one(1), word(L"word"), text(L"t");
  EXPECT_EQ(1u, Call(L"Divide", {word.raw(), one.raw()}).position);
  EXPECT_EQ(0u, Call(L"Divide", {one.raw(), word.raw()}).position);
  EXPECT_EQ(1u, Call(L"Divide", {word.raw(), word.raw()}).position)
      << "the first parameter is looked at first";
  EXPECT_EQ(0u, Call(L"Divide", {one.raw(), word.raw()}, {L"Numerator", L"Denominator"}).position);
  EXPECT_EQ(3u, Call(L"Defaults", {word.raw(), text.raw(), one.raw(), one.raw()}).position);
  VARIANT bad;
  bad.vt = 15;  // no type
  EXPECT_EQ(1u, Call(L"Count", {one.raw(), bad, one.raw()}).position);
}

TEST_F(BinderTest, LeftOutArgumentsGetTheirDefaults) {
  const Value two(2), word(L"word"), no(false), missing = Value::Missing();
  Value variable = missing;
  EXPECT_EQ(Value(L"5|a \"text\", (5)|true|2|1|missing"), Call(L"Defaults").value);
  EXPECT_EQ(Value(L"2|word|false|2|1|missing"),
            Call(L"Defaults", {two.raw(), word.raw(), no.raw()}).value);
  EXPECT_EQ(Value(L"2|a \"text\", (5)|false|2|1|word"),
            Call(L"Defaults", {two.raw(), missing.raw(), no.raw(), missing.raw(),
                               ByReference(variable), word.raw()})
                .value);
  EXPECT_EQ(
      Value(L"5|a \"text\", (5)|true|0|word|2"),
      Call(L"Defaults", {two.raw(), word.raw(), no.raw()}, {L"anything", L"STEP", L"Kind"}).value);
}

// As clients write literals: an Integer where it fits, else a Long.
TEST_F(BinderTest, DefaultsOfVariantsHaveTheTypeOfALiteral) {
  EXPECT_EQ(Value(100000), Call(L"LongStep").value);
  EXPECT_EQ(Value(short{5}), Call(L"LongStep", {Value(short{5}).raw()}).value);
}

TEST_F(BinderTest, NamedArgumentsComeInAnyOrder) {
  const Value one(1), four(4);
  EXPECT_EQ(Value(0.25),
            Call(L"Divide", {one.raw(), four.raw()}, {L"Numerator", L"Denominator"}).value);
  EXPECT_EQ(Value(4.0),
            Call(L"Divide", {one.raw(), four.raw()}, {L"denominator", L"NUMERATOR"}).value);
  EXPECT_EQ(Value(0.25), Call(L"Divide", {one.raw(), four.raw()}, {L"Denominator"}).value);
}

TEST_F(BinderTest, WrongNamesAreRefused) {
  const Value one(1), four(4);
  EXPECT_EQ(DISP_E_UNKNOWNNAME,
            Call(L"Divide", {one.raw(), four.raw()}, {L"Numerator", L"Divisor"}).result);
  Ended ended = Call(L"Divide", {one.raw(), four.raw()}, {L"Numerator"});
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, ended.result) << "given twice";
  EXPECT_EQ(0u, ended.position);
  VARIANT arguments[] = {one.raw(), four.raw()};
  for (const DISPID id : {-1, 2, 1000, -2147483647 - 1, DISPID_PROPERTYPUT}) {
    DISPID named[] = {id, 0};
    DISPPARAMS parameters{arguments, named, 2, 2};
    ended = probe::InvokeId(object(), 53, DISPATCH_METHOD, &parameters);
    EXPECT_EQ(DISP_E_PARAMNOTFOUND, ended.result) << id;
    EXPECT_EQ(0u, ended.position);
  }
}

TEST_F(BinderTest, ParameterArraysTakeTheRestAsItCame) {
  const Value text(L"filled");
  Value variable(1), other(L"other");
  EXPECT_EQ(Value(0), Call(L"Count").value);
  EXPECT_EQ(Value(3), Call(L"Count", {text.raw(), variable.raw(), Value::Missing().raw()}).value);
  EXPECT_EQ(S_OK, Call(L"Fill", {text.raw()}).result);
  EXPECT_EQ(
      S_OK,
      Call(L"Fill", {text.raw(), ByReference(variable), text.raw(), ByReference(other)}).result);
  EXPECT_EQ(text, variable);
  EXPECT_EQ(text, other);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Fill").result);
  EXPECT_EQ(DISP_E_NONAMEDARGS, Call(L"Fill", {text.raw()}, {L"Text"}).result);
}

}  // namespace

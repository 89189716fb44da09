// Arguments by reference: what a member changes comes back to where the client passed it from.
#include "com/probe/probe_test.h"

namespace {

using client::Value;
using probe::ByReference;
using probe::ClientArray;
using probe::Elements;
using probe::Ended;

class BinderReferenceTest : public probe::ProbeTest {};

struct Change {
  const wchar_t* member;
  VARTYPE type;
  double before;
  double after;
};

constexpr Change kChanges[] = {
    {L"ChangeLong", VT_I4, 7, 8},    {L"ChangeShort", VT_I2, 7, 8},  {L"ChangeByte", VT_UI1, 7, 8},
    {L"ChangeSingle", VT_R4, 7, 8},  {L"ChangeDouble", VT_R8, 7, 8}, {L"ChangeDate", VT_DATE, 7, 8},
    {L"ChangeFlag", VT_BOOL, 0, -1}, {L"ChangeKind", VT_I4, 1, 2},
};

std::string Narrow(const wchar_t* text) { return {text, text + wcslen(text)}; }

Value OfType(VARTYPE type, double number) {
  Value value(number);
  EXPECT_EQ(S_OK, VariantChangeType(&value.raw(), &value.raw(), VARIANT_ALPHABOOL, type));
  return value;
}

/// The value before a change as a value of another type.
Value Before(const Change& change, VARTYPE type) {
  Value value = OfType(change.type, change.before);
  EXPECT_EQ(S_OK, VariantChangeType(&value.raw(), &value.raw(), 0, type));
  return value;
}

TEST_F(BinderReferenceTest, VariablesOfTheSameTypeAreChangedInPlace) {
  for (const Change& change : kChanges) {
    SCOPED_TRACE(Narrow(change.member));
    const Value before = OfType(change.type, change.before),
                after = OfType(change.type, change.after);
    Value variable = before;
    const VARIANT typed = ByReference(change.type, &variable.raw().byref);
    Value reference(typed), inner(ByReference(variable));
    for (const VARIANT& argument :
         {typed, ByReference(variable), ByReference(reference), ByReference(inner)}) {
      variable = before;
      EXPECT_EQ(S_OK, Call(change.member, {argument}).result);
      EXPECT_EQ(after, variable);
    }
  }
}

TEST_F(BinderReferenceTest, ValuesStayAsTheyAre) {
  for (const Change& change : kChanges) {
    SCOPED_TRACE(Narrow(change.member));
    for (const VARTYPE type :
         {change.type, static_cast<VARTYPE>(VT_BSTR), static_cast<VARTYPE>(VT_R8)}) {
      const Value before = Before(change, type);
      Value argument = before;
      EXPECT_EQ(S_OK, Call(change.member, {argument.raw()}).result);
      EXPECT_EQ(before, argument);
    }
  }
}

// A script's variables are Variants of whatever type: they take the member's.
TEST_F(BinderReferenceTest, VariantsOfAnotherTypeAreConvertedInAndGetTheNewValue) {
  for (const Change& change : kChanges) {
    SCOPED_TRACE(Narrow(change.member));
    const Value after = OfType(change.type, change.after);
    for (const VARTYPE type : {VT_BSTR, VT_R8, VT_I2, VT_I4, VT_R4, VT_DECIMAL, VT_CY}) {
      Value variable = Before(change, static_cast<VARTYPE>(type)), inner(ByReference(variable));
      EXPECT_EQ(S_OK, Call(change.member, {ByReference(inner)}).result);
      EXPECT_EQ(after, variable);
    }
  }
}

TEST_F(BinderReferenceTest, VariablesOfAnotherTypeKeepIt) {
  for (const Change& change : kChanges) {
    SCOPED_TRACE(Narrow(change.member));
    for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT,
                               VT_UINT, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR, VT_BOOL}) {
      Value variable = Before(change, static_cast<VARTYPE>(type)), expected = variable;
      // What the member's own type makes of it, changed and brought back; its overflow is a
      // failure.
      VariantChangeType(&expected.raw(), &expected.raw(), 0, change.type);
      Value direct = expected;
      ASSERT_EQ(S_OK, Call(change.member, {ByReference(direct)}).result);
      const HRESULT hr = VariantChangeTypeEx(&expected.raw(), &direct.raw(), LOCALE_USER_DEFAULT, 0,
                                             static_cast<VARTYPE>(type));
      const Ended ended =
          Call(change.member, {ByReference(static_cast<VARTYPE>(type), &variable.raw().byref)});
      EXPECT_EQ(hr, ended.result) << type;
      EXPECT_EQ(type, variable.type());
      EXPECT_TRUE(FAILED(hr) || expected == variable) << type << ": " << variable;
    }
  }
}

TEST_F(BinderReferenceTest, DecimalVariablesTakeTheNewValue) {
  Value decimal = OfType(VT_DECIMAL, 41);
  DECIMAL variable = decimal.raw().decVal;
  EXPECT_EQ(S_OK, Call(L"ChangeLong", {ByReference(VT_DECIMAL, &variable)}).result);
  decimal.raw().decVal = variable;
  decimal.raw().vt = VT_DECIMAL;
  EXPECT_EQ(OfType(VT_DECIMAL, 42), decimal);
  EXPECT_EQ(0, variable.wReserved);
}

TEST_F(BinderReferenceTest, TextsComeBack) {
  BSTR text = SysAllocStringLen(L"a\0b", 3);
  EXPECT_EQ(S_OK, Call(L"ChangeText", {ByReference(VT_BSTR, &text)}).result);
  EXPECT_EQ(std::wstring_view(L"a\0b!", 4), std::wstring_view(text, SysStringLen(text)));
  SysFreeString(text);
  text = nullptr;
  EXPECT_EQ(S_OK, Call(L"ChangeText", {ByReference(VT_BSTR, &text)}).result);
  EXPECT_STREQ(L"!", text);
  SysFreeString(text);

  Value variable(L"text"), number(5), empty;
  EXPECT_EQ(S_OK, Call(L"ChangeText", {ByReference(variable)}).result);
  EXPECT_EQ(S_OK, Call(L"ChangeText", {ByReference(number)}).result);
  EXPECT_EQ(S_OK, Call(L"ChangeText", {ByReference(empty)}).result);
  EXPECT_EQ(Value(L"text!"), variable);
  EXPECT_EQ(Value(L"5!"), number);
  EXPECT_EQ(Value(L"!"), empty);
  EXPECT_EQ(S_OK, Call(L"ChangeText", {number.raw()}).result);
  EXPECT_EQ(Value(L"5!"), number);
}

TEST_F(BinderReferenceTest, ValuesThatDoNotConvertAreRefusedAndKept) {
  Value word(L"word"), large(1e300), null = Value::Null();
  Ended ended = Call(L"ChangeLong", {ByReference(word)});
  EXPECT_EQ(DISP_E_TYPEMISMATCH, ended.result);
  EXPECT_EQ(0u, ended.position);
  EXPECT_EQ(DISP_E_OVERFLOW, Call(L"ChangeLong", {ByReference(large)}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"ChangeLong", {ByReference(null)}).result);
  EXPECT_EQ(Value(L"word"), word);
  EXPECT_EQ(Value(1e300), large);
}

TEST_F(BinderReferenceTest, AResultThatDoesNotFitBackIsAFailureWithoutAResult) {
  ClientArray texts({L"one"});
  SAFEARRAY* numbers = SafeArrayCreateVector(VT_I4, 0, 1);
  const Value word(L"word");
  const Ended ended = Call(L"AppendText", {ByReference(VT_ARRAY | VT_I4, &numbers), word.raw()});
  EXPECT_EQ(DISP_E_TYPEMISMATCH, ended.result);
  EXPECT_EQ(1u, ended.position);
  EXPECT_EQ(Value(), ended.value);
  EXPECT_EQ(1u, numbers->rgsabound[0].cElements);
  SafeArrayDestroy(numbers);
}

TEST_F(BinderReferenceTest, MembersThatFailWriteNothingBack) {
  Value number(5);
  EXPECT_EQ(DISP_E_EXCEPTION, Call(L"FailAfterChange", {ByReference(number)}).result);
  EXPECT_EQ(Value(5), number);
}

TEST_F(BinderReferenceTest, WhatIsOnlyReadIsNotWrittenBack) {
  Value text(L"42"), array = ClientArray({1, 2, L"3"}).Take();
  EXPECT_EQ(Value(42), Call(L"ReadLong", {ByReference(text)}).value);
  EXPECT_EQ(Value(L"42"), text);
  EXPECT_EQ(Value(6), Call(L"ReadBytes", {ByReference(array)}).value);
  EXPECT_EQ((std::vector<Value>{1, 2, L"3"}), Elements(array.raw()));
  SafeArrayLock(array.raw().parray);
  EXPECT_EQ(Value(6), Call(L"ReadBytes", {ByReference(array)}).value);
  SafeArrayUnlock(array.raw().parray);
}

TEST_F(BinderReferenceTest, VariantsAreHandedOnAsTheyAre) {
  const Value changed(L"changed");
  Value text(L"text"), number(5), inner(ByReference(number)), array = ClientArray({1}).Take();
  for (Value* variable : {&text, &array}) {
    EXPECT_EQ(S_OK, Call(L"ChangeValue", {ByReference(*variable)}).result);
    EXPECT_EQ(changed, *variable);
  }
  EXPECT_EQ(S_OK, Call(L"ChangeValue", {ByReference(inner)}).result);
  EXPECT_EQ(changed, number);
  EXPECT_EQ(S_OK, Call(L"ChangeValue", {changed.raw()}).result);
  LONG typed = 5;
  EXPECT_EQ(S_OK, Call(L"ChangeValue", {ByReference(VT_I4, &typed)}).result);
  EXPECT_EQ(5, typed);
}

TEST_F(BinderReferenceTest, ObjectsComeBack) {
  const auto other = zepkit10::Make<zepkit10::Probe>();
  for (const wchar_t* member : {L"ChangeProbe", L"ChangeDispatch", L"ChangeUnknown"}) {
    SCOPED_TRACE(Narrow(member));
    Value variable(static_cast<IDispatch*>(other->Abi())), nothing = Value::Nothing();
    for (Value* each : {&variable, &nothing}) {
      EXPECT_EQ(S_OK, Call(member, {ByReference(*each)}).result);
      EXPECT_EQ(static_cast<IUnknown*>(object()), each->raw().punkVal);
      const bool unknown = std::wstring_view(member) == L"ChangeUnknown";
      EXPECT_EQ(unknown ? VT_UNKNOWN : VT_DISPATCH, each->type());
    }
    for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN}) {
      IDispatch* typed = nullptr;
      EXPECT_EQ(S_OK, Call(member, {ByReference(static_cast<VARTYPE>(type), &typed)}).result);
      EXPECT_EQ(object(), typed);
      if (typed) typed->Release();
    }
    EXPECT_EQ(S_OK, Call(member, {Value(object()).raw()}).result);
  }
}

// The member's slot takes a _Probe**: a foreign object in a variable must not get there.
TEST_F(BinderReferenceTest, ForeignObjectsAreRefused) {
  Value foreign = Call(L"List").value;
  const Value before = foreign;
  IDispatch* typed = foreign.raw().pdispVal;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"ChangeProbe", {ByReference(foreign)}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"ChangeProbe", {ByReference(VT_DISPATCH, &typed)}).result);
  EXPECT_EQ(before, foreign);
}

TEST_F(BinderReferenceTest, LeftOutReferencesAreMissing) {
  const Value text(L"text");
  Value where, found(false), marker = Value::Missing();
  EXPECT_EQ(Value(0), Call(L"Find", {text.raw()}).value);
  EXPECT_EQ(Value(0), Call(L"Find", {text.raw(), ByReference(marker), ByReference(found)}).value);
  EXPECT_EQ(Value(false), found);
  EXPECT_EQ(Value(1), Call(L"Find", {text.raw(), ByReference(where)}).value);
  EXPECT_EQ(Value(1), Call(L"Find", {text.raw(), ByReference(where), ByReference(found)}).value);
  EXPECT_EQ(text, where);
  EXPECT_EQ(Value(true), found);
  Value number(0);
  EXPECT_EQ(Value(1), Call(L"Find", {text.raw(), ByReference(where), ByReference(number)}).value);
  EXPECT_EQ(Value(true), number);
}

TEST_F(BinderReferenceTest, ReferencesToNothingOrToThemselvesAreRefused) {
  const Value added(1);
  for (const wchar_t* member : {L"ChangeLong", L"ChangeText", L"ChangeValue", L"ChangeProbe",
                                L"EchoLong", L"EchoValue", L"EchoDispatch"}) {
    SCOPED_TRACE(Narrow(member));
    VARIANT self, first, second;
    self = ByReference(self);
    first = ByReference(second);
    second = ByReference(first);
    Value nowhere(ByReference(VT_VARIANT, nullptr)), typed(ByReference(VT_I4, nullptr));
    for (const VARIANT& argument :
         {self, first, nowhere.raw(), typed.raw(), ByReference(VT_BSTR, nullptr),
          ByReference(VT_ARRAY | VT_VARIANT, nullptr), ByReference(nowhere), ByReference(typed)}) {
      const Ended ended = Call(member, {argument});
      EXPECT_EQ(DISP_E_TYPEMISMATCH, ended.result);
      EXPECT_EQ(0u, ended.position);
    }
  }
}

// ---- Arrays
// -----------------------------------------------------------------------------------------

TEST_F(BinderReferenceTest, TypedArraysAreChangedInPlace) {
  SAFEARRAY* texts = nullptr;
  const Value one(L"one"), two(L"two");
  const VARIANT typed = ByReference(VT_ARRAY | VT_BSTR, &texts);
  EXPECT_EQ(Value(1), Call(L"AppendText", {typed, one.raw()}).value);
  EXPECT_EQ(Value(2), Call(L"AppendText", {typed, two.raw()}).value);
  EXPECT_EQ((std::vector<Value>{one, two}), Elements(typed));
  Value variable;
  variable.raw().vt = VT_ARRAY | VT_BSTR;
  variable.raw().parray = texts;
  EXPECT_EQ(Value(3), Call(L"AppendText", {ByReference(variable), one.raw()}).value);
  EXPECT_EQ(VT_ARRAY | VT_BSTR, variable.type());
  EXPECT_EQ((std::vector<Value>{one, two, one}), Elements(variable.raw()));
}

TEST_F(BinderReferenceTest, APlainVariableReceivesAnArrayOfVariants) {
  Value texts, bytes, values;
  const Value one(L"one"), seven(7);
  EXPECT_EQ(Value(1), Call(L"AppendText", {ByReference(texts), one.raw()}).value);
  EXPECT_EQ(S_OK, Call(L"AppendByte", {ByReference(bytes), seven.raw()}).result);
  EXPECT_EQ(S_OK, Call(L"AppendValue", {ByReference(values), seven.raw()}).result);
  for (const Value* each : {&texts, &bytes, &values})
    EXPECT_EQ(VT_ARRAY | VT_VARIANT, each->type());
  EXPECT_EQ(std::vector<Value>{one}, Elements(texts.raw()));
  VARTYPE type = VT_EMPTY;
  EXPECT_EQ(S_OK, SafeArrayGetVartype(bytes.raw().parray, &type));
  EXPECT_EQ(VT_VARIANT, type);
  EXPECT_EQ(VT_UI1, Elements(bytes.raw())[0].type());
  EXPECT_EQ(std::vector<Value>{seven}, Elements(values.raw()));
}

TEST_F(BinderReferenceTest, AScriptsArrayIsConvertedInAndBack) {
  Value texts = ClientArray({L"one", 2}, -3).Take(), bytes = ClientArray({1, L"2"}).Take();
  const Value three(3);
  EXPECT_EQ(Value(3), Call(L"AppendText", {ByReference(texts), three.raw()}).value);
  EXPECT_EQ(VT_ARRAY | VT_VARIANT, texts.type());
  EXPECT_EQ((std::vector<Value>{L"one", L"2", L"3"}), Elements(texts.raw()));
  EXPECT_EQ(-3, texts.raw().parray->rgsabound[0].lLbound);
  Value inner(ByReference(bytes));
  EXPECT_EQ(S_OK, Call(L"AppendByte", {ByReference(inner), three.raw()}).result);
  EXPECT_EQ(VT_ARRAY | VT_VARIANT, bytes.type());
  EXPECT_EQ(3u, Elements(bytes.raw()).size());
}

TEST_F(BinderReferenceTest, AnArrayOfAnotherTypeKeepsIt) {
  SAFEARRAY* numbers = SafeArrayCreateVector(VT_I4, 0, 1);
  const Value seven(7);
  EXPECT_EQ(Value(2),
            Call(L"AppendText", {ByReference(VT_ARRAY | VT_I4, &numbers), seven.raw()}).value);
  EXPECT_EQ((std::vector<Value>{0, 7}), Elements(ByReference(VT_ARRAY | VT_I4, &numbers)));
  SafeArrayDestroy(numbers);
}

TEST_F(BinderReferenceTest, AnArrayByValueStaysAsItIs) {
  ClientArray values({1}), texts(VT_BSTR, 2), bytes(VT_UI1, 3);
  const Value seven(7);
  EXPECT_EQ(S_OK, Call(L"AppendValue", {values.Raw(), seven.raw()}).result);
  EXPECT_EQ(Value(3), Call(L"AppendText", {texts.Raw(), seven.raw()}).value);
  EXPECT_EQ(S_OK, Call(L"AppendByte", {bytes.Raw(), seven.raw()}).result);
  EXPECT_EQ(std::vector<Value>{1}, Elements(values.Raw()));
  EXPECT_EQ(2u, Elements(texts.Raw()).size());
  EXPECT_EQ(3u, Elements(bytes.Raw()).size());
}

TEST_F(BinderReferenceTest, LockedAndFixedArraysAreRefused) {
  const Value seven(7);
  SAFEARRAY* typed = SafeArrayCreateVector(VT_BSTR, 0, 1);
  Value same = ClientArray(VT_BSTR, 1).Take(), script = ClientArray({L"one"}).Take();
  const auto expect_refusal = [&] {
    for (const VARIANT& argument :
         {ByReference(VT_ARRAY | VT_BSTR, &typed), ByReference(same), ByReference(script)}) {
      const Ended ended = Call(L"AppendText", {argument, seven.raw()});
      EXPECT_EQ(DISP_E_ARRAYISLOCKED, ended.result);
      EXPECT_EQ(1u, ended.position);
    }
  };
  for (SAFEARRAY* array : {typed, same.raw().parray, script.raw().parray}) SafeArrayLock(array);
  expect_refusal();
  for (SAFEARRAY* array : {typed, same.raw().parray, script.raw().parray}) {
    SafeArrayUnlock(array);
    array->fFeatures |= FADF_FIXEDSIZE;
  }
  expect_refusal();
  for (SAFEARRAY* array : {typed, same.raw().parray, script.raw().parray}) {
    array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
    EXPECT_EQ(1u, array->rgsabound[0].cElements);
  }
  SafeArrayDestroy(typed);
}

TEST_F(BinderReferenceTest, WhatIsNoArrayIsRefused) {
  const Value seven(7);
  for (const Value& other : {Value(5), Value(L"text"), Value::Null(), Value::Nothing()}) {
    Value variable = other;
    EXPECT_EQ(DISP_E_TYPEMISMATCH,
              Call(L"AppendText", {ByReference(variable), seven.raw()}).result);
    EXPECT_EQ(other, variable);
  }
  Value words = ClientArray({L"word"}).Take();
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"AppendByte", {ByReference(words), seven.raw()}).result);
  EXPECT_EQ(std::vector<Value>{L"word"}, Elements(words.raw()));
}

}  // namespace

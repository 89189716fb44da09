// The members of both roots that count variables up and down, complete texts, give tags and beep.
#include <vector>

#include "com/both_roots.h"
#include "com/foreign.h"
#include "com/german_user.h"
#include "com/import_hook.h"
#include "com/meddler.h"
#include "com/value_array.h"

DECLARE_IMPORT(MessageBeep, 4);

namespace {

using client::Outcome;
using client::Value;
using value_array::As;
using value_array::Decimal;
using value_array::Int64;

class ScalarMembersTest : public BothRoots {
 protected:
  /// Calls with the client's variable; the result must be its new value.
  Outcome Change(const wchar_t* member, Value& what, const Value& by) const {
    const Outcome outcome = root_.Call(member, {what.Reference(), by});
    if (outcome.ok()) {
      EXPECT_EQ(outcome.value, what) << member;
    }
    return outcome;
  }
  Outcome Incr(Value what, const Value& by = 1) const { return Change(L"Incr", what, by); }
  Outcome Decr(Value what, const Value& by = 1) const { return Change(L"Decr", what, by); }

  template <class Number>
  static Value Reference(VARTYPE type, Number* variable) {
    VARIANT reference;
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = variable;
    return Value(reference);
  }
  std::wstring Source() const { return std::wstring(L"Zepkit10.") + RootName(); }
};

TEST_P(ScalarMembersTest, CountsUpAndDown) {
  EXPECT_EQ(Incr(short{5}, short{1}), short{6});
  EXPECT_EQ(Decr(short{5}, short{1}), short{4});
  EXPECT_EQ(Incr(5, 10), 15);
  EXPECT_EQ(Decr(5, 10), -5);
  EXPECT_EQ(Incr(1.5, 0.25), 1.75);
  EXPECT_EQ(Decr(5, -2), 7);
}

TEST_P(ScalarMembersTest, TheStepIsOneUnlessGiven) {
  Value number = short{5};
  EXPECT_OK(root_.Call(L"Incr", {number.Reference()}));
  EXPECT_EQ(As(VT_I4, number), 6);
  EXPECT_OK(root_.Call(L"Decr", {number.Reference()}));
  EXPECT_OK(root_.Call(L"Decr", {number.Reference(), Value::Missing()}));
  EXPECT_EQ(As(VT_I4, number), 4);
}

// Early bound, the platform passes the Long that a type library's default is.
TEST_P(ScalarMembersTest, TheStepThatIsNotGivenIsAnInteger) {
  if (root_.binding() == client::Binding::kVtable) return;
  const std::pair<Value, Value> sums[] = {
      {short{5}, short{6}},
      {short{32767}, 32768},
      {As(VT_UI1, 5), short{6}},
      {5, 6},
      {Value(), short{1}},
      {true, short{0}},
      {1.5f, 2.5f},
      {1.5, 2.5},
      {As(VT_CY, 1), As(VT_CY, 2)},
      {As(VT_DATE, 1), As(VT_DATE, 2)},
      {Int64(5), Int64(6)},
      {Decimal(L"0.5"), Decimal(L"1.5")},
      {2147483647, 2147483648.0},
      {L"5", 6.0},
  };
  for (const auto& [what, sum] : sums) {
    EXPECT_EQ(Incr(what, Value::Missing()), sum);
    Value variable = what;
    EXPECT_EQ(root_.Call(L"Incr", {variable.Reference()}), sum);
    EXPECT_EQ(variable, sum);
  }
  EXPECT_EQ(Decr(short{-32768}, Value::Missing()), -32769);
  EXPECT_EQ(Decr(As(VT_UI1, 0), Value::Missing()), short{-1});
  BYTE byte = 5;
  EXPECT_EQ(root_.Call(L"Incr", {Reference(VT_UI1, &byte), Value::Missing()}), As(VT_UI1, 6));
  EXPECT_EQ(6, byte);
}

TEST_P(ScalarMembersTest, AMissingStepOfVtableClientsIsAnInteger) {
  Microsoft::WRL::ComPtr<_Library> library;
  if (FAILED(root_.get()->QueryInterface(IID_PPV_ARGS(&library)))) return;
  Value what = short{5}, result;
  EXPECT_EQ(S_OK, library->Incr(&what.raw(), Value::Missing().raw(), &result.raw()));
  EXPECT_EQ(result, Value(short{6}));
  EXPECT_EQ(what, Value(short{6}));
  Value counted = short{5}, difference;
  EXPECT_EQ(S_OK, library->Decr(&counted.raw(), Value::Missing().raw(), &difference.raw()));
  EXPECT_EQ(difference, Value(short{4}));
}

TEST_P(ScalarMembersTest, TextsBecomeNumbers) {
  EXPECT_EQ(Incr(L"5"), 6.0);
  EXPECT_EQ(Decr(L" 5.5 "), 4.5);
  EXPECT_EQ(Incr(5, L"7"), 12.0);
  EXPECT_EQ(Incr(L"5", L"7"), 12.0);
  EXPECT_EQ(Decr(L"1e3", L"&HFF"), 745.0);
}

TEST_P(ScalarMembersTest, ResultsWidenAsThePlatformDoes) {
  EXPECT_EQ(Incr(short{32767}, short{1}), 32768);
  EXPECT_EQ(Incr(2147483647, 1), 2147483648.0);
  EXPECT_EQ(Decr(-2147483647, 2), -2147483649.0);
  EXPECT_EQ(Incr(As(VT_UI1, 255), As(VT_UI1, 1)), short{256});
  EXPECT_EQ(Decr(As(VT_UI1, 0), As(VT_UI1, 1)), short{-1});
  EXPECT_EQ(Decr(As(VT_UI1, 5), As(VT_UI1, 1)), As(VT_UI1, 4));
  EXPECT_EQ(Decr(short{-32768}, short{1}), -32769);
  EXPECT_EQ(Decr(short{-5}, short{1}), short{-6});
  EXPECT_EQ(Decr(Int64(5), As(VT_UI1, 1)), Int64(4));
  EXPECT_EQ(Decr(Int64(-9223372036854775807), 2), -9223372036854775808.0);
  EXPECT_EQ(Decr(Value(), Value()), short{0});
  EXPECT_EQ(Incr(Int64(9223372036854775807)), 9223372036854775808.0);
  EXPECT_EQ(Incr(2147483647, Int64(1)), Int64(2147483648));
  EXPECT_EQ(Incr(Value(), Value()), short{0});
  EXPECT_EQ(Incr(Value(), As(VT_UI1, 1)), As(VT_UI1, 1));
  EXPECT_EQ(Incr(3e38f, 3e38f), 2.0 * 3e38f);
  EXPECT_EQ(Incr(As(VT_CY, 1), Decimal(L"0.5")), Decimal(L"1.5"));
  EXPECT_EQ(Incr(Int64(5), Decimal(L"0.5")), Decimal(L"5.5"));
  EXPECT_EQ(Decr(Int64(5), Decimal(L"0.5")), Decimal(L"4.5"));
  EXPECT_EQ(Decr(As(VT_DATE, 100), As(VT_DATE, 40)), 60.0);
  EXPECT_EQ(Decr(Value(), As(VT_UI1, 1)), short{-1});
  EXPECT_EQ(Incr(short{1}, 1), 2);
  EXPECT_EQ(Incr(1, 1.5), 2.5);
  EXPECT_EQ(Incr(As(VT_CY, 1.25), 1), As(VT_CY, 2.25));
  EXPECT_EQ(Incr(As(VT_DATE, 100), 1), As(VT_DATE, 101));
  EXPECT_EQ(Incr(Decimal(L"79228162514264337593543950334")),
            Decimal(L"79228162514264337593543950335"));
  EXPECT_EQ(Incr(Int64(9007199254740992)), Int64(9007199254740993));
  EXPECT_EQ(Incr(Value(), short{1}), short{1});
  EXPECT_EQ(Decr(true, short{1}), short{-2});
  EXPECT_EQ(Incr(As(VT_UI4, 4294967295.0)), Int64(4294967296));
  EXPECT_EQ(Incr(As(VT_I1, 127)), 128);
}

TEST_P(ScalarMembersTest, ObjectsCountByTheirDefaultValue) {
  const client::Object counter(component::Create<IDispatch>(CLSID_Counter).Get(),
                               client::Binding::kDispatch);
  counter.Let(L"Value", {7});
  EXPECT_EQ(Incr(counter), 8.0);
  EXPECT_EQ(Decr(10, counter), 3.0);
  EXPECT_EQ(counter.Get(L"Value"), 7);
}

TEST_P(ScalarMembersTest, AVariableMayChangeMeanwhile) {
  Value what = 5;
  Meddler meddler([&] { what = L"changed"; });
  EXPECT_EQ(root_.Call(L"Incr", {what.Reference(), Value(&meddler)}), 12.0);
  EXPECT_EQ(what, Value(12.0));
  what = Value(&meddler);
  EXPECT_EQ(root_.Call(L"Decr", {what.Reference(), 1}), 6.0);
  EXPECT_EQ(what, Value(6.0));
  EXPECT_EQ(1u, meddler.references);
}

TEST_P(ScalarMembersTest, OperandsMustBeNumeric) {
  foreign::VarSet object;
  const Value array = value_array::Variants(0, {1});
  for (const Value& given : {Value(L"x"), Value(L""), Value::Null(), Value::Nothing(),
                             value_array::Error(E_FAIL), Value(&object), array}) {
    for (const wchar_t* member : {L"Incr", L"Decr"}) {
      Value what = given, number = 5;
      EXPECT_ROOT_ERROR(root_.Call(member, {what.Reference(), 1}), zepErrBadParam);
      EXPECT_EQ(given.type(), what.type());
      if (!(given.type() & VT_ARRAY)) {
        EXPECT_EQ(given, what);
      }
      EXPECT_ROOT_ERROR(root_.Call(member, {number.Reference(), given}), zepErrBadParam);
      EXPECT_EQ(Value(5), number);
    }
  }
  EXPECT_EQ(1u, object.references);
}

TEST_P(ScalarMembersTest, TypedVariablesKeepTheirType) {
  LONG number = 5;
  EXPECT_EQ(root_.Call(L"Incr", {Reference(VT_I4, &number), 2.0}), 7);
  EXPECT_EQ(7, number);
  BYTE byte = 255;
  EXPECT_ERROR(root_.Call(L"Incr", {Reference(VT_UI1, &byte), 1}), 6, Source(), L"Overflow");
  EXPECT_EQ(255, byte);
  EXPECT_EQ(root_.Call(L"Decr", {Reference(VT_UI1, &byte), 5}), As(VT_UI1, 250));
  EXPECT_EQ(250, byte);
  DECIMAL decimal = Decimal(L"1.5").raw().decVal;
  decimal.wReserved = 0;
  EXPECT_EQ(root_.Call(L"Incr", {Reference(VT_DECIMAL, &decimal), 1}), Decimal(L"2.5"));
  EXPECT_EQ(0, decimal.wReserved);
  Value text = L"5";
  EXPECT_EQ(root_.Call(L"Incr", {Reference(VT_BSTR, &text.raw().bstrVal), 1}), L"6");
  EXPECT_EQ(text, Value(L"6"));
  IDispatch* object = nullptr;
  EXPECT_ROOT_ERROR(root_.Call(L"Incr", {Reference(VT_DISPATCH, &object), 1}), zepErrBadParam);
}

TEST_P(ScalarMembersTest, AVariantMayReferToATypedVariable) {
  LONG number = 5;
  Value inner = Reference(VT_I4, &number);
  EXPECT_EQ(root_.Call(L"Incr", {inner.Reference(), 1}), 6);
  EXPECT_EQ(6, number);
  number = 2147483647;
  EXPECT_ERROR(root_.Call(L"Incr", {inner.Reference(), 1}), 6, Source(), L"Overflow");
  EXPECT_EQ(2147483647, number);
}

TEST_P(ScalarMembersTest, AVariableMayBeItsOwnStep) {
  Value number = 5;
  EXPECT_EQ(root_.Call(L"Incr", {number.Reference(), number.Reference()}), 10);
  EXPECT_EQ(root_.Call(L"Decr", {number.Reference(), number.Reference()}), 0);
  EXPECT_EQ(number, Value(0));
}

TEST_P(ScalarMembersTest, ATooLargeSumLeavesTheVariable) {
  Value number = 1.7e308;
  const Outcome outcome = root_.Call(L"Incr", {number.Reference(), 1.7e308});
  EXPECT_ERROR(outcome, 6, Source(), L"Overflow");
  EXPECT_EQ(number, Value(1.7e308));
}

TEST_P(ScalarMembersTest, TextsGetTheirEnding) {
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"C:\\dir", L"\\"}), L"C:\\dir\\");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"C:\\dir\\", L"\\"}), L"C:\\dir\\");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"abc", L"BC"}), L"abcBC");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"abc", L"bc"}), L"abc");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"abc", L"abc"}), L"abc");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"bc", L"abc"}), L"bcabc");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"abc", L""}), L"abc");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"", L"x"}), L"x");
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"", L""}), L"");
  const std::wstring nul(1, L'\0');
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"a", nul}), L"a" + nul);
  EXPECT_EQ(root_.Call(L"FinalizeString", {L"a" + nul, nul}), L"a" + nul);
}

TEST_P(ScalarMembersTest, EachTagIsTheNextNumber) {
  const Outcome first = root_.Call(L"NewTag"), second = root_.Call(L"NewTag");
  ASSERT_EQ(VT_BSTR, first.value.type());
  EXPECT_EQ(second, std::to_wstring(_wtoi(first.value.raw().bstrVal) + 1));
}

TEST_P(ScalarMembersTest, BothRootsShareTheTags) {
  const client::Object global(component::Create<IDispatch>(CLSID_Global).Get(), root_.binding());
  const Outcome first = root_.Call(L"NewTag"), second = global.Call(L"NewTag"),
                third = global.GetObject(L"Zep").Call(L"NewTag");
  EXPECT_EQ(second, std::to_wstring(_wtoi(first.value.raw().bstrVal) + 1));
  EXPECT_EQ(third, std::to_wstring(_wtoi(first.value.raw().bstrVal) + 2));
}

TEST_P(ScalarMembersTest, EveryBeepSounds) {
  for (const int sound : {64, 48, 32, 16, 0, -1}) EXPECT_OK(root_.Call(L"MessageBeep", {sound}));
}

/// Stands in for the system's sounds.
std::vector<UINT> beeps;
template <BOOL result>
BOOL WINAPI NoteBeep(UINT sound) {
  beeps.push_back(sound);
  return result;
}

TEST_P(ScalarMembersTest, BeepsAreTheSystemsWhateverTheirNumber) {
  if (!component::IsLinked()) return;
  beeps.clear();
  const ImportHook<&__imp_MessageBeep> hook(NoteBeep<TRUE>);
  for (const int sound : {64, -1, 12345}) EXPECT_OK(root_.Call(L"MessageBeep", {sound}));
  EXPECT_EQ(std::vector<UINT>({64, 0xFFFFFFFF, 12345}), beeps);
}

TEST_P(ScalarMembersTest, ABeepThatFailsIsABadCall) {
  if (!component::IsLinked()) return;
  const ImportHook<&__imp_MessageBeep> hook(NoteBeep<FALSE>);
  EXPECT_ROOT_ERROR(root_.Call(L"MessageBeep", {zepMsgTypeHand}), zepErrBadCall);
}

/// Members that take something by reference, called without it; the results stay empty.
template <class Root>
void ExpectNullsRefused(Root& root) {
  Value number = 5, result;
  LONG count = 7;
  BSTR text = nullptr;
  VARIANT* const none = nullptr;
  EXPECT_EQ(E_POINTER, root.Incr(none, Value(1).raw(), &result.raw()));
  EXPECT_EQ(E_POINTER, root.Decr(none, Value(1).raw(), &result.raw()));
  EXPECT_EQ(E_POINTER, root.Max(nullptr, &result.raw()));
  EXPECT_EQ(E_POINTER, root.Min(nullptr, &result.raw()));
  EXPECT_EQ(E_POINTER, root.SwapVars(none, &number.raw()));
  EXPECT_EQ(E_POINTER, root.SwapVars(&number.raw(), none));
  EXPECT_EQ(E_POINTER, root.ByteArrayToString(nullptr, zepSTAnsi, &text));
  EXPECT_EQ(E_POINTER, root.GetFiles(nullptr, nullptr, nullptr, VARIANT_FALSE, &count));
  EXPECT_EQ(number, Value(5));
  EXPECT_EQ(result, Value());
  EXPECT_EQ(0, count);
  EXPECT_EQ(nullptr, text);
}

TEST_P(ScalarMembersTest, NullReferencesAreRefused) {
  Microsoft::WRL::ComPtr<_Global> global;
  Microsoft::WRL::ComPtr<_Library> library;
  if (SUCCEEDED(root_.get()->QueryInterface(IID_PPV_ARGS(&global)))) {
    ExpectNullsRefused(*global.Get());
  } else {
    ASSERT_EQ(S_OK, root_.get()->QueryInterface(IID_PPV_ARGS(&library)));
    ExpectNullsRefused(*library.Get());
  }
}

TEST_P(ScalarMembersTest, GermanTextsReadAsGermanNumbers) {
  SKIP_UNLESS_GERMAN();
  EXPECT_EQ(Incr(L"1,5"), 2.5);
  EXPECT_EQ(Decr(L"1.000", L"0,5"), 999.5);
  Value text = L"1,5";
  EXPECT_EQ(root_.Call(L"Incr", {Reference(VT_BSTR, &text.raw().bstrVal), 1}), L"2,5");
}

RUN_WITH_BOTH_ROOTS(ScalarMembersTest);

}  // namespace

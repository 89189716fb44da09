#include "com/both_bindings.h"
#include "com/german_user.h"
#include "com/target.h"
#include "com/zep_error.h"
#include "debug/debug_print_out_object.h"
#include "debug/debug_print_outs_object.h"
#include "frame/library_object.h"

namespace {

using client::Object;
using client::Value;

constexpr int kGetLet = 0, kLet = 1, kMethod = 2;
constexpr HRESULT kForeignError = 0x80041234;

class DebugPrintOutTest : public BothBindings {
 protected:
  ~DebugPrintOutTest() override { outs_.Call(L"Clear"); }

  /// A target whose trial is forgotten.
  Object Add(int type) {
    const wchar_t* call = type == kMethod ? L"PrintLine" : L"Text";
    const Object out = outs_.CallObject(L"Add", {Value(&target_), call, type});
    EXPECT_TRUE(out);
    target_.calls.clear();
    return out;
  }
  static client::Outcome Print(const Object& out, const Value& text) {
    return out.Call(L"PrintText", {text});
  }

  Target target_;
  Object global_ = Create(CLSID_Global);
  Object outs_ = global_.GetObject(L"DebugPrintOuts");
};

TEST_P(DebugPrintOutTest, TellsItsLink) {
  for (const int type : {kGetLet, kLet, kMethod}) {
    const Object out = Add(type);
    EXPECT_EQ(out.Get(L"LinkedObject"), Value(&target_));
    EXPECT_EQ(out.Get(L"LinkedCall"), type == kMethod ? L"PrintLine" : L"Text");
    EXPECT_EQ(out.Get(L"LinkedCallType"), type);
    EXPECT_EQ(out.Get(L"Parent"), outs_);
  }
}

TEST_P(DebugPrintOutTest, TheLinkIsReadOnly) {
  const Object out = Add(kMethod);
  for (const wchar_t* name : {L"LinkedCall", L"LinkedCallType", L"Usable"}) {
    EXPECT_FALSE(out.Let(name, {1}).ok()) << name;
  }
  for (const wchar_t* name : {L"LinkedObject", L"Parent"}) {
    EXPECT_FALSE(out.Set(name, {outs_}).ok()) << name;
  }
}

TEST_P(DebugPrintOutTest, GetLetAppendsToTheProperty) {
  const Object out = Add(kGetLet);
  EXPECT_OK(Print(out, L"a"));
  EXPECT_EQ(target_.calls, (std::vector{Target::Read(), Target::Write(L"a")}));
  EXPECT_OK(Print(out, L"b\r\n"));
  EXPECT_OK(Print(out, L""));
  EXPECT_OK(Print(out, L"c"));
  EXPECT_EQ(target_.text, Value(L"ab\r\nc"));
}

TEST_P(DebugPrintOutTest, GetLetAppendsToValuesThatAreNoText) {
  const Object out = Add(kGetLet), counter = Create(CLSID_Counter);
  EXPECT_OK(counter.Let(L"Value", {7}));
  const std::pair<Value, const wchar_t*> values[] = {
      {Value(), L"x"},
      {Value::Null(), L"x"},
      {1, L"1x"},
      {-1.5, L"-1.5x"},
      {true, L"Truex"},
      {counter, L"7x"},
      {std::wstring(L"a\0b", 3), nullptr},
  };
  for (const auto& [value, expected] : values) {
    target_.text = value;
    EXPECT_OK(Print(out, L"x"));
    EXPECT_EQ(target_.text, expected ? Value(expected) : Value(std::wstring(L"a\0bx", 4)));
  }
}

TEST_P(DebugPrintOutTest, GetLetAppendsToGermanNumbers) {
  SKIP_UNLESS_GERMAN();
  const Object out = Add(kGetLet);
  target_.text = Value(-1.5);
  EXPECT_OK(Print(out, L"x"));
  EXPECT_EQ(target_.text, Value(L"-1,5x"));
}

TEST_P(DebugPrintOutTest, GetLetPassesOnThatAValueIsNoText) {
  const Object out = Add(kGetLet);
  VARIANT array;
  array.vt = VT_ARRAY | VT_VARIANT;
  array.parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  for (const Value& value : {Value(array), Value::Nothing()}) {
    target_.text = value;
    target_.calls.clear();
    EXPECT_ERROR(Print(out, L"x"), 13, L"Zepkit10.DebugPrintOut", L"Type mismatch");
    EXPECT_EQ(target_.calls, std::vector{Target::Read()});
  }
  target_.text = Value();
  SafeArrayDestroy(array.parray);
}

TEST_P(DebugPrintOutTest, LetReplacesTheProperty) {
  const Object out = Add(kLet);
  EXPECT_OK(Print(out, L"a"));
  EXPECT_EQ(target_.calls, std::vector{Target::Write(L"a")});
  EXPECT_OK(Print(out, L"b"));
  EXPECT_EQ(target_.text, Value(L"b"));
  EXPECT_OK(Print(out, L""));
  EXPECT_EQ(target_.text, Value(L""));
}

TEST_P(DebugPrintOutTest, MethodIsCalledWithTheText) {
  const Object out = Add(kMethod);
  EXPECT_OK(Print(out, L"a"));
  EXPECT_OK(Print(out, L""));
  EXPECT_EQ(target_.calls, (std::vector{Target::Print(L"a"), Target::Print(L"")}));
}

TEST_P(DebugPrintOutTest, DeliversWhetherEnabledOrNotAndWithoutIndentation) {
  const Object out = Add(kMethod);
  EXPECT_OK(global_.Call(L"DebugPrint", {L"+ a"}));
  EXPECT_OK(outs_.Let(L"Enabled", {false}));
  EXPECT_OK(Print(out, L"+ b"));
  EXPECT_OK(outs_.Let(L"Enabled", {true}));
  EXPECT_OK(global_.Call(L"DebugPrint", {L"c"}));
  EXPECT_EQ(target_.Take(), L"+ a\r\n+ b  c\r\n");
}

TEST_P(DebugPrintOutTest, TextPassesThroughTheAnsiCodePage) {
  if (GetACP() != 1252) GTEST_SKIP() << "knows what is in code page 1252 only";
  const std::pair<std::wstring, std::wstring> texts[] = {
      {L"a\u00E4\u00DF\u20AC\u2026", L"a\u00E4\u00DF\u20AC\u2026"},
      {L"\u4E2D\u05D0", L"??"},
      {L"\U0001F600", L"??"},
      {L"\xD800", L"?"},
      {std::wstring(L"\0a\0\0", 4), std::wstring(L"\0a\0\0", 4)},
      {std::wstring(100000, L'x') + L"\u4E2D", std::wstring(100000, L'x') + L"?"},
  };
  for (const int type : {kGetLet, kLet, kMethod}) {
    const Object out = Add(type);
    for (const auto& [text, expected] : texts) {
      target_.text = Value(L"");
      target_.calls.clear();
      EXPECT_OK(Print(out, text));
      EXPECT_EQ(target_.calls.back().arguments, std::vector<Value>{expected});
    }
  }
}

TEST_P(DebugPrintOutTest, WhatThePropertyHeldStaysAsItIs) {
  const Object out = Add(kGetLet);
  target_.text = Value(L"\u4E2D");
  EXPECT_OK(Print(out, L"a"));
  EXPECT_EQ(target_.text, Value(L"\u4E2Da"));
}

TEST_P(DebugPrintOutTest, UsableTriesTheMember) {
  const Object appended = Add(kGetLet), replaced = Add(kLet), called = Add(kMethod);
  target_.text = Value(L"text");
  EXPECT_EQ(appended.Get(L"Usable"), true);
  EXPECT_EQ(target_.calls, (std::vector{Target::Read(), Target::Write(L"text")}));
  target_.calls.clear();
  EXPECT_EQ(replaced.Get(L"Usable"), true);
  EXPECT_EQ(target_.calls, std::vector{Target::Write(Value())});
  target_.calls.clear();
  EXPECT_EQ(called.Get(L"Usable"), true);
  EXPECT_EQ(target_.calls, std::vector{Target::Print(Value())});
}

TEST_P(DebugPrintOutTest, UsableIsFalseWhileTheMemberFails) {
  for (const int type : {kGetLet, kLet, kMethod}) {
    const Object out = Add(type);
    target_.handler = Target::Raising(0xFFFF, kForeignError, L"Source", L"Description");
    EXPECT_EQ(out.Get(L"Usable"), false);
    target_.handler = [](const Target::Call&, EXCEPINFO&) { return E_OUTOFMEMORY; };
    EXPECT_EQ(out.Get(L"Usable"), false);
    target_.handler = nullptr;
    EXPECT_EQ(out.Get(L"Usable"), true);
    target_.has_members = false;
    EXPECT_EQ(out.Get(L"Usable"), false);
    target_.has_members = true;
    EXPECT_EQ(out.Get(L"Usable"), true);
  }
}

TEST_P(DebugPrintOutTest, UsableWritesAnyValueBack) {
  const Object out = Add(kGetLet);
  for (const Value& value : {Value::Null(), Value(), Value(1.5), Value(global_)}) {
    target_.text = value;
    EXPECT_EQ(out.Get(L"Usable"), true);
    EXPECT_EQ(target_.text, value);
  }
  target_.text = Value();
}

TEST_P(DebugPrintOutTest, ErrorsOfTheMemberPass) {
  for (const int type : {kGetLet, kLet, kMethod}) {
    const Object out = Add(type);
    target_.handler = Target::Raising(0xFFFF, kForeignError, L"Source", L"Description");
    EXPECT_ERROR(Print(out, L"a"), kForeignError, L"Source", L"Description");
    target_.handler = Target::Raising(0xFFFF, 0x800A0046, L"Script", L"Permission denied");
    EXPECT_ERROR(Print(out, L"a"), 70, L"Script", L"Permission denied");
    target_.handler = [](const Target::Call&, EXCEPINFO& exception) {
      exception.wCode = 11;
      exception.bstrSource = SysAllocString(L"Script");
      return DISP_E_EXCEPTION;
    };
    EXPECT_ERROR(Print(out, L"a"), 11, L"Script", L"Division by zero");
    target_.handler = nullptr;
    EXPECT_OK(Print(out, L"a"));
  }
}

TEST_P(DebugPrintOutTest, ErrorsWithoutANumberAreErrors) {
  for (const int type : {kGetLet, kLet, kMethod}) {
    const Object out = Add(type);
    target_.handler = Target::Raising(0xFFFF, S_OK, L"Source", L"Description");
    EXPECT_ERROR(Print(out, L"a"), DISP_E_EXCEPTION, L"Source", L"Description");
    EXPECT_EQ(out.Get(L"Usable"), false);
    target_.handler = Target::Raising(0xFFFF, 0x800A0000, L"Source", L"Description");
    EXPECT_ERROR(Print(out, L"a"), 0, L"Source", L"Description");
    target_.handler = nullptr;
  }
}

TEST_P(DebugPrintOutTest, RefusedCallsAreErrorsOfTheTarget) {
  const Object out = Add(kMethod);
  target_.handler = [](const Target::Call&, EXCEPINFO&) { return DISP_E_TYPEMISMATCH; };
  EXPECT_ERROR(Print(out, L"a"), 13, L"Zepkit10.DebugPrintOut", L"Type mismatch");
  target_.handler = [](const Target::Call&, EXCEPINFO&) { return E_OUTOFMEMORY; };
  EXPECT_ERROR(Print(out, L"a"), 7, L"Zepkit10.DebugPrintOut", L"Out of memory");
  target_.has_members = false;
  EXPECT_ERROR(Print(out, L"a"), 438, L"Zepkit10.DebugPrintOut",
               L"Object doesn't support this property or method");
  target_.has_members = true;
}

TEST_P(DebugPrintOutTest, DeletedItAwaitsItsLastRelease) {
  const Object out = Add(kMethod);
  EXPECT_OK(out.Call(L"Delete"));
  EXPECT_EQ(outs_.Get(L"Count"), 0);
  EXPECT_EQ(1u, target_.references);
  EXPECT_ZEP_ERROR(out.Call(L"Delete"), zepErrAwaitTerm, L"DebugPrintOut");
  EXPECT_ZEP_ERROR(Print(out, L"a"), zepErrAwaitTerm, L"DebugPrintOut");
  for (const wchar_t* name :
       {L"LinkedObject", L"LinkedCall", L"LinkedCallType", L"Parent", L"Usable"}) {
    EXPECT_ZEP_ERROR(out.Get(name), zepErrAwaitTerm, L"DebugPrintOut");
  }
  EXPECT_TRUE(target_.calls.empty());
}

TEST_P(DebugPrintOutTest, TheMemberMayDeleteItsTarget) {
  for (const int type : {kGetLet, kLet, kMethod}) {
    Object out = Add(type);
    target_.text = Value(L"a");
    target_.handler = Target::Doing([&] {
      target_.handler = nullptr;
      EXPECT_OK(out.Call(L"Delete"));
    });
    EXPECT_OK(Print(out, L"b"));
    // What was begun is finished.
    EXPECT_EQ(target_.calls.back().arguments, std::vector<Value>{type == kGetLet ? L"ab" : L"b"});
    EXPECT_ZEP_ERROR(Print(out, L"c"), zepErrAwaitTerm, L"DebugPrintOut");
    EXPECT_EQ(1u, target_.references);
  }
}

TEST_P(DebugPrintOutTest, TheMemberMayDeleteItsTargetWhileItIsTried) {
  for (const int type : {kGetLet, kLet, kMethod}) {
    const Object out = Add(type);
    target_.handler = Target::Doing([&] {
      target_.handler = nullptr;
      EXPECT_OK(outs_.Call(L"Clear"));
    });
    EXPECT_EQ(out.Get(L"Usable"), true);
    EXPECT_ZEP_ERROR(out.Get(L"Usable"), zepErrAwaitTerm, L"DebugPrintOut");
    EXPECT_EQ(1u, target_.references);
  }
}

TEST_P(DebugPrintOutTest, TheLastReferenceMayGoDuringADelivery) {
  Microsoft::WRL::ComPtr<_DebugPrintOut> out;
  ASSERT_EQ(S_OK, Add(kGetLet).get()->QueryInterface(IID_PPV_ARGS(&out)));
  _DebugPrintOut* raw = out.Get();
  target_.handler = Target::Doing([&] {
    target_.handler = nullptr;
    EXPECT_OK(outs_.Call(L"Clear"));
    out.Reset();
  });
  const Value text = L"a";
  EXPECT_EQ(S_OK, raw->PrintText(text.raw().bstrVal));
  EXPECT_EQ(target_.text, Value(L"a"));
  EXPECT_EQ(1u, target_.references);
}

TEST_P(DebugPrintOutTest, DeliveriesWithinEachOtherEndAtSixteen) {
  for (const int type : {kGetLet, kLet, kMethod}) {
    const Object out = Add(type);
    target_.handler = Target::PassingOn([&] { return Print(out, L"a"); });
    EXPECT_ERROR(Print(out, L"a"), 28, L"Zepkit10.DebugPrintOut", L"Out of stack space");
    EXPECT_EQ(16u, target_.calls.size());
    target_.handler = nullptr;
    EXPECT_OK(Print(out, L"a"));
  }
}

TEST_P(DebugPrintOutTest, TrialsWithinEachOtherEndAtSixteen) {
  const Object out = Add(kMethod);
  target_.handler = Target::Doing([&] { EXPECT_TRUE(out.Get(L"Usable").ok()); });
  EXPECT_EQ(out.Get(L"Usable"), true);
  EXPECT_EQ(16u, target_.calls.size());
}

TEST_P(DebugPrintOutTest, NullTextsOfVtableClients) {
  Microsoft::WRL::ComPtr<_DebugPrintOut> out;
  ASSERT_EQ(S_OK, Add(kMethod).get()->QueryInterface(IID_PPV_ARGS(&out)));
  EXPECT_EQ(S_OK, out->PrintText(nullptr));
  EXPECT_EQ(target_.calls, std::vector{Target::Print(L"")});
  VARIANT_BOOL usable = 7;
  EXPECT_EQ(S_OK, out->get_Usable(&usable));
  EXPECT_EQ(VARIANT_TRUE, usable);
}

RUN_IN_BOTH_BINDINGS(DebugPrintOutTest);

// No client can have such a target: it is not usable, so that Add deletes it.
TEST(DebugPrintOutOfUnknownCallTypeTest, PrintTextRaisesUnexpected) {
  Target target;
  for (const int type : {-1, 3, INT_MAX}) {
    const auto outs = zepkit10::Make<zepkit10::DebugPrintOuts>();
    const auto out = zepkit10::Make<zepkit10::DebugPrintOut>(
        &target, u"Text", static_cast<zepkit10::ZepDPOCallType>(type));
    out->AttachParent(outs.get());
    EXPECT_FALSE(out->Usable());
    try {
      out->PrintText(u"a");
      ADD_FAILURE() << "no error";
    } catch (const zepkit10::Failure& failure) {
      EXPECT_EQ(zepErrUnexpected, failure.number);
      EXPECT_EQ(u"Zepkit10.DebugPrintOut", failure.source);
    }
    out->Delete();
  }
  EXPECT_TRUE(target.calls.empty());
  EXPECT_EQ(1u, target.references);
}

}  // namespace

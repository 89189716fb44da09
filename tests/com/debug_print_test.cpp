#include "com/both_roots.h"
#include "com/target.h"

namespace {

using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

constexpr int kGetLet = 0, kLet = 1, kMethod = 2;
constexpr HRESULT kForeignError = 0x80041234;

class DebugPrintTest : public BothRoots {
 protected:
  DebugPrintTest() {
    Add(page_, L"Text", kGetLet);
    page_.calls.clear();
  }
  ~DebugPrintTest() override { outs_.Call(L"Clear"); }

  Object Add(Target& target, const wchar_t* call = L"PrintLine", int type = kMethod) {
    const Object out = outs_.CallObject(L"Add", {Value(&target), call, type});
    EXPECT_TRUE(out);
    target.calls.clear();
    return out;
  }
  client::Outcome Print(const Value& text, bool omit_line_end = false) const {
    return root_.Call(L"DebugPrint", {text, omit_line_end});
  }
  /// What a text is printed as.
  std::wstring Line(const Value& text, bool omit_line_end = false) {
    EXPECT_OK(Print(text, omit_line_end));
    return Page();
  }
  /// What the page holds; it is emptied.
  std::wstring Page() {
    const Value text = std::exchange(page_.text, Value(L""));
    return {text.raw().bstrVal, SysStringLen(text.raw().bstrVal)};
  }

  Target page_, second_, third_;
  Object outs_ = root_.GetObject(L"DebugPrintOuts");
};

TEST_P(DebugPrintTest, PlusAndMinusEncloseABlock) {
  for (const wchar_t* text : {L"+ a", L"b", L"- c", L"d"}) EXPECT_OK(Print(text));
  EXPECT_EQ(Page(), L"+ a\r\n  b\r\n- c\r\nd\r\n");
}

TEST_P(DebugPrintTest, MinusStopsAtLevel0) {
  for (const wchar_t* text : {L"- a", L"- b", L"+ c", L"d"}) EXPECT_OK(Print(text));
  EXPECT_EQ(Page(), L"- a\r\n- b\r\n+ c\r\n  d\r\n");
}

TEST_P(DebugPrintTest, LinesAtLevel0) {
  EXPECT_EQ(Line(L"++ a"), L"++ a\r\n");
  EXPECT_EQ(Line(L"+ b"), L"  + b\r\n");
  EXPECT_EQ(Line(L"++ c"), L"++ c\r\n");
  EXPECT_EQ(Line(L"~ d"), L"~ d\r\n");
  EXPECT_EQ(Line(L"-- e"), L"-- e\r\n");
  EXPECT_EQ(Line(L"f"), L"    f\r\n");
}

TEST_P(DebugPrintTest, OtherBeginningsAreText) {
  EXPECT_OK(Print(L"+ a"));
  Page();
  for (const wchar_t* text : {L"", L"+", L"-", L"~", L"+a", L"-a", L"~a", L" + ", L"+-"}) {
    EXPECT_EQ(Line(text), L"  " + std::wstring(text) + L"\r\n");
  }
}

TEST_P(DebugPrintTest, ALineMayBeContinued) {
  EXPECT_OK(Print(L"+ a"));
  EXPECT_EQ(Line(L"x", true), L"+ a\r\n  x");
  EXPECT_EQ(Line(L"y", false), L"y\r\n");
  EXPECT_EQ(Line(L"z"), L"  z\r\n");
}

TEST_P(DebugPrintTest, ArgumentsAreOptional) {
  EXPECT_OK(root_.Call(L"DebugPrint", {L"a"}));
  EXPECT_OK(root_.Call(L"DebugPrint", {L"b", Value::Missing()}));
  EXPECT_EQ(Page(), L"a\r\nb\r\n");
  if (root_.binding() == client::Binding::kVtable) return;  // such clients pass a null text
  EXPECT_OK(root_.Call(L"DebugPrint"));
  EXPECT_OK(root_.Call(L"DebugPrint", {Value::Missing(), true}));
  EXPECT_EQ(Page(), L"\r\n");
}

TEST_P(DebugPrintTest, NullTextsOfVtableClientsAreEmpty) {
  ComPtr<_Library> library;
  ComPtr<_Global> global;
  root_.get()->QueryInterface(IID_PPV_ARGS(&library));
  root_.get()->QueryInterface(IID_PPV_ARGS(&global));
  EXPECT_EQ(S_OK, library ? library->DebugPrint(nullptr, VARIANT_FALSE)
                          : global->DebugPrint(nullptr, VARIANT_FALSE));
  EXPECT_EQ(Page(), L"\r\n");
}

TEST_P(DebugPrintTest, TextMayHoldNuls) {
  const std::wstring text(L"a\0b", 3);
  EXPECT_EQ(Line(text), text + L"\r\n");
}

TEST_P(DebugPrintTest, EveryKindOfTargetReceivesTheLine) {
  Add(second_, L"Text", kLet);
  Add(third_);
  for (const wchar_t* text : {L"+ a", L"b"}) EXPECT_OK(Print(text));
  EXPECT_EQ(Page(), L"+ a\r\n  b\r\n");
  EXPECT_EQ(second_.text, Value(L"  b\r\n"));
  EXPECT_EQ(third_.calls, (std::vector{Target::Print(L"+ a\r\n"), Target::Print(L"  b\r\n")}));
}

TEST_P(DebugPrintTest, TargetsReceiveTheLineInTheirOrder) {
  std::wstring order;
  Add(third_), Add(second_), Add(third_);
  second_.handler = Target::Doing([&] { order += L"2"; });
  third_.handler = Target::Doing([&] { order += L"3"; });
  EXPECT_OK(Print(L"a"));
  EXPECT_EQ(order, L"323");
  EXPECT_OK(outs_.Call(L"Remove", {2}));
  EXPECT_OK(Print(L"a"));
  EXPECT_EQ(order, L"32323");
}

TEST_P(DebugPrintTest, WithoutTargetsTheLevelChanges) {
  EXPECT_OK(outs_.Call(L"Clear"));
  EXPECT_OK(Print(L"+ a"));
  Add(page_, L"Text", kGetLet);
  EXPECT_EQ(Line(L"b"), L"  b\r\n");
}

TEST_P(DebugPrintTest, DisabledTheLevelChangesAndTheLineEnds) {
  EXPECT_OK(outs_.Let(L"Enabled", {false}));
  EXPECT_OK(Print(L"+ a"));
  EXPECT_OK(Print(L"+ b", true));
  EXPECT_TRUE(page_.calls.empty());
  EXPECT_OK(outs_.Let(L"Enabled", {true}));
  EXPECT_EQ(Line(L"c"), L"c\r\n");
  EXPECT_EQ(Line(L"d"), L"    d\r\n");
}

TEST_P(DebugPrintTest, ErrorsOfATargetPassAndEndTheDelivery) {
  Add(second_), Add(third_);
  second_.handler = Target::Raising(0xFFFF, kForeignError, L"Source", L"Description");
  EXPECT_ERROR(Print(L"a"), kForeignError, L"Source", L"Description");
  EXPECT_EQ(Page(), L"a\r\n");
  EXPECT_TRUE(third_.calls.empty());
  second_.handler = Target::Raising(0xFFFF, 0x800A0046, L"Script", L"Permission denied");
  EXPECT_ERROR(Print(L"a"), 70, L"Script", L"Permission denied");
  EXPECT_TRUE(third_.calls.empty());
  second_.handler = nullptr;
  EXPECT_OK(Print(L"b"));
  EXPECT_EQ(third_.Take(), L"b\r\n");
}

TEST_P(DebugPrintTest, RefusedCallsNameTheRoot) {
  Add(second_);
  const std::wstring source = std::wstring(L"Zepkit10.") + RootName();
  second_.handler = [](const Target::Call&, EXCEPINFO&) { return DISP_E_TYPEMISMATCH; };
  EXPECT_ERROR(Print(L"a"), 13, source, L"Type mismatch");
  second_.has_members = false;
  EXPECT_ERROR(Print(L"a"), 438, source, L"Object doesn't support this property or method");
  second_.has_members = true;
  page_.text = Value::Null();
  EXPECT_ERROR(Print(L"a"), 13, source, L"Type mismatch");
  page_.text = Value(L"");
}

TEST_P(DebugPrintTest, AFailedDeliveryLeavesNothingPendingBehind) {
  Add(second_);
  const auto fail = Target::Raising(0xFFFF, kForeignError, L"Source", L"Description");
  const auto print_in_vain = [&](const wchar_t* text, bool omit_line_end) {
    second_.handler = fail;
    EXPECT_EQ(kForeignError, Print(text, omit_line_end).number);
    second_.handler = nullptr;
    Page();
  };
  print_in_vain(L"+ a", true);
  EXPECT_EQ(Line(L"b"), L"b\r\n");
  print_in_vain(L"++a", false);
  EXPECT_EQ(Line(L"c", true), L"c");
  print_in_vain(L"d", false);
  EXPECT_EQ(Line(L"+ e"), L"+ e\r\n");
  EXPECT_EQ(Line(L"+ f"), L"  + f\r\n");
  print_in_vain(L"- g", false);  // the level went down before the delivery
  EXPECT_EQ(Line(L"h"), L"  h\r\n");
}

TEST_P(DebugPrintTest, LevelsEndAt32767) {
  EXPECT_OK(outs_.Let(L"Enabled", {false}));
  for (int level = 0; level < 32767; ++level) ASSERT_TRUE(Print(L"+ ").ok());
  const std::wstring source = std::wstring(L"Zepkit10.") + RootName();
  EXPECT_ERROR(Print(L"+ "), 6, source, L"Overflow");
  EXPECT_OK(outs_.Let(L"Enabled", {true}));
  EXPECT_ERROR(Print(L"+ a", true), 6, source, L"Overflow");
  EXPECT_EQ(Page(), std::wstring(2 * 32767, L' ') + L"+ a");  // the line was delivered
  EXPECT_EQ(Line(L"b"), std::wstring(2 * 32767, L' ') + L"b\r\n");
  EXPECT_EQ(Line(L"- c"), std::wstring(2 * 32766, L' ') + L"- c\r\n");
}

TEST_P(DebugPrintTest, ATargetMayPrint) {
  Add(second_);
  second_.handler = Target::Doing([&] {
    second_.handler = nullptr;
    EXPECT_OK(Print(L"inner"));
  });
  Add(third_);
  EXPECT_OK(Print(L"+ outer"));
  EXPECT_OK(Print(L"next"));
  EXPECT_EQ(Page(), L"+ outer\r\ninner\r\n  next\r\n");
  EXPECT_EQ(second_.Take(), L"+ outer\r\ninner\r\n  next\r\n");
  EXPECT_EQ(third_.Take(), L"inner\r\n+ outer\r\n  next\r\n");
}

TEST_P(DebugPrintTest, WhatATargetPrintsKeepsItsLevels) {
  Add(second_);
  second_.handler = Target::Doing([&] {
    second_.handler = nullptr;
    EXPECT_OK(Print(L"+ inner"));
    EXPECT_OK(Print(L"in block", true));
  });
  EXPECT_OK(Print(L"+ outer"));
  EXPECT_OK(Print(L"next"));
  EXPECT_EQ(Page(), L"+ outer\r\n+ inner\r\n  in block    next\r\n");
}

TEST_P(DebugPrintTest, ATargetThatPrintsLeavesTheLineOpen) {
  Add(second_);
  second_.handler = Target::Doing([&] {
    second_.handler = nullptr;
    EXPECT_OK(Print(L"inner"));
  });
  EXPECT_OK(Print(L"+ a"));
  EXPECT_OK(Print(L"outer", true));
  EXPECT_OK(Print(L"continued"));
  EXPECT_EQ(Page(), L"+ a\r\ninner\r\n  outercontinued\r\n");
}

TEST_P(DebugPrintTest, ATargetThatPrintsForEverIsStopped) {
  Add(second_);
  second_.handler = Target::PassingOn([&] { return Print(L"+ a"); });
  EXPECT_ERROR(Print(L"+ a"), 28, std::wstring(L"Zepkit10.") + RootName(), L"Out of stack space");
  EXPECT_EQ(16u, second_.calls.size());
  second_.handler = nullptr;
  Page();
  EXPECT_EQ(Line(L"b"), L"b\r\n");  // none of the calls came to its end
}

TEST_P(DebugPrintTest, TargetsThatPrintForEverAndSwallowErrorsComeToAnEnd) {
  Add(second_);
  int refused = 0;
  second_.handler = Target::Doing([&] {
    if (!Print(L"a").ok()) ++refused;
  });
  EXPECT_OK(Print(L"a"));
  EXPECT_EQ(1, refused);
  EXPECT_EQ(16u, second_.calls.size());
}

TEST_P(DebugPrintTest, TargetsThatPrintThroughEachOtherAreStopped) {
  Add(second_), Add(third_);
  second_.handler = third_.handler = Target::PassingOn([&] { return Print(L"a"); });
  EXPECT_EQ(28, Print(L"a").number);
  second_.handler = third_.handler = nullptr;
  EXPECT_OK(Print(L"a"));
}

TEST_P(DebugPrintTest, TargetsAddedMeanwhileReceiveTheNextLine) {
  Add(second_);
  second_.handler = Target::Doing([&] {
    second_.handler = nullptr;
    Add(third_);
  });
  EXPECT_OK(Print(L"a"));
  EXPECT_TRUE(third_.calls.empty());
  EXPECT_OK(Print(L"b"));
  EXPECT_EQ(third_.Take(), L"b\r\n");
}

TEST_P(DebugPrintTest, TargetsDeletedMeanwhileReceiveNothing) {
  for (int way = 0; way < 3; ++way) {
    SCOPED_TRACE(way);
    EXPECT_OK(outs_.Call(L"Clear"));
    Add(second_);
    const Object third = Add(third_);
    second_.handler = Target::Doing([&] {
      second_.handler = nullptr;
      if (way == 0) EXPECT_OK(third.Call(L"Delete"));
      if (way == 1) EXPECT_OK(outs_.Call(L"Clear"));
      if (way == 2) EXPECT_OK(outs_.Call(L"Remove", {2}));
    });
    EXPECT_OK(Print(L"a"));
    EXPECT_TRUE(third_.calls.empty());
    EXPECT_EQ(1u, third_.references);
  }
}

TEST_P(DebugPrintTest, ATargetThatDeletesItselfIsTheLastToBeMissed) {
  const Object second = Add(second_);
  Add(third_);
  second_.handler = Target::Doing([&] { EXPECT_OK(second.Call(L"Delete")); });
  for (const wchar_t* text : {L"a", L"b"}) EXPECT_OK(Print(text));
  EXPECT_EQ(second_.Take(), L"a\r\n");
  EXPECT_EQ(third_.Take(), L"a\r\nb\r\n");
  EXPECT_EQ(1u, second_.references);
}

TEST_P(DebugPrintTest, DisablingMeanwhileConcernsTheNextLine) {
  Add(second_), Add(third_);
  second_.handler = Target::Doing([&] { EXPECT_OK(outs_.Let(L"Enabled", {false})); });
  for (const wchar_t* text : {L"a", L"b"}) EXPECT_OK(Print(text));
  EXPECT_EQ(third_.Take(), L"a\r\n");
}

TEST_P(DebugPrintTest, TheLibraryMayGo) {
  Add(second_), Add(third_);
  ComPtr<_DebugPrintOuts> outs;
  ComPtr<_Library> library;
  ComPtr<_Global> global;
  root_.get()->QueryInterface(IID_PPV_ARGS(&library));
  root_.get()->QueryInterface(IID_PPV_ARGS(&global));
  second_.handler = Target::Doing([&] {
    second_.handler = nullptr;
    EXPECT_OK(outs_.Call(L"Clear"));
    root_.Reset(), outs_.Reset(), library.Reset(), global.Reset();
  });
  const Value text = L"a";
  EXPECT_EQ(S_OK, library ? library->DebugPrint(text.raw().bstrVal, VARIANT_FALSE)
                          : global->DebugPrint(text.raw().bstrVal, VARIANT_FALSE));
  EXPECT_EQ(Page(), L"a\r\n");
  EXPECT_TRUE(third_.calls.empty());
  root_ = Object(component::Create<IDispatch>(CLSID_Global).Get(), std::get<1>(GetParam()));
  outs_ = root_.GetObject(L"DebugPrintOuts");
}

RUN_WITH_BOTH_ROOTS(DebugPrintTest);

}  // namespace

// Which lines an about window shows for which values.
#include "com/about_fixture.h"
#include "com/fault_plan.h"
#include "com/meddler.h"
#include "com/text_array.h"
#include "com/value_array.h"

namespace {

using client::Value;

/// A client's object whose default value cannot be had.
class Failing final : public foreign::Object<IDispatch> {
 public:
  explicit Failing(HRESULT result, SCODE number = 0) : result_(result), number_(number) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*,
                                   EXCEPINFO* exception, UINT*) override {
    const faults::OutsideCall outside;
    if (result_ != DISP_E_EXCEPTION) return result_;
    *exception = {};
    exception->scode = number_;
    exception->bstrSource = SysAllocString(L"Client.Object");
    exception->bstrDescription = SysAllocString(L"It has no name yet");
    return result_;
  }

 private:
  const HRESULT result_;
  const SCODE number_;
};

/// A client's object that stands for a value, which may be an object again.
class Standing final : public foreign::Object<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS*,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    const faults::OutsideCall outside;
    EXPECT_EQ(DISPID_VALUE, member);
    EXPECT_EQ(DISPATCH_PROPERTYGET, flags);
    ++calls;
    return VariantCopy(result, &value.raw());
  }

  Value value;
  int calls = 0;
};

class AboutLinesTest : public AboutFixture {
 protected:
  client::Outcome Show(const Value& line) const {
    return root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", L"a", line});
  }
  std::wstring Source() const { return std::wstring(L"Zepkit10.") + RootName(); }
};
RUN_WITH_BOTH_ROOTS(AboutLinesTest);

TEST_P(AboutLinesTest, ArraysWithoutElementsAreNoLines) {
  for (const Value& none : {text_array::Make(0, {}), value_array::Unallocated(),
                            value_array::Unallocated(VT_BSTR), value_array::Variants(4, {})}) {
    EXPECT_EQ(L"First\r\na\r\nb", TextsShown({L"", Value::Nothing(), L"First", L"a", none, L"b"}));
    EXPECT_EQ(L"First", TextsShown({L"", Value::Nothing(), L"First", none, none}));
  }
}

TEST_P(AboutLinesTest, StandAloneWithoutAFirstLine) {
  EXPECT_EQ(L"a\r\nb", TextsShown({L"", Value::Nothing(), L"", L"a", L"b"}));
  EXPECT_EQ(L"\r\nb", TextsShown({L"", Value::Nothing(), L"", L"", L"b"}));
}

TEST_P(AboutLinesTest, ArraysComeByReferenceToo) {
  Value lines = text_array::Make(5, {L"b", L"c"});
  Value mixed = value_array::Variants(-2, {L"d", 5, L"e"});
  EXPECT_EQ(
      L"First\r\na\r\nb\r\nc\r\nd\r\n5\r\ne",
      TextsShown({L"", Value::Nothing(), L"First", L"a", lines.Reference(), mixed.Reference()}));
}

TEST_P(AboutLinesTest, AnArrayOfSeveralDimensionsIsRefused) {
  EXPECT_ROOT_ERROR(Show(value_array::Grid(3)), zepErrBadCall);
}

TEST_P(AboutLinesTest, ObjectsStandForTheirDefaultValues) {
  Standing inner, outer;
  inner.value = L"by way of two";
  outer.value = &inner;
  EXPECT_EQ(L"First\r\na\r\nby way of two\r\nb",
            TextsShown({L"", Value::Nothing(), L"First", L"a", Value(&outer), L"b"}));
  EXPECT_EQ(1, inner.calls);
  EXPECT_EQ(1, outer.calls);
  inner.value = 1.5;
  EXPECT_EQ(L"First\r\n1.5", TextsShown({L"", Value::Nothing(), L"First",
                                         value_array::Make(VT_DISPATCH, 0, {Value(&inner)})}));
}

TEST_P(AboutLinesTest, ObjectsInACircleAreNoText) {
  Standing circle;
  circle.value = &circle;
  EXPECT_ERROR(Show(&circle), 13, Source(), L"Type mismatch");
  circle.value = Value();
}

TEST_P(AboutLinesTest, AnObjectsOwnErrorPassesOn) {
  Failing own(DISP_E_EXCEPTION, static_cast<SCODE>(0x800A0000u + 1234));
  EXPECT_ERROR(Show(&own), 1234, L"Client.Object", L"It has no name yet");
  Failing foreign_number(DISP_E_EXCEPTION, static_cast<SCODE>(0x80041234u));
  EXPECT_ERROR(Show(&foreign_number), static_cast<long>(0x80041234u), L"Client.Object",
               L"It has no name yet");
  Failing exhausted(E_OUTOFMEMORY);
  EXPECT_ERROR(Show(&exhausted), 7, Source(), L"Out of memory");
}

TEST_P(AboutLinesTest, AnObjectWithoutDefaultValueIsNoText) {
  Failing without(DISP_E_MEMBERNOTFOUND);
  EXPECT_ERROR(Show(&without), 13, Source(), L"Type mismatch");
  Standing nothing;
  nothing.value = Value::Nothing();
  EXPECT_ERROR(Show(&nothing), 13, Source(), L"Type mismatch");
}

TEST_P(AboutLinesTest, AnObjectMayShowAWindowItselfMeanwhile) {
  std::wstring inner, outer;
  Meddler meddler([&] {
    ReadInto(&inner);
    EXPECT_OK(root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"Inner", L"x"}));
    ReadInto(&outer);
  });
  EXPECT_OK(Show(&meddler));
  EXPECT_EQ(L"Inner\r\nx", inner);
  EXPECT_EQ(L"First\r\na\r\n7", outer);
}

TEST_P(AboutLinesTest, AnObjectMayDropTheRootMeanwhile) {
  std::wstring text;
  ReadInto(&text);
  Meddler meddler([&] {
    root_.Reset();
    EXPECT_EQ(S_FALSE, component::CanUnloadNow());
  });
  EXPECT_OK(root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", L"a", Value(&meddler)}));
  EXPECT_EQ(L"First\r\na\r\n7", text);
}

TEST_P(AboutLinesTest, AnObjectMayDropWhatElseIsShownMeanwhile) {
  Microsoft::WRL::ComPtr<IPictureDisp> icon;
  ASSERT_EQ(S_OK,
            root_.CallObject(L"LoadZepIcon", {0})
                .get()
                ->QueryInterface(IID_IPictureDisp, reinterpret_cast<void**>(icon.GetAddressOf())));
  BSTR caption = SysAllocString(L"Caption"), first = SysAllocString(L"First");
  Meddler meddler([&] {
    icon.Reset();
    SysReAllocString(&caption, L"?");
    SysReAllocString(&first, L"?");
  });
  Value lines = value_array::Variants(0, {Value(&meddler)});
  std::wstring text;
  user_.Do([](HWND window) { EXPECT_EQ(L"Caption", AboutUser::TextOf(window)); });
  ReadInto(&text);
  EXPECT_EQ(S_OK, ShowDirectly(caption, icon.Get(), first, &lines.raw().parray));
  EXPECT_EQ(L"First\r\n7", text);
  SysFreeString(caption);
  SysFreeString(first);
}

}  // namespace

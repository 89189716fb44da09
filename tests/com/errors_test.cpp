// How errors reach clients: numbers, sources, texts in both languages.

#include <cstring>
#include <optional>

#include "com/german_user.h"
#include "com/var_sets_fixture.h"
#include "platform/error_text.h"

namespace {

using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

constexpr WORD kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr WORD kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);

HMODULE Module() { return GetModuleHandleW(component::ComponentPath().c_str()); }

/// An entry of the string table in exactly one language.
std::optional<std::wstring> Entry(UINT id, WORD language) {
  const HRSRC block = FindResourceExW(Module(), RT_STRING, MAKEINTRESOURCEW(id / 16 + 1), language);
  if (!block) return {};
  const auto* text = static_cast<const wchar_t*>(LockResource(LoadResource(Module(), block)));
  for (UINT i = 0; i < id % 16; ++i) text += 1 + *text;
  if (*text == 0) return {};
  return std::wstring(text + 1, *text);
}

/// The text of a runtime error in exactly one language.
std::wstring Message(DWORD number, WORD language) {
  wchar_t text[200];
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      Module(), number, language, text, std::size(text), nullptr);
  return std::wstring(text, length);
}

class ErrorTextsTest : public component::Test {};

TEST_F(ErrorTextsTest, TheStringTableHoldsTheLibrarysErrorsInBothLanguages) {
  for (const zep_error::Text& text : zep_error::Texts()) {
    const auto id = static_cast<UINT>(text.number - zepErrAwaitTerm + 1001);
    EXPECT_EQ(text.english, Entry(id, kEnglish)) << id;
    EXPECT_EQ(text.german, Entry(id, kGerman)) << id;
  }
}

TEST_F(ErrorTextsTest, TheStringTableHoldsNothingElse) {
  for (UINT id = 0; id < 0x10000; ++id) {
    const bool expected = id >= 1002 && id <= 1020;
    EXPECT_EQ(expected, Entry(id, kEnglish).has_value()) << id;
    EXPECT_EQ(expected, Entry(id, kGerman).has_value()) << id;
  }
}

TEST_F(ErrorTextsTest, RuntimeErrorsHaveTextsInBothLanguages) {
  for (const DWORD number : {5, 6, 7, 9, 11, 13, 28}) {
    EXPECT_NE(L"", Message(number, kEnglish)) << number;
    EXPECT_NE(L"", Message(number, kGerman)) << number;
    EXPECT_NE(Message(number, kEnglish), Message(number, kGerman)) << number;
  }
  EXPECT_EQ(L"Division by zero\r\n", Message(11, kEnglish));
  EXPECT_EQ(L"Überlauf\r\n", Message(6, kGerman));
}

TEST_F(ErrorTextsTest, NumbersWithoutAnEntryNameThemselves) {
  if (!component::IsLinked()) GTEST_SKIP() << "looks into the component";
  const auto text = [](std::int32_t number) {
    const std::u16string found = zepkit10::ErrorText(number);
    return std::wstring(found.begin(), found.end());
  };
  EXPECT_EQ(L"Description for err #-2147220480 not found", text(zepErrAwaitTerm));
  EXPECT_EQ(L"Description for err #-2147220460 not found", text(zepErrIndexOutOfRange + 1));
  EXPECT_EQ(L"Description for err #-1 not found", text(-1));
  EXPECT_EQ(L"Description for err #-2147483648 not found", text(INT_MIN));
  EXPECT_EQ(L"Description for err #2147483647 not found", text(INT_MAX));
}

class ErrorsTest : public WithVarSet {
 protected:
  Object expression_ = Create(CLSID_Expression);
};

TEST_P(ErrorsTest, TheSourceNamesTheClassThatRaised) {
  const Object variable = set_.CallObject(L"Add", {L"x"});
  EXPECT_ZEP_ERROR(sets_.Get(L"Item", {L"none"}), zepErrItemNotExistant, L"VarSets");
  EXPECT_ZEP_ERROR(set_.Call(L"Add", {L"xy"}), zepErrBadCall, L"VarSet");
  EXPECT_ZEP_ERROR(variable.Let(L"Name", {L"xy"}), zepErrBadPropValue, L"Variable");
  EXPECT_ZEP_ERROR(expression_.Let(L"EString", {L"#"}), zepErrBadPropValue, L"Expression");
  EXPECT_ERROR(global_.Call(L"Compute", {L"x"}), zepErrBadCharInTerm, L"Zepkit10",
               L"Bad character in function term");
}

TEST_P(ErrorsTest, ADeletedObjectsErrorHasNoTextOfItsOwn) {
  EXPECT_OK(set_.Call(L"Delete"));
  EXPECT_ERROR(set_.Get(L"Name"), -2147220480, L"Zepkit10.VarSet",
               L"Description for err #-2147220480 not found");
}

// set.Parent(1): what it holds is read first.
TEST_P(ErrorsTest, ArgumentsForWhatADeletedObjectHeldMeetItsError) {
  if (GetParam() != client::Binding::kDispatch) GTEST_SKIP() << "late binding only";
  EXPECT_OK(set_.Call(L"Delete"));
  EXPECT_ERROR(set_.Get(L"Parent", {1}), -2147220480, L"Zepkit10.VarSet",
               L"Description for err #-2147220480 not found");
}

TEST_P(ErrorsTest, GermanTextsForAGermanUser) {
  SKIP_UNLESS_GERMAN();
  const Object variable = set_.CallObject(L"Add", {L"x"});
  const std::pair<client::Outcome, ZepErrors> raised[] = {
      {expression_.Let(L"EString", {L"(x"}), zepErrBadParam},
      {expression_.Let(L"EString", {L"#"}), zepErrBadPropValue},
      {sets_.Get(L"Item", {L"none"}), zepErrItemNotExistant},
      {sets_.Call(L"Add", {L"set"}), zepErrItemAlreadyExists},
      {global_.Call(L"Compute", {L"x"}), zepErrBadCharInTerm},
      {expression_.Call(L"Transform", {L"|x)|", zepMTCharToOp}), zepErrBadBrackets},
      {expression_.Call(L"Transform", {L"|x", zepMTCharToOp}), zepErrBadValueDashes},
      {expression_.Let(L"EString", {L"(x)(x)"}), zepErrExtractTerm},
      {sets_.CallObject(L"Add").Get(L"Name"), zepErrBadCallContext},
      {set_.Call(L"Add", {L"xy"}), zepErrBadCall}};
  for (const auto& [outcome, number] : raised) {
    EXPECT_EQ(number, outcome.number);
    for (const zep_error::Text& text : zep_error::Texts()) {
      if (text.number == number) {
        EXPECT_EQ(text.german, outcome.description);
      }
    }
  }
  EXPECT_OK(variable.Call(L"Delete"));
  EXPECT_ERROR(variable.Get(L"Name"), -2147220480, L"Zepkit10.Variable",
               L"Description for err #-2147220480 not found");
}

TEST_P(ErrorsTest, GermanTextsOfRuntimeErrors) {
  SKIP_UNLESS_GERMAN();
  EXPECT_OK(expression_.Let(L"EString", {L"1/0"}));
  EXPECT_ERROR(expression_.Get(L"Value"), 11, L"Zepkit10.Expression", L"Division durch Null");
  EXPECT_OK(expression_.Let(L"EString", {L"EXP1000"}));
  EXPECT_ERROR(expression_.Get(L"Value"), 6, L"Zepkit10.Expression", L"Überlauf");
  EXPECT_OK(expression_.Let(L"EString", {L"LOG0"}));
  EXPECT_ERROR(expression_.Get(L"Value"), 5, L"Zepkit10.Expression",
               L"Ungültiger Prozeduraufruf oder ungültiges Argument");
  EXPECT_ERROR(set_.Get(L"Item", {1}), 9, L"Zepkit10.VarSet",
               L"Index außerhalb des gültigen Bereichs");
}

TEST_P(ErrorsTest, TheVtableLeavesAnErrorInfo) {
  ComPtr<_Expression> expression;
  ASSERT_EQ(S_OK, expression_.get()->QueryInterface(IID_PPV_ARGS(&expression)));
  BSTR faulty = SysAllocString(L"1/0");
  EXPECT_EQ(S_OK, expression->put_EString(faulty));
  SysFreeString(faulty);
  double value = 1;
  EXPECT_EQ(static_cast<HRESULT>(0x800A000B), expression->get_Value(&value));
  EXPECT_EQ(0.0, value);
  ComPtr<IErrorInfo> info;
  ASSERT_EQ(S_OK, GetErrorInfo(0, &info));
  GUID iid = GUID_NULL;
  BSTR help_file = nullptr;
  DWORD help_context = 1;
  EXPECT_EQ(S_OK, info->GetGUID(&iid));
  EXPECT_EQ(IID__Expression, iid);
  info->GetHelpFile(&help_file);
  EXPECT_EQ(0u, SysStringLen(help_file));
  info->GetHelpContext(&help_context);
  EXPECT_EQ(0u, help_context);
  // A refused call leaves none from before.
  EXPECT_FALSE(SUCCEEDED(expression->get_Value(&value)));
  EXPECT_EQ(E_POINTER, expression->get_Value(nullptr));
  EXPECT_EQ(S_FALSE, GetErrorInfo(0, info.ReleaseAndGetAddressOf()));
}

TEST_P(ErrorsTest, LateBoundCallsLeaveHelpUnset) {
  wchar_t name[] = L"Add";
  wchar_t* member = name;
  DISPID id = DISPID_UNKNOWN;
  ASSERT_EQ(S_OK, set_.get()->GetIDsOfNames(IID_NULL, &member, 1, LOCALE_USER_DEFAULT, &id));
  Value argument = L"xy", result = 1;
  DISPPARAMS one{&argument.raw(), nullptr, 1, 0};
  EXCEPINFO raised;
  std::memset(&raised, 0xCC, sizeof raised);
  VariantClear(&result.raw());
  EXPECT_EQ(DISP_E_EXCEPTION, set_.get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                 &one, &result.raw(), &raised, nullptr));
  EXPECT_EQ(zepErrBadCall, raised.scode);
  EXPECT_EQ(0, raised.wCode);
  EXPECT_EQ(nullptr, raised.bstrHelpFile);
  EXPECT_EQ(0u, raised.dwHelpContext);
  EXPECT_EQ(nullptr, raised.pfnDeferredFillIn);
  EXPECT_EQ(VT_EMPTY, result.type());
  SysFreeString(raised.bstrSource);
  SysFreeString(raised.bstrDescription);
  // A client that wants no details gets none.
  EXPECT_EQ(DISP_E_EXCEPTION, set_.get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                 &one, nullptr, nullptr, nullptr));
}

RUN_IN_BOTH_BINDINGS(ErrorsTest);

}  // namespace

// What an about window shows, and how it is closed.
#include "com/about_fixture.h"
#include "com/foreign.h"
#include "com/text_array.h"
#include "com/value_array.h"

namespace {

using client::Value;
using namespace std::string_literals;

class AboutBoxTest : public AboutFixture {};
RUN_WITH_BOTH_ROOTS(AboutBoxTest);

TEST_P(AboutBoxTest, ShowsCaptionFirstLineAndLines) {
  user_.Do([](HWND window) { EXPECT_EQ(L"About", AboutUser::TextOf(window)); });
  EXPECT_EQ(L"First\r\nSecond\r\nThird",
            TextsShown({L"About", Value::Nothing(), L"First", L"Second", L"Third"}));
}

TEST_P(AboutBoxTest, WithoutLines) {
  const Value none = text_array::Make(0, {});
  EXPECT_EQ(L"First", TextsShown({L"", Value::Nothing(), L"First", none}));
  EXPECT_EQ(L"", TextsShown({L"", Value::Nothing(), L"", none}));
  // Wine's ITypeInfo::Invoke wants an element for every parameter array.
  if (root_.binding() == client::Binding::kVtable) return;
  EXPECT_EQ(L"First", TextsShown({L"", Value::Nothing(), L"First"}));
}

TEST_P(AboutBoxTest, ArraysOfLinesStandInTheirPlaces) {
  const Value lines = text_array::Make(5, {L"b", L"c"});
  EXPECT_EQ(L"First\r\na\r\nb\r\nc\r\nd",
            TextsShown({L"", Value::Nothing(), L"First", L"a", lines, L"d"}));
}

TEST_P(AboutBoxTest, EmptyLinesAreShown) {
  EXPECT_EQ(L"First\r\na\r\n\r\nb", TextsShown({L"", Value::Nothing(), L"First", L"a", L"", L"b"}));
  EXPECT_EQ(L"First\r\n", TextsShown({L"", Value::Nothing(), L"First", L""}));
}

TEST_P(AboutBoxTest, LinesBecomeText) {
  Value text = L"by reference";
  EXPECT_EQ(L"First\r\n7\r\n1.5\r\nTrue\r\n\r\nby reference",
            TextsShown({L"", Value::Nothing(), L"First", 7, 1.5, true, Value(), text.Reference()}));
}

TEST_P(AboutBoxTest, LineBreaksAndNuls) {
  user_.Do([](HWND window) { EXPECT_EQ(L"a b c", AboutUser::TextOf(window)); });
  EXPECT_EQ(L"First line\r\nsecond\r\na b\r\nc",
            TextsShown({L"a\0b\nc"s, Value::Nothing(), L"First\0line\nsecond"s, L"a\0b\r\nc"s}));
}

TEST_P(AboutBoxTest, RefusesLinesThatAreNoTextBeforeItShowsAnything) {
  const std::wstring source = std::wstring(L"Zepkit10.") + RootName();
  const auto expect_refusal = [&](const Value& line) {
    EXPECT_ERROR(root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", L"a", line}), 13,
                 source, L"Type mismatch");
  };
  expect_refusal(Value::Null());
  expect_refusal(Value::Missing());
  expect_refusal(Value::Nothing());
  expect_refusal(value_array::Make(VT_VARIANT, 0, {text_array::Make(0, {L"a"})}));
  // Wine's ITypeInfo::Invoke does not release the objects in a parameter array.
  if (root_.binding() == client::Binding::kDispatch) expect_refusal(root_);
}

TEST_P(AboutBoxTest, OkEnterEscapeAndTheWindowsOwnCloseEndIt) {
  const auto show = [&] {
    return root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", L"a"});
  };
  user_.Press(IDOK);
  EXPECT_OK(show());
  user_.Type(VK_RETURN);
  EXPECT_OK(show());
  user_.Type(VK_ESCAPE);
  EXPECT_OK(show());
  user_.Do([](HWND window) { PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0); });
  EXPECT_OK(show());
  EXPECT_EQ(nullptr, AboutUser::Window());
}

TEST_P(AboutBoxTest, StaysAliveWithoutItsClient) {
  user_
      .Do([&](HWND) {
        root_.Reset();
        EXPECT_EQ(S_FALSE, component::CanUnloadNow());
      })
      .Press(IDOK);
  EXPECT_OK(root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", L"a"}));
}

TEST_P(AboutBoxTest, MillionsOfCharactersScroll) {
  const std::wstring line(1'000'000, L'x');
  user_
      .Do([](HWND window) {
        HWND bar = AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR);
        EXPECT_TRUE(IsWindowVisible(bar));
        EXPECT_EQ(0, GetScrollPos(bar, SB_CTL));
        RECT frame{};
        GetWindowRect(window, &frame);
        EXPECT_LE(frame.bottom - frame.top, GetSystemMetrics(SM_CYSCREEN));
      })
      .Type(VK_END)
      .Await([](HWND window) {
        return GetScrollPos(AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR), SB_CTL) > 10000;
      })
      .Press(IDOK);
  EXPECT_OK(root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", line}));
}

TEST_P(AboutBoxTest, AHundredThousandLinesScroll) {
  const Value lines = value_array::Make(VT_I4, 0, std::vector<Value>(100'000, Value(42)));
  user_.Type(VK_END)
      .Await([](HWND window) {
        return GetScrollPos(AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR), SB_CTL) >
               1'000'000;
      })
      .Press(IDOK);
  EXPECT_OK(root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", lines}));
}

TEST_P(AboutBoxTest, TextsThatAreNullAreEmpty) {
  std::wstring text = L"?";
  SAFEARRAY* lines = nullptr;
  user_.Do([](HWND window) { EXPECT_EQ(L"", AboutUser::TextOf(window)); });
  ReadInto(&text);
  EXPECT_EQ(S_OK, ShowDirectly(nullptr, nullptr, nullptr, &lines));
  EXPECT_EQ(L"", text);
}

TEST_P(AboutBoxTest, ANullPointerForTheLinesIsRefused) {
  BSTR text = SysAllocString(L"Text");
  EXPECT_EQ(E_POINTER, ShowDirectly(text, nullptr, text, nullptr));
  SysFreeString(text);
}

TEST_P(AboutBoxTest, ArgumentsComeByReferenceToo) {
  Value caption = L"Caption", first = L"First", line = L"a";
  Value icon = root_.CallObject(L"LoadZepIcon", {0});
  user_.Do([](HWND window) {
    EXPECT_EQ(L"Caption", AboutUser::TextOf(window));
    EXPECT_EQ(32, AboutUser::SizeOf(AboutUser::Control(window, ZEPKIT10_ABOUT_ICON)).cx);
  });
  EXPECT_EQ(L"First\r\na", TextsShown({caption.Reference(), icon.Reference(), first.Reference(),
                                       line.Reference()}));
  VARIANT object;
  object.vt = VT_BYREF | VT_DISPATCH;
  object.ppdispVal = &icon.raw().pdispVal;
  user_.Do([](HWND window) {
    EXPECT_EQ(32, AboutUser::SizeOf(AboutUser::Control(window, ZEPKIT10_ABOUT_ICON)).cx);
  });
  EXPECT_EQ(L"First\r\na", TextsShown({L"", Value(object), L"First", L"a"}));
}

TEST_P(AboutBoxTest, LinesStandInOrderFromAnyLowerBound) {
  for (const LONG lower_bound : std::initializer_list<LONG>{3, -1, LONG_MIN, LONG_MAX - 3}) {
    Value lines =
        value_array::Variants(lower_bound, {L"a", text_array::Make(7, {L"b", L"c"}), L"d"});
    std::wstring text;
    ReadInto(&text);
    BSTR first = SysAllocString(L"First");
    EXPECT_EQ(S_OK, ShowDirectly(nullptr, nullptr, first, &lines.raw().parray));
    EXPECT_EQ(L"First\r\na\r\nb\r\nc\r\nd", text) << lower_bound;
    SysFreeString(first);
  }
}

TEST_P(AboutBoxTest, AmpersandsAreShown) {
  user_.Do([](HWND window) { EXPECT_EQ(L"&About && more", AboutUser::TextOf(window)); });
  EXPECT_EQ(L"&First\r\na & b\r\n&&",
            TextsShown({L"&About && more", Value::Nothing(), L"&First", L"a & b", L"&&"}));
}

TEST_P(AboutBoxTest, HugeTextsAreShown) {
  const std::wstring huge(5'000'000, L'x');
  user_.Do([&](HWND window) { EXPECT_EQ(huge, AboutUser::TextOf(window)); });
  EXPECT_EQ(huge.substr(0, 0x10000), TextsShown({huge, Value::Nothing(), huge, L"a"}));
}

TEST_P(AboutBoxTest, WhatIsReadToUsersIsCutBetweenCharacters) {
  const std::wstring start(0xFFFF, L'x');
  EXPECT_EQ(start, TextsShown({L"", Value::Nothing(), start + L"\xD83D\xDE00", L"a"}));
  EXPECT_EQ(start, TextsShown({L"", Value::Nothing(), start, L"a"}));
  EXPECT_EQ(start + L"y", TextsShown({L"", Value::Nothing(), start + L"y", L"a"}));
}

}  // namespace

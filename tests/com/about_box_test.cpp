// What an about window shows, and how it is closed.
#include "com/about_user.h"
#include "com/both_roots.h"
#include "com/text_array.h"
#include "com/value_array.h"
#include "platform/resource_ids.h"

namespace {

using client::Value;
using namespace std::string_literals;

class AboutBoxTest : public BothRoots {
 protected:
  /// Shows a window and closes it after its texts have been read.
  std::wstring TextsShown(client::Object::Arguments arguments) {
    std::wstring text;
    user_
        .Do([&](HWND window) {
          text = AboutUser::TextOf(AboutUser::Control(window, ZEPKIT10_ABOUT_TEXT));
        })
        .Press(IDOK);
    EXPECT_OK(root_.Call(L"ShowAbout", arguments));
    return text;
  }

  AboutUser user_;
};
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

}  // namespace

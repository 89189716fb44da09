#include <gtest/gtest.h>
#include <ocidl.h>

#include "com/every_member/calls.h"
#include "platform/resource_ids.h"

namespace call_table {

Rows CallsOfAboutBoxes(const std::wstring& root, AboutUser& user) {
  const auto close = [&user] {
    user.Do([](HWND window) {
          EXPECT_EQ(L"About", AboutUser::TextOf(window));
          EXPECT_EQ(L"First\r\nSecond",
                    AboutUser::TextOf(AboutUser::Control(window, ZEPKIT10_ABOUT_TEXT)));
        })
        .Press(IDOK);
  };
  const auto expect_icon = [](const Value& result) {
    ASSERT_EQ(VT_DISPATCH, result.type());
    Microsoft::WRL::ComPtr<IPicture> picture;
    ASSERT_EQ(S_OK, result.raw().pdispVal->QueryInterface(IID_PPV_ARGS(&picture)));
    SHORT type = PICTYPE_NONE;
    EXPECT_EQ(S_OK, picture->get_Type(&type));
    EXPECT_EQ(PICTYPE_ICON, type);
  };
  return {
      Run(root + L".LoadZepIcon", {zepIcoWrench}).Satisfies(expect_icon),
      Do(close),
      Run(root + L".ShowAbout", {L"About", Value::Nothing(), L"First", L"Second"}),
  };
}

}  // namespace call_table

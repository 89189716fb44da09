#pragma once

#include "com/about_user.h"
#include "com/both_roots.h"
#include "platform/resource_ids.h"

/// About windows that a root shows, with a user who closes them.
class AboutFixture : public BothRoots {
 protected:
  /// Shows a window and closes it after its texts have been read.
  std::wstring TextsShown(client::Object::Arguments arguments) {
    std::wstring text;
    ReadInto(&text);
    EXPECT_OK(root_.Call(L"ShowAbout", arguments));
    return text;
  }

  /// Has the texts of the next window read, and the window closed.
  void ReadInto(std::wstring* text) {
    user_
        .Do([text](HWND window) {
          *text = AboutUser::TextOf(AboutUser::Control(window, ZEPKIT10_ABOUT_TEXT));
        })
        .Press(IDOK);
  }

  /// As code does that was compiled against the interface: nothing converts or checks what it hands
  /// over.
  HRESULT ShowDirectly(BSTR caption, IPictureDisp* icon, BSTR first_line, SAFEARRAY** lines) const {
    Microsoft::WRL::ComPtr<_Global> global;
    Microsoft::WRL::ComPtr<_Library> library;
    if (SUCCEEDED(root_.get()->QueryInterface(IID_PPV_ARGS(&global)))) {
      return global->ShowAbout(caption, icon, first_line, lines);
    }
    EXPECT_EQ(S_OK, root_.get()->QueryInterface(IID_PPV_ARGS(&library)));
    return library->ShowAbout(caption, icon, first_line, lines);
  }

  AboutUser user_;
};

// Pictures in about windows.
#include <olectl.h>

#include "com/about_fixture.h"
#include "com/canvas.h"
#include "com/client_picture.h"
#include "com/foreign.h"
#include "com/library_icon.h"
#include "platform/picture.h"

namespace {

using client::Value;
using Microsoft::WRL::ComPtr;

/// A client's object that is said to be a picture, and is what a test makes of it.
class Pretender final : public foreign::Object<IPictureDisp> {
 public:
  explicit Pretender(HRESULT refusal) : refusal_(refusal) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (iid != IID_IPicture && iid != IID_IPictureDisp) return Object::QueryInterface(iid, result);
    *result = nullptr;
    return iid == IID_IPicture ? refusal_ : E_NOINTERFACE;
  }

 private:
  const HRESULT refusal_;
};

ComPtr<IPictureDisp> EmptyPicture() {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_NONE;
  ComPtr<IPictureDisp> picture;
  EXPECT_EQ(S_OK, OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE,
                                           reinterpret_cast<void**>(picture.GetAddressOf())));
  return picture;
}

class AboutPictureTest : public AboutFixture {
 protected:
  /// The size of the picture in a window that shows this one.
  SIZE Shown(const Value& icon) {
    SIZE size{};
    user_
        .Do([&](HWND window) {
          size = AboutUser::SizeOf(AboutUser::Control(window, ZEPKIT10_ABOUT_ICON));
        })
        .Press(IDOK);
    EXPECT_OK(root_.Call(L"ShowAbout", {L"", icon, L"First", L"a"}));
    return size;
  }

  HRESULT Show(IPictureDisp& picture) const {
    SAFEARRAY* lines = nullptr;
    return ShowDirectly(nullptr, &picture, nullptr, &lines);
  }

  /// Has a window draw its icon onto a canvas.
  static void DrawIconOf(HWND window, const Canvas& canvas) {
    DRAWITEMSTRUCT item{};
    item.CtlType = ODT_STATIC;
    item.CtlID = ZEPKIT10_ABOUT_ICON;
    item.hwndItem = AboutUser::Control(window, ZEPKIT10_ABOUT_ICON);
    item.hDC = canvas.context();
    const SIZE size = AboutUser::SizeOf(item.hwndItem);
    item.rcItem = {0, 0, size.cx, size.cy};
    SendMessageW(window, WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
  }
};
RUN_WITH_BOTH_ROOTS(AboutPictureTest);

TEST_P(AboutPictureTest, NothingShowsTheLibrarysIcon) { EXPECT_EQ(48, Shown(Value::Nothing()).cx); }

TEST_P(AboutPictureTest, APictureWithoutImageShowsTheLibrarysIcon) {
  EXPECT_EQ(48, Shown(EmptyPicture().Get()).cx);
}

TEST_P(AboutPictureTest, PicturesKeepTheirSize) {
  EXPECT_EQ(32, Shown(root_.CallObject(L"LoadZepIcon", {0})).cx);
}

TEST_P(AboutPictureTest, LargePicturesAreReduced) {
  zepkit10::Surface surface;
  const SIZE shown = Shown(zepkit10::MakePicture(surface).Get());
  EXPECT_LE(shown.cx, 128);
  EXPECT_LE(shown.cy, 128);
  EXPECT_GT(shown.cx, 1);
  EXPECT_GT(shown.cy, 1);
}

TEST_P(AboutPictureTest, WhatIsNoPictureIsRefused) {
  const auto show = [&](const Value& icon) {
    return root_.Call(L"ShowAbout", {L"", icon, L"First", L"a"}).result;
  };
  // Early bound it is the platform that asks for the interface.
  const bool late = root_.binding() == client::Binding::kDispatch;
  EXPECT_EQ(late ? DISP_E_TYPEMISMATCH : E_NOINTERFACE, show(root_));
}

TEST_P(AboutPictureTest, WhatIsNoObjectIsNoPicture) {
  for (const Value& icon : {Value(5), Value(L"icon"), Value()}) {
    EXPECT_EQ(DISP_E_TYPEMISMATCH, root_.Call(L"ShowAbout", {L"", icon, L"First", L"a"}).result)
        << icon;
  }
}

TEST_P(AboutPictureTest, NullIsNothingWhereItComesFromAScript) {
  // Scripts write null for no object; early bound it is the platform that converts.
  if (root_.binding() == client::Binding::kVtable) return;
  EXPECT_EQ(48, Shown(Value::Null()).cx);
}

TEST_P(AboutPictureTest, ObjectsThatAreNoPicturesAreRefused) {
  for (const auto& [refusal, number] :
       {std::pair<HRESULT, long>{E_NOINTERFACE, 481}, {E_OUTOFMEMORY, 7}}) {
    Pretender pretender(refusal);
    const ULONG before = pretender.references;
    EXPECT_EQ(static_cast<HRESULT>(0x800A0000L + number), Show(pretender));
    EXPECT_EQ(before, pretender.references);
  }
}

TEST_P(AboutPictureTest, ErrorsOfAPicturePassOn) {
  for (const auto& [failure, passed_on] :
       {std::pair<HRESULT, HRESULT>{E_FAIL, E_FAIL},
        {static_cast<HRESULT>(0x800A0141), static_cast<HRESULT>(0x800A0141)},
        {E_OUTOFMEMORY, static_cast<HRESULT>(0x800A0007)}}) {
    for (HRESULT ClientPicture::*member :
         {&ClientPicture::type_result, &ClientPicture::width_result,
          &ClientPicture::height_result}) {
      ClientPicture picture;
      picture.*member = failure;
      EXPECT_EQ(passed_on, Show(picture));
      EXPECT_EQ(1u, picture.references);
      EXPECT_EQ(nullptr, AboutUser::Window());
    }
  }
}

TEST_P(AboutPictureTest, APictureThatDoesNotDrawDoesNoHarm) {
  ClientPicture picture;
  picture.render_result = E_FAIL;
  user_.Do([](HWND window) { DrawIconOf(window, Canvas(32, 32)); }).Press(IDOK);
  EXPECT_EQ(S_OK, Show(picture));
  EXPECT_LE(1, picture.renders);
  EXPECT_EQ(1u, picture.references);
}

TEST_P(AboutPictureTest, APictureMayCloseTheWindow) {
  ClientPicture picture;
  user_.Do([&](HWND window) {
    picture.renders = 0;
    picture.on_render = [window] { SendMessageW(window, WM_CLOSE, 0, 0); };
    DrawIconOf(window, Canvas(32, 32));
    EXPECT_FALSE(IsWindow(window));
  });
  EXPECT_EQ(S_OK, Show(picture));
  EXPECT_EQ(1, picture.renders);
  EXPECT_EQ(1u, picture.references);
}

TEST_P(AboutPictureTest, IsDrawnAsItIs) {
  zepkit10::Surface surface;
  surface.Resize(32, 32);
  surface.Clear();
  surface.SetScale(0, 0, 31, 31);
  for (int i = 0; i < 32 * 32; ++i) surface.Point(i % 32, i / 32, 0x030201u * (i % 80 + 1));
  surface.Point(0, 0, 0x0000FF);
  const Canvas drawn(32, 32);
  user_.Do([&](HWND window) { DrawIconOf(window, drawn); }).Press(IDOK);
  EXPECT_OK(
      root_.Call(L"ShowAbout", {L"", Value(zepkit10::MakePicture(surface).Get()), L"", L"a"}));
  const auto pixels = drawn.Pixels();
  EXPECT_EQ(surface.Pixels(), pixels);
  EXPECT_EQ(1, std::count(pixels.begin(), pixels.end(), pixels[0])) << "one corner is marked";
}

TEST_P(AboutPictureTest, TheLibrarysIconIsDrawnForNothing) {
  const Canvas drawn(48, 48), expected(48, 48);
  const RECT area{0, 0, 48, 48};
  FillRect(expected.context(), &area, GetSysColorBrush(COLOR_WINDOW));
  ComponentFile().DrawIcon(expected.context(), 48);
  user_.Do([&](HWND window) { DrawIconOf(window, drawn); }).Press(IDOK);
  EXPECT_OK(root_.Call(L"ShowAbout", {L"", Value::Nothing(), L"First", L"a"}));
  EXPECT_EQ(expected.Pixels(), drawn.Pixels());
}

}  // namespace

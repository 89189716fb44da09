// The library's icon as a picture, and pictures in about windows.
#include <olectl.h>

#include "com/about_user.h"
#include "com/both_roots.h"
#include "platform/resource_ids.h"
#include "platform/picture.h"

namespace {

using client::Value;
using Microsoft::WRL::ComPtr;

/// A client's object that is said to be a picture, and is what a test makes of it.
class Pretender final : public IPictureDisp {
 public:
  explicit Pretender(HRESULT refusal) : refusal_(refusal) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    *result = nullptr;
    if (iid == IID_IPicture) return refusal_;
    if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
    *result = static_cast<IDispatch*>(this);  // IPictureDisp is no interface of its own
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

  ULONG references() const { return references_; }

 private:
  const HRESULT refusal_;
  ULONG references_ = 1;
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

class AboutIconTest : public BothRoots {
 protected:
  /// The size of the picture in a window that shows this one.
  SIZE Shown(const Value& icon) {
    SIZE size{};
    AboutUser user;
    user.Do([&](HWND window) {
          size = AboutUser::SizeOf(AboutUser::Control(window, ZEPKIT10_ABOUT_ICON));
        })
        .Press(IDOK);
    EXPECT_OK(root_.Call(L"ShowAbout", {L"", icon, L"First", L"a"}));
    return size;
  }
};
RUN_WITH_BOTH_ROOTS(AboutIconTest);

TEST_P(AboutIconTest, IsAPictureOfTypeIcon) {
  ComPtr<IPicture> picture;
  const client::Object icon = root_.CallObject(L"LoadZepIcon", {zepIcoWrench});
  ASSERT_TRUE(icon);
  ASSERT_EQ(S_OK, icon.get()->QueryInterface(IID_PPV_ARGS(&picture)));
  SHORT type = PICTYPE_NONE;
  EXPECT_EQ(S_OK, picture->get_Type(&type));
  EXPECT_EQ(PICTYPE_ICON, type);
  OLE_HANDLE handle = 0;
  EXPECT_EQ(S_OK, picture->get_Handle(&handle));
  ICONINFO info{};
  ASSERT_TRUE(GetIconInfo(reinterpret_cast<HICON>(static_cast<LONG_PTR>(handle)), &info));
  BITMAP bitmap{};
  GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
  EXPECT_EQ(GetSystemMetrics(SM_CXICON), bitmap.bmWidth);
  EXPECT_EQ(GetSystemMetrics(SM_CYICON), bitmap.bmHeight);
  DeleteObject(info.hbmColor);
  DeleteObject(info.hbmMask);
}

TEST_P(AboutIconTest, BothNamesAreTheOneNumber) {
  EXPECT_EQ(0, zepIcoZepkit);
  EXPECT_EQ(0, zepIcoWrench);
  const client::Object first = root_.CallObject(L"LoadZepIcon", {0});
  const client::Object second = root_.CallObject(L"LoadZepIcon", {0});
  EXPECT_NE(first.get(), second.get());
}

TEST_P(AboutIconTest, OtherNumbersAreRefused) {
  for (const int number : {1, -1, 2, 32767, INT_MIN, INT_MAX}) {
    EXPECT_ROOT_ERROR(root_.Call(L"LoadZepIcon", {number}), zepErrBadCall);
  }
}

TEST_P(AboutIconTest, NothingShowsTheLibrarysIcon) { EXPECT_EQ(48, Shown(Value::Nothing()).cx); }

TEST_P(AboutIconTest, APictureWithoutImageShowsTheLibrarysIcon) {
  EXPECT_EQ(48, Shown(EmptyPicture().Get()).cx);
}

TEST_P(AboutIconTest, PicturesKeepTheirSize) {
  EXPECT_EQ(32, Shown(root_.CallObject(L"LoadZepIcon", {0})).cx);
}

TEST_P(AboutIconTest, LargePicturesAreReduced) {
  zepkit10::Surface surface;
  const SIZE shown = Shown(zepkit10::MakePicture(surface).Get());
  EXPECT_LE(shown.cx, 128);
  EXPECT_LE(shown.cy, 128);
  EXPECT_GT(shown.cx, 1);
  EXPECT_GT(shown.cy, 1);
}

TEST_P(AboutIconTest, WhatIsNoPictureIsRefused) {
  const auto show = [&](const Value& icon) {
    return root_.Call(L"ShowAbout", {L"", icon, L"First", L"a"}).result;
  };
  EXPECT_EQ(DISP_E_TYPEMISMATCH, show(5));
  // Early bound it is the platform that asks for the interface.
  const bool late = root_.binding() == client::Binding::kDispatch;
  EXPECT_EQ(late ? DISP_E_TYPEMISMATCH : E_NOINTERFACE, show(root_));
}

TEST_P(AboutIconTest, ErrorsOfPicturesPassOn) {
  for (const auto& [refusal, number] :
       {std::pair<HRESULT, long>{E_NOINTERFACE, 481}, {E_OUTOFMEMORY, 7}}) {
    Pretender pretender(refusal);
    const ULONG before = pretender.references();
    // As by code that was compiled against the interface: it need not ask for IPictureDisp.
    const auto show = [&] {
      ComPtr<IDispatch> root;
      root = root_.get();
      SAFEARRAY* lines = nullptr;
      ComPtr<_Global> global;
      ComPtr<_Library> library;
      BSTR text = SysAllocString(L"");
      const HRESULT hr =
          SUCCEEDED(root.As(&global))
              ? global->ShowAbout(text, &pretender, text, &lines)
              : (root.As(&library), library->ShowAbout(text, &pretender, text, &lines));
      SysFreeString(text);
      return hr;
    };
    EXPECT_EQ(static_cast<HRESULT>(0x800A0000L + number), show());
    EXPECT_EQ(before, pretender.references());
  }
}

TEST(LibraryIconTest, HasAnImageForEverySize) {
  for (const int size : {16, 32, 48, 256}) {
    const auto module =
        LoadLibraryExW(component::ComponentPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(nullptr, module);
    const auto icon = static_cast<HICON>(
        LoadImageW(module, MAKEINTRESOURCEW(1), IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
    EXPECT_NE(nullptr, icon) << size;
    DestroyIcon(icon);
    FreeLibrary(module);
  }
}

}  // namespace

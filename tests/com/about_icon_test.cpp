// The library's icon as a picture, and as a resource.
#include <olectl.h>

#include "com/both_roots.h"
#include "com/canvas.h"
#include "com/gdi_objects.h"
#include "com/import_hook.h"
#include "com/library_icon.h"

DECLARE_IMPORT(DestroyIcon, 4);
DECLARE_IMPORT(GetSystemMetrics, 4);
DECLARE_IMPORT(LoadImageW, 24);
DECLARE_IMPORT(OleCreatePictureIndirect, 16);

namespace {

using Microsoft::WRL::ComPtr;

using AboutIconTest = BothRoots;
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

TEST_P(AboutIconTest, IconsAreDestroyedWithTheirPictures) {
  root_.CallObject(L"LoadZepIcon", {0});
  const int before = GdiObjects();
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(root_.CallObject(L"LoadZepIcon", {0}));
  EXPECT_LT(GdiObjects(), before + 5);
}

TEST_P(AboutIconTest, ShowsTheResource) {
  ComPtr<IPicture> picture;
  const client::Object icon = root_.CallObject(L"LoadZepIcon", {zepIcoZepkit});
  ASSERT_TRUE(icon);
  ASSERT_EQ(S_OK, icon.get()->QueryInterface(IID_PPV_ARGS(&picture)));
  OLE_HANDLE handle = 0;
  EXPECT_EQ(S_OK, picture->get_Handle(&handle));
  const Canvas blank(32, 32), drawn(32, 32), expected(32, 32);
  ASSERT_EQ(32, GetSystemMetrics(SM_CXICON));
  EXPECT_TRUE(DrawIconEx(drawn.context(), 0, 0,
                         reinterpret_cast<HICON>(static_cast<LONG_PTR>(handle)), 32, 32, 0, nullptr,
                         DI_NORMAL));
  ComponentFile().DrawIcon(expected.context(), 32);
  EXPECT_NE(blank.Pixels(), expected.Pixels());
  EXPECT_EQ(expected.Pixels(), drawn.Pixels());
}

/// What the resource compiler makes of an icon: the images, each with its size.
#pragma pack(push, 1)
struct IconDirectory {
  WORD reserved, type, count;
  struct Entry {
    BYTE width, height, colours, reserved;  // 0 stands for 256 pixels
    WORD planes, bits;
    DWORD size;
    WORD id;
  } entries[1];
};
#pragma pack(pop)

TEST(LibraryIconTest, HasAnImageForEverySize) {
  const ComponentFile file;
  HRSRC found = FindResourceW(file.get(), MAKEINTRESOURCEW(1), RT_GROUP_ICON);
  ASSERT_NE(nullptr, found);
  const auto& icon =
      *static_cast<const IconDirectory*>(LockResource(LoadResource(file.get(), found)));
  ASSERT_EQ(6u + 14u * icon.count, SizeofResource(file.get(), found));
  std::vector<int> widths, heights;
  for (int i = 0; i < icon.count; ++i) {
    widths.push_back(icon.entries[i].width);
    heights.push_back(icon.entries[i].height);
    EXPECT_EQ(32, icon.entries[i].bits);
  }
  EXPECT_EQ((std::vector{16, 32, 48, 0}), widths);
  EXPECT_EQ(widths, heights);
}

BOOL CALLBACK AddName(HMODULE, const wchar_t*, wchar_t* name, LONG_PTR names) {
  reinterpret_cast<std::vector<LONG_PTR>*>(names)->push_back(reinterpret_cast<LONG_PTR>(name));
  return TRUE;
}

TEST(LibraryIconTest, IsTheOnlyOne) {
  std::vector<LONG_PTR> names;
  EXPECT_TRUE(EnumResourceNamesW(ComponentFile().get(), RT_GROUP_ICON, AddName,
                                 reinterpret_cast<LONG_PTR>(&names)));
  EXPECT_EQ(std::vector<LONG_PTR>{1}, names);
}

DWORD reason = 0;
HANDLE WINAPI RefuseImage(HINSTANCE, const wchar_t*, UINT, int, int, UINT) {
  if (reason) SetLastError(reason);
  return nullptr;
}
HRESULT refusal = S_OK;
HRESULT WINAPI RefusePicture(PICTDESC*, const IID&, BOOL, void** result) {
  *result = nullptr;
  return refusal;
}
DWORD error_before = 0;
int WINAPI LeaveAnError(int index) {
  const int metric = ImportHook<&__imp_GetSystemMetrics>::kSystem(index);
  SetLastError(error_before);
  return metric;
}
std::vector<HICON> destroyed;
BOOL WINAPI KeepDestroyed(HICON icon) {
  destroyed.push_back(icon);
  return ImportHook<&__imp_DestroyIcon>::kSystem(icon);
}

class AboutIconRefusalTest : public BothRoots {
 protected:
  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "only what is linked can be hooked";
    destroyed.clear();
  }

  client::Outcome Load() const { return root_.Call(L"LoadZepIcon", {0}); }

  /// As code does that was compiled against the interface; the result is null.
  HRESULT LoadDirectly() const {
    auto* picture = reinterpret_cast<IPictureDisp*>(root_.get());
    ComPtr<_Global> global;
    ComPtr<_Library> library;
    HRESULT loaded;
    if (SUCCEEDED(root_.get()->QueryInterface(IID_PPV_ARGS(&global)))) {
      loaded = global->LoadZepIcon(zepIcoZepkit, &picture);
    } else {
      EXPECT_EQ(S_OK, root_.get()->QueryInterface(IID_PPV_ARGS(&library)));
      loaded = library->LoadZepIcon(zepIcoZepkit, &picture);
    }
    EXPECT_EQ(nullptr, picture);
    return loaded;
  }

  const std::wstring source_ = std::wstring(L"Zepkit10.") + RootName();

 private:
  const ImportHook<&__imp_DestroyIcon> icons_{KeepDestroyed};
};
RUN_WITH_BOTH_ROOTS(AboutIconRefusalTest);

TEST_P(AboutIconRefusalTest, OfTheImageIsAnError) {
  const ImportHook<&__imp_LoadImageW> images(RefuseImage);
  const ImportHook<&__imp_GetSystemMetrics> metrics(LeaveAnError);
  reason = ERROR_NOT_ENOUGH_MEMORY;
  EXPECT_ERROR(Load(), 7, source_, L"Out of memory");
  reason = ERROR_RESOURCE_NAME_NOT_FOUND;
  EXPECT_ERROR(Load(), 361, source_, L"Can't load or unload this object");
  // What failed before is not taken for the reason.
  error_before = ERROR_NOT_ENOUGH_MEMORY;
  reason = 0;
  EXPECT_ERROR(Load(), 361, source_, L"Can't load or unload this object");
  EXPECT_EQ(static_cast<HRESULT>(0x800A0169), LoadDirectly());
  EXPECT_TRUE(destroyed.empty());
}

TEST_P(AboutIconRefusalTest, OfThePictureIsAnErrorAndDestroysTheImage) {
  const ImportHook<&__imp_OleCreatePictureIndirect> pictures(RefusePicture);
  refusal = E_OUTOFMEMORY;
  EXPECT_ERROR(Load(), 7, source_, L"Out of memory");
  EXPECT_EQ(1u, destroyed.size());
  refusal = CTL_E_INVALIDPICTURE;
  EXPECT_EQ(CTL_E_INVALIDPICTURE, LoadDirectly());
  EXPECT_EQ(2u, destroyed.size());
}

}  // namespace

// The library's own file and type library, as they are found and kept.
#include "platform/automation/module.h"

#include "com/import_hook.h"
#include "com/probe/probe_test.h"

DECLARE_IMPORT(GetModuleFileNameW, 12);
DECLARE_IMPORT(LoadTypeLibEx, 12);

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;
using NameHook = ImportHook<&__imp_GetModuleFileNameW>;
using LoadHook = ImportHook<&__imp_LoadTypeLibEx>;

const std::wstring kLongPath = L"C:\\" + std::wstring(1000, L'x') + L"\\zepkit10.dll";

/// As the system: a path that does not fit is cut, and its length is that of the room.
DWORD WINAPI TellLongPath(HMODULE, wchar_t* path, DWORD room) {
  const std::size_t length = kLongPath.copy(path, room);
  if (length < room) path[length] = L'\0';
  return static_cast<DWORD>(length);
}

TEST(ModuleTest, ItsPathMayBeLong) {
  const NameHook hook(TellLongPath);
  EXPECT_EQ(kLongPath, ModulePath());
}

class TypeLibraryOfModule : public probe::LeakTest {
 protected:
  static inline ComPtr<ITypeLib> first;

  /// Another thread loads the library while this one does.
  static HRESULT WINAPI LoadAfterAnother(LPCOLESTR path, REGKIND kind, ITypeLib** result) {
    if (!std::exchange(another_did_, true)) {
      EXPECT_EQ(S_OK, LoadOwnTypeLibrary(&first));
    }
    return LoadHook::kSystem(path, kind, result);
  }

 private:
  static inline bool another_did_ = false;
};

TEST_F(TypeLibraryOfModule, IsTheOneThatWasLoadedFirst) {
  ForgetTypeLibrary();
  ComPtr<ITypeLib> second;
  {
    const LoadHook hook(LoadAfterAnother);
    EXPECT_EQ(S_OK, LoadOwnTypeLibrary(&second));
  }
  EXPECT_TRUE(first);
  EXPECT_EQ(first, second);
  first.Reset();
}

}  // namespace
}  // namespace zepkit10

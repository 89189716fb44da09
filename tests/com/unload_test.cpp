// The end of the DLL while its apartments still share objects.
#include <windows.h>

#include <thread>

#include "com/both_bindings.h"

namespace {

using client::Object;
using Microsoft::WRL::ComPtr;

/// A copy of the DLL, so that it can be unloaded while the tests go on with the DLL itself.
class Copy {
 public:
  Copy() {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"zep", 0, path_);
    EXPECT_TRUE(CopyFileW(component::ComponentPath().c_str(), path_, FALSE));
    module_ = LoadLibraryW(path_);
    EXPECT_NE(nullptr, module_);
  }
  ~Copy() { DeleteFileW(path_); }

  /// Leaves something of every family in what the calling thread's apartment shares.
  void Use() const {
    const Object client = Create(CLSID_Global);
    const Object variables = client.GetObject(L"VarSets").CallObject(L"Add", {L"variables"});
    EXPECT_OK(variables.Call(L"Add", {L"x"}));
    EXPECT_OK(client.GetObject(L"Charts").Call(L"Add", {L"chart"}));
    EXPECT_OK(client.GetObject(L"GlobalMessages").Call(L"Add", {L"message"}));
    EXPECT_OK(client.GetObject(L"DebugPrintOuts").Let(L"Enabled", {false}));
    for (const GUID& each :
         {CLSID_Counter, CLSID_Expression, CLSID_Messages, CLSID_List, CLSID_ZepVariant,
          CLSID_DocHand, CLSID_FileDialog, CLSID_MousePointer}) {
      EXPECT_TRUE(Create(each));
    }
    EXPECT_OK(client.GetObject(L"CommandLine").Get(L"Count"));
    EXPECT_OK(client.GetObject(L"Keyboard").Get(L"Shift"));
  }

  /// True if the DLL let itself be unloaded.
  bool Unload() const {
    EXPECT_EQ(S_OK, Export<decltype(DllCanUnloadNow)>("DllCanUnloadNow")());
    EXPECT_TRUE(FreeLibrary(module_));
    return GetModuleHandleW(path_) == nullptr;
  }

 private:
  Object Create(REFCLSID clsid) const {
    ComPtr<IClassFactory> factory;
    ComPtr<IDispatch> made;
    EXPECT_EQ(S_OK, Export<decltype(DllGetClassObject)>("DllGetClassObject")(
                        clsid, IID_PPV_ARGS(&factory)));
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_PPV_ARGS(&made)));
    return {made.Get(), client::Binding::kDispatch};
  }

  template <class Function>
  Function* Export(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  wchar_t path_[MAX_PATH];
  HMODULE module_;
};

class UnloadTest : public component::Test {
 protected:
  void SetUp() override {
    if (component::IsLinked()) GTEST_SKIP() << "needs the DLL";
  }
};

TEST_F(UnloadTest, TheDllEndsWhatItsApartmentShares) {
  const Copy copy;
  copy.Use();
  EXPECT_TRUE(copy.Unload());
}

TEST_F(UnloadTest, TheDllEndsWhatOtherApartmentsShare) {
  const Copy copy;
  copy.Use();
  const HANDLE used = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const HANDLE unloaded = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread other([&] {
    copy.Use();
    SetEvent(used);
    WaitForSingleObject(unloaded, INFINITE);
  });
  WaitForSingleObject(used, INFINITE);
  EXPECT_TRUE(copy.Unload());
  SetEvent(unloaded);
  other.join();
  CloseHandle(used);
  CloseHandle(unloaded);
}

/// What a process has only so much of.
struct Scarce {
  DWORD slot = TlsAlloc(), handles = 0;
  Scarce() {
    TlsFree(slot);
    GetProcessHandleCount(GetCurrentProcess(), &handles);
  }
  bool operator==(const Scarce&) const = default;
};

TEST_F(UnloadTest, AThousandRoundsLeaveNoSlotAndNoHandle) {
  const auto round = [] {
    const Copy copy;
    copy.Use();
    EXPECT_TRUE(copy.Unload());
  };
  for (int i = 0; i < 3; ++i) round();  // the platform keeps what it needs for itself
  const Scarce before;
  for (int i = 0; i < 1000 && !HasFailure(); ++i) round();
  EXPECT_EQ(before, Scarce());
}

}  // namespace

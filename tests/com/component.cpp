#include "com/component.h"

#include "com/client.h"
#include "com/fault_plan.h"
#include "faults/failing_memory.h"
#include "frame/shared_library_object.h"
#include "platform/automation/module.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** result);
STDAPI DllCanUnloadNow();

namespace component {
namespace {

/// The path after --dll=, or empty.
std::wstring DllPath() {
  const std::wstring option = L"--dll=";
  for (int i = 1; i < __argc; ++i) {
    const std::string narrow = __argv[i];
    const std::wstring argument(narrow.begin(), narrow.end());
    if (argument.starts_with(option)) return argument.substr(option.size());
  }
  return {};
}

HMODULE loaded = nullptr;

HMODULE Dll() {
  if (!loaded) loaded = LoadLibraryW(DllPath().c_str());
  return loaded;
}

template <class Function>
Function* Export(const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(Dll(), name)));
}

}  // namespace

bool IsLinked() {
  static const bool linked = DllPath().empty();
  return linked;
}

std::wstring ComponentPath() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(IsLinked() ? nullptr : Dll(), path, MAX_PATH);
  return path;
}

HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** result) {
  if (IsLinked()) return DllGetClassObject(clsid, iid, result);
  return Export<decltype(DllGetClassObject)>("DllGetClassObject")(clsid, iid, result);
}

HRESULT CanUnloadNow() {
  if (IsLinked()) return DllCanUnloadNow();
  return Export<decltype(DllCanUnloadNow)>("DllCanUnloadNow")();
}

HRESULT CreateInstance(REFCLSID clsid, REFIID iid, void** result) {
  Microsoft::WRL::ComPtr<IClassFactory> factory;
  const HRESULT hr = GetClassObject(clsid, IID_PPV_ARGS(&factory));
  if (FAILED(hr)) return hr;
  return failing_memory::Perform("new",
                                 [&] { return factory->CreateInstance(nullptr, iid, result); });
}

void Test::TearDown() { failing_memory::EndBody(); }

Test::Test()
    : unloadable_at_start_(CanUnloadNow()),
      live_at_start_(IsLinked() ? zepkit10::LiveObjects() : 0) {}

Test::~Test() {
  EXPECT_EQ(unloadable_at_start_, CanUnloadNow()) << "a client's reference is left";
  if (IsLinked()) {
    zepkit10::EndApartment();
    EXPECT_EQ(live_at_start_, zepkit10::LiveObjects()) << "objects are left";
  } else if (CanUnloadNow() == S_OK) {
    // The next test finds the DLL as fresh as this one did.
    FreeLibrary(loaded);
    EXPECT_EQ(nullptr, GetModuleHandleW(DllPath().c_str())) << "the DLL stays loaded";
    loaded = nullptr;
  }
}

}  // namespace component

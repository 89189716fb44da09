#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <string>

#include "Zepkit10.h"

/// The component under test: linked into the test program, so that its objects can be counted, or
/// the DLL named by --dll=PATH.
namespace component {

/// True where the component is linked into the test program.
bool IsLinked();

/// The file that carries the component and its type library.
std::wstring ComponentPath();

HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** result);
HRESULT CanUnloadNow();

/// Creates an object of a class through its class object.
HRESULT CreateInstance(REFCLSID clsid, REFIID iid, void** result);

template <class Interface>
Microsoft::WRL::ComPtr<Interface> Create(REFCLSID clsid) {
  Microsoft::WRL::ComPtr<Interface> made;
  EXPECT_EQ(S_OK, CreateInstance(clsid, IID_PPV_ARGS(&made)));
  return made;
}

/// Every test ends with nothing of the component alive: no object that a client holds and, once the
/// apartment's shared library is gone, no object at all. Looked at in the destructor, after those
/// of the members of a test's own fixture; what an earlier test left is held against that test
/// alone.
class Test : public testing::Test {
 protected:
  Test();
  ~Test() override;
  void TearDown() override;

 private:
  const HRESULT unloadable_at_start_;
  const long live_at_start_;
};

}  // namespace component

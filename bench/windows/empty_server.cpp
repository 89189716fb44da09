// The least component that there can be: one class, one method, no texts, no type library. What it
// takes to load it, to create an object and to call it is what the system takes.
#include "empty_server.h"

#include <windows.h>
#include <unknwn.h>

namespace {

/// One object for all clients.
class Empty final : public IEmpty {
 public:
  STDMETHODIMP QueryInterface(REFIID, void** result) override {
    *result = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP Increment(LONG by) override {
    value_ += by;
    return S_OK;
  }

 private:
  LONG value_ = 0;
} object;

class EmptyFactory final : public IClassFactory {
 public:
  STDMETHODIMP QueryInterface(REFIID, void** result) override {
    *result = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** result) override {
    return object.QueryInterface(iid, result);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }
} factory;

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE
    DllGetClassObject(REFCLSID, REFIID iid, void** result) {
  return factory.QueryInterface(iid, result);
}

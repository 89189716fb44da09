// A collection of a script, whose engine serves IDispatchEx in full and IDispatch in part.
#include <dispex.h>
#include <olectl.h>

#include "com/both_roots.h"
#include "com/fault_plan.h"
#include "com/foreign.h"

namespace {

using client::Value;

/// Items "one" and "two". IDispatch knows no names and calls nothing.
class Scripted final : public foreign::Object<IDispatchEx> {
 public:
  static constexpr DISPID kCount = 21, kItem = 22;

  /// Raised by Item, to be filled in when the error is read.
  bool fails = false;

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    ADD_FAILURE() << "called through IDispatch";
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetDispID(BSTR name, DWORD flags, DISPID* id) override {
    EXPECT_EQ(static_cast<DWORD>(fdexNameCaseInsensitive), flags);
    const std::wstring_view asked(name, SysStringLen(name));
    *id = asked == L"Count" ? kCount : asked == L"Item" ? kItem : DISPID_UNKNOWN;
    return *id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE InvokeEx(DISPID id, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* exception, IServiceProvider*) override {
    const faults::OutsideCall outside;
    if (id == kCount) {
      result->vt = VT_I4;
      result->lVal = 2;
      return S_OK;
    }
    if (id != kItem) return DISP_E_MEMBERNOTFOUND;
    if (fails) {
      exception->pfnDeferredFillIn = FillIn;
      return DISP_E_EXCEPTION;
    }
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString(parameters->rgvarg[0].lVal == 1 ? L"one" : L"two");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE DeleteMemberByName(BSTR, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DeleteMemberByDispID(DISPID) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMemberProperties(DISPID, DWORD, DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetMemberName(DISPID, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetNextDispID(DWORD, DISPID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetNameSpaceParent(IUnknown**) override { return E_NOTIMPL; }

 private:
  static HRESULT STDMETHODCALLTYPE FillIn(EXCEPINFO* exception) {
    const faults::OutsideCall outside;
    exception->scode = CTL_E_DIVISIONBYZERO;
    exception->bstrSource = SysAllocString(L"Client.Script");
    exception->bstrDescription = SysAllocString(L"told late");
    return S_OK;
  }
};

class ScriptObjectTest : public BothRoots {
 protected:
  client::Outcome ListOf(Scripted& scripted) const {
    return root_.Call(L"CollectionToList", {Value(static_cast<IDispatch*>(&scripted))});
  }
};

TEST_P(ScriptObjectTest, IsCalledAsItsEngineCallsIt) {
  Scripted scripted;
  EXPECT_EQ(ListOf(scripted), L"one two");
  EXPECT_EQ(1u, scripted.references);
}

TEST_P(ScriptObjectTest, ErrorsMayBeToldWhenTheyAreRead) {
  Scripted scripted;
  scripted.fails = true;
  EXPECT_ERROR(ListOf(scripted), 11, L"Client.Script", L"told late");
  EXPECT_EQ(1u, scripted.references);
}

RUN_WITH_BOTH_ROOTS(ScriptObjectTest);

}  // namespace

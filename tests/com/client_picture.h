#pragma once

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <functional>

/// A picture of a client's, of a size and with errors that a test chooses.
class ClientPicture final : public IPictureDisp, public IPicture {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (iid == IID_IPicture) {
      *result = static_cast<IPicture*>(this);
    } else if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID_IPictureDisp) {
      *result = static_cast<IPictureDisp*>(this);
    } else {
      *result = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

  HRESULT STDMETHODCALLTYPE get_Type(SHORT* type) override {
    *type = PICTYPE_BITMAP;
    return type_result;
  }
  HRESULT STDMETHODCALLTYPE get_Width(OLE_XSIZE_HIMETRIC* width) override {
    *width = 847;
    return width_result;
  }
  HRESULT STDMETHODCALLTYPE get_Height(OLE_YSIZE_HIMETRIC* height) override {
    *height = 847;
    return height_result;
  }
  HRESULT STDMETHODCALLTYPE Render(HDC, LONG, LONG, LONG, LONG, OLE_XPOS_HIMETRIC,
                                   OLE_YPOS_HIMETRIC, OLE_XSIZE_HIMETRIC, OLE_YSIZE_HIMETRIC,
                                   const RECT*) override {
    ++renders;
    if (on_render) on_render();
    return render_result;
  }
  HRESULT STDMETHODCALLTYPE get_Handle(OLE_HANDLE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_hPal(OLE_HANDLE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE set_hPal(OLE_HANDLE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CurDC(HDC*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SelectPicture(HDC, HDC*, OLE_HANDLE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_KeepOriginalFormat(BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_KeepOriginalFormat(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE PictureChanged() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SaveAsFile(IStream*, BOOL, LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Attributes(DWORD*) override { return E_NOTIMPL; }

  HRESULT type_result = S_OK, width_result = S_OK, height_result = S_OK, render_result = S_OK;
  std::function<void()> on_render;
  int renders = 0;
  ULONG references = 1;
};

#pragma once

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <functional>

#include "com/foreign.h"

/// A picture of a client's, of a size and with errors that a test chooses.
class ClientPicture final : public foreign::Object<IPictureDisp>, public IPicture {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (iid != IID_IPicture) return Object::QueryInterface(iid, result);
    *result = static_cast<IPicture*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return Object::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return Object::Release(); }

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
};

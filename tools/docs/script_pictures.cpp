// Runs a VBScript whose charts become pictures:
//     script_pictures SCRIPT.vbs
// The script finds an object Pictures, whose Save writes a picture object into a PNG file, as in
//     Pictures.Save chart.Picture, "Z:\pictures\first.png"
// and an object WScript, whose Echo says nothing.
#include <windows.h>
#include <activscp.h>
#include <gdiplus.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using Microsoft::WRL::ComPtr;

const CLSID kVbScript = {0xb54f3741, 0x5b07, 0x11cf, {0xa4, 0xb0, 0, 0xaa, 0, 0x4a, 0x55, 0xe8}};
const CLSID kPng = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0, 0, 0xf8, 0x1e, 0xf3, 0x2e}};
constexpr DISPID kSave = 1, kEcho = 2;

HRESULT SavePng(IUnknown* picture, const wchar_t* path) {
  ComPtr<IPicture> bitmap;
  OLE_HANDLE handle = 0;
  if (!picture || FAILED(picture->QueryInterface(IID_PPV_ARGS(&bitmap))))
    return DISP_E_TYPEMISMATCH;
  bitmap->get_Handle(&handle);
  Gdiplus::Bitmap image(reinterpret_cast<HBITMAP>(static_cast<INT_PTR>(static_cast<int>(handle))),
                        nullptr);
  return image.Save(path, &kPng, nullptr) == Gdiplus::Ok ? S_OK : E_FAIL;
}

/// Both objects that the script finds. Lives on the stack of main, longer than the script.
class Host final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *result = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    *ids = !lstrcmpiW(*names, L"Save") ? kSave : !lstrcmpiW(*names, L"Echo") ? kEcho : -1;
    return *ids == -1 ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    if (member == kEcho) return S_OK;
    // Arguments come last first.
    const VARIANT* arguments = given->rgvarg;
    if (given->cArgs != 2 || arguments[1].vt != VT_DISPATCH || arguments[0].vt != VT_BSTR) {
      return DISP_E_TYPEMISMATCH;
    }
    return SavePng(arguments[1].pdispVal, arguments[0].bstrVal);
  }
};

/// Hands the objects to the script, and tells where it fails.
class Site final : public IActiveScriptSite {
 public:
  explicit Site(Host* host) : host_(host) {}
  bool Failed() const { return failed_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IActiveScriptSite;
    *result = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetLCID(LCID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD wanted, IUnknown** item,
                                        ITypeInfo**) override {
    if (wanted & SCRIPTINFO_IUNKNOWN) *item = host_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
    EXCEPINFO info{};
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    failed_ = true;
    error->GetExceptionInfo(&info);
    error->GetSourcePosition(&context, &line, &column);
    std::fprintf(stderr, "line %lu: 0x%08lx %ls\n", line + 1,
                 static_cast<unsigned long>(info.scode),
                 info.bstrDescription ? info.bstrDescription : L"");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

 private:
  Host* host_;
  bool failed_ = false;
};

bool Run(const std::wstring& text) {
  Host host;
  Site site(&host);
  ComPtr<IActiveScript> engine;
  ComPtr<IActiveScriptParse> parser;
  if (FAILED(CoCreateInstance(kVbScript, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&engine))) ||
      FAILED(engine.As(&parser)) || FAILED(parser->InitNew()) ||
      FAILED(engine->SetScriptSite(&site))) {
    std::fprintf(stderr, "there is no VBScript\n");
    return false;
  }
  engine->AddNamedItem(L"Pictures", SCRIPTITEM_ISVISIBLE);
  engine->AddNamedItem(L"WScript", SCRIPTITEM_ISVISIBLE);
  parser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 1, SCRIPTTEXT_ISVISIBLE,
                          nullptr, nullptr);
  engine->SetScriptState(SCRIPTSTATE_STARTED);
  engine->Close();
  return !site.Failed();
}

}  // namespace

int main(int argc, char** argv) {
  std::ifstream file(argc == 2 ? argv[1] : "", std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (text.empty()) {
    std::fprintf(stderr, "usage: script_pictures SCRIPT.vbs\n");
    return 2;
  }
  OleInitialize(nullptr);
  ULONG_PTR gdiplus = 0;
  const Gdiplus::GdiplusStartupInput startup;
  Gdiplus::GdiplusStartup(&gdiplus, &startup, nullptr);
  const bool done = Run(std::wstring(text.begin(), text.end()));
  Gdiplus::GdiplusShutdown(gdiplus);
  OleUninitialize();
  return done ? 0 : 1;
}

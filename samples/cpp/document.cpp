// Edits a text file through a document and a view of its content, and tells every event that the
// document raises:
//     document FILE
// Needs nothing of the component but its header and GUIDs, both made from the type library.
#include <windows.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>

#include "Zepkit10.h"

namespace {

using Microsoft::WRL::ComPtr;

void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  std::fprintf(stderr, "%s failed: 0x%08lx\n", what, static_cast<unsigned long>(result));
  std::exit(1);
}

/// A BSTR for the length of a call.
class Text {
 public:
  explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

/// Hears the document's events. Arguments come last first.
class Listener final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___DocHand;
    *result = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // Lives on the stack of main, longer than the document.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    constexpr const char* kNames[] = {"",
                                      "ContentChange",
                                      "FileClose",
                                      "FileNameChange",
                                      "FileOpen",
                                      "FilePartlyRead",
                                      "FilePartlyWritten",
                                      "FileRead",
                                      "FileSaved",
                                      "FileSavedAs",
                                      "FileTitleChanged",
                                      "NewFile",
                                      "StatusChange"};
    std::printf("    %s", kNames[event]);
    if (event == 5 || event == 6) {
      std::printf(" %ld of %ld bytes, %g %%", given->rgvarg[1].lVal, given->rgvarg[2].lVal,
                  given->rgvarg[0].fltVal);
    } else if (event == 12) {
      std::printf(" %ld", given->rgvarg[0].lVal);
    }
    std::printf("\n");
    return S_OK;
  }
};

void Edit(_DocHand* document, BSTR path) {
  std::printf("Opened\n");
  Check(document->OpenFile(path, VARIANT_FALSE), "DocHand.OpenFile");

  // A view shows a part of the content, and what is written into it is written into the content.
  std::printf("The second word is replaced\n");
  ComPtr<_ZepVariant> content, word;
  Check(document->get_Content(&content), "DocHand.Content");
  Check(content->get_Range(7, 5, VARIANT_TRUE, &word), "ZepVariant.Range");
  Check(word->put_DataString(Text(L"component")), "ZepVariant.DataString");
  BSTR text = nullptr;
  Check(content->get_DataString(&text), "ZepVariant.DataString");
  std::printf("    now the content is: %ls\n", text);
  SysFreeString(text);

  std::printf("Saved\n");
  Check(document->Save(), "DocHand.Save");
  std::printf("Closed\n");
  Check(document->CloseFile(), "DocHand.CloseFile");
}

void WriteFirstText(const wchar_t* path) {
  const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, "Hello world", 11, &written, nullptr);
  CloseHandle(file);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: document FILE\n");
    return 2;
  }
  WriteFirstText(arguments[1]);
  Check(CoInitialize(nullptr), "CoInitialize");
  {
    Listener listener;
    ComPtr<_DocHand> document;
    Check(CoCreateInstance(CLSID_DocHand, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&document)),
          "creating Zepkit10.DocHand (is the component registered?)");
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> events;
    DWORD cookie = 0;
    Check(document.As(&container), "IConnectionPointContainer");
    Check(container->FindConnectionPoint(DIID___DocHand, &events), "events of DocHand");
    Check(events->Advise(&listener, &cookie), "Advise");
    Edit(document.Get(), Text(arguments[1]));
    events->Unadvise(cookie);
  }
  CoUninitialize();
  return 0;
}

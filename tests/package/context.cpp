// Does what Microsoft.Windows.ActCtx does for scripts: creates objects in the context of a
// manifest.
//     context.exe MANIFEST PROGID…
// Prints each object's class as its type information tells it, and the type library's name.
#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <cstdio>

#include "Zepkit10.h"

using Microsoft::WRL::ComPtr;

int Fail(const wchar_t* what, long code) {
  std::printf("%ls: %08lx\n", what, static_cast<unsigned long>(code));
  return 1;
}

template <typename Source>
void PrintName(const wchar_t* what, Source& source, MEMBERID member) {
  BSTR name = nullptr;
  source.GetDocumentation(member, &name, nullptr, nullptr, nullptr);
  std::printf("%ls: %ls\n", what, name);
  SysFreeString(name);
}

int Create(const wchar_t* prog_id) {
  CLSID clsid;
  ComPtr<IProvideClassInfo> object;
  ComPtr<ITypeInfo> type;
  HRESULT hr = CLSIDFromProgID(prog_id, &clsid);
  if (SUCCEEDED(hr)) {
    hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object));
  }
  if (SUCCEEDED(hr)) hr = object->GetClassInfo(&type);
  if (FAILED(hr)) return Fail(prog_id, hr);
  PrintName(prog_id, *type.Get(), MEMBERID_NIL);
  return 0;
}

int Run(int count, wchar_t** names) {
  int failed = 0;
  for (int i = 0; i < count; ++i) failed |= Create(names[i]);
  ComPtr<ITypeLib> library;
  const HRESULT hr = LoadRegTypeLib(LIBID_Zepkit10, 1, 0, LOCALE_NEUTRAL, &library);
  if (FAILED(hr)) return Fail(L"library", hr);
  PrintName(L"library", *library.Get(), -1);
  return failed;
}

int wmain(int count, wchar_t** arguments) {
  if (count < 2) return 2;
  ACTCTXW manifest{sizeof manifest};
  manifest.lpSource = arguments[1];
  const HANDLE context = CreateActCtxW(&manifest);
  ULONG_PTR cookie = 0;
  if (context == INVALID_HANDLE_VALUE || !ActivateActCtx(context, &cookie)) {
    return Fail(arguments[1], static_cast<long>(GetLastError()));
  }
  CoInitialize(nullptr);
  const int result = Run(count - 2, arguments + 2);
  CoUninitialize();
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(context);
  return result;
}

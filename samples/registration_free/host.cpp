// A program that uses Zepkit10 without registration.
//
//     x86_64-w64-mingw32-g++ -std=c++20 -static -Iinclude samples/host.cpp include/Zepkit10_i.c
//         -lole32 -loleaut32 -o host.exe
//
// Beside host.exe lie host.exe.manifest and, of the program's bitness, zepkit10.dll and
// Zepkit10.Classes.manifest.
#include <windows.h>
#include <wrl/client.h>

#include <cstdio>

#include "Zepkit10.h"

using Microsoft::WRL::ComPtr;

bool Run() {
  CLSID clsid;
  ComPtr<_Global> zepkit;
  HRESULT hr = CLSIDFromProgID(L"Zepkit10.Global", &clsid);
  if (SUCCEEDED(hr)) {
    hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID__Global, &zepkit);
  }
  if (FAILED(hr)) {
    std::printf("Zepkit10 was not found: %08lx\n", static_cast<unsigned long>(hr));
    return false;
  }
  double value = 0;
  BSTR term = SysAllocString(L"2*SIN(0)^2+|1-3|");
  hr = zepkit->Compute(term, &value);
  SysFreeString(term);
  std::printf("%g\n", value);
  return SUCCEEDED(hr);
}

int main() {
  CoInitialize(nullptr);
  const bool good = Run();
  CoUninitialize();
  return good ? 0 : 1;
}

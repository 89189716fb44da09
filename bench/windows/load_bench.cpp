// What it takes to load the component, to create an object and to call it, beside a component that
// does nothing else. Both are unloaded each time; what is looked up in the registry before is the
// same for all. The system's share waits for other processes, so the least of many times counts.
#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "client.h"
#include "empty_server.h"
#include "measure.h"

namespace {

using Microsoft::WRL::ComPtr;

std::wstring BesideThisProgram(const wchar_t* name) {
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program(path, length);
  return program.substr(0, program.rfind(L'\\') + 1) + name;
}

/// Loads a server, creates an object and calls it.
template <class Interface, class Call>
double TimeOfFirstCall(const std::wstring& path, REFCLSID clsid, REFIID iid, Call call) {
  const double start = Seconds();
  const HMODULE server = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  Check(server ? S_OK : HRESULT_FROM_WIN32(GetLastError()), "loading");
  const auto get_class = reinterpret_cast<LPFNGETCLASSOBJECT>(
      reinterpret_cast<void*>(GetProcAddress(server, "DllGetClassObject")));
  double taken = 0;
  {
    ComPtr<IClassFactory> factory;
    ComPtr<Interface> object;
    Check(get_class(clsid, IID_PPV_ARGS(&factory)), "DllGetClassObject");
    Check(factory->CreateInstance(nullptr, iid, &object), "CreateInstance");
    Check(call(object.Get()), "calling");
    taken = Seconds() - start;
  }
  FreeLibrary(server);
  return taken;
}

}  // namespace

int main() {
  Check(CoInitialize(nullptr), "CoInitialize");
  SysFreeString(nullptr);  // every client of automation has its library
  const std::wstring ours = BesideThisProgram(L"zepkit10.dll");
  const std::wstring empty = BesideThisProgram(L"empty_server.dll");
  constexpr int kLoads = 301;
  std::vector<double> our_times, empty_times;
  for (int i = 0; i < kLoads; ++i) {
    our_times.push_back(TimeOfFirstCall<_Counter>(ours, CLSID_Counter, IID__Counter,
                                                  [](auto* it) { return it->Increment(1); }));
    empty_times.push_back(TimeOfFirstCall<IEmpty>(empty, CLSID_NULL, IID_IUnknown,
                                                  [](auto* it) { return it->Increment(1); }));
  }
  const double ours_least = *std::ranges::min_element(our_times);
  const double empty_least = *std::ranges::min_element(empty_times);
  std::printf(
      "Loading, creating an object and calling it takes %.2f ms the first time, %.2f ms then, %.2f "
      "times an empty component\n",
      our_times.front() * 1e3, ours_least * 1e3, ours_least / empty_least);
  CoUninitialize();
}

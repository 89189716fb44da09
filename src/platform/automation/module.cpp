#include "platform/automation/module.h"

#include <atomic>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace zepkit10 {
namespace {

std::atomic<long> uses{0};
std::atomic<long> live_objects{0};
std::atomic<ITypeLib*> type_library{nullptr};

}  // namespace

void AddModuleUse() noexcept { uses.fetch_add(1, std::memory_order_relaxed); }
void ReleaseModuleUse() noexcept { uses.fetch_sub(1, std::memory_order_acq_rel); }
bool ModuleInUse() noexcept { return uses.load(std::memory_order_acquire) != 0; }

void CountLiveObject(int change) noexcept {
  live_objects.fetch_add(change, std::memory_order_relaxed);
}
long LiveObjects() noexcept { return live_objects.load(std::memory_order_relaxed); }

HMODULE ThisModule() noexcept { return reinterpret_cast<HMODULE>(&__ImageBase); }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

HRESULT LoadOwnTypeLibrary(ITypeLib** result) noexcept try {
  if (!type_library.load(std::memory_order_acquire)) {
    ITypeLib* loaded = nullptr;
    const HRESULT hr = LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &loaded);
    if (FAILED(hr)) return hr;
    ITypeLib* none = nullptr;
    if (!type_library.compare_exchange_strong(none, loaded)) loaded->Release();
  }
  *result = type_library.load(std::memory_order_acquire);
  (*result)->AddRef();
  return S_OK;
} catch (...) {
  return E_OUTOFMEMORY;
}

HRESULT LoadOwnTypeInfo(const GUID& guid, ITypeInfo** result) noexcept {
  Microsoft::WRL::ComPtr<ITypeLib> library;
  const HRESULT hr = LoadOwnTypeLibrary(&library);
  return FAILED(hr) ? hr : library->GetTypeInfoOfGuid(guid, result);
}

void ForgetTypeLibrary() noexcept {
  if (ITypeLib* library = type_library.exchange(nullptr)) library->Release();
}

}  // namespace zepkit10

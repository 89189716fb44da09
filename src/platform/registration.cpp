#include "platform/registration.h"

#include <oaidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <string>

#include "frame/class_object.h"
#include "platform/automation/module.h"
#include "platform/automation/string.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

const std::wstring kClasses = L"Software\\Classes\\";

std::wstring TextOf(REFGUID guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring ProgIdOf(const ClassDescription& description) {
  return std::wstring(L"Zepkit10.") + reinterpret_cast<const wchar_t*>(description.name);
}

std::wstring ClassKeyOf(const ClassDescription& description) {
  return kClasses + L"CLSID\\" + TextOf(*description.clsid);
}

/// Thrown and caught in this file only.
struct RegistryFault {};

void Write(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  if (RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, value.c_str(), bytes)) {
    throw RegistryFault();
  }
}

struct LibraryIdentity {
  GUID guid;
  WORD major;
  WORD minor;
  LCID locale;
  SYSKIND system;
};

LibraryIdentity IdentityOf(ITypeLib& library) {
  TLIBATTR* attributes = nullptr;
  if (FAILED(library.GetLibAttr(&attributes))) throw RegistryFault();
  const LibraryIdentity identity{attributes->guid, attributes->wMajorVerNum,
                                 attributes->wMinorVerNum, attributes->lcid, attributes->syskind};
  library.ReleaseTLibAttr(attributes);
  return identity;
}

ComPtr<ITypeLib> OwnLibrary() {
  ComPtr<ITypeLib> library;
  if (FAILED(LoadOwnTypeLibrary(&library))) throw RegistryFault();
  return library;
}

void RegisterClass(const ClassDescription& description, const std::wstring& path,
                   const LibraryIdentity& library) {
  const std::wstring key = ClassKeyOf(description);
  const std::wstring prog_id = ProgIdOf(description);
  const std::wstring version =
      std::to_wstring(library.major) + L"." + std::to_wstring(library.minor);
  Write(key, nullptr, prog_id);
  Write(key + L"\\InprocServer32", nullptr, path);
  Write(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  Write(key + L"\\ProgID", nullptr, prog_id);
  Write(key + L"\\TypeLib", nullptr, TextOf(library.guid));
  Write(key + L"\\Version", nullptr, version);
  Write(kClasses + prog_id, nullptr, prog_id);
  Write(kClasses + prog_id + L"\\CLSID", nullptr, TextOf(*description.clsid));
}

bool DeleteKey(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_LOCAL_MACHINE, key.c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

bool UnregisterLibrary() {
  const LibraryIdentity own = IdentityOf(*OwnLibrary().Get());
  const HRESULT hr = UnRegisterTypeLib(own.guid, own.major, own.minor, own.locale, own.system);
  // A library that is not registered: the first on Windows, the second in Wine.
  return SUCCEEDED(hr) || hr == TYPE_E_REGISTRYACCESS || hr == E_INVALIDARG;
}

}  // namespace

HRESULT Register(std::span<ClassObject> classes) noexcept try {
  const ComPtr<ITypeLib> library = OwnLibrary();
  std::wstring path = ModulePath();
  for (const ClassObject& each : classes) {
    RegisterClass(each.Description(), path, IdentityOf(*library.Get()));
  }
  const HRESULT hr = RegisterTypeLib(library.Get(), path.data(), nullptr);
  return FAILED(hr) ? SELFREG_E_TYPELIB : S_OK;
} catch (const RegistryFault&) {
  return SELFREG_E_CLASS;
} catch (...) {
  return E_OUTOFMEMORY;
}

HRESULT Unregister(std::span<ClassObject> classes) noexcept try {
  bool clean = UnregisterLibrary();
  for (const ClassObject& each : classes) {
    clean &= DeleteKey(ClassKeyOf(each.Description()));
    clean &= DeleteKey(kClasses + ProgIdOf(each.Description()));
  }
  return clean ? S_OK : SELFREG_E_CLASS;
} catch (const RegistryFault&) {
  return SELFREG_E_TYPELIB;
} catch (...) {
  return E_OUTOFMEMORY;
}

}  // namespace zepkit10

#include "platform/registration.h"

#include <oaidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <string>

#include "frame/class_object.h"
#include "platform/automation/module.h"
#include "platform/automation/string.h"
#include "util/decimal_text.h"

// The compiler's headers lack these two.
extern "C" {
WINOLEAUTAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help_folder);
WINOLEAUTAPI UnRegisterTypeLibForUser(REFGUID library, WORD major, WORD minor, LCID locale,
                                      SYSKIND system);
}

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

/// The name that only a release whose interfaces a client could not use would change.
std::wstring VersionedProgIdOf(const ClassDescription& description, WORD major) {
  return ProgIdOf(description) + L"." + WideText(DecimalText(major));
}

std::wstring ClassKeyOf(const ClassDescription& description) {
  return kClasses + L"CLSID\\" + TextOf(*description.clsid);
}

// Each bitness has its own keys of classes and interfaces; both share names and type library.
constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr REGSAM kOtherBitness = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

/// Thrown and caught in this file only.
struct RegistryFault {};

HKEY RootOf(Users users) { return users == Users::kAll ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

void Write(Users users, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  if (RegSetKeyValueW(RootOf(users), key.c_str(), name, REG_SZ, value.c_str(), bytes)) {
    throw RegistryFault();
  }
}

/// A key's own value, empty if there is none.
std::wstring Read(Users users, const std::wstring& key) {
  DWORD bytes = 0;
  const auto read = [&](wchar_t* text) {
    return RegGetValueW(RootOf(users), key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &bytes);
  };
  if (read(nullptr) || bytes < sizeof(wchar_t)) return {};
  std::wstring text(bytes / sizeof(wchar_t), L'\0');
  return read(text.data()) ? std::wstring() : text.c_str();
}

bool DeleteKey(Users users, const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(RootOf(users), key.c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

/// While it lives, HKEY_CLASSES_ROOT of this process is the user's own classes: Wine registers a
/// type library there, whomever it is for.
class OwnClasses {
 public:
  OwnClasses() {
    if (RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS,
                        nullptr, &key_, nullptr)) {
      throw RegistryFault();
    }
    if (RegOverridePredefKey(HKEY_CLASSES_ROOT, key_)) {
      RegCloseKey(key_);
      throw RegistryFault();
    }
  }
  OwnClasses(const OwnClasses&) = delete;
  OwnClasses& operator=(const OwnClasses&) = delete;
  ~OwnClasses() {
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(key_);
  }

 private:
  HKEY key_ = nullptr;
};

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

void RegisterProgId(Users users, const std::wstring& prog_id, const ClassDescription& description) {
  Write(users, kClasses + prog_id, nullptr, ProgIdOf(description));
  Write(users, kClasses + prog_id + L"\\CLSID", nullptr, TextOf(*description.clsid));
}

void RegisterClass(Users users, const ClassDescription& description, const std::wstring& path,
                   const LibraryIdentity& library) {
  const std::wstring key = ClassKeyOf(description);
  const std::wstring prog_id = ProgIdOf(description);
  const std::wstring versioned = VersionedProgIdOf(description, library.major);
  const std::u16string version = DecimalText(library.major) + u"." + DecimalText(library.minor);
  Write(users, key, nullptr, prog_id);
  Write(users, key + L"\\InprocServer32", nullptr, path);
  Write(users, key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  Write(users, key + L"\\ProgID", nullptr, versioned);
  Write(users, key + L"\\VersionIndependentProgID", nullptr, prog_id);
  Write(users, key + L"\\TypeLib", nullptr, TextOf(library.guid));
  Write(users, key + L"\\Version", nullptr, WideText(version));
  RegisterProgId(users, versioned, description);
  RegisterProgId(users, prog_id, description);
  Write(users, kClasses + prog_id + L"\\CurVer", nullptr, versioned);
}

HRESULT RegisterLibrary(Users users, ITypeLib& library, std::wstring path) {
  if (users == Users::kAll) return RegisterTypeLib(&library, path.data(), nullptr);
  const OwnClasses own;
  return RegisterTypeLibForUser(&library, path.data(), nullptr);
}

HRESULT UnregisterLibrary(Users users, const LibraryIdentity& of) {
  if (users == Users::kAll) {
    return UnRegisterTypeLib(of.guid, of.major, of.minor, of.locale, of.system);
  }
  const OwnClasses own;
  return UnRegisterTypeLibForUser(of.guid, of.major, of.minor, of.locale, of.system);
}

bool IsUnregistered(HRESULT hr) {
  // A library that was not registered: the first on Windows, the second in Wine.
  return SUCCEEDED(hr) || hr == TYPE_E_REGISTRYACCESS || hr == E_INVALIDARG;
}

/// The system learns from the registered file which interfaces there are to remove. Where that file
/// is gone, it is told this one first.
bool UnregisterLibrary(Users users, ITypeLib& library, const LibraryIdentity& identity) {
  if (IsUnregistered(UnregisterLibrary(users, identity))) return true;
  return SUCCEEDED(RegisterLibrary(users, library, ModulePath())) &&
         IsUnregistered(UnregisterLibrary(users, identity));
}

bool IsRegisteredForOtherBitness(Users users, const ClassDescription& description) {
  const std::wstring key = ClassKeyOf(description) + L"\\InprocServer32";
  HKEY opened = nullptr;
  if (RegOpenKeyExW(RootOf(users), key.c_str(), 0, KEY_QUERY_VALUE | kOtherBitness, &opened)) {
    return false;
  }
  RegCloseKey(opened);
  return true;
}

std::wstring HexText(unsigned long number) {
  wchar_t text[9];
  return _ultow(number, text, 16);
}

/// Where registering wrote it.
std::wstring LibraryKeyOf(const LibraryIdentity& library) {
  return kClasses + L"TypeLib\\" + TextOf(library.guid) + L"\\" + HexText(library.major) + L"." +
         HexText(library.minor);
}

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.rfind(L'\\')); }

/// Leaves the library to the other bitness. The system would take the interfaces away from both.
bool WithdrawLibrary(Users users, const LibraryIdentity& library) {
  const std::wstring key = LibraryKeyOf(library);
  const std::wstring paths = key + L"\\" + HexText(library.locale);
  const std::wstring own = paths + (kIs64Bit ? L"\\win64" : L"\\win32");
  const std::wstring help = Read(users, key + L"\\HELPDIR");
  const std::wstring other = Read(users, paths + (kIs64Bit ? L"\\win32" : L"\\win64"));
  // Whichever was registered last had its folder written there.
  if (!other.empty() && help == FolderOf(Read(users, own))) {
    Write(users, key + L"\\HELPDIR", nullptr, FolderOf(other));
  }
  return DeleteKey(users, own);
}

bool UnregisterNames(Users users, const ClassDescription& description, WORD major) {
  bool clean = DeleteKey(users, kClasses + ProgIdOf(description));
  clean &= DeleteKey(users, kClasses + VersionedProgIdOf(description, major));
  return clean;
}

}  // namespace

HRESULT Register(std::span<ClassObject> classes, Users users) noexcept try {
  const ComPtr<ITypeLib> library = OwnLibrary();
  const std::wstring path = ModulePath();
  for (const ClassObject& each : classes) {
    RegisterClass(users, each.Description(), path, IdentityOf(*library.Get()));
  }
  return FAILED(RegisterLibrary(users, *library.Get(), path)) ? SELFREG_E_TYPELIB : S_OK;
} catch (const RegistryFault&) {
  return SELFREG_E_CLASS;
} catch (...) {
  return E_OUTOFMEMORY;
}

HRESULT Unregister(std::span<ClassObject> classes, Users users) noexcept try {
  const ComPtr<ITypeLib> library = OwnLibrary();
  const LibraryIdentity identity = IdentityOf(*library.Get());
  bool clean = true;
  bool is_shared = false;
  for (const ClassObject& each : classes) {
    const ClassDescription& description = each.Description();
    // Its own class first: a 32-bit Windows shows it as one of the other bitness, too.
    clean &= DeleteKey(users, ClassKeyOf(description));
    const bool has_other = IsRegisteredForOtherBitness(users, description);
    clean &= has_other || UnregisterNames(users, description, identity.major);
    is_shared |= has_other;
  }
  clean &= is_shared ? WithdrawLibrary(users, identity)
                     : UnregisterLibrary(users, *library.Get(), identity);
  return clean ? S_OK : SELFREG_E_CLASS;
} catch (const RegistryFault&) {
  return SELFREG_E_TYPELIB;
} catch (...) {
  return E_OUTOFMEMORY;
}

}  // namespace zepkit10

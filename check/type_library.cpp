#include "type_library.h"

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

namespace zepcheck {
namespace {

using Microsoft::WRL::ComPtr;

std::wstring TextOf(const GUID& guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring NameOf(ITypeInfo& type) {
  BSTR name = nullptr;
  if (FAILED(type.GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr))) return {};
  std::wstring text(name, SysStringLen(name));
  SysFreeString(name);
  return text;
}

void AppendIfCreatable(ITypeInfo& type, std::vector<ClassOfLibrary>& classes) {
  TYPEATTR* attributes = nullptr;
  if (FAILED(type.GetTypeAttr(&attributes))) return;
  if (attributes->typekind == TKIND_COCLASS && attributes->wTypeFlags & TYPEFLAG_FCANCREATE) {
    classes.push_back({NameOf(type), TextOf(attributes->guid)});
  }
  type.ReleaseTypeAttr(attributes);
}

std::wstring HexText(int number) {
  wchar_t text[9];
  return _itow(number, text, 16);
}

}  // namespace

std::wstring TypeLibrary::Key() const {
  return L"TypeLib\\" + guid + L"\\" + HexText(major) + L"." + HexText(minor);
}

std::optional<TypeLibrary> ReadTypeLibrary(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  TLIBATTR* attributes = nullptr;
  if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library)) ||
      FAILED(library->GetLibAttr(&attributes))) {
    return std::nullopt;
  }
  TypeLibrary found{
      TextOf(attributes->guid), attributes->wMajorVerNum, attributes->wMinorVerNum, {}};
  library->ReleaseTLibAttr(attributes);
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    if (SUCCEEDED(library->GetTypeInfo(i, &type))) AppendIfCreatable(*type.Get(), found.classes);
  }
  return found;
}

}  // namespace zepcheck

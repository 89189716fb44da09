#include "com/type_library_reader.h"

#include <stdexcept>
#include <utility>

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

constexpr std::pair<VARTYPE, const char*> kBaseTypes[] = {
    {VT_I2, "short"},          {VT_I4, "long"},
    {VT_R4, "float"},          {VT_R8, "double"},
    {VT_CY, "CURRENCY"},       {VT_DATE, "DATE"},
    {VT_BSTR, "BSTR"},         {VT_DISPATCH, "IDispatch*"},
    {VT_BOOL, "VARIANT_BOOL"}, {VT_VARIANT, "VARIANT"},
    {VT_UNKNOWN, "IUnknown*"}, {VT_UI1, "unsigned char"},
    {VT_INT, "int"},           {VT_VOID, "void"},
    {VT_HRESULT, "HRESULT"}};

ComPtr<ITypeInfo> Referenced(ITypeInfo& type, HREFTYPE reference) {
  ComPtr<ITypeInfo> referenced;
  Check(type.GetRefTypeInfo(reference, &referenced), "GetRefTypeInfo");
  return referenced;
}

std::string LibraryNameOf(ITypeInfo& type) {
  ComPtr<ITypeLib> library;
  UINT position = 0;
  Check(type.GetContainingTypeLib(&library, &position), "GetContainingTypeLib");
  return DocumentationOf(*library.Get()).name;
}

std::string BaseTypeName(VARTYPE type) {
  for (const auto& [known, name] : kBaseTypes) {
    if (known == type) return name;
  }
  return "type " + std::to_string(type);
}

}  // namespace

void Check(HRESULT result, const char* call) {
  if (FAILED(result)) {
    throw std::runtime_error(std::string(call) + " failed: " + std::to_string(result));
  }
}

std::string Utf8(const OLECHAR* text, UINT length) {
  std::string utf8(3 * length, '\0');
  utf8.resize(WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), utf8.data(),
                                  static_cast<int>(utf8.size()), nullptr, nullptr));
  return utf8;
}

std::string TakeUtf8(BSTR text) {
  const std::unique_ptr<OLECHAR, decltype(&SysFreeString)> owner(text, &SysFreeString);
  return Utf8(text, SysStringLen(text));
}

TypeAttributes AttributesOf(ITypeInfo& type) {
  TYPEATTR* attributes = nullptr;
  Check(type.GetTypeAttr(&attributes), "GetTypeAttr");
  return {attributes, [&type](TYPEATTR* taken) { type.ReleaseTypeAttr(taken); }};
}

FunctionDescription FunctionAt(ITypeInfo& type, UINT position) {
  FUNCDESC* function = nullptr;
  Check(type.GetFuncDesc(position, &function), "GetFuncDesc");
  return {function, [&type](FUNCDESC* taken) { type.ReleaseFuncDesc(taken); }};
}

VariableDescription VariableAt(ITypeInfo& type, UINT position) {
  VARDESC* variable = nullptr;
  Check(type.GetVarDesc(position, &variable), "GetVarDesc");
  return {variable, [&type](VARDESC* taken) { type.ReleaseVarDesc(taken); }};
}

Documentation DocumentationOf(ITypeLib& library) {
  BSTR name = nullptr;
  BSTR help = nullptr;
  BSTR file = nullptr;
  constexpr INT kLibraryItself = -1;
  Check(library.GetDocumentation(kLibraryItself, &name, &help, nullptr, &file), "GetDocumentation");
  return {TakeUtf8(name), TakeUtf8(help), 0, TakeUtf8(file)};
}

Documentation DocumentationOf(ITypeInfo& type, MEMBERID member) {
  BSTR name = nullptr;
  BSTR help = nullptr;
  DWORD context = 0;
  Check(type.GetDocumentation(member, &name, &help, &context, nullptr), "GetDocumentation");
  return {TakeUtf8(name), TakeUtf8(help), context, {}};
}

ComPtr<ITypeInfo> Implemented(ITypeInfo& type, UINT position) {
  HREFTYPE reference = 0;
  Check(type.GetRefTypeOfImplType(position, &reference), "GetRefTypeOfImplType");
  return Referenced(type, reference);
}

ComPtr<ITypeInfo> VtableHalf(ITypeInfo& type) {
  const TypeAttributes attributes = AttributesOf(type);
  const bool is_dual =
      attributes->typekind == TKIND_DISPATCH && (attributes->wTypeFlags & TYPEFLAG_FDUAL);
  constexpr UINT kOtherHalf = static_cast<UINT>(-1);
  return is_dual ? Implemented(type, kOtherHalf) : ComPtr<ITypeInfo>(&type);
}

std::string QualifiedName(ITypeInfo& referrer, ITypeInfo& referenced) {
  const std::string library = LibraryNameOf(referenced);
  const std::string name = DocumentationOf(referenced).name;
  return library == LibraryNameOf(referrer) ? name : library + "." + name;
}

std::string TypeName(ITypeInfo& referrer, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return TypeName(referrer, *type.lptdesc) + "*";
    case VT_SAFEARRAY:
      return "SAFEARRAY(" + TypeName(referrer, *type.lptdesc) + ")";
    case VT_USERDEFINED:
      return QualifiedName(referrer, *Referenced(referrer, type.hreftype).Get());
    default:
      return BaseTypeName(type.vt);
  }
}

}  // namespace zepkit10

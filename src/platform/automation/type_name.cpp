#include "platform/automation/type_name.h"

#include <ocidl.h>
#include <wrl/client.h>

#include "platform/automation/object_core.h"
#include "platform/automation/string.h"
#include "platform/automation/variant.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

const char16_t* NameOfType(VARTYPE type) {
  switch (type) {
    case VT_EMPTY:
      return u"Empty";
    case VT_NULL:
      return u"Null";
    case VT_I2:
      return u"Integer";
    case VT_I4:
    case VT_INT:
      return u"Long";
    case VT_I8:
      return u"LongLong";
    case VT_R4:
      return u"Single";
    case VT_R8:
      return u"Double";
    case VT_CY:
      return u"Currency";
    case VT_DATE:
      return u"Date";
    case VT_BSTR:
      return u"String";
    case VT_DISPATCH:
      return u"Object";
    case VT_ERROR:
      return u"Error";
    case VT_BOOL:
      return u"Boolean";
    case VT_VARIANT:
      return u"Variant";
    case VT_DECIMAL:
      return u"Decimal";
    case VT_I1:
      return u"SByte";
    case VT_UI1:
      return u"Byte";
    case VT_UI2:
      return u"UShort";
    case VT_UI4:
    case VT_UINT:
      return u"UInteger";
    case VT_UI8:
      return u"ULong";
    default:
      return u"Unknown";
  }
}

/// Copies a text and frees it.
std::u16string TakeText(BSTR text) {
  Variant owner;
  owner.Out()->vt = VT_BSTR;
  owner.Out()->bstrVal = text;
  return std::u16string(ViewOf(text));
}

std::u16string DocumentedName(ITypeInfo& type) {
  BSTR name = nullptr;
  if (FAILED(type.GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr))) return {};
  return TakeText(name);
}

std::u16string CoclassName(IUnknown& object) {
  ComPtr<IProvideClassInfo> provider;
  ComPtr<ITypeInfo> type;
  if (FAILED(object.QueryInterface(IID_PPV_ARGS(&provider)))) return {};
  if (FAILED(provider->GetClassInfo(&type)) || !type) return {};
  return DocumentedName(*type.Get());
}

/// The class that the default interface is named after.
std::u16string InterfaceName(IDispatch& object) {
  ComPtr<ITypeInfo> type;
  UINT count = 0;
  if (FAILED(object.GetTypeInfoCount(&count)) || count == 0) return {};
  if (FAILED(object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &type)) || !type) return {};
  std::u16string name = DocumentedName(*type.Get());
  if (name.starts_with(u'_')) name.erase(0, 1);
  return name;
}

std::u16string ClassNameOf(IUnknown& object) {
  const ComPtr<IUnknown> keeper(&object);
  if (const ObjectCore* ours = ObjectCore::Behind(&object)) return ours->Description().name;
  std::u16string name = CoclassName(object);
  ComPtr<IDispatch> dispatch;
  if (!name.empty()) return name;
  if (FAILED(object.QueryInterface(IID_PPV_ARGS(&dispatch)))) return u"Unknown";
  name = InterfaceName(*dispatch.Get());
  return name.empty() ? u"Object" : name;
}

std::u16string RecordName(IRecordInfo* record) {
  BSTR name = nullptr;
  if (!record || FAILED(record->GetName(&name))) return u"Unknown";
  return TakeText(name);
}

std::u16string ArrayName(VARTYPE element, SAFEARRAY* array) {
  if (element != VT_RECORD) return std::u16string(NameOfType(element)) + u"()";
  ComPtr<IRecordInfo> record;
  if (array) SafeArrayGetRecordInfo(array, &record);
  return RecordName(record.Get()) + u"()";
}

}  // namespace

std::u16string TypeNameOf(const VARIANT& value) {
  const VARIANT* followed = Follow(&value);
  if (!followed) return NameOfType(VT_EMPTY);
  const bool by_reference = followed->vt & VT_BYREF;
  const auto type = static_cast<VARTYPE>(followed->vt & ~VT_BYREF);
  if (type & VT_ARRAY) {
    return ArrayName(type & VT_TYPEMASK, by_reference ? *followed->pparray : followed->parray);
  }
  if (type == VT_DISPATCH || type == VT_UNKNOWN) {
    IUnknown* object = by_reference ? *followed->ppunkVal : followed->punkVal;
    return object ? ClassNameOf(*object) : u"Nothing";
  }
  return type == VT_RECORD ? RecordName(followed->pRecInfo) : NameOfType(type);
}

}  // namespace zepkit10

#include "platform/automation/type_name.h"

#include <ocidl.h>
#include <wrl/client.h>

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
    case VT_I1:
      return u"SByte";
    case VT_UI1:
      return u"Byte";
    case VT_I2:
      return u"Integer";
    case VT_UI2:
      return u"UShort";
    case VT_I4:
    case VT_INT:
      return u"Long";
    case VT_UI4:
    case VT_UINT:
      return u"ULong";
    case VT_I8:
      return u"LongLong";
    case VT_UI8:
      return u"ULongLong";
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
    case VT_BOOL:
      return u"Boolean";
    case VT_DECIMAL:
      return u"Decimal";
    case VT_ERROR:
      return u"Error";
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return u"Object";
    case VT_VARIANT:
      return u"Variant";
    case VT_RECORD:
      return u"Record";
    default:
      return u"Unknown";
  }
}

/// What an object tells about its class or, where it names none, its interface.
ComPtr<ITypeInfo> DescriptionOf(IUnknown& object) {
  ComPtr<IProvideClassInfo> provider;
  ComPtr<IDispatch> dispatch;
  ComPtr<ITypeInfo> description;
  if (SUCCEEDED(object.QueryInterface(IID_PPV_ARGS(&provider))) && provider &&
      SUCCEEDED(provider->GetClassInfo(&description)) && description) {
    return description;
  }
  if (SUCCEEDED(object.QueryInterface(IID_PPV_ARGS(&dispatch))) && dispatch) {
    dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, description.ReleaseAndGetAddressOf());
  }
  return description;
}

std::u16string ClassNameOf(IUnknown* object) {
  if (!object) return u"Nothing";
  const ComPtr<ITypeInfo> description = DescriptionOf(*object);
  BSTR text = nullptr;
  if (description) {
    description->GetDocumentation(MEMBERID_NIL, &text, nullptr, nullptr, nullptr);
  }
  std::u16string name(ViewOf(text));
  SysFreeString(text);
  // The default interface of a class is named after it, behind an underscore.
  if (name.starts_with(u'_')) name.erase(0, 1);
  return name.empty() ? NameOfType(VT_DISPATCH) : name;
}

}  // namespace

std::u16string TypeNameOf(const VARIANT& value) {
  const VARIANT* followed = Follow(&value);
  if (!followed) return NameOfType(VT_EMPTY);
  const auto type = static_cast<VARTYPE>(followed->vt & VT_TYPEMASK);
  if (followed->vt & VT_ARRAY) return NameOfType(type) + std::u16string(u"()");
  if (type != VT_DISPATCH && type != VT_UNKNOWN) return NameOfType(type);
  // The variable may change while its object is asked.
  const ComPtr<IUnknown> object = followed->vt & VT_BYREF ? *followed->ppunkVal : followed->punkVal;
  return ClassNameOf(object.Get());
}

}  // namespace zepkit10

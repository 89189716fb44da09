#include "com/argument_catalogue.h"

#include <cstring>
#include <iterator>
#include <limits>

namespace {

constexpr VARTYPE kScalars[] = {VT_EMPTY, VT_NULL, VT_I1,   VT_UI1,     VT_I2,   VT_UI2, VT_I4,
                                VT_UI4,   VT_I8,   VT_UI8,  VT_INT,     VT_UINT, VT_R4,  VT_R8,
                                VT_CY,    VT_DATE, VT_BOOL, VT_DECIMAL, VT_ERROR};
constexpr VARTYPE kElements[] = {VT_VARIANT,  VT_BSTR,    VT_UI1, VT_I2,   VT_I4,
                                 VT_R4,       VT_R8,      VT_CY,  VT_DATE, VT_BOOL,
                                 VT_DISPATCH, VT_UNKNOWN, VT_I1,  VT_I8,   VT_DECIMAL};
constexpr VARTYPE kIllegal[] = {
    15,      VT_VARIANT, VT_RECORD, VT_FILETIME, VT_BLOB, VT_CLSID,           VT_VECTOR | VT_I4,
    VT_VOID, VT_HRESULT, VT_PTR,    VT_LPWSTR,   0x0FFF,  VT_RESERVED | VT_I4};
constexpr double kNumbers[] = {
    0,     1,      -1,    2,     3,          0.5,          -0.0,          255,
    256,   32767,  32768, 65536, 2147483647, 2147483648.0, -2147483648.0, 1e15,
    1e300, -1e300, 1e-300};
const wchar_t* const kTexts[] = {L"",       L"x",        L"y",          L"1",        L"-7,5",
                                 L"1.5",    L"a name",   L"2*x+1",      L"SIN(x)^2", L"((1",
                                 L"|x",     L"True",     L"1999-12-31", L"&HFFFF",   L"\xFFFF",
                                 L"\xD800", L"äöü\t\r\n"};

std::string Bytes(const void* from, std::size_t size) {
  return {static_cast<const char*>(from), size};
}

std::size_t SizeOf(const SAFEARRAY* array) {
  std::size_t size = array->cbElements;
  for (USHORT i = 0; i < array->cDims; ++i) size *= array->rgsabound[i].cElements;
  return size;
}

}  // namespace

ArgumentCatalogue::~ArgumentCatalogue() {
  for (SAFEARRAY* array : locked_) SafeArrayUnlock(array);
  for (SAFEARRAY* array : fixed_) array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  for (VARIANT& owned : owned_) VariantClear(&owned);
  for (VARIANT& link : links_) VariantClear(&link);  // a member may have put something there
}

VARIANT ArgumentCatalogue::Any() {
  switch (Below(16)) {
    case 0:
      return Illegal();
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
      return ByReference();
    default:
      return ByValue(2);
  }
}

std::string ArgumentCatalogue::Fingerprint(const VARIANT& argument) {
  if (argument.vt & VT_BYREF) return {};
  std::string print = Bytes(&argument, sizeof argument);
  if (argument.vt == VT_BSTR) print += Bytes(argument.bstrVal, SysStringByteLen(argument.bstrVal));
  if ((argument.vt & VT_ARRAY) && argument.parray) {
    const SAFEARRAY* array = argument.parray;
    print += Bytes(array, sizeof *array) + Bytes(array->pvData, SizeOf(array));
  }
  return print;
}

VARIANT& ArgumentCatalogue::Scalar() {
  VARIANT& value = Own();
  const VARTYPE type = kScalars[Below(std::size(kScalars))];
  value.vt = VT_R8;
  value.dblVal = kNumbers[Below(std::size(kNumbers))];
  if (Below(20) == 0) value.dblVal = std::numeric_limits<double>::quiet_NaN();
  if (type == VT_EMPTY || type == VT_NULL) {
    value.vt = type;
  } else if (type == VT_ERROR) {
    value.vt = VT_ERROR;
    value.scode = Below(4) ? DISP_E_PARAMNOTFOUND : E_FAIL;
  } else {
    VariantChangeType(&value, &value, 0, type);  // stays a double where it does not fit
  }
  return value;
}

VARIANT& ArgumentCatalogue::Text() {
  VARIANT& value = Own();
  value.vt = VT_BSTR;
  switch (Below(12)) {
    case 0:
      value.bstrVal = nullptr;
      break;
    case 1:
      value.bstrVal = SysAllocStringByteLen("odd", 3);
      break;
    case 2:
      value.bstrVal = SysAllocStringLen(L"x\0+1", 4);
      break;
    case 3:
      value.bstrVal = SysAllocString(std::wstring(Below(2000), Below(2) ? L'(' : L'7').c_str());
      break;
    default:
      value.bstrVal = SysAllocString(kTexts[Below(std::size(kTexts))]);
  }
  return value;
}

VARIANT& ArgumentCatalogue::Object() {
  VARIANT& value = Own();
  value.vt = Below(3) ? VT_DISPATCH : VT_UNKNOWN;
  value.pdispVal = Below(5) ? objects_[Below(static_cast<unsigned>(objects_.size()))] : nullptr;
  if (value.pdispVal) value.pdispVal->AddRef();
  return value;
}

VARIANT& ArgumentCatalogue::Array(int depth) {
  VARIANT& value = Own();
  const VARTYPE type = kElements[Below(std::size(kElements))];
  value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  value.parray = nullptr;
  if (Below(8) == 0) return value;
  constexpr LONG kLower[] = {0, 1, -5, 2147483640, -2147483647 - 1};
  SAFEARRAYBOUND bounds[3];
  for (SAFEARRAYBOUND& bound : bounds) bound = {Below(5), kLower[Below(std::size(kLower))]};
  value.parray = SafeArrayCreate(type, Below(6) ? 1 : 1 + Below(3), bounds);
  if (!value.parray) return value;
  Fill(value.parray, type, depth);
  if (Below(8) == 0) {
    SafeArrayLock(value.parray);
    locked_.push_back(value.parray);
  } else if (Below(8) == 0) {
    value.parray->fFeatures |= FADF_FIXEDSIZE;
    fixed_.push_back(value.parray);
  }
  return value;
}

void ArgumentCatalogue::Fill(SAFEARRAY* array, VARTYPE type, int depth) {
  if (array->cDims != 1 || depth == 0) return;
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
    void* element = static_cast<char*>(array->pvData) + std::size_t{i} * array->cbElements;
    if (type == VT_VARIANT) {
      VARIANT& from = ByValue(depth - 1);
      VariantCopy(static_cast<VARIANT*>(element), &from);
    } else if (type == VT_BSTR) {
      const VARIANT& from = Text();
      *static_cast<BSTR*>(element) =
          from.bstrVal ? SysAllocStringLen(from.bstrVal, SysStringLen(from.bstrVal)) : nullptr;
    } else if (type == VT_UI1 || type == VT_I4) {
      *static_cast<unsigned char*>(element) = static_cast<unsigned char>(random_());
    }
  }
}

VARIANT& ArgumentCatalogue::ByValue(int depth) {
  switch (Below(8)) {
    case 0:
    case 1:
    case 2:
      return Scalar();
    case 3:
    case 4:
      return Text();
    case 5:
    case 6:
      return Object();
    default:
      return depth > 0 ? Array(depth) : Scalar();
  }
}

VARIANT ArgumentCatalogue::ByReference() {
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.byref = nullptr;
  VARIANT* target = nullptr;
  switch (Below(10)) {
    case 0: {  // to nothing
      reference.vt = static_cast<VARTYPE>(VT_BYREF | kElements[Below(std::size(kElements))]);
      return reference;
    }
    case 1: {  // to a Variant that leads to itself, or to nothing
      target = &links_.emplace_back(reference);
      target->pvarVal = Below(2) ? target : nullptr;
      reference.pvarVal = target;
      return reference;
    }
    case 2: {  // twice
      target = &links_.emplace_back(reference);
      target->pvarVal = &ByValue(2);
      reference.pvarVal = target;
      return reference;
    }
    case 3:
    case 4:
    case 5:
    case 6:  // to a variable with a type of its own
      target = &ByValue(2);
      if (target->vt == VT_EMPTY || target->vt == VT_NULL) break;
      reference.vt = static_cast<VARTYPE>(VT_BYREF | target->vt);
      reference.byref =
          target->vt == VT_DECIMAL ? static_cast<void*>(&target->decVal) : &target->byref;
      return reference;
    default:
      target = &ByValue(2);
  }
  reference.pvarVal = target;
  return reference;
}

VARIANT ArgumentCatalogue::Illegal() {
  VARIANT illegal;
  std::memset(&illegal, 0, sizeof illegal);  // a record's description lies beyond the value
  illegal.vt = kIllegal[Below(std::size(kIllegal))];
  if (illegal.vt != VT_RECORD && Below(2)) {  // the platform trusts a record's description
    illegal.vt |= VT_BYREF;
    illegal.byref = &links_.emplace_back();
  }
  return illegal;
}

// Arrays, references, and what no client may pass.
#include <cstring>
#include <iterator>
#include <utility>

#include "com/argument_catalogue.h"

// ---- arrays ------------------------------------------------------------------------------------

VARIANT& ArgumentCatalogue::Array(VARTYPE element_type) {
  if (Below(4) == 0) return Make(kArrays);
  kinds_.push_back("array of the parameter's type");
  VARIANT& value = Own();
  MakeArray(value, element_type);
  return value;
}

void ArgumentCatalogue::CreateArray(VARIANT& to, VARTYPE element_type, UINT dimensions,
                                    const SAFEARRAYBOUND* bounds) {
  to.vt = static_cast<VARTYPE>(VT_ARRAY | element_type);
  to.parray = SafeArrayCreate(element_type, dimensions, const_cast<SAFEARRAYBOUND*>(bounds));
  if (to.parray) Fill(to.parray, element_type);
}

void ArgumentCatalogue::MakeArray(VARIANT& to, long element_type) {
  const SAFEARRAYBOUND bound{1 + Below(5), static_cast<LONG>(Below(3)) - 1};
  CreateArray(to, static_cast<VARTYPE>(element_type), 1, &bound);
}

void ArgumentCatalogue::MakeNullArray(VARIANT& to, long) {
  to.vt = VT_ARRAY | VT_VARIANT;
  if (Below(2)) to.vt = VT_ARRAY | VT_UI1;
}

void ArgumentCatalogue::MakeUnallocatedArray(VARIANT& to, long) {
  const VARTYPE type = Below(2) ? VT_VARIANT : VT_BSTR;
  to.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  SafeArrayAllocDescriptorEx(type, 1, &to.parray);
}

void ArgumentCatalogue::MakeEmptyArray(VARIANT& to, long) {
  const SAFEARRAYBOUND bound{0, static_cast<LONG>(Below(2))};
  CreateArray(to, Below(2) ? VT_VARIANT : VT_UI1, 1, &bound);
}

void ArgumentCatalogue::MakeArrayOfDimensions(VARIANT& to, long dimensions) {
  SAFEARRAYBOUND bounds[60];
  for (SAFEARRAYBOUND& bound : bounds) bound = {1, static_cast<LONG>(Below(3)) - 1};
  bounds[0].cElements = bounds[1].cElements = Below(4);
  const auto type = static_cast<VARTYPE>(PickOf(kArrays).parameter);
  const bool creatable = type == VT_I2 || type == VT_VARIANT || type == VT_BSTR;
  CreateArray(to, creatable ? type : static_cast<VARTYPE>(VT_I4), static_cast<UINT>(dimensions),
              bounds);
}

void ArgumentCatalogue::MakeArrayFrom(VARIANT& to, long lower_bound) {
  constexpr VARTYPE kTypes[] = {VT_VARIANT, VT_UI1, VT_BSTR, VT_I4};
  const SAFEARRAYBOUND bound{1 + Below(4), lower_bound};
  CreateArray(to, kTypes[Below(std::size(kTypes))], 1, &bound);
}

void ArgumentCatalogue::MakeLockedArray(VARIANT& to, long) {
  constexpr VARTYPE kTypes[] = {VT_VARIANT, VT_UI1, VT_BSTR, VT_I4};
  MakeArray(to, kTypes[Below(std::size(kTypes))]);
  if (!to.parray) return;
  SafeArrayLock(to.parray);
  locked_.push_back(to.parray);
}

void ArgumentCatalogue::MakeFixedArray(VARIANT& to, long) {
  constexpr VARTYPE kTypes[] = {VT_VARIANT, VT_UI1, VT_BSTR, VT_I4};
  MakeArray(to, kTypes[Below(std::size(kTypes))]);
  if (!to.parray) return;
  to.parray->fFeatures |= FADF_FIXEDSIZE;
  fixed_.push_back(to.parray);
}

void ArgumentCatalogue::Fill(SAFEARRAY* array, VARTYPE type) {
  if (array->cDims != 1) return;
  ++depth_;
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
    FillElement(static_cast<char*>(array->pvData) + std::size_t{i} * array->cbElements, type);
  }
  --depth_;
}

void ArgumentCatalogue::FillElement(void* element, VARTYPE type) {
  if (type == VT_VARIANT) {
    VariantCopy(static_cast<VARIANT*>(element), &ByValue());
  } else if (type == VT_BSTR) {
    const VARIANT& from = Make(kTexts);
    *static_cast<BSTR*>(element) = SysAllocStringByteLen(
        reinterpret_cast<const char*>(from.bstrVal), SysStringByteLen(from.bstrVal));
  } else if (type == VT_DISPATCH || type == VT_UNKNOWN) {
    VARIANT& from = Make(kObjects);
    std::swap(*static_cast<IDispatch**>(element), from.pdispVal);
  } else if (type == VT_UI1 || type == VT_I4 || type == VT_BOOL) {
    *static_cast<unsigned char*>(element) = static_cast<unsigned char>(random_());
  }
}

// ---- references --------------------------------------------------------------------------------

void ArgumentCatalogue::MakeReference(VARIANT& to, long) {
  to.vt = VT_BYREF | VT_VARIANT;
  to.pvarVal = &ByValue();
}

VARIANT ArgumentCatalogue::ReferenceTo(VARIANT& variable) {
  kinds_.push_back("by reference");
  VARIANT to{};
  PointTo(variable, to);
  return to;
}

void ArgumentCatalogue::MakeTypedReference(VARIANT& to, long) { PointTo(ByValue(), to); }

void ArgumentCatalogue::PointTo(VARIANT& variable, VARIANT& to) {
  // There are no references to these types, nor to what is a reference itself.
  if (variable.vt == VT_EMPTY || variable.vt == VT_NULL || (variable.vt & VT_BYREF)) {
    to.vt = VT_BYREF | VT_VARIANT;
    to.pvarVal = &variable;
    return;
  }
  to.vt = static_cast<VARTYPE>(VT_BYREF | variable.vt);
  to.byref = variable.vt == VT_DECIMAL ? static_cast<void*>(&variable.decVal) : &variable.byref;
}

void ArgumentCatalogue::MakeNullReference(VARIANT& to, long) {
  constexpr VARTYPE kTypes[] = {VT_VARIANT,  VT_BSTR, VT_I4,      VT_R8, VT_BOOL,
                                VT_DISPATCH, VT_UI1,  VT_UNKNOWN, VT_I2, VT_ARRAY | VT_VARIANT};
  to.vt = static_cast<VARTYPE>(VT_BYREF | kTypes[Below(std::size(kTypes))]);
}

void ArgumentCatalogue::MakeReferenceToItself(VARIANT& to, long) {
  to.vt = VT_BYREF | VT_VARIANT;
  to.pvarVal = &links_.emplace_back(to);
  to.pvarVal->pvarVal = to.pvarVal;
}

void ArgumentCatalogue::MakeReferenceToNothing(VARIANT& to, long) {
  to.vt = VT_BYREF | VT_VARIANT;
  to.pvarVal = &links_.emplace_back(to);
}

void ArgumentCatalogue::MakeDoubleReference(VARIANT& to, long) {
  to.vt = VT_BYREF | VT_VARIANT;
  VARIANT& link = links_.emplace_back(to);
  link.pvarVal = &ByValue();
  to.pvarVal = &link;
}

// ---- what no client may pass -------------------------------------------------------------------

void ArgumentCatalogue::MakeIllegal(VARIANT& to, long type) {
  to.vt = static_cast<VARTYPE>(type);
  // The platform trusts a record's description.
  if (to.vt == VT_RECORD || Below(2)) return;
  to.vt |= VT_BYREF;
  VARIANT& link = links_.emplace_back();
  std::memset(&link, 0, sizeof link);
  to.byref = &link;
}

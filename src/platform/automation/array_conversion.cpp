#include "platform/automation/array_conversion.h"

#include <array>

namespace zepkit10 {
namespace {

constexpr UINT kMaxDimensions = 60;  // the platform's own limit for array values in scripts

HRESULT CreateAlike(SAFEARRAY* source, VARTYPE type, SAFEARRAY** result) {
  const UINT dimensions = SafeArrayGetDim(source);
  if (dimensions == 0 || dimensions > kMaxDimensions) return DISP_E_TYPEMISMATCH;
  std::array<SAFEARRAYBOUND, kMaxDimensions> bounds;
  // The descriptor holds the bounds last dimension first, the creator takes them first to last.
  for (UINT i = 0; i < dimensions; ++i) bounds[i] = source->rgsabound[dimensions - 1 - i];
  *result = SafeArrayCreate(type, dimensions, bounds.data());
  return *result ? S_OK : E_OUTOFMEMORY;
}

HRESULT ConvertElement(void* from, VARTYPE from_type, void* to, VARTYPE to_type, ULONG to_size,
                       LCID locale) {
  VARIANT view;
  view.vt = static_cast<VARTYPE>(from_type | VT_BYREF);
  view.byref = from;
  if (to_type == VT_VARIANT) return VariantCopyInd(static_cast<VARIANT*>(to), &view);
  VARIANT converted;
  VariantInit(&converted);
  const HRESULT hr = VariantChangeTypeEx(&converted, &view, locale, 0, to_type);
  // The array takes over what the converted value owns.
  if (SUCCEEDED(hr)) CopyMemory(to, &converted.byref, to_size);
  return hr;
}

HRESULT ConvertElements(SAFEARRAY* source, VARTYPE from, SAFEARRAY* target, VARTYPE to,
                        LCID locale) {
  ULONG count = 1;
  for (UINT i = 0; i < source->cDims; ++i) count *= source->rgsabound[i].cElements;
  if (!source->pvData && count > 0) return DISP_E_TYPEMISMATCH;  // described, but never allocated
  auto* from_bytes = static_cast<BYTE*>(source->pvData);
  auto* to_bytes = static_cast<BYTE*>(target->pvData);
  for (ULONG i = 0; i < count; ++i) {
    const HRESULT hr = ConvertElement(from_bytes + std::size_t{i} * source->cbElements, from,
                                      to_bytes + std::size_t{i} * target->cbElements, to,
                                      target->cbElements, locale);
    if (FAILED(hr)) return hr;
  }
  return S_OK;
}

}  // namespace

HRESULT ConvertArray(SAFEARRAY* source, VARTYPE to, LCID locale, SAFEARRAY** result) noexcept {
  *result = nullptr;
  if (!source) return S_OK;
  VARTYPE from = VT_EMPTY;
  HRESULT hr = SafeArrayGetVartype(source, &from);
  if (FAILED(hr) || to == VT_DECIMAL || from == VT_RECORD) return DISP_E_TYPEMISMATCH;
  SAFEARRAY* made = nullptr;
  if (FAILED(hr = CreateAlike(source, to, &made))) return hr;
  if (SUCCEEDED(hr = SafeArrayLock(source))) {
    hr = ConvertElements(source, from, made, to, locale);
    SafeArrayUnlock(source);
  }
  if (FAILED(hr)) {
    SafeArrayDestroy(made);
    return hr;
  }
  *result = made;
  return S_OK;
}

}  // namespace zepkit10

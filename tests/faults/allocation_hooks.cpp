#include "faults/allocation_hooks.h"

#include <windows.h>
#include <ole2.h>
#include <oleauto.h>
#include <olectl.h>

#include "faults/failing_import.h"

DECLARE_IMPORT(CreateBitmap, 20);
DECLARE_IMPORT(CreateCompatibleDC, 4);
DECLARE_IMPORT(CreateDIBSection, 24);
DECLARE_IMPORT(CreateDialogParamW, 20);
DECLARE_IMPORT(CreateErrorInfo, 4);
DECLARE_IMPORT(CreateFontIndirectW, 4);
DECLARE_IMPORT(CreateFontW, 56);
DECLARE_IMPORT(CreateIconIndirect, 4);
DECLARE_IMPORT(CreateStreamOnHGlobal, 12);
DECLARE_IMPORT(GetDC, 4);
DECLARE_IMPORT(GetIconInfo, 8);
DECLARE_IMPORT(GlobalAlloc, 8);
DECLARE_IMPORT(LoadImageW, 24);
DECLARE_IMPORT(LoadTypeLibEx, 12);
DECLARE_IMPORT(OleCreatePictureIndirect, 16);
DECLARE_IMPORT(OleLoadPicture, 20);
DECLARE_IMPORT(SafeArrayCreate, 12);
DECLARE_IMPORT(SafeArrayCreateEx, 16);
DECLARE_IMPORT(SafeArrayCreateVector, 12);
DECLARE_IMPORT(SetTimer, 16);
DECLARE_IMPORT(SysAllocString, 4);
DECLARE_IMPORT(SysAllocStringLen, 8);
DECLARE_IMPORT(VariantChangeType, 16);
DECLARE_IMPORT(VariantChangeTypeEx, 20);
DECLARE_IMPORT(VariantCopy, 8);
DECLARE_IMPORT(VariantCopyInd, 8);

namespace faults {
namespace {

#define FAILING(function, result) \
  const FailingImport<&__imp_##function, result> function##_ { #function }

/// Texts and arrays are copied with their content. References to nothing and references to
/// references, even to themselves, are refused.
bool HoldsMemory(const VARIANT& value) {
  constexpr VARTYPE kReference = VT_BYREF | VT_VARIANT;
  const VARIANT* held = value.vt == kReference ? value.pvarVal : &value;
  if (!held || held->vt == kReference) return false;
  return (held->vt & VT_ARRAY) || (held->vt & ~VT_BYREF) == VT_BSTR;
}

Operation copying(Kind::kMemory, "VariantCopy"), converting(Kind::kMemory, "VariantChangeType");

/// The platform clears the target first.
template <auto* slot>
HRESULT WINAPI Copy(VARIANTARG* to, VARIANTARG* from) {
  if (!HoldsMemory(*from) || !Fails(copying)) return ImportHook<slot>::kSystem(to, from);
  const HRESULT cleared = VariantClear(to);
  return FAILED(cleared) ? cleared : E_OUTOFMEMORY;
}

bool ConvertsMemory(const VARIANT& from, VARTYPE type) {
  return HoldsMemory(from) || type == VT_BSTR || (type & VT_ARRAY);
}

HRESULT WINAPI Convert(VARIANTARG* to, VARIANTARG* from, USHORT flags, VARTYPE type) {
  if (ConvertsMemory(*from, type) && Fails(converting)) return E_OUTOFMEMORY;
  return ImportHook<&__imp_VariantChangeType>::kSystem(to, from, flags, type);
}

HRESULT WINAPI ConvertIn(VARIANTARG* to, VARIANTARG* from, LCID locale, USHORT flags,
                         VARTYPE type) {
  if (ConvertsMemory(*from, type) && Fails(converting)) return E_OUTOFMEMORY;
  return ImportHook<&__imp_VariantChangeTypeEx>::kSystem(to, from, locale, flags, type);
}

}  // namespace

struct AllocationHooks::All {
  FAILING(SysAllocString, nullptr);
  FAILING(SysAllocStringLen, nullptr);
  FAILING(SafeArrayCreate, nullptr);
  FAILING(SafeArrayCreateEx, nullptr);
  FAILING(SafeArrayCreateVector, nullptr);
  FAILING(CreateErrorInfo, E_OUTOFMEMORY);
  FAILING(LoadTypeLibEx, E_OUTOFMEMORY);
  FAILING(GlobalAlloc, nullptr);
  FAILING(CreateStreamOnHGlobal, E_OUTOFMEMORY);
  FAILING(OleLoadPicture, E_OUTOFMEMORY);
  FAILING(OleCreatePictureIndirect, E_OUTOFMEMORY);
  FAILING(CreateBitmap, nullptr);
  FAILING(CreateCompatibleDC, nullptr);
  FAILING(CreateDIBSection, nullptr);
  FAILING(CreateFontIndirectW, nullptr);
  FAILING(CreateFontW, nullptr);
  FAILING(CreateIconIndirect, nullptr);
  FAILING(GetIconInfo, FALSE);
  FAILING(GetDC, nullptr);
  FAILING(LoadImageW, nullptr);
  FAILING(CreateDialogParamW, nullptr);
  FAILING(SetTimer, 0);
  const ImportHook<&__imp_VariantCopy> copy{Copy<&__imp_VariantCopy>};
  const ImportHook<&__imp_VariantCopyInd> copy_indirect{Copy<&__imp_VariantCopyInd>};
  const ImportHook<&__imp_VariantChangeType> convert{Convert};
  const ImportHook<&__imp_VariantChangeTypeEx> convert_in{ConvertIn};
};

AllocationHooks::AllocationHooks() : all_(std::make_unique<All>()) {}
AllocationHooks::~AllocationHooks() = default;

}  // namespace faults

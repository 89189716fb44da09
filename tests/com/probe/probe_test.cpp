#include "com/probe/probe_test.h"

#include "com/allocation_spy.h"
#include "platform/automation/module.h"

namespace probe {
namespace {

std::wstring Take(BSTR text) {
  std::wstring taken(text ? text : L"", SysStringLen(text));
  SysFreeString(text);
  return taken;
}

}  // namespace

VARIANT ByReference(VARTYPE type, void* variable) {
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
  reference.byref = variable;
  return reference;
}

Ended InvokeId(IDispatch* object, DISPID id, WORD flags, DISPPARAMS* parameters) {
  Ended ended;
  EXCEPINFO exception{};
  ended.result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, parameters,
                                &ended.value.raw(), &exception, &ended.position);
  ended.number = exception.scode;
  ended.source = Take(exception.bstrSource);
  ended.description = Take(exception.bstrDescription);
  return ended;
}

Ended Invoke(IDispatch* object, const wchar_t* member, const std::vector<VARIANT>& arguments,
             WORD flags, const std::vector<const wchar_t*>& names) {
  Ended ended;
  std::vector<wchar_t*> asked{const_cast<wchar_t*>(member)};
  for (const wchar_t* name : names) asked.push_back(const_cast<wchar_t*>(name));
  std::vector<DISPID> ids(asked.size());
  ended.result = object->GetIDsOfNames(IID_NULL, asked.data(), static_cast<UINT>(asked.size()),
                                       LOCALE_USER_DEFAULT, ids.data());
  if (FAILED(ended.result)) return ended;
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  std::vector<DISPID> named(ids.rbegin(), ids.rend() - 1);
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF))
    named.insert(named.begin(), DISPID_PROPERTYPUT);
  DISPPARAMS parameters{reversed.data(), named.data(), static_cast<UINT>(reversed.size()),
                        static_cast<UINT>(named.size())};
  return InvokeId(object, ids[0], flags, &parameters);
}

bool HasErrorInfo() {
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  return GetErrorInfo(0, &info) == S_OK;
}

AllocationCheck::AllocationCheck() : start_(allocation_spy::Now()) {}

AllocationCheck::~AllocationCheck() {
  SetErrorInfo(0, nullptr);
  zepkit10::ForgetTypeLibrary();
  EXPECT_EQ("", allocation_spy::OutstandingSince(start_));
}

LeakTest::LeakTest() : live_(zepkit10::LiveObjects()) {}

LeakTest::~LeakTest() { EXPECT_EQ(live_, zepkit10::LiveObjects()) << "objects are left"; }

ClientArray::ClientArray(std::initializer_list<Value> elements, LONG lower)
    : array_(SafeArrayCreateVector(VT_VARIANT, lower, static_cast<ULONG>(elements.size()))) {
  auto* to = static_cast<VARIANT*>(array_->pvData);
  for (const Value& element : elements) VariantCopy(to++, const_cast<VARIANT*>(&element.raw()));
}

VARIANT ClientArray::Raw() const {
  VARIANT raw;
  VariantInit(&raw);
  raw.vt = static_cast<VARTYPE>(VT_ARRAY | type_);
  raw.parray = array_;
  return raw;
}

Value ClientArray::Take() {
  Value taken;
  taken.raw() = Raw();
  array_ = nullptr;
  return taken;
}

std::vector<Value> Elements(const VARIANT& array) {
  std::vector<Value> elements;
  SAFEARRAY* source = (array.vt & VT_BYREF) ? *array.pparray : array.parray;
  VARTYPE type = VT_EMPTY;
  if (!source || FAILED(SafeArrayGetVartype(source, &type))) return elements;
  for (ULONG i = 0; i < source->rgsabound[0].cElements; ++i) {
    const VARIANT element =
        ByReference(type, static_cast<char*>(source->pvData) + std::size_t{i} * source->cbElements);
    Value copy;
    VariantCopyInd(&copy.raw(), const_cast<VARIANT*>(&element));
    elements.push_back(copy);
  }
  return elements;
}

}  // namespace probe

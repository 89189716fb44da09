#include "client.h"

#include <algorithm>
#include <cstdio>

namespace zepcheck {
namespace {

std::wstring TextOf(HRESULT code) {
  wchar_t text[16];
  std::swprintf(text, std::size(text), L"0x%08lX", static_cast<unsigned long>(code));
  return text;
}

[[noreturn]] void Fail(const std::wstring& what, HRESULT code, const std::wstring& why = {}) {
  throw Failure{
      code, what + L" failed: " + (why.empty() ? L"" : why + L" ") + L"(" + TextOf(code) + L")"};
}

std::wstring Take(BSTR text) {
  std::wstring taken(text, SysStringLen(text));
  SysFreeString(text);
  return taken;
}

[[noreturn]] void Fail(const wchar_t* member, EXCEPINFO& raised) {
  const std::wstring source = Take(raised.bstrSource);
  const std::wstring description = Take(raised.bstrDescription);
  SysFreeString(raised.bstrHelpFile);
  Fail(source + L", " + member, raised.scode, description);
}

}  // namespace

Value::Value(const Object& object) : Value() {
  Assign(VT_DISPATCH).pdispVal = object.Raw();
  if (variant_.pdispVal) variant_.pdispVal->AddRef();
}

Value& Value::operator=(const Value& other) {
  VariantCopy(&variant_, const_cast<VARIANT*>(&other.variant_));
  return *this;
}

Value Value::Missing() {
  Value value;
  value.Assign(VT_ERROR).scode = DISP_E_PARAMNOTFOUND;
  return value;
}

Value Value::Array(const std::vector<Value>& items) {
  Value value;
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(items.size()));
  for (LONG i = 0; i < static_cast<LONG>(items.size()); ++i) {
    SafeArrayPutElement(array, &i, const_cast<VARIANT*>(&items[i].Raw()));
  }
  value.Assign(VT_ARRAY | VT_VARIANT).parray = array;
  return value;
}

Value Value::Reference(Value& variable) {
  Value value;
  value.Assign(VT_BYREF | VT_VARIANT).pvarVal = variable.Receive();
  return value;
}

std::wstring Value::Text() const {
  Value text;
  const HRESULT hr = VariantChangeTypeEx(text.Receive(), const_cast<VARIANT*>(&variant_),
                                         LOCALE_INVARIANT, VARIANT_ALPHABOOL, VT_BSTR);
  if (FAILED(hr)) Fail(L"reading a result as a text", hr);
  return {text.variant_.bstrVal, SysStringLen(text.variant_.bstrVal)};
}

Object Value::AsObject() const {
  if (variant_.vt != VT_DISPATCH || !variant_.pdispVal) Fail(L"getting an object", E_POINTER);
  return Object(variant_.pdispVal);
}

Object Object::Create(const std::wstring& prog_id) {
  CLSID clsid;
  Microsoft::WRL::ComPtr<IDispatch> dispatch;
  HRESULT hr = CLSIDFromProgID(prog_id.c_str(), &clsid);
  if (SUCCEEDED(hr)) {
    hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&dispatch));
  }
  if (FAILED(hr)) Fail(L"Creating " + prog_id, hr);
  return Object(dispatch);
}

Value Object::Get(const wchar_t* member, const std::vector<Value>& arguments) const {
  return Invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
}

void Object::Put(const wchar_t* member, const std::vector<Value>& arguments) const {
  Invoke(member, DISPATCH_PROPERTYPUT, arguments);
}

void Object::Set(const wchar_t* member, const std::vector<Value>& arguments) const {
  Invoke(member, DISPATCH_PROPERTYPUTREF, arguments);
}

Value Object::Invoke(const wchar_t* member, WORD kind, const std::vector<Value>& arguments) const {
  DISPID dispid = 0;
  auto* name = const_cast<LPOLESTR>(member);
  HRESULT hr = dispatch_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &dispid);
  if (FAILED(hr)) throw Failure{hr, std::wstring(L"the object has no member ") + member};
  std::vector<VARIANT> reversed;  // borrowed from the arguments, which stay their owners
  for (const Value& each : arguments) reversed.push_back(each.Raw());
  std::reverse(reversed.begin(), reversed.end());
  DISPID put = DISPID_PROPERTYPUT;
  const bool writes = kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
  DISPPARAMS parameters{reversed.data(), writes ? &put : nullptr,
                        static_cast<UINT>(reversed.size()), writes ? 1u : 0u};
  Value result;
  EXCEPINFO raised{};
  hr = dispatch_->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                         writes ? nullptr : result.Receive(), &raised, nullptr);
  if (hr == DISP_E_EXCEPTION) Fail(member, raised);
  if (FAILED(hr)) Fail(member, hr);
  return result;
}

}  // namespace zepcheck

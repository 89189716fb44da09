#pragma once

#include <windows.h>
#include <oaidl.h>

#include "Zepkit10.h"

/// Objects of a client that offer interfaces of the type library. They live on the stack and fail
/// every call of a member.
namespace foreign {

/// How many there are: a test must not be left while the component may hold one.
inline int alive = 0;

template <class Interface>
class Object : public Interface {
 public:
  Object() { ++alive; }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  ~Object() { --alive; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(Interface);
    *result = known ? this : nullptr;
    if (known) ++references;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

  ULONG references = 1;
};

class Expression : public Object<_Expression> {
 public:
  HRESULT STDMETHODCALLTYPE Clear() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_EString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_EString(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Transform(VARIANT, ZepMathTransMode, VARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_Value(double*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Value(double) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VarSet(_VarSet**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE putref_VarSet(_VarSet*) override { return E_NOTIMPL; }
};

class VarSet : public Object<_VarSet> {
 public:
  HRESULT STDMETHODCALLTYPE Add(BSTR, _Variable**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clear() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Count(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Delete() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Explicit(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Explicit(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT, _Variable**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Name(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Parent(_VarSets**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Remove(VARIANT) override { return E_NOTIMPL; }
};

class ZepVariant : public Object<_ZepVariant> {
 public:
  HRESULT STDMETHODCALLTYPE get_ByteLength(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ByteLength(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ConnectAsRange(_ZepVariant*, LONG, LONG, VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_DataByte(LONG, unsigned char*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_DataByte(LONG, unsigned char) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_DataBytes(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_DataBytes(SAFEARRAY*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_DataString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_DataString(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DisconnectAsRange() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DisconnectRange(_ZepVariant*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DisconnectRanges() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_IsRange(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Range(LONG, LONG, VARIANT_BOOL, _ZepVariant**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_Range(LONG, LONG, VARIANT_BOOL, _ZepVariant*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE putref_Range(LONG, LONG, VARIANT_BOOL, _ZepVariant*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_RangeBytes(LONG, LONG, SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_RangeBytes(LONG, LONG, SAFEARRAY*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_RangeLength(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_RangeStart(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_RangeString(LONG, LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_RangeString(LONG, LONG, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ReadOnly(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ReadOnly(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StringLength(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_StringLength(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StringType(ZepStringType*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_StringType(ZepStringType) override { return E_NOTIMPL; }
};

}  // namespace foreign

#pragma once

#include <windows.h>
#include <oaidl.h>

#include <algorithm>
#include <initializer_list>

#include "com/client.h"

/// A user-defined type of a client: one Long. It lives longer than its values.
class Record final : public IRecordInfo {
 public:
  explicit Record(const wchar_t* name) : name_(name) {}

  /// What RecordCopy returns.
  HRESULT copied = S_OK;

  /// A value of the type, by reference.
  client::Value Of(LONG& content) {
    client::Value value;
    value.raw().vt = VT_BYREF | VT_RECORD;
    value.raw().pvRecord = &content;
    value.raw().pRecInfo = this;
    return value;
  }
  /// An array of values of the type.
  client::Value Array(std::initializer_list<LONG> contents, LONG lower_bound = 0) {
    client::Value value;
    SAFEARRAYBOUND bound{static_cast<ULONG>(contents.size()), lower_bound};
    value.raw().vt = VT_ARRAY | VT_RECORD;
    value.raw().parray = SafeArrayCreateEx(VT_RECORD, 1, &bound, this);
    std::copy(contents.begin(), contents.end(), static_cast<LONG*>(value.raw().parray->pvData));
    return value;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IRecordInfo;
    *result = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE RecordInit(void* record) override { return Set(record, 0); }
  HRESULT STDMETHODCALLTYPE RecordClear(void* record) override { return Set(record, 0); }
  HRESULT STDMETHODCALLTYPE RecordCopy(void* from, void* to) override {
    return SUCCEEDED(copied) ? Set(to, *static_cast<LONG*>(from)) : copied;
  }
  HRESULT STDMETHODCALLTYPE GetGuid(GUID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetName(BSTR* name) override {
    *name = name_ ? SysAllocString(name_) : nullptr;
    return name_ ? S_OK : E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE GetSize(ULONG* size) override {
    *size = sizeof(LONG);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetField(void*, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetFieldNoCopy(void*, LPCOLESTR, VARIANT*, void**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE PutField(ULONG, void*, LPCOLESTR, VARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE PutFieldNoCopy(ULONG, void*, LPCOLESTR, VARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetFieldNames(ULONG*, BSTR*) override { return E_NOTIMPL; }
  BOOL STDMETHODCALLTYPE IsMatchingType(IRecordInfo* other) override { return other == this; }
  void* STDMETHODCALLTYPE RecordCreate() override { return nullptr; }
  HRESULT STDMETHODCALLTYPE RecordCreateCopy(void*, void**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RecordDestroy(void*) override { return E_NOTIMPL; }

 private:
  static HRESULT Set(void* record, LONG content) {
    *static_cast<LONG*>(record) = content;
    return S_OK;
  }

  const wchar_t* const name_;  // null where the type tells none
};

#pragma once

#include <windows.h>
#include <oaidl.h>

#include <functional>
#include <vector>

#include "monkey/population.h"

namespace monkey {

/// A sink that hands every event on. It lives as long as its connection.
class Listener final : public IDispatch {
 public:
  using Handler = std::function<HRESULT(Listener&, DISPID, DISPPARAMS&)>;

  /// Connects a new one and appends it to the connections.
  static void Connect(IDispatch* source, const Class& its_class, Handler handler,
                      std::vector<Population::Connection>& connections);
  static long Live();

  /// Who raises the events; alive while an event is handled.
  IDispatch* Source() const { return source_; }
  const Class& SourceClass() const { return source_class_; }
  void Disconnect();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    return handler_(*this, id, *parameters);
  }

 private:
  Listener(IDispatch* source, const Class& its_class, Handler handler);
  virtual ~Listener();

  IDispatch* const source_;
  const Class& source_class_;
  const Handler handler_;
  DWORD cookie_ = 0;
  ULONG references_ = 1;
};

}  // namespace monkey

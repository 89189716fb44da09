#pragma once

#include "enums.h"
#include "expr/float_environment.h"
#include "platform/automation/abi.h"
#include "platform/automation/binder.h"
#include "platform/automation/object_core.h"
#include "platform/automation/translate.h"
#include "platform/stack_space.h"

namespace zepkit10 {

/// A class none of whose members comes near a floating-point number or calls anything of ours or of
/// the system that does. It says so because reading the floating-point environment may take longer
/// than such a member.
template <class Object>
concept CalculatesNothing = Object::kCalculatesNothing;

/// What all vtables of our objects have in common: IUnknown, IDispatch, and the guard around each
/// call. Object is the class behind the vtable; it owns the shim.
template <class Object, class Interface_>
class Shim : public Interface_ {
 public:
  using Interface = Interface_;

  explicit Shim(Object& object) : object_(object) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    return object_.QueryInterface(iid, result);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return object_.AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return object_.Release(); }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** result) override {
    return GetInterfaceTypeInfo(object_.Description(), index, result);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    return FindNames(object_.Description(), iid, names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* argument) override {
    return InvokeMember(object_, id, iid, locale, flags, parameters, result, exception, argument);
  }

 protected:
  /// Runs a member without a result, in the default floating-point environment if it may calculate.
  /// No exception passes.
  template <class Body>
  HRESULT Call(Body&& body) noexcept {
    return Run<std::invoke_result_t<Body, Object&>>(body);
  }

  /// Runs a member with a result, which is cleared unless the member succeeds.
  template <class Result, class Body>
  HRESULT Get(Result* result, Body&& body) noexcept {
    if (!result) return Refuse(E_POINTER);
    *result = Result{};
    return Run<std::invoke_result_t<Body, Object&>>(
        [&](Object& object) { *result = ToAbi(body(object)); });
  }

 private:
  struct Guard {
    explicit Guard(Object& object) : keeper(object) {}
    void Check() const { RequireStackSpace(); }

    const Keeper keeper;
  };
  struct CalculationGuard : Guard {
    using Guard::Guard;

    const DefaultFloatEnvironment environment;
  };
  struct NoGuard {
    explicit NoGuard(Object&) {}
    void Check() const {}
  };
  template <class Returned>
  struct GuardFor {
    using Type = std::conditional_t<CalculatesNothing<Object>, Guard, CalculationGuard>;
  };
  template <class T>
  struct GuardFor<Unguarded<T>> {
    using Type = NoGuard;
  };

  template <class Returned, class Body>
  HRESULT Run(Body&& body) noexcept {
    const typename GuardFor<Returned>::Type guard(object_);
    try {
      guard.Check();
      body(object_);
      return S_OK;
    } catch (...) {
      return TranslateException(object_.Description());
    }
  }

  Object& object_;
};

}  // namespace zepkit10

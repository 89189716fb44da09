#pragma once

#include <functional>
#include <utility>

#include "com/client.h"
#include "com/fault_plan.h"
#include "com/foreign.h"

/// A client's object that does something when it is asked for its default value, which is 7: in the
/// middle of the member that asks.
class Meddler final : public foreign::Object<IDispatch> {
 public:
  explicit Meddler(std::function<void()> action) : action_(std::move(action)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    const faults::OutsideCall outside;
    action_();
    *result = client::Value(7).raw();
    return S_OK;
  }

 private:
  const std::function<void()> action_;
};

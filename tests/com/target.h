#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "com/client.h"
#include "com/foreign.h"

/// A client's object as trace output meets it: a property `Text` and a method `PrintLine`, called
/// late bound by names in any letter case. It keeps the calls it gets.
class Target final : public foreign::Object<IDispatch> {
 public:
  static constexpr DISPID kText = 11, kPrintLine = 12;

  struct Call {
    DISPID member;
    WORD flags;
    std::vector<client::Value> arguments;

    friend bool operator==(const Call&, const Call&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Call& call);
  };
  /// What happens before a member does its work; the work is left undone where this fails.
  using Handler = std::function<HRESULT(const Call&, EXCEPINFO&)>;

  static Call Read() { return {kText, DISPATCH_PROPERTYGET, {}}; }
  static Call Write(const client::Value& value) { return {kText, DISPATCH_PROPERTYPUT, {value}}; }
  static Call Print(const client::Value& value) { return {kPrintLine, DISPATCH_METHOD, {value}}; }

  /// A handler that does something and succeeds.
  static Handler Doing(std::function<void()> action);
  /// A handler that raises an error in calls of a kind (DISPATCH_…) and lets others pass.
  static Handler Raising(int flags, HRESULT code, const wchar_t* source,
                         const wchar_t* description);
  /// A handler that passes the error of an inner call on, as a script does.
  static Handler PassingOn(std::function<client::Outcome()> inner);

  client::Value text{L""};  // of the property
  std::vector<Call> calls;
  Handler handler;
  bool has_members = true;

  /// What calls brought as texts, one after the other; forgotten.
  std::wstring Take();

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT*) override;

 private:
  HRESULT Perform(const Call& call, VARIANT* result);
};

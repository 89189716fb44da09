#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <string>
#include <vector>

namespace zepcheck {

/// What went wrong in a call: an HRESULT and a text for the user.
struct Failure {
  HRESULT code;
  std::wstring text;
};

class Object;

/// A value as scripts have it.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  Value(int number) : Value() { Assign(VT_I4).lVal = number; }
  Value(double number) : Value() { Assign(VT_R8).dblVal = number; }
  Value(bool flag) : Value() { Assign(VT_BOOL).boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE; }
  Value(const wchar_t* text) : Value() { Assign(VT_BSTR).bstrVal = SysAllocString(text); }
  Value(const std::wstring& text) : Value(text.c_str()) {}
  Value(const Object& object);
  Value(const Value& other) : Value() { *this = other; }
  Value& operator=(const Value& other);
  ~Value() { VariantClear(&variant_); }

  /// An argument that is left out.
  static Value Missing();
  static Value Array(const std::vector<Value>& items);
  /// The variable itself, for a member that changes it. It must live as long as the reference.
  static Value Reference(Value& variable);

  /// The value as a text that does not depend on the user's language.
  std::wstring Text() const;
  Object AsObject() const;
  const VARIANT& Raw() const { return variant_; }
  VARIANT* Receive() { return &variant_; }

 private:
  VARIANT& Assign(VARTYPE type) {
    variant_.vt = type;
    return variant_;
  }

  VARIANT variant_;
};

/// An object as scripts see it: through IDispatch. Every member throws Failure where the call
/// fails.
class Object {
 public:
  explicit Object(Microsoft::WRL::ComPtr<IDispatch> dispatch) : dispatch_(std::move(dispatch)) {}
  /// By its ProgID.
  static Object Create(const std::wstring& prog_id);

  /// Calls a method or reads a property.
  Value Get(const wchar_t* member, const std::vector<Value>& arguments = {}) const;
  /// Writes a property; what is written stands behind the arguments.
  void Put(const wchar_t* member, const std::vector<Value>& arguments) const;
  void Set(const wchar_t* member, const std::vector<Value>& arguments) const;

  IDispatch* Raw() const { return dispatch_.Get(); }

 private:
  Value Invoke(const wchar_t* member, WORD kind, const std::vector<Value>& arguments) const;

  Microsoft::WRL::ComPtr<IDispatch> dispatch_;
};

}  // namespace zepcheck

#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <initializer_list>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A client of automation objects that names members at run time, through either of the two
/// bindings.
namespace client {

/// An automation value that owns what it holds; made from the types that tests use.
class Value {
 public:
  Value() { VariantInit(&value_); }
  Value(int number) : Value() { value_.vt = VT_I4, value_.lVal = number; }
  Value(double number) : Value() { value_.vt = VT_R8, value_.dblVal = number; }
  Value(float number) : Value() { value_.vt = VT_R4, value_.fltVal = number; }
  Value(short number) : Value() { value_.vt = VT_I2, value_.iVal = number; }
  Value(bool flag) : Value() {
    value_.vt = VT_BOOL, value_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Value(const wchar_t* text) : Value(std::wstring_view(text)) {}
  Value(const std::wstring& text) : Value(std::wstring_view(text)) {}
  Value(std::wstring_view text) : Value() {
    value_.vt = VT_BSTR;
    value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  Value(IDispatch* object) : Value() {
    value_.vt = VT_DISPATCH, value_.pdispVal = object;
    if (object) object->AddRef();
  }
  /// Takes a value of any other type as it stands, references included.
  explicit Value(const VARIANT& value) : Value() {
    VariantCopy(&value_, const_cast<VARIANT*>(&value));
  }
  Value(const Value& other) : Value(other.value_) {}
  Value(Value&& other) noexcept : value_(std::exchange(other.value_, VARIANT{})) {}
  Value& operator=(Value other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Value() { VariantClear(&value_); }

  /// A Variant by reference to this value; valid as long as this value.
  Value Reference() {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &value_;
    return Value(reference);
  }
  /// An omitted optional argument.
  static Value Missing();
  static Value Nothing() { return Value(static_cast<IDispatch*>(nullptr)); }
  static Value Null();

  VARIANT& raw() { return value_; }
  const VARIANT& raw() const { return value_; }
  VARTYPE type() const { return value_.vt; }

  /// Same type and same content; objects by identity of their IUnknown.
  friend bool operator==(const Value& left, const Value& right);
  friend std::ostream& operator<<(std::ostream& out, const Value& value);

 private:
  VARIANT value_;
};

/// How a call ended: with a value, or with an error.
struct Outcome {
  HRESULT result = S_OK;  // what the client's call returned
  /// The error's number as a client reads it (runtime errors 1 to 65535), 0 without an error.
  long number = 0;
  std::wstring source;
  std::wstring description;
  Value value;

  bool ok() const { return SUCCEEDED(result); }
  friend bool operator==(const Outcome& left, const Value& right) {
    return left.ok() && left.value == right;
  }
  friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome);
};

/// The number of an error as a client reads it.
long NumberOf(HRESULT failure);

/// Completes an outcome whose `result` is a failure, as the caller of a slot learns more about it.
void ReadErrorInfo(Outcome& outcome);

enum class Binding {
  kVtable,    // early bound: the platform calls the slot that the type library describes
  kDispatch,  // late bound: IDispatch of the object itself
};

inline void PrintTo(Binding binding, std::ostream* out) {
  *out << (binding == Binding::kVtable ? "Vtable" : "Dispatch");
}

/// An automation object as a client sees it. Getting, calling, letting and setting name the member;
/// the last argument of `Let` and `Set` is the value assigned.
class Object {
 public:
  Object() = default;
  Object(IDispatch* object, Binding binding) : object_(object), binding_(binding) {}

  using Arguments = std::initializer_list<Value>;
  Outcome Get(const wchar_t* name, Arguments arguments = {}) const {
    return Invoke(name, DISPATCH_PROPERTYGET, ListOf(arguments));
  }
  Outcome Call(const wchar_t* name, Arguments arguments = {}) const {
    return Invoke(name, DISPATCH_METHOD, ListOf(arguments));
  }
  Outcome Let(const wchar_t* name, Arguments arguments) const {
    return Invoke(name, DISPATCH_PROPERTYPUT, ListOf(arguments));
  }
  Outcome Set(const wchar_t* name, Arguments arguments) const {
    return Invoke(name, DISPATCH_PROPERTYPUTREF, ListOf(arguments));
  }
  /// Any of these, by its flag (DISPATCH_…).
  Outcome Invoke(const wchar_t* name, WORD flags, std::span<const Value> arguments) const;

  /// The object that a property holds or a method returns, in the same binding; empty on an error.
  Object GetObject(const wchar_t* name, Arguments arguments = {}) const;
  Object CallObject(const wchar_t* name, Arguments arguments = {}) const;
  Object With(const Outcome& outcome) const;

  /// What For Each visits, in order: values, or objects in the same binding.
  std::vector<Value> Values() const;
  std::vector<Object> Items() const;

  IDispatch* get() const { return object_.Get(); }
  operator Value() const { return Value(object_.Get()); }
  explicit operator bool() const { return object_ != nullptr; }
  Binding binding() const { return binding_; }
  void Reset() { object_.Reset(); }

 private:
  Outcome InvokeOnce(const wchar_t* name, WORD flags, std::span<const Value> arguments) const;

  static std::span<const Value> ListOf(Arguments arguments) {
    return {arguments.begin(), arguments.size()};
  }

  Microsoft::WRL::ComPtr<IDispatch> object_;
  Binding binding_ = Binding::kDispatch;
};

}  // namespace client

/// Asserts that a call failed with this error: number, source and description (English).
#define EXPECT_ERROR(outcome, expected_number, expected_source, expected_description) \
  do {                                                                                \
    const client::Outcome ended = (outcome);                                          \
    EXPECT_FALSE(ended.ok()) << #outcome;                                             \
    EXPECT_EQ(static_cast<long>(expected_number), ended.number) << #outcome;          \
    EXPECT_EQ(std::wstring(expected_source), ended.source) << #outcome;               \
    EXPECT_EQ(std::wstring(expected_description), ended.description) << #outcome;     \
  } while (false)

#define EXPECT_OK(outcome)                               \
  do {                                                   \
    const client::Outcome ended = (outcome);             \
    EXPECT_TRUE(ended.ok()) << #outcome << " " << ended; \
  } while (false)

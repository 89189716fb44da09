#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "com/client.h"
#include "com/probe/probe_object.h"

/// What all tests on probes need: calls through IDispatch in every form, and the check that nothing
/// stays behind.
namespace probe {

using client::Value;

/// A reference to a variable of a client.
VARIANT ByReference(VARTYPE type, void* variable);
inline VARIANT ByReference(VARIANT& variable) { return ByReference(VT_VARIANT, &variable); }
inline VARIANT ByReference(Value& variable) { return ByReference(variable.raw()); }

/// How a call through IDispatch ended.
struct Ended {
  HRESULT result = S_OK;
  Value value;
  UINT position = kNoPosition;  // in the reversed arguments; of the one to blame
  long number = 0;              // of the error, as it travels
  std::wstring source;
  std::wstring description;

  static constexpr UINT kNoPosition = 999;
};

inline constexpr WORD kCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

/// Calls a member. Arguments come in the order of the parameters, the last ones with the given
/// names; an assignment names its value itself.
Ended Invoke(IDispatch* object, const wchar_t* member, const std::vector<VARIANT>& arguments = {},
             WORD flags = kCall, const std::vector<const wchar_t*>& names = {});

/// Without a name for what is called.
Ended InvokeId(IDispatch* object, DISPID id, WORD flags, DISPPARAMS* parameters);

/// The thread's error information, which this takes away.
bool HasErrorInfo();

/// Ends with no string, array or other block of the platform left, and no error information.
class AllocationCheck {
 protected:
  AllocationCheck();
  ~AllocationCheck();

 private:
  const std::size_t start_;
};

/// Ends with no object left either.
class LeakTest : public AllocationCheck, public testing::Test {
 protected:
  LeakTest();
  ~LeakTest() override;

 private:
  const long live_;
};

class ProbeTest : public LeakTest {
 protected:
  IDispatch* object() const { return probe_.Get(); }
  ::_Probe* vtable() const { return probe_.Get(); }

  Ended Call(const wchar_t* member, const std::vector<VARIANT>& arguments = {},
             const std::vector<const wchar_t*>& names = {}) const {
    return Invoke(object(), member, arguments, kCall, names);
  }
  Ended Let(const wchar_t* member, const std::vector<VARIANT>& arguments) const {
    return Invoke(object(), member, arguments, DISPATCH_PROPERTYPUT);
  }
  Ended Set(const wchar_t* member, const std::vector<VARIANT>& arguments) const {
    return Invoke(object(), member, arguments, DISPATCH_PROPERTYPUTREF);
  }
  static VARIANT Raw(const Value& value) { return value.raw(); }

  Microsoft::WRL::ComPtr<::_Probe> probe_ = zepkit10::Make<zepkit10::Probe>()->Abi();
};

/// An array of the client, of Variants unless told otherwise.
class ClientArray {
 public:
  explicit ClientArray(std::initializer_list<Value> elements, LONG lower = 0);
  ClientArray(VARTYPE type, ULONG count, LONG lower = 0)
      : array_(SafeArrayCreateVector(type, lower, count)), type_(type) {}
  ~ClientArray() { SafeArrayDestroy(array_); }
  ClientArray(const ClientArray&) = delete;
  ClientArray& operator=(const ClientArray&) = delete;

  SAFEARRAY*& get() { return array_; }
  /// As an argument by value.
  VARIANT Raw() const;
  /// Gives the array up to a Variant that owns it.
  Value Take();

 private:
  SAFEARRAY* array_;
  VARTYPE type_ = VT_VARIANT;
};

/// The elements of an array, whatever their type.
std::vector<Value> Elements(const VARIANT& array);

}  // namespace probe

#pragma once

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/automation/ref.h"
#include "platform/automation/string.h"

namespace zepkit10 {

class ObjectCore;

/// The connection point of a class with events. The generated proxies derive from it and raise each
/// event with `Raise`.
///
/// Firing goes over a snapshot of the sinks: a handler may advise, unadvise, call back in, drop the
/// last reference to the source or fail without disturbing the others. What a handler returns is
/// its own affair.
class EventSource : public IConnectionPointContainer {
 public:
  explicit EventSource(ObjectCore& owner) : owner_(owner), point_(*this) {}
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;

  /// True where anyone listens.
  bool HasSinks() const { return !sinks_->items.empty(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** result) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** result) override;

 protected:
  ~EventSource() = default;

  template <class... Arguments>
  void Raise(DISPID event, Arguments&&... arguments);

 private:
  struct Sink {
    DWORD cookie;
    Microsoft::WRL::ComPtr<IDispatch> target;
  };
  /// Shared with those that go over it. Only changed in place where nobody does. Its count belongs
  /// to the owner's apartment and is not interlocked.
  struct Sinks {
    explicit Sinks(std::vector<Sink> listening = {}) : items(std::move(listening)) {}

    std::vector<Sink> items;
    long users = 0;

    void Retain() { ++users; }
    void Drop() {
      if (--users == 0) delete this;
    }
  };

  /// The one connection point; it has an identity of its own but lives and dies with the owner.
  class Point final : public IConnectionPoint {
   public:
    explicit Point(EventSource& source) : source_(source) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return source_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return source_.Release(); }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* result) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** result) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** result) override;

   private:
    EventSource& source_;
  };

  void Fire(DISPID event, VARIANT* arguments, UINT count) const noexcept;

  ObjectCore& owner_;
  Point point_;
  Ref<Sinks> sinks_ = Make<Sinks>();
  DWORD last_cookie_ = 0;
};

/// A Boolean that every handler may change in turn. What they leave goes back when this ends.
class ChangeableFlag {
 public:
  explicit ChangeableFlag(bool& flag) : flag_(flag), value_(flag ? VARIANT_TRUE : VARIANT_FALSE) {}
  ~ChangeableFlag() { flag_ = value_ != VARIANT_FALSE; }
  ChangeableFlag(const ChangeableFlag&) = delete;
  ChangeableFlag& operator=(const ChangeableFlag&) = delete;

  VARIANT_BOOL* Location() { return &value_; }

 private:
  bool& flag_;
  VARIANT_BOOL value_;
};

namespace event_argument {

inline void Set(VARIANT& to, bool value) {
  to.vt = VT_BOOL, to.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void Set(VARIANT& to, ChangeableFlag& value) {
  to.vt = VT_BYREF | VT_BOOL, to.pboolVal = value.Location();
}
inline void Set(VARIANT& to, std::int32_t value) { to.vt = VT_I4, to.lVal = value; }
inline void Set(VARIANT& to, std::int16_t value) { to.vt = VT_I2, to.iVal = value; }
inline void Set(VARIANT& to, float value) { to.vt = VT_R4, to.fltVal = value; }
inline void Set(VARIANT& to, double value) { to.vt = VT_R8, to.dblVal = value; }
inline void Set(VARIANT& to, IDispatch* value) { to.vt = VT_DISPATCH, to.pdispVal = value; }
inline void Set(VARIANT& to, std::u16string_view value) {
  to.bstrVal = MakeBstr(value);
  to.vt = VT_BSTR;
}
template <class Enumeration>
requires std::is_enum_v<Enumeration>
void Set(VARIANT& to, Enumeration value) { Set(to, static_cast<std::int32_t>(value)); }

}  // namespace event_argument

template <class... Arguments>
void EventSource::Raise(DISPID event, Arguments&&... arguments) {
  if (!HasSinks()) return;
  constexpr UINT kCount = sizeof...(Arguments);
  // Automation passes arguments last first.
  struct Values {
    VARIANT items[kCount ? kCount : 1] = {};
    ~Values() {
      for (VARIANT& item : items) {
        if (item.vt == VT_BSTR) SysFreeString(item.bstrVal);
      }
    }
  } values;
  [[maybe_unused]] UINT position = kCount;
  (event_argument::Set(values.items[--position], arguments), ...);
  Fire(event, values.items, kCount);
}

}  // namespace zepkit10

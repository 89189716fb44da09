#pragma once

#include <string>
#include <string_view>

#include "platform/automation/automation_object.h"
#include "platform/automation/enumerator.h"
#include "platform/automation/variant.h"
#include "probe/probe_events.h"
#include "probe/probe_list_shim.h"
#include "probe/probe_shim.h"

namespace zepkit10 {

class ProbeList;

/// An array on its way to the client.
struct Array {
  SAFEARRAY* array;
};
inline SAFEARRAY* ToAbi(Array given) { return given.array; }

/// What `Probe.Fail` throws.
enum class ProbeFailure {
  kOwnError,      // zepErrBadParam with a source and a description
  kRuntimeError,  // error 6 without either
  kBadAlloc,
  kLengthError,
  kForeignException,  // derived from std::exception
  kNumber,            // an int
  kNone,
};

/// Members of every shape; most hand back what they are given, or change it in a way that shows.
class Probe final : public AutomationObject<Probe, ProbeShim> {
 public:
  Probe() : AutomationObject(&events_) {}

  std::int32_t EchoLong(std::int32_t given) { return given; }
  std::int16_t EchoShort(std::int16_t given) { return given; }
  std::uint8_t EchoByte(std::uint8_t given) { return given; }
  float EchoSingle(float given) { return given; }
  double EchoDouble(double given) { return given; }
  double EchoDate(double given) { return given; }
  bool EchoFlag(bool given) { return given; }
  std::u16string EchoText(std::u16string_view given) { return std::u16string(given); }
  ProbeKind EchoKind(ProbeKind given) { return given; }
  Variant EchoValue(const VARIANT& given);
  /// A foreign object raises error 13.
  Ref<Probe> EchoProbe(::_Probe* given);
  Microsoft::WRL::ComPtr<IDispatch> EchoDispatch(IDispatch* given) { return given; }
  Microsoft::WRL::ComPtr<IUnknown> EchoUnknown(IUnknown* given) { return given; }
  Array EchoLongs(SAFEARRAY* given);

  // Numbers and dates grow by one, a flag and the kinds First and Second change over, a text grows
  // by an exclamation mark, a Variant becomes the text "changed", an object becomes this object.
  void ChangeLong(LONG* changed) { ++*changed; }
  void ChangeShort(SHORT* changed) { ++*changed; }
  void ChangeByte(unsigned char* changed) { ++*changed; }
  void ChangeSingle(float* changed) { ++*changed; }
  void ChangeDouble(double* changed) { ++*changed; }
  void ChangeDate(DATE* changed) { ++*changed; }
  void ChangeFlag(VARIANT_BOOL* changed) { *changed = static_cast<VARIANT_BOOL>(~*changed); }
  void ChangeText(BSTR* changed);
  void ChangeKind(ProbeKind* changed);
  void ChangeValue(VARIANT* changed);
  void ChangeProbe(::_Probe** changed);
  void ChangeDispatch(IDispatch** changed);
  void ChangeUnknown(IUnknown** changed);

  /// Grow an array by one element at its end; the first tells the new number of elements.
  std::int32_t AppendText(SAFEARRAY** texts, std::u16string_view added);
  void AppendByte(SAFEARRAY** bytes, std::uint8_t added);
  void AppendValue(SAFEARRAY** values, const VARIANT& added);

  std::int32_t ReadLong(LONG* read) { return *read; }
  /// The sum of the bytes.
  std::int32_t ReadBytes(SAFEARRAY** bytes);

  /// All arguments as one text, separated by bars.
  std::u16string Defaults(std::int32_t number, std::u16string_view text, bool flag, ProbeKind kind,
                          const VARIANT& step, const VARIANT& anything);
  /// 0 without `where`, else 1; then `where` becomes the text and `found` true.
  std::int32_t Find(std::u16string_view text, VARIANT* where, VARIANT_BOOL* found);
  double Divide(double numerator, double denominator);
  void Nothing() {}
  Variant LongStep(const VARIANT& step) { return EchoValue(step); }

  std::int32_t Count(SAFEARRAY** items);
  /// Replaces every item that came by reference by the text.
  void Fill(std::u16string_view text, SAFEARRAY** items);

  std::int32_t Value() { return value_; }
  void SetValue(std::int32_t value) { value_ = value; }
  /// The names and what was assigned last, separated by bars.
  std::u16string Entry(std::u16string_view file, std::u16string_view section,
                       std::u16string_view key);
  void SetEntry(std::u16string_view file, std::u16string_view section, std::u16string_view key,
                std::u16string_view entry);
  Variant Held() { return EchoValue(held_.get()); }
  void SetHeld(const VARIANT& held) { held_ = EchoValue(held); }
  Ref<Probe> Companion() { return companion_; }
  void SetCompanion(::_Probe* companion) { companion_ = EchoProbe(companion); }
  /// Two probes with the values 10 and 20.
  Ref<ProbeList> List();
  /// 10, 20, 30 at 1 to 3.
  Array Numbers();
  /// Three columns by two rows, bounds (0 To 2, 5 To 6); each element is 10 * column + row.
  Array Grid();
  /// "one" and "two" at 0 and 1.
  Array Texts();
  Array Bytes();
  void SetBytes(SAFEARRAY* bytes);

  std::u16string Fail(std::int32_t how);
  /// Raises error 5 after the change.
  void FailAfterChange(BSTR* changed);

  void RaiseIdle() { events_.Idle(); }
  void RaiseChanged(std::u16string_view text, double number, std::int32_t times) {
    events_.Changed(text, number, times);
  }
  /// What the handlers left in Cancel, which starts as false.
  bool RaiseBefore(bool new_value);
  /// -7, 0.5, Second, this object and `other`.
  void RaiseScalars(IDispatch* other);
  /// What was given, after the handlers of Idle.
  Variant RaiseAndEcho(const VARIANT& given) {
    events_.Idle();
    return EchoValue(given);
  }
  /// As the members without an event, after the handlers of Idle.
  void RaiseAndChange(LONG* changed) {
    events_.Idle();
    ChangeLong(changed);
  }
  void RaiseAndAppend(SAFEARRAY** texts, std::u16string_view added) {
    events_.Idle();
    AppendText(texts, added);
  }

 private:
  ProbeEvents events_{*this};
  std::int32_t value_ = 0;
  std::u16string entry_;
  Variant held_;
  Variant bytes_;
  Ref<Probe> companion_;
  Ref<ProbeList> list_;
};

class ProbeList final : public AutomationObject<ProbeList, ProbeListShim> {
 public:
  Ref<Probe> Item(const VARIANT& index);
  std::int32_t Length() { return 2; }
  Microsoft::WRL::ComPtr<IUnknown> NewEnum();

 private:
  const Ref<Probe> first_ = MakeProbe(10);
  const Ref<Probe> second_ = MakeProbe(20);

  static Ref<Probe> MakeProbe(std::int32_t value);
};

}  // namespace zepkit10

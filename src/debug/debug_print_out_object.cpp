#include "debug/debug_print_out_object.h"

#include "debug/debug_print_outs_object.h"
#include "platform/ansi.h"
#include "platform/automation/late_call.h"
#include "platform/automation/translate.h"

namespace zepkit10 {
namespace {

using enum ZepDPOCallType;
using Microsoft::WRL::ComPtr;

constexpr LCID kLocale = 1033;
constexpr int kMaxDeliveriesRunning = 16;  // a target that prints, to a target that prints …

class RunningDelivery {
 public:
  explicit RunningDelivery(DebugPrintOuts& outs) : outs_(&outs) {
    if (outs_->DeliveriesRunning() == kMaxDeliveriesRunning) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace);
    }
    ++outs_->DeliveriesRunning();
  }
  ~RunningDelivery() { --outs_->DeliveriesRunning(); }
  RunningDelivery(const RunningDelivery&) = delete;
  RunningDelivery& operator=(const RunningDelivery&) = delete;

 private:
  const Ref<DebugPrintOuts> outs_;
};

/// A member of an object, which lives as long as this: a target may be deleted while it is called.
class LinkedMember {
 public:
  LinkedMember(const ComPtr<IDispatch>& object, std::u16string_view name) : object_(object) {
    if (!object_) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrObjectVariableNotSet);
    id_ = FindMember(*object_.Get(), name, kLocale);
  }

  Variant Get() const { return CallMember(*object_.Get(), id_, DISPATCH_PROPERTYGET, kLocale); }
  void Let(const Variant& value) const {
    CallMember(*object_.Get(), id_, DISPATCH_PROPERTYPUT, kLocale, {&value.get(), 1});
  }
  void Call(const Variant& argument) const {
    CallMember(*object_.Get(), id_, DISPATCH_METHOD, kLocale, {&argument.get(), 1});
  }

 private:
  const ComPtr<IDispatch> object_;
  DISPID id_;
};

/// A property's value with a text appended; Null adds nothing, as wherever texts are put together.
Variant Appended(Variant value, std::u16string_view text) {
  if (value.get().vt == VT_NULL) return Variant(text);
  const HRESULT hr = VariantChangeTypeEx(value.Out(), value.Out(), LOCALE_USER_DEFAULT,
                                         VARIANT_ALPHABOOL, VT_BSTR);
  if (FAILED(hr)) RaiseRefusal(hr);
  std::u16string whole(ViewOf(value.get().bstrVal));
  whole += text;
  return Variant(whole);
}

}  // namespace

DebugPrintOut::DebugPrintOut(IDispatch* object, std::u16string_view call, ZepDPOCallType type)
    : object_(object), call_(call), type_(type) {}

DebugPrintOut::~DebugPrintOut() = default;

std::u16string DebugPrintOut::LinkedCall() const {
  EnsureAlive();
  return call_;
}

ZepDPOCallType DebugPrintOut::LinkedCallType() const {
  EnsureAlive();
  return type_;
}

ComPtr<IDispatch> DebugPrintOut::LinkedObject() const {
  EnsureAlive();
  return object_;
}

void DebugPrintOut::PrintText(std::u16string_view Text) {
  EnsureAlive();
  const RunningDelivery running(parent());
  const std::u16string text = TextOfAnsi(AnsiOf(Text));
  switch (type_) {
    case zepDPOCallTypeGetLet: {
      const LinkedMember member(object_, call_);
      return member.Let(Appended(member.Get(), text));
    }
    case zepDPOCallTypeLet:
      return LinkedMember(object_, call_).Let(Variant(text));
    case zepDPOCallTypeMethod:
      return LinkedMember(object_, call_).Call(Variant(text));
  }
  Raise(ZepErrors::zepErrUnexpected);
}

bool DebugPrintOut::Usable() {
  EnsureAlive();
  try {
    const RunningDelivery running(parent());
    switch (type_) {
      case zepDPOCallTypeGetLet: {
        const LinkedMember member(object_, call_);
        member.Let(member.Get());
        return true;
      }
      case zepDPOCallTypeLet:
        LinkedMember(object_, call_).Let(Variant());
        return true;
      case zepDPOCallTypeMethod:
        LinkedMember(object_, call_).Call(Variant());
        return true;
    }
    return false;
  } catch (...) {
    return false;
  }
}

}  // namespace zepkit10

#include "com/target.h"

#include <gtest/gtest.h>

#include "com/fault_plan.h"

namespace {

constexpr LCID kLocaleOfCalls = 1033;

HRESULT Raise(EXCEPINFO& exception, HRESULT code, const wchar_t* source,
              const wchar_t* description) {
  exception.scode = code;
  exception.bstrSource = SysAllocString(source);
  exception.bstrDescription = SysAllocString(description);
  return DISP_E_EXCEPTION;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Target::Call& call) {
  out << "member " << call.member << ", flags " << call.flags << " (";
  for (const client::Value& argument : call.arguments) out << argument;
  return out << ")";
}

Target::Handler Target::Doing(std::function<void()> action) {
  return [action = std::move(action)](const Call&, EXCEPINFO&) {
    action();
    return S_OK;
  };
}

Target::Handler Target::Raising(int flags, HRESULT code, const wchar_t* source,
                                const wchar_t* description) {
  return [=](const Call& call, EXCEPINFO& exception) {
    return call.flags & flags ? Raise(exception, code, source, description) : S_OK;
  };
}

Target::Handler Target::PassingOn(std::function<client::Outcome()> inner) {
  return [inner = std::move(inner)](const Call&, EXCEPINFO& exception) {
    const client::Outcome ended = inner();
    if (ended.ok()) return S_OK;
    const bool runtime = ended.number > 0;
    return Raise(exception, runtime ? 0x800A0000 + ended.number : ended.number,
                 ended.source.c_str(), ended.description.c_str());
  };
}

std::wstring Target::Take() {
  std::wstring taken;
  for (const Call& call : std::exchange(calls, {})) {
    for (const client::Value& argument : call.arguments) {
      if (argument.type() != VT_BSTR) continue;
      taken.append(argument.raw().bstrVal, SysStringLen(argument.raw().bstrVal));
    }
  }
  return taken;
}

HRESULT Target::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) {
  const faults::OutsideCall outside;
  EXPECT_EQ(1u, count);
  EXPECT_EQ(kLocaleOfCalls, locale);
  const bool is_text = _wcsicmp(names[0], L"Text") == 0;
  const bool known = has_members && (is_text || _wcsicmp(names[0], L"PrintLine") == 0);
  ids[0] = !known ? DISPID_UNKNOWN : is_text ? kText : kPrintLine;
  return known ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT Target::Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO* exception, UINT*) {
  const faults::OutsideCall outside;
  EXPECT_EQ(kLocaleOfCalls, locale);
  Call call{id, flags, {}};
  for (UINT i = parameters->cArgs; i-- > 0;) call.arguments.emplace_back(parameters->rgvarg[i]);
  const bool names_value =
      parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  EXPECT_EQ(flags == DISPATCH_PROPERTYPUT, names_value);
  calls.push_back(call);
  // It may be replaced while it runs.
  const Handler handler_of_call = handler;
  const HRESULT hr = handler_of_call ? handler_of_call(call, *exception) : S_OK;
  return FAILED(hr) ? hr : Perform(call, result);
}

HRESULT Target::Perform(const Call& call, VARIANT* result) {
  const std::size_t count = call.arguments.size();
  if (call.member == kPrintLine) {
    if (call.flags != DISPATCH_METHOD) return DISP_E_MEMBERNOTFOUND;
    return count == 1 ? S_OK : DISP_E_BADPARAMCOUNT;
  }
  switch (call.flags) {
    case DISPATCH_PROPERTYGET:
      return count == 0 ? VariantCopy(result, &text.raw()) : DISP_E_BADPARAMCOUNT;
    case DISPATCH_PROPERTYPUT:
      if (count != 1) return DISP_E_BADPARAMCOUNT;
      text = call.arguments[0];
      return S_OK;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

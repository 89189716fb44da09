#include "monkey/outcome.h"

#include <wrl/client.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "com/argument_catalogue.h"
#include "com/type_library_reader.h"
#include "monkey/journal.h"
#include "monkey/strangers.h"

namespace monkey {
namespace {

using Microsoft::WRL::ComPtr;

/// What IDispatch itself answers.
constexpr HRESULT kRefusals[] = {
    DISP_E_TYPEMISMATCH,   DISP_E_OVERFLOW,         DISP_E_BADVARTYPE,  DISP_E_BADPARAMCOUNT,
    DISP_E_PARAMNOTFOUND,  DISP_E_PARAMNOTOPTIONAL, DISP_E_NONAMEDARGS, DISP_E_BADINDEX,
    DISP_E_MEMBERNOTFOUND, DISP_E_ARRAYISLOCKED,    E_INVALIDARG,       E_OUTOFMEMORY};

std::string Hexadecimal(HRESULT value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", value);
  return text;
}

/// What strangers raise and answer, which is passed on.
bool IsStrangers(HRESULT error) {
  constexpr HRESULT kTheirs[] = {kStrangersError, E_NOTIMPL, E_FAIL, E_NOINTERFACE};
  return std::count(std::begin(kTheirs), std::end(kTheirs), error) > 0;
}

/// The library's own errors, the runtime errors, and those of strangers.
bool IsOfContract(HRESULT error) {
  constexpr HRESULT kFirst = static_cast<HRESULT>(0x80040400);
  constexpr HRESULT kLast = static_cast<HRESULT>(0x80040413);
  const bool runtime = (error & 0xFFFF0000) == 0x800A0000 && (error & 0xFFFF) != 0;
  return runtime || (error >= kFirst && error <= kLast) || IsStrangers(error);
}

void CheckError(HRESULT error, BSTR source, BSTR description) {
  const std::wstring_view named(source ? source : L"", SysStringLen(source));
  if (!IsOfContract(error)) {
    journal::ReportWrongOutcome("error " + Hexadecimal(error) + " is not of the contract");
  } else if (!named.starts_with(L"Zepkit10") && named != kStrangersSource) {
    journal::ReportWrongOutcome("error " + Hexadecimal(error) + " has the source \"" +
                                zepkit10::Utf8(named.data(), static_cast<UINT>(named.size())) +
                                "\"");
  } else if (SysStringLen(description) == 0) {
    journal::ReportWrongOutcome("error " + Hexadecimal(error) + " has no description");
  }
}

}  // namespace

void CheckDispatchOutcome(HRESULT outcome, const EXCEPINFO* exception, UINT position,
                          UINT arguments, const VARIANT* result) {
  if (outcome == DISP_E_EXCEPTION) {
    if (exception) CheckError(exception->scode, exception->bstrSource, exception->bstrDescription);
  } else if (outcome != S_OK && !IsStrangers(outcome) &&
             !std::count(std::begin(kRefusals), std::end(kRefusals), outcome)) {
    journal::ReportWrongOutcome("IDispatch answers " + Hexadecimal(outcome));
  }
  if (FAILED(outcome) && result && result->vt != VT_EMPTY) {
    journal::ReportWrongOutcome("a result is left of a failed call");
  }
  if (FAILED(outcome) && position != 0 && position >= arguments) {
    journal::ReportWrongOutcome("an argument is blamed that there is not");
  }
}

void CheckVtableOutcome(HRESULT outcome, bool lacks_reference) {
  ComPtr<IErrorInfo> info;
  GetErrorInfo(0, &info);
  if (outcome == S_OK) {
    if (lacks_reference) journal::ReportWrongOutcome("succeeds without a place for its result");
    return;
  }
  if (SUCCEEDED(outcome)) return journal::ReportWrongOutcome("returns " + Hexadecimal(outcome));
  if (outcome == E_POINTER) {
    if (info) journal::ReportWrongOutcome("has error information with E_POINTER");
    return;
  }
  BSTR source = nullptr, description = nullptr;
  if (info) info->GetSource(&source);
  if (info) info->GetDescription(&description);
  CheckError(outcome, source, description);
  SysFreeString(source);
  SysFreeString(description);
}

void CheckCleared(VARTYPE type, const VARIANT& result) {
  bool cleared = result.llVal == 0;
  switch (type) {
    case VT_VARIANT:
      cleared = result.vt == VT_EMPTY;
      break;
    case VT_BOOL:
    case VT_I2:
      cleared = result.iVal == 0;
      break;
    case VT_UI1:
      cleared = result.bVal == 0;
      break;
    case VT_I4:
    case VT_R4:
      cleared = result.lVal == 0;
      break;
    case VT_R8:
    case VT_DATE:
      break;
    default:
      cleared = result.byref == nullptr;
  }
  if (!cleared) journal::ReportWrongOutcome("a failed call does not clear its result");
}

void Unchanged::Watch(const VARIANT& argument) {
  arguments_.push_back({argument, ArgumentCatalogue::Fingerprint(argument)});
}

void Unchanged::Check() const {
  for (const Argument& argument : arguments_) {
    if (argument.print != ArgumentCatalogue::Fingerprint(argument.value)) {
      journal::ReportWrongOutcome("an argument by value has changed");
    }
  }
}

}  // namespace monkey

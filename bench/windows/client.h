#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <string>

#include "Zepkit10.h"
#include "measure.h"

/// The component as the benchmarks call it: early bound, and every refusal ends the program.
template <class Interface>
Microsoft::WRL::ComPtr<Interface> Create(REFCLSID clsid) {
  Microsoft::WRL::ComPtr<Interface> made;
  Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&made)), "creating");
  return made;
}

/// A text for one call.
class Text {
 public:
  explicit Text(const std::wstring& text) : text_(SysAllocString(text.c_str())) {}
  explicit Text(const char16_t* text) : Text(reinterpret_cast<const wchar_t*>(text)) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

/// An argument that is left out.
inline VARIANT Missing() {
  VARIANT missing{};
  missing.vt = VT_ERROR;
  missing.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

inline Microsoft::WRL::ComPtr<_VarSet> NewVariables(_Global* zepkit) {
  Microsoft::WRL::ComPtr<_VarSets> sets;
  Microsoft::WRL::ComPtr<_VarSet> variables;
  VARIANT unnamed = Missing();
  Check(zepkit->get_VarSets(&sets), "VarSets");
  Check(sets->Add(&unnamed, &variables), "VarSets.Add");
  return variables;
}

inline Microsoft::WRL::ComPtr<_Variable> AddVariable(_VarSet* variables, const wchar_t* name) {
  Microsoft::WRL::ComPtr<_Variable> added;
  Check(variables->Add(Text(name), &added), "VarSet.Add");
  return added;
}

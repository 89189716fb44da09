#pragma once

#include "com/both_bindings.h"
#include "com/zep_error.h"

/// A test with the apartment's variable sets, empty at first.
class WithVarSets : public BothBindings {
 protected:
  WithVarSets() { EXPECT_OK(sets_.Call(L"Clear")); }
  ~WithVarSets() override { sets_.Call(L"Clear"); }

  client::Object global_ = Create(CLSID_Global);
  client::Object sets_ = global_.GetObject(L"VarSets");
};

/// A test with one empty variable set.
class WithVarSet : public WithVarSets {
 protected:
  /// A new variable whose Expression is a term.
  client::Object Define(const wchar_t* name, const wchar_t* term) const {
    const client::Object variable = set_.CallObject(L"Add", {name});
    EXPECT_OK(variable.GetObject(L"Expression").Let(L"EString", {term}));
    return variable;
  }

  client::Object set_ = sets_.CallObject(L"Add", {L"set"});
};

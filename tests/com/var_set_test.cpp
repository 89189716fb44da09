#include "com/german_user.h"
#include "com/index_kinds.h"
#include "com/var_sets_fixture.h"

namespace {

using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

class VarSetTest : public WithVarSet {};

TEST_P(VarSetTest, AddedVariablesStandInOrderAndAreZero) {
  const Object b = set_.CallObject(L"Add", {L"b"});
  const Object a = set_.CallObject(L"Add", {L"a"});
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_EQ(set_.Get(L"Item", {1}), b);
  EXPECT_EQ(set_.Get(L"Item", {2}), a);
  EXPECT_EQ(set_.Get(L"Item", {L"a"}), a);
  EXPECT_EQ(a.Get(L"Name"), L"a");
  EXPECT_EQ(a.Get(L"Value"), 0.0);
  EXPECT_EQ(a.Get(L"Parent"), set_);
  EXPECT_EQ(set_.Get(L"Parent"), sets_);
}

TEST_P(VarSetTest, AddRefusesNamesInUse) {
  const Object lower = set_.CallObject(L"Add", {L"x"});
  const Object upper = set_.CallObject(L"Add", {L"X"});
  EXPECT_ZEP_ERROR(set_.Call(L"Add", {L"x"}), zepErrItemAlreadyExists, L"VarSet");
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_EQ(set_.Get(L"Item", {L"x"}), lower);
  EXPECT_EQ(set_.Get(L"Item", {L"X"}), upper);
}

TEST_P(VarSetTest, AddRefusesNamesOfAnotherLength) {
  for (const std::wstring& name :
       {std::wstring(), std::wstring(L"xy"), std::wstring(L"\xD83D\xDE00"), std::wstring(L"x\0", 2),
        std::wstring(100000, L'x')}) {
    SCOPED_TRACE(name.size());
    EXPECT_ZEP_ERROR(set_.Call(L"Add", {name}), zepErrBadCall, L"VarSet");
    EXPECT_ZEP_ERROR(set_.Get(L"Item", {name}), zepErrBadCall, L"VarSet");
  }
  EXPECT_EQ(set_.Get(L"Count"), 0);
}

TEST_P(VarSetTest, AnyCodeUnitIsAName) {
  for (const std::wstring& name : {std::wstring(1, L'\0'), std::wstring(L"7"), std::wstring(L" "),
                                   std::wstring(L"\xE4"), std::wstring(L"\xD83D")}) {
    const Object added = set_.CallObject(L"Add", {name});
    ASSERT_TRUE(added);
    EXPECT_EQ(added.Get(L"Name"), name);
    EXPECT_EQ(set_.Get(L"Item", {name}), added);
  }
  EXPECT_EQ(set_.Get(L"Count"), 5);
}

TEST_P(VarSetTest, AnUnknownNameIsAdded) {
  EXPECT_EQ(set_.Get(L"Explicit"), false);
  const Object x = set_.GetObject(L"Item", {L"x"});
  EXPECT_EQ(x.Get(L"Name"), L"x");
  EXPECT_EQ(x.Get(L"Value"), 0.0);
  EXPECT_EQ(set_.Get(L"Count"), 1);
  EXPECT_EQ(set_.Get(L"Item", {L"x"}), x);
  EXPECT_EQ(set_.Get(L"Count"), 1);
}

TEST_P(VarSetTest, LetterCaseTellsUnknownNamesFromKnownOnes) {
  const Object lower = set_.CallObject(L"Add", {L"x"});
  EXPECT_OK(set_.Let(L"Explicit", {true}));
  EXPECT_ZEP_ERROR(set_.Get(L"Item", {L"X"}), zepErrItemNotExistant, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Call(L"Remove", {L"X"}), zepErrItemNotExistant, L"VarSet");
  EXPECT_OK(set_.Let(L"Explicit", {false}));
  const Object upper = set_.GetObject(L"Item", {L"X"});
  EXPECT_EQ(upper.Get(L"Name"), L"X");
  EXPECT_EQ(lower.Get(L"Name"), L"x");
  EXPECT_EQ(set_.Get(L"Count"), 2);
}

TEST_P(VarSetTest, AnExplicitSetRefusesUnknownNames) {
  const Object x = set_.CallObject(L"Add", {L"x"});
  EXPECT_OK(set_.Let(L"Explicit", {true}));
  EXPECT_EQ(set_.Get(L"Explicit"), true);
  EXPECT_ZEP_ERROR(set_.Get(L"Item", {L"y"}), zepErrItemNotExistant, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Get(L"Item", {L"long"}), zepErrItemNotExistant, L"VarSet");
  EXPECT_EQ(set_.Get(L"Count"), 1);
  EXPECT_EQ(set_.Get(L"Item", {L"x"}), x);
  EXPECT_OK(set_.Call(L"Add", {L"y"}));
  EXPECT_OK(set_.Let(L"Explicit", {false}));
  EXPECT_OK(set_.Get(L"Item", {L"z"}));
  EXPECT_EQ(set_.Get(L"Count"), 3);
}

TEST_P(VarSetTest, PositionsOutsideRaise9) {
  set_.Call(L"Add", {L"x"});
  for (const int position : {0, -1, 2, INT_MAX, INT_MIN}) {
    EXPECT_ERROR(set_.Get(L"Item", {position}), 9, L"Zepkit10.VarSet", L"Subscript out of range");
    EXPECT_ERROR(set_.Call(L"Remove", {position}), 9, L"Zepkit10.VarSet",
                 L"Subscript out of range");
  }
  EXPECT_EQ(set_.Get(L"Count"), 1);
}

TEST_P(VarSetTest, PositionsAreIntegersAndNamesStrings) {
  const Object variable = set_.CallObject(L"Add", {L"1"});
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    EXPECT_EQ(set_.Get(L"Item", {index}), variable) << index;
  }
  for (const Value& index : index_kinds::Refused(global_.get())) {
    SCOPED_TRACE(index.type());
    EXPECT_ZEP_ERROR(set_.Get(L"Item", {index}), zepErrBadParam, L"VarSet");
    EXPECT_ZEP_ERROR(set_.Call(L"Remove", {index}), zepErrBadParam, L"VarSet");
  }
  EXPECT_EQ(set_.Get(L"Count"), 1);
}

TEST_P(VarSetTest, RemoveTakesEveryKindOfIndex) {
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    const Object variable = set_.CallObject(L"Add", {L"1"});
    EXPECT_OK(set_.Call(L"Remove", {index}));
    EXPECT_ZEP_ERROR(variable.Get(L"Name"), zepErrAwaitTerm, L"Variable");
    EXPECT_EQ(set_.Get(L"Count"), 0);
  }
}

TEST_P(VarSetTest, RemoveDeletesByPosition) {
  const Object a = set_.CallObject(L"Add", {L"a"});
  const Object b = set_.CallObject(L"Add", {L"b"});
  const Object c = set_.CallObject(L"Add", {L"c"});
  EXPECT_OK(set_.Call(L"Remove", {2}));
  EXPECT_ZEP_ERROR(b.Get(L"Name"), zepErrAwaitTerm, L"Variable");
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_EQ(set_.Get(L"Item", {1}), a);
  EXPECT_EQ(set_.Get(L"Item", {2}), c);
}

TEST_P(VarSetTest, RemoveNeverAdds) {
  EXPECT_ZEP_ERROR(set_.Call(L"Remove", {L"x"}), zepErrItemNotExistant, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Call(L"Remove", {L"long"}), zepErrItemNotExistant, L"VarSet");
  EXPECT_EQ(set_.Get(L"Count"), 0);
}

TEST_P(VarSetTest, ClearDeletesEveryVariable) {
  const Object x = set_.CallObject(L"Add", {L"x"});
  const Object y = set_.CallObject(L"Add", {L"y"});
  EXPECT_OK(set_.Call(L"Clear"));
  EXPECT_EQ(set_.Get(L"Count"), 0);
  EXPECT_ZEP_ERROR(x.Get(L"Value"), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(y.Get(L"Value"), zepErrAwaitTerm, L"Variable");
  EXPECT_EQ(set_.Get(L"Name"), L"set");
  EXPECT_OK(set_.Call(L"Add", {L"x"}));
}

TEST_P(VarSetTest, ForEachVisitsASnapshotInOrder) {
  for (const wchar_t* name : {L"c", L"a", L"b"}) set_.Call(L"Add", {name});
  EXPECT_OK(set_.Call(L"Remove", {L"a"}));
  EXPECT_OK(set_.Call(L"Add", {L"d"}));
  std::wstring visited;
  for (const Object& variable : set_.Items()) {
    const auto name = variable.Get(L"Name");
    ASSERT_TRUE(name.ok());
    visited += name.value.raw().bstrVal;
    EXPECT_OK(variable.Call(L"Delete"));
  }
  EXPECT_EQ(L"cbd", visited);
  EXPECT_EQ(set_.Get(L"Count"), 0);
}

TEST_P(VarSetTest, NameIsUniqueAmongTheSets) {
  const Object other = sets_.CallObject(L"Add", {L"other"});
  EXPECT_ZEP_ERROR(set_.Let(L"Name", {L"other"}), zepErrItemAlreadyExists, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Let(L"Name", {L"set"}), zepErrItemAlreadyExists, L"VarSet");
  EXPECT_EQ(set_.Get(L"Name"), L"set");
  EXPECT_EQ(sets_.Get(L"Item", {L"set"}), set_);
  EXPECT_OK(set_.Let(L"Name", {L"Set"}));
  EXPECT_EQ(set_.Get(L"Name"), L"Set");
  EXPECT_EQ(sets_.Get(L"Item", {L"Set"}), set_);
  EXPECT_ZEP_ERROR(sets_.Get(L"Item", {L"set"}), zepErrItemNotExistant, L"VarSets");
  EXPECT_OK(other.Let(L"Name", {L"set"}));
  EXPECT_EQ(sets_.Get(L"Item", {1}), set_);  // a new name moves nothing
}

TEST_P(VarSetTest, AnUnnamedSetMayBeNamedLater) {
  const Object unnamed = sets_.CallObject(L"Add");
  EXPECT_ZEP_ERROR(unnamed.Let(L"Name", {L"set"}), zepErrItemAlreadyExists, L"VarSet");
  EXPECT_ZEP_ERROR(unnamed.Get(L"Name"), zepErrBadCallContext, L"VarSet");
  EXPECT_OK(unnamed.Let(L"Name", {L"late"}));
  EXPECT_EQ(unnamed.Get(L"Name"), L"late");
  EXPECT_EQ(sets_.Get(L"Item", {L"late"}), unnamed);
}

TEST_P(VarSetTest, DeletedSetsRefuseEveryMember) {
  const Object variable = set_.CallObject(L"Add", {L"x"});
  const Object follower = Create(CLSID_Expression);
  EXPECT_OK(follower.Set(L"VarSet", {set_}));
  EXPECT_OK(set_.Call(L"Delete"));
  EXPECT_EQ(sets_.Get(L"Count"), 0);
  EXPECT_ZEP_ERROR(set_.Call(L"Add", {L"xy"}), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Call(L"Clear"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Get(L"Count"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Call(L"Delete"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Get(L"Explicit"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Let(L"Explicit", {true}), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Get(L"Item", {1.0}), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Get(L"Name"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Let(L"Name", {L"set"}), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Get(L"NewEnum"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Get(L"Parent"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(set_.Call(L"Remove", {1.0}), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(variable.Get(L"Name"), zepErrAwaitTerm, L"Variable");
  EXPECT_ZEP_ERROR(variable.Call(L"Delete"), zepErrAwaitTerm, L"Variable");
  EXPECT_EQ(follower.Get(L"VarSet"), set_);  // an Expression holds on to it
  EXPECT_OK(sets_.Call(L"Add", {L"set"}));
}

TEST_P(VarSetTest, AnUnnamedSetCanBeDeleted) {
  const Object unnamed = sets_.CallObject(L"Add");
  EXPECT_OK(unnamed.Call(L"Delete"));
  EXPECT_EQ(sets_.Get(L"Count"), 1);
  EXPECT_ZEP_ERROR(unnamed.Get(L"Name"), zepErrAwaitTerm, L"VarSet");
}

TEST_P(VarSetTest, NullPointersOfVtableClients) {
  ComPtr<_VarSet> set;
  ASSERT_EQ(S_OK, set_.get()->QueryInterface(IID_PPV_ARGS(&set)));
  ComPtr<_Variable> added;
  EXPECT_EQ(zepErrBadCall, set->Add(nullptr, &added));
  EXPECT_EQ(nullptr, added.Get());
  BSTR x = SysAllocString(L"x");
  EXPECT_EQ(E_POINTER, set->Add(x, nullptr));
  EXPECT_EQ(E_POINTER, set->get_Item(VARIANT{}, nullptr));
  EXPECT_EQ(E_POINTER, set->get_NewEnum(nullptr));
  EXPECT_EQ(set_.Get(L"Count"), 0);
  SysFreeString(x);
  // Any number but 0 is true to the platform, too.
  VARIANT_BOOL flag = VARIANT_FALSE;
  EXPECT_EQ(S_OK, set->put_Explicit(1));
  EXPECT_EQ(S_OK, set->get_Explicit(&flag));
  EXPECT_EQ(VARIANT_TRUE, flag);
}

TEST_P(VarSetTest, ManyVariables) {
  for (int unit = 1; unit < 0x10000; ++unit) {
    EXPECT_TRUE(set_.Call(L"Add", {std::wstring(1, static_cast<wchar_t>(unit))}).ok()) << unit;
  }
  EXPECT_EQ(set_.Get(L"Count"), 0xFFFF);
  EXPECT_EQ(set_.GetObject(L"Item", {0xFFFF}).Get(L"Name"), std::wstring(1, L'\xFFFF'));
  for (int left = 0xFFFF; left > 0; --left) {
    EXPECT_TRUE(set_.Call(L"Remove", {1 + left / 2}).ok()) << left;
  }
  EXPECT_EQ(set_.Get(L"Count"), 0);
}

RUN_IN_BOTH_BINDINGS(VarSetTest);

}  // namespace

#include <functional>

#include "com/fault_plan.h"
#include "com/foreign.h"
#include "com/german_user.h"
#include "com/index_kinds.h"
#include "com/var_sets_fixture.h"

namespace {

using client::Object;
using client::Value;

/// A client's object whose default member does something before it gives the text "name".
class Named : public foreign::Object<IDispatch> {
 public:
  explicit Named(std::function<void()> before) : before_(std::move(before)) {}
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    const faults::OutsideCall outside;
    before_();
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString(L"name");
    return S_OK;
  }

 private:
  std::function<void()> before_;
};

class VarSetsTest : public WithVarSets {};

TEST_P(VarSetsTest, AddedSetsStandInOrder) {
  EXPECT_EQ(sets_.Get(L"Count"), 0);
  const Object first = sets_.CallObject(L"Add", {L"first"});
  const Object second = sets_.CallObject(L"Add", {L"second"});
  EXPECT_EQ(sets_.Get(L"Count"), 2);
  EXPECT_EQ(sets_.Get(L"Item", {1}), first);
  EXPECT_EQ(sets_.Get(L"Item", {2}), second);
  EXPECT_EQ(sets_.Get(L"Item", {L"second"}), second);
  EXPECT_EQ(first.Get(L"Name"), L"first");
  EXPECT_EQ(first.Get(L"Count"), 0);
  EXPECT_EQ(first.Get(L"Explicit"), false);
}

TEST_P(VarSetsTest, ParentIsTheSharedLibrary) {
  EXPECT_EQ(sets_.Get(L"Parent"), global_.GetObject(L"Zep"));
  const Object set = sets_.CallObject(L"Add", {L"set"});
  EXPECT_EQ(set.Get(L"Parent"), sets_);
}

TEST_P(VarSetsTest, AddWithoutANameLeavesTheSetUnnamed) {
  const Object unnamed = sets_.CallObject(L"Add");
  EXPECT_OK(sets_.Call(L"Add", {Value::Missing()}));
  EXPECT_EQ(sets_.Get(L"Count"), 2);
  EXPECT_ZEP_ERROR(unnamed.Get(L"Name"), zepErrBadCallContext, L"VarSet");
  EXPECT_ZEP_ERROR(sets_.Get(L"Item", {L""}), zepErrItemNotExistant, L"VarSets");
  EXPECT_ZEP_ERROR(sets_.Call(L"Remove", {L""}), zepErrItemNotExistant, L"VarSets");
  EXPECT_EQ(sets_.Get(L"Item", {1}), unnamed);
  const Object named = sets_.CallObject(L"Add", {L"named"});
  EXPECT_EQ(sets_.Get(L"Item", {L"named"}), named);
}

TEST_P(VarSetsTest, ANameMayHaveBeenLeftOutByTheClientsCaller) {
  Value missing = Value::Missing(), reference = missing.Reference();
  for (const Value& name : {missing.Reference(), reference.Reference()}) {
    const Object unnamed = sets_.CallObject(L"Add", {name});
    ASSERT_TRUE(unnamed);
    EXPECT_ZEP_ERROR(unnamed.Get(L"Name"), zepErrBadCallContext, L"VarSet");
  }
  EXPECT_EQ(sets_.Get(L"Count"), 2);
}

TEST_P(VarSetsTest, TheEmptyTextIsAName) {
  const Object empty = sets_.CallObject(L"Add", {L""});
  EXPECT_EQ(empty.Get(L"Name"), L"");
  EXPECT_EQ(sets_.Get(L"Item", {L""}), empty);
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {L""}), zepErrItemAlreadyExists, L"VarSets");
  const Object later = sets_.CallObject(L"Add");
  EXPECT_ZEP_ERROR(later.Let(L"Name", {L""}), zepErrItemAlreadyExists, L"VarSet");
  EXPECT_OK(empty.Let(L"Name", {L"full"}));
  EXPECT_OK(later.Let(L"Name", {L""}));
  EXPECT_EQ(sets_.Get(L"Item", {L""}), later);
}

TEST_P(VarSetsTest, AddConvertsItsNameToText) {
  EXPECT_EQ(sets_.CallObject(L"Add", {3}).Get(L"Name"), L"3");
  EXPECT_EQ(sets_.CallObject(L"Add", {-1.5}).Get(L"Name"), L"-1.5");
  EXPECT_EQ(sets_.CallObject(L"Add", {true}).Get(L"Name"), L"True");
  EXPECT_EQ(sets_.CallObject(L"Add", {Value()}).Get(L"Name"), L"");
  Value number = 7, text = L"text";
  EXPECT_EQ(sets_.CallObject(L"Add", {number.Reference()}).Get(L"Name"), L"7");
  EXPECT_EQ(sets_.CallObject(L"Add", {text.Reference()}).Get(L"Name"), L"text");
  // An object stands for its default member.
  const Object counter = Create(CLSID_Counter);
  EXPECT_OK(counter.Let(L"Value", {42}));
  EXPECT_EQ(sets_.CallObject(L"Add", {counter}).Get(L"Name"), L"42");
  EXPECT_EQ(sets_.Get(L"Count"), 7);
}

TEST_P(VarSetsTest, ANameMayBeTakenWhileItIsAskedFor) {
  Named named([&] { EXPECT_OK(sets_.Call(L"Add", {L"name"})); });
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {Value(&named)}), zepErrItemAlreadyExists, L"VarSets");
  EXPECT_EQ(sets_.Get(L"Count"), 1);
  EXPECT_EQ(1u, named.references);
}

TEST_P(VarSetsTest, GermanNumbersBecomeGermanNames) {
  SKIP_UNLESS_GERMAN();
  EXPECT_EQ(sets_.CallObject(L"Add", {-1.5}).Get(L"Name"), L"-1,5");
}

TEST_P(VarSetsTest, AddRefusesWhatIsNoText) {
  VARIANT array, error;
  array.vt = VT_ARRAY | VT_VARIANT;
  array.parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  error.vt = VT_ERROR;
  error.scode = E_FAIL;
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {Value::Null()}), zepErrBadParam, L"VarSets");
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {Value::Nothing()}), zepErrBadParam, L"VarSets");
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {global_}), zepErrBadParam, L"VarSets");
  foreign::Object<IDispatch> failing;
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {Value(&failing)}), zepErrBadParam, L"VarSets");
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {Value(array)}), zepErrBadParam, L"VarSets");
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {Value(error)}), zepErrBadParam, L"VarSets");
  EXPECT_EQ(sets_.Get(L"Count"), 0);
  SafeArrayDestroy(array.parray);
}

TEST_P(VarSetsTest, NamesAreUniqueAndCaseCounts) {
  const Object lower = sets_.CallObject(L"Add", {L"name"});
  const Object upper = sets_.CallObject(L"Add", {L"NAME"});
  EXPECT_ZEP_ERROR(sets_.Call(L"Add", {L"name"}), zepErrItemAlreadyExists, L"VarSets");
  EXPECT_EQ(sets_.Get(L"Count"), 2);
  EXPECT_EQ(sets_.Get(L"Item", {L"name"}), lower);
  EXPECT_EQ(sets_.Get(L"Item", {L"NAME"}), upper);
  EXPECT_ZEP_ERROR(sets_.Get(L"Item", {L"Name"}), zepErrItemNotExistant, L"VarSets");
  EXPECT_EQ(sets_.Get(L"Count"), 2);
}

TEST_P(VarSetsTest, NamesKeepEveryCodeUnit) {
  const std::wstring odd(L"a\0b\xD83D\xDE00 \xD800", 7);
  const std::wstring shorter = odd.substr(0, 6);
  const std::wstring huge(100000, L'n');
  for (const auto& name : {odd, shorter, huge, huge + L"n"}) {
    const Object added = sets_.CallObject(L"Add", {name});
    ASSERT_TRUE(added);
    EXPECT_EQ(added.Get(L"Name"), name);
    EXPECT_EQ(sets_.Get(L"Item", {name}), added);
  }
  EXPECT_EQ(sets_.Get(L"Count"), 4);
}

TEST_P(VarSetsTest, PositionsOutsideRaise9) {
  sets_.Call(L"Add");
  for (const int position : {0, -1, 2, INT_MAX, INT_MIN}) {
    EXPECT_ERROR(sets_.Get(L"Item", {position}), 9, L"Zepkit10.VarSets", L"Subscript out of range");
    EXPECT_ERROR(sets_.Call(L"Remove", {position}), 9, L"Zepkit10.VarSets",
                 L"Subscript out of range");
  }
  EXPECT_EQ(sets_.Get(L"Count"), 1);
}

TEST_P(VarSetsTest, PositionsAreIntegersAndNamesStrings) {
  const Object set = sets_.CallObject(L"Add", {L"1"});
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    EXPECT_EQ(sets_.Get(L"Item", {index}), set) << index;
  }
  for (const Value& index : index_kinds::Refused(global_.get())) {
    SCOPED_TRACE(index.type());
    EXPECT_ZEP_ERROR(sets_.Get(L"Item", {index}), zepErrBadParam, L"VarSets");
    EXPECT_ZEP_ERROR(sets_.Call(L"Remove", {index}), zepErrBadParam, L"VarSets");
  }
  EXPECT_EQ(sets_.Get(L"Count"), 1);
}

TEST_P(VarSetsTest, RemoveDeletesTheSet) {
  const Object first = sets_.CallObject(L"Add", {L"first"});
  const Object second = sets_.CallObject(L"Add", {L"second"});
  const Object third = sets_.CallObject(L"Add", {L"third"});
  EXPECT_OK(sets_.Call(L"Remove", {2}));
  EXPECT_ZEP_ERROR(second.Get(L"Name"), zepErrAwaitTerm, L"VarSet");
  EXPECT_EQ(sets_.Get(L"Count"), 2);
  EXPECT_EQ(sets_.Get(L"Item", {2}), third);
  EXPECT_OK(sets_.Call(L"Remove", {L"first"}));
  EXPECT_ZEP_ERROR(first.Get(L"Name"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(sets_.Call(L"Remove", {L"first"}), zepErrItemNotExistant, L"VarSets");
  EXPECT_EQ(sets_.Get(L"Count"), 1);
  EXPECT_OK(sets_.Call(L"Add", {L"first"}));
}

TEST_P(VarSetsTest, ClearDeletesEverySetAndItsVariables) {
  const Object named = sets_.CallObject(L"Add", {L"named"});
  const Object unnamed = sets_.CallObject(L"Add");
  const Object variable = named.CallObject(L"Add", {L"x"});
  EXPECT_OK(sets_.Call(L"Clear"));
  EXPECT_EQ(sets_.Get(L"Count"), 0);
  EXPECT_ZEP_ERROR(named.Get(L"Count"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(unnamed.Get(L"Count"), zepErrAwaitTerm, L"VarSet");
  EXPECT_ZEP_ERROR(variable.Get(L"Value"), zepErrAwaitTerm, L"Variable");
  EXPECT_OK(sets_.Call(L"Clear"));
  EXPECT_OK(sets_.Call(L"Add", {L"named"}));
}

TEST_P(VarSetsTest, ForEachVisitsASnapshot) {
  for (const wchar_t* name : {L"b", L"a", L"c"}) sets_.Call(L"Add", {name});
  std::vector<Value> names;
  for (const Object& set : sets_.Items()) {
    names.push_back(set.Get(L"Name").value);
    sets_.Call(L"Remove", {1});
    if (names.size() == 1) sets_.Call(L"Add", {L"late"});
  }
  EXPECT_EQ(3u, names.size());
  EXPECT_EQ(Value(L"b"), names[0]);
  EXPECT_EQ(sets_.Get(L"Count"), 1);
  EXPECT_EQ(sets_.GetObject(L"Item", {1}).Get(L"Name"), L"late");
}

TEST_P(VarSetsTest, AnEnumeratorOutlivesWhatItVisits) {
  for (const wchar_t* name : {L"a", L"b", L"c"}) sets_.Call(L"Add", {name});
  const auto entry = sets_.Get(L"NewEnum");
  ASSERT_EQ(VT_UNKNOWN, entry.value.type());
  Microsoft::WRL::ComPtr<IEnumVARIANT> visits;
  ASSERT_EQ(S_OK, entry.value.raw().punkVal->QueryInterface(IID_PPV_ARGS(&visits)));
  EXPECT_OK(sets_.Call(L"Clear"));
  VARIANT items[4];
  ULONG fetched = 9;
  EXPECT_EQ(S_OK, visits->Skip(1));
  EXPECT_EQ(S_FALSE, visits->Next(4, items, &fetched));
  ASSERT_EQ(2u, fetched);
  for (ULONG i = 0; i < fetched; ++i) {
    EXPECT_ZEP_ERROR(Object(items[i].pdispVal, GetParam()).Get(L"Name"), zepErrAwaitTerm,
                     L"VarSet");
    VariantClear(&items[i]);
  }
  EXPECT_EQ(S_FALSE, visits->Next(1, items, &fetched));
  EXPECT_EQ(0u, fetched);
  EXPECT_EQ(S_OK, visits->Reset());
  Microsoft::WRL::ComPtr<IEnumVARIANT> clone;
  EXPECT_EQ(S_OK, visits->Clone(&clone));
  EXPECT_EQ(S_OK, clone->Next(1, items, nullptr));
  VariantClear(&items[0]);
}

TEST_P(VarSetsTest, ItemIsTheDefaultMember) {
  const Object set = sets_.CallObject(L"Add", {L"set"});
  Value index = L"set", result;
  DISPPARAMS one{&index.raw(), nullptr, 1, 0};
  EXPECT_EQ(S_OK, sets_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                      DISPATCH_PROPERTYGET, &one, &result.raw(), nullptr, nullptr));
  EXPECT_EQ(Value(set), result);
}

TEST_P(VarSetsTest, NullPointersOfVtableClients) {
  Microsoft::WRL::ComPtr<_VarSets> sets;
  ASSERT_EQ(S_OK, sets_.get()->QueryInterface(IID_PPV_ARGS(&sets)));
  Microsoft::WRL::ComPtr<_VarSet> unnamed, named;
  EXPECT_EQ(S_OK, sets->Add(nullptr, &unnamed));
  BSTR name = nullptr;
  EXPECT_EQ(zepErrBadCallContext, unnamed->get_Name(&name));
  EXPECT_EQ(S_OK, unnamed->put_Name(nullptr));
  EXPECT_EQ(S_OK, unnamed->get_Name(&name));
  EXPECT_EQ(0u, SysStringLen(name));
  SysFreeString(name);
  VARIANT empty;
  empty.vt = VT_BSTR;
  empty.bstrVal = nullptr;
  EXPECT_EQ(S_OK, sets->get_Item(empty, &named));
  EXPECT_EQ(unnamed.Get(), named.Get());
  EXPECT_EQ(E_POINTER, sets->Add(nullptr, nullptr));
  EXPECT_EQ(zepErrItemAlreadyExists, sets->Add(&empty, named.ReleaseAndGetAddressOf()));
  EXPECT_EQ(nullptr, named.Get());
}

RUN_IN_BOTH_BINDINGS(VarSetsTest);

}  // namespace

// The members of both roots that convert between delimited lists, collections and arrays.
#include "com/both_roots.h"
#include "com/fault_plan.h"
#include "com/foreign.h"
#include "com/text_array.h"

namespace {

using client::Object;
using client::Outcome;
using client::Value;
using text_array::Make;
using text_array::Read;

using Values = std::vector<Value>;
using Texts = std::vector<std::wstring>;

class ListMembersTest : public BothRoots {
 protected:
  /// Splits both ways, which must agree, and checks the bounds of the array.
  Texts Split(client::Object::Arguments arguments) const {
    const Outcome array = root_.Call(L"ListToStringArray", arguments);
    EXPECT_TRUE(array.ok()) << array;
    const Texts texts = Read(array.value);
    if (texts.empty()) {
      EXPECT_EQ(nullptr, array.value.raw().parray);
    } else {
      EXPECT_EQ(1, array.value.raw().parray->rgsabound[0].lLbound);
    }
    const Values items = root_.CallObject(L"ListToCollection", arguments).Values();
    EXPECT_EQ(items, Values(texts.begin(), texts.end()));
    return texts;
  }

  Object CollectionOf(const Values& values) const {
    const Object collection = root_.CallObject(L"ListToCollection", {L""});
    for (const Value& value : values) EXPECT_OK(collection.Call(L"Add", {value}));
    return collection;
  }
};

TEST_P(ListMembersTest, SplitsAtSpaces) {
  EXPECT_EQ(Split({L"a b"}), (Texts{L"a", L"b"}));
  EXPECT_EQ(Split({L"a  b"}), (Texts{L"a", L"", L"b"}));
  EXPECT_EQ(Split({L"a "}), (Texts{L"a", L""}));
  EXPECT_EQ(Split({L" a"}), (Texts{L"", L"a"}));
  EXPECT_EQ(Split({L"\"a b\""}), (Texts{L"\"a", L"b\""}));
}

TEST_P(ListMembersTest, WhatIsLeftOutHasItsDefault) {
  const Value none = Value::Missing();
  EXPECT_EQ(Split({L"\"a b\"", none, none, none}), (Texts{L"\"a", L"b\""}));
  EXPECT_EQ(Split({L"'a b' c", none, L"'", L"'"}), (Texts{L"a b", L"c"}));
  const Value array = Make(1, {L"a b", L""});
  EXPECT_EQ(root_.Call(L"StringArrayToList", {array, none, none, none}), L"a b ");
  EXPECT_EQ(root_.Call(L"StringArrayToList", {array, none, L"<", L">"}), L"<a b> <>");
  const Object items = CollectionOf({L"a b", L""});
  EXPECT_EQ(root_.Call(L"CollectionToList", {items, none, none, none}), L"a b ");
  EXPECT_EQ(root_.Call(L"CollectionToList", {items, L","}), L"a b,");
}

TEST_P(ListMembersTest, TextsMayBeNumbersToConvert) {
  EXPECT_EQ(Split({12321, 2}), (Texts{L"1", L"3", L"1"}));
}

TEST_P(ListMembersTest, AnEmptyTextHasNoItems) {
  EXPECT_EQ(Split({L""}), Texts{});
  EXPECT_EQ(root_.CallObject(L"ListToCollection", {L""}).Get(L"Count"), 0);
}

TEST_P(ListMembersTest, SplitsInAnyFormat) {
  EXPECT_EQ(Split({L"x \"a b\" y", L" ", L"\"", L"\""}), (Texts{L"x", L"a b", L"y"}));
  EXPECT_EQ(Split({L"ab\"c d\"e", L" ", L"\"", L"\""}), (Texts{L"abc de"}));
  EXPECT_EQ(Split({L"a (b c) d", L" ", L"(", L")"}), (Texts{L"a", L"b c", L"d"}));
  EXPECT_EQ(Split({L"((x y))", L" ", L"(", L")"}), (Texts{L"x y"}));
  EXPECT_EQ(Split({L"a--b", L"--"}), (Texts{L"a", L"b"}));
  EXPECT_EQ(Split({L"a b", L""}), (Texts{L"a b"}));
  EXPECT_EQ(Split({L"a b", L" ", L"", L")"}), (Texts{L" "}));
}

TEST_P(ListMembersTest, KeepsEveryCharacter) {
  const std::wstring text(L"a\0b,c", 5);
  EXPECT_EQ(Split({text, L","}), (Texts{std::wstring(L"a\0b", 3), L"c"}));
  EXPECT_EQ(Split({text, std::wstring(L"\0", 1)}), (Texts{L"a", L"b,c"}));
}

TEST_P(ListMembersTest, JoinsArrays) {
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Make(1, {L"a", L"", L"b"}), L",", L"\"", L"\""}),
            L"a,\"\",b");
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Make(1, {L"a b", L"c"}), L" ", L"(", L")"}),
            L"(a b) c");
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Make(1, {L"a b", L"c"})}), L"a b c");
  const Outcome split = root_.Call(L"ListToStringArray", {L"a,\"\",b", L",", L"\"", L"\""});
  EXPECT_EQ(Read(split.value), (Texts{L"a", L"", L"b"}));
}

TEST_P(ListMembersTest, JoiningStartsAtIndexOne) {
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Make(0, {L"x", L"y", L"z"})}), L"y z");
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Make(-1, {L"w", L"x", L"y"})}), L"y");
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Make(-1, {L"w"})}), L"");
  EXPECT_ERROR(root_.Call(L"StringArrayToList", {Make(2, {L"x", L"y"})}), 9,
               std::wstring(L"Zepkit10.") + RootName(), L"Subscript out of range");
}

TEST_P(ListMembersTest, AnArrayWithoutElementsJoinsToNothing) {
  Value unallocated;
  unallocated.raw().vt = VT_ARRAY | VT_BSTR;
  EXPECT_EQ(root_.Call(L"StringArrayToList", {unallocated}), L"");
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Make(5, {})}), L"");
}

TEST_P(ListMembersTest, JoinsWhatComesByReference) {
  Value array = Make(1, {L"a", L"b"});
  VARIANT typed;
  typed.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
  typed.pparray = &array.raw().parray;
  EXPECT_EQ(root_.Call(L"StringArrayToList", {Value(typed)}), L"a b");
  EXPECT_EQ(root_.Call(L"StringArrayToList", {array.Reference()}), L"a b");
  EXPECT_EQ(Read(array), (Texts{L"a", L"b"}));
}

TEST_P(ListMembersTest, JoinsLockedArraysAndNullTexts) {
  Value array = Make(1, {L"a", L"b"});
  SysFreeString(static_cast<BSTR*>(array.raw().parray->pvData)[0]);
  static_cast<BSTR*>(array.raw().parray->pvData)[0] = nullptr;
  SafeArrayLock(array.raw().parray);
  EXPECT_EQ(root_.Call(L"StringArrayToList", {array.Reference(), L",", L"<", L">"}), L"<>,b");
  EXPECT_EQ(1u, array.raw().parray->cLocks);
  SafeArrayUnlock(array.raw().parray);
}

TEST_P(ListMembersTest, OnlyStringArraysJoin) {
  VARIANT variants;
  variants.vt = VT_ARRAY | VT_VARIANT;
  variants.parray = SafeArrayCreateVector(VT_VARIANT, 1, 1);
  const Value array_of_variants(variants);
  VariantClear(&variants);
  for (const Value& given : {Value(5), Value(L"a b"), Value(), Value::Null(), array_of_variants}) {
    EXPECT_ROOT_ERROR(root_.Call(L"StringArrayToList", {given}), zepErrBadCall);
  }
}

TEST_P(ListMembersTest, OnlyArraysThatReallyHoldStringsJoin) {
  VARIANT bytes;
  bytes.vt = VT_ARRAY | VT_UI1;
  bytes.parray = SafeArrayCreateVector(VT_UI1, 1, 3);
  const Value array(bytes);
  VARIANT disguised = array.raw(), reference;
  disguised.vt = reference.vt = VT_ARRAY | VT_BSTR;
  reference.vt |= VT_BYREF;
  reference.pparray = &disguised.parray;
  EXPECT_ROOT_ERROR(root_.Call(L"StringArrayToList", {Value(reference)}), zepErrBadCall);
  VariantClear(&bytes);
}

TEST_P(ListMembersTest, OnlyOneDimensionJoins) {
  VARIANT grid;
  grid.vt = VT_ARRAY | VT_BSTR;
  SAFEARRAYBOUND bounds[] = {{2, 1}, {2, 1}};
  grid.parray = SafeArrayCreate(VT_BSTR, 2, bounds);
  const Value value(grid);
  VariantClear(&grid);
  EXPECT_ROOT_ERROR(root_.Call(L"StringArrayToList", {value}), zepErrBadCall);
}

TEST_P(ListMembersTest, JoinsCollections) {
  EXPECT_EQ(root_.Call(L"CollectionToList", {CollectionOf({L"a", L"b c", L""}), L" ", L"(", L")"}),
            L"a (b c) ()");
  EXPECT_EQ(root_.Call(L"CollectionToList", {CollectionOf({L"a", L"b"})}), L"a b");
  EXPECT_EQ(root_.Call(L"CollectionToList", {CollectionOf({})}), L"");
  EXPECT_EQ(root_.Call(L"CollectionToList", {Value::Nothing()}), L"");
}

TEST_P(ListMembersTest, OnlyTextsOfACollectionJoin) {
  foreign::VarSet object;
  for (const Value& value : {Value(5), Value(), Value::Null(), Value(&object)}) {
    EXPECT_ROOT_ERROR(root_.Call(L"CollectionToList", {CollectionOf({L"a", value})}),
                      zepErrBadCall);
  }
}

/// A client's collection that has `Count` and `Item` but no enumerator.
class Counted : public foreign::Object<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    const std::wstring_view name = names[0];
    *ids = name == L"Count" ? 1 : name == L"Item" ? 2 : DISPID_UNKNOWN;
    return *ids == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* given,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    const faults::OutsideCall outside;
    if (id != 1 && id != 2) return DISP_E_MEMBERNOTFOUND;
    if (id == 1) {
      if (!(flags & count_kind)) return DISP_E_MEMBERNOTFOUND;
      *result = count.raw();
      return S_OK;
    }
    if (given->rgvarg[0].lVal > 2) {
      exception->scode = E_FAIL;
      exception->bstrSource = SysAllocString(L"Client.Counted");
      exception->bstrDescription = SysAllocString(L"No more than two");
      return DISP_E_EXCEPTION;
    }
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString(given->rgvarg[0].lVal == 1 ? L"one" : L"two");
    return S_OK;
  }

  Value count = 2;
  WORD count_kind = DISPATCH_PROPERTYGET;
};

TEST_P(ListMembersTest, ACollectionMayHaveCountAndItemOnly) {
  Counted counted;
  EXPECT_EQ(root_.Call(L"CollectionToList", {Value(&counted)}), L"one two");
  counted.count = static_cast<short>(1);
  EXPECT_EQ(root_.Call(L"CollectionToList", {Value(&counted)}), L"one");
  counted.count = -5;
  EXPECT_EQ(root_.Call(L"CollectionToList", {Value(&counted)}), L"");
  EXPECT_EQ(1u, counted.references);
}

TEST_P(ListMembersTest, CountMayBeAMethod) {
  Counted counted;
  counted.count_kind = DISPATCH_METHOD;
  EXPECT_EQ(root_.Call(L"CollectionToList", {Value(&counted)}), L"one two");
}

/// A client's collection that is its own enumerator: one text, then a failure or the end.
class Enumerated : public foreign::Object<IDispatch>, public IEnumVARIANT {
 public:
  explicit Enumerated(HRESULT end) : end_(end) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (iid != IID_IEnumVARIANT) return Object::QueryInterface(iid, result);
    *result = static_cast<IEnumVARIANT*>(this);
    ++references;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return Object::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return Object::Release(); }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    const faults::OutsideCall outside;
    if (id != DISPID_NEWENUM) return DISP_E_MEMBERNOTFOUND;
    result->vt = VT_UNKNOWN;
    result->punkVal = static_cast<IEnumVARIANT*>(this);
    ++references;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Next(ULONG, VARIANT* item, ULONG* fetched) override {
    const faults::OutsideCall outside;
    if (std::exchange(begun_, true)) return end_;
    item->vt = VT_BSTR;
    item->bstrVal = SysAllocString(L"one");
    *fetched = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

 private:
  const HRESULT end_;
  bool begun_ = false;
};

TEST_P(ListMembersTest, ACollectionMayHaveAnEnumeratorOnly) {
  Enumerated whole(S_FALSE), failing(DISP_E_DIVBYZERO);
  const auto object = [](Enumerated& made) { return Value(static_cast<IDispatch*>(&made)); };
  EXPECT_EQ(root_.Call(L"CollectionToList", {object(whole)}), L"one");
  EXPECT_ERROR(root_.Call(L"CollectionToList", {object(failing)}), 11,
               std::wstring(L"Zepkit10.") + RootName(), L"Division by zero");
  EXPECT_EQ(1u, whole.references);
  EXPECT_EQ(1u, failing.references);
}

TEST_P(ListMembersTest, WhatACollectionRaisesPassesOn) {
  Counted counted;
  counted.count = 3;
  EXPECT_ERROR(root_.Call(L"CollectionToList", {Value(&counted)}), E_FAIL, L"Client.Counted",
               L"No more than two");
  counted.count = Value::Null();
  EXPECT_ERROR(root_.Call(L"CollectionToList", {Value(&counted)}), 13,
               std::wstring(L"Zepkit10.") + RootName(), L"Type mismatch");
}

TEST_P(ListMembersTest, AnObjectThatIsNoCollectionIsRefused) {
  foreign::VarSet object;
  EXPECT_ERROR(root_.Call(L"CollectionToList", {Value(&object)}), 451,
               std::wstring(L"Zepkit10.") + RootName(), L"Object not a collection");
  EXPECT_EQ(1u, object.references);
}

TEST_P(ListMembersTest, NullTextsOfVtableClientsAreEmpty) {
  Microsoft::WRL::ComPtr<_Library> library;
  Microsoft::WRL::ComPtr<_Global> global;
  root_.get()->QueryInterface(IID_PPV_ARGS(&library));
  root_.get()->QueryInterface(IID_PPV_ARGS(&global));
  Value list, text = L"a b";
  list.raw().vt = VT_ARRAY | VT_BSTR;
  EXPECT_EQ(S_OK, library ? library->ListToStringArray(text.raw().bstrVal, nullptr, nullptr,
                                                       nullptr, &list.raw().parray)
                          : global->ListToStringArray(text.raw().bstrVal, nullptr, nullptr, nullptr,
                                                      &list.raw().parray));
  EXPECT_EQ(Read(list), (Texts{L"a b"}));
  const Value pair = Make(1, {L"a", L"b"});
  Value joined = L"";
  SysFreeString(std::exchange(joined.raw().bstrVal, nullptr));
  BSTR* result = &joined.raw().bstrVal;
  EXPECT_EQ(S_OK, library
                      ? library->StringArrayToList(pair.raw(), nullptr, nullptr, nullptr, result)
                      : global->StringArrayToList(pair.raw(), nullptr, nullptr, nullptr, result));
  EXPECT_EQ(joined, Value(L"ab"));
}

TEST_P(ListMembersTest, ManyItemsSplitAndJoin) {
  std::wstring list;
  for (int i = 0; i < 10000; ++i) list += L"ab,";
  const Outcome array = root_.Call(L"ListToStringArray", {list, L","});
  ASSERT_EQ(10001u, array.value.raw().parray->rgsabound[0].cElements);
  EXPECT_EQ(root_.Call(L"StringArrayToList", {array.value, L","}), list);
}

RUN_WITH_BOTH_ROOTS(ListMembersTest);

}  // namespace

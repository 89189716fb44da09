#include <functional>

#include "com/both_bindings.h"
#include "com/fault_plan.h"
#include "com/foreign.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

using Values = std::vector<Value>;

class ListTest : public BothBindings {
 protected:
  Object list_ = Create(CLSID_List);
};

TEST_P(ListTest, StartsEmpty) {
  EXPECT_EQ(list_.Get(L"Count"), 0);
  EXPECT_EQ(list_.Get(L"Delimiter"), L" ");
  EXPECT_EQ(list_.Get(L"QuoteBegin"), L"");
  EXPECT_EQ(list_.Get(L"QuoteEnd"), L"");
  EXPECT_EQ(list_.Get(L"ListString"), L"");
  EXPECT_EQ(list_.Values(), Values{});
}

TEST_P(ListTest, AddsAtTheEnd) {
  EXPECT_OK(list_.Call(L"AddItem", {L"a"}));
  EXPECT_OK(list_.Call(L"AddItem", {L"b", -1}));
  EXPECT_OK(list_.Call(L"AddItem", {L"c", 3}));
  EXPECT_EQ(list_.Values(), (Values{L"a", L"b", L"c"}));
  EXPECT_EQ(list_.Get(L"Count"), 3);
}

TEST_P(ListTest, InsertsBeforeAPosition) {
  EXPECT_OK(list_.Call(L"AddItem", {L"b", 1}));
  EXPECT_OK(list_.Call(L"AddItem", {L"a", 1}));
  EXPECT_OK(list_.Call(L"AddItem", {L"x", 2}));
  EXPECT_EQ(list_.Values(), (Values{L"a", L"x", L"b"}));
}

TEST_P(ListTest, RefusesToInsertElsewhere) {
  for (const int index : {0, -2, 2, 2147483647, -2147483647 - 1}) {
    EXPECT_ZEP_ERROR(list_.Call(L"AddItem", {L"a", index}), zepErrBadCall, L"List");
  }
  EXPECT_OK(list_.Call(L"AddItem", {L"a"}));
  EXPECT_ZEP_ERROR(list_.Call(L"AddItem", {L"b", 3}), zepErrBadCall, L"List");
  EXPECT_EQ(list_.Values(), (Values{L"a"}));
}

TEST_P(ListTest, RemovesTheLastOrAnItem) {
  EXPECT_OK(list_.Let(L"ListString", {L"a b c d"}));
  EXPECT_OK(list_.Call(L"RemoveItem"));
  EXPECT_OK(list_.Call(L"RemoveItem", {1}));
  EXPECT_EQ(list_.Values(), (Values{L"b", L"c"}));
  EXPECT_OK(list_.Call(L"RemoveItem", {-1}));
  EXPECT_OK(list_.Call(L"RemoveItem", {1}));
  EXPECT_EQ(list_.Get(L"Count"), 0);
}

TEST_P(ListTest, RefusesToRemoveElsewhere) {
  for (const int index : {-1, 0, 1}) {
    EXPECT_ZEP_ERROR(list_.Call(L"RemoveItem", {index}), zepErrBadCall, L"List");
  }
  EXPECT_OK(list_.Let(L"ListString", {L"a b"}));
  for (const int index : {0, -2, 3, 2147483647, -2147483647 - 1}) {
    EXPECT_ZEP_ERROR(list_.Call(L"RemoveItem", {index}), zepErrBadCall, L"List");
  }
  EXPECT_EQ(list_.Get(L"Count"), 2);
}

TEST_P(ListTest, ItemsAreReadAndWrittenByPosition) {
  EXPECT_OK(list_.Let(L"ListString", {L"a b c"}));
  EXPECT_EQ(list_.Get(L"Item", {1}), L"a");
  EXPECT_EQ(list_.Get(L"Item", {3}), L"c");
  EXPECT_OK(list_.Let(L"Item", {2, L"x y"}));
  EXPECT_EQ(list_.Get(L"Item", {2}), L"x y");
  EXPECT_EQ(list_.Get(L"ListString"), L"a x y c") << "there are no quotes to put it in";
}

TEST_P(ListTest, ItemsOutsideAreOutOfRange) {
  EXPECT_ZEP_ERROR(list_.Get(L"Item", {1}), zepErrIndexOutOfRange, L"List");
  EXPECT_ZEP_ERROR(list_.Let(L"Item", {1, L"x"}), zepErrIndexOutOfRange, L"List");
  EXPECT_OK(list_.Let(L"ListString", {L"a b"}));
  for (const int index : {0, -1, 3, 2147483647, -2147483647 - 1}) {
    EXPECT_ZEP_ERROR(list_.Get(L"Item", {index}), zepErrIndexOutOfRange, L"List");
    EXPECT_ZEP_ERROR(list_.Let(L"Item", {index, L"x"}), zepErrIndexOutOfRange, L"List");
  }
  EXPECT_EQ(list_.Values(), (Values{L"a", L"b"}));
}

TEST_P(ListTest, ClearRemovesAllItemsAndKeepsTheFormat) {
  EXPECT_OK(list_.Let(L"Delimiter", {L","}));
  EXPECT_OK(list_.Let(L"ListString", {L"a,b"}));
  EXPECT_OK(list_.Call(L"Clear"));
  EXPECT_EQ(list_.Get(L"Count"), 0);
  EXPECT_EQ(list_.Get(L"ListString"), L"");
  EXPECT_EQ(list_.Get(L"Delimiter"), L",");
}

TEST_P(ListTest, ListStringSplitsAndJoinsInTheListsFormat) {
  EXPECT_OK(list_.Let(L"QuoteBegin", {L"("}));
  EXPECT_OK(list_.Let(L"QuoteEnd", {L")"}));
  EXPECT_OK(list_.Let(L"ListString", {L"a (b c) d"}));
  EXPECT_EQ(list_.Values(), (Values{L"a", L"b c", L"d"}));
  EXPECT_EQ(list_.Get(L"ListString"), L"a (b c) d");
  EXPECT_OK(list_.Let(L"Delimiter", {L"--"}));
  EXPECT_OK(list_.Let(L"Item", {1, L""}));
  EXPECT_EQ(list_.Get(L"ListString"), L"()--b c--d");
  EXPECT_OK(list_.Let(L"ListString", {L""}));
  EXPECT_EQ(list_.Get(L"Count"), 0);
}

TEST_P(ListTest, DelimiterAndQuotesMustDiffer) {
  EXPECT_OK(list_.Let(L"QuoteBegin", {L"("}));
  EXPECT_OK(list_.Let(L"QuoteEnd", {L")"}));
  for (const wchar_t* delimiter : {L"", L"(", L")"}) {
    EXPECT_ZEP_ERROR(list_.Let(L"Delimiter", {delimiter}), zepErrBadPropValue, L"List");
  }
  EXPECT_ZEP_ERROR(list_.Let(L"QuoteBegin", {L" "}), zepErrBadPropValue, L"List");
  EXPECT_ZEP_ERROR(list_.Let(L"QuoteEnd", {L" "}), zepErrBadPropValue, L"List");
  EXPECT_EQ(list_.Get(L"Delimiter"), L" ");
  EXPECT_EQ(list_.Get(L"QuoteBegin"), L"(");
  EXPECT_EQ(list_.Get(L"QuoteEnd"), L")");
  EXPECT_OK(list_.Let(L"QuoteEnd", {L"("}));
  EXPECT_OK(list_.Let(L"QuoteEnd", {L""}));
  EXPECT_OK(list_.Let(L"Delimiter", {L"(("}));
}

TEST_P(ListTest, ItemsAreACollectionOfTheirOwn) {
  EXPECT_OK(list_.Let(L"ListString", {L"a b"}));
  const Object items = list_.GetObject(L"Items");
  EXPECT_EQ(items.Values(), (Values{L"a", L"b"}));
  EXPECT_OK(items.Call(L"Add", {L"c"}));
  EXPECT_EQ(list_.Get(L"Count"), 2);
  EXPECT_OK(list_.Set(L"Items", {items}));
  EXPECT_EQ(list_.Values(), (Values{L"a", L"b", L"c"}));
  EXPECT_OK(list_.Set(L"Items", {list_}));
  EXPECT_EQ(list_.Get(L"Count"), 3);
  EXPECT_OK(list_.Set(L"Items", {Value::Nothing()}));
  EXPECT_EQ(list_.Get(L"Count"), 0);
}

TEST_P(ListTest, OnlyTextsBecomeItems) {
  EXPECT_OK(list_.Let(L"ListString", {L"a b"}));
  const Object items = list_.GetObject(L"Items");
  EXPECT_OK(items.Call(L"Add", {5}));
  EXPECT_ZEP_ERROR(list_.Set(L"Items", {items}), zepErrBadCall, L"List");
  EXPECT_EQ(list_.Values(), (Values{L"a", L"b"}));
}

TEST_P(ListTest, AForeignObjectMustBeACollection) {
  foreign::VarSet object;
  EXPECT_OK(list_.Let(L"ListString", {L"a"}));
  EXPECT_ERROR(list_.Set(L"Items", {Value(&object)}), 451, L"Zepkit10.List",
               L"Object not a collection");
  EXPECT_EQ(list_.Get(L"Count"), 1);
  EXPECT_EQ(1u, object.references);
}

/// A client's collection of one text; something happens when it is read.
class Read : public foreign::Object<IDispatch> {
 public:
  explicit Read(std::function<void()> action) : action_(std::move(action)) {}
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    *ids = names[0] == std::wstring_view(L"Count") ? 1 : 2;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    const faults::OutsideCall outside;
    if (id != 1 && id != 2) return DISP_E_MEMBERNOTFOUND;
    action_();
    const Value answer = id == 1 ? Value(1) : Value(L"read");
    return VariantCopy(result, const_cast<VARIANT*>(&answer.raw()));
  }

 private:
  const std::function<void()> action_;
};

TEST_P(ListTest, ACollectionMayChangeTheListWhileItIsRead) {
  EXPECT_OK(list_.Let(L"ListString", {L"a b"}));
  Read items([&] {
    EXPECT_OK(list_.Call(L"RemoveItem", {1}));
    for (int i = 0; i < 100; ++i) EXPECT_OK(list_.Call(L"AddItem", {L"x"}));
  });
  EXPECT_OK(list_.Set(L"Items", {Value(&items)}));
  EXPECT_EQ(list_.Values(), (Values{L"read"}));
  EXPECT_EQ(1u, items.references);
}

TEST_P(ListTest, NullPointersOfVtableClients) {
  Microsoft::WRL::ComPtr<_List> list;
  ASSERT_EQ(S_OK, list_.get()->QueryInterface(IID_PPV_ARGS(&list)));
  EXPECT_EQ(S_OK, list->AddItem(nullptr, -1));
  EXPECT_EQ(S_OK, list->put_Item(1, nullptr));
  EXPECT_EQ(list_.Values(), (Values{L""}));
  EXPECT_EQ(zepErrBadPropValue, list->put_Delimiter(nullptr));
  EXPECT_EQ(S_OK, list->put_QuoteBegin(nullptr));
  EXPECT_EQ(S_OK, list->put_QuoteEnd(nullptr));
  EXPECT_EQ(S_OK, list->put_ListString(nullptr));
  EXPECT_EQ(list_.Get(L"Count"), 0);
  EXPECT_OK(list_.Call(L"AddItem", {L"a"}));
  EXPECT_EQ(S_OK, list->putref_Items(nullptr));
  EXPECT_EQ(list_.Get(L"Count"), 0);
}

TEST_P(ListTest, TextsKeepEveryCharacter) {
  const std::wstring text(L"a\0\xD800z", 4);
  EXPECT_OK(list_.Call(L"AddItem", {text}));
  EXPECT_EQ(list_.Get(L"Item", {1}), text);
  EXPECT_EQ(list_.Get(L"ListString"), text);
}

TEST_P(ListTest, AnEnumerationIsASnapshot) {
  EXPECT_OK(list_.Let(L"ListString", {L"a b"}));
  const client::Outcome entry = list_.Get(L"NewEnum");
  Microsoft::WRL::ComPtr<IEnumVARIANT> enumerator;
  ASSERT_EQ(S_OK, entry.value.raw().punkVal->QueryInterface(IID_PPV_ARGS(&enumerator)));
  EXPECT_OK(list_.Call(L"Clear"));
  Value value;
  ASSERT_EQ(S_OK, enumerator->Next(1, &value.raw(), nullptr));
  EXPECT_EQ(value, Value(L"a"));
}

TEST_P(ListTest, TheCommandLineIsAQuotedList) {
  const Object global = Create(CLSID_Global);
  const Object line = global.GetObject(L"CommandLine");
  EXPECT_EQ(line.Get(L"Delimiter"), L" ");
  EXPECT_EQ(line.Get(L"QuoteBegin"), L"\"");
  EXPECT_EQ(line.Get(L"QuoteEnd"), L"\"");
  EXPECT_OK(list_.Let(L"QuoteBegin", {L"\""}));
  EXPECT_OK(list_.Let(L"QuoteEnd", {L"\""}));
  EXPECT_OK(list_.Let(L"ListString", {GetCommandLineW()}));
  EXPECT_EQ(line.Values(), list_.Values());
  EXPECT_LE(1u, line.Values().size());
  EXPECT_OK(line.Call(L"AddItem", {L"added"}));
  EXPECT_EQ(global.Get(L"CommandLine"), line);
  EXPECT_EQ(global.GetObject(L"Zep").Get(L"CommandLine"), line);
}

RUN_IN_BOTH_BINDINGS(ListTest);

}  // namespace

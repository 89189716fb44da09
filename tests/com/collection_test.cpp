#include <functional>

#include "com/both_bindings.h"
#include "com/fault_plan.h"
#include "com/foreign.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

using Values = std::vector<Value>;

constexpr long kBadCall = 5, kSubscriptOutOfRange = 9, kTypeMismatch = 13, kKeyInUse = 457;
constexpr const wchar_t* kSource = L"Zepkit10.Collection";

class CollectionTest : public BothBindings {
 protected:
  Object collection_ = Create(CLSID_Global).CallObject(L"ListToCollection", {L"a b c"});
};

TEST_P(CollectionTest, ItemsStandInOrder) {
  EXPECT_EQ(collection_.Get(L"Count"), 3);
  EXPECT_EQ(collection_.Get(L"Item", {1}), L"a");
  EXPECT_EQ(collection_.Get(L"Item", {3}), L"c");
  EXPECT_EQ(kBadCall, collection_.Get(L"Item", {L"2"}).number) << "a text is a key";
  EXPECT_EQ(collection_.Get(L"Item", {2.4}), L"b");
  EXPECT_EQ(collection_.Values(), (Values{L"a", L"b", L"c"}));
}

TEST_P(CollectionTest, AddsAnyValue) {
  foreign::VarSet object;
  EXPECT_OK(collection_.Call(L"Add", {5}));
  EXPECT_OK(collection_.Call(L"Add", {Value(&object)}));
  EXPECT_OK(collection_.Call(L"Add", {Value::Null()}));
  EXPECT_OK(collection_.Call(L"Add", {Value()}));
  EXPECT_EQ(collection_.Values(),
            (Values{L"a", L"b", L"c", 5, Value(&object), Value::Null(), Value()}));
  EXPECT_OK(collection_.Call(L"Remove", {5}));
  EXPECT_EQ(1u, object.references);
}

TEST_P(CollectionTest, AddsACopyOfWhatComesByReference) {
  Value variable = L"before";
  EXPECT_OK(collection_.Call(L"Add", {variable.Reference()}));
  variable = L"after";
  EXPECT_EQ(collection_.Get(L"Item", {4}), L"before");
}

TEST_P(CollectionTest, FindsByKeyWhateverTheLetterCase) {
  EXPECT_OK(collection_.Call(L"Add", {1, L"One"}));
  EXPECT_OK(collection_.Call(L"Add", {2, L""}));
  EXPECT_EQ(collection_.Get(L"Item", {L"oNE"}), 1);
  EXPECT_EQ(collection_.Get(L"Item", {L""}), 2);
  EXPECT_ERROR(collection_.Get(L"Item", {L"Two"}), kBadCall, kSource,
               L"Invalid procedure call or argument");
}

TEST_P(CollectionTest, AKeyIsUsedOnce) {
  EXPECT_OK(collection_.Call(L"Add", {1, L"One"}));
  EXPECT_ERROR(collection_.Call(L"Add", {2, L"ONE"}), kKeyInUse, kSource,
               L"This key is already associated with an element of this collection");
  EXPECT_EQ(collection_.Get(L"Count"), 4);
  EXPECT_OK(collection_.Call(L"Remove", {L"one"}));
  EXPECT_OK(collection_.Call(L"Add", {2, L"ONE"}));
  EXPECT_EQ(collection_.Get(L"Item", {L"One"}), 2);
}

TEST_P(CollectionTest, OnlyATextIsAKey) {
  EXPECT_ERROR(collection_.Call(L"Add", {1, 5}), kTypeMismatch, kSource, L"Type mismatch");
  EXPECT_ERROR(collection_.Call(L"Add", {1, Value::Null()}), kTypeMismatch, kSource,
               L"Type mismatch");
  EXPECT_EQ(collection_.Get(L"Count"), 3);
}

TEST_P(CollectionTest, AddsBeforeAndAfter) {
  const Value missing = Value::Missing();
  EXPECT_OK(collection_.Call(L"Add", {L"1", missing, 1}));
  EXPECT_OK(collection_.Call(L"Add", {L"2", L"two", missing, 1}));
  EXPECT_OK(collection_.Call(L"Add", {L"3", missing, L"TWO"}));
  EXPECT_OK(collection_.Call(L"Add", {L"4", missing, missing, L"two"}));
  EXPECT_OK(collection_.Call(L"Add", {L"5", missing, missing, 7}));
  EXPECT_EQ(collection_.Values(), (Values{L"1", L"3", L"2", L"4", L"a", L"b", L"c", L"5"}));
}

TEST_P(CollectionTest, RefusesAPlaceThatIsNotThere) {
  const Value missing = Value::Missing();
  for (const int position : {0, 4, -1}) {
    EXPECT_ERROR(collection_.Call(L"Add", {1, missing, position}), kSubscriptOutOfRange, kSource,
                 L"Subscript out of range");
    EXPECT_ERROR(collection_.Call(L"Add", {1, missing, missing, position}), kSubscriptOutOfRange,
                 kSource, L"Subscript out of range");
  }
  EXPECT_ERROR(collection_.Call(L"Add", {1, missing, L"key"}), kBadCall, kSource,
               L"Invalid procedure call or argument");
  EXPECT_ERROR(collection_.Call(L"Add", {1, missing, 1, 1}), kBadCall, kSource,
               L"Invalid procedure call or argument");
  EXPECT_EQ(collection_.Get(L"Count"), 3);
}

TEST_P(CollectionTest, Removes) {
  EXPECT_OK(collection_.Call(L"Remove", {2}));
  EXPECT_EQ(collection_.Values(), (Values{L"a", L"c"}));
  EXPECT_ERROR(collection_.Call(L"Remove", {3}), kSubscriptOutOfRange, kSource,
               L"Subscript out of range");
  EXPECT_ERROR(collection_.Call(L"Remove", {L"a"}), kBadCall, kSource,
               L"Invalid procedure call or argument");
}

TEST_P(CollectionTest, RefusesIndexesThatAreNone) {
  foreign::VarSet object;
  for (const Value& index : {Value::Null(), Value(&object)}) {
    EXPECT_EQ(kTypeMismatch, collection_.Get(L"Item", {index}).number);
    EXPECT_EQ(kTypeMismatch, collection_.Call(L"Remove", {index}).number);
  }
  EXPECT_EQ(6, collection_.Get(L"Item", {1e10}).number);
  EXPECT_EQ(collection_.Get(L"Count"), 3);
}

/// A client's object whose value is a number; something happens each time it is asked for it.
class Asked : public foreign::Object<IDispatch> {
 public:
  explicit Asked(std::function<void()> action) : action_(std::move(action)) {}
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    const faults::OutsideCall outside;
    action_();
    result->vt = VT_I4;
    result->lVal = 2;
    return S_OK;
  }

 private:
  const std::function<void()> action_;
};

TEST_P(CollectionTest, AnIndexMayChangeTheCollection) {
  Asked adding([&] {
    for (int i = 0; i < 100; ++i) EXPECT_OK(collection_.Call(L"Add", {i}));
  });
  EXPECT_EQ(collection_.Get(L"Item", {Value(&adding)}), L"b");
  EXPECT_OK(collection_.Call(L"Remove", {Value(&adding)}));
  EXPECT_EQ(collection_.Get(L"Count"), 202);
  EXPECT_EQ(collection_.Get(L"Item", {2}), L"c");
  Asked removing([&] {
    while (collection_.Get(L"Count").value.raw().lVal > 1) {
      EXPECT_OK(collection_.Call(L"Remove", {1}));
    }
  });
  for (const auto& outcome : {collection_.Call(L"Add", {L"x", Value::Missing(), Value(&removing)}),
                              collection_.Call(L"Remove", {Value(&removing)}),
                              collection_.Get(L"Item", {Value(&removing)})}) {
    EXPECT_ERROR(outcome, kSubscriptOutOfRange, kSource, L"Subscript out of range");
  }
  EXPECT_EQ(collection_.Values(), (Values{99}));
}

TEST_P(CollectionTest, AnEnumerationIsASnapshot) {
  const client::Outcome entry = collection_.Get(L"NewEnum");
  Microsoft::WRL::ComPtr<IEnumVARIANT> enumerator;
  ASSERT_EQ(S_OK, entry.value.raw().punkVal->QueryInterface(IID_PPV_ARGS(&enumerator)));
  EXPECT_OK(collection_.Call(L"Remove", {1}));
  Value value;
  ASSERT_EQ(S_OK, enumerator->Next(1, &value.raw(), nullptr));
  EXPECT_EQ(value, Value(L"a"));
}

/// A client's object that does something when its last reference goes.
class Parting : public foreign::Object<IDispatch> {
 public:
  explicit Parting(const client::Object& collection) : collection_(collection) { references = 0; }
  ULONG STDMETHODCALLTYPE Release() override {
    const faults::OutsideCall outside;
    if (--references == 0) collection_.Call(L"Add", {L"parting"});
    return references;
  }

 private:
  const client::Object& collection_;
};

TEST_P(CollectionTest, AValueMayCallBackWhenItGoes) {
  Parting parting(collection_);
  {
    VARIANT value;
    value.vt = VT_DISPATCH;
    value.pdispVal = &parting;
    parting.references = 1;
    EXPECT_OK(collection_.Call(L"Add", {Value(value)}));
    --parting.references;
  }
  EXPECT_OK(collection_.Call(L"Remove", {4}));
  EXPECT_EQ(collection_.Values(), (Values{L"a", L"b", L"c", L"parting"}));
}

void** Out(Microsoft::WRL::ComPtr<IUnknown>& pointer) {
  return reinterpret_cast<void**>(pointer.ReleaseAndGetAddressOf());
}

TEST_P(CollectionTest, TypesThatNoValueHasMismatch) {
  Microsoft::WRL::ComPtr<_Collection> early_bound;
  ASSERT_EQ(S_OK, collection_.get()->QueryInterface(
                      IID__Collection, reinterpret_cast<void**>(early_bound.GetAddressOf())));
  const HRESULT mismatch = static_cast<HRESULT>(0x800A0000 + kTypeMismatch);
  VARIANT missing{};
  missing.vt = VT_ERROR;
  missing.scode = DISP_E_PARAMNOTFOUND;
  for (const int type : {15, int{VT_VOID}, int{VT_BLOB}, int{VT_CLSID}, int{VT_RESERVED} | VT_I4}) {
    VARIANT value{}, item{};
    value.vt = static_cast<VARTYPE>(type);
    EXPECT_EQ(mismatch, early_bound->Add(value, missing, missing, missing)) << type;
    EXPECT_EQ(mismatch, early_bound->get_Item(value, &item)) << type;
    EXPECT_EQ(mismatch, early_bound->Remove(value)) << type;
  }
  EXPECT_EQ(collection_.Get(L"Count"), 3);
  SetErrorInfo(0, nullptr);
}

// The type library describes the interface of collections, but no class.
TEST_P(CollectionTest, HasAnInterfaceButNoClass) {
  using Microsoft::WRL::ComPtr;
  ComPtr<IUnknown> found;
  EXPECT_EQ(S_OK, collection_.get()->QueryInterface(IID__Collection, Out(found)));
  EXPECT_EQ(S_OK, collection_.get()->QueryInterface(IID_ISupportErrorInfo, Out(found)));
  EXPECT_EQ(E_NOINTERFACE, collection_.get()->QueryInterface(IID_IProvideClassInfo, Out(found)));
  EXPECT_EQ(E_NOINTERFACE, collection_.get()->QueryInterface(IID_IProvideClassInfo2, Out(found)));
  ComPtr<ITypeInfo> type;
  ASSERT_EQ(S_OK, collection_.get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type));
  BSTR name = nullptr;
  EXPECT_EQ(S_OK, type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr));
  EXPECT_STREQ(L"_Collection", name);
  SysFreeString(name);
}

RUN_IN_BOTH_BINDINGS(CollectionTest);

}  // namespace

// The enumerator of every collection that the type library has.
#include <set>

#include "com/class_walk.h"
#include "com/client.h"
#include "com/component.h"

namespace {

using class_walk::Class;
using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

class EnumeratorsTest : public component::Test {
 protected:
  /// Runs a check with every collection, which holds an item, and its enumerator.
  template <class Check>
  void ForEveryCollection(Check check) {
    std::set<std::wstring> names;
    for (const Class& each : class_walk::Classes()) {
      const auto objects = class_walk::FindObjects();
      const Object collection(objects.at(each.name).Get(), client::Binding::kDispatch);
      if (each.name == L"List") EXPECT_OK(collection.Call(L"AddItem", {L"a"}));
      ComPtr<IEnumVARIANT> items;
      if (!Enumerate(collection, items)) continue;
      SCOPED_TRACE(std::string(each.name.begin(), each.name.end()));
      names.insert(each.name);
      check(collection, items.Get());
    }
    EXPECT_EQ(names, (std::set<std::wstring>{L"Charts", L"DebugPrintOuts", L"FncInfos", L"List",
                                             L"Messages", L"VarSet", L"VarSets"}));
  }

  static bool Enumerate(const Object& collection, ComPtr<IEnumVARIANT>& items) {
    DISPPARAMS none{};
    VARIANT result;
    VariantInit(&result);
    const HRESULT hr = collection.get()->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                                                DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                                                &result, nullptr, nullptr);
    if (SUCCEEDED(hr)) {
      EXPECT_EQ(VT_UNKNOWN, result.vt);
      EXPECT_EQ(S_OK, result.punkVal->QueryInterface(IID_PPV_ARGS(&items)));
    }
    VariantClear(&result);
    return SUCCEEDED(hr);
  }

  /// What is left of an enumeration, by one call.
  static std::vector<Value> Rest(IEnumVARIANT* items) {
    VARIANT room[8];
    for (VARIANT& each : room) VariantInit(&each);
    ULONG count = 99;
    EXPECT_EQ(S_FALSE, items->Next(8, room, &count));
    std::vector<Value> rest;
    for (VARIANT& each : room) {
      if (rest.size() < count) rest.emplace_back(each);
      EXPECT_EQ(S_OK, VariantClear(&each));
    }
    EXPECT_EQ(count, rest.size());
    return rest;
  }
};

TEST_F(EnumeratorsTest, ClonesAreWhereTheirOriginalWas) {
  ForEveryCollection([](const Object&, IEnumVARIANT* items) {
    ComPtr<IEnumVARIANT> start, end;
    EXPECT_EQ(S_OK, items->Clone(&start));
    const auto all = Rest(items);
    EXPECT_EQ(1u, all.size());
    EXPECT_EQ(S_OK, items->Clone(&end));
    EXPECT_EQ(std::vector<Value>(), Rest(end.Get()));
    EXPECT_EQ(all, Rest(start.Get()));
    EXPECT_EQ(S_OK, items->Reset());
    EXPECT_EQ(std::vector<Value>(), Rest(end.Get()));
    EXPECT_EQ(all, Rest(items));
    EXPECT_EQ(E_POINTER, items->Clone(nullptr));
  });
}

TEST_F(EnumeratorsTest, SkippingStopsAtTheEnd) {
  ForEveryCollection([](const Object&, IEnumVARIANT* items) {
    EXPECT_EQ(S_OK, items->Skip(0));
    EXPECT_EQ(S_OK, items->Skip(1));
    EXPECT_EQ(S_FALSE, items->Skip(1));
    EXPECT_EQ(S_OK, items->Reset());
    EXPECT_EQ(S_FALSE, items->Skip(0xFFFFFFFF));
    EXPECT_EQ(std::vector<Value>(), Rest(items));
  });
}

TEST_F(EnumeratorsTest, WhatTheyVisitOutlivesItsCollection) {
  ForEveryCollection([](const Object& collection, IEnumVARIANT* items) {
    const auto all = Rest(items);
    EXPECT_EQ(1u, all.size());
    EXPECT_TRUE(collection.Call(L"Clear").ok() || collection.Call(L"Remove", {1, false}).ok());
    EXPECT_EQ(S_OK, items->Reset());
    EXPECT_EQ(all, Rest(items));
    ComPtr<IEnumVARIANT> later;
    ASSERT_TRUE(Enumerate(collection, later));
    EXPECT_EQ(std::vector<Value>(), Rest(later.Get()));
  });
}

}  // namespace

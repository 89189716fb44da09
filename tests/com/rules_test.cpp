// The rules of COM, for every class that the type library has.
#include <ocidl.h>
#include <olectl.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "com/class_walk.h"
#include "com/client.h"
#include "com/component.h"
#include "com/references.h"

namespace {

using class_walk::Class;
using class_walk::Slot;
using Microsoft::WRL::ComPtr;

constexpr long kAwaitTerm = -2147220480;

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

class RulesTest : public component::Test {
 protected:
  /// Runs a check on an object of every class.
  template <class Check>
  void ForEveryClass(Check check) {
    const auto classes = class_walk::Classes();
    const auto objects = class_walk::FindObjects();
    for (const Class& each : classes) {
      SCOPED_TRACE(Narrow(each.name));
      ASSERT_TRUE(objects.contains(each.name)) << "no way leads to an object of this class";
      check(each, objects.at(each.name).Get());
    }
  }

  static std::vector<IID> InterfacesOf(const Class& described) {
    std::vector<IID> interfaces{
        IID_IUnknown,          IID_IDispatch,         described.default_interface,
        IID_ISupportErrorInfo, IID_IProvideClassInfo, IID_IProvideClassInfo2};
    if (described.events != GUID_NULL) interfaces.push_back(IID_IConnectionPointContainer);
    return interfaces;
  }
};

TEST_F(RulesTest, EveryInterfaceLeadsToEveryOtherAndToOneIdentity) {
  ForEveryClass([](const Class& described, IDispatch* object) {
    const ULONG before = ReferencesOf(object);
    ComPtr<IUnknown> identity;
    ASSERT_EQ(S_OK, object->QueryInterface(IID_PPV_ARGS(&identity)));
    const auto interfaces = InterfacesOf(described);
    for (const IID& first : interfaces) {
      ComPtr<IUnknown> from, same;
      ASSERT_EQ(S_OK, object->QueryInterface(first, reinterpret_cast<void**>(from.GetAddressOf())));
      ASSERT_EQ(S_OK, from->QueryInterface(IID_PPV_ARGS(&same)));
      EXPECT_EQ(identity.Get(), same.Get());
      for (const IID& second : interfaces) {
        for (const IID& third : interfaces) {
          ComPtr<IUnknown> middle, end;
          EXPECT_EQ(S_OK,
                    from->QueryInterface(second, reinterpret_cast<void**>(middle.GetAddressOf())));
          EXPECT_EQ(S_OK,
                    middle->QueryInterface(third, reinterpret_cast<void**>(end.GetAddressOf())));
        }
      }
    }
    identity.Reset();
    EXPECT_EQ(before, ReferencesOf(object));
  });
}

TEST_F(RulesTest, UnknownInterfacesGiveANullPointer) {
  std::mt19937 random(1);
  ForEveryClass([&](const Class& described, IDispatch* object) {
    for (int i = 0; i < 1000; ++i) {
      IID unknown;
      for (std::size_t byte = 0; byte < sizeof unknown; ++byte) {
        reinterpret_cast<unsigned char*>(&unknown)[byte] = static_cast<unsigned char>(random());
      }
      void* result = object;
      EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(unknown, &result));
      EXPECT_EQ(nullptr, result);
    }
    void* result = object;
    EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(described.clsid, &result));
    EXPECT_EQ(nullptr, result);
    EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, nullptr));
  });
}

TEST_F(RulesTest, OnlyCreatableClassesAreCreatedAndNoneIsAggregated) {
  ForEveryClass([](const Class& described, IDispatch* object) {
    ComPtr<IClassFactory> factory;
    const HRESULT hr = component::GetClassObject(described.clsid, IID_PPV_ARGS(&factory));
    EXPECT_EQ(described.creatable ? S_OK : CLASS_E_CLASSNOTAVAILABLE, hr);
    if (FAILED(hr)) {
      EXPECT_EQ(nullptr, factory.Get());
      return;
    }
    void* result = object;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(object, IID_IUnknown, &result));
    EXPECT_EQ(nullptr, result);
    result = object;
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IClassFactory, &result));
    EXPECT_EQ(nullptr, result);
    EXPECT_EQ(E_POINTER, factory->CreateInstance(nullptr, IID_IUnknown, nullptr));
  });
}

TEST_F(RulesTest, ClassObjectsHaveTwoInterfaces) {
  ComPtr<IClassFactory> factory;
  ComPtr<IUnknown> identity;
  ASSERT_EQ(S_OK, component::GetClassObject(CLSID_Counter, IID_PPV_ARGS(&factory)));
  EXPECT_EQ(S_OK, factory.As(&identity));
  EXPECT_EQ(identity.Get(), factory.Get());
  void* result = factory.Get();
  EXPECT_EQ(E_NOINTERFACE, factory->QueryInterface(IID_IDispatch, &result));
  EXPECT_EQ(nullptr, result);
  EXPECT_EQ(E_POINTER, factory->QueryInterface(IID_IUnknown, nullptr));
  EXPECT_EQ(E_POINTER, component::GetClassObject(CLSID_Counter, IID_IClassFactory, nullptr));
}

TEST_F(RulesTest, ObjectsDescribeThemselves) {
  ForEveryClass([](const Class& described, IDispatch* object) {
    ComPtr<IProvideClassInfo2> provider;
    ASSERT_EQ(S_OK, object->QueryInterface(IID_PPV_ARGS(&provider)));
    GUID events = described.clsid;
    if (described.events == GUID_NULL) {
      EXPECT_TRUE(FAILED(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events)));
      EXPECT_EQ(GUID_NULL, events);
    } else {
      EXPECT_EQ(S_OK, provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events));
      EXPECT_EQ(described.events, events);
    }
    EXPECT_EQ(E_INVALIDARG, provider->GetGUID(0, &events));
    EXPECT_EQ(E_POINTER, provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr));
    EXPECT_EQ(E_POINTER, provider->GetClassInfo(nullptr));

    ComPtr<ISupportErrorInfo> errors;
    ASSERT_EQ(S_OK, object->QueryInterface(IID_PPV_ARGS(&errors)));
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(described.default_interface));
    EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID_IClassFactory));

    UINT count = 0;
    EXPECT_EQ(S_OK, object->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    EXPECT_EQ(E_POINTER, object->GetTypeInfoCount(nullptr));
    ComPtr<ITypeInfo> type;
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(S_OK, object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type));
    ASSERT_EQ(S_OK, type->GetTypeAttr(&attributes));
    EXPECT_EQ(described.default_interface, attributes->guid);
    type->ReleaseTypeAttr(attributes);
    EXPECT_EQ(DISP_E_BADINDEX, object->GetTypeInfo(1, LOCALE_USER_DEFAULT, &type));
    EXPECT_EQ(nullptr, type.Get());
  });
}

TEST_F(RulesTest, NamesLeadToTheTypeLibrarysIds) {
  ForEveryClass([](const Class& described, IDispatch* object) {
    for (const Slot& slot : class_walk::SlotsOf(described.default_interface)) {
      std::wstring name = slot.name;
      for (wchar_t& c : name) c = static_cast<wchar_t>(towupper(c));
      for (wchar_t* each : {const_cast<wchar_t*>(slot.name.c_str()), name.data()}) {
        DISPID id = DISPID_UNKNOWN;
        EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, &each, 1, LOCALE_USER_DEFAULT, &id));
        EXPECT_EQ(slot.id, id) << Narrow(slot.name);
      }
    }
    wchar_t unknown[] = L"NoSuchMember";
    wchar_t* name = unknown;
    DISPID id = 0;
    EXPECT_EQ(DISP_E_UNKNOWNNAME,
              object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
    EXPECT_EQ(DISPID_UNKNOWN, id);
  });
}

TEST_F(RulesTest, NullResultPointersAreRefused) {
  ForEveryClass([](const Class& described, IDispatch* object) {
    ComPtr<IUnknown> typed;
    ASSERT_EQ(S_OK, object->QueryInterface(described.default_interface,
                                           reinterpret_cast<void**>(typed.GetAddressOf())));
    for (const Slot& slot : class_walk::SlotsOf(described.default_interface)) {
      if (!slot.has_result) continue;
      EXPECT_EQ(E_POINTER, class_walk::CallWithZeros(typed.Get(), slot, nullptr))
          << Narrow(slot.name);
      ComPtr<IErrorInfo> stale;
      EXPECT_EQ(S_FALSE, GetErrorInfo(0, &stale)) << Narrow(slot.name);
    }
  });
}

// An object that was deleted refuses every member, and its results are cleared.
TEST_F(RulesTest, DeletedObjectsRefuseEveryMember) {
  int deletable = 0;
  ForEveryClass([&](const Class& described, IDispatch* object) {
    const client::Object client(object, client::Binding::kDispatch);
    const auto slots = class_walk::SlotsOf(described.default_interface);
    if (std::none_of(slots.begin(), slots.end(), [](const Slot& s) { return s.name == L"Delete"; }))
      return;
    ++deletable;
    if (const auto outcome = client.Call(L"Delete"); !outcome.ok()) {
      EXPECT_EQ(kAwaitTerm, outcome.number);  // its owner went first
    }
    for (const Slot& slot : slots) {
      if (described.name == L"Message" && (slot.name == L"Index" || slot.name == L"Deleted")) {
        continue;  // a message tells these to the end
      }
      VARIANT result;  // the largest of results
      std::memset(&result, 0xCC, sizeof result);
      EXPECT_EQ(kAwaitTerm,
                class_walk::CallWithZeros(object, slot, slot.has_result ? &result : nullptr))
          << Narrow(slot.name);
      ComPtr<IErrorInfo> info;
      EXPECT_EQ(S_OK, GetErrorInfo(0, &info)) << Narrow(slot.name);
      if (slot.has_result) {
        EXPECT_EQ(0, result.vt) << Narrow(slot.name);
      }
    }
  });
  EXPECT_GE(deletable, 4);
}

TEST_F(RulesTest, TheComponentStaysLoadedWhileAnythingIsHeld) {
  EXPECT_EQ(S_OK, component::CanUnloadNow());
  for (const Class& each : class_walk::Classes()) {
    if (!each.creatable) continue;
    SCOPED_TRACE(Narrow(each.name));
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, component::GetClassObject(each.clsid, IID_PPV_ARGS(&factory)));
    EXPECT_EQ(S_FALSE, component::CanUnloadNow());
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
    ComPtr<IUnknown> made;
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_PPV_ARGS(&made)));
    factory->LockServer(FALSE);
    factory.Reset();
    EXPECT_EQ(S_FALSE, component::CanUnloadNow());
    made.Reset();
    EXPECT_EQ(S_OK, component::CanUnloadNow());
  }
}

}  // namespace

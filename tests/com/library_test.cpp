// The root objects: what they share, and how long it lives.
#include <functional>
#include <utility>

#include "com/apartment.h"
#include "com/foreign.h"
#include "com/german_user.h"
#include "com/var_sets_fixture.h"

namespace {

using client::Binding;
using client::Object;
using client::Value;
using component::InNewApartment;
using Microsoft::WRL::ComPtr;

/// A client's object that has every member and tells when only its maker is left to hold it.
class Witness final : public foreign::Object<IDispatch> {
 public:
  explicit Witness(std::function<void()> released) : released_(std::move(released)) {}

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references;
    if (left == 1) released_();
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* id) override {
    return *id = 1, S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return S_OK;
  }

 private:
  const std::function<void()> released_;
};

class LibraryTest : public BothBindings {
 protected:
  static Object NewGlobal() { return Create(CLSID_Global); }
};

TEST_P(LibraryTest, RootsShareTheirObjects) {
  const Object first = NewGlobal(), second = NewGlobal();
  const Object library = first.GetObject(L"Zep");
  EXPECT_EQ(second.Get(L"Zep"), library);
  for (const wchar_t* name :
       {L"Charts", L"VarSets", L"DebugPrintOuts", L"CommandLine", L"GlobalMessages", L"Keyboard"}) {
    const Object shared = first.GetObject(name);
    ASSERT_TRUE(shared);
    EXPECT_EQ(first.Get(name), shared);
    EXPECT_EQ(second.Get(name), shared);
    EXPECT_EQ(library.Get(name), shared);
  }
  for (const wchar_t* name : {L"Charts", L"VarSets", L"DebugPrintOuts", L"Keyboard"}) {
    EXPECT_EQ(first.GetObject(name).Get(L"Parent"), library);
  }
}

TEST_P(LibraryTest, BothRootsCompute) {
  const Object global = NewGlobal();
  const Object library = global.GetObject(L"Zep");
  for (const Object& root : {global, library}) {
    EXPECT_EQ(root.Call(L"Compute", {L"2*SIN(0)^2+|1-3|"}), 2.0);
    EXPECT_EQ(root.Call(L"Compute", {L""}), 0.0);
    EXPECT_EQ(root.Call(L"Compute", {L"  (2^3^2) "}), 64.0);
  }
}

TEST_P(LibraryTest, ComputeFoldsEveryFaultOfTheEvaluation) {
  const Object global = NewGlobal();
  const Object library = global.GetObject(L"Zep");
  for (const Object& root : {global, library}) {
    for (const wchar_t* term :
         {L"x", L"1+x", L"1/0", L"0/0", L"EXP(1000)", L"SQR(0-1)", L"LOG(0)"}) {
      EXPECT_ERROR(root.Call(L"Compute", {term}), zepErrBadCharInTerm, L"Zepkit10",
                   L"Bad character in function term");
    }
  }
}

TEST_P(LibraryTest, ComputeLeavesFaultsOfTheTermAsTheyAre) {
  const Object global = NewGlobal();
  const Object library = global.GetObject(L"Zep");
  for (const Object& root : {global, library}) {
    EXPECT_ZEP_ERROR(root.Call(L"Compute", {L"#"}), zepErrBadPropValue, L"Expression");
    EXPECT_ZEP_ERROR(root.Call(L"Compute", {L"x + 1"}), zepErrBadCall, L"Expression");
    EXPECT_ZEP_ERROR(root.Call(L"Compute", {L"(x"}), zepErrBadParam, L"Expression");
    EXPECT_ZEP_ERROR(root.Call(L"Compute", {L"(x)(y)"}), zepErrExtractTerm, L"Expression");
  }
}

TEST_P(LibraryTest, GermanComputeReadsADecimalComma) {
  SKIP_UNLESS_GERMAN();
  EXPECT_EQ(NewGlobal().Call(L"Compute", {L"2,5*2"}), 5.0);
}

TEST_P(LibraryTest, WithoutSharedCollectionsTheLibraryGoesWithTheLastGlobal) {
  InNewApartment([] {
    Object first = NewGlobal(), second = NewGlobal();
    const Object library = first.GetObject(L"Zep");
    first.Reset();
    EXPECT_EQ(second.Get(L"Zep"), library);
    second.Reset();
    EXPECT_FALSE(NewGlobal().Get(L"Zep") == library);
    EXPECT_EQ(library.Call(L"Compute", {L"1+1"}), 2.0);  // held, it still serves
  });
}

TEST_P(LibraryTest, TheCommandLineAndTheMessagesDoNotKeepTheLibrary) {
  InNewApartment([] {
    for (const wchar_t* name : {L"CommandLine", L"GlobalMessages"}) {
      Object global = NewGlobal();
      const Object library = global.GetObject(L"Zep");
      const Object shared = global.GetObject(name);
      EXPECT_EQ(library.Get(name), shared);
      global.Reset();
      // Torn down, the library has let go of it; both still serve who holds them.
      const Object anew = library.GetObject(name);
      ASSERT_TRUE(anew);
      EXPECT_FALSE(library.Get(name) == shared);
      EXPECT_EQ(library.Get(name), anew);
      EXPECT_OK(shared.Get(L"Count"));
      EXPECT_FALSE(NewGlobal().Get(L"Zep") == library);
    }
  });
}

TEST_P(LibraryTest, TheDebugOutputsAndTheKeyboardKeepTheLibrary) {
  const std::pair<const wchar_t*, const wchar_t*> settings[] = {{L"DebugPrintOuts", L"Enabled"},
                                                                {L"Keyboard", L"Notify"}};
  for (const auto& [name, setting] : settings) {
    InNewApartment([&, name = name, setting = setting] {
      Object global = NewGlobal();
      const Object library = global.GetObject(L"Zep");
      EXPECT_OK(global.GetObject(name).Let(setting, {false}));
      global.Reset();
      global = NewGlobal();
      EXPECT_EQ(global.Get(L"Zep"), library);
      EXPECT_EQ(global.GetObject(name).Get(setting), false);
    });
  }
}

TEST_P(LibraryTest, ASharedCollectionKeepsTheLibrary) {
  for (const wchar_t* name : {L"Charts", L"VarSets"}) {
    InNewApartment([&] {
      Object global = NewGlobal();
      const Object library = global.GetObject(L"Zep");
      EXPECT_OK(global.GetObject(name).Call(L"Add", {L"kept"}));
      global.Reset();
      global = NewGlobal();
      EXPECT_EQ(global.Get(L"Zep"), library);
      EXPECT_EQ(global.GetObject(name).Get(L"Count"), 1);
      EXPECT_EQ(global.GetObject(name).GetObject(L"Item", {L"kept"}).Get(L"Name"), L"kept");
    });
  }
}

TEST_P(LibraryTest, ObjectsOfOtherClassesDoNotKeepTheLibrary) {
  InNewApartment([] {
    Object global = NewGlobal();
    const Object library = global.GetObject(L"Zep");
    const Object words = global.CallObject(L"ListToCollection", {L"a b"});
    std::vector<Object> others;
    for (const GUID& each :
         {CLSID_Counter, CLSID_Expression, CLSID_Messages, CLSID_List, CLSID_ZepVariant,
          CLSID_DocHand, CLSID_FileDialog, CLSID_MousePointer}) {
      others.push_back(Create(each));
    }
    global.Reset();
    EXPECT_FALSE(NewGlobal().Get(L"Zep") == library);
    EXPECT_EQ(words.Get(L"Count"), 2);
  });
}

TEST_P(LibraryTest, TheTeardownLetsGoOfEverythingInOrder) {
  InNewApartment([] {
    std::string order;
    Witness message([&] { order += "messages "; }), target([&] { order += "targets"; });
    Object library = NewGlobal().GetObject(L"Zep");
    const Object sets = library.GetObject(L"VarSets"), charts = library.GetObject(L"Charts");
    EXPECT_OK(library.GetObject(L"DebugPrintOuts").Call(L"Add", {Value(&target), L"Text", 1}));
    EXPECT_OK(library.GetObject(L"GlobalMessages").Call(L"Add", {Value(&message)}));
    EXPECT_OK(library.GetObject(L"CommandLine").Call(L"AddItem", {L"last"}));
    EXPECT_EQ(library.GetObject(L"Keyboard").Get(L"Parent"), NewGlobal().Get(L"Zep").value);
    const Object set = sets.CallObject(L"Add", {L"set"});
    const Object chart = charts.CallObject(L"Add", {L"chart"});
    EXPECT_OK(chart.Set(L"VarSet", {set}));
    order.clear();  // of the tests' own values
    library.Reset();
    EXPECT_EQ("messages targets", order);
    for (const Object& emptied : {sets, charts}) EXPECT_FALSE(emptied.Get(L"Count").ok());
    for (const Object& deleted : {set, chart}) EXPECT_FALSE(deleted.Get(L"Name").ok());
  });
}

TEST_P(LibraryTest, WhatNobodyHoldsDoesNotKeepTheComponentLoaded) {
  InNewApartment([] {
    EXPECT_EQ(S_OK, component::CanUnloadNow());
    EXPECT_OK(NewGlobal().GetObject(L"VarSets").CallObject(L"Add", {L"kept"}).Call(L"Add", {L"x"}));
    EXPECT_OK(NewGlobal().GetObject(L"Charts").Call(L"Add", {L"kept"}));
    EXPECT_EQ(S_OK, component::CanUnloadNow());
    const Object set = NewGlobal().GetObject(L"VarSets").GetObject(L"Item", {L"kept"});
    EXPECT_EQ(S_FALSE, component::CanUnloadNow());
    auto entry = set.Get(L"NewEnum");
    EXPECT_OK(entry);
  });
  EXPECT_EQ(S_OK, component::CanUnloadNow());
}

TEST_P(LibraryTest, ManyGlobals) {
  std::vector<Object> globals;
  for (int i = 0; i < 10000; ++i) globals.push_back(NewGlobal());
  EXPECT_EQ(globals.front().Get(L"Zep"), globals.back().GetObject(L"Zep"));
}

TEST_P(LibraryTest, EveryApartmentHasItsOwn) {
  const Object global = NewGlobal();
  EXPECT_OK(global.GetObject(L"VarSets").Call(L"Clear"));
  const Object set = global.GetObject(L"VarSets").CallObject(L"Add", {L"mine"});
  InNewApartment([&] {
    const Object sets = NewGlobal().GetObject(L"VarSets");
    EXPECT_EQ(sets.Get(L"Count"), 0);
    EXPECT_OK(sets.Call(L"Add", {L"mine"}));
    EXPECT_EQ(sets.Get(L"Count"), 1);
    InNewApartment([] { EXPECT_EQ(NewGlobal().GetObject(L"VarSets").Get(L"Count"), 0); });
    EXPECT_EQ(sets.Get(L"Count"), 1);
  });
  EXPECT_EQ(global.GetObject(L"VarSets").Get(L"Count"), 1);
  EXPECT_OK(set.Call(L"Delete"));
}

TEST_P(LibraryTest, ALibraryThatIsHeldServesOnItsOwn) {
  InNewApartment([] {
    Object library = NewGlobal().GetObject(L"Zep");
    const Object sets = library.GetObject(L"VarSets");
    const Object set = sets.CallObject(L"Add", {L"set"});
    EXPECT_EQ(library.Get(L"VarSets"), sets);
    EXPECT_FALSE(NewGlobal().Get(L"VarSets") == sets);
    EXPECT_EQ(sets.Get(L"Parent"), NewGlobal().GetObject(L"Zep"));  // of the shared one, always
    const Object charts = library.GetObject(L"Charts");
    const Object chart = charts.CallObject(L"Add", {L"chart"});
    const Object outputs = library.GetObject(L"DebugPrintOuts");
    library.Reset();
    EXPECT_ZEP_ERROR(sets.Get(L"Count"), zepErrAwaitTerm, L"VarSets");
    EXPECT_ZEP_ERROR(set.Get(L"Count"), zepErrAwaitTerm, L"VarSet");
    EXPECT_ZEP_ERROR(charts.Get(L"Count"), zepErrAwaitTerm, L"Charts");
    EXPECT_ZEP_ERROR(chart.Get(L"Name"), zepErrAwaitTerm, L"Chart");
    EXPECT_ZEP_ERROR(outputs.Get(L"Count"), zepErrAwaitTerm, L"DebugPrintOuts");
  });
}

// The objects are held past the end of their thread, which is against the rules, but must hurt
// nobody.
TEST_P(LibraryTest, TheEndOfAnApartmentShutsItsCollections) {
  const Object global = NewGlobal();
  const Object library = global.GetObject(L"Zep");
  Object sets, set, other_global, other_library;
  InNewApartment([&] {
    other_global = NewGlobal();
    other_library = other_global.GetObject(L"Zep");
    sets = other_global.GetObject(L"VarSets");
    set = sets.CallObject(L"Add", {L"set"});
  });
  EXPECT_ZEP_ERROR(sets.Get(L"Count"), zepErrAwaitTerm, L"VarSets");
  EXPECT_ZEP_ERROR(sets.Call(L"Add"), zepErrAwaitTerm, L"VarSets");
  EXPECT_ZEP_ERROR(sets.Call(L"Clear"), zepErrAwaitTerm, L"VarSets");
  EXPECT_ZEP_ERROR(sets.Get(L"Item", {1}), zepErrAwaitTerm, L"VarSets");
  EXPECT_ZEP_ERROR(sets.Get(L"NewEnum"), zepErrAwaitTerm, L"VarSets");
  EXPECT_ZEP_ERROR(sets.Get(L"Parent"), zepErrAwaitTerm, L"VarSets");
  EXPECT_ZEP_ERROR(sets.Call(L"Remove", {1}), zepErrAwaitTerm, L"VarSets");
  EXPECT_ZEP_ERROR(set.Get(L"Name"), zepErrAwaitTerm, L"VarSet");
  for (Object* held : {&set, &sets, &other_library, &other_global}) held->Reset();
  EXPECT_EQ(global.Get(L"Zep"), library);
}

RUN_IN_BOTH_BINDINGS(LibraryTest);

}  // namespace

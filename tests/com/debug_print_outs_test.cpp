#include "com/apartment.h"
#include "com/both_bindings.h"
#include "com/index_kinds.h"
#include "com/target.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;
using component::InNewApartment;

constexpr int kGetLet = 0, kLet = 1, kMethod = 2;

bool IsText(const Value& value) {
  Value content;
  VariantCopyInd(&content.raw(), const_cast<VARIANT*>(&value.raw()));
  return content.type() == VT_BSTR;
}

class DebugPrintOutsTest : public BothBindings {
 protected:
  ~DebugPrintOutsTest() override { outs_.Call(L"Clear"); }

  Object Add(Target& target, const wchar_t* call = L"PrintLine", int type = kMethod) const {
    return outs_.CallObject(L"Add", {Value(&target), call, type});
  }
  /// Asserts that a target is refused and leaves nothing behind.
  void ExpectRefused(const Value& object, const std::wstring& call, int type) const {
    const Value count = outs_.Get(L"Count").value;
    EXPECT_ZEP_ERROR(outs_.Call(L"Add", {object, call, type}), zepErrBadCall, L"DebugPrintOuts");
    EXPECT_EQ(outs_.Get(L"Count"), count);
  }
  static void ExpectDeleted(const Object& out) {
    EXPECT_ZEP_ERROR(out.Get(L"LinkedCall"), zepErrAwaitTerm, L"DebugPrintOut");
  }

  Target target_;
  Object global_ = Create(CLSID_Global);
  Object outs_ = global_.GetObject(L"DebugPrintOuts");
};

TEST_P(DebugPrintOutsTest, IsEmptyAndEnabledAtFirst) {
  EXPECT_EQ(outs_.Get(L"Count"), 0);
  EXPECT_EQ(outs_.Get(L"Enabled"), true);
  EXPECT_EQ(outs_.Get(L"Parent"), global_.GetObject(L"Zep"));
  EXPECT_TRUE(outs_.Items().empty());
}

TEST_P(DebugPrintOutsTest, EnabledIsKept) {
  EXPECT_OK(outs_.Let(L"Enabled", {false}));
  EXPECT_EQ(outs_.Get(L"Enabled"), false);
  EXPECT_EQ(global_.GetObject(L"DebugPrintOuts").Get(L"Enabled"), false);
  EXPECT_OK(Add(target_).Call(L"Delete"));  // targets are tried out all the same
  EXPECT_EQ(1u, target_.calls.size());
  EXPECT_OK(outs_.Let(L"Enabled", {true}));
  EXPECT_EQ(outs_.Get(L"Enabled"), true);
}

TEST_P(DebugPrintOutsTest, AddedTargetsStandInOrder) {
  const Object first = Add(target_, L"Text", kGetLet);
  const Object second = Add(target_, L"Text", kLet);
  const Object third = Add(target_);
  EXPECT_EQ(outs_.Get(L"Count"), 3);
  EXPECT_EQ(outs_.Get(L"Item", {1}), first);
  EXPECT_EQ(outs_.Get(L"Item", {2}), second);
  EXPECT_EQ(outs_.Get(L"Item", {3}), third);
  EXPECT_EQ(first.Get(L"Parent"), outs_);
  EXPECT_EQ(third.Get(L"Parent"), outs_);
}

TEST_P(DebugPrintOutsTest, AMemberMayBeAddedMoreThanOnce) {
  const Object first = Add(target_), second = Add(target_);
  EXPECT_FALSE(outs_.Get(L"Item", {1}) == outs_.Get(L"Item", {2}).value);
  EXPECT_OK(first.Call(L"Delete"));
  EXPECT_EQ(outs_.Get(L"Item", {1}), second);
}

TEST_P(DebugPrintOutsTest, AddReadsAPropertyAndWritesItBack) {
  target_.text = Value(42);
  ASSERT_TRUE(Add(target_, L"Text", kGetLet));
  EXPECT_EQ(target_.calls, (std::vector{Target::Read(), Target::Write(42)}));
}

TEST_P(DebugPrintOutsTest, AddEmptiesAPropertyThatIsOnlyWritten) {
  target_.text = Value(L"text");
  ASSERT_TRUE(Add(target_, L"Text", kLet));
  EXPECT_EQ(target_.calls, std::vector{Target::Write(Value())});
  EXPECT_EQ(target_.text, Value());
}

TEST_P(DebugPrintOutsTest, AddCallsAMethodWithAnEmptyValue) {
  ASSERT_TRUE(Add(target_));
  EXPECT_EQ(target_.calls, std::vector{Target::Print(Value())});
}

TEST_P(DebugPrintOutsTest, NamesOfMembersMayBeOfAnyLetterCase) {
  const Object out = Add(target_, L"pRINTlINE");
  EXPECT_EQ(out.Get(L"LinkedCall"), L"pRINTlINE");
  EXPECT_TRUE(Add(target_, L"TEXT", kGetLet));
  EXPECT_TRUE(Add(target_, L"text", kLet));
}

TEST_P(DebugPrintOutsTest, AddRefusesWhatIsNotUsable) {
  EXPECT_TRUE(Add(target_));
  for (const int type : {kGetLet, kLet, kMethod}) {
    ExpectRefused(Value::Nothing(), L"Text", type);
    ExpectRefused(Value(&target_), L"NoSuchMember", type);
    ExpectRefused(Value(&target_), L"", type);
    ExpectRefused(
        Value(&target_),
        std::wstring(type == kMethod ? L"PrintLine\0x" : L"Text\0x", type == kMethod ? 11 : 6),
        type);
  }
  ExpectRefused(Value(&target_), L"PrintLine", kGetLet);
  ExpectRefused(Value(&target_), L"PrintLine", kLet);
  ExpectRefused(Value(&target_), L"Text", kMethod);
  EXPECT_EQ(2u, target_.references);
}

TEST_P(DebugPrintOutsTest, AddRefusesUnknownCallTypesAtOnce) {
  for (const int type : {-1, 3, 4, INT_MAX, INT_MIN}) {
    ExpectRefused(Value(&target_), L"Text", type);
    ExpectRefused(Value::Nothing(), L"Text", type);
  }
  EXPECT_TRUE(target_.calls.empty());
}

TEST_P(DebugPrintOutsTest, AddRefusesMembersThatFail) {
  for (const HRESULT code : {E_FAIL, E_OUTOFMEMORY, static_cast<HRESULT>(0x800A0005)}) {
    target_.handler = Target::Raising(0xFFFF, code, L"Source", L"Description");
    ExpectRefused(Value(&target_), L"Text", kGetLet);
    ExpectRefused(Value(&target_), L"Text", kLet);
    ExpectRefused(Value(&target_), L"PrintLine", kMethod);
    target_.handler = [=](const Target::Call&, EXCEPINFO&) { return code; };
    ExpectRefused(Value(&target_), L"PrintLine", kMethod);
  }
  // One that may be read only.
  target_.handler = Target::Raising(DISPATCH_PROPERTYPUT, E_FAIL, L"Source", L"Description");
  ExpectRefused(Value(&target_), L"Text", kGetLet);
  EXPECT_EQ(1u, target_.references);
}

TEST_P(DebugPrintOutsTest, AddRefusesPropertiesThatRefuseTheEmptyValue) {
  target_.handler = [](const Target::Call& call, EXCEPINFO&) {
    const bool empty = !call.arguments.empty() && call.arguments[0].type() == VT_EMPTY;
    return empty ? DISP_E_TYPEMISMATCH : S_OK;
  };
  ExpectRefused(Value(&target_), L"Text", kLet);
  ExpectRefused(Value(&target_), L"PrintLine", kMethod);
  EXPECT_TRUE(Add(target_, L"Text", kGetLet));
}

TEST_P(DebugPrintOutsTest, TargetsHaveNoNames) {
  ASSERT_TRUE(Add(target_));
  for (const wchar_t* name : {L"", L"1", L"PrintLine"}) {
    EXPECT_ZEP_ERROR(outs_.Get(L"Item", {name}), zepErrItemNotExistant, L"DebugPrintOuts");
    EXPECT_ZEP_ERROR(outs_.Call(L"Remove", {name}), zepErrItemNotExistant, L"DebugPrintOuts");
  }
  EXPECT_EQ(outs_.Get(L"Count"), 1);
}

TEST_P(DebugPrintOutsTest, PositionsAreIntegers) {
  const Object out = Add(target_);
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    if (IsText(index)) {
      EXPECT_ZEP_ERROR(outs_.Get(L"Item", {index}), zepErrItemNotExistant, L"DebugPrintOuts");
    } else {
      EXPECT_EQ(outs_.Get(L"Item", {index}), out) << index;
    }
  }
  for (const Value& index : index_kinds::Refused(global_.get())) {
    SCOPED_TRACE(index.type());
    EXPECT_ZEP_ERROR(outs_.Get(L"Item", {index}), zepErrBadParam, L"DebugPrintOuts");
    EXPECT_ZEP_ERROR(outs_.Call(L"Remove", {index}), zepErrBadParam, L"DebugPrintOuts");
  }
}

TEST_P(DebugPrintOutsTest, PositionsOutsideRaise9) {
  ASSERT_TRUE(Add(target_));
  for (const int position : {0, -1, 2, INT_MAX, INT_MIN}) {
    EXPECT_ERROR(outs_.Get(L"Item", {position}), 9, L"Zepkit10.DebugPrintOuts",
                 L"Subscript out of range");
    EXPECT_ERROR(outs_.Call(L"Remove", {position}), 9, L"Zepkit10.DebugPrintOuts",
                 L"Subscript out of range");
  }
  EXPECT_EQ(outs_.Get(L"Count"), 1);
}

TEST_P(DebugPrintOutsTest, RemoveDeletesTheTarget) {
  const Object first = Add(target_), second = Add(target_), third = Add(target_);
  EXPECT_OK(outs_.Call(L"Remove", {2}));
  ExpectDeleted(second);
  EXPECT_EQ(outs_.Get(L"Count"), 2);
  EXPECT_EQ(outs_.Get(L"Item", {2}), third);
  EXPECT_EQ(3u, target_.references);
}

TEST_P(DebugPrintOutsTest, ClearDeletesEveryTargetAndLetsItsObjectGo) {
  const Object first = Add(target_), second = Add(target_, L"Text", kGetLet);
  EXPECT_EQ(3u, target_.references);
  EXPECT_OK(outs_.Call(L"Clear"));
  EXPECT_EQ(outs_.Get(L"Count"), 0);
  ExpectDeleted(first);
  ExpectDeleted(second);
  EXPECT_EQ(1u, target_.references);
  EXPECT_OK(outs_.Call(L"Clear"));
}

TEST_P(DebugPrintOutsTest, ForEachVisitsASnapshot) {
  for (int i = 0; i < 3; ++i) Add(target_);
  int visited = 0;
  for (const Object& out : outs_.Items()) {
    EXPECT_EQ(out.Get(L"LinkedCall"), L"PrintLine");
    EXPECT_OK(out.Call(L"Delete"));
    if (visited++ == 0) Add(target_);
  }
  EXPECT_EQ(3, visited);
  EXPECT_EQ(outs_.Get(L"Count"), 1);
}

TEST_P(DebugPrintOutsTest, ItemIsTheDefaultMember) {
  const Object out = Add(target_);
  Value index = 1, result;
  DISPPARAMS one{&index.raw(), nullptr, 1, 0};
  EXPECT_EQ(S_OK, outs_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                      DISPATCH_PROPERTYGET, &one, &result.raw(), nullptr, nullptr));
  EXPECT_EQ(Value(out), result);
}

TEST_P(DebugPrintOutsTest, ATargetIsThereWhileItIsTried) {
  target_.handler = Target::Doing([&] {
    EXPECT_EQ(outs_.Get(L"Count"), 1);
    target_.handler = nullptr;
    EXPECT_OK(global_.Call(L"DebugPrint", {L"a"}));
  });
  ASSERT_TRUE(Add(target_));
  EXPECT_EQ(target_.Take(), L"a\r\n");
}

TEST_P(DebugPrintOutsTest, TheTrialMayDeleteTheTarget) {
  for (int way = 0; way < 3; ++way) {
    for (const int type : {kGetLet, kLet, kMethod}) {
      SCOPED_TRACE(testing::Message() << way << " " << type);
      target_.handler = Target::Doing([&] {
        target_.handler = nullptr;
        if (way == 0) EXPECT_OK(outs_.Call(L"Clear"));
        if (way == 1) EXPECT_OK(outs_.Call(L"Remove", {1}));
        if (way == 2) EXPECT_OK(outs_.GetObject(L"Item", {1}).Call(L"Delete"));
      });
      ExpectDeleted(Add(target_, type == kMethod ? L"PrintLine" : L"Text", type));
      EXPECT_EQ(outs_.Get(L"Count"), 0);
      EXPECT_EQ(1u, target_.references);
    }
  }
}

TEST_P(DebugPrintOutsTest, TheTrialMayDeleteTheTargetAndFail) {
  target_.handler = [&](const Target::Call&, EXCEPINFO&) {
    EXPECT_OK(outs_.Call(L"Clear"));
    return E_FAIL;
  };
  ExpectRefused(Value(&target_), L"Text", kGetLet);
  ExpectRefused(Value(&target_), L"Text", kLet);
  ExpectRefused(Value(&target_), L"PrintLine", kMethod);
  EXPECT_EQ(1u, target_.references);
}

TEST_P(DebugPrintOutsTest, TheTrialMayAddOtherTargets) {
  Object other;
  target_.handler = Target::Doing([&] {
    target_.handler = nullptr;
    other = Add(target_, L"Text", kGetLet);
  });
  const Object out = Add(target_);
  EXPECT_EQ(outs_.Get(L"Item", {1}), out);
  EXPECT_EQ(outs_.Get(L"Item", {2}), other);
}

TEST_P(DebugPrintOutsTest, TrialsWithoutEndAreRefused) {
  int refused = 0;
  target_.handler = Target::Doing([&] {
    if (refused == 0 && outs_.Call(L"Add", {Value(&target_), L"PrintLine", kMethod}).number != 0) {
      ++refused;
    }
  });
  EXPECT_TRUE(Add(target_));
  EXPECT_EQ(1, refused);
  EXPECT_EQ(outs_.Get(L"Count"), 16);
  target_.handler = nullptr;
  EXPECT_TRUE(Add(target_));
}

TEST_P(DebugPrintOutsTest, TheLibrarysOwnObjectsAreTargets) {
  const Object expression = Create(CLSID_Expression);
  EXPECT_OK(outs_.Call(L"Add", {expression, L"EString", kLet}));
  EXPECT_OK(outs_.GetObject(L"Item", {1}).Call(L"PrintText", {L"1+1"}));
  EXPECT_EQ(expression.Get(L"EString"), L"1+1");
  EXPECT_EQ(expression.Get(L"Value"), 2.0);
  const Object list = Create(CLSID_List);
  EXPECT_OK(list.Let(L"ListString", {L"a b"}));
  EXPECT_OK(outs_.Call(L"Add", {list, L"liststring", kGetLet}));
  EXPECT_EQ(list.Get(L"ListString"), L"a b");
  EXPECT_OK(outs_.GetObject(L"Item", {2}).Call(L"PrintText", {L" c"}));
  EXPECT_EQ(list.Get(L"ListString"), L"a b c");
  EXPECT_EQ(list.Get(L"Count"), 3);
  const Object other = Create(CLSID_List);
  EXPECT_OK(outs_.Call(L"Add", {other, L"AddItem", kMethod}));
  EXPECT_EQ(other.Get(L"Count"), 1);  // the trial
  EXPECT_OK(outs_.GetObject(L"Item", {3}).Call(L"PrintText", {L"x"}));
  EXPECT_EQ(other.Get(L"Item", {2}), L"x");
  EXPECT_OK(outs_.Call(L"Clear"));
}

TEST_P(DebugPrintOutsTest, MembersOfTheLibraryThatRefuseTheTrialAreRefused) {
  ExpectRefused(Create(CLSID_Messages), L"Add", kMethod);  // no message is empty
  ExpectRefused(global_, L"CommandLine", kLet);
  ExpectRefused(global_, L"CommandLine", kGetLet);
  ExpectRefused(outs_, L"Count", kGetLet);
  ExpectRefused(outs_, L"Clear", kMethod);  // takes no argument
}

TEST_P(DebugPrintOutsTest, TargetsKeepTheLibraryAndItsState) {
  InNewApartment([&] {
    Object global = Create(CLSID_Global);
    const Object library = global.GetObject(L"Zep");
    EXPECT_OK(
        global.GetObject(L"DebugPrintOuts").Call(L"Add", {Value(&target_), L"PrintLine", kMethod}));
    EXPECT_OK(global.Call(L"DebugPrint", {L"+ a"}));
    global.Reset();
    global = Create(CLSID_Global);
    EXPECT_EQ(global.Get(L"Zep"), library);
    EXPECT_OK(global.Call(L"DebugPrint", {L"b"}));
    EXPECT_EQ(target_.Take(), L"+ a\r\n  b\r\n");
  });
}

TEST_P(DebugPrintOutsTest, TheEndOfTheLibraryLetsTheTargetsGo) {
  InNewApartment([&] {
    const Object outs = Create(CLSID_Global).GetObject(L"DebugPrintOuts");
    for (int i = 0; i < 3; ++i) {
      EXPECT_OK(outs.Call(L"Add", {Value(&target_), L"PrintLine", kMethod}));
    }
    EXPECT_EQ(4u, target_.references);
  });
  EXPECT_EQ(1u, target_.references);
  EXPECT_EQ(3u, target_.calls.size());
}

TEST_P(DebugPrintOutsTest, RootsShareTargetsAndLevels) {
  InNewApartment([&] {
    const Object global = Create(CLSID_Global), other = Create(CLSID_Global);
    const Object library = global.GetObject(L"Zep");
    EXPECT_OK(library.Call(L"DebugPrint", {L"+ a"}));  // before there are any targets
    const Object outs = other.GetObject(L"DebugPrintOuts");
    EXPECT_OK(outs.Call(L"Add", {Value(&target_), L"PrintLine", kMethod}));
    EXPECT_OK(global.Call(L"DebugPrint", {L"b", true}));
    EXPECT_OK(library.Call(L"DebugPrint", {L"c"}));
    EXPECT_OK(other.Call(L"DebugPrint", {L"- d"}));
    EXPECT_EQ(target_.Take(), L"  bc\r\n- d\r\n");
    EXPECT_EQ(library.Get(L"DebugPrintOuts"), outs);
    EXPECT_OK(outs.Call(L"Clear"));
  });
}

TEST_P(DebugPrintOutsTest, EveryApartmentHasItsOwn) {
  ASSERT_TRUE(Add(target_));
  target_.Take();
  InNewApartment([&] {
    const Object global = Create(CLSID_Global);
    EXPECT_EQ(global.GetObject(L"DebugPrintOuts").Get(L"Count"), 0);
    EXPECT_OK(global.Call(L"DebugPrint", {L"+ a"}));
  });
  EXPECT_OK(global_.Call(L"DebugPrint", {L"b"}));
  EXPECT_OK(global_.Call(L"DebugPrint", {L"c"}));
  EXPECT_EQ(target_.Take(), L"b\r\nc\r\n");
}

RUN_IN_BOTH_BINDINGS(DebugPrintOutsTest);

}  // namespace

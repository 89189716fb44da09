#include "com/chart_fixture.h"
#include "com/index_kinds.h"

namespace {

using client::Object;
using client::Value;

class FncInfosTest : public WithChart {};

TEST_P(FncInfosTest, AddedFunctionsStandInOrder) {
  const Object b = functions_.CallObject(L"Add", {L"b"});
  const Object a = functions_.CallObject(L"Add", {L"a"});
  EXPECT_EQ(functions_.Get(L"Count"), 2);
  EXPECT_EQ(functions_.Get(L"Item", {1}), b);
  EXPECT_EQ(functions_.Get(L"Item", {2}), a);
  EXPECT_EQ(functions_.Get(L"Item", {L"a"}), a);
  EXPECT_EQ(a.Get(L"Name"), L"a");
  EXPECT_EQ(a.Get(L"Parent"), functions_);
  EXPECT_EQ(functions_.Get(L"Parent"), chart_);
}

TEST_P(FncInfosTest, AddRefusesNamesInUse) {
  EXPECT_OK(functions_.Call(L"Add", {L"f"}));
  EXPECT_OK(functions_.Call(L"Add", {L"F"}));
  EXPECT_ZEP_ERROR(functions_.Call(L"Add", {L"f"}), zepErrItemAlreadyExists, L"FncInfos");
  EXPECT_EQ(functions_.Get(L"Count"), 2);
}

TEST_P(FncInfosTest, AnyTextIsAName) {
  for (const std::wstring& name : {std::wstring(), std::wstring(L"f\0g", 3),
                                   std::wstring(100000, L'f'), std::wstring(L"\xD83D")}) {
    const Object added = functions_.CallObject(L"Add", {name});
    EXPECT_EQ(added.Get(L"Name"), name);
    EXPECT_EQ(functions_.Get(L"Item", {name}), added);
    EXPECT_ZEP_ERROR(functions_.Call(L"Add", {name}), zepErrItemAlreadyExists, L"FncInfos");
  }
  EXPECT_EQ(functions_.Get(L"Count"), 4);
}

TEST_P(FncInfosTest, UnknownNamesAreNeverAdded) {
  functions_.Call(L"Add", {L"f"});
  EXPECT_ZEP_ERROR(functions_.Get(L"Item", {L"F"}), zepErrItemNotExistant, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"Item", {L""}), zepErrItemNotExistant, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Call(L"Remove", {L"g"}), zepErrItemNotExistant, L"FncInfos");
  EXPECT_EQ(functions_.Get(L"Count"), 1);
}

TEST_P(FncInfosTest, PositionsOutsideRaise9) {
  functions_.Call(L"Add", {L"f"});
  for (const int position : {0, -1, 2, INT_MAX, INT_MIN}) {
    EXPECT_ERROR(functions_.Get(L"Item", {position}), 9, L"Zepkit10.FncInfos",
                 L"Subscript out of range");
    EXPECT_ERROR(functions_.Call(L"Remove", {position}), 9, L"Zepkit10.FncInfos",
                 L"Subscript out of range");
  }
  EXPECT_EQ(functions_.Get(L"Count"), 1);
}

TEST_P(FncInfosTest, PositionsAreIntegersAndNamesStrings) {
  const Object function = functions_.CallObject(L"Add", {L"1"});
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    EXPECT_EQ(functions_.Get(L"Item", {index}), function) << index;
  }
  for (const Value& index : index_kinds::Refused(global_.get())) {
    SCOPED_TRACE(index.type());
    EXPECT_ZEP_ERROR(functions_.Get(L"Item", {index}), zepErrBadParam, L"FncInfos");
    EXPECT_ZEP_ERROR(functions_.Call(L"Remove", {index}), zepErrBadParam, L"FncInfos");
  }
  EXPECT_EQ(functions_.Get(L"Count"), 1);
}

TEST_P(FncInfosTest, RemoveDeletesTheFunction) {
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    const Object function = functions_.CallObject(L"Add", {L"1"});
    EXPECT_OK(functions_.Call(L"Remove", {index}));
    EXPECT_ZEP_ERROR(function.Get(L"Name"), zepErrAwaitTerm, L"FncInfo");
    EXPECT_EQ(functions_.Get(L"Count"), 0);
  }
}

TEST_P(FncInfosTest, ClearDeletesEveryFunction) {
  const Object f = functions_.CallObject(L"Add", {L"f"});
  const Object g = functions_.CallObject(L"Add", {L"g"});
  EXPECT_OK(functions_.Call(L"Clear"));
  EXPECT_EQ(functions_.Get(L"Count"), 0);
  EXPECT_ZEP_ERROR(f.Get(L"Name"), zepErrAwaitTerm, L"FncInfo");
  EXPECT_ZEP_ERROR(g.Get(L"Name"), zepErrAwaitTerm, L"FncInfo");
  EXPECT_OK(functions_.Call(L"Add", {L"f"}));
}

TEST_P(FncInfosTest, ForEachVisitsASnapshotInOrder) {
  for (const wchar_t* name : {L"c", L"a", L"b"}) functions_.Call(L"Add", {name});
  EXPECT_OK(functions_.Call(L"Remove", {L"a"}));
  std::wstring visited;
  for (const Object& function : functions_.Items()) {
    visited += function.Get(L"Name").value.raw().bstrVal;
    EXPECT_OK(function.Call(L"Delete"));
  }
  EXPECT_EQ(L"cb", visited);
  EXPECT_EQ(functions_.Get(L"Count"), 0);
}

TEST_P(FncInfosTest, AggregatesHoldEveryRange) {
  Add({L"x", -1, 2, 0.5, -7, 4});
  EXPECT_EQ(functions_.Get(L"GreatestXLow"), -1.0);
  EXPECT_EQ(functions_.Get(L"GreatestXHigh"), 2.0);
  EXPECT_EQ(functions_.Get(L"GreatestYLow"), -7.0);
  EXPECT_EQ(functions_.Get(L"GreatestYHigh"), 4.0);
  Add({L"x", -3, 1, 0.5, -2, 5});
  EXPECT_EQ(functions_.Get(L"GreatestXLow"), -3.0);
  EXPECT_EQ(functions_.Get(L"GreatestXHigh"), 2.0);
  EXPECT_EQ(functions_.Get(L"GreatestYLow"), -7.0);
  EXPECT_EQ(functions_.Get(L"GreatestYHigh"), 5.0);
  EXPECT_OK(functions_.Call(L"Remove", {1}));
  EXPECT_EQ(functions_.Get(L"GreatestYLow"), -2.0);
}

TEST_P(FncInfosTest, AggregatesStartFromTheFirstFunction) {
  Add({L"x", 5, 3, 0.5, 9, 7});
  EXPECT_EQ(functions_.Get(L"GreatestXLow"), 5.0);
  EXPECT_EQ(functions_.Get(L"GreatestXHigh"), 3.0);
  EXPECT_EQ(functions_.Get(L"GreatestYLow"), 9.0);
  EXPECT_EQ(functions_.Get(L"GreatestYHigh"), 7.0);
}

TEST_P(FncInfosTest, AggregatesOfNoFunctionFail) {
  for (const wchar_t* name :
       {L"GreatestXHigh", L"GreatestXLow", L"GreatestYHigh", L"GreatestYLow"}) {
    EXPECT_ZEP_ERROR(functions_.Get(name), zepErrBadCallContext, L"FncInfos");
    EXPECT_FALSE(functions_.Let(name, {1.0}).ok());
  }
}

TEST_P(FncInfosTest, FunctionsOfADeletedChartRefuseEveryMember) {
  const Object function = Add({L"x"});
  const Object expression = function.GetObject(L"Expression");
  EXPECT_OK(chart_.Call(L"Delete"));
  EXPECT_ZEP_ERROR(functions_.Call(L"Add", {L"f"}), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Call(L"Clear"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"Count"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"GreatestXHigh"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"GreatestXLow"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"GreatestYHigh"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"GreatestYLow"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"Item", {1.0}), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"NewEnum"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Get(L"Parent"), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(functions_.Call(L"Remove", {1.0}), zepErrAwaitTerm, L"FncInfos");
  EXPECT_ZEP_ERROR(function.Get(L"Name"), zepErrAwaitTerm, L"FncInfo");
  EXPECT_EQ(expression.Get(L"EString"), L"x");
}

RUN_IN_BOTH_BINDINGS(FncInfosTest);

}  // namespace

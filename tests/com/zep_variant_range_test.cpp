// Views of a slice of another buffer, kept in step with it.
#include "com/buffer_fixture.h"

namespace {

using namespace std::string_literals;
using client::Object;
using client::Sink;
using client::Value;

using ZepVariantRangeTest = WithParent;

TEST_P(ZepVariantRangeTest, AViewShowsASliceOfItsParent) {
  const Object view = New();
  EXPECT_OK(view.Call(L"ConnectAsRange", {parent_, 3, 4}));
  ExpectView(view, 3, "2345");
  EXPECT_EQ(parent_.Get(L"IsRange"), false);
  EXPECT_EQ(Bytes(parent_), "0123456789");
}

TEST_P(ZepVariantRangeTest, SlicesMayTouchTheEndsAndBeEmpty) {
  ExpectView(NewView(parent_, 1, 10), 1, "0123456789");
  ExpectView(NewView(parent_, 1, 0), 1, "");
  ExpectView(NewView(parent_, 11, 0), 11, "");
  ExpectView(NewView(parent_, 10, 1), 10, "9");
  ExpectView(NewView(unconnected_, 1, 0), 1, "");
}

TEST_P(ZepVariantRangeTest, UnicodeParentsCountTwoBytesACharacter) {
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  const Object view = New();
  EXPECT_OK(view.Call(L"ConnectAsRange", {parent_, 2, 3}));
  ExpectView(view, 3, "234567");
  const Object whole = New(), behind = New(), bytes = New();
  EXPECT_OK(whole.Call(L"ConnectAsRange", {parent_, 1, 5, false}));
  ExpectView(whole, 1, "0123456789");
  EXPECT_OK(behind.Call(L"ConnectAsRange", {parent_, 6, 0, false}));
  ExpectView(behind, 11, "");
  EXPECT_OK(bytes.Call(L"ConnectAsRange", {parent_, 2, 3, true}));
  ExpectView(bytes, 2, "123");
}

TEST_P(ZepVariantRangeTest, OtherParentsCountOneByteACharacter) {
  for (const int type : {zepSTAscii, zepSTAnsi}) {
    EXPECT_OK(parent_.Let(L"StringType", {type}));
    for (const bool byte_coordinates : {false, true}) {
      const Object view = New();
      EXPECT_OK(view.Let(L"StringType", {zepSTUnicode}));
      EXPECT_OK(view.Call(L"ConnectAsRange", {parent_, 2, 3, byte_coordinates}));
      ExpectView(view, 2, "123");
      EXPECT_EQ(view.Get(L"StringType"), 2) << "the parent's counts, and the view keeps its own";
    }
  }
}

TEST_P(ZepVariantRangeTest, AViewLiesWithinItsParent) {
  const Sink* sink = Listen(unconnected_);
  for (const auto& [start, length] : kOutside) {
    SCOPED_TRACE(testing::Message() << start << " " << length);
    for (const bool byte_coordinates : {false, true}) {
      EXPECT_BUFFER_ERROR(
          unconnected_.Call(L"ConnectAsRange", {parent_, start, length, byte_coordinates}),
          zepErrBadCall);
    }
    EXPECT_BUFFER_ERROR(parent_.Get(L"Range", {start, length, true}), zepErrBadCall);
  }
  EXPECT_BUFFER_ERROR(parent_.Call(L"ConnectAsRange", {unconnected_, 1, 1}), zepErrBadCall);
  EXPECT_EQ(unconnected_.Get(L"IsRange"), false);
  EXPECT_TRUE(sink->events().empty());
  ExpectNoView(parent_, "0123456789");
  EXPECT_OK(Write(parent_, "new"));
  EXPECT_EQ(Bytes(unconnected_), "") << "what was refused is no view";
}

TEST_P(ZepVariantRangeTest, AViewLiesWithinItsParentsCharacters) {
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  for (const auto& [start, length] : {Bad{1, 6}, {5, 2}, {6, 1}, {7, 0}, {0, 1}, {1, -1}}) {
    EXPECT_BUFFER_ERROR(unconnected_.Call(L"ConnectAsRange", {parent_, start, length}),
                        zepErrBadCall);
  }
  EXPECT_OK(parent_.Let(L"ByteLength", {9}));
  EXPECT_BUFFER_ERROR(unconnected_.Call(L"ConnectAsRange", {parent_, 1, 5}), zepErrBadCall);
  EXPECT_OK(unconnected_.Call(L"ConnectAsRange", {parent_, 1, 4}));
  ExpectView(unconnected_, 1, "01234567");
}

TEST_P(ZepVariantRangeTest, PositionsThatCannotBeDoubledOverflow) {
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  for (const auto& [start, length] : {Bad{(1 << 30) + 1, 0}, {INT_MAX, 1}, {1, 1 << 30}}) {
    EXPECT_BUFFER_RUNTIME_ERROR(unconnected_.Call(L"ConnectAsRange", {parent_, start, length}), 6,
                                L"Overflow");
    EXPECT_BUFFER_ERROR(parent_.Get(L"Range", {start, length, false}), zepErrBadCall);
  }
  EXPECT_BUFFER_ERROR(unconnected_.Call(L"ConnectAsRange", {parent_, 1 << 30, 0}), zepErrBadCall);
  EXPECT_EQ(unconnected_.Get(L"IsRange"), false);
}

TEST_P(ZepVariantRangeTest, AViewIsNoViewOfASecondParent) {
  const Object view = NewView(parent_, 2, 3);
  EXPECT_BUFFER_ERROR(view.Call(L"ConnectAsRange", {parent_, 1, 1}), zepErrBadCallContext);
  EXPECT_OK(view.Let(L"ReadOnly", {true}));
  EXPECT_BUFFER_ERROR(view.Call(L"ConnectAsRange", {Value::Nothing(), 0, -1}),
                      zepErrBadCallContext);
  ExpectView(view, 2, "123");
}

TEST_P(ZepVariantRangeTest, AReadOnlyBufferBecomesNoView) {
  EXPECT_OK(unconnected_.Let(L"ReadOnly", {true}));
  EXPECT_BUFFER_ERROR(unconnected_.Call(L"ConnectAsRange", {parent_, 1, 1}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(unconnected_.Call(L"ConnectAsRange", {parent_, 0, 1}), zepErrReadOnly);
  EXPECT_EQ(unconnected_.Get(L"IsRange"), false);
}

TEST_P(ZepVariantRangeTest, AReadOnlyParentMayHaveViews) {
  EXPECT_OK(parent_.Let(L"ReadOnly", {true}));
  ExpectView(NewView(parent_, 2, 3), 2, "123");
  ExpectView(parent_.GetObject(L"Range", {2, 3}), 2, "123");
}

TEST_P(ZepVariantRangeTest, ParentsAreBuffersOfTheLibrary) {
  foreign::ZepVariant foreign;
  const Value stranger(&foreign);
  EXPECT_BUFFER_RUNTIME_ERROR(unconnected_.Call(L"ConnectAsRange", {Value::Nothing(), 1, 1}), 91,
                              L"Object variable not set");
  EXPECT_BUFFER_RUNTIME_ERROR(unconnected_.Call(L"ConnectAsRange", {stranger, 1, 1}), 13,
                              L"Type mismatch");
  EXPECT_FALSE(unconnected_.Call(L"ConnectAsRange", {Create(CLSID_Counter), 1, 1}).ok());
  EXPECT_EQ(unconnected_.Get(L"IsRange"), false);
}

TEST_P(ZepVariantRangeTest, ConnectingChangesTheViewOnly) {
  const Object below = NewView(unconnected_, 1, 0), sibling = NewView(parent_, 1, 10);
  Watch(parent_, "parent"), Watch(sibling, "sibling");
  Watch(unconnected_, "view"), Watch(below, "below");
  EXPECT_OK(unconnected_.Call(L"ConnectAsRange", {parent_, 3, 2}));
  EXPECT_EQ(Changes(), (Names{"below", "view"}));
  EXPECT_EQ(Bytes(unconnected_), "23");
}

TEST_P(ZepVariantRangeTest, OldBytesOfAViewAreGone) {
  EXPECT_OK(Write(unconnected_, "old bytes, many of them"));
  EXPECT_OK(unconnected_.Call(L"ConnectAsRange", {parent_, 9, 2}));
  ExpectView(unconnected_, 9, "89");
}

TEST_P(ZepVariantRangeTest, WritingAViewChangesTheSliceInPlace) {
  const Object view = NewView(parent_, 3, 3);
  EXPECT_OK(view.Let(L"DataString", {L"abc"}));
  EXPECT_EQ(Bytes(parent_), "01abc56789");
  ExpectView(view, 3, "abc");
  EXPECT_OK(view.Let(L"DataByte", {2, 'X'}));
  EXPECT_EQ(Bytes(parent_), "01aXc56789");
  ExpectView(view, 3, "aXc");
}

TEST_P(ZepVariantRangeTest, AParentGrowsAndShrinksByTheDifference) {
  const Object view = NewView(parent_, 3, 3);
  EXPECT_OK(view.Let(L"DataString", {L"abcdef"}));
  EXPECT_EQ(Bytes(parent_), "01abcdef56789");
  ExpectView(view, 3, "abcdef");
  EXPECT_OK(view.Let(L"ByteLength", {1}));
  EXPECT_EQ(Bytes(parent_), "01a56789");
  ExpectView(view, 3, "a");
  EXPECT_OK(view.Let(L"ByteLength", {0}));
  EXPECT_EQ(Bytes(parent_), "0156789");
  ExpectView(view, 3, "");
  EXPECT_OK(view.Let(L"StringLength", {2}));
  EXPECT_EQ(Bytes(parent_),
            "01\0\0"
            "56789"s);
  EXPECT_OK(view.Let(L"DataByte", {4, 'X'}));
  EXPECT_EQ(Bytes(parent_), "01\0\0\0X56789"s);
  ExpectView(view, 3, "\0\0\0X"s);
  EXPECT_OK(view.Let(L"RangeBytes", {1, 3, ArrayOf("y")}));
  EXPECT_EQ(Bytes(parent_), "01yX56789");
  EXPECT_OK(view.Let(L"RangeString", {2, 0, L"zz"}));
  EXPECT_EQ(Bytes(parent_), "01yzzX56789");
  ExpectView(view, 3, "yzzX");
}

TEST_P(ZepVariantRangeTest, AnEmptyViewAtTheEndAppends) {
  const Object end = NewView(parent_, 11, 0);
  EXPECT_OK(end.Let(L"DataString", {L"ab"}));
  EXPECT_EQ(Bytes(parent_), "0123456789ab");
  EXPECT_OK(end.Let(L"DataByte", {3, 'c'}));
  EXPECT_EQ(Bytes(parent_), "0123456789abc");
  ExpectView(end, 11, "abc");
  const Object all = NewView(unconnected_, 1, 0);
  EXPECT_OK(all.Let(L"DataString", {L"new"}));
  EXPECT_EQ(Bytes(unconnected_), "new");
}

TEST_P(ZepVariantRangeTest, WritingAParentRefreshesItsViews) {
  const Object view = NewView(parent_, 3, 4), other = NewView(parent_, 1, 3);
  EXPECT_OK(Write(parent_, "ABCDEFGHIJ"));
  ExpectView(view, 3, "CDEF");
  ExpectView(other, 1, "ABC");
  EXPECT_OK(parent_.Let(L"DataByte", {3, '*'}));
  ExpectView(view, 3, "*DEF");
  ExpectView(other, 1, "AB*");
  EXPECT_OK(parent_.Let(L"RangeBytes", {1, 0, ArrayOf("xy")}));
  ExpectView(view, 3, "AB*D");
  EXPECT_OK(parent_.Let(L"RangeString", {1, 3, L""}));
  EXPECT_EQ(Bytes(parent_), "B*DEFGHIJ");
  ExpectView(view, 3, "DEFG");
}

TEST_P(ZepVariantRangeTest, AParentThatIsCutClampsItsViews) {
  const Object view = NewView(parent_, 3, 6), inner = NewView(view, 2, 4);
  EXPECT_OK(parent_.Let(L"ByteLength", {4}));
  ExpectView(view, 3, "23");
  ExpectView(inner, 2, "3");
  EXPECT_OK(parent_.Let(L"ByteLength", {2}));
  ExpectView(view, 2, "1");
  EXPECT_OK(parent_.Let(L"ByteLength", {0}));
  ExpectView(view, 1, "");
  ExpectView(inner, 1, "");
  EXPECT_EQ(Bytes(parent_), "");
  EXPECT_OK(Write(parent_, "0123456789"));
  ExpectView(view, 1, "");
  EXPECT_OK(view.Let(L"DataString", {L"ab"}));
  EXPECT_EQ(Bytes(parent_), "ab0123456789");
}

TEST_P(ZepVariantRangeTest, AClampedViewDoesNotGrowAgain) {
  const Object view = NewView(parent_, 3, 6);
  EXPECT_OK(parent_.Let(L"ByteLength", {4}));
  EXPECT_OK(Write(parent_, "ABCDEFGHIJ"));
  ExpectView(view, 3, "CD");
}

TEST_P(ZepVariantRangeTest, OverlappingViewsSeeEachOther) {
  const Object left = NewView(parent_, 1, 3), right = NewView(parent_, 2, 3);
  EXPECT_OK(left.Let(L"DataString", {L"abcde"}));
  EXPECT_EQ(Bytes(parent_), "abcde3456789");
  ExpectView(left, 1, "abcde");
  ExpectView(right, 2, "bcd");
  EXPECT_OK(right.Let(L"DataString", {L"X"}));
  EXPECT_EQ(Bytes(parent_), "aXe3456789");
  ExpectView(left, 1, "aXe34");
  ExpectView(right, 2, "X");
}

TEST_P(ZepVariantRangeTest, ViewsBehindAnInsertionKeepTheirPlace) {
  const Object first = NewView(parent_, 1, 2), second = NewView(parent_, 3, 2);
  EXPECT_OK(first.Let(L"DataString", {L"abc"}));
  ExpectView(second, 3, "c2");
  EXPECT_OK(second.Let(L"DataString", {L"##"}));
  EXPECT_EQ(Bytes(parent_), "ab##3456789");
  ExpectView(first, 1, "ab#");
}

TEST_P(ZepVariantRangeTest, TextGoesThroughTheEncodingOfEachEnd) {
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_OK(parent_.Let(L"DataString", {L"ABCD"}));
  const Object view = parent_.GetObject(L"Range", {2, 2});
  EXPECT_EQ(view.Get(L"DataString"), std::wstring(L"B\0C\0", 4));
  EXPECT_OK(view.Let(L"StringType", {zepSTUnicode}));
  EXPECT_EQ(view.Get(L"DataString"), L"BC");
  EXPECT_OK(view.Let(L"DataString", {L"xyz"}));
  EXPECT_EQ(parent_.Get(L"DataString"), L"AxyzD");
}

TEST_P(ZepVariantRangeTest, ViewsOfProtectedBuffersStayInStep) {
  const Object view = NewView(parent_, 2, 3);
  EXPECT_OK(view.Let(L"ReadOnly", {true}));
  EXPECT_OK(Write(parent_, "ABCDEFGHIJ"));
  ExpectView(view, 2, "BCD");
  EXPECT_BUFFER_ERROR(Write(view, "x"), zepErrReadOnly);
  EXPECT_OK(view.Let(L"ReadOnly", {false}));
  EXPECT_OK(parent_.Let(L"ReadOnly", {true}));
  EXPECT_OK(Write(view, "x"));
  EXPECT_EQ(Bytes(parent_), "AxEFGHIJ");
}

RUN_IN_BOTH_BINDINGS(ZepVariantRangeTest);

}  // namespace

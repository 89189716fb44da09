// Slices of a buffer: Range, RangeBytes and RangeString.
#include "com/buffer_fixture.h"
#include "com/value_array.h"

namespace {

using namespace std::string_literals;
using client::Object;
using client::Outcome;
using client::Value;

using ZepVariantSliceTest = WithParent;

TEST_P(ZepVariantSliceTest, RangeMakesANewView) {
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  Watch(parent_, "parent");
  const Object view = parent_.GetObject(L"Range", {2, 3});
  ExpectView(view, 3, "234567");
  EXPECT_EQ(view.Get(L"StringType"), 1);
  EXPECT_EQ(view.Get(L"ReadOnly"), false);
  ExpectView(parent_.GetObject(L"Range", {2, 3, false}), 3, "234567");
  ExpectView(parent_.GetObject(L"Range", {2, 3, true}), 2, "123");
  const Object again = parent_.GetObject(L"Range", {2, 3});
  EXPECT_NE(Value(view), Value(again));
  EXPECT_EQ(Changes(), Names{});
  EXPECT_OK(Write(again, "x"));
  EXPECT_EQ(Bytes(parent_), "01x89");
  ExpectView(view, 3, "x89");
}

TEST_P(ZepVariantSliceTest, ARangeThatIsNotKeptLeavesNothing) {
  EXPECT_OK(parent_.Get(L"Range", {2, 3}));
  EXPECT_OK(parent_.GetObject(L"Range", {1, 2}).Let(L"DataString", {L"abc"}));
  EXPECT_EQ(Bytes(parent_), "abc23456789");
}

TEST_P(ZepVariantSliceTest, AssigningARangeReplacesTheSlice) {
  const Object view = NewView(parent_, 1, 4);
  Watch(parent_, "parent"), Watch(view, "view");
  const Object source = New("ab");
  EXPECT_OK(parent_.Let(L"Range", {3, 2, true, source}));
  EXPECT_EQ(Bytes(parent_), "01ab456789");
  EXPECT_OK(parent_.Set(L"Range", {1, 1, false, source}));
  EXPECT_EQ(Bytes(parent_), "ab1ab456789");
  EXPECT_OK(parent_.Let(L"Range", {1, 5, true, unconnected_}));
  EXPECT_EQ(Bytes(parent_), "456789");
  EXPECT_OK(parent_.Set(L"Range", {7, 0, true, source}));
  EXPECT_EQ(Bytes(parent_), "456789ab");
  ExpectView(view, 1, "4567");
  EXPECT_EQ(Changes(),
            (Names{"view", "parent", "view", "parent", "view", "parent", "view", "parent"}));
  ExpectNoView(source, "ab");
  EXPECT_OK(Write(source, "no view"));
  EXPECT_EQ(Bytes(parent_), "456789ab");
}

TEST_P(ZepVariantSliceTest, AssigningARangeMayOmitTheCoordinates) {
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  DISPID id = DISPID_UNKNOWN, assigned = DISPID_PROPERTYPUT;
  auto* name = const_cast<wchar_t*>(L"Range");
  ASSERT_EQ(S_OK, parent_.get()->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
  for (const WORD flags : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF}) {
    EXPECT_OK(Write(parent_, "0123456789"));
    Value arguments[] = {New("ab"), 3, 2};
    VARIANT reversed[] = {arguments[0].raw(), arguments[1].raw(), arguments[2].raw()};
    DISPPARAMS parameters{reversed, &assigned, 3, 1};
    EXPECT_EQ(S_OK, parent_.get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                          nullptr, nullptr, nullptr));
    EXPECT_EQ(Bytes(parent_), "01ab89");
  }
}

TEST_P(ZepVariantSliceTest, ArgumentsMayBeByReference) {
  Value start = 3, length = 2, in_bytes = true, source = New("ab"), text = L"xy", bytes = 97;
  VARIANT object;
  object.vt = VT_BYREF | VT_DISPATCH;
  object.ppdispVal = &source.raw().pdispVal;
  EXPECT_OK(parent_.Set(
      L"Range", {start.Reference(), length.Reference(), in_bytes.Reference(), Value(object)}));
  EXPECT_EQ(Bytes(parent_), "01ab456789");
  EXPECT_OK(parent_.Let(
      L"Range", {start.Reference(), length.Reference(), in_bytes.Reference(), source.Reference()}));
  EXPECT_EQ(Bytes(parent_), "01ab456789");
  EXPECT_OK(parent_.Let(L"RangeString", {start.Reference(), length.Reference(), text.Reference()}));
  EXPECT_OK(parent_.Let(L"DataByte", {length.Reference(), bytes.Reference()}));
  EXPECT_EQ(Bytes(parent_), "0axy456789");
  EXPECT_OK(unconnected_.Call(L"ConnectAsRange", {Value(parent_).Reference(), start.Reference(),
                                                  length.Reference(), in_bytes.Reference()}));
  ExpectView(unconnected_, 3, "xy");
}

TEST_P(ZepVariantSliceTest, AssigningARangeCountsAsTheBufferDoes) {
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_OK(parent_.Let(L"Range", {2, 3, false, New("ab")}));
  EXPECT_EQ(Bytes(parent_), "01ab89");
}

TEST_P(ZepVariantSliceTest, ARangeMayBeAssignedFromItsRelatives) {
  const Object view = NewView(parent_, 9, 2);
  EXPECT_OK(parent_.Let(L"Range", {1, 2, true, view}));
  EXPECT_EQ(Bytes(parent_), "8923456789");
  EXPECT_OK(parent_.Set(L"Range", {2, 8, true, parent_}));
  EXPECT_EQ(Bytes(parent_),
            "8"
            "8923456789"
            "9");
  EXPECT_OK(Write(parent_, "abc"));
  EXPECT_OK(parent_.Let(L"Range", {1, 3, true, parent_}));
  EXPECT_EQ(Bytes(parent_), "abc");
}

TEST_P(ZepVariantSliceTest, AnAssignedRangeLiesWithinTheBuffer) {
  Watch(parent_, "parent");
  const Object source = New("ab");
  for (const auto& [start, length] : kOutside) {
    EXPECT_BUFFER_ERROR(parent_.Let(L"Range", {start, length, true, source}), zepErrBadCall);
    EXPECT_BUFFER_ERROR(parent_.Set(L"Range", {start, length, false, source}), zepErrBadCall);
  }
  EXPECT_EQ(Bytes(parent_), "0123456789");
  EXPECT_EQ(Changes(), Names{});
}

TEST_P(ZepVariantSliceTest, OnlyBuffersAreAssignedToARange) {
  foreign::ZepVariant foreign;
  const Value stranger(&foreign);
  const Value nothing = Value::Nothing();
  constexpr auto kNotSet = L"Object variable not set", kMismatch = L"Type mismatch";
  EXPECT_BUFFER_RUNTIME_ERROR(parent_.Let(L"Range", {1, 1, true, nothing}), 91, kNotSet);
  EXPECT_BUFFER_RUNTIME_ERROR(parent_.Set(L"Range", {1, 1, true, nothing}), 91, kNotSet);
  EXPECT_BUFFER_RUNTIME_ERROR(parent_.Let(L"Range", {1, 1, true, stranger}), 13, kMismatch);
  EXPECT_BUFFER_RUNTIME_ERROR(parent_.Set(L"Range", {1, 1, true, stranger}), 13, kMismatch);
  EXPECT_FALSE(parent_.Set(L"Range", {1, 1, true, Create(CLSID_Counter)}).ok());
  EXPECT_EQ(Bytes(parent_), "0123456789");
}

TEST_P(ZepVariantSliceTest, RangeBytesAreACopyOfTheSlice) {
  for (const int type : {zepSTAscii, zepSTAnsi, zepSTUnicode}) {
    EXPECT_OK(parent_.Let(L"StringType", {type}));
    EXPECT_EQ(BytesOf(parent_.Get(L"RangeBytes", {3, 4})), "2345") << "always counted in bytes";
    EXPECT_EQ(BytesOf(parent_.Get(L"RangeBytes", {1, 10})), "0123456789");
    EXPECT_EQ(BytesOf(parent_.Get(L"RangeBytes", {10, 1})), "9");
  }
  for (const int start : {1, 5, 11}) {
    value_array::ExpectUnallocated(parent_.Get(L"RangeBytes", {start, 0}), VT_UI1);
  }
  value_array::ExpectUnallocated(unconnected_.Get(L"RangeBytes", {1, 0}), VT_UI1);
  const Outcome copy = parent_.Get(L"RangeBytes", {1, 1});
  static_cast<char*>(copy.value.raw().parray->pvData)[0] = 'X';
  EXPECT_EQ(Bytes(parent_), "0123456789");
}

TEST_P(ZepVariantSliceTest, RangeBytesReplaceTheSlice) {
  EXPECT_OK(parent_.Let(L"RangeBytes", {3, 2, ArrayOf("ab")}));
  EXPECT_EQ(Bytes(parent_), "01ab456789");
  EXPECT_OK(parent_.Let(L"RangeBytes", {1, 1, ArrayOf("w\0yz"s, 0)}));
  EXPECT_EQ(Bytes(parent_), "w\0yz1ab456789"s);
  EXPECT_OK(parent_.Let(L"RangeBytes", {2, 6, ArrayOf("-", -9)}));
  EXPECT_EQ(Bytes(parent_), "w-456789");
  EXPECT_OK(parent_.Let(L"RangeBytes", {9, 0, ArrayOf("end", 100)}));
  EXPECT_EQ(Bytes(parent_), "w-456789end");
  EXPECT_OK(parent_.Let(L"RangeBytes", {1, 8, Unallocated()}));
  EXPECT_EQ(Bytes(parent_), "end");
  EXPECT_OK(parent_.Let(L"RangeBytes", {2, 1, ArrayOf("", 3)}));
  EXPECT_EQ(Bytes(parent_), "ed");
  EXPECT_OK(parent_.Let(L"RangeBytes", {1, 2, ArrayOf("")}));
  EXPECT_EQ(Bytes(parent_), "");
  EXPECT_OK(parent_.Let(L"RangeBytes", {1, 0, ArrayOf("all")}));
  EXPECT_EQ(Bytes(parent_), "all");
}

TEST_P(ZepVariantSliceTest, RangeBytesLieWithinTheBuffer) {
  Watch(parent_, "parent");
  for (const auto& [start, length] : kOutside) {
    SCOPED_TRACE(testing::Message() << start << " " << length);
    EXPECT_BUFFER_ERROR(parent_.Get(L"RangeBytes", {start, length}), zepErrBadCall);
    EXPECT_BUFFER_ERROR(parent_.Let(L"RangeBytes", {start, length, ArrayOf("x")}), zepErrBadCall);
  }
  EXPECT_BUFFER_ERROR(unconnected_.Get(L"RangeBytes", {1, 1}), zepErrBadCall);
  EXPECT_BUFFER_ERROR(unconnected_.Get(L"RangeBytes", {2, 0}), zepErrBadCall);
  EXPECT_EQ(Bytes(parent_), "0123456789");
  EXPECT_EQ(Changes(), Names{});
}

TEST_P(ZepVariantSliceTest, RangeStringReadsCharacters) {
  for (const int type : {zepSTAscii, zepSTAnsi, zepSTUnicode}) {
    EXPECT_OK(parent_.Let(L"StringType", {type}));
    EXPECT_OK(parent_.Let(L"DataString", {L"AB\x00E4"
                                          L"DE"}));
    EXPECT_EQ(parent_.Get(L"RangeString", {2, 3}),
              L"B\x00E4"
              L"D");
    EXPECT_EQ(parent_.Get(L"RangeString", {1, 5}),
              L"AB\x00E4"
              L"DE");
    EXPECT_EQ(parent_.Get(L"RangeString", {5, 1}), L"E");
    EXPECT_EQ(parent_.Get(L"RangeString", {6, 0}), L"");
    EXPECT_EQ(parent_.Get(L"RangeString", {1, 0}), L"");
    EXPECT_EQ(unconnected_.Get(L"RangeString", {1, 0}), L"");
  }
}

TEST_P(ZepVariantSliceTest, RangeStringReplacesCharacters) {
  for (const int type : {zepSTAscii, zepSTAnsi, zepSTUnicode}) {
    SCOPED_TRACE(type);
    Watch(parent_, "parent");
    EXPECT_OK(parent_.Let(L"StringType", {type}));
    EXPECT_OK(parent_.Let(L"DataString", {L"ABCDE"}));
    EXPECT_OK(parent_.Let(L"RangeString", {2, 2, L"\x00E4\x00F6"}));
    EXPECT_EQ(parent_.Get(L"DataString"),
              L"A\x00E4\x00F6"
              L"DE");
    EXPECT_OK(parent_.Let(L"RangeString", {2, 2, std::wstring(L"x\0z", 3)}));
    EXPECT_EQ(parent_.Get(L"DataString"), std::wstring(L"Ax\0zDE", 6));
    EXPECT_OK(parent_.Let(L"RangeString", {1, 4, L""}));
    EXPECT_EQ(parent_.Get(L"DataString"), L"DE");
    EXPECT_OK(parent_.Let(L"RangeString", {3, 0, L"F"}));
    EXPECT_EQ(parent_.Get(L"DataString"), L"DEF");
    EXPECT_OK(parent_.Let(L"RangeString", {1, 3, L""}));
    EXPECT_EQ(parent_.Get(L"ByteLength"), 0);
    Changes();
    EXPECT_OK(parent_.Let(L"RangeString", {1, 0, L""}));
    EXPECT_FALSE(Changes().empty()) << "nothing for nothing is a write";
  }
}

TEST_P(ZepVariantSliceTest, RangeStringLiesWithinTheText) {
  Watch(parent_, "parent");
  for (const int type : {zepSTAscii, zepSTAnsi}) {
    EXPECT_OK(parent_.Let(L"StringType", {type}));
    for (const auto& [start, length] : kOutside) {
      EXPECT_BUFFER_ERROR(parent_.Get(L"RangeString", {start, length}), zepErrBadCall);
      EXPECT_BUFFER_ERROR(parent_.Let(L"RangeString", {start, length, L"x"}), zepErrBadCall);
    }
  }
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  for (const auto& [start, length] :
       {Bad{0, 1}, {1, -1}, {1, 6}, {5, 2}, {6, 1}, {7, 0}, {INT_MAX, INT_MAX}, {INT_MAX, 0}}) {
    EXPECT_BUFFER_ERROR(parent_.Get(L"RangeString", {start, length}), zepErrBadCall);
    EXPECT_BUFFER_ERROR(parent_.Let(L"RangeString", {start, length, L"x"}), zepErrBadCall);
  }
  EXPECT_EQ(Bytes(parent_), "0123456789");
  EXPECT_EQ(Changes(), Names{});
}

TEST_P(ZepVariantSliceTest, HalfACharacterIsNotReadNorReplaced) {
  EXPECT_OK(Write(parent_, "A\0B"s));
  EXPECT_OK(parent_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_EQ(parent_.Get(L"StringLength"), 2);
  EXPECT_BUFFER_ERROR(parent_.Get(L"RangeString", {2, 1}), zepErrBadCall);
  EXPECT_BUFFER_ERROR(parent_.Let(L"RangeString", {2, 1, L"x"}), zepErrBadCall);
  EXPECT_EQ(parent_.Get(L"RangeString", {1, 1}), L"A");
  EXPECT_OK(parent_.Let(L"RangeString", {1, 1, L"xy"}));
  EXPECT_EQ(Bytes(parent_), "x\0y\0B"s);
}

RUN_IN_BOTH_BINDINGS(ZepVariantSliceTest);

}  // namespace

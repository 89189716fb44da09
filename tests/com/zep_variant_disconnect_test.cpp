// How views end: by themselves, by their parent and by the release of either.
#include "com/buffer_fixture.h"

namespace {

using client::Object;
using client::Value;

using ZepVariantDisconnectTest = WithParent;

TEST_P(ZepVariantDisconnectTest, ADisconnectedViewKeepsItsBytes) {
  const Object view = NewView(parent_, 3, 4);
  Watch(view, "view"), Watch(parent_, "parent");
  EXPECT_OK(view.Call(L"DisconnectAsRange"));
  EXPECT_EQ(Changes(), Names{});
  ExpectNoView(view, "2345");
  EXPECT_EQ(view.Get(L"RangeStart"), 3) << "what it showed last";
  EXPECT_EQ(view.Get(L"RangeLength"), 4);
  EXPECT_OK(Write(parent_, "new parent"));
  EXPECT_EQ(Changes(), Names{"parent"});
  EXPECT_OK(Write(view, "new view"));
  EXPECT_EQ(Changes(), Names{"view"});
  ExpectNoView(view, "new view");
  EXPECT_EQ(Bytes(parent_), "new parent");
  EXPECT_BUFFER_ERROR(parent_.Call(L"DisconnectRange", {view}), zepErrBadCall);
}

TEST_P(ZepVariantDisconnectTest, ADisconnectedViewMayBeConnectedAgain) {
  const Object view = NewView(parent_, 3, 4), other = New("abc");
  EXPECT_OK(view.Call(L"DisconnectAsRange"));
  EXPECT_OK(view.Call(L"ConnectAsRange", {other, 2, 2}));
  ExpectView(view, 2, "bc");
  EXPECT_OK(Write(view, "X"));
  EXPECT_EQ(Bytes(other), "aX");
  EXPECT_EQ(Bytes(parent_), "0123456789");
}

TEST_P(ZepVariantDisconnectTest, OnlyViewsDisconnect) {
  ExpectNoView(parent_, "0123456789");
  const Object view = NewView(parent_, 1, 1);
  ExpectNoView(parent_, "0123456789");
  EXPECT_OK(view.Call(L"DisconnectAsRange"));
  EXPECT_BUFFER_ERROR(view.Call(L"DisconnectAsRange"), zepErrBadCallContext);
}

TEST_P(ZepVariantDisconnectTest, AParentDropsOneView) {
  const Object view = NewView(parent_, 3, 4), other = NewView(parent_, 1, 2);
  EXPECT_OK(parent_.Call(L"DisconnectRange", {view}));
  ExpectNoView(view, "2345");
  EXPECT_OK(Write(parent_, "ABCDEFGHIJ"));
  ExpectView(other, 1, "AB");
  EXPECT_EQ(Bytes(view), "2345");
}

TEST_P(ZepVariantDisconnectTest, AParentDropsItsOwnViewsOnly) {
  const Object view = NewView(parent_, 3, 4), inner = NewView(view, 1, 2), other = New("abc");
  foreign::ZepVariant foreign;
  const Value stranger(&foreign);
  for (const Value& none :
       {Value(other), Value(parent_), Value(inner), Value::Nothing(), stranger}) {
    EXPECT_BUFFER_ERROR(parent_.Call(L"DisconnectRange", {none}), zepErrBadCall);
  }
  EXPECT_BUFFER_ERROR(other.Call(L"DisconnectRange", {view}), zepErrBadCall);
  EXPECT_BUFFER_ERROR(view.Call(L"DisconnectRange", {view}), zepErrBadCall);
  ExpectView(view, 3, "2345");
  ExpectView(inner, 1, "23");
}

TEST_P(ZepVariantDisconnectTest, AParentDropsAllViews) {
  const Object first = NewView(parent_, 1, 3), second = NewView(parent_, 3, 6);
  const Object inner = NewView(second, 2, 2);
  Watch(first, "first"), Watch(second, "second"), Watch(parent_, "parent");
  EXPECT_OK(parent_.Call(L"DisconnectRanges"));
  EXPECT_EQ(Changes(), Names{});
  ExpectNoView(first, "012");
  ExpectNoView(second, "234567");
  ExpectView(inner, 2, "34");
  for (const Object& view : {first, second}) {
    EXPECT_BUFFER_ERROR(parent_.Call(L"DisconnectRange", {view}), zepErrBadCall);
  }
  EXPECT_OK(Write(parent_, "ABCDEFGHIJ"));
  EXPECT_EQ(Changes(), Names{"parent"});
  EXPECT_EQ(Bytes(first), "012");
  EXPECT_EQ(Bytes(second), "234567");
  EXPECT_OK(parent_.Call(L"DisconnectRanges"));
}

TEST_P(ZepVariantDisconnectTest, DisconnectingIsOpenToProtectedBuffers) {
  const Object view = NewView(parent_, 1, 3), other = NewView(parent_, 1, 3);
  for (const Object& buffer : {view, other, parent_}) EXPECT_OK(buffer.Let(L"ReadOnly", {true}));
  EXPECT_OK(view.Call(L"DisconnectAsRange"));
  EXPECT_OK(parent_.Call(L"DisconnectRanges"));
  ExpectNoView(view, "012");
  ExpectNoView(other, "012");
}

TEST_P(ZepVariantDisconnectTest, ViewsSurviveTheirParent) {
  const Object view = NewView(parent_, 3, 4), inner = NewView(view, 1, 2);
  parent_.Reset();
  ExpectNoView(view, "2345");
  ExpectView(inner, 1, "23");
  EXPECT_OK(Write(view, "abc"));
  ExpectView(inner, 1, "ab");
  EXPECT_OK(view.Call(L"ConnectAsRange", {New("xyz"), 1, 3}));
  ExpectNoView(view, "xyz");
}

TEST_P(ZepVariantDisconnectTest, AParentForgetsAReleasedView) {
  Object view = NewView(parent_, 3, 4);
  const Object other = NewView(parent_, 1, 2);
  view.Reset();
  EXPECT_OK(Write(parent_, "ABCDEFGHIJ"));
  ExpectView(other, 1, "AB");
  EXPECT_OK(parent_.Call(L"DisconnectRanges"));
}

RUN_IN_BOTH_BINDINGS(ZepVariantDisconnectTest);

}  // namespace

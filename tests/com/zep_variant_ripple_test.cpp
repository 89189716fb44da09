// Whom a change reaches, in which order.
#include "com/buffer_fixture.h"

namespace {

using namespace std::string_literals;
using client::Object;

class ZepVariantRippleTest : public WithParent {
 protected:
  ZepVariantRippleTest() {
    for (const auto& [name, buffer] : All()) Watch(buffer, name);
  }
  std::vector<std::pair<const char*, Object>> All() const {
    return {{"root", parent_}, {"aunt", aunt_},   {"middle", middle_},
            {"left", left_},   {"inner", inner_}, {"right", right_}};
  }

  const Object aunt_ = NewView(parent_, 1, 3);
  const Object middle_ = NewView(parent_, 2, 8);
  const Object left_ = NewView(middle_, 1, 4);
  const Object inner_ = NewView(left_, 2, 2);
  const Object right_ = NewView(middle_, 3, 6);
};

TEST_P(ZepVariantRippleTest, FromTheRootItRunsThroughTheViewsFirst) {
  EXPECT_OK(Write(parent_, "ABCDEFGHIJ"));
  EXPECT_EQ(Changes(), (Names{"aunt", "inner", "left", "right", "middle", "root"}));
  ExpectView(aunt_, 1, "ABC");
  ExpectView(middle_, 2, "BCDEFGHI");
  ExpectView(left_, 1, "BCDE");
  ExpectView(inner_, 2, "CD");
  ExpectView(right_, 3, "DEFGHI");
}

TEST_P(ZepVariantRippleTest, FromTheMiddleItRunsDownAndThenUp) {
  EXPECT_OK(Write(middle_, "abcdef"));
  EXPECT_EQ(Changes(), (Names{"inner", "left", "right", "aunt", "root", "middle"}));
  EXPECT_EQ(Bytes(parent_), "0abcdef9");
  ExpectView(aunt_, 1, "0ab");
  ExpectView(left_, 1, "abcd");
  ExpectView(inner_, 2, "bc");
  ExpectView(right_, 3, "cdef");
}

TEST_P(ZepVariantRippleTest, FromAnInnermostViewItReachesAllOthersOnce) {
  EXPECT_OK(Write(inner_, "xyz"));
  EXPECT_EQ(Changes(), (Names{"right", "aunt", "root", "middle", "left", "inner"}));
  EXPECT_EQ(Bytes(parent_),
            "01"
            "xyz"
            "456789");
  ExpectView(middle_, 2, "1xyz45678");
  ExpectView(left_, 1, "1xyz4");
  ExpectView(inner_, 2, "xyz");
  ExpectView(right_, 3, "yz4567");
  ExpectView(aunt_, 1, "01x");
}

TEST_P(ZepVariantRippleTest, HandlersSeeWhatTheRippleHasReached) {
  std::string root_seen_by_aunt, root_seen_by_inner;
  Watch(aunt_, "", [&] { root_seen_by_aunt = Bytes(parent_); });
  Watch(left_, "", [&] { root_seen_by_inner = Bytes(parent_); });
  EXPECT_OK(Write(right_, "!"));
  EXPECT_EQ(root_seen_by_inner, "0123456789") << "views come before the parent";
  EXPECT_EQ(root_seen_by_aunt, "012!9");
}

TEST_P(ZepVariantRippleTest, EqualContentRipplesAllTheSame) {
  EXPECT_OK(Write(right_, "345678"));
  EXPECT_EQ(Changes(), (Names{"inner", "left", "aunt", "root", "middle", "right"}));
  EXPECT_OK(parent_.Let(L"DataByte", {10, '9'}));
  EXPECT_EQ(Changes().size(), 6u) << "also outside of every view";
}

TEST_P(ZepVariantRippleTest, WhatIsRefusedRipplesNowhere) {
  EXPECT_BUFFER_ERROR(right_.Let(L"ByteLength", {-1}), zepErrBadPropValue);
  EXPECT_BUFFER_ERROR(right_.Let(L"DataByte", {0, 1}), zepErrUnexpected);
  EXPECT_BUFFER_ERROR(right_.Let(L"RangeBytes", {1, 7, ArrayOf("x")}), zepErrBadCall);
  EXPECT_OK(right_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_OK(right_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(Changes(), Names{});
}

RUN_IN_BOTH_BINDINGS(ZepVariantRippleTest);

}  // namespace

// Deep chains of views, loops of them, and rows of buffers that write each other.
#include "com/buffer_fixture.h"

namespace {

using namespace std::string_literals;
using client::Object;
using client::Outcome;

using ZepVariantDepthTest = WithBuffers;

TEST_P(ZepVariantDepthTest, ViewsOfViewsReachBothEndsAtAnyDepth) {
  for (const std::size_t depth : {1000u, 20000u}) {
    std::vector<Object> chain{New("0123")};
    while (chain.size() < depth) chain.push_back(NewView(chain.back(), 1, 4));
    Watch(chain.front(), "top"), Watch(chain[depth / 2], "middle"), Watch(chain.back(), "bottom");
    EXPECT_OK(Write(chain.front(), "abcd"));
    EXPECT_EQ(Changes(), (Names{"bottom", "middle", "top"}));
    EXPECT_EQ(Bytes(chain.back()), "abcd");
    EXPECT_OK(Write(chain.back(), "wxyz!"));
    EXPECT_EQ(Changes(), (Names{"top", "middle", "bottom"}));
    EXPECT_EQ(Bytes(chain.front()), "wxyz!");
    EXPECT_OK(Write(chain[depth / 2], "both"));
    EXPECT_EQ(Changes(), (Names{"bottom", "top", "middle"}));
    EXPECT_EQ(Bytes(chain.front()), "both");
    EXPECT_EQ(Bytes(chain.back()), "both");
    chain[depth / 3].Reset();
    ExpectNoView(chain[depth / 3 + 1], "both");
    chain.clear();
  }
}

TEST_P(ZepVariantDepthTest, AHandlerMayReleaseADeepChain) {
  std::vector<Object> chain{New("0123")};
  while (chain.size() < 20000) chain.push_back(NewView(chain.back(), 1, 4));
  const Object top = chain.front();
  Watch(chain.back(), "bottom", [&] { chain.clear(); });
  EXPECT_OK(Write(top, "abcd"));
  EXPECT_EQ(Changes(), Names{"bottom"});
  EXPECT_TRUE(chain.empty());
}

TEST_P(ZepVariantDepthTest, ABufferMayBeAViewOfItself) {
  const Object buffer = New("0123456789");
  EXPECT_OK(buffer.Call(L"ConnectAsRange", {buffer, 1, 10}));
  Watch(buffer, "buffer");
  EXPECT_OK(Write(buffer, "abc"));
  EXPECT_EQ(Changes(), Names{"buffer"});
  EXPECT_OK(buffer.Let(L"DataByte", {20, 1}));
  EXPECT_OK(buffer.Let(L"ByteLength", {0}));
  EXPECT_EQ(Changes(), (Names{"buffer", "buffer"}));
  EXPECT_OK(buffer.Call(L"DisconnectRange", {buffer}));
  EXPECT_EQ(buffer.Get(L"IsRange"), false);
}

TEST_P(ZepVariantDepthTest, ChangesInALoopEnd) {
  for (const std::size_t count : {2u, 3u, 50u}) {
    std::vector<Object> loop;
    for (std::size_t i = 0; i < count; ++i) loop.push_back(New("0123456789"));
    for (std::size_t i = 0; i < count; ++i) {
      const Object& next = loop[(i + 1) % count];
      EXPECT_OK(loop[i].Call(L"ConnectAsRange", {next, 1, 4}));
    }
    for (const Object& buffer : loop) Watch(buffer, "one");
    for (const Object& buffer : loop) {
      for (const std::string& bytes : {"ab"s, "abcdefgh"s, ""s}) {
        EXPECT_OK(Write(buffer, bytes));
        EXPECT_EQ(Changes(), Names(2 * count - 1, "one")) << "the others from both sides";
      }
    }
    EXPECT_OK(loop[0].Call(L"DisconnectRanges"));
    EXPECT_EQ(loop[count - 1].Get(L"IsRange"), false);
  }
}

/// A row of buffers, each of which writes the next one when it changes.
class ZepVariantRowTest : public WithBuffers {
 protected:
  static constexpr std::size_t kMost = 64;

  explicit ZepVariantRowTest(std::size_t count = kMost + 1) {
    for (std::size_t i = 0; i < count; ++i) row_.push_back(New("old"));
    for (std::size_t i = 0; i + 1 < count; ++i) {
      Watch(row_[i], "", [this, i] { outcomes_.push_back(Write(row_[i + 1], "new")); });
    }
  }

  std::vector<Object> row_;
  std::vector<Outcome> outcomes_;  // of the handlers' writes, the innermost first
};

TEST_P(ZepVariantRowTest, SixtyFourRipplesMayRunWithinEachOther) {
  EXPECT_OK(Write(row_[1], "new"));
  ASSERT_EQ(kMost - 1, outcomes_.size());
  for (const Outcome& outcome : outcomes_) EXPECT_OK(outcome);
  EXPECT_EQ(Bytes(row_.back()), "new");
}

TEST_P(ZepVariantRowTest, OneMoreRunsOutOfStackSpace) {
  for (int round = 0; round < 2; ++round) {
    outcomes_.clear();
    EXPECT_OK(Write(row_[0], "new"));
    ASSERT_EQ(kMost, outcomes_.size());
    EXPECT_BUFFER_RUNTIME_ERROR(outcomes_[0], 28, L"Out of stack space");
    for (std::size_t i = 1; i < outcomes_.size(); ++i) EXPECT_OK(outcomes_[i]);
  }
  EXPECT_OK(Write(row_.back(), "free again"));
  EXPECT_EQ(Bytes(row_.back()), "free again");
}

TEST_P(ZepVariantRowTest, TwoBuffersThatWriteEachOtherEnd) {
  const Object ping = New(), pong = New();
  Watch(ping, "ping", [&] { EXPECT_OK(pong.Let(L"DataByte", {1, 1})); });
  Watch(pong, "pong", [&] { EXPECT_OK(ping.Let(L"DataByte", {1, 2})); });
  EXPECT_OK(Write(ping, "x"));
  EXPECT_EQ(Changes(), (Names{"ping", "pong"}));
}

RUN_IN_BOTH_BINDINGS(ZepVariantDepthTest);
RUN_IN_BOTH_BINDINGS(ZepVariantRowTest);

}  // namespace

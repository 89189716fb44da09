// Handlers that act while a change ripples, deep chains of views and loops of them.
#include <memory>

#include "com/buffer_fixture.h"
#include "frame/shared_library_object.h"

namespace {

using namespace std::string_literals;
using client::Event;
using client::Object;
using client::Outcome;
using client::Sink;
using client::Value;

/// A parent, two views of it and a view of the first; `all_` has them in this order.
class ZepVariantReentryTest : public WithBuffers {
 protected:
  ZepVariantReentryTest() { Rebuild(); }

  void Rebuild() {
    Object parent = New("0123456789");
    Object view = NewView(parent, 2, 6);
    all_ = {parent, view, NewView(view, 2, 3), NewView(parent, 5, 5)};
  }

  std::vector<Object> all_;
};

TEST_P(ZepVariantReentryTest, AnyBufferMayBeReleasedInAnyHandler) {
  for (std::size_t written = 0; written < 4; ++written) {
    for (std::size_t hearing = 0; hearing < 4; ++hearing) {
      for (unsigned released = 0; released < 16; ++released) {
        SCOPED_TRACE(testing::Message() << written << " " << hearing << " " << released);
        Rebuild();
        Watch(all_[hearing], "", [&] {
          for (std::size_t i = 0; i < 4; ++i) {
            if (released & 1u << i) all_[i].Reset();
          }
        });
        const Object writer = all_[written];
        EXPECT_OK(Write(writer, "abcdef"));
        EXPECT_EQ(Bytes(writer).substr(0, 6), "abcdef");
        for (const Object& left : all_) {
          if (left) EXPECT_OK(Write(left, "xyz"));
        }
      }
    }
  }
}

TEST_P(ZepVariantReentryTest, TheWrittenBufferMayGoInItsOwnHandler) {
  Watch(all_[1], "view", [&] {
    all_[1].Reset();
    all_[0].Reset();
  });
  EXPECT_OK(Write(all_[1], "abc"));
  EXPECT_EQ(Changes(), Names{"view"});
  ExpectNoView(all_[2], "bc");
  ExpectNoView(all_[3], "789");
}

TEST_P(ZepVariantReentryTest, AllOrdersOfRelease) {
  std::vector<std::size_t> order{0, 1, 2, 3};
  do {
    Rebuild();
    for (const std::size_t index : order) {
      for (const Object& buffer : all_) {
        if (buffer) EXPECT_OK(Write(buffer, "abcdefghij"));
      }
      all_[index].Reset();
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_P(ZepVariantReentryTest, HandlersMayDisconnectWhatHasNotBeenTold) {
  Watch(all_[1], "first", [&] { EXPECT_OK(all_[0].Call(L"DisconnectRanges")); });
  Watch(all_[3], "second"), Watch(all_[0], "parent");
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  EXPECT_EQ(Changes(), (Names{"first", "parent"}));
  ExpectNoView(all_[1], "BCDEFG");
  ExpectNoView(all_[3], "45678");
  ExpectView(all_[2], 2, "CDE");
}

TEST_P(ZepVariantReentryTest, AViewMayLeaveItsParentBeforeTheParentIsTold) {
  Watch(all_[2], "inner", [&] { EXPECT_OK(all_[1].Call(L"DisconnectAsRange")); });
  Watch(all_[1], "view"), Watch(all_[0], "parent");
  EXPECT_OK(Write(all_[1], "abc"));
  EXPECT_EQ(Changes(), (Names{"inner", "view"}));
  EXPECT_EQ(Bytes(all_[0]), "0123456789");
  ExpectNoView(all_[1], "abc");
}

TEST_P(ZepVariantReentryTest, AViewThatIsConnectedMeanwhileHasTheNewBytes) {
  const Object late = New();
  Watch(all_[1], "first", [&] {
    if (late.Get(L"IsRange") == false) {
      EXPECT_OK(late.Call(L"ConnectAsRange", {all_[0], 1, 2}));
    }
  });
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  ExpectView(late, 1, "AB");
  EXPECT_OK(late.Let(L"DataString", {L"late"}));
  EXPECT_EQ(Bytes(all_[0]), "lateCDEFGHIJ");
}

TEST_P(ZepVariantReentryTest, AViewMayMoveToAnotherParentWhileItHears) {
  const Object other = New("other");
  Watch(all_[1], "view", [&] {
    if (all_[1].Call(L"DisconnectAsRange").ok()) {
      EXPECT_OK(all_[1].Call(L"ConnectAsRange", {other, 1, 2}));
    }
  });
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  EXPECT_EQ(Bytes(all_[0]), "ABCDEFGHIJ");
  EXPECT_EQ(Bytes(all_[1]), "ot");
  EXPECT_EQ(Bytes(other), "other");
}

TEST_P(ZepVariantReentryTest, ABufferDoesNotAnnounceWhileItAnnounces) {
  Watch(all_[0], "parent", [&] {
    if (Bytes(all_[0]) != "again") EXPECT_OK(Write(all_[0], "again"));
  });
  Watch(all_[1], "view");
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  EXPECT_EQ(Changes(), (Names{"view", "parent"}));
  EXPECT_EQ(Bytes(all_[0]), "again");
  ExpectView(all_[1], 2, "BCDEFG");
  EXPECT_OK(all_[0].Let(L"DataByte", {1, 'A'}));
  EXPECT_EQ(Changes(), (Names{"view", "parent"}));
  EXPECT_EQ(Bytes(all_[0]), "again") << "the handler again";
}

TEST_P(ZepVariantReentryTest, ViewsToldLaterSeeWhatAHandlerWrote) {
  Watch(all_[1], "first", [&] { EXPECT_OK(all_[0].Let(L"DataByte", {5, '!'})); });
  Watch(all_[3], "second"), Watch(all_[0], "parent");
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  EXPECT_EQ(Changes(), (Names{"first", "second", "parent"}));
  EXPECT_EQ(Bytes(all_[0]), "ABCD!FGHIJ");
  ExpectView(all_[3], 5, "!FGHI");
}

TEST_P(ZepVariantReentryTest, AHandlerMayWriteItsSiblings) {
  Watch(all_[1], "first", [&] { EXPECT_OK(Write(all_[3], "xyz")); });
  Watch(all_[3], "second"), Watch(all_[0], "parent");
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  EXPECT_EQ(Changes(), (Names{"first", "second", "second", "parent"}));
  EXPECT_EQ(Bytes(all_[0]), "ABCDxyzJ");
  ExpectView(all_[3], 5, "xyz");
}

TEST_P(ZepVariantReentryTest, AHandlerMayShortenTheParentOfTheWrittenView) {
  Watch(all_[2], "inner", [&] { EXPECT_OK(all_[0].Let(L"ByteLength", {1})); });
  EXPECT_OK(Write(all_[1], "abcdef"));
  const std::string parent = Bytes(all_[0]), view = Bytes(all_[1]);
  EXPECT_NE(std::string::npos, parent.find(view)) << parent << " " << view;
}

TEST_P(ZepVariantReentryTest, AHandlerMayReplaceTheContentOfAllOthers) {
  for (std::size_t hearing = 0; hearing < 4; ++hearing) {
    for (std::size_t written = 0; written < 4; ++written) {
      for (const std::string& bytes : {""s, "a"s, "abcdefghijklmno"s}) {
        SCOPED_TRACE(testing::Message() << hearing << " " << written << " " << bytes);
        Rebuild();
        Watch(all_[hearing], "", [&] {
          for (const Object& buffer : all_) EXPECT_OK(Write(buffer, bytes));
        });
        EXPECT_OK(Write(all_[written], "ABCD"));
      }
    }
  }
}

TEST_P(ZepVariantReentryTest, ViewsMayBeReleasedWhileTheyConnect) {
  const Object parent = New("0123456789");
  Object view = New();
  Watch(view, "view", [&] { view.Reset(); });
  EXPECT_OK(view.Call(L"ConnectAsRange", {parent, 1, 3}));
  EXPECT_FALSE(view);
  EXPECT_OK(Write(parent, "abc"));
}

TEST_P(ZepVariantReentryTest, ParentsMayBeReleasedWhileTheirViewsConnect) {
  Object parent = New("0123456789");
  const Object view = New();
  Watch(view, "view", [&] { parent.Reset(); });
  EXPECT_OK(view.Call(L"ConnectAsRange", {Value(parent), 1, 3}));
  EXPECT_EQ(Bytes(view), "012");
  EXPECT_OK(Write(view, "abc"));
}

TEST_P(ZepVariantReentryTest, ABufferIsNoViewYetWhileItConnects) {
  const Object parent = New("0123456789"), view = New();
  bool was_view = true;
  Watch(view, "view", [&] {
    was_view = view.Get(L"IsRange") == true;
    EXPECT_OK(parent.Call(L"DisconnectRanges"));
  });
  EXPECT_OK(view.Call(L"ConnectAsRange", {parent, 1, 3}));
  EXPECT_FALSE(was_view);
}

TEST_P(ZepVariantReentryTest, ProtectionMayChangeWhileAChangeRipples) {
  Watch(all_[1], "", [&] { EXPECT_OK(all_[0].Let(L"ReadOnly", {true})); });
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  ExpectView(all_[3], 5, "EFGHI");
  EXPECT_BUFFER_ERROR(Write(all_[0], ""), zepErrReadOnly);
}

TEST_P(ZepVariantReentryTest, ABufferMayGoWhileItAsksWhetherItIsProtected) {
  for (const bool cancels : {false, true}) {
    Object buffer = New("abc");
    const Sink* sink = Listen(buffer, [&](const Event& event) {
      if (event.id == kBeforeROChange) {
        buffer.Reset();
        if (cancels) *event.arguments[1].raw().pboolVal = VARIANT_TRUE;
      }
      return S_OK;
    });
    const Outcome outcome = buffer.Let(L"ReadOnly", {true});
    EXPECT_EQ(outcome.ok(), !cancels);
    if (cancels) EXPECT_BUFFER_ERROR(outcome, zepErrCallRefused);
    EXPECT_EQ(sink->events().size(), cancels ? 1u : 2u);
  }
}

TEST_P(ZepVariantReentryTest, ViewsOfViewsReachBothEndsAtAnyDepth) {
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

TEST_P(ZepVariantReentryTest, AHandlerMayReleaseADeepChain) {
  std::vector<Object> chain{New("0123")};
  while (chain.size() < 20000) chain.push_back(NewView(chain.back(), 1, 4));
  const Object top = chain.front();
  Watch(chain.back(), "bottom", [&] { chain.clear(); });
  EXPECT_OK(Write(top, "abcd"));
  EXPECT_EQ(Changes(), Names{"bottom"});
  EXPECT_TRUE(chain.empty());
}

TEST_P(ZepVariantReentryTest, ABufferMayBeAViewOfItself) {
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

TEST_P(ZepVariantReentryTest, ChangesInALoopEnd) {
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

TEST_P(ZepVariantReentryTest, NothingStaysInTheQueue) {
  if (!component::IsLinked()) GTEST_SKIP() << "looks into the component";
  const std::weak_ptr<zepkit10::BufferQueue> queue = zepkit10::GetBufferQueue();
  EXPECT_EQ(queue.lock(), zepkit10::GetBufferQueue()) << "one for all buffers";
  for (const Object& buffer : all_) EXPECT_OK(Write(buffer, "abcdefghij"));
  EXPECT_OK(all_[2].Call(L"DisconnectAsRange"));
  EXPECT_OK(all_[0].Call(L"DisconnectRanges"));
  Watch(all_[0], "", [&] { all_.clear(); });
  Object parent = all_[0];
  EXPECT_OK(Write(parent, "x"));
  EXPECT_FALSE(queue.expired());
  parent.Reset();
  EXPECT_TRUE(queue.expired()) << "a posting would keep its sender, and that the queue";
}

RUN_IN_BOTH_BINDINGS(ZepVariantReentryTest);
RUN_IN_BOTH_BINDINGS(ZepVariantRowTest);

}  // namespace

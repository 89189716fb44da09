// Handlers that act while a change ripples.
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

TEST_P(ZepVariantReentryTest, AllMayBeReleasedWhileARangeIsAssigned) {
  for (std::size_t hearing = 0; hearing < 4; ++hearing) {
    for (const bool sets : {false, true}) {
      SCOPED_TRACE(testing::Message() << hearing << " " << sets);
      Rebuild();
      Object source = New("new");
      const Object written = all_[0];
      Watch(all_[hearing], "heard", [&] {
        all_.clear();
        source.Reset();
      });
      EXPECT_OK(sets ? written.Set(L"Range", {2, 4, true, source})
                     : written.Let(L"Range", {2, 4, true, source}));
      EXPECT_EQ(Bytes(written), "0new56789");
      EXPECT_EQ(Changes(), Names{"heard"});
    }
  }
}

TEST_P(ZepVariantReentryTest, AHandlerMayAssignARange) {
  const Object source = New("!");
  Watch(all_[0], "parent", [&] {
    EXPECT_OK(all_[0].Set(L"Range", {1, 2, true, source}));
    EXPECT_OK(all_[0].Let(L"Range", {9, 1, true, source}));
  });
  Watch(all_[1], "view");
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  EXPECT_EQ(Bytes(all_[0]), "!CDEFGHI!");
  EXPECT_EQ(Changes(), (Names{"view", "parent"}));
  ExpectView(all_[1], 2, "BCDEFG");
}

TEST_P(ZepVariantReentryTest, AHandlerMayMakeAndDropViews) {
  Watch(all_[1], "", [&] {
    const Object late = all_[0].GetObject(L"Range", {1, 3});
    EXPECT_OK(late.Let(L"DataString", {L"late"}));
    EXPECT_OK(all_[0].Call(L"DisconnectRange", {late}));
  });
  EXPECT_OK(Write(all_[0], "ABCDEFGHIJ"));
  EXPECT_EQ(Bytes(all_[0]), "lateDEFGHIJ");
  ExpectView(all_[3], 5, "DEFGH");
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

}  // namespace

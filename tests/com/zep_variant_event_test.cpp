// What a buffer raises: Change for each write, and the events of its protection.
#include "com/buffer_fixture.h"

namespace {

using client::Event;
using client::Object;
using client::Outcome;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

class ZepVariantEventTest : public WithBuffers {
 protected:
  /// Every way to write the whole content or a part of it, with arguments that fit three bytes.
  std::vector<std::pair<const char*, std::function<Outcome()>>> Writes() const {
    return {
        {"ByteLength", [&] { return buffer_.Let(L"ByteLength", {3}); }},
        {"DataByte",
         [&] {
           return buffer_.Let(L"DataByte", {1, 97});
         }},
        {"DataBytes", [&] { return Write(buffer_, "abc"); }},
        {"DataString", [&] { return buffer_.Let(L"DataString", {L"abc"}); }},
        {"StringLength", [&] { return buffer_.Let(L"StringLength", {3}); }},
        {"let Range",
         [&] {
           return buffer_.Let(L"Range", {1, 3, true, source_});
         }},
        {"set Range",
         [&] {
           return buffer_.Set(L"Range", {1, 3, true, source_});
         }},
        {"RangeBytes",
         [&] {
           return buffer_.Let(L"RangeBytes", {1, 3, ArrayOf("abc")});
         }},
        {"RangeString",
         [&] {
           return buffer_.Let(L"RangeString", {1, 3, L"abc"});
         }},
    };
  }

  const Object buffer_ = New();
  const Object source_ = New("abc");
};

TEST_P(ZepVariantEventTest, EveryWriteRaisesOneChange) {
  EXPECT_OK(Write(buffer_, "abc"));
  for (const auto& [name, write] : Writes()) {
    SCOPED_TRACE(name);
    const ComPtr<Sink> sink = Sink::Connect(buffer_.get(), DIID___ZepVariant);
    EXPECT_OK(write());
    EXPECT_EQ(Bytes(buffer_), "abc") << "equal to the old";
    EXPECT_EQ(sink->events(), (std::vector<Event>{{kChange, {}}}));
    EXPECT_OK(write());
    EXPECT_EQ(2u, sink->events().size());
    sink->Disconnect();
  }
}

TEST_P(ZepVariantEventTest, WritesThatEmptyOrKeepRaiseOneChangeToo) {
  const Sink* sink = Listen(buffer_);
  std::size_t count = 0;
  for (const wchar_t* length : {L"ByteLength", L"StringLength"}) {
    EXPECT_OK(buffer_.Let(length, {0}));
    EXPECT_EQ(++count, sink->events().size());
  }
  EXPECT_OK(buffer_.Let(L"DataString", {L""}));
  EXPECT_OK(buffer_.Let(L"DataBytes", {Unallocated()}));
  EXPECT_OK(buffer_.Let(L"DataString", {L"abcdef"}));
  EXPECT_OK(buffer_.Let(L"StringLength", {2}));
  EXPECT_EQ(count + 4, sink->events().size());
  EXPECT_OK(buffer_.Let(L"DataByte", {9, 1}));
  EXPECT_OK(buffer_.Let(L"ByteLength", {100}));
  EXPECT_OK(buffer_.Let(L"ByteLength", {1}));
  EXPECT_EQ(count + 7, sink->events().size());
}

TEST_P(ZepVariantEventTest, ReadingRaisesNothing) {
  const Sink* sink = Listen(source_);
  for (const wchar_t* name :
       {L"ByteLength", L"DataBytes", L"DataString", L"IsRange", L"RangeLength", L"RangeStart",
        L"ReadOnly", L"StringLength", L"StringType"}) {
    EXPECT_OK(source_.Get(name));
  }
  EXPECT_OK(source_.Get(L"DataByte", {1}));
  EXPECT_OK(source_.Get(L"Range", {1, 1}));
  EXPECT_OK(source_.Get(L"RangeBytes", {1, 1}));
  EXPECT_OK(source_.Get(L"RangeString", {1, 1}));
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantEventTest, ChangeComesWhenTheContentIsNew) {
  std::string heard;
  Watch(buffer_, "buffer", [&] { heard = Bytes(buffer_); });
  EXPECT_OK(Write(buffer_, "new"));
  EXPECT_EQ(heard, "new");
}

TEST_P(ZepVariantEventTest, AFailingHandlerDoesNotFailTheWrite) {
  const Sink* sink = Listen(buffer_, [](const Event&) { return E_FAIL; });
  EXPECT_OK(Write(buffer_, "new"));
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(Bytes(buffer_), "new");
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), true);
  EXPECT_EQ(3u, sink->events().size());
}

TEST_P(ZepVariantEventTest, AReadOnlyBufferIsNotWritten) {
  EXPECT_OK(Write(buffer_, "xyz"));
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  const Sink* sink = Listen(buffer_);
  for (const auto& [name, write] : Writes()) {
    SCOPED_TRACE(name);
    EXPECT_BUFFER_ERROR(write(), zepErrReadOnly);
  }
  EXPECT_TRUE(sink->events().empty());
  EXPECT_EQ(Bytes(buffer_), "xyz");
  EXPECT_OK(buffer_.Let(L"ReadOnly", {false}));
  for (const auto& [name, write] : Writes()) EXPECT_OK(write());
  EXPECT_EQ(Bytes(buffer_), "abc");
}

TEST_P(ZepVariantEventTest, ReadOnlyIsRefusedBeforeAnythingElse) {
  EXPECT_OK(source_.Let(L"ReadOnly", {true}));
  EXPECT_BUFFER_ERROR(source_.Let(L"ByteLength", {-1}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"StringLength", {-1}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"DataByte", {0, 1}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"RangeBytes", {9, 9, Unallocated()}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"RangeString", {9, 9, L""}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"Range", {9, 9, true, Value::Nothing()}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Set(L"Range", {9, 9, true, Value::Nothing()}), zepErrReadOnly);
}

/// Hears the protection change; the handler may set the flag that cancels.
struct Protection {
  bool new_value;
  bool old_value;  // of the property while heard
  bool cancel;
  friend bool operator==(const Protection&, const Protection&) = default;
};

TEST_P(ZepVariantEventTest, ReadOnlyAsksAndTells) {
  std::vector<Protection> asked;
  const Sink* sink = Listen(buffer_, [&](const Event& event) {
    const bool is_on = buffer_.Get(L"ReadOnly") == true;
    const bool wanted = event.arguments[0] == Value(true);
    EXPECT_EQ(VT_BOOL, event.arguments[0].type());
    if (event.id == kBeforeROChange) {
      EXPECT_EQ(VT_BYREF | VT_BOOL, event.arguments[1].type());
      asked.push_back({wanted, is_on, *event.arguments[1].raw().pboolVal != VARIANT_FALSE});
    } else {
      EXPECT_EQ(kROChanged, event.id);
      EXPECT_EQ(wanted, is_on);
    }
    return S_OK;
  });
  const auto ids = [&] {
    std::vector<DISPID> all;
    for (const Event& event : sink->events()) all.push_back(event.id);
    return all;
  };
  EXPECT_OK(buffer_.Let(L"ReadOnly", {false}));
  EXPECT_EQ(ids(), (std::vector<DISPID>{})) << "the current value";
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(ids(), (std::vector<DISPID>{kBeforeROChange, kROChanged}));
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(2u, sink->events().size()) << "the current value";
  EXPECT_OK(buffer_.Let(L"ReadOnly", {false}));
  EXPECT_EQ(ids(), (std::vector<DISPID>{kBeforeROChange, kROChanged, kBeforeROChange, kROChanged}));
  EXPECT_EQ(asked, (std::vector<Protection>{{true, false, false}, {false, true, false}}));
}

TEST_P(ZepVariantEventTest, AHandlerMayCancelTheProtection) {
  bool cancels = true;
  const Sink* sink = Listen(buffer_, [&](const Event& event) {
    if (event.id == kBeforeROChange && cancels) {
      *event.arguments[1].raw().pboolVal = VARIANT_TRUE;
    }
    return S_OK;
  });
  EXPECT_BUFFER_ERROR(buffer_.Let(L"ReadOnly", {true}), zepErrCallRefused);
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), false);
  EXPECT_EQ(1u, sink->events().size());
  EXPECT_OK(Write(buffer_, "abc"));
  cancels = false;
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  cancels = true;
  EXPECT_BUFFER_ERROR(buffer_.Let(L"ReadOnly", {false}), zepErrCallRefused);
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), true);
  EXPECT_EQ(5u, sink->events().size());
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(5u, sink->events().size());
}

TEST_P(ZepVariantEventTest, AHandlerThatAsksAgainWithoutEndRunsOutOfStackSpace) {
  client::Outcome innermost;
  Listen(buffer_, [&](const Event& event) {
    if (event.id != kBeforeROChange || !innermost.ok()) return S_OK;
    const client::Outcome outcome = buffer_.Let(L"ReadOnly", {true});
    if (!outcome.ok()) innermost = outcome;
    return S_OK;
  });
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_BUFFER_RUNTIME_ERROR(innermost, 28, L"Out of stack space");
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), true);
}

RUN_IN_BOTH_BINDINGS(ZepVariantEventTest);

}  // namespace

// DocHand: handlers of its events that do whatever they like, one thing at a time.
#include "com/doc_hand_fixture.h"
#include "com/left_open_files.h"

namespace {

/// Does one thing in one event of a document's life.
class DocHandMonkeyTest : public WithDocument {
 protected:
  static constexpr int kSize = 1025;

  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "files left open stay so until a DLL goes";
    folder_.File(L"b.txt", "other");
  }

  /// Whatever the steps end with, they end. A handler that releases the document releases the last
  /// reference to it.
  void Live() const {
    folder_.File(L"a.txt", Pattern(kSize));
    const std::vector<std::function<void()>> steps = {
        [&] { Open(path_, true); },
        [&] { Close(); },
        [&] { Open(path_); },
        [&] { Put("edited"); },
        [&] { Save(); },
        [&] { SaveAs(folder_ / L"c.txt"); },
        [&] { Open(folder_ / L"missing", true); },
        [&] { document_.Call(L"NewFile"); },
    };
    for (const auto& step : steps) {
      if (document_) step();
    }
  }

  /// The number of events heard, in one of which the action was done.
  int LiveWith(const std::function<void()>& action, int chosen) {
    const LeftOpenFiles files;
    document_ = Create(CLSID_DocHand);
    int count = 0;
    bool acting = false;
    Listen([&](const Event&) {
      if (acting || ++count != chosen) return S_OK;
      acting = true;
      action();
      acting = false;
      return S_OK;
    });
    Live();
    acting = true;
    if (document_) ExpectUsable();
    document_.Reset();
    sink_.Reset();
    return count;
  }

  void ExpectUsable() const {
    EXPECT_EQ(document_.Get(L"Opened"), (Status().value.raw().lVal & kOpen) != 0);
    EXPECT_OK(document_.Call(L"NewFile"));
    EXPECT_OK(SaveAs(folder_ / L"d.txt"));
    EXPECT_OK(Put(Pattern(100)));
    EXPECT_OK(Save());
    EXPECT_EQ(folder_.Read(L"d.txt"), Pattern(100));
    EXPECT_OK(Close());
    EXPECT_EQ(Status().value.raw().lVal & (kOpen | kReadOnly), 0);
  }
};

TEST_P(DocHandMonkeyTest, HandlersMayDoAnythingInAnyEvent) {
  const std::vector<std::pair<const char*, std::function<void()>>> actions = {
      {"close", [&] { Close(); }},
      {"update", [&] { Update(); }},
      {"save", [&] { Save(); }},
      {"new", [&] { document_.Call(L"NewFile"); }},
      {"open for reading", [&] { Open(folder_ / L"b.txt", true); }},
      {"fail to open", [&] { Open(folder_ / L"missing", true); }},
      {"save as", [&] { SaveAs(folder_ / L"e.txt"); }},
      {"edit", [&] { Put("x"); }},
      {"protect", [&] { Content().Let(L"ReadOnly", {true}); }},
      {"replace", [&] { document_.Set(L"Content", {Create(CLSID_ZepVariant)}); }},
      {"stop listening", [&] { sink_->Disconnect(); }},
      {"release", [&] { document_.Reset(); }},
  };
  const int count = LiveWith({}, 0);
  EXPECT_EQ(52, count);
  for (const auto& [name, action] : actions) {
    SCOPED_TRACE(name);
    for (int chosen = 1; chosen <= count; ++chosen) {
      SCOPED_TRACE(chosen);
      LiveWith(action, chosen);
    }
  }
}

// The bindings make no difference here, but the test takes its time.
INSTANTIATE_TEST_SUITE_P(Binding, DocHandMonkeyTest, testing::Values(client::Binding::kDispatch),
                         testing::PrintToStringParamName());

}  // namespace

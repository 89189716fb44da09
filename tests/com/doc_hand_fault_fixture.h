#pragma once

#include "com/doc_hand_fixture.h"
#include "com/failing_calls.h"

/// A document and a file of 3000 bytes, some operations on which fail.
class WithFaults : public WithDocument {
 protected:
  static constexpr int kLength = 3000;

  WithFaults() : before_(SetCursor(cross_)) {}
  ~WithFaults() override { SetCursor(before_); }

  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "nothing can be hooked in a DLL";
    folder_.File(L"a.txt", Pattern(kLength));
  }

  /// Runs an operation with some calls of a function failing.
  template <class Hook, class Operation>
  client::Outcome With(typename Hook::Function replacement, std::vector<int> calls_failing,
                       DWORD system_error, Operation operation) {
    FailingCalls::Begin(std::move(calls_failing), system_error);
    const Hook hook(replacement);
    return operation();
  }

  /// The reports of a transfer of `kLength` bytes that ends before a position.
  static Events ReportsBefore(int position, Event (*report)(int, int, float)) {
    Events all{report(kLength, 0, 0)};
    if (position > 1024) all.push_back(report(kLength, 1024, 34.1333333f));
    if (position > 2048) all.push_back(report(kLength, 2048, 68.2666667f));
    return all;
  }

  void ExpectPointerRestored() const { EXPECT_EQ(cross_, GetCursor()); }
  /// Whether edits of the content still make the document changed.
  void ExpectDeaf(bool deaf) {
    EXPECT_OK(document_.Let(L"Changed", {false}));
    Listen();
    EXPECT_OK(Put("edited"));
    EXPECT_EQ(deaf ? Events{} : (Events{StatusChange(18), ContentChange()}), Heard());
    EXPECT_EQ(document_.Get(L"Changed"), !deaf);
  }

  const HCURSOR cross_ = LoadCursorW(nullptr, IDC_CROSS);
  const HCURSOR before_;
};

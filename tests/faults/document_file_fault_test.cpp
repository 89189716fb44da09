// Documents whose files fail: every single operation of an opening, a reading and a saving fails
// once, and with all behind it, in every way.
#include "com/doc_hand_fixture.h"
#include "com/fault_plan.h"
#include "faults/file_faults.h"

namespace {

using client::Outcome;
using faults::FileFault;
using faults::FileHooks;

class DocumentFileFaultTest : public WithDocument {
 protected:
  static constexpr char kOnDisk[] = "disk", kOther[] = "else", kInMemory[] = "memory";

  /// A document with a file and a content that was edited.
  void Prepare() {
    folder_.File(L"a.txt", kOnDisk);
    folder_.File(L"b.txt", kOther);
    document_ = Create(CLSID_DocHand);
    EXPECT_OK(Open(path_));
    EXPECT_OK(Put(kInMemory));
    EXPECT_EQ(document_.Get(L"Changed"), true);
  }

  /// Performs a call on a prepared document with every operation failing in turn.
  template <class Call, class Check>
  void ForEachFault(Call&& call, Check&& check) {
    faults::ForEachFileFault([&](const FileFault& fault, int number, faults::Lasting lasting) {
      const FileHooks hooks(fault);
      Prepare();
      FileHooks::CountReadings();
      faults::Begin(faults::Kind::kFile, number, lasting);
      const Outcome outcome = call();
      const int failed = faults::End();
      EXPECT_TRUE(failed > 0 || outcome.ok()) << outcome;
      ExpectKnownError(outcome, fault);
      check(outcome);
      Close();
      document_.Reset();
      EXPECT_EQ(0u, FileHooks::OpenHandles());
      FileHooks::CloseHandles();
      return failed > 0;
    });
  }

  static void ExpectKnownError(const Outcome& outcome, const FileFault& fault) {
    if (outcome.ok()) return;
    EXPECT_EQ(L"Zepkit10.DocHand", outcome.source);
    EXPECT_TRUE(outcome.number == zepErrOpenFile || outcome.number == faults::NumberOf(fault))
        << outcome;
  }

  /// After a saving into a file: the content is in one of both places at least, and another saving
  /// brings it into the file.
  void ExpectSavedOrChanged(const Outcome& outcome, const wchar_t* name) {
    EXPECT_EQ(kInMemory, Bytes());
    EXPECT_EQ(document_.Get(L"Changed"), !outcome.ok());
    EXPECT_TRUE(!outcome.ok() || folder_.Read(name) == kInMemory);
    const bool open = document_.Get(L"Opened") == true;
    EXPECT_OK(open ? Save() : SaveAs(folder_ / name));
    EXPECT_EQ(kInMemory, folder_.Read(name));
    EXPECT_EQ(kInMemory, Bytes());
    EXPECT_EQ(document_.Get(L"Changed"), false);
  }

  /// After a reading from a file: the content is as before or the file's.
  void ExpectReadOrKept(const Outcome& outcome, std::string expected) {
    for (const int position : FileHooks::EmptyReadings()) {
      expected[static_cast<std::size_t>(position)] = '\0';  // as behind the end of a file
    }
    EXPECT_EQ(outcome.ok() ? expected : kInMemory, Bytes());
    EXPECT_EQ(document_.Get(L"Changed"), !outcome.ok());
  }
};

TEST_P(DocumentFileFaultTest, ASavingLosesNothing) {
  ForEachFault([&] { return Save(); },
               [&](const Outcome& outcome) {
                 EXPECT_NE(zepErrOpenFile, outcome.number);
                 ExpectSavedOrChanged(outcome, L"a.txt");
               });
}

TEST_P(DocumentFileFaultTest, ASavingUnderANewNameLosesNothing) {
  ForEachFault(
      [&] {
        folder_.Remove(L"b.txt");
        return SaveAs(folder_ / L"b.txt");
      },
      [&](const Outcome& outcome) {
        EXPECT_EQ(kOnDisk, folder_.Read(L"a.txt"));
        EXPECT_EQ(document_.Get(L"OpenErr"), outcome.number == zepErrOpenFile);
        ExpectSavedOrChanged(outcome, L"b.txt");
      });
}

TEST_P(DocumentFileFaultTest, ASavingUnderItsOwnNameLosesNothing) {
  ForEachFault([&] { return SaveAs(path_); },
               [&](const Outcome& outcome) { ExpectSavedOrChanged(outcome, L"a.txt"); });
}

TEST_P(DocumentFileFaultTest, AnOpeningKeepsTheContentUntilItHasTheFiles) {
  for (const bool read_only : {false, true}) {
    ForEachFault([&] { return Open(folder_ / L"b.txt", read_only); },
                 [&](const Outcome& outcome) {
                   EXPECT_EQ(document_.Get(L"OpenErr"), outcome.number == zepErrOpenFile);
                   ExpectReadOrKept(outcome, kOther);
                   EXPECT_OK(Open(folder_ / L"b.txt", read_only));
                   EXPECT_EQ(kOther, Bytes());
                   EXPECT_EQ(kOnDisk, folder_.Read(L"a.txt"));
                   EXPECT_EQ(kOther, folder_.Read(L"b.txt"));
                 });
  }
}

TEST_P(DocumentFileFaultTest, AnOpeningOnceMoreKeepsTheContentUntilItHasTheFiles) {
  ForEachFault(
      [&] {
        const Outcome closed = Close();
        return closed.ok() ? Open(path_) : closed;
      },
      [&](const Outcome& outcome) {
        ExpectReadOrKept(outcome, kOnDisk);
        EXPECT_OK(Open(path_));
        EXPECT_EQ(kOnDisk, Bytes());
        EXPECT_EQ(kOnDisk, folder_.Read(L"a.txt"));
      });
}

TEST_P(DocumentFileFaultTest, AReadingOnceMoreKeepsTheContentUntilItHasTheFiles) {
  ForEachFault([&] { return Update(); },
               [&](const Outcome& outcome) {
                 EXPECT_NE(zepErrOpenFile, outcome.number);
                 ExpectReadOrKept(outcome, kOnDisk);
                 EXPECT_OK(Update());
                 EXPECT_EQ(kOnDisk, Bytes());
                 EXPECT_EQ(document_.Get(L"Changed"), false);
               });
}

RUN_IN_BOTH_BINDINGS(DocumentFileFaultTest);

}  // namespace

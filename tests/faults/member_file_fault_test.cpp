// The members of Library and Global that work on files, with every single operation failing once,
// and with all behind it, in every way.
#include <algorithm>

#include "com/both_roots.h"
#include "com/temporary_folder.h"
#include "com/value_array.h"
#include "faults/file_faults.h"

namespace {

using client::Outcome;
using client::Value;
using faults::FileFault;
using faults::FileHooks;

class MemberFileFaultTest : public BothRoots {
 protected:
  /// `check` gets the outcome of the call, and the fault that it met; none the last time.
  template <class Call, class Check>
  void ForEachFault(Call&& call, Check&& check) {
    faults::ForEachFileFault([&](const FileFault& fault, int number, faults::Lasting lasting) {
      const FileHooks hooks(fault);
      faults::Begin(faults::Kind::kFile, number, lasting);
      const Outcome outcome = call();
      const int failed = faults::End();
      EXPECT_EQ(0u, FileHooks::OpenHandles());
      if (!outcome.ok()) {
        EXPECT_GT(failed, 0);
        EXPECT_EQ(std::wstring(L"Zepkit10.") + RootName(), outcome.source);
      }
      check(outcome, failed ? &fault : nullptr);
      return failed > 0;
    });
  }

  const TemporaryFolder folder_;
};

TEST_P(MemberFileFaultTest, ALineIsInTheLogOrAnErrorSaysWhyNot) {
  const std::wstring log = folder_.File(L"a.log", "old\r\n");
  EXPECT_OK(root_.Let(L"LogFile", {log}));
  const auto write = [&] { return root_.Call(L"LogText", {L"text"}); };
  ForEachFault(
      [&] {
        folder_.File(L"a.log", "old\r\n");
        return write();
      },
      [&](const Outcome& outcome, const FileFault* fault) {
        const std::string text = folder_.Read(L"a.log");
        EXPECT_TRUE(text.starts_with("old\r\n"));
        EXPECT_EQ(outcome.ok(), text.ends_with(": text\r\n"));
        if (outcome.ok()) return;
        if (outcome.number == zepErrBadCallContext) {
          EXPECT_EQ(DWORD{ERROR_PATH_NOT_FOUND}, fault->error);
        } else {
          EXPECT_EQ(faults::NumberOf(*fault), outcome.number);
        }
        EXPECT_OK(write());
        EXPECT_TRUE(folder_.Read(L"a.log").ends_with(": text\r\n"));
      });
  EXPECT_OK(root_.Let(L"LogFile", {L""}));
}

TEST_P(MemberFileFaultTest, AListingThatIsCutShortIsNoneOrABeginning) {
  folder_.Directory(L"s");
  const std::vector<Value> all{folder_.File(L"a.txt"), folder_.File(L"b.txt"),
                               folder_.File(L"s\\c.txt")};
  const Value before = value_array::Make(VT_BSTR, 3, {L"before"});
  Value files;
  ForEachFault(
      [&] {
        files = before;
        VARIANT reference;
        reference.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
        reference.pparray = &files.raw().parray;
        return root_.Call(L"GetFiles", {folder_.path(), L"*.txt", Value(reference), true});
      },
      [&](const Outcome& outcome, const FileFault* fault) {
        ASSERT_TRUE(outcome.ok()) << outcome;
        const int count = outcome.value.raw().lVal;
        const std::vector<Value> found = value_array::Read(files);
        if (!fault) {
          EXPECT_EQ(3, count);
          EXPECT_EQ(all, found);
        } else if (count <= 0) {
          EXPECT_LE(-1, count);
          EXPECT_EQ(std::vector<Value>{L"before"}, found);
        } else {
          ASSERT_EQ(static_cast<std::size_t>(count), found.size());
          EXPECT_TRUE(std::equal(found.begin(), found.end(), all.begin()));
        }
      });
}

TEST_P(MemberFileFaultTest, MakeDirIsTrueOnlyOfADirectoryThatIsThere) {
  const std::wstring deep = folder_ / L"a\\b\\c";
  ForEachFault(
      [&] {
        if (folder_.Has(L"a")) folder_.Remove(L"a");
        return root_.Call(L"MakeDir", {deep});
      },
      [&](const Outcome& outcome, const FileFault* fault) {
        ASSERT_TRUE(outcome.ok()) << outcome;
        const bool made = outcome == true;
        EXPECT_TRUE(!made || folder_.Has(L"a\\b\\c"));
        EXPECT_TRUE(made || fault);
        EXPECT_EQ(root_.Call(L"MakeDir", {deep}), true);
        EXPECT_TRUE(folder_.Has(L"a\\b\\c"));
      });
}

TEST_P(MemberFileFaultTest, LooksAtFilesAnswerNo) {
  const std::wstring file = folder_.File(L"a.txt"), name = L"s";
  const std::wstring directory = folder_.Directory(name);
  const auto no_or = [](const Value& yes, const Value& no) {
    return [=](const Outcome& outcome, const FileFault* fault) {
      EXPECT_TRUE(outcome == yes || (fault && outcome == no)) << outcome;
    };
  };
  ForEachFault([&] { return root_.Call(L"IsValidFile", {file}); }, no_or(true, false));
  ForEachFault([&] { return root_.Call(L"IsValidDir", {directory}); }, no_or(true, false));
  ForEachFault([&] { return root_.Call(L"GetSubDir", {folder_.path(), 1}); }, no_or(name, L""));
}

/// A file of entries, or the system's own where the name is empty.
class EntryFaultTest : public MemberFileFaultTest {
 protected:
  static constexpr wchar_t kSection[] = L"Zepkit10 fault test";

  ~EntryFaultTest() override { WriteProfileStringW(kSection, nullptr, nullptr); }

  Outcome Read(const std::wstring& file) const {
    return root_.Get(L"IniEntry", {file, kSection, L"key"});
  }
  Outcome Write(const std::wstring& file, const wchar_t* value) const {
    return root_.Let(L"IniEntry", {file, kSection, L"key", value});
  }

  const std::wstring files_[2] = {folder_ / L"a.ini", L""};
};

TEST_P(EntryFaultTest, AnEntryThatCannotBeReadIsMissing) {
  for (const std::wstring& file : files_) {
    EXPECT_OK(Write(file, L"value"));
    ForEachFault([&] { return Read(file); },
                 [&](const Outcome& outcome, const FileFault* fault) {
                   const bool missing = outcome.number == zepErrEntryNotExistant ||
                                        (!file.empty() && outcome.number == zepErrFileNotFound);
                   EXPECT_TRUE(outcome == Value(L"value") || (fault && missing)) << outcome;
                   EXPECT_EQ(Read(file), L"value");
                 });
  }
}

TEST_P(EntryFaultTest, AnEntryThatCannotBeWrittenStaysWithoutAnError) {
  for (const std::wstring& file : files_) {
    EXPECT_OK(Write(file, L"old"));
    ForEachFault([&] { return Write(file, L"new"); },
                 [&](const Outcome& outcome, const FileFault* fault) {
                   EXPECT_OK(outcome);
                   const Outcome held = Read(file);
                   EXPECT_TRUE(held == Value(L"new") || (fault && held == Value(L"old"))) << held;
                   EXPECT_OK(Write(file, L"old"));
                   EXPECT_EQ(Read(file), L"old");
                 });
  }
}

RUN_WITH_BOTH_ROOTS(EntryFaultTest);
RUN_WITH_BOTH_ROOTS(MemberFileFaultTest);

}  // namespace

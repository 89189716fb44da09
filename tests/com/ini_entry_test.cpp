// IniEntry: entries of initialisation files.
#include "com/both_roots.h"
#include "com/temporary_folder.h"

namespace {

using client::Outcome;
using client::Value;

constexpr wchar_t kSystemSection[] = L"Zepkit10 test";

class IniEntryTest : public BothRoots {
 protected:
  ~IniEntryTest() override { WriteProfileStringW(kSystemSection, nullptr, nullptr); }

  Outcome Read(const std::wstring& file, const std::wstring& section,
               const std::wstring& key) const {
    return root_.Get(L"IniEntry", {file, section, key});
  }
  Outcome Write(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                const std::wstring& value) const {
    return root_.Let(L"IniEntry", {file, section, key, value});
  }
  void ExpectMissing(const std::wstring& section, const std::wstring& key) const {
    EXPECT_ROOT_ERROR(Read(file_, section, key), zepErrEntryNotExistant);
  }

  const TemporaryFolder folder_;
  const std::wstring file_ = folder_ / L"a.ini";
};

TEST_P(IniEntryTest, ReadsWhatAFileSays) {
  folder_.File(L"a.ini", "[one]\r\nkey=value\r\nempty=\r\n[two]\r\nkey=other value\r\n");
  EXPECT_EQ(Read(file_, L"one", L"key"), L"value");
  EXPECT_EQ(Read(file_, L"two", L"key"), L"other value");
  EXPECT_EQ(Read(file_, L"ONE", L"KEY"), L"value");
  EXPECT_EQ(Read(file_, L"one", L"empty"), L"");
}

TEST_P(IniEntryTest, ReadsWhatWasWritten) {
  EXPECT_OK(Write(file_, L"section", L"key", L"first"));  // creates the file
  EXPECT_TRUE(folder_.Has(L"a.ini"));
  EXPECT_EQ(Read(file_, L"section", L"key"), L"first");
  EXPECT_OK(Write(file_, L"section", L"key", L"second"));
  EXPECT_OK(Write(file_, L"section", L"other", L""));
  EXPECT_EQ(Read(file_, L"section", L"key"), L"second");
  EXPECT_EQ(Read(file_, L"section", L"other"), L"");
}

TEST_P(IniEntryTest, TextsThatTheSystemCannotHoldAreNoEntries) {
  const std::wstring longest(32766, L'a'), too_long(32767, L'a');
  folder_.File(L"a.ini", "[section]\r\nkey=value\r\n");
  EXPECT_OK(Write(file_, too_long, L"key", L"x"));
  EXPECT_OK(Write(file_, L"section", too_long, L"x"));
  EXPECT_OK(Write(file_, L"section", L"key", too_long));
  EXPECT_OK(Write(too_long, L"section", L"key", L"x"));
  EXPECT_EQ(folder_.Read(L"a.ini"), "[section]\r\nkey=value\r\n");
  ExpectMissing(too_long, L"key");
  ExpectMissing(L"section", too_long);
  EXPECT_OK(Write(file_, L"section", longest, L"x"));
  EXPECT_EQ(Read(file_, L"section", longest), L"x");
}

TEST_P(IniEntryTest, AMissingFileIsNotFound) {
  folder_.Directory(L"d");
  for (const std::wstring& file : {file_, folder_ / L"missing\\a.ini", folder_ / L"d",
                                   folder_ / L"a|b", file_ + std::wstring(L"\0", 1)}) {
    EXPECT_ROOT_ERROR(Read(file, L"section", L"key"), zepErrFileNotFound);
  }
  folder_.File(L"a.ini", "[section]\r\nkey=value\r\n");
  EXPECT_ROOT_ERROR(Read(file_ + std::wstring(L"\0", 1), L"section", L"key"), zepErrFileNotFound);
}

TEST_P(IniEntryTest, AMissingEntryDoesNotExist) {
  folder_.File(L"a.ini", "[section]\r\nkey=value\r\n");
  ExpectMissing(L"section", L"other");
  ExpectMissing(L"other", L"key");
  folder_.File(L"a.ini");
  ExpectMissing(L"section", L"key");
}

TEST_P(IniEntryTest, TheMarkerForMissingEntriesIsNoValue) {
  EXPECT_OK(Write(file_, L"section", L"key", L"### Def ###"));
  EXPECT_NE(std::string::npos, folder_.Read(L"a.ini").find("### Def ###"));
  ExpectMissing(L"section", L"key");
  EXPECT_OK(Write(file_, L"section", L"key", L"### Def ### "));
  EXPECT_OK(Write(file_, L"section", L"longer", L"### Def ###!"));
  EXPECT_EQ(Read(file_, L"section", L"longer"), L"### Def ###!");
}

TEST_P(IniEntryTest, EmptyNamesListNothing) {
  folder_.File(L"a.ini", "[section]\r\nkey=value\r\nother=value\r\n");
  ExpectMissing(L"", L"");
  ExpectMissing(L"", L"key");
  ExpectMissing(L"section", L"");
}

TEST_P(IniEntryTest, EmptyNamesDeleteNothing) {
  folder_.File(L"a.ini", "[section]\r\nkey=value\r\n");
  EXPECT_OK(Write(file_, L"section", L"", L"x"));
  EXPECT_OK(Write(file_, L"", L"key", L"x"));
  EXPECT_OK(Write(file_, L"", L"", L""));
  EXPECT_EQ(Read(file_, L"section", L"key"), L"value");
}

TEST_P(IniEntryTest, ValuesAreCutAfter255Characters) {
  const std::wstring value(300, L'v');
  EXPECT_OK(Write(file_, L"section", L"key", value));
  EXPECT_EQ(Read(file_, L"section", L"key"), value.substr(0, 255));
  EXPECT_OK(Write(file_, L"section", L"key", value.substr(0, 255)));
  EXPECT_EQ(Read(file_, L"section", L"key"), value.substr(0, 255));
}

TEST_P(IniEntryTest, ValuesAreAnsi) {
  const std::wstring umlauts = L"\u00e4\u00f6\u00fc\u00df \u20ac";
  EXPECT_OK(Write(file_, umlauts, umlauts, umlauts));
  EXPECT_EQ(Read(file_, umlauts, umlauts), umlauts);
  EXPECT_NE(std::string::npos, folder_.Read(L"a.ini").find("\xe4\xf6\xfc\xdf \x80"));
  EXPECT_OK(Write(file_, L"section", L"key", L"\u4e2d"));
  EXPECT_EQ(Read(file_, L"section", L"key"), L"?");
}

TEST_P(IniEntryTest, FileNamesOutsideAnsiMeanNoOtherFile) {
  const std::wstring macron = folder_ / L"\u0100.ini";  // looks like "A.ini"
  EXPECT_OK(Write(macron, L"section", L"key", L"value"));
  EXPECT_FALSE(folder_.Has(L"A.ini"));
  EXPECT_FALSE(folder_.Has(L"\u0100.ini"));
  folder_.File(L"\u0100.ini", "[section]\r\nkey=value\r\n");
  folder_.File(L"A.ini", "[section]\r\nkey=other\r\n");
  EXPECT_ROOT_ERROR(Read(macron, L"section", L"key"), zepErrEntryNotExistant);
}

TEST_P(IniEntryTest, RefusedWritesAreNotReported) {
  folder_.File(L"a.ini", "[section]\r\nkey=old\r\n");
  HANDLE owner = CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_OK(Write(file_, L"section", L"key", L"new"));
  CloseHandle(owner);
  EXPECT_EQ(folder_.Read(L"a.ini"), "[section]\r\nkey=old\r\n");
  EXPECT_OK(Write(folder_.Directory(L"d"), L"section", L"key", L"new"));
  EXPECT_OK(Write(folder_ / L"missing\\a.ini", L"section", L"key", L"new"));
  EXPECT_FALSE(folder_.Has(L"missing"));
  EXPECT_OK(Write(folder_ / L"a|b?.ini", L"section", L"key", L"new"));
}

TEST_P(IniEntryTest, NulsWriteNothing) {
  const std::string before = "[section]\r\nkey=value\r\n";
  folder_.File(L"a.ini", before);
  const std::wstring nul = std::wstring(L"\0x", 2);
  EXPECT_OK(Write(file_ + nul, L"section", L"key", L"new"));
  EXPECT_OK(Write(file_, L"section" + nul, L"key", L"new"));
  EXPECT_OK(Write(file_, L"section", L"key" + nul, L"new"));
  EXPECT_OK(Write(file_, L"section", L"key", L"new" + nul));
  EXPECT_EQ(folder_.Read(L"a.ini"), before);
  ExpectMissing(L"section" + nul, L"key");
  ExpectMissing(L"section", L"key" + nul);
}

TEST_P(IniEntryTest, NoFileNameMeansTheSystemsOwnFile) {
  EXPECT_ROOT_ERROR(Read(L"", kSystemSection, L"key"), zepErrEntryNotExistant);
  EXPECT_OK(Write(L"", kSystemSection, L"key", L"value"));
  EXPECT_EQ(Read(L"", kSystemSection, L"key"), L"value");
  char text[32];
  EXPECT_EQ(5u, GetProfileStringA("Zepkit10 test", "key", "", text, sizeof text));
  EXPECT_STREQ("value", text);
  EXPECT_ROOT_ERROR(Read(L"", kSystemSection, L""), zepErrEntryNotExistant);
  EXPECT_ROOT_ERROR(Read(L"", L"", L""), zepErrEntryNotExistant);
}

RUN_WITH_BOTH_ROOTS(IniEntryTest);

}  // namespace

// DocHand: opening, reading and writing real files.
#include "com/doc_hand_fixture.h"

namespace {

using client::Object;
using client::Sink;
using client::Value;

HANDLE OpenAsOther(const std::wstring& path, DWORD access) {
  return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     nullptr, OPEN_EXISTING, 0, nullptr);
}

/// Whether another program could open a file.
bool MayOpen(const std::wstring& path, DWORD access) {
  HANDLE file = OpenAsOther(path, access);
  if (file == INVALID_HANDLE_VALUE) {
    EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, GetLastError());
    return false;
  }
  CloseHandle(file);
  return true;
}

class DocHandTransferTest : public WithDocument {
 protected:
  struct Report {
    int done;
    float percentage;
  };
  struct Size {
    int length;
    std::vector<Report> reports;  // between the first and the last
  };
  static inline const std::vector<Size> kSizes = {
      {0, {}},
      {1, {}},
      {1023, {}},
      {1024, {{1024, 100.0f}}},
      {1025, {{1024, 99.9024390f}}},
      {2048, {{1024, 50.0f}, {2048, 100.0f}}},
      {3000, {{1024, 34.1333333f}, {2048, 68.2666667f}}},
  };

  /// What a transfer tells on its way, then `news`, then the end of the reports.
  static Events Reports(Event (*report)(int, int, float), const Size& size, const Events& news) {
    Events all{report(size.length, 0, 0)};
    for (const auto& [done, percentage] : size.reports) {
      all.push_back(report(size.length, done, percentage));
    }
    return Joined({all, news, {report(size.length, size.length, 100)}});
  }
  static Events Reading(const Size& size, const Events& news = {ContentChange()}) {
    return Joined({Reports(PartlyRead, size, news), {FileRead()}});
  }
  static Events Writing(const Size& size, const Events& news = {ContentChange()}) {
    return Joined({Reports(PartlyWritten, size, news), {FileSaved()}});
  }
  static Events Naming(const std::wstring& path) {
    return {FileNameChange(path), FileTitleChanged(path)};
  }
};

TEST_P(DocHandTransferTest, OpensFilesOfAllSizes) {
  for (const Size& size : kSizes) {
    folder_.File(L"a.txt", Pattern(size.length));
    Listen();
    EXPECT_OK(Open(path_));
    EXPECT_EQ(Joined({Naming(path_), {StatusChange(2)}, Reading(size), {FileOpen(path_)}}),
              Heard());
    EXPECT_EQ(Bytes(), Pattern(size.length));
    EXPECT_EQ(Content().Get(L"ByteLength"), size.length);
    EXPECT_OK(Close());
    EXPECT_EQ((Events{StatusChange(0), FileClose()}), Heard());
  }
}

TEST_P(DocHandTransferTest, OpensFilesOfAllSizesForReading) {
  for (const Size& size : kSizes) {
    folder_.File(L"a.txt", Pattern(size.length));
    Listen();
    EXPECT_OK(Open(path_, true));
    EXPECT_EQ(
        Joined(
            {Naming(path_), {StatusChange(1), StatusChange(3)}, Reading(size), {FileOpen(path_)}}),
        Heard());
    EXPECT_EQ(Bytes(), Pattern(size.length));
    EXPECT_EQ(Content().Get(L"ReadOnly"), true);
    EXPECT_OK(Close());
    EXPECT_EQ((Events{StatusChange(1), StatusChange(0), FileClose()}), Heard());
  }
}

TEST_P(DocHandTransferTest, SavesContentsOfAllSizes) {
  folder_.File(L"a.txt", "old");
  EXPECT_OK(Open(path_));
  for (const Size& size : kSizes) {
    EXPECT_OK(Put(Pattern(size.length)));
    Listen();
    EXPECT_OK(Save());
    EXPECT_EQ(Writing(size, {StatusChange(2), ContentChange()}), Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(size.length));
    EXPECT_EQ(Bytes(), Pattern(size.length));
    EXPECT_OK(Save());  // although nothing is changed
    EXPECT_EQ(Writing(size), Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(size.length));
  }
}

TEST_P(DocHandTransferTest, SavesContentsOfAllSizesUnderAName) {
  for (const Size& size : kSizes) {
    const std::wstring name = L"b" + std::to_wstring(size.length), path = folder_ / name;
    EXPECT_OK(Put(Pattern(size.length)));
    Listen();
    EXPECT_OK(SaveAs(path));
    EXPECT_EQ(Joined({Naming(path),
                      {StatusChange(18)},
                      Writing(size, {StatusChange(2), ContentChange()}),
                      {FileSavedAs(path)}}),
              Heard());
    EXPECT_EQ(folder_.Read(name), Pattern(size.length));
    EXPECT_EQ(document_.Get(L"FileTitle"), name);
    EXPECT_OK(Close());
  }
}

TEST_P(DocHandTransferTest, ReadsAgain) {
  folder_.File(L"a.txt", Pattern(3000));
  for (const bool read_only : {false, true}) {
    const int open = read_only ? 3 : 2;
    EXPECT_OK(Open(path_, read_only));
    Listen();
    EXPECT_OK(Update());
    EXPECT_EQ(Reading(kSizes.back()), Heard());
    EXPECT_OK(document_.Let(L"Changed", {true}));
    EXPECT_EQ((Events{StatusChange(open | 16), ContentChange()}), Heard());
    EXPECT_OK(Update());
    EXPECT_EQ(Reading(kSizes.back(), {StatusChange(open), ContentChange()}), Heard());
    EXPECT_EQ(Content().Get(L"ReadOnly"), read_only);
  }
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("edited"));
  EXPECT_OK(Update());
  EXPECT_EQ(Bytes(), Pattern(3000));
  EXPECT_EQ(Status(), 2);
}

TEST_P(DocHandTransferTest, OpeningWhileOpenClosesFirst) {
  folder_.File(L"a.txt", "a");
  const std::wstring other = folder_.File(L"b.txt", "b");
  EXPECT_OK(Open(path_));
  Listen();
  EXPECT_OK(Open(other, true));
  EXPECT_EQ(Joined({{StatusChange(0), FileClose()},
                    Naming(other),
                    {StatusChange(1), StatusChange(3)},
                    Reading({1, {}}),
                    {FileOpen(other)}}),
            Heard());
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({{StatusChange(1), StatusChange(0), FileClose()},
                    Naming(path_),
                    {StatusChange(2)},
                    Reading({1, {}}),
                    {FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(Bytes(), "a");
  EXPECT_TRUE(MayOpen(other, GENERIC_WRITE));
}

TEST_P(DocHandTransferTest, OpeningOverAChangedContentDropsIt) {
  folder_.File(L"a.txt", "file");
  EXPECT_OK(Put("content"));
  Listen();
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(18)},
                    Reading({4, {}}, {StatusChange(2), ContentChange()}),
                    {FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(Bytes(), "file");
}

TEST_P(DocHandTransferTest, SavingUnderAnotherNameClosesFirst) {
  folder_.File(L"a.txt", "old");
  const std::wstring other = folder_ / L"b.txt";
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  Listen();
  EXPECT_OK(SaveAs(other));
  EXPECT_EQ(Joined({{StatusChange(16), FileClose()},
                    Naming(other),
                    {StatusChange(18)},
                    Writing({3, {}}, {StatusChange(2), ContentChange()}),
                    {FileSavedAs(other)}}),
            Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "old");
  EXPECT_EQ(folder_.Read(L"b.txt"), "new");
  EXPECT_TRUE(MayOpen(path_, GENERIC_WRITE));
  EXPECT_FALSE(MayOpen(other, GENERIC_WRITE));
}

TEST_P(DocHandTransferTest, SavingUnderTheSameNameKeepsTheBytes) {
  folder_.File(L"a.txt", "old");
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("newer"));
  EXPECT_OK(SaveAs(path_));
  EXPECT_EQ(folder_.Read(L"a.txt"), "newer");
  EXPECT_EQ(Status(), 2);
}

TEST_P(DocHandTransferTest, SavingLeavesExactlyTheContent) {
  folder_.File(L"a.txt", Pattern(3000));
  EXPECT_OK(Open(path_));
  EXPECT_OK(Content().Let(L"ByteLength", {1025}));
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(1025));
  EXPECT_OK(Content().Let(L"ByteLength", {0}));
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), "");
  folder_.File(L"b.txt", Pattern(100));
  EXPECT_OK(Put("short"));
  EXPECT_OK(SaveAs(folder_ / L"b.txt"));
  EXPECT_EQ(folder_.Read(L"b.txt"), "short");
}

TEST_P(DocHandTransferTest, ReadsWhatWasSavedBefore) {
  EXPECT_OK(Put(Pattern(3000)));
  EXPECT_OK(SaveAs(path_));
  EXPECT_OK(Put("edited"));
  EXPECT_OK(Update());
  EXPECT_EQ(Bytes(), Pattern(3000));
}

TEST_P(DocHandTransferTest, AMissingFileIsCreatedForWriting) {
  Listen();
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({Naming(path_), {StatusChange(2)}, Reading({0, {}}), {FileOpen(path_)}}),
            Heard());
  EXPECT_TRUE(folder_.Has(L"a.txt"));
  EXPECT_EQ(Bytes(), "");
}

TEST_P(DocHandTransferTest, AnOpenDocumentRefusesOtherWriters) {
  folder_.File(L"a.txt", "text");
  for (const bool read_only : {false, true}) {
    EXPECT_OK(Open(path_, read_only));
    EXPECT_TRUE(MayOpen(path_, GENERIC_READ));
    EXPECT_FALSE(MayOpen(path_, GENERIC_WRITE));
    EXPECT_FALSE(MayOpen(path_, GENERIC_READ | GENERIC_WRITE));
    EXPECT_EQ(folder_.Read(L"a.txt"), "text");
    EXPECT_OK(Close());
    EXPECT_TRUE(MayOpen(path_, GENERIC_WRITE));
  }
  EXPECT_OK(Open(path_));
  EXPECT_OK(Save());
  EXPECT_FALSE(MayOpen(path_, GENERIC_WRITE));
  EXPECT_TRUE(MayOpen(path_, GENERIC_READ));
}

TEST_P(DocHandTransferTest, DocumentsShareAFileForReading) {
  folder_.File(L"a.txt", "text");
  const Object other = Create(CLSID_DocHand);
  EXPECT_OK(Open(path_, true));
  EXPECT_OK(other.Call(L"OpenFile", {path_, true}));
  EXPECT_EQ(other.GetObject(L"Content").Get(L"DataString"), L"text");
  EXPECT_OK(other.Call(L"CloseFile"));
  EXPECT_ZEP_ERROR(other.Call(L"OpenFile", {path_, false}), zepErrOpenFile, L"DocHand");
  EXPECT_OK(Close());
  EXPECT_OK(Open(path_));
  EXPECT_ZEP_ERROR(other.Call(L"OpenFile", {path_, true}), zepErrOpenFile, L"DocHand");
  EXPECT_EQ(other.Get(L"OpenErr"), true);
}

TEST_P(DocHandTransferTest, AnotherWriterKeepsADocumentOut) {
  folder_.File(L"a.txt", "text");
  HANDLE writer = OpenAsOther(path_, GENERIC_WRITE);
  for (const bool read_only : {false, true}) {
    EXPECT_ZEP_ERROR(Open(path_, read_only), zepErrOpenFile, L"DocHand");
  }
  EXPECT_OK(Open(folder_ / L"b.txt"));
  EXPECT_ZEP_ERROR(SaveAs(path_), zepErrOpenFile, L"DocHand");
  CloseHandle(writer);
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
  EXPECT_EQ(Status(), kOpenErr);
}

TEST_P(DocHandTransferTest, WhatIsNoFileIsNotOpened) {
  for (const std::wstring& path :
       {folder_.Directory(L"d"), folder_.path(), folder_ / L"d\\e\\a.txt", folder_ / L"a|b?.txt"}) {
    for (const bool read_only : {false, true}) {
      EXPECT_ZEP_ERROR(Open(path, read_only), zepErrOpenFile, L"DocHand");
    }
    EXPECT_EQ(document_.Get(L"OpenErr"), true);
    EXPECT_EQ(document_.Get(L"FileName"), path);
  }
}

TEST_P(DocHandTransferTest, AProtectedFileIsOpenedForReadingOnly) {
  folder_.File(L"a.txt", "text");
  folder_.SetAttributes(L"a.txt", FILE_ATTRIBUTE_READONLY);
  HANDLE writer = OpenAsOther(path_, GENERIC_WRITE);
  if (writer != INVALID_HANDLE_VALUE) {  // an administrator of Wine's host may write anything
    CloseHandle(writer);
  } else {
    EXPECT_ZEP_ERROR(Open(path_), zepErrOpenFile, L"DocHand");
  }
  EXPECT_OK(Open(path_, true));
  EXPECT_EQ(Bytes(), "text");
}

TEST_P(DocHandTransferTest, NamesMayBeLong) {
  const std::wstring folder = folder_.Nest(std::wstring(100, L'd'), 3), path = folder + L"\\a.txt";
  ASSERT_GT(path.size(), std::size_t{MAX_PATH});
  EXPECT_OK(Put("text"));
  EXPECT_OK(SaveAs(path));
  EXPECT_EQ(document_.Get(L"FileName"), path);
  EXPECT_EQ(document_.Get(L"FileTitle"), L"a.txt");
  EXPECT_OK(Put("other"));
  EXPECT_OK(Save());
  EXPECT_OK(Close());
  EXPECT_OK(Put(""));
  EXPECT_OK(Open(path, true));
  EXPECT_EQ(Bytes(), "other");
}

TEST_P(DocHandTransferTest, NamesMayHaveAllCharacters) {
  const std::wstring name = L"\u4e2d\u6587 \u0416 \u00e4\U0001F600.\u0101";
  folder_.File(name, "text");
  Listen();
  EXPECT_OK(Open(folder_ / name));
  EXPECT_EQ(FileOpen(folder_ / name), Heard().back());
  EXPECT_EQ(document_.Get(L"FileTitle"), name);
  EXPECT_EQ(Bytes(), "text");
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(name), "text");
}

TEST_P(DocHandTransferTest, NamesMayBeRelative) {
  wchar_t before[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, before);
  SetCurrentDirectoryW(folder_.path().c_str());
  EXPECT_OK(Put("text"));
  EXPECT_OK(SaveAs(L"a.txt"));
  EXPECT_EQ(document_.Get(L"FileName"), L"a.txt");
  EXPECT_EQ(document_.Get(L"FileTitle"), L"a.txt");
  SetCurrentDirectoryW(before);
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
}

TEST_P(DocHandTransferTest, ReadingChangesTheContentOnce) {
  folder_.File(L"a.txt", Pattern(3000));
  const auto content = Sink::Connect(Content().get(), DIID___ZepVariant);
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Events{(Event{2, {}})}, content->events());
  EXPECT_OK(Save());
  EXPECT_EQ(Events{(Event{2, {}})}, content->events());
}

TEST_P(DocHandTransferTest, ReadingTakesProtectionOffAndBack) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  std::vector<std::pair<DISPID, bool>> heard;
  const auto content = Sink::Connect(Content().get(), DIID___ZepVariant, [&](const Event& event) {
    heard.emplace_back(event.id, Content().Get(L"ReadOnly") == Value(true));
    return S_OK;
  });
  EXPECT_OK(Update());
  EXPECT_EQ((std::vector<std::pair<DISPID, bool>>{
                {1, true}, {3, false}, {2, false}, {1, false}, {3, true}}),
            heard);
}

TEST_P(DocHandTransferTest, ViewsFollowTheFile) {
  folder_.File(L"a.txt", "abcdef");
  EXPECT_OK(Put("123456"));
  const Object view = Content().GetObject(L"Range", {2, 3});
  EXPECT_OK(Open(path_));
  EXPECT_EQ(view.Get(L"DataString"), L"bcd");
  EXPECT_OK(view.Let(L"DataString", {L"-"}));
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), "a-ef");
}

RUN_IN_BOTH_BINDINGS(DocHandTransferTest);

}  // namespace

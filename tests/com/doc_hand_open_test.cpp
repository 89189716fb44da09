// DocHand: which files are opened, how they are shared, and what a refusal leaves.
#include "com/doc_hand_fixture.h"
#include "com/left_open_files.h"

namespace {

using client::Object;

using DocHandOpenTest = WithDocument;

TEST_P(DocHandOpenTest, AMissingFileIsCreatedForWriting) {
  Listen();
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(2), PartlyRead(0, 0, 0), ContentChange(), PartlyRead(0, 0, 100),
                     FileRead(), FileOpen(path_)}}),
            Heard());
  EXPECT_TRUE(folder_.Has(L"a.txt"));
  EXPECT_EQ(Bytes(), "");
}

TEST_P(DocHandOpenTest, AnOpenDocumentRefusesOtherWriters) {
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

TEST_P(DocHandOpenTest, DocumentsShareAFileForReading) {
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

TEST_P(DocHandOpenTest, AnotherWriterKeepsADocumentOut) {
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

TEST_P(DocHandOpenTest, WhatIsNoFileIsNotOpened) {
  for (const std::wstring& path :
       {folder_.Directory(L"d"), folder_.path(), folder_ / L"d\\e\\a.txt", folder_ / L"a|b?.txt"}) {
    for (const bool read_only : {false, true}) {
      EXPECT_ZEP_ERROR(Open(path, read_only), zepErrOpenFile, L"DocHand");
    }
    EXPECT_EQ(document_.Get(L"OpenErr"), true);
    EXPECT_EQ(document_.Get(L"FileName"), path);
  }
}

TEST_P(DocHandOpenTest, AProtectedFileIsOpenedForReadingOnly) {
  folder_.File(L"a.txt", "text");
  folder_.SetAttributes(L"a.txt", FILE_ATTRIBUTE_READONLY);
  EXPECT_ZEP_ERROR(Open(path_), zepErrOpenFile, L"DocHand");
  EXPECT_ZEP_ERROR(SaveAs(path_), zepErrOpenFile, L"DocHand");
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
  EXPECT_OK(Open(path_, true));
  EXPECT_EQ(Bytes(), "text");
}

TEST_P(DocHandOpenTest, AFileThatWasProtectedMeanwhileIsNotSaved) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  folder_.SetAttributes(L"a.txt", FILE_ATTRIBUTE_READONLY);
  EXPECT_RUNTIME_ERROR(Save(), 75, L"Path/File access error");
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
  EXPECT_EQ(Status(), kOpen | kChanged);
  folder_.SetAttributes(L"a.txt", FILE_ATTRIBUTE_NORMAL);
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), "new");
}

TEST_P(DocHandOpenTest, OtherAttributesAreKept) {
  constexpr DWORD kAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  folder_.File(L"a.txt", "text");
  folder_.SetAttributes(L"a.txt", kAttributes);
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), "new");
  EXPECT_EQ(kAttributes, GetFileAttributesW(path_.c_str()) & kAttributes);
}

TEST_P(DocHandOpenTest, AFailedOpeningIsAState) {
  folder_.File(L"a.txt", "text");
  const std::wstring missing = folder_ / L"missing.txt";
  Listen();
  EXPECT_ZEP_ERROR(Open(missing, true), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{FileNameChange(missing), FileTitleChanged(missing), StatusChange(1),
                    StatusChange(5)}),
            Heard());
  ExpectFlags(true, false, true, false);
  EXPECT_EQ(Content().Get(L"ReadOnly"), true);
  EXPECT_EQ(document_.Get(L"FileTitle"), L"missing.txt");
  EXPECT_FALSE(folder_.Has(L"missing.txt"));
  EXPECT_ZEP_ERROR(Save(), zepErrReadOnly, L"DocHand");
  EXPECT_ZEP_ERROR(Update(), zepErrBadCallContext, L"DocHand");
  EXPECT_EQ(Events{}, Heard());
  // That there was an error is dropped in silence and told anew.
  EXPECT_ZEP_ERROR(Open(missing, true), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{FileNameChange(missing), FileTitleChanged(missing), StatusChange(5)}), Heard());
  EXPECT_OK(Open(path_));
  EXPECT_EQ((Events{FileNameChange(path_), FileTitleChanged(path_), StatusChange(0),
                    StatusChange(2), PartlyRead(4, 0, 0), ContentChange(), PartlyRead(4, 4, 100),
                    FileRead(), FileOpen(path_)}),
            Heard());
  ExpectFlags(false, true, false, false);
}

TEST_P(DocHandOpenTest, OnlyOpeningForgetsAnError) {
  EXPECT_ZEP_ERROR(Open(folder_ / L"missing\\a.txt"), zepErrOpenFile, L"DocHand");
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_OK(document_.Call(L"NewFile"));
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_OK(SaveAs(path_));
  EXPECT_EQ(Status(), kOpen | kOpenErr);
  EXPECT_OK(Close());
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Status(), kOpen);
}

TEST_P(DocHandOpenTest, AFailedOpeningClosesTheFileBefore) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  Listen();
  const std::wstring missing = folder_ / L"missing\\b.txt";
  EXPECT_ZEP_ERROR(Open(missing), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{StatusChange(1), StatusChange(0), FileClose(), FileNameChange(missing),
                    FileTitleChanged(missing), StatusChange(4)}),
            Heard());
  EXPECT_EQ(Bytes(), "text");
}

TEST_P(DocHandOpenTest, AFailedSavingUnderANameIsAState) {
  EXPECT_OK(Put("text"));
  Listen();
  const std::wstring missing = folder_ / L"missing\\a.txt";
  EXPECT_ZEP_ERROR(SaveAs(missing), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{FileNameChange(missing), FileTitleChanged(missing), StatusChange(20)}),
            Heard());
  EXPECT_EQ(Bytes(), "text");
}

TEST_P(DocHandOpenTest, AReleasedDocumentLeavesItsFileOpen) {
  if (!component::IsLinked()) GTEST_SKIP() << "files left open stay so until a DLL goes";
  folder_.File(L"a.txt", "text");
  const LeftOpenFiles files;
  EXPECT_OK(Open(path_));
  document_.Reset();
  EXPECT_EQ(1u, files.count());
  document_ = Create(CLSID_DocHand);
  EXPECT_ZEP_ERROR(Open(path_, true), zepErrOpenFile, L"DocHand");
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
}

RUN_IN_BOTH_BINDINGS(DocHandOpenTest);

}  // namespace

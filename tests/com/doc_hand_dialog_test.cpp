// DocHand: files that the user chooses.
#include "com/dialog_driver.h"
#include "com/doc_hand_fixture.h"
#include "com/file_dialog_fixture.h"

namespace {

using client::Outcome;
using client::Value;

class DocHandDialogTest : public WithDocument {
 protected:
  DocHandDialogTest() { Listen(); }

  Outcome OpenByDialog(std::initializer_list<Value> arguments = {}) const {
    return document_.Call(L"OpenFileByCdl", arguments);
  }
  Outcome SaveByDialog(std::initializer_list<Value> arguments = {}) const {
    return document_.Call(L"SaveAsByCdl", arguments);
  }
  void Choose(const std::wstring& name) { user_.Type(name).Press(IDOK); }

  DirectoryKeeper directory_;
  DialogDriver user_;
};

TEST_P(DocHandDialogTest, ACancelChangesNothing) {
  EXPECT_OK(Put("text"));
  Heard();
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(OpenByDialog({folder_.path(), L"a.txt"}), zepErrCdlCancel, L"DocHand");
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(SaveByDialog({folder_.path(), L"a.txt"}), zepErrCdlCancel, L"DocHand");
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Status(), kChanged);
  EXPECT_EQ(Bytes(), "text");
  EXPECT_EQ(document_.Get(L"FileName"), L"");
  EXPECT_FALSE(folder_.Has(L"a.txt"));
}

TEST_P(DocHandDialogTest, OpensWhatIsChosen) {
  folder_.File(L"a.txt", "text");
  Choose(L"a.txt");
  EXPECT_OK(OpenByDialog({folder_.path()}));
  EXPECT_EQ(
      (Events{FileNameChange(path_), FileTitleChanged(path_), StatusChange(2), PartlyRead(4, 0, 0),
              ContentChange(), PartlyRead(4, 4, 100), FileRead(), FileOpen(path_)}),
      Heard());
  EXPECT_EQ(Bytes(), "text");
}

TEST_P(DocHandDialogTest, TheUserMayChooseToReadOnly) {
  folder_.File(L"a.txt", "text");
  user_.TickReadOnly(true);
  Choose(L"a.txt");
  EXPECT_OK(OpenByDialog({folder_.path()}));
  EXPECT_EQ(Status(), kReadOnly | kOpen);
  user_.TickReadOnly(false);
  Choose(L"a.txt");
  EXPECT_OK(OpenByDialog({folder_.path(), Value::Missing(), true, true}));
  EXPECT_EQ(Status(), kOpen);
}

TEST_P(DocHandDialogTest, TheReadOnlyBoxIsAsAskedFor) {
  const auto expect = [&](bool shown, bool ticked) {
    user_.Do([=](HWND dialog) {
      HWND box = DialogDriver::ReadOnlyBox(dialog);
      EXPECT_EQ(shown, box != nullptr);
      if (box) {
        EXPECT_EQ(ticked, SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED);
      }
    });
    user_.Press(IDCANCEL);
  };
  expect(true, false);
  EXPECT_FALSE(OpenByDialog().ok());
  expect(true, true);
  EXPECT_FALSE(OpenByDialog({folder_.path(), L"", true, true}).ok());
  expect(false, false);
  EXPECT_FALSE(OpenByDialog({folder_.path(), L"", false}).ok());
}

TEST_P(DocHandDialogTest, TheDialogStartsWithTheDocument) {
  folder_.File(L"a.txt", "text");
  folder_.File(L"b.txt", "other");
  EXPECT_OK(Open(path_));
  for (int i = 0; i < 2; ++i) {
    user_.Do([](HWND dialog) { EXPECT_EQ(L"a.txt", DialogDriver::NameIn(dialog)); });
    user_.Press(IDCANCEL);
    EXPECT_FALSE((i == 0 ? OpenByDialog() : SaveByDialog()).ok());
  }
  Choose(L"b.txt");  // in the same folder
  EXPECT_OK(OpenByDialog());
  EXPECT_EQ(document_.Get(L"FileName"), folder_ / L"b.txt");
  user_.Do([](HWND dialog) { EXPECT_EQ(L"c.txt", DialogDriver::NameIn(dialog)); });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(SaveByDialog({Value::Missing(), L"c.txt"}).ok());
}

TEST_P(DocHandDialogTest, NamesMayBeWhateverConvertsToText) {
  for (int i = 0; i < 2; ++i) {
    user_.Do([](HWND dialog) { EXPECT_EQ(L"12", DialogDriver::NameIn(dialog)); });
    user_.Press(IDCANCEL);
    EXPECT_FALSE((i == 0 ? OpenByDialog({folder_.path(), 12}) : SaveByDialog({Value(), 12})).ok());
  }
}

TEST_P(DocHandDialogTest, SavesAsWhatIsChosen) {
  EXPECT_OK(Put("text"));
  Heard();
  Choose(L"a");
  EXPECT_OK(SaveByDialog({folder_.path()}));  // a new document's extension is .txt
  EXPECT_EQ((Events{FileNameChange(path_), FileTitleChanged(path_), StatusChange(18),
                    PartlyWritten(4, 0, 0), StatusChange(2), ContentChange(),
                    PartlyWritten(4, 4, 100), FileSaved(), FileSavedAs(path_)}),
            Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
}

TEST_P(DocHandDialogTest, TheDefaultExtensionIsKept) {
  for (const wchar_t* name : {L"a.log", L"b.log"}) {
    user_.ChooseFilter(1);
    Choose(std::wstring(1, name[0]));
    EXPECT_OK(name[0] == L'a' ? SaveByDialog({folder_.path(), Value::Missing(), L"log"})
                              : SaveByDialog());
    EXPECT_EQ(document_.Get(L"FileName"), folder_ / name);
  }
}

TEST_P(DocHandDialogTest, AChosenFileThatCannotBeOpened) {
  folder_.File(L"a.txt", "text");
  HANDLE owner = CreateFileW(path_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  Choose(L"a.txt");
  EXPECT_ZEP_ERROR(OpenByDialog({folder_.path()}), zepErrOpenFile, L"DocHand");
  CloseHandle(owner);
  EXPECT_EQ((Events{FileNameChange(path_), FileTitleChanged(path_), StatusChange(4)}), Heard());
}

RUN_IN_BOTH_BINDINGS(DocHandDialogTest);

}  // namespace

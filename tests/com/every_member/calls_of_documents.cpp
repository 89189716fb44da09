#include <gtest/gtest.h>

#include "com/every_member/calls.h"

namespace call_table {
namespace {

constexpr int kReadOnly = 1, kOpen = 2, kChanged = 16;

}  // namespace

Rows CallsOfDocuments(const TemporaryFolder& folder, DialogUser& user) {
  folder.File(L"letter.txt", "Dear Ada");
  const std::wstring letter = folder / L"letter.txt", copy = folder / L"copy.txt";
  const auto choose = [&user](const wchar_t* name) {
    return Do([&user, name] { user.Type(name).Press(IDOK); });
  };
  return {
      New(L"DocHand", L"document"),
      Run(L"document.NewFile"),
      Put(L"document.FileTitle", {L"Title"}),
      Get(L"document.FileTitle").Gives(L"Title"),
      Put(L"document.Filter", {L"All|*.*|Texts|*.txt"}),
      Get(L"document.Filter").Gives(L"All|*.*|Texts|*.txt"),
      Put(L"document.FilterIndex", {1}),
      Get(L"document.FilterIndex").Gives(1),

      Run(L"document.OpenFile", {letter, true}),
      Get(L"document.ReadOnly").Gives(true),
      Get(L"document.Status").Gives(kReadOnly | kOpen),
      Run(L"document.CloseFile"),
      Run(L"document.OpenFile", {letter}),
      Get(L"document.Opened").Gives(true),
      Get(L"document.OpenErr").Gives(false),
      Get(L"document.FileName").Gives(letter),
      Get(L"document.Content").GivesA(L"ZepVariant", L"content"),
      Get(L"content.DataString").Gives(L"Dear Ada"),

      Put(L"content.DataString", {L"Hello"}),
      Get(L"document.Changed").Gives(true),
      Get(L"document.Status").Gives(kOpen | kChanged),
      Run(L"document.UpdateFromDisk"),
      Get(L"content.DataString").Gives(L"Dear Ada"),
      New(L"ZepVariant", L"other"),
      Put(L"other.DataString", {L"Dear Grace"}),
      Set(L"document.Content", {The(L"other")}),
      Get(L"document.Content").Gives(The(L"other")),
      Run(L"document.Save"),
      Get(L"document.Changed").Gives(false),
      Run(L"document.SaveAs", {copy}),
      Get(L"document.FileName").Gives(copy),
      Put(L"document.Changed", {true}),
      Get(L"document.Changed").Gives(true),
      Run(L"document.CloseFile"),
      Get(L"document.Opened").Gives(false),
      Do([&folder] {
        EXPECT_EQ("Dear Grace", folder.Read(L"letter.txt"));
        EXPECT_EQ("Dear Grace", folder.Read(L"copy.txt"));
      }),

      choose(L"letter.txt"),
      Run(L"document.OpenFileByCdl", {folder.path()}),
      Get(L"document.FileName").Gives(letter),
      choose(L"third.txt"),
      Run(L"document.SaveAsByCdl", {folder.path()}),
      Get(L"document.FileName").Gives(folder / L"third.txt"),
      Run(L"document.CloseFile"),
      Do([&folder] { EXPECT_EQ("Dear Grace", folder.Read(L"third.txt")); }),
  };
}

Rows CallsOfFileDialogs(const TemporaryFolder& folder, DialogUser& user) {
  folder.File(L"a.txt");
  Rows rows{New(L"FileDialog", L"dialog")};
  const auto write_and_read = [&rows](const wchar_t* property, const Value& value) {
    rows.push_back(Put(std::wstring(L"dialog.") + property, {value}));
    rows.push_back(Get(std::wstring(L"dialog.") + property).Gives(value));
  };
  for (const wchar_t* property :
       {L"CancelError", L"CreatePrompt", L"FileMustExist", L"HelpButton", L"HideReadOnly",
        L"LongNames", L"Multiselect", L"NoChangeDir", L"NoDereferenceLinks", L"NoLongNames",
        L"NoReadOnlyReturn", L"NoValidate", L"OverwritePrompt", L"PathMustExist", L"ReadOnly",
        L"ShareAware"}) {
    write_and_read(property, true);
    write_and_read(property, false);
  }
  for (const wchar_t* property :
       {L"DefaultExt", L"DialogTitle", L"FileName", L"FileTitle", L"HelpFile", L"HelpKey"}) {
    write_and_read(property, L"text");
  }
  for (const wchar_t* property : {L"FilterIndex", L"HelpCommand", L"HelpContext"}) {
    write_and_read(property, 1);
  }
  write_and_read(L"MaxFileSize", 1000);
  write_and_read(L"Filter", L"All|*.*");
  write_and_read(L"InitDir", folder.path());
  write_and_read(L"DefaultExt", L"txt");
  const Rows shown{
      Run(L"global.ListToCollection", {L"a.txt"}).GivesA(L"Collection", L"names"),
      Set(L"dialog.FileNames", {The(L"names")}),
      Get(L"dialog.FileName").Gives(L"a.txt"),
      Do([&user] { user.Press(IDOK); }),
      Run(L"dialog.ShowOpen"),
      Get(L"dialog.FileName").Gives(folder / L"a.txt"),
      Get(L"dialog.FileNames").GivesA(L"Collection", L"names"),
      Get(L"names.Item", {1}).Gives(folder / L"a.txt"),
      Get(L"dialog.ExtensionDifferent").Gives(false),
      Do([&user] { user.Type(L"b.log").Press(IDOK); }),
      Run(L"dialog.ShowSave"),
      Get(L"dialog.FileTitle").Gives(L"b.log"),
      Get(L"dialog.ExtensionDifferent").Gives(true),
      Get(L"dialog.Cancel").Gives(false),
      Do([&user] { user.Press(IDCANCEL); }),
      Run(L"dialog.ShowOpen"),
      Get(L"dialog.Cancel").Gives(true),
  };
  rows.insert(rows.end(), shown.begin(), shown.end());
  return rows;
}

}  // namespace call_table

#pragma once

#include <string>
#include <vector>

#include "com/both_bindings.h"
#include "com/dialog_driver.h"
#include "com/directory_keeper.h"
#include "com/temporary_folder.h"

/// A file dialog that shows a folder of the test's own to a driver.
class ShownFileDialog : public BothBindings {
 protected:
  ShownFileDialog() {
    EXPECT_OK(dialog_.Let(L"InitDir", {folder_.path()}));
    EXPECT_OK(dialog_.Let(L"Filter", {L"All|*.*|Texts|*.txt|Logs|*.log"}));
    EXPECT_OK(dialog_.Let(L"FilterIndex", {1}));
    EXPECT_OK(dialog_.Let(L"CreatePrompt", {false}));
  }

  client::Outcome Open() { return dialog_.Call(L"ShowOpen"); }
  client::Outcome Save() { return dialog_.Call(L"ShowSave"); }
  void Choose(const std::wstring& name) { user_.Type(name).Press(IDOK); }
  std::vector<client::Value> Names() { return dialog_.GetObject(L"FileNames").Values(); }
  /// As dialogs name it: without the backslash at its end.
  std::wstring FolderName() const { return folder_.path().substr(0, folder_.path().size() - 1); }

  TemporaryFolder folder_;
  DirectoryKeeper directory_;
  DialogDriver user_;
  client::Object dialog_ = Create(CLSID_FileDialog);
};

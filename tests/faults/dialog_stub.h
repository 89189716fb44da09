#pragma once

#include <windows.h>
#include <commdlg.h>

#include <string>

#include "com/dialog_driver.h"
#include "com/import_hook.h"
#include "platform/file_dialogs.h"

namespace faults {

/// Stands in for the file dialogs and for their user, as long as it lives: nothing is shown. It
/// answers in the same way until it is told another one.
class DialogStub final : public DialogUser {
 public:
  DialogStub();
  ~DialogStub() override;
  DialogStub(const DialogStub&) = delete;
  DialogStub& operator=(const DialogStub&) = delete;

  DialogStub& Type(std::wstring name) override;
  DialogStub& Press(int button) override;

 private:
  static BOOL WINAPI Answer(OPENFILENAMEW* dialog);

  std::wstring typed_, name_;
  int button_ = IDCANCEL;
  const ImportHook<&zepkit10::show_open_dialog> open_{Answer};
  const ImportHook<&zepkit10::show_save_dialog> save_{Answer};
};

}  // namespace faults

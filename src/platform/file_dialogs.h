#pragma once

#include <windows.h>
#include <commdlg.h>

namespace zepkit10 {

/// Shows one of the system's file dialogs; false where it is cancelled or fails.
using FileDialogFunction = BOOL WINAPI(OPENFILENAMEW*);

// Variables, so that tests can put stand-ins there.
extern FileDialogFunction* show_open_dialog;
extern FileDialogFunction* show_save_dialog;

}  // namespace zepkit10

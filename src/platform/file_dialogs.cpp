#include "platform/file_dialogs.h"

namespace zepkit10 {
namespace {

// The library of the dialogs brings half of the system's user interface with it: loading the DLL
// would take ten times as long. Windows takes it from its own folder, whatever lies elsewhere. It
// stays loaded, as it would with an import.
BOOL Show(const char* function, OPENFILENAMEW* dialog) {
  const HMODULE library = LoadLibraryW(L"comdlg32.dll");
  void* const address =
      library ? reinterpret_cast<void*>(GetProcAddress(library, function)) : nullptr;
  return address && reinterpret_cast<FileDialogFunction*>(address)(dialog);
}

BOOL WINAPI ShowOpen(OPENFILENAMEW* dialog) { return Show("GetOpenFileNameW", dialog); }
BOOL WINAPI ShowSave(OPENFILENAMEW* dialog) { return Show("GetSaveFileNameW", dialog); }

}  // namespace

FileDialogFunction* show_open_dialog = ShowOpen;
FileDialogFunction* show_save_dialog = ShowSave;

}  // namespace zepkit10

#include "monkey/stand_ins.h"

#include <windows.h>
#include <commdlg.h>

#include <algorithm>

#include "com/import_hook.h"
#include "monkey/chart_limits.h"
#include "platform/file_dialogs.h"

DECLARE_IMPORT(CreateDialogParamW, 20);
DECLARE_IMPORT(GetMessageW, 16);
DECLARE_IMPORT(MessageBeep, 4);
DECLARE_IMPORT(SetCursorPos, 8);
DECLARE_IMPORT(SystemParametersInfoA, 16);

namespace monkey {
namespace {

using CreateDialogHook = ImportHook<&__imp_CreateDialogParamW>;
using GetMessageHook = ImportHook<&__imp_GetMessageW>;

std::mt19937* chance = nullptr;
const std::function<void()>* interference = nullptr;
HWND about_window = nullptr;
bool all_windows = false;

/// Chooses a file, several, one with a name as long as there is room for, or none.
BOOL WINAPI AnswerFileDialog(OPENFILENAMEW* dialog) {
  constexpr std::wstring_view kChoices[] = {
      L"a.txt", {L"folder\0a\0b.txt\0", 15}, L"folder\\c.txt", L"", L"new.txt"};
  (*interference)();
  if ((*chance)() % 2) return FALSE;
  std::wstring choice((*chance)() % 16 ? kChoices[(*chance)() % std::size(kChoices)]
                                       : std::wstring_view());
  if (choice.empty() && (*chance)() % 2) choice.assign(dialog->nMaxFile, L'n');
  // Not every system keeps to the room: up to its end the component makes its own.
  std::copy_n(choice.c_str(), choice.size() + 1, dialog->lpstrFile);
  dialog->lpstrFile[choice.size() + 1] = L'\0';
  dialog->nFilterIndex = (*chance)() % 4 ? 1 : 0xFFFFFFFF;
  dialog->Flags ^= (*chance)() % 2 ? OFN_READONLY : 0;
  return TRUE;
}

/// Refuses most windows, as a system without a display does: they cost time.
HWND WINAPI CreateDialogSometimes(HINSTANCE instance, const wchar_t* name, HWND owner,
                                  DLGPROC procedure, LPARAM parameter) {
  if ((*chance)() % 16 && !all_windows) return nullptr;
  return about_window = CreateDialogHook::kSystem(instance, name, owner, procedure, parameter);
}

/// Presses OK where there is nothing else to do.
BOOL WINAPI GetMessageOrPressOk(MSG* message, HWND window, UINT first, UINT last) {
  if (PeekMessageW(message, window, first, last, PM_REMOVE)) return message->message != WM_QUIT;
  *message = {};
  message->hwnd = about_window;
  message->message = WM_COMMAND;
  message->wParam = IDOK;
  return TRUE;
}

BOOL WINAPI LeavePointer(int, int) { return TRUE; }

BOOL WINAPI LeaveSettings(UINT, UINT, void* room, UINT) {
  if (room) *static_cast<int*>(room) = 1;
  return (*chance)() % 8 != 0;
}

BOOL WINAPI KeepQuiet(UINT) { return (*chance)() % 8 != 0; }

}  // namespace

struct StandIns::Hooks {
  const ImportHook<&zepkit10::show_open_dialog> open{AnswerFileDialog};
  const ImportHook<&zepkit10::show_save_dialog> save{AnswerFileDialog};
  const CreateDialogHook create_dialog{CreateDialogSometimes};
  const GetMessageHook get_message{GetMessageOrPressOk};
  const ImportHook<&__imp_SetCursorPos> pointer{LeavePointer};
  const ImportHook<&__imp_SystemParametersInfoA> settings{LeaveSettings};
  const ImportHook<&__imp_MessageBeep> beep{KeepQuiet};
  const QueueWatch queue;
};

StandIns::StandIns(std::mt19937& random, const std::function<void()>& interfere,
                   bool makes_all_windows)
    : hooks_(std::make_unique<Hooks>()) {
  chance = &random;
  interference = &interfere;
  all_windows = makes_all_windows;
}

StandIns::~StandIns() = default;

}  // namespace monkey

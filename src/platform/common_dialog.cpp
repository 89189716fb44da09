#include "platform/common_dialog.h"

#include <algorithm>
#include <limits>

#include "doc/dialog_text.h"
#include "platform/automation/string.h"

namespace zepkit10 {
namespace {

/// Characters behind the room offered: not every system keeps to the room when several files are
/// chosen.
constexpr std::size_t kSlack = 1'000'000;

/// Null for the empty text: the system's own default.
const wchar_t* Optional(const std::u16string& text) {
  return text.empty() ? nullptr : WideText(text);
}

bool SameName(std::u16string_view left, std::u16string_view right) {
  const auto wide = [](std::u16string_view text) {
    return reinterpret_cast<const wchar_t*>(text.data());
  };
  return CompareStringOrdinal(wide(left), static_cast<int>(left.size()), wide(right),
                              static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

/// The argument that goes with a command of the help engine.
ULONG_PTR HelpData(const CommonDialogProperties& properties) {
  switch (properties.help_command) {
    case HELP_KEY:
    case HELP_PARTIALKEY:
    case HELP_COMMAND:
      return reinterpret_cast<ULONG_PTR>(WideText(properties.help_key));
    default:
      return static_cast<ULONG>(properties.help_context);
  }
}

/// Waits for the Help button. A dialog without a hook would tell its owner, and that is a window of
/// the client's or none.
UINT_PTR CALLBACK HandleNotification(HWND window, UINT message, WPARAM, LPARAM parameter) {
  if (message != WM_NOTIFY) return 0;
  const auto& notification = *reinterpret_cast<const OFNOTIFYW*>(parameter);
  if (notification.hdr.code != CDN_HELP) return 0;
  const auto& properties =
      *reinterpret_cast<const CommonDialogProperties*>(notification.lpOFN->lCustData);
  WinHelpW(window, Optional(properties.help_file), static_cast<UINT>(properties.help_command),
           HelpData(properties));
  return 0;
}

/// The system's description of a dialog; valid as long as its parts.
OPENFILENAMEW Describe(const CommonDialogProperties& properties, const std::u16string& filter,
                       std::u16string& choice) {
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = GetActiveWindow();
  dialog.lpstrFilter = properties.filter.empty() ? nullptr : WideText(filter);
  dialog.nFilterIndex = static_cast<DWORD>(std::max<int>(properties.filter_index, 0));
  dialog.lpstrFile = MutableText(choice);
  dialog.nMaxFile = static_cast<DWORD>(properties.max_file_size);
  // The dialogs know no longer paths of folders, and not every system's survives one.
  if (properties.init_dir.size() < MAX_PATH) dialog.lpstrInitialDir = Optional(properties.init_dir);
  dialog.lpstrTitle = Optional(properties.dialog_title);
  dialog.lpstrDefExt = Optional(properties.default_ext);
  // Not every system takes an earlier answer back.
  dialog.Flags = properties.flags & ~static_cast<DWORD>(OFN_EXTENSIONDIFFERENT);
  if (dialog.Flags & OFN_SHOWHELP) {
    dialog.Flags |= OFN_ENABLEHOOK;
    dialog.lpfnHook = HandleNotification;
    dialog.lCustData = reinterpret_cast<LPARAM>(&properties);
  }
  return dialog;
}

}  // namespace

bool CommonDialog::Show(FileDialogFunction* function) {
  if (shown_) return false;
  // Clients are called while a dialog is up, and may change every property.
  const CommonDialogProperties asked = properties_;
  const auto room = static_cast<std::size_t>(asked.max_file_size);
  if (asked.file_name.size() >= room) return false;
  std::u16string choice = asked.file_name;
  choice.resize(room + kSlack);
  const std::u16string filter = SystemFilter(asked.filter);
  OPENFILENAMEW dialog = Describe(asked, filter, choice);
  shown_ = true;
  const bool closed_by_ok = function(&dialog);
  shown_ = false;
  if (!closed_by_ok) return false;
  const auto chosen = ChoiceIn(choice, (asked.flags & OFN_ALLOWMULTISELECT) != 0);
  if (chosen.size() >= room) return false;
  Accept(chosen, dialog, asked.default_ext);
  return true;
}

void CommonDialog::Accept(std::u16string_view choice, const OPENFILENAMEW& answer,
                          std::u16string_view default_ext) {
  std::u16string name(choice);
  std::u16string title(FileTitleOf(choice));
  properties_.file_name.swap(name);
  properties_.file_title.swap(title);
  constexpr DWORD kLastIndex = std::numeric_limits<std::int16_t>::max();
  properties_.filter_index = static_cast<std::int16_t>(std::min(answer.nFilterIndex, kLastIndex));
  constexpr std::uint32_t kAnswers = OFN_READONLY | OFN_EXTENSIONDIFFERENT;
  properties_.flags = (properties_.flags & ~kAnswers) | (answer.Flags & OFN_READONLY);
  if (HasOtherExtension(choice, default_ext, SameName)) {
    properties_.flags |= OFN_EXTENSIONDIFFERENT;
  }
}

}  // namespace zepkit10

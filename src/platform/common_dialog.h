#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file_dialogs.h"

namespace zepkit10 {

/// What the system's file dialogs are set to, and what their user chose last.
struct CommonDialogProperties {
  std::uint32_t flags = 0;  // OFN_…
  std::u16string default_ext;
  std::u16string dialog_title;
  std::u16string file_name;  // a path, or a folder and names with NULs between them
  std::u16string file_title;
  std::u16string filter;  // see `IsFilterList`
  std::int16_t filter_index = 0;
  std::int16_t help_command = 0;
  std::int32_t help_context = 0;
  std::u16string help_file;
  std::u16string help_key;
  std::u16string init_dir;
  std::int16_t max_file_size = 0;  // room for `file_name` and the NULs at its end
};

/// The control behind a file dialog: its properties, and the system's dialogs.
class CommonDialog {
 public:
  CommonDialogProperties& Properties() { return properties_; }
  const CommonDialogProperties& Properties() const { return properties_; }

  /// Shows a dialog, modal to the thread's active window, until its user closes it. False if it was
  /// cancelled or failed: without a display, with `file_name` or the choice not fitting into
  /// `max_file_size`, and while another dialog of this control is up. Properties change only by a
  /// choice: `file_name`, `file_title`, `filter_index` and the flags OFN_READONLY and
  /// OFN_EXTENSIONDIFFERENT.
  bool ShowOpen() { return Show(show_open_dialog); }
  bool ShowSave() { return Show(show_save_dialog); }

 private:
  bool Show(FileDialogFunction* function);
  void Accept(std::u16string_view choice, const OPENFILENAMEW& answer,
              std::u16string_view default_ext);

  CommonDialogProperties properties_;
  bool shown_ = false;
};

}  // namespace zepkit10

#include "doc/file_dialog_object.h"

#include <optional>
#include <utility>

#include "doc/dialog_text.h"
#include "util/list_members_object.h"

namespace zepkit10 {

using enum ZepErrors;

namespace {

constexpr std::u16string_view kBetweenNames = {u"\0", 1};

std::optional<std::int16_t> ToShort(std::int32_t number) {
  if (!std::in_range<std::int16_t>(number)) return {};
  return static_cast<std::int16_t>(number);
}

std::int16_t ToShortOrOverflow(std::int32_t number) {
  const auto converted = ToShort(number);
  if (!converted) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  return *converted;
}

}  // namespace

FileDialog::FileDialog() {
  Held().filter =
      u"Alle Dateien (*.*)|*.*|"
      u"Textdateien (*.txt)|*.txt|"
      u"Protokolldateien (*.log)|*.log|"
      u"Initialisierungsdateien (*.ini)|*.ini|"
      u"DOS Batchdateien (*.bat)|*.bat";
  Held().filter_index = 2;
  Held().flags =
      OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_CREATEPROMPT | OFN_EXPLORER | OFN_LONGNAMES;
  Held().max_file_size = 256;
}

Ref<Collection> FileDialog::FileNames() const {
  return ListMembers::ListToCollection(Held().file_name, kBetweenNames, {}, {});
}

void FileDialog::SetFileNames(IDispatch* NewFileNames) {
  Held().file_name = ListMembers::CollectionToList(NewFileNames, kBetweenNames, {}, {});
}

void FileDialog::SetFilter(std::u16string_view NewFilter) {
  if (!IsFilterList(NewFilter)) Raise(zepErrBadPropValue);
  Held().filter = NewFilter;
}

void FileDialog::SetFilterIndex(std::int32_t NewFilterIndex) {
  const auto index = ToShort(NewFilterIndex);
  if (!index) Raise(zepErrBadPropValue);
  Held().filter_index = *index;
}

void FileDialog::SetHelpCommand(ZepFDHelpCommand NewHelpCommand) {
  Held().help_command = ToShortOrOverflow(static_cast<std::int32_t>(NewHelpCommand));
}

void FileDialog::SetMaxFileSize(std::int32_t NewMaxFileSize) {
  const std::int16_t size = ToShortOrOverflow(NewMaxFileSize);
  if (size < 1) RaiseRuntimeError(ZepVbErrors298To746::zepVbErrBadPropertyValue);
  Held().max_file_size = size;
}

void FileDialog::ShowOpen() {
  Show(&CommonDialog::ShowOpen);
  RaiseIfCancelled();
}

void FileDialog::ShowSave() {
  const bool hide_read_only = HideReadOnly();
  const bool no_read_only_return = NoReadOnlyReturn();
  SetHideReadOnly(true);
  SetNoReadOnlyReturn(true);
  Show(&CommonDialog::ShowSave);
  SetNoReadOnlyReturn(no_read_only_return);
  SetHideReadOnly(hide_read_only);
  RaiseIfCancelled();
}

void FileDialog::Show(bool (CommonDialog::*dialog)()) noexcept {
  try {
    cancel_ = !(control_.*dialog)();
  } catch (...) {
    cancel_ = true;
  }
}

void FileDialog::RaiseIfCancelled() const {
  if (cancel_ && cancel_error_) Raise(zepErrCdlCancel);
}

}  // namespace zepkit10

#pragma once

#include <string>

#include "file_dialog_shim.h"
#include "platform/automation/automation_object.h"
#include "platform/common_dialog.h"
#include "util/collection_object.h"

namespace zepkit10 {

/// The system's dialogs for opening and saving files, behind plain properties. Texts are passed on
/// as they are; each object has a control of its own.
class FileDialog final : public AutomationObject<FileDialog, FileDialogShim> {
 public:
  FileDialog();

  bool Cancel() const { return cancel_; }
  bool CancelError() const { return cancel_error_; }
  void SetCancelError(bool NewCancelError) { cancel_error_ = NewCancelError; }
  bool CreatePrompt() const { return Has(OFN_CREATEPROMPT); }
  void SetCreatePrompt(bool NewCreatePrompt) { Change(OFN_CREATEPROMPT, NewCreatePrompt); }
  std::u16string DefaultExt() const { return Held().default_ext; }
  void SetDefaultExt(std::u16string_view NewDefaultExt) { Held().default_ext = NewDefaultExt; }
  std::u16string DialogTitle() const { return Held().dialog_title; }
  void SetDialogTitle(std::u16string_view NewDialogTitle) { Held().dialog_title = NewDialogTitle; }
  bool ExtensionDifferent() const { return Has(OFN_EXTENSIONDIFFERENT); }
  bool FileMustExist() const { return Has(OFN_FILEMUSTEXIST); }
  void SetFileMustExist(bool NewFileMustExist) { Change(OFN_FILEMUSTEXIST, NewFileMustExist); }
  std::u16string FileName() const { return Held().file_name; }
  void SetFileName(std::u16string_view NewFileName) { Held().file_name = NewFileName; }
  Ref<Collection> FileNames() const;
  /// `zepErrBadCall` for items that are no strings.
  void SetFileNames(IDispatch* NewFileNames);
  std::u16string FileTitle() const { return Held().file_title; }
  void SetFileTitle(std::u16string_view NewFileTitle) { Held().file_title = NewFileTitle; }
  std::u16string Filter() const { return Held().filter; }
  /// `zepErrBadPropValue` for anything but a list of filters, see `IsFilterList`.
  void SetFilter(std::u16string_view NewFilter);
  std::int32_t FilterIndex() const { return Held().filter_index; }
  /// `zepErrBadPropValue` outside the 16-bit range.
  void SetFilterIndex(std::int32_t NewFilterIndex);
  bool HelpButton() const { return Has(OFN_SHOWHELP); }
  void SetHelpButton(bool NewHelpButton) { Change(OFN_SHOWHELP, NewHelpButton); }
  ZepFDHelpCommand HelpCommand() const { return ZepFDHelpCommand{Held().help_command}; }
  /// Error 6 outside the 16-bit range; every other value is passed on.
  void SetHelpCommand(ZepFDHelpCommand NewHelpCommand);
  std::int32_t HelpContext() const { return Held().help_context; }
  void SetHelpContext(std::int32_t NewHelpContext) { Held().help_context = NewHelpContext; }
  std::u16string HelpFile() const { return Held().help_file; }
  void SetHelpFile(std::u16string_view NewHelpFile) { Held().help_file = NewHelpFile; }
  std::u16string HelpKey() const { return Held().help_key; }
  void SetHelpKey(std::u16string_view NewHelpKey) { Held().help_key = NewHelpKey; }
  bool HideReadOnly() const { return Has(OFN_HIDEREADONLY); }
  void SetHideReadOnly(bool NewHideReadOnly) { Change(OFN_HIDEREADONLY, NewHideReadOnly); }
  std::u16string InitDir() const { return Held().init_dir; }
  void SetInitDir(std::u16string_view NewInitDir) { Held().init_dir = NewInitDir; }
  bool LongNames() const { return Has(OFN_LONGNAMES); }
  void SetLongNames(bool NewLongNames) { Change(OFN_LONGNAMES, NewLongNames); }
  std::int32_t MaxFileSize() const { return Held().max_file_size; }
  /// Error 6 outside the 16-bit range, error 380 below 1.
  void SetMaxFileSize(std::int32_t NewMaxFileSize);
  bool Multiselect() const { return Has(OFN_ALLOWMULTISELECT); }
  void SetMultiselect(bool NewMultiselect) { Change(OFN_ALLOWMULTISELECT, NewMultiselect); }
  bool NoChangeDir() const { return Has(OFN_NOCHANGEDIR); }
  void SetNoChangeDir(bool NewNoChangeDir) { Change(OFN_NOCHANGEDIR, NewNoChangeDir); }
  bool NoDereferenceLinks() const { return Has(OFN_NODEREFERENCELINKS); }
  void SetNoDereferenceLinks(bool NewNoDereferenceLinks) {
    Change(OFN_NODEREFERENCELINKS, NewNoDereferenceLinks);
  }
  bool NoLongNames() const { return Has(OFN_NOLONGNAMES); }
  void SetNoLongNames(bool NewNoLongNames) { Change(OFN_NOLONGNAMES, NewNoLongNames); }
  bool NoReadOnlyReturn() const { return Has(OFN_NOREADONLYRETURN); }
  void SetNoReadOnlyReturn(bool NewNoReadOnlyReturn) {
    Change(OFN_NOREADONLYRETURN, NewNoReadOnlyReturn);
  }
  bool NoValidate() const { return Has(OFN_NOVALIDATE); }
  void SetNoValidate(bool NewNoValidate) { Change(OFN_NOVALIDATE, NewNoValidate); }
  bool OverwritePrompt() const { return Has(OFN_OVERWRITEPROMPT); }
  void SetOverwritePrompt(bool NewOverwritePrompt) {
    Change(OFN_OVERWRITEPROMPT, NewOverwritePrompt);
  }
  bool PathMustExist() const { return Has(OFN_PATHMUSTEXIST); }
  void SetPathMustExist(bool NewPathMustExist) { Change(OFN_PATHMUSTEXIST, NewPathMustExist); }
  bool ReadOnly() const { return Has(OFN_READONLY); }
  void SetReadOnly(bool NewReadOnly) { Change(OFN_READONLY, NewReadOnly); }
  bool ShareAware() const { return Has(OFN_SHAREAWARE); }
  void SetShareAware(bool NewShareAware) { Change(OFN_SHAREAWARE, NewShareAware); }
  /// Show a dialog until its user closes it. `zepErrCdlCancel` if it ends without a file, for
  /// whatever reason, and `CancelError` is true.
  void ShowOpen();
  void ShowSave();

 private:
  CommonDialogProperties& Held() { return control_.Properties(); }
  const CommonDialogProperties& Held() const { return control_.Properties(); }
  bool Has(std::uint32_t flag) const { return (Held().flags & flag) != 0; }
  void Change(std::uint32_t flag, bool on) {
    Held().flags = on ? Held().flags | flag : Held().flags & ~flag;
  }
  void Show(bool (CommonDialog::*dialog)()) noexcept;
  void RaiseIfCancelled() const;

  CommonDialog control_;
  bool cancel_ = false;
  bool cancel_error_ = true;
};

}  // namespace zepkit10

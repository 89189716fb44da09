#include "doc/doc_hand_object.h"

#include "doc/file_dialog_object.h"
#include "doc/title.h"

namespace zepkit10 {
namespace {

using enum ZepErrors;
using enum ZepDocHandStat;

// Of all new documents of the process.
constinit TagCounter untitled_numbers(1);

/// The text of an optional argument; nothing where it was left out.
std::optional<std::u16string> TextGiven(const VARIANT& argument) {
  if (IsMissing(&argument)) return {};
  auto text = ConvertToText(argument);
  if (!text) RaiseZepError(zepErrBadParam, DocHand::ClassName());
  return text;
}

/// A name with a NUL inside would name another file.
void EnsureIsName(std::u16string_view name) {
  if (name.find(u'\0') != name.npos) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrBadFileNameOrNumber);
  }
}

}  // namespace

DocHand::DocHand()
    : AutomationObject(&events_), dialog_(Make<FileDialog>()), content_(Make<ZepVariant>()) {
  dialog_->SetDefaultExt(u".txt");
  dialog_->SetCancelError(false);
  ListenTo(*content_);
}

DocHand::~DocHand() = default;

void DocHand::SetChanged(bool NewChanged) {
  SetFlag(zepDocHandStatChanged, NewChanged);
  if (!EventsFrozen() && !Internal()) events_.ContentChange();
}

void DocHand::CloseFile() {
  EnsureOpened();
  file_.Close();
  SetFlag(zepDocHandStatOpen, false);
  SetReadOnly(false);
  if (!EventsFrozen()) events_.FileClose();
}

void DocHand::SetContent(::_ZepVariant* NewContent) {
  EnsureWritable();
  if (!NewContent) Raise(zepErrBadPropValue);
  ZepVariant* content = ZepVariant::From(NewContent);
  if (!content) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  ListenTo(*content);
  content_ = Ref(content);
  SetChanged(true);
}

void DocHand::SetFileTitle(std::u16string_view NewFileTitle) {
  file_title_ = NewFileTitle;
  if (!EventsFrozen()) events_.FileTitleChanged(NewFileTitle);
}

std::u16string DocHand::Filter() const { return dialog_->Filter(); }

void DocHand::SetFilter(std::u16string_view NewFilter) { dialog_->SetFilter(NewFilter); }

std::int32_t DocHand::FilterIndex() const { return dialog_->FilterIndex(); }

void DocHand::SetFilterIndex(std::int32_t NewFilterIndex) {
  dialog_->SetFilterIndex(NewFilterIndex);
}

void DocHand::NewFile() {
  if (Opened()) CloseFile();
  SetReadOnly(false);
  Content()->SetByteLength(0);
  SetFileTitle(UntitledTitle(untitled_numbers));
  SetChanged(false);
  if (!EventsFrozen()) events_.NewFile();
}

void DocHand::OpenFile(std::u16string_view FileName, bool ReadOnly) {
  EnsureIsName(FileName);
  if (Opened()) CloseFile();
  FreezeEvents(true);
  SetFlag(zepDocHandStatOpenErr, false);
  FreezeEvents(false);
  SetFileName(FileName);
  SetReadOnly(ReadOnly);
  OpenFileReally();
  UpdateFromDisk();
  if (!EventsFrozen()) events_.FileOpen(FileName);
}

void DocHand::OpenFileByCdl(const VARIANT& InitDir, const VARIANT& InitFileName, bool ShowReadOnly,
                            bool InitReadOnly) {
  const auto folder = TextGiven(InitDir), name = TextGiven(InitFileName);
  dialog_->SetHideReadOnly(!ShowReadOnly);
  dialog_->SetReadOnly(InitReadOnly);
  if (folder) dialog_->SetInitDir(*folder);
  if (name) dialog_->SetFileName(*name);
  dialog_->ShowOpen();
  if (dialog_->Cancel()) Raise(zepErrCdlCancel);
  OpenFile(dialog_->FileName(), dialog_->ReadOnly());
}

void DocHand::SaveAs(std::u16string_view FileName) {
  EnsureWritable();
  EnsureIsName(FileName);
  if (Opened()) CloseFile();
  SetFileName(FileName);
  SetReadOnly(false);
  OpenFileReally();
  Save();
  if (!EventsFrozen()) events_.FileSavedAs(FileName);
}

void DocHand::SaveAsByCdl(const VARIANT& InitDir, const VARIANT& InitFileName,
                          const VARIANT& DefaultExt) {
  EnsureWritable();
  const auto folder = TextGiven(InitDir), name = TextGiven(InitFileName),
             extension = TextGiven(DefaultExt);
  if (folder) dialog_->SetInitDir(*folder);
  if (extension) dialog_->SetDefaultExt(*extension);
  if (name) dialog_->SetFileName(*name);
  dialog_->ShowSave();
  if (dialog_->Cancel()) Raise(zepErrCdlCancel);
  SaveAs(dialog_->FileName());
}

void DocHand::ListenTo(ZepVariant& content) {
  ContentOwner& owner = *this;
  connection_ = std::make_unique<ContentConnection>(content, owner);
}

void DocHand::ContentChanged() {
  if (!Internal()) SetChanged(true);
}

void DocHand::BeforeContentROChange(bool new_value, bool& cancel) {
  if (new_value != ReadOnly() && !Internal()) cancel = true;
}

bool DocHand::Has(ZepDocHandStat flag) const {
  return (static_cast<std::int32_t>(status_) & static_cast<std::int32_t>(flag)) != 0;
}

void DocHand::SetStatus(ZepDocHandStat status) {
  const ZepDocHandStat old = std::exchange(status_, status);
  if (old != status && !EventsFrozen()) events_.StatusChange(status);
}

void DocHand::SetFlag(ZepDocHandStat flag, bool set) {
  const auto all = static_cast<std::int32_t>(status_), one = static_cast<std::int32_t>(flag);
  SetStatus(static_cast<ZepDocHandStat>(set ? all | one : all & ~one));
}

void DocHand::SetReadOnly(bool read_only) {
  SetFlag(zepDocHandStatReadOnly, read_only);
  Content()->SetReadOnly(read_only);
}

void DocHand::SetFileName(std::u16string_view name) {
  file_name_ = name;
  FreezeEvents(true);
  SetFileTitle(TitleOf(name));
  FreezeEvents(false);
  if (!EventsFrozen()) events_.FileNameChange(name);
  if (!EventsFrozen()) events_.FileTitleChanged(name);
}

void DocHand::EnsureWritable() const {
  if (ReadOnly()) Raise(zepErrReadOnly);
}

void DocHand::EnsureOpened() const {
  if (!Opened()) Raise(zepErrBadCallContext);
}

}  // namespace zepkit10

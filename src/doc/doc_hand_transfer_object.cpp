// How a document's file is opened, read into the content and written from it. The class itself is
// in doc_hand_object.cpp.
#include "doc/doc_hand_object.h"
#include "doc/file_dialog_object.h"
#include "doc/progress.h"
#include "doc/title.h"
#include "platform/hourglass.h"

namespace zepkit10 {

using enum ZepErrors;
using enum ZepDocHandStat;

namespace {

/// A transfer with its hourglass. The first step that fails restores the pointer and is done once
/// more; what fails then, or later, reaches the client.
class Transfer {
 public:
  template <class Step>
  void Do(Step&& step) {
    if (!armed_) return step();
    try {
      return step();
    } catch (...) {
      armed_ = false;
      hourglass_.Restore();
    }
    step();
  }

 private:
  Hourglass hourglass_;
  bool armed_ = true;
};

/// The content may have been cut by a handler since its length was taken.
std::uint8_t ByteAt(const Bytes& bytes, std::int32_t position) {
  if (static_cast<std::size_t>(position) > bytes.size()) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrSubscriptOutOfRange);
  }
  return bytes[static_cast<std::size_t>(position) - 1];
}

}  // namespace

void DocHand::OpenFileReally() {
  dialog_->SetInitDir(FolderOf(file_name_));
  dialog_->SetFileName(NameOf(file_name_));
  try {
    OpenAgain();
  } catch (...) {
    SetFlag(zepDocHandStatOpenErr, true);
    Raise(zepErrOpenFile);
  }
  SetFlag(zepDocHandStatOpen, true);
}

void DocHand::OpenAgain() {
  file_.Open(file_name_,
             ReadOnly() ? DocumentFile::Access::kRead : DocumentFile::Access::kReadWrite);
}

void DocHand::UpdateFromDisk() {
  EnsureOpened();
  Transfer transfer;
  OperateInternally(true);
  transfer.Do([&] { Content()->SetReadOnly(false); });
  std::int32_t length = 0;
  transfer.Do([&] { length = file_.Length(); });
  Bytes bytes;
  transfer.Do([&] { bytes.resize(static_cast<std::size_t>(length)); });
  if (!EventsFrozen()) events_.FilePartlyRead(length, 0, 0);
  for (std::int32_t i = 1; i <= length; ++i) {
    transfer.Do([&] { bytes[static_cast<std::size_t>(i) - 1] = file_.Read(i); });
    if (i % kReportInterval == 0 && !EventsFrozen()) {
      transfer.Do([&] { events_.FilePartlyRead(length, i, PercentageDone(i, length)); });
    }
  }
  transfer.Do([&] { Content()->SetData(bytes); });
  bytes = {};
  transfer.Do([&] { Content()->SetReadOnly(ReadOnly()); });
  OperateInternally(false);
  SetChanged(false);
  if (!EventsFrozen()) events_.FilePartlyRead(length, length, 100);
  if (!EventsFrozen()) events_.FileRead();
}

void DocHand::Save() {
  EnsureWritable();
  EnsureOpened();
  Transfer transfer;
  const std::int32_t length = content_->ByteLength();
  file_.Close();
  transfer.Do([&] { DocumentFile::Empty(file_name_); });
  transfer.Do([&] { OpenAgain(); });
  OperateInternally(true);
  if (!EventsFrozen()) events_.FilePartlyWritten(length, 0, 0);
  Bytes bytes;
  transfer.Do([&] { bytes = content_->Data(); });
  for (std::int32_t i = 1; i <= length; ++i) {
    transfer.Do([&] { file_.Write(i, ByteAt(bytes, i)); });
    if (i % kReportInterval == 0 && !EventsFrozen()) {
      transfer.Do([&] { events_.FilePartlyWritten(length, i, PercentageDone(i, length)); });
    }
  }
  bytes = {};
  OperateInternally(false);
  SetChanged(false);
  if (!EventsFrozen()) events_.FilePartlyWritten(length, length, 100);
  if (!EventsFrozen()) events_.FileSaved();
}

}  // namespace zepkit10

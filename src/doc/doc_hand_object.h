#pragma once

#include <memory>
#include <string>

#include "buffer/zep_variant_object.h"
#include "doc/content_listener_object.h"
#include "doc_hand_events.h"
#include "doc_hand_shim.h"
#include "platform/automation/automation_object.h"
#include "platform/document_file.h"

namespace zepkit10 {

class FileDialog;

/// A document: a file that stays open, its bytes in a buffer, and a set of states. Whatever changes
/// is told in events. The content is read-only exactly when the document is.
class DocHand final : public AutomationObject<DocHand, DocHandShim>, private ContentOwner {
 public:
  DocHand();
  ~DocHand() override;

  bool Changed() const { return Has(ZepDocHandStat::zepDocHandStatChanged); }
  void SetChanged(bool NewChanged);
  void CloseFile();
  Ref<ZepVariant> Content() const { return content_; }
  void SetContent(::_ZepVariant* NewContent);
  std::u16string FileName() const { return file_name_; }
  std::u16string FileTitle() const { return file_title_; }
  void SetFileTitle(std::u16string_view NewFileTitle);
  std::u16string Filter() const;
  void SetFilter(std::u16string_view NewFilter);
  std::int32_t FilterIndex() const;
  void SetFilterIndex(std::int32_t NewFilterIndex);
  void NewFile();
  bool Opened() const { return Has(ZepDocHandStat::zepDocHandStatOpen); }
  bool OpenErr() const { return Has(ZepDocHandStat::zepDocHandStatOpenErr); }
  void OpenFile(std::u16string_view FileName, bool ReadOnly);
  void OpenFileByCdl(const VARIANT& InitDir, const VARIANT& InitFileName, bool ShowReadOnly,
                     bool InitReadOnly);
  bool ReadOnly() const { return Has(ZepDocHandStat::zepDocHandStatReadOnly); }
  void Save();
  void SaveAs(std::u16string_view FileName);
  void SaveAsByCdl(const VARIANT& InitDir, const VARIANT& InitFileName, const VARIANT& DefaultExt);
  ZepDocHandStat Status() const { return status_; }
  void UpdateFromDisk();

 private:
  void ListenTo(ZepVariant& content);
  void ContentChanged() override;
  void BeforeContentROChange(bool new_value, bool& cancel) override;
  void RetainOwner() override { Retain(); }
  void DropOwner() override { Drop(); }

  bool Has(ZepDocHandStat flag) const;
  void SetStatus(ZepDocHandStat status);
  void SetFlag(ZepDocHandStat flag, bool set);
  void SetReadOnly(bool read_only);
  void SetFileName(std::u16string_view name);
  void EnsureWritable() const;
  void EnsureOpened() const;

  void OpenFileReally();
  void OpenAgain();

  /// Begin and end of what holds back events, and of what the document itself does with its
  /// content. They nest, and an error between them leaves them begun.
  void FreezeEvents(bool begin) { events_frozen_ += begin ? 1 : -1; }
  void OperateInternally(bool begin) { internal_operations_ += begin ? 1 : -1; }
  bool EventsFrozen() const { return events_frozen_ >= 1; }
  bool Internal() const { return internal_operations_ >= 1; }

  DocHandEvents events_{*this};
  const Ref<FileDialog> dialog_;
  std::u16string file_name_;
  DocumentFile file_;
  std::u16string file_title_;
  std::int32_t internal_operations_ = 0;
  ZepDocHandStat status_{};
  std::int32_t events_frozen_ = 0;
  Ref<ZepVariant> content_;
  std::unique_ptr<ContentConnection> connection_;
};

}  // namespace zepkit10

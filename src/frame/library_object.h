#pragma once

#include <string>

#include "debug/indentation.h"
#include "frame/utility_members_object.h"
#include "library_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

class Charts;
class DebugPrintOuts;
class Keyboard;
class List;
class Messages;
class MousePointer;
class VarSets;

/// The root that owns the library's long-lived objects, each created on its first read.
class Library final : public AutomationObject<Library, LibraryShim>, public UtilityMembers {
 public:
  Library();
  ~Library() override;

  Ref<zepkit10::Charts> Charts();
  Ref<List> CommandLine();
  void DebugPrint(std::u16string_view Text, bool OmitCrLf);
  Ref<zepkit10::DebugPrintOuts> DebugPrintOuts();
  Ref<Messages> GlobalMessages();
  Ref<zepkit10::Keyboard> Keyboard();
  std::u16string LogFile() const { return log_file_; }
  void SetLogFile(std::u16string_view NewLogFile) { log_file_ = NewLogFile; }
  void LogText(std::u16string_view Text) const;
  Ref<zepkit10::VarSets> VarSets();
  Ref<MousePointer> ZepMousePointer() const;

  /// Empties and releases the objects, in their order. What fails on the way is not reported.
  void TearDown() noexcept;

 private:
  Ref<zepkit10::Charts> charts_;
  Ref<List> command_line_;
  Ref<zepkit10::DebugPrintOuts> debug_print_outs_;
  Ref<Messages> global_messages_;
  Ref<zepkit10::Keyboard> keyboard_;
  Ref<zepkit10::VarSets> var_sets_;
  Indentation indentation_;
  std::u16string log_file_;
};

}  // namespace zepkit10

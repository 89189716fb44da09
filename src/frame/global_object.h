#pragma once

#include <string>

#include "frame/shared_library_object.h"
#include "frame/utility_members_object.h"
#include "global_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

class Charts;
class DebugPrintOuts;
class Keyboard;
class List;
class Messages;
class MousePointer;
class VarSets;

/// The application object. Its objects are those of the shared `Library`.
class Global final : public AutomationObject<Global, GlobalShim>, public UtilityMembers {
 public:
  Global();
  ~Global() override;

  Ref<zepkit10::Charts> Charts() const;
  Ref<List> CommandLine() const;
  void DebugPrint(std::u16string_view Text, bool OmitCrLf) const;
  Ref<zepkit10::DebugPrintOuts> DebugPrintOuts() const;
  Ref<Messages> GlobalMessages() const;
  Ref<zepkit10::Keyboard> Keyboard() const;
  std::u16string LogFile() const;
  void SetLogFile(std::u16string_view NewLogFile) const;
  void LogText(std::u16string_view Text) const;
  Ref<zepkit10::VarSets> VarSets() const;
  Ref<Library> Zep() const;
  Ref<MousePointer> ZepMousePointer() const;

 private:
  const UserCount user_;
};

}  // namespace zepkit10

#include "frame/global_object.h"

#include "chart/charts_object.h"
#include "debug/debug_print_outs_object.h"
#include "frame/library_object.h"
#include "input/keyboard_object.h"
#include "input/mouse_pointer_object.h"
#include "msg/messages_object.h"
#include "util/list_object.h"
#include "vars/var_sets_object.h"

namespace zepkit10 {

Global::Global() = default;

Global::~Global() = default;

Ref<Charts> Global::Charts() const { return GetSharedLibrary()->Charts(); }

Ref<List> Global::CommandLine() const { return GetSharedLibrary()->CommandLine(); }

void Global::DebugPrint(std::u16string_view Text, bool OmitCrLf) const {
  GetSharedLibrary()->DebugPrint(Text, OmitCrLf);
}

Ref<DebugPrintOuts> Global::DebugPrintOuts() const { return GetSharedLibrary()->DebugPrintOuts(); }

Ref<Messages> Global::GlobalMessages() const { return GetSharedLibrary()->GlobalMessages(); }

Ref<Keyboard> Global::Keyboard() const { return GetSharedLibrary()->Keyboard(); }

std::u16string Global::LogFile() const { return GetSharedLibrary()->LogFile(); }

void Global::SetLogFile(std::u16string_view NewLogFile) const {
  GetSharedLibrary()->SetLogFile(NewLogFile);
}

void Global::LogText(std::u16string_view Text) const { GetSharedLibrary()->LogText(Text); }

Ref<VarSets> Global::VarSets() const { return GetSharedLibrary()->VarSets(); }

Ref<Library> Global::Zep() const { return GetSharedLibrary(); }

Ref<MousePointer> Global::ZepMousePointer() const { return GetSharedLibrary()->ZepMousePointer(); }

}  // namespace zepkit10

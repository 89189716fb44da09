#include "frame/library_object.h"

#include <windows.h>

#include "chart/charts_object.h"
#include "debug/debug_print_outs_object.h"
#include "input/keyboard_object.h"
#include "input/mouse_pointer_object.h"
#include "msg/messages_object.h"
#include "util/list_object.h"
#include "util/log_file_object.h"
#include "vars/var_sets_object.h"

namespace zepkit10 {
namespace {

template <class Singleton>
Ref<Singleton> Once(Ref<Singleton>& held) {
  if (!held) held = Make<Singleton>();
  return held;
}

template <class Collection>
void Empty(Ref<Collection>& held) noexcept try {
  if (const Ref<Collection> collection = std::exchange(held, nullptr)) collection->Shutdown();
} catch (...) {
}

Ref<List> ListOfCommandLine() {
  auto list = Make<List>();
  list->SetQuoteBegin(u"\"");
  list->SetQuoteEnd(u"\"");
  list->SetListString(ViewOf(std::wstring_view(GetCommandLineW())));
  return list;
}

}  // namespace

Library::Library() = default;

Library::~Library() { TearDown(); }

Ref<Charts> Library::Charts() { return Once(charts_); }

Ref<List> Library::CommandLine() {
  if (!command_line_) command_line_ = ListOfCommandLine();
  return command_line_;
}

void Library::DebugPrint(std::u16string_view Text, bool OmitCrLf) {
  const Indentation::Line line = indentation_.Compose(Text, OmitCrLf);
  DebugPrintOuts()->Print(line.text);
  indentation_.Commit(line);
}

Ref<DebugPrintOuts> Library::DebugPrintOuts() { return Once(debug_print_outs_); }

Ref<Messages> Library::GlobalMessages() { return Once(global_messages_); }

Ref<Keyboard> Library::Keyboard() { return Once(keyboard_); }

void Library::LogText(std::u16string_view Text) const { AppendToLog(log_file_, Text); }

Ref<VarSets> Library::VarSets() { return Once(var_sets_); }

Ref<MousePointer> Library::ZepMousePointer() const { return Make<MousePointer>(); }

void Library::TearDown() noexcept {
  command_line_ = nullptr;
  global_messages_ = nullptr;
  keyboard_ = nullptr;
  Empty(charts_);
  Empty(var_sets_);
  Empty(debug_print_outs_);
}

}  // namespace zepkit10

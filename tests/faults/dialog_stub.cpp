#include "faults/dialog_stub.h"

#include "com/fault_plan.h"

namespace faults {
namespace {

DialogStub* current = nullptr;

}  // namespace

DialogStub::DialogStub() { current = this; }
DialogStub::~DialogStub() { current = nullptr; }

DialogStub& DialogStub::Type(std::wstring name) {
  typed_ = std::move(name);
  return *this;
}

DialogStub& DialogStub::Press(int button) {
  name_ = std::exchange(typed_, {});
  button_ = button;
  return *this;
}

BOOL WINAPI DialogStub::Answer(OPENFILENAMEW* dialog) {
  const OutsideCall outside;
  if (current->button_ != IDOK) return FALSE;
  std::wstring path = current->name_.empty() ? dialog->lpstrFile : current->name_;
  if (path.find(L':') == path.npos && dialog->lpstrInitialDir) {
    std::wstring folder = dialog->lpstrInitialDir;
    if (!folder.ends_with(L'\\')) folder += L'\\';
    path = folder + path;
  }
  if (path.size() >= dialog->nMaxFile) return FALSE;
  path.copy(dialog->lpstrFile, path.size());
  dialog->lpstrFile[path.size()] = L'\0';
  return TRUE;
}

}  // namespace faults

#pragma once

#include "file_dialog_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

/// The system's dialogs for opening and saving files.
class FileDialog final : public AutomationObject<FileDialog, FileDialogShim> {};

}  // namespace zepkit10

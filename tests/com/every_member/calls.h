#pragma once

#include "com/about_user.h"
#include "com/dialog_driver.h"
#include "com/every_member/call_table.h"
#include "com/target.h"
#include "com/temporary_folder.h"

/// Calls of every member of every class, family by family. The rows of one family stand on their
/// own: they find an object of Global named "global" and leave nothing behind in the library. What
/// is passed to them must outlive their performance.
namespace call_table {

/// Members that Global and Library share; `root` names the object of either.
Rows CallsOfRoots(const std::wstring& root, const TemporaryFolder& folder);
Rows CallsOfAboutBoxes(const std::wstring& root, AboutUser& user);
Rows CallsOfCounters();
Rows CallsOfTerms();
Rows CallsOfVariables();
Rows CallsOfCharts();
Rows CallsOfBuffers();
Rows CallsOfDocuments(const TemporaryFolder& folder, DialogUser& user);
Rows CallsOfFileDialogs(const TemporaryFolder& folder, DialogUser& user);
Rows CallsOfMessages();
Rows CallsOfLists();
/// DebugPrint of either root, and where it prints.
Rows CallsOfTraces(Target& target);
Rows CallsOfKeyboards();
Rows CallsOfMousePointers();

}  // namespace call_table

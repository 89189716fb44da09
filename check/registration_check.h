#pragma once

#include <map>
#include <string>
#include <vector>

#include "registry.h"
#include "report.h"
#include "type_library.h"

namespace zepcheck {

/// What is registered for all users or for one, and whether it agrees with what should be.
class RegistrationCheck {
 public:
  RegistrationCheck(const TypeLibrary& expected, const Place& place, Report& report)
      : expected_(expected), place_(place), report_(report) {}

  /// Tells what is there, and every fault. Nothing at all is none. Returns whether there is any.
  bool Run();

  /// Whether a class is registered there, and where its DLL is.
  static bool IsRegistered(const TypeLibrary& expected, const Place& place, std::wstring* dll);

 private:
  void CheckClass(const ClassOfLibrary& described);
  void CheckProgId(const ClassOfLibrary& described, const std::wstring& prog_id);
  void CheckValue(const std::wstring& key, const wchar_t* name, const std::wstring& expected);
  void CheckFiles();
  void CheckFile(const std::wstring& path);
  void CheckTypeLibrary();
  void Fault(const std::wstring& sentence) { Fault(sentence, Again()); }
  void Fault(const std::wstring& sentence, const std::wstring& advice);
  /// The advice to register again.
  std::wstring Again() const;

  const TypeLibrary& expected_;
  const Place place_;
  Report& report_;
  std::vector<std::wstring> missing_;  // names of classes
  // Names of classes by their DLL.
  std::map<std::wstring, std::vector<std::wstring>> files_;
};

}  // namespace zepcheck

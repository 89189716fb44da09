#pragma once

#include "frame/utility_members_object.h"
#include "library_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

class Charts;
class VarSets;

/// The root that owns the library's long-lived collections, each created on its first read.
class Library final : public AutomationObject<Library, LibraryShim>, public UtilityMembers {
 public:
  Library();
  ~Library() override;

  Ref<zepkit10::Charts> Charts();
  Ref<zepkit10::VarSets> VarSets();

  /// Empties and releases the collections, in their order. What fails on the way is not reported.
  void TearDown() noexcept;

 private:
  Ref<zepkit10::Charts> charts_;
  Ref<zepkit10::VarSets> var_sets_;
};

}  // namespace zepkit10

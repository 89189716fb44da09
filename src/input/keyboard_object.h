#pragma once

#include "frame/shared_library_object.h"
#include "keyboard_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

/// The keyboard as the calling thread's messages have left it, and two settings that all programs
/// share.
class Keyboard final : public AutomationObject<Keyboard, KeyboardShim> {
 public:
  bool Alternate() const { return IsDown(VK_MENU); }
  bool CapsLock() const { return IsOn(VK_CAPITAL); }
  bool CapsLockDown() const { return IsDown(VK_CAPITAL); }
  bool Control() const { return IsDown(VK_CONTROL); }
  bool Insert() const { return IsOn(VK_INSERT); }
  bool InsertDown() const { return IsDown(VK_INSERT); }
  bool KeyDown(ZepVirtualKeys VirtualKey) const { return IsDown(static_cast<int>(VirtualKey)); }
  bool KeyOn(ZepVirtualKeys VirtualKey) const { return IsOn(static_cast<int>(VirtualKey)); }
  bool LAlternate() const { return IsDown(VK_LMENU); }
  bool LControl() const { return IsDown(VK_LCONTROL); }
  bool LShift() const { return IsDown(VK_LSHIFT); }
  bool NumLock() const { return IsOn(VK_NUMLOCK); }
  bool NumLockDown() const { return IsDown(VK_NUMLOCK); }
  bool RAlternate() const { return IsDown(VK_RMENU); }
  bool RControl() const { return IsDown(VK_RCONTROL); }
  bool RShift() const { return IsDown(VK_RSHIFT); }
  bool ScrollLock() const { return IsOn(VK_SCROLL); }
  bool ScrollLockDown() const { return IsDown(VK_SCROLL); }
  bool Shift() const { return IsDown(VK_SHIFT); }

  /// Settings of the system: `zepErrUnexpected` if it refuses.
  ZepKbdDelay Delay() const;
  /// `zepErrBadCall` outside the enumeration.
  void SetDelay(ZepKbdDelay NewDelay) const;
  bool Preference() const;
  void SetPreference(bool NewPreference) const;

  /// Whether later changes of a setting are broadcast to all programs.
  bool Notify() const { return notify_; }
  void SetNotify(bool NewNotify) { notify_ = NewNotify; }
  /// Whether later changes of a setting are written to the user profile.
  bool SaveChanges() const { return save_changes_; }
  void SetSaveChanges(bool NewSaveChanges) { save_changes_ = NewSaveChanges; }

  Ref<Library> Parent() const;

 private:
  static bool IsDown(int key);
  static bool IsOn(int key);
  void Change(UINT setting, UINT value) const;

  const UserCount user_;
  bool notify_ = true;
  bool save_changes_ = true;
};

}  // namespace zepkit10

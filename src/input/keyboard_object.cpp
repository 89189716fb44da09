#include "input/keyboard_object.h"

#include "frame/library_object.h"

namespace zepkit10 {

using enum ZepErrors;

bool Keyboard::IsDown(int key) { return (GetKeyState(key) & 0x80) != 0; }

bool Keyboard::IsOn(int key) { return (GetKeyState(key) & 1) != 0; }

ZepKbdDelay Keyboard::Delay() const {
  std::int32_t delay = 0;
  if (!SystemParametersInfoA(SPI_GETKEYBOARDDELAY, 0, &delay, 0)) Raise(zepErrUnexpected);
  return ZepKbdDelay{delay};
}

void Keyboard::SetDelay(ZepKbdDelay NewDelay) const {
  using enum ZepKbdDelay;
  if (NewDelay < zepKbdDelay250ms || NewDelay > zepKbdDelay1000ms) Raise(zepErrBadCall);
  Change(SPI_SETKEYBOARDDELAY, static_cast<UINT>(NewDelay));
}

bool Keyboard::Preference() const {
  BOOL preference = FALSE;
  if (!SystemParametersInfoA(SPI_GETKEYBOARDPREF, 0, &preference, 0)) Raise(zepErrUnexpected);
  return preference;
}

void Keyboard::SetPreference(bool NewPreference) const {
  Change(SPI_SETKEYBOARDPREF, NewPreference);
}

void Keyboard::Change(UINT setting, UINT value) const {
  UINT update = 0;
  if (save_changes_) update |= SPIF_UPDATEINIFILE;
  if (notify_) update |= SPIF_SENDCHANGE;
  if (!SystemParametersInfoA(setting, value, nullptr, update)) Raise(zepErrUnexpected);
}

Ref<Library> Keyboard::Parent() const { return GetSharedLibrary(); }

}  // namespace zepkit10

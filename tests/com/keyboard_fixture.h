#pragma once

#include "com/both_roots.h"

inline constexpr BYTE kDown = 0x80, kOn = 0x01;

/// The keyboard that a root hands out.
class KeyboardTest : public BothRoots {
 protected:
  client::Object keyboard_ = root_.GetObject(L"Keyboard");
};

/// A member that tells one bit of the state of one key.
struct KeyMember {
  const wchar_t* name;
  BYTE bit;
  int key;
};

inline constexpr KeyMember kMembers[] = {
    {L"Alternate", kDown, 18},       {L"CapsLock", kOn, 20},       {L"CapsLockDown", kDown, 20},
    {L"Control", kDown, 17},         {L"Insert", kOn, 45},         {L"InsertDown", kDown, 45},
    {L"LAlternate", kDown, 164},     {L"LControl", kDown, 162},    {L"LShift", kDown, 160},
    {L"NumLock", kOn, 144},          {L"NumLockDown", kDown, 144}, {L"RAlternate", kDown, 165},
    {L"RControl", kDown, 163},       {L"RShift", kDown, 161},      {L"ScrollLock", kOn, 145},
    {L"ScrollLockDown", kDown, 145}, {L"Shift", kDown, 16},
};

/// The keys of this thread, left as they were.
class Keys {
 public:
  Keys() { GetKeyboardState(before_); }
  ~Keys() { SetKeyboardState(before_); }
  Keys(const Keys&) = delete;
  Keys& operator=(const Keys&) = delete;

  /// Puts one key into a state and all others up and off.
  static void Only(int key, BYTE state) {
    BYTE keys[256] = {};
    keys[key] = state;
    EXPECT_TRUE(SetKeyboardState(keys));
  }

 private:
  BYTE before_[256] = {};
};

/// The settings of the keyboard, left as they were.
class Settings {
 public:
  Settings() : delay_(Read(SPI_GETKEYBOARDDELAY)), preference_(Read(SPI_GETKEYBOARDPREF)) {}
  ~Settings() {
    SystemParametersInfoA(SPI_SETKEYBOARDDELAY, static_cast<UINT>(delay_), nullptr, 0);
    SystemParametersInfoA(SPI_SETKEYBOARDPREF, static_cast<UINT>(preference_), nullptr, 0);
  }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  static int Read(UINT setting) {
    int value = 0;
    EXPECT_TRUE(SystemParametersInfoA(setting, 0, &value, 0));
    return value;
  }

 private:
  const int delay_, preference_;
};

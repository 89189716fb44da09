// The state of keys, set for the test's own thread, and the settings of the keyboard.
#include "com/apartment.h"
#include "com/keyboard_fixture.h"

namespace {

using client::Object;
using client::Value;
using component::InNewApartment;

TEST_P(KeyboardTest, EachMemberTellsItsKey) {
  const Keys keys;
  for (const KeyMember& pressed : kMembers) {
    for (const BYTE state : {BYTE{0}, kDown, kOn, BYTE{kDown | kOn}}) {
      Keys::Only(pressed.key, state);
      for (const KeyMember& member : kMembers) {
        EXPECT_EQ(keyboard_.Get(member.name),
                  member.key == pressed.key && (state & member.bit) != 0)
            << member.name << ", key " << pressed.key << " in state " << int{state};
      }
    }
  }
}

TEST_P(KeyboardTest, KeyDownAndKeyOnTellAnyKey) {
  const Keys keys;
  for (int key = 1; key < 256; ++key) {
    for (const BYTE state : {BYTE{0}, kDown, kOn, BYTE{kDown | kOn}}) {
      Keys::Only(key, state);
      EXPECT_EQ(keyboard_.Get(L"KeyDown", {key}), (state & kDown) != 0) << key;
      EXPECT_EQ(keyboard_.Get(L"KeyOn", {key}), (state & kOn) != 0) << key;
      EXPECT_EQ(keyboard_.Get(L"KeyDown", {256 - key}), key == 128 && (state & kDown)) << key;
    }
  }
}

TEST_P(KeyboardTest, KeysAreThoseOfTheCallingThread) {
  const Keys keys;
  const auto expect = [](const Object& keyboard, bool shift, bool caps_lock) {
    EXPECT_EQ(keyboard.Get(L"Shift"), shift);
    EXPECT_EQ(keyboard.Get(L"CapsLock"), caps_lock);
  };
  Keys::Only(VK_SHIFT, kDown);
  InNewApartment([&] {
    const Object global(component::Create<IDispatch>(CLSID_Global).Get(), root_.binding());
    const Object keyboard = global.GetObject(L"Keyboard");
    expect(keyboard, false, false);
    Keys::Only(VK_CAPITAL, kOn);
    expect(keyboard, false, true);
  });
  expect(keyboard_, true, false);
}

TEST_P(KeyboardTest, MembersAgreeOnKeysThatAreStruck) {
  const Keys keys;
  const auto agree = [this](bool shift, bool caps_lock) {
    EXPECT_EQ(keyboard_.Get(L"Shift"), shift);
    EXPECT_EQ(keyboard_.Get(L"KeyDown", {static_cast<int>(zepVKShift)}), shift);
    EXPECT_EQ(keyboard_.Get(L"CapsLock"), caps_lock);
    EXPECT_EQ(keyboard_.Get(L"KeyOn", {static_cast<int>(zepVKCapital)}), caps_lock);
  };
  const bool before = keyboard_.Get(L"CapsLock") == true;
  for (const bool caps_lock : {!before, before}) {
    keybd_event(VK_CAPITAL, 0, 0, 0);
    EXPECT_EQ(keyboard_.Get(L"CapsLockDown"), true);
    keybd_event(VK_CAPITAL, 0, KEYEVENTF_KEYUP, 0);
    EXPECT_EQ(keyboard_.Get(L"CapsLockDown"), false);
    keybd_event(VK_SHIFT, 0, 0, 0);
    agree(true, caps_lock);
    keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
    agree(false, caps_lock);
  }
}

TEST_P(KeyboardTest, CodesWithoutAKeyAreNoError) {
  for (const int code : {0, -1, 255, 256, 32768, INT_MAX, INT_MIN}) {
    EXPECT_OK(keyboard_.Get(L"KeyDown", {code}));
    EXPECT_OK(keyboard_.Get(L"KeyOn", {code}));
  }
}

TEST_P(KeyboardTest, StartsByTellingAndSavingChanges) {
  InNewApartment([this] {
    const Object global(component::Create<IDispatch>(CLSID_Global).Get(), root_.binding());
    const Object keyboard = global.GetObject(L"Keyboard");
    EXPECT_EQ(keyboard.Get(L"Notify"), true);
    EXPECT_EQ(keyboard.Get(L"SaveChanges"), true);
  });
}

TEST_P(KeyboardTest, SettingsAreTheSystems) {
  const Settings settings;
  for (const wchar_t* name : {L"Notify", L"SaveChanges"}) EXPECT_OK(keyboard_.Let(name, {false}));
  for (const int delay : {3, 1, 2, 0}) {
    EXPECT_OK(keyboard_.Let(L"Delay", {delay}));
    EXPECT_EQ(keyboard_.Get(L"Delay"), delay);
    EXPECT_EQ(delay, Settings::Read(SPI_GETKEYBOARDDELAY));
  }
  for (const bool preference : {true, false}) {
    EXPECT_OK(keyboard_.Let(L"Preference", {preference}));
    EXPECT_EQ(keyboard_.Get(L"Preference"), preference);
    EXPECT_EQ(preference, Settings::Read(SPI_GETKEYBOARDPREF) != 0);
  }
  for (const wchar_t* name : {L"Notify", L"SaveChanges"}) EXPECT_OK(keyboard_.Let(name, {true}));
}

TEST_P(KeyboardTest, OtherDelaysAreRefused) {
  const Settings settings;
  const int before = Settings::Read(SPI_GETKEYBOARDDELAY);
  for (const int delay : {4, -1, 250, 65536, INT_MAX, INT_MIN}) {
    EXPECT_ZEP_ERROR(keyboard_.Let(L"Delay", {delay}), zepErrBadCall, L"Keyboard");
    EXPECT_EQ(before, Settings::Read(SPI_GETKEYBOARDDELAY));
  }
}

TEST_P(KeyboardTest, BothRootsHandOutTheSameObject) {
  const Object global(component::Create<IDispatch>(CLSID_Global).Get(), root_.binding());
  const Object library = global.GetObject(L"Zep");
  const Object keyboard = global.GetObject(L"Keyboard");
  EXPECT_EQ(library.Get(L"Keyboard"), keyboard);
  EXPECT_EQ(keyboard.Get(L"Parent"), library);
  EXPECT_EQ(root_.Get(L"Keyboard"), keyboard_);
}

TEST_P(KeyboardTest, CannotBeCreated) {
  IDispatch* created = nullptr;
  EXPECT_EQ(
      CLASS_E_CLASSNOTAVAILABLE,
      component::CreateInstance(CLSID_Keyboard, IID_IDispatch, reinterpret_cast<void**>(&created)));
}

TEST_P(KeyboardTest, ItServesAfterTheEndOfItsApartment) {
  Object keyboard;
  InNewApartment([&] {
    const Object global(component::Create<IDispatch>(CLSID_Global).Get(), root_.binding());
    keyboard = global.GetObject(L"Keyboard");
  });
  EXPECT_OK(keyboard.Get(L"Shift"));
  EXPECT_EQ(keyboard.Get(L"Notify"), true);
}

RUN_WITH_BOTH_ROOTS(KeyboardTest);

}  // namespace

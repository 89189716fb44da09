// What the keyboard asks the system for and takes from its answers, with the system replaced.
#include "com/import_hook.h"
#include "com/keyboard_fixture.h"

DECLARE_IMPORT(GetKeyState, 4);
DECLARE_IMPORT(SystemParametersInfoA, 16);

namespace {

/// What the system is asked for, and what it answers.
struct SettingsCall {
  UINT action, parameter;
  bool has_room;
  UINT flags;
  friend bool operator==(const SettingsCall&, const SettingsCall&) = default;
};
std::vector<SettingsCall> settings_calls;
bool system_accepts = true;
int system_value = 0;
BOOL WINAPI KeepSettingsCall(UINT action, UINT parameter, void* room, UINT flags) {
  settings_calls.push_back({action, parameter, room != nullptr, flags});
  if (room && system_accepts) *static_cast<int*>(room) = system_value;
  return system_accepts;
}

std::vector<int> keys_asked;
SHORT key_state = 0;
SHORT WINAPI TellKeyState(int key) { return keys_asked.push_back(key), key_state; }

class KeyboardSystemTest : public KeyboardTest {
 protected:
  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "only the linked component's calls are replaced";
  }
  ~KeyboardSystemTest() override {
    settings_calls.clear();
    keys_asked.clear();
    system_accepts = true;
    for (const wchar_t* name : {L"Notify", L"SaveChanges"}) keyboard_.Let(name, {true});
  }

  /// What the system was asked for since the last time.
  static std::vector<SettingsCall> Calls() { return std::exchange(settings_calls, {}); }

 private:
  const ImportHook<&__imp_SystemParametersInfoA> settings_{KeepSettingsCall};
  const ImportHook<&__imp_GetKeyState> keys_{TellKeyState};
};

using CallList = std::vector<SettingsCall>;

TEST_P(KeyboardSystemTest, TheLowByteOfAKeyTells) {
  for (const auto& [state, down, on] : {std::tuple(0, false, false),
                                        {0x80, true, false},
                                        {1, false, true},
                                        {0xFF81, true, true},
                                        {0xFF80, true, false},
                                        {0x8000, false, false},
                                        {0x7F7E, false, false},
                                        {0x0100, false, false}}) {
    key_state = static_cast<SHORT>(state);
    for (const KeyMember& member : kMembers) {
      EXPECT_EQ(keyboard_.Get(member.name), member.bit == kDown ? down : on) << member.name;
      EXPECT_EQ(std::vector{member.key}, std::exchange(keys_asked, {})) << member.name;
    }
    EXPECT_EQ(keyboard_.Get(L"KeyDown", {77}), down);
    EXPECT_EQ(keyboard_.Get(L"KeyOn", {78}), on);
    EXPECT_EQ((std::vector{77, 78}), std::exchange(keys_asked, {}));
  }
}

TEST_P(KeyboardSystemTest, ReadingAsksForTheValue) {
  for (const int delay : {0, 1, 2, 3, 9}) {
    system_value = delay;
    EXPECT_EQ(keyboard_.Get(L"Delay"), delay);
    EXPECT_EQ((CallList{{22, 0, true, 0}}), Calls());
  }
  for (const int preference : {0, 1, 256, -1}) {
    system_value = preference;
    EXPECT_EQ(keyboard_.Get(L"Preference"), preference != 0);
    EXPECT_EQ((CallList{{68, 0, true, 0}}), Calls());
  }
}

TEST_P(KeyboardSystemTest, SaveChangesAndNotifyAreToldWithEachChange) {
  for (const bool save : {false, true}) {
    for (const bool notify : {false, true}) {
      EXPECT_OK(keyboard_.Let(L"SaveChanges", {save}));
      EXPECT_OK(keyboard_.Let(L"Notify", {notify}));
      EXPECT_EQ(keyboard_.Get(L"SaveChanges"), save);
      EXPECT_EQ(keyboard_.Get(L"Notify"), notify);
      EXPECT_EQ(Calls(), CallList{}) << "they take effect with the next change";
      const UINT flags = (save ? 1u : 0u) | (notify ? 2u : 0u);
      for (const int delay : {0, 1, 2, 3}) {
        EXPECT_OK(keyboard_.Let(L"Delay", {delay}));
        EXPECT_EQ((CallList{{23, static_cast<UINT>(delay), false, flags}}), Calls());
      }
      for (const bool preference : {false, true}) {
        EXPECT_OK(keyboard_.Let(L"Preference", {preference}));
        EXPECT_EQ((CallList{{69, preference ? 1u : 0u, false, flags}}), Calls());
      }
    }
  }
}

TEST_P(KeyboardSystemTest, ADelayOutsideIsNotTold) {
  for (const int delay : {4, -1, INT_MAX, INT_MIN}) {
    EXPECT_ZEP_ERROR(keyboard_.Let(L"Delay", {delay}), zepErrBadCall, L"Keyboard");
  }
  EXPECT_EQ(Calls(), CallList{});
}

TEST_P(KeyboardSystemTest, ARefusalIsAnError) {
  system_accepts = false;
  EXPECT_ZEP_ERROR(keyboard_.Get(L"Delay"), zepErrUnexpected, L"Keyboard");
  EXPECT_ZEP_ERROR(keyboard_.Let(L"Delay", {1}), zepErrUnexpected, L"Keyboard");
  EXPECT_ZEP_ERROR(keyboard_.Get(L"Preference"), zepErrUnexpected, L"Keyboard");
  EXPECT_ZEP_ERROR(keyboard_.Let(L"Preference", {true}), zepErrUnexpected, L"Keyboard");
  EXPECT_EQ(4u, Calls().size()) << "each is tried";
  EXPECT_ZEP_ERROR(keyboard_.Let(L"Delay", {4}), zepErrBadCall, L"Keyboard");
  EXPECT_OK(keyboard_.Get(L"Shift"));
}

RUN_WITH_BOTH_ROOTS(KeyboardSystemTest);

}  // namespace

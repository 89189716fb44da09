// The keyboard and the mouse pointer. Who performs these rows leaves keys, settings and pointer as
// they were.
#include "com/every_member/calls.h"
#include "com/keyboard_fixture.h"

namespace call_table {

Rows CallsOfKeyboards() {
  Rows rows{
      Get(L"global.Keyboard").GivesA(L"Keyboard", L"keyboard"),
      Get(L"global.Zep").GivesA(L"Library", L"library"),
      Get(L"keyboard.Parent").Gives(The(L"library")),
  };
  for (const KeyMember& member : kMembers) {
    const std::wstring call = std::wstring(L"keyboard.") + member.name;
    rows.push_back(Do([&member] { Keys::Only(member.key, member.bit); }));
    rows.push_back(Get(call).Gives(true));
    rows.push_back(Get(L"keyboard.KeyDown", {member.key}).Gives(member.bit == kDown));
    rows.push_back(Get(L"keyboard.KeyOn", {member.key}).Gives(member.bit == kOn));
    rows.push_back(Do([] { Keys::Only(0, 0); }));
    rows.push_back(Get(call).Gives(false));
  }
  for (const wchar_t* property : {L"keyboard.SaveChanges", L"keyboard.Notify"}) {
    rows.push_back(Put(property, {false}));
    rows.push_back(Get(property).Gives(false));
  }
  const Rows settings{
      Put(L"keyboard.Delay", {zepKbdDelay1000ms}),
      Get(L"keyboard.Delay").Gives(static_cast<int>(zepKbdDelay1000ms)),
      Put(L"keyboard.Preference", {true}),
      Get(L"keyboard.Preference").Gives(true),
      Put(L"keyboard.SaveChanges", {true}),
      Put(L"keyboard.Notify", {true}),
  };
  rows.insert(rows.end(), settings.begin(), settings.end());
  return rows;
}

Rows CallsOfMousePointers() {
  return {
      Do([] { EXPECT_TRUE(SetCursorPos(40, 30)); }),
      New(L"MousePointer", L"pointer"),
      Get(L"pointer.PosX").Gives(40),
      Get(L"pointer.PosY").Gives(30),
      Put(L"pointer.PosX", {50}),
      Put(L"pointer.PosY", {60}),
      Get(L"pointer.Changed").Gives(true),
      Put(L"pointer.Changed", {false}),
      Get(L"pointer.Changed").Gives(false),
      Run(L"pointer.SetPos"),
      Do([] { EXPECT_TRUE(SetCursorPos(70, 80)); }),
      Run(L"pointer.GetPos"),
      Get(L"pointer.PosX").Gives(70),
      Run(L"pointer.SetPos", {5, 6}),
      Do([] {
        POINT position{};
        EXPECT_TRUE(GetCursorPos(&position));
        EXPECT_EQ(5, position.x);
        EXPECT_EQ(6, position.y);
      }),
  };
}

}  // namespace call_table

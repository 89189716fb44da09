// Every member of every class is called once at least, early and late bound, and every event heard;
// once more in a host that traps floating-point faults.
#include <algorithm>
#include <iterator>

#include "com/every_member/calls.h"
#include "com/every_member/session.h"
#include "com/file_dialog_fixture.h"
#include "com/keyboard_fixture.h"
#include "com/trapping_host.h"

namespace {

using call_table::MembersOfTypeLibrary;
using call_table::Session;

std::string MissingFrom(const std::set<std::string>& reached) {
  std::string missing;
  for (const std::string& member : MembersOfTypeLibrary()) {
    if (!reached.count(member)) missing += member + "\n";
  }
  return missing;
}

/// The mouse pointer, left where it was.
class PointerKeeper {
 public:
  PointerKeeper() { GetCursorPos(&before_); }
  ~PointerKeeper() { SetCursorPos(before_.x, before_.y); }
  PointerKeeper(const PointerKeeper&) = delete;
  PointerKeeper& operator=(const PointerKeeper&) = delete;

 private:
  POINT before_{};
};

class TrappingSession final : public Session {
 public:
  using Session::Session;

 protected:
  client::Outcome Call(const call_table::Row& row) override {
    return InTrappingHost([&] { return Session::Call(row); });
  }
};

class EveryMemberTest : public BothBindings {
 protected:
  void PerformAll(Session& session) {
    using namespace call_table;
    session.Perform({New(L"Global", L"global"), Get(L"global.Zep").GivesA(L"Library", L"library")});
    for (const std::wstring root : {L"global", L"library"}) {
      session.Perform(CallsOfRoots(root, folder_));
      AboutUser user;
      session.Perform(CallsOfAboutBoxes(root, user));
    }
    for (const Rows& rows : {CallsOfCounters(), CallsOfTerms(), CallsOfVariables(), CallsOfCharts(),
                             CallsOfBuffers(), CallsOfMessages(), CallsOfLists(),
                             CallsOfTraces(target_), CallsOfKeyboards(), CallsOfMousePointers()}) {
      session.Perform(rows);
    }
    DialogDriver user;
    session.Perform(CallsOfDocuments(folder_, user));
    session.Perform(CallsOfFileDialogs(folder_, user));
  }

  const TemporaryFolder folder_;
  const DirectoryKeeper directory_;
  const Keys keys_;
  const Settings settings_;
  const PointerKeeper pointer_;
  Target target_;
};

TEST_P(EveryMemberTest, DoesWhatItsRowsSay) {
  {
    Session session(GetParam());
    PerformAll(session);
    const std::string missing = MissingFrom(session.Reached());
    EXPECT_TRUE(missing.empty()) << "members without a row:\n" << missing;
    EXPECT_EQ(S_FALSE, component::CanUnloadNow());
  }
  // After every family was used. The fixture then unloads a DLL.
  EXPECT_EQ(S_OK, component::CanUnloadNow());
}

TEST_P(EveryMemberTest, DoesTheSameInAHostThatTrapsAndRoundsUp) {
  TrappingSession session(GetParam());
  PerformAll(session);
}

// The comparison above would be worth nothing if it knew of no members.
TEST(MembersTest, AreThoseOfTheTypeLibrary) {
  const auto members = MembersOfTypeLibrary();
  EXPECT_LT(300u, members.size());
  for (const char* member :
       {"_Counter.Value get", "_Counter.Value put", "_Counter.Increment method",
        "_ZepVariant.Range putref", "__Counter.ValueChanged event", "_Global.Zep get",
        "_Library.Charts get", "_Charts.NewEnum get"}) {
    EXPECT_TRUE(members.count(member)) << member;
  }
  EXPECT_NE(std::string::npos, MissingFrom({}).find("_Counter.Value get\n"));
}

RUN_IN_BOTH_BINDINGS(EveryMemberTest);

}  // namespace

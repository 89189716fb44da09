// Every member of every class is called with every single allocation failing that is made inside of
// the call, and with all allocations failing from each on.
#include <cstdlib>

#include "com/allocation_spy.h"
#include "com/component.h"
#include "com/gdi_objects.h"
#include "faults/allocation_hooks.h"
#include "faults/families.h"
#include "faults/fault_session.h"
#include "frame/shared_library_object.h"
#include "platform/automation/module.h"

namespace {

using call_table::Rows;
using client::Binding;
using faults::Families;
using faults::FaultSession;
using faults::Lasting;
using faults::Schedule;
using faults::Tally;

/// Each failure with a performance of the whole table of its own, which takes minutes.
bool OneByOne() { return std::getenv("ZEPKIT10_FAULTS_ONE_BY_ONE") != nullptr; }

using Parameters = std::tuple<faults::Family, Binding, Lasting>;

class AllocationFaultTest : public component::Test, public testing::WithParamInterface<Parameters> {
 protected:
  /// Performs the table once; true where anything failed.
  bool Perform(Schedule& schedule) {
    const auto& [family, binding, lasting] = GetParam();
    faults::Surroundings surroundings;
    bool failed = false;
    {
      FaultSession session(binding, schedule);
      try {
        session.Perform({call_table::New(L"Global", L"global"),
                         call_table::Get(L"global.Zep").GivesA(L"Library", L"library")});
        session.Perform(family.rows(surroundings));
      } catch (const faults::Ended&) {
      }
      failed = session.failures() > 0;
      tally_ += session.tally();
    }
    zepkit10::EndApartment();
    return failed;
  }

  void ExpectNothingIsLeft(long blocks, std::size_t then, int gdi_objects) const {
    EXPECT_EQ(0, zepkit10::LiveObjects());
    EXPECT_EQ(blocks, faults::ComponentBlocks());
    EXPECT_EQ("", allocation_spy::OutstandingSince(then));
    const int slack = std::get<faults::Family>(GetParam()).gdi_objects_of_system;
    EXPECT_NEAR(gdi_objects, GdiObjects(), slack);
  }

  const faults::AllocationHooks hooks_;
  Tally tally_;
};

TEST_P(AllocationFaultTest, GivesError7AndNothingIsLost) {
  constexpr int kMaxPerformances = 100000;
  Schedule schedule{std::get<Lasting>(GetParam()), OneByOne(), {}};
  // What is made once and stays is made before anything is counted.
  Schedule none{Lasting::kOnce, false, std::vector<int>(1000)};
  Perform(none);
  const long blocks = faults::ComponentBlocks();
  const int gdi_objects = GdiObjects();
  int performances = 0;
  for (bool failed = true; failed && !HasFailure() && performances < kMaxPerformances;
       ++performances) {
    const std::size_t then = allocation_spy::Now();
    failed = Perform(schedule);
    ExpectNothingIsLeft(blocks, then, gdi_objects);
  }
  std::printf("  %d performances; %ld calls gave error 7, %ld what they give otherwise",
              performances, tally_.error_7, tally_.absorbed);
  for (const auto& [member, count] : tally_.other) {
    std::printf(", %s another error %ld times", member.c_str(), count);
  }
  std::printf("\n");
}

std::string NameOf(const testing::TestParamInfo<Parameters>& info) {
  const auto& [family, binding, lasting] = info.param;
  return std::string(family.name) + (binding == Binding::kVtable ? "Vtable" : "Dispatch") +
         (lasting == Lasting::kOnce ? "Once" : "FromThenOn");
}

INSTANTIATE_TEST_SUITE_P(Families, AllocationFaultTest,
                         testing::Combine(testing::ValuesIn(Families()),
                                          testing::Values(Binding::kVtable, Binding::kDispatch),
                                          testing::Values(Lasting::kOnce, Lasting::kFromThenOn)),
                         NameOf);

}  // namespace

// The library's icon in a width that it is not drawn in, with everything failing in turn that it
// takes.
#include <gtest/gtest.h>

#include "com/fault_plan.h"
#include "com/gdi_objects.h"
#include "faults/allocation_hooks.h"
#include "platform/own_icon.h"

namespace {

using faults::Kind;
using faults::Lasting;

/// Whether an icon was made; destroyed again.
bool Makes(int width) {
  const HICON icon = zepkit10::LoadOwnIcon(width);
  if (icon) DestroyIcon(icon);
  return icon != nullptr;
}

void FailEach(int width) {
  for (const Lasting lasting : {Lasting::kOnce, Lasting::kFromThenOn}) {
    int failed = 1;
    for (int number = 1; failed > 0; ++number) {
      faults::Begin(Kind::kMemory, number, lasting);
      bool made = false;
      try {
        const faults::InsideCall inside;
        made = Makes(width);
      } catch (const std::bad_alloc&) {
      }
      failed = faults::End();
      EXPECT_TRUE(made || failed > 0);
    }
  }
}

TEST(OwnIconFaultTest, NothingIsLeftOfAnIconThatCannotBeMade) {
  constexpr int kNotDrawn = 40;
  const faults::AllocationHooks hooks;
  FailEach(kNotDrawn);  // what the system keeps from the first time on is made now
  const int before = GdiObjects();
  FailEach(kNotDrawn);
  EXPECT_EQ(before, GdiObjects());
}

}  // namespace

#include "doc/progress.h"

#include <gtest/gtest.h>

namespace zepkit10 {
namespace {

constexpr std::int32_t kLastSafe = 21474304, kFirstOverflow = 21475328;

TEST(ProgressTest, IsAPercentage) {
  EXPECT_EQ(PercentageDone(0, 3000), 0.0f);
  EXPECT_EQ(PercentageDone(1024, 3000), 34.1333333f);
  EXPECT_EQ(PercentageDone(2048, 3000), 68.2666667f);
  EXPECT_EQ(PercentageDone(1024, 1025), 99.9024390f);
  EXPECT_EQ(PercentageDone(1024, 2048), 50.0f);
  EXPECT_EQ(PercentageDone(2048, 2048), 100.0f);
}

TEST(ProgressTest, IsDividedInDoublePrecision) {
  // 2147430400 has no exact single.
  EXPECT_EQ(PercentageDone(kLastSafe, 2147483647), static_cast<float>(2147430400.0 / 2147483647.0));
  EXPECT_EQ(PercentageDone(kLastSafe, kLastSafe), 100.0f);
}

TEST(ProgressTest, LastsUntil22Megabytes) {
  EXPECT_EQ(kLastSafe % kReportInterval, 0);
  EXPECT_EQ(kFirstOverflow, kLastSafe + kReportInterval);
  EXPECT_EQ(PercentageDone(kLastSafe, kFirstOverflow), 99.9952316f);
  EXPECT_EQ(PercentageDone(21474836, 21474836), 100.0f);
  for (const std::int32_t done : {21474837, kFirstOverflow, 2147483647}) {
    try {
      PercentageDone(done, 2147483647);
      ADD_FAILURE() << done;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure, (Failure{6, u"Zepkit10.DocHand", u""}));
    }
  }
}

}  // namespace
}  // namespace zepkit10

#include "util/decimal_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace zepkit10 {
namespace {

TEST(DecimalTextTest, WritesDigitsAndSign) {
  EXPECT_EQ(u"0", DecimalText(0));
  EXPECT_EQ(u"1459", DecimalText(1459));
  EXPECT_EQ(u"-7", DecimalText(-7));
  EXPECT_EQ(u"-9223372036854775808", DecimalText(std::numeric_limits<std::int64_t>::min()));
}

}  // namespace
}  // namespace zepkit10

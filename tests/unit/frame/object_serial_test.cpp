#include "frame/object_serial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace zepkit10 {
namespace {

// Taken before any test; nothing else here takes a serial.
const std::int32_t first_of_the_process = NextObjectSerial();

TEST(ObjectSerial, StartsAt0) { EXPECT_EQ(0, first_of_the_process); }

TEST(ObjectSerial, CountsByOne) {
  const std::int32_t serial = NextObjectSerial();
  EXPECT_EQ(serial + 1, NextObjectSerial());
  EXPECT_EQ(serial + 2, NextObjectSerial());
}

TEST(ObjectSerial, NoTwoThreadsGetTheSame) {
  constexpr std::size_t kThreads = 4, kEach = 5000;
  const std::int32_t before = NextObjectSerial();
  std::vector<std::int32_t> serials(kThreads * kEach);
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&serials, thread] {
      std::generate_n(serials.begin() + thread * kEach, kEach, NextObjectSerial);
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::sort(serials.begin(), serials.end());
  for (std::size_t i = 0; i < serials.size(); ++i) {
    ASSERT_EQ(before + 1 + static_cast<std::int32_t>(i), serials[i]);
  }
}

}  // namespace
}  // namespace zepkit10

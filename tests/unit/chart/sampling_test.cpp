#include "chart/sampling.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// The first samples, ten at most.
std::vector<double> Samples(double low, double high, double step) {
  std::vector<double> samples;
  for (Sampling sampling(low, high, step); sampling.Running() && samples.size() < 10;
       sampling.Step()) {
    samples.push_back(sampling.X());
  }
  return samples;
}

std::int32_t NumberOfFailure(double x, double low, double interval) {
  try {
    ADD_FAILURE() << SampleNumber(x, low, interval);
    return 0;
  } catch (const Failure& failure) {
    return failure.number;
  }
}

using Doubles = std::vector<double>;

TEST(SamplingTest, BothBoundsAreSampled) {
  EXPECT_EQ((Doubles{-1, -0.5, 0, 0.5, 1}), Samples(-1, 1, 0.5));
  EXPECT_EQ((Doubles{2}), Samples(2, 2, 1));
  EXPECT_EQ((Doubles{0, 1, 2}), Samples(0, 2.5, 1));
  EXPECT_EQ((Doubles{0}), Samples(0, 2.5, kInfinity));
}

TEST(SamplingTest, StepsAddUpLikeSums) {
  double sum = 0;
  for (const double x : Samples(0, 1, 0.1)) {
    EXPECT_EQ(sum, x);
    sum += 0.1;
  }
}

TEST(SamplingTest, ANegativeStepCountsDown) {
  EXPECT_EQ((Doubles{1, 0.5, 0}), Samples(1, 0, -0.5));
  EXPECT_EQ((Doubles{1}), Samples(1, 1, -0.5));
  EXPECT_EQ(Doubles{}, Samples(0, 1, -0.5));
}

TEST(SamplingTest, AnEmptyRangeHasNoSample) {
  EXPECT_EQ(Doubles{}, Samples(1, 0, 0.5));
  EXPECT_EQ(Doubles{}, Samples(1, 0, 0));
}

TEST(SamplingTest, AStepThatIsLostLeavesTheLoopStuck) {
  const std::pair<double, double> low_and_step[] = {
      {1, 0.0}, {1, -0.0}, {1e20, 1.0}, {1e300, 1e-300}, {9007199254740992.0, 1.0}, {-1e20, 0.5}};
  for (const auto& [low, step] : low_and_step) {
    Sampling sampling(low, kInfinity, step);
    EXPECT_FALSE(sampling.Stuck());
    sampling.Step();
    EXPECT_TRUE(sampling.Stuck()) << low << " " << step;
    EXPECT_TRUE(sampling.Running());
    EXPECT_EQ(low, sampling.X());
  }
  Sampling moving(1, 2, 1e-15);
  moving.Step();
  EXPECT_FALSE(moving.Stuck());
}

TEST(SamplingTest, NumbersAreRoundedHalfToEven) {
  EXPECT_EQ(0, SampleNumber(3, 3, 0.5));
  EXPECT_EQ(0, SampleNumber(0.5, 0, 1));
  EXPECT_EQ(2, SampleNumber(1.5, 0, 1));
  EXPECT_EQ(2, SampleNumber(2.5, 0, 1));
  EXPECT_EQ(-2, SampleNumber(-2.5, 0, 1));
  EXPECT_EQ(100, SampleNumber(-9, 1, -0.1));
  EXPECT_EQ(0, SampleNumber(1, 0, kInfinity));
  EXPECT_EQ(std::numeric_limits<std::int32_t>::max(), SampleNumber(2147483647.0, 0, 1));
  EXPECT_EQ(std::numeric_limits<std::int32_t>::min(), SampleNumber(-2147483648.0, 0, 1));
}

TEST(SamplingTest, NumbersWithoutAnIntervalRaise11) {
  EXPECT_EQ(11, NumberOfFailure(0, 0, 0));
  EXPECT_EQ(11, NumberOfFailure(1, 0, -0.0));
  EXPECT_EQ(11, NumberOfFailure(kNan, 0, 0));
}

TEST(SamplingTest, NumbersOutsideTheRangeRaise6) {
  EXPECT_EQ(6, NumberOfFailure(2147483647.5, 0, 1));
  EXPECT_EQ(6, NumberOfFailure(-2147483649.0, 0, 1));
  EXPECT_EQ(6, NumberOfFailure(1, 0, 1e-300));
  EXPECT_EQ(6, NumberOfFailure(1, 0, 4.9e-324));
  EXPECT_EQ(6, NumberOfFailure(kNan, 0, 1));
  EXPECT_EQ(6, NumberOfFailure(1, kNan, 1));
  EXPECT_EQ(6, NumberOfFailure(1, 0, kNan));
  EXPECT_EQ(6, NumberOfFailure(kInfinity, 0, kInfinity));
}

}  // namespace
}  // namespace zepkit10

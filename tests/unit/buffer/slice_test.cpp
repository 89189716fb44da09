#include "buffer/slice.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepStringType;

constexpr auto kNoType = static_cast<ZepStringType>(3);
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

template <class Call>
Failure FailureOf(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure;
  }
  ADD_FAILURE() << "no failure";
  return {};
}

const Failure kOverflow{6, u"Zepkit10.ZepVariant", {}};
const Failure kUnexpected{
    static_cast<std::int32_t>(ZepErrors::zepErrUnexpected), u"Zepkit10.ZepVariant", {}};

TEST(SliceTest, WithinABuffer) {
  EXPECT_TRUE(IsWithin({1, 3}, 3));
  EXPECT_TRUE(IsWithin({4, 0}, 3)) << "behind the last byte";
  EXPECT_TRUE(IsWithin({1, 0}, 0));
  EXPECT_FALSE(IsWithin({0, 1}, 3));
  EXPECT_FALSE(IsWithin({1, -1}, 3));
  EXPECT_FALSE(IsWithin({2, 3}, 3));
  EXPECT_FALSE(IsWithin({5, 0}, 3));
  EXPECT_FALSE(IsWithin({kMax, kMax}, kMax));
  EXPECT_FALSE(IsWithin({kMin, kMin}, kMax));
}

TEST(SliceTest, CharactersToBytes) {
  EXPECT_EQ(ToBytes({2, 3}, zepSTUnicode), (Slice{3, 6}));
  EXPECT_EQ(ToBytes({2, 3}, zepSTAnsi), (Slice{2, 3}));
  EXPECT_EQ(ToBytes({2, 3}, zepSTAscii), (Slice{2, 3}));
  EXPECT_EQ(ToBytes({kMax, kMax}, zepSTAnsi), (Slice{kMax, kMax}));
  EXPECT_EQ(ToBytes({1 << 30, 1}, zepSTUnicode), (Slice{kMax, 2}));
}

TEST(SliceTest, DoublingIsChecked) {
  EXPECT_EQ(FailureOf([] { ToBytes({(1 << 30) + 1, 1}, zepSTUnicode); }), kOverflow);
  EXPECT_EQ(FailureOf([] { ToBytes({1, 1 << 30}, zepSTUnicode); }), kOverflow);
  EXPECT_EQ(FailureOf([] { ByteCount(1 << 30, zepSTUnicode); }), kOverflow);
  EXPECT_EQ(ByteCount((1 << 30) - 1, zepSTUnicode), kMax - 1);
}

TEST(SliceTest, UnknownStringTypes) {
  EXPECT_EQ(FailureOf([] { ToBytes({1, 1}, kNoType); }), kUnexpected);
  EXPECT_EQ(FailureOf([] { ByteCount(1, kNoType); }), kUnexpected);
  EXPECT_EQ(FailureOf([] { CharacterCount(1, static_cast<ZepStringType>(-1)); }), kUnexpected);
}

TEST(SliceTest, ClampedToWhatIsLeft) {
  EXPECT_EQ(Clamp({3, 6}, 10), (Slice{3, 6}));
  EXPECT_EQ(Clamp({3, 6}, 4), (Slice{3, 2}));
  EXPECT_EQ(Clamp({3, 6}, 3), (Slice{3, 1}));
  EXPECT_EQ(Clamp({3, 6}, 2), (Slice{2, 1})) << "the start moves to the last byte";
  EXPECT_EQ(Clamp({3, 6}, 0), (Slice{1, 0}));
  EXPECT_EQ(Clamp({3, 0}, 10), (Slice{3, 0}));
}

TEST(SliceTest, HalvesRoundToEven) {
  const std::int32_t expected[] = {0, 0, 1, 2, 2, 2, 3, 4, 4};
  for (std::int32_t bytes = 0; bytes < 9; ++bytes) {
    EXPECT_EQ(CharacterCount(bytes, zepSTUnicode), expected[bytes]) << bytes;
    EXPECT_EQ(CharacterCount(bytes, zepSTAnsi), bytes);
  }
  EXPECT_EQ(CharacterCount(kMax, zepSTUnicode), 1 << 30);
}

TEST(SliceTest, ReplacesBySameLongerAndShorter) {
  Bytes data{1, 2, 3, 4, 5};
  Replace(data, {2, 2}, Bytes{8, 9});
  EXPECT_EQ(data, (Bytes{1, 8, 9, 4, 5}));
  Replace(data, {2, 2}, Bytes{6, 7, 8, 9});
  EXPECT_EQ(data, (Bytes{1, 6, 7, 8, 9, 4, 5}));
  Replace(data, {2, 4}, Bytes{2});
  EXPECT_EQ(data, (Bytes{1, 2, 4, 5}));
  Replace(data, {1, 4}, Bytes{});
  EXPECT_EQ(data, Bytes{});
  Replace(data, {1, 0}, Bytes{7});
  EXPECT_EQ(data, Bytes{7});
  Replace(data, {2, 0}, Bytes{8});
  EXPECT_EQ(data, (Bytes{7, 8}));
}

TEST(SliceTest, ReplacesAsTheNaiveWay) {
  std::mt19937 random(3);
  for (int run = 0; run < 2000; ++run) {
    Bytes data(random() % 8), bytes(random() % 8);
    for (auto& byte : data) byte = static_cast<std::uint8_t>(random());
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
    const auto start = static_cast<std::int32_t>(random() % (data.size() + 1)) + 1;
    const auto length =
        static_cast<std::int32_t>(random() % (data.size() - static_cast<std::size_t>(start) + 2));
    Bytes expected(data.begin(), data.begin() + start - 1);
    expected.insert(expected.end(), bytes.begin(), bytes.end());
    expected.insert(expected.end(), data.begin() + start - 1 + length, data.end());
    Replace(data, {start, length}, bytes);
    ASSERT_EQ(data, expected) << "run " << run;
  }
}

TEST(EditTest, OfAViewInItsParent) {
  EXPECT_EQ(InParent({2, 3, 4}, {10, 20}), (Edit{11, 3, 4}));
  EXPECT_EQ(InParent({1, 0, 1}, {1, 0}), (Edit{1, 0, 1}));
}

TEST(EditTest, OfAParentInAView) {
  const Slice view{10, 5};
  EXPECT_EQ(InView({12, 2, 2}, view, view), (Edit{3, 2, 2})) << "within";
  EXPECT_EQ(InView({8, 4, 4}, view, view), (Edit{1, 2, 2})) << "across the start";
  EXPECT_EQ(InView({13, 9, 9}, view, view), (Edit{4, 2, 2})) << "across the end";
  EXPECT_EQ(InView({1, 3, 3}, view, view), (Edit{1, 0, 0})) << "in front";
  EXPECT_EQ(InView({15, 3, 3}, view, view), (Edit{6, 0, 0})) << "behind";
  EXPECT_EQ(InView({30, 0, 7}, view, view), (Edit{6, 0, 0})) << "appended";
  EXPECT_EQ(InView({12, 0, 1}, view, view), (Edit{3, 3, 3})) << "what follows moves";
  EXPECT_EQ(InView({11, 4, 0}, view, {10, 1}), (Edit{2, 4, 0})) << "cut";
  EXPECT_EQ(InView({1, 20, 3}, view, {3, 1}), (Edit{1, 5, 1})) << "the start moved";
}

// A view that takes over only what InView tells shows the same as one that takes over all.
TEST(EditTest, TellsAViewAllThatChanges) {
  std::mt19937 random(11);
  const auto any = [&](std::size_t count) {
    return static_cast<std::int32_t>(random() % (count + 1));
  };
  for (int run = 0; run < 20000; ++run) {
    Bytes parent(random() % 10);
    for (auto& byte : parent) byte = static_cast<std::uint8_t>(random());
    const std::int32_t start = any(parent.size()) + 1;
    const Slice before{start, any(parent.size() - static_cast<std::size_t>(start) + 1)};
    Bytes view(parent.begin() + start - 1, parent.begin() + start - 1 + before.length);

    Bytes bytes(random() % 4);
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
    const std::int32_t place = any(parent.size()) + 1;
    const Slice replaced{place, any(parent.size() - static_cast<std::size_t>(place) + 1)};
    Replace(parent, replaced, bytes);
    const Edit edit{place, replaced.length, static_cast<std::int32_t>(bytes.size())};

    const Slice after = Clamp(before, static_cast<std::int32_t>(parent.size()));
    const Edit seen = InView(edit, before, after);
    const auto first = parent.begin() + after.start - 1 + seen.start - 1;
    Replace(view, {seen.start, seen.old_length}, Bytes(first, first + seen.new_length));
    const auto shown = parent.begin() + after.start - 1;
    ASSERT_EQ(view, Bytes(shown, shown + after.length)) << "run " << run;
  }
}

}  // namespace
}  // namespace zepkit10

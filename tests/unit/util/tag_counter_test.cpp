#include "util/tag_counter.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

TEST(TagCounterTest, CountsFromZero) {
  TagCounter tags;
  EXPECT_EQ(tags.Next(), u"0");
  EXPECT_EQ(tags.Next(), u"1");
  EXPECT_EQ(tags.Next(), u"2");
}

TEST(TagCounterTest, OverflowsAfterTheLastTag) {
  TagCounter tags(2147483646);
  EXPECT_EQ(tags.Next(), u"2147483646");
  EXPECT_EQ(tags.Next(), u"2147483647");
  const Failure overflow{6, u"", u""};
  for (int i = 0; i < 3; ++i) {
    try {
      tags.Next();
      ADD_FAILURE();
    } catch (const Failure& failure) {
      EXPECT_EQ(failure, overflow);
    }
  }
}

TEST(TagCounterTest, ThreadsGetDifferentTags) {
  constexpr int kThreads = 4, kTagsEach = 10000;
  TagCounter tags;
  std::vector<std::vector<std::u16string>> given(kThreads);
  std::vector<std::thread> threads;
  for (auto& tags_given : given) {
    threads.emplace_back([&] {
      for (int i = 0; i < kTagsEach; ++i) tags_given.push_back(tags.Next());
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::set<std::u16string> all;
  for (const auto& tags_given : given) all.insert(tags_given.begin(), tags_given.end());
  EXPECT_EQ(all.size(), std::size_t{kThreads} * kTagsEach);
}

}  // namespace
}  // namespace zepkit10

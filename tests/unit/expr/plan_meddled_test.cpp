// Terms of another apartment may change while a plan is made here: nothing that is in use already
// may be planned again.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

/// A term during whose planning other terms change.
class Meddled final : public TestExpression {
 public:
  Evaluable* FindVariable(char16_t name) override {
    MeaningChanged();
    return TestExpression::FindVariable(name);
  }
};

TEST(PlanMeddled, AVariableIsPlannedOnceForAPlan) {
  TestExpressions set;
  set.Set(u'x', 3.0);
  set.Set(u'v', u"x*x+1");
  set.Set(u'w', u"v+1");
  for (const auto* text : {u"v*v", u"v+w-1", u"w*v-v"}) {
    Meddled root;
    root.term = ParseTerm(text, naive::EnglishNumbers());
    root.expressions = &set;
    const double expected = set.Evaluate(text);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(Evaluate(root), expected);
  }
}

TEST(PlanMeddled, ChangesInAnotherThreadDoNoHarm) {
  std::atomic<bool> done = false;
  std::thread other([&] {
    while (!done) MeaningChanged();
  });
  TestExpressions set;
  set.Set(u'x', 3.0);
  set.Set(u'v', u"x*x+1");
  set.Set(u'w', u"v*v-v");
  TestExpression root;
  root.term = ParseTerm(u"w+v*w-v", naive::EnglishNumbers());
  root.expressions = &set;
  for (int i = 0; i < 20'000; ++i) {
    if (Evaluate(root) != 980) ADD_FAILURE() << i;
  }
  done = true;
  other.join();
}

}  // namespace
}  // namespace zepkit10

// A client's array as the library looks into it.
#include "platform/automation/array_access.h"

#include "com/component.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

class ArrayAccessTest : public testing::Test {
 protected:
  ArrayAccessTest() : array_(SafeArrayCreateVector(VT_UI1, 3, 2)) {}
  ~ArrayAccessTest() override { SafeArrayDestroy(array_); }

  /// The number of the error that reading an element raises, 0 where it raises none.
  static std::int32_t NumberAt(const ArrayAccess& access, std::int64_t index) {
    try {
      access.At(index);
      return 0;
    } catch (const Failure& failure) {
      return failure.number;
    }
  }

  SAFEARRAY* array_;
};

TEST_F(ArrayAccessTest, OnlyWhatIsBetweenTheBoundsIsRead) {
  const ArrayAccess access(array_);
  EXPECT_EQ(1u, array_->cLocks);
  EXPECT_EQ(9, NumberAt(access, 2));
  EXPECT_EQ(array_->pvData, access.At(3));
  EXPECT_EQ(static_cast<BYTE*>(array_->pvData) + 1, access.At(4));
  EXPECT_EQ(9, NumberAt(access, 5));
}

TEST_F(ArrayAccessTest, WhatWasNeverAllocatedHasNoElements) {
  EXPECT_EQ(9, NumberAt(ArrayAccess(nullptr), 0));
  void* const content = std::exchange(array_->pvData, nullptr);
  EXPECT_EQ(9, NumberAt(ArrayAccess(array_), 3));
  array_->pvData = content;
  array_->cDims = 0;
  EXPECT_EQ(9, NumberAt(ArrayAccess(array_), 3));
  array_->cDims = 1;
  EXPECT_EQ(0u, array_->cLocks);
}

TEST_F(ArrayAccessTest, AnArrayThatCannotBeLockedAgainIsLocked) {
  array_->cLocks = 0xFFFF;
  try {
    ArrayAccess access(array_);
    ADD_FAILURE() << "no error";
  } catch (const Failure& failure) {
    EXPECT_EQ(10, failure.number);
  }
  EXPECT_EQ(0xFFFFu, array_->cLocks);
  array_->cLocks = 0;
}

}  // namespace
}  // namespace zepkit10

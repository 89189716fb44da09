#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "frame/errors.h"

/// The number of the error that something raises, which leaves source and description open; 0 where
/// it raises none.
template <class Body>
std::int32_t NumberRaisedBy(Body body) {
  try {
    body();
    return 0;
  } catch (const zepkit10::Failure& failure) {
    EXPECT_EQ(u"", failure.source);
    EXPECT_EQ(u"", failure.description);
    return failure.number;
  }
}

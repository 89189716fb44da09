#pragma once

#include "buffer/slice.h"

/// Parts of buffers, copied as a whole each time.
namespace zepkit10::naive {

/// The bytes of a slice, which must be within the data.
Bytes Part(const Bytes& data, const Slice& slice);

/// The data with other bytes in the place of a slice.
Bytes Replaced(const Bytes& data, const Slice& slice, const Bytes& bytes);

}  // namespace zepkit10::naive

#include "unit/buffer/naive_buffer.h"

namespace zepkit10::naive {

Bytes Part(const Bytes& data, const Slice& slice) {
  Bytes part;
  for (std::int32_t i = 0; i < slice.length; ++i) {
    part.push_back(data.at(static_cast<std::size_t>(slice.start - 1 + i)));
  }
  return part;
}

Bytes Replaced(const Bytes& data, const Slice& slice, const Bytes& bytes) {
  const auto count = static_cast<std::int32_t>(data.size());
  const std::int32_t behind = slice.start + slice.length;
  Bytes replaced = Part(data, {1, slice.start - 1});
  replaced.insert(replaced.end(), bytes.begin(), bytes.end());
  const Bytes rest = Part(data, {behind, count + 1 - behind});
  replaced.insert(replaced.end(), rest.begin(), rest.end());
  return replaced;
}

}  // namespace zepkit10::naive

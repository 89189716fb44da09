// Delimited lists: split and joined by the library and by the plain reading of the rules, and split
// again. The first byte holds the lengths of delimiter and quotes, then come these and the text, in
// Latin-1.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "unit/util/naive_list.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t lengths[] = {data[0] % 4u, data[0] / 4 % 4u, data[0] / 16 % 4u};
  const std::u16string bytes(data + 1, data + size);
  std::u16string_view rest = bytes;
  const auto take = [&rest](std::size_t length) {
    const auto taken = rest.substr(0, length);
    rest.remove_prefix(taken.size());
    return taken;
  };
  zepkit10::ListFormat format;
  format.delimiter = take(lengths[0]);
  format.quote_begin = take(lengths[1]);
  format.quote_end = take(lengths[2]);
  const std::string difference = zepkit10::naive::Difference(rest, format);
  if (!difference.empty()) {
    std::fprintf(stderr, "%s\n", difference.c_str());
    std::abort();
  }
  return 0;
}

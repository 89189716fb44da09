// Terms: parsed, evaluated and written by the engine and by the plain reading of its rules. The
// first byte chooses the number format, the rest is the text in Latin-1.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "unit/expr/naive_comparison.h"
#include "unit/expr/naive_numbers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zepkit10::naive;
  constexpr std::size_t kLongest = 400;  // the naive way takes quadratic time, and the stack
  if (size == 0 || size > kLongest) return 0;
  const std::u16string text(data + 1, data + size);
  const std::string difference =
      Difference(text, data[0] % 2 == 0 ? EnglishNumbers() : GermanNumbers());
  if (!difference.empty()) {
    std::fprintf(stderr, "%s\n", difference.c_str());
    std::abort();
  }
  return 0;
}

// The engine against the plain reading of the rules, on many terms.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "unit/expr/naive_comparison.h"
#include "unit/expr/naive_numbers.h"

namespace zepkit10 {
namespace {

const std::u16string_view kPieces[] = {u"x", u"1", u"+",   u"-",   u"*",   u"/", u"^", u"(",
                                       u")", u"|", u"SIN", u" ",   u".",   u",", u"0", u"23",
                                       u"t", u"z", u"u",   u"w",   u"LOG", u"q", u"h", u"SQR",
                                       u"n", u"s", u"cOs", u"EXP", u"ATN", u"v", u"#", u"i"};

TEST(TermProperty, EveryShortTerm) {
  constexpr std::size_t kFirst = 13;  // pieces that make all kinds of tokens
  for (int length = 1; length <= 4; ++length) {
    const auto count = static_cast<std::size_t>(std::pow(kFirst, length));
    for (std::size_t number = 0; number < count; ++number) {
      std::u16string term;
      for (std::size_t rest = number, i = 0; i < static_cast<std::size_t>(length); ++i) {
        term += kPieces[rest % kFirst];
        rest /= kFirst;
      }
      ASSERT_EQ(naive::Difference(term, naive::EnglishNumbers()), "");
    }
  }
}

TEST(TermProperty, RandomPieces) {
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    std::u16string term;
    for (auto pieces = random() % 16; pieces > 0; --pieces) term += kPieces[random() % 32];
    ASSERT_EQ(naive::Difference(term, naive::EnglishNumbers()), "");
    ASSERT_EQ(naive::Difference(term, naive::GermanNumbers()), "");
  }
}

/// A term that parses, of all forms.
std::u16string Sound(std::mt19937& random, int depth) {
  const std::u16string_view operands[] = {u"x", u"y",   u"t", u"v",  u"n",
                                          u"2", u"0.5", u"",  u"10", u"z"};
  const std::u16string_view operators[] = {u"+", u"-", u"*", u"/", u"^"};
  const std::u16string_view functions[] = {u"SQR", u"EXP", u"LOG", u"SIN", u"COS", u"TAN", u"ATN"};
  const auto inner = [&] { return Sound(random, depth - 1); };
  switch (depth > 0 ? random() % 6 : 0) {
    case 1:
      return u"(" + inner() + u")";
    case 2:
      return u"|" + inner() + u"|";
    case 3:
      return std::u16string(functions[random() % 7]) + u"(" + inner() + u")";
    case 4:
    case 5:
      return inner() + std::u16string(operators[random() % 5]) + inner();
    default:
      return std::u16string(operands[random() % 10]);
  }
}

TEST(TermProperty, RandomSoundTerms) {
  std::mt19937 random(2);
  for (int i = 0; i < 10'000; ++i) {
    ASSERT_EQ(naive::Difference(Sound(random, 8), naive::EnglishNumbers()), "");
  }
}

TEST(TermProperty, SoundTermsWithAFlaw) {
  std::mt19937 random(3);
  for (int i = 0; i < 10'000; ++i) {
    std::u16string term = Sound(random, 6);
    for (auto flaws = 1 + random() % 3; flaws > 0; --flaws) {
      const std::size_t position = random() % (term.size() + 1);
      term.replace(position, random() % 3, kPieces[random() % 32]);
    }
    ASSERT_EQ(naive::Difference(term, naive::EnglishNumbers()), "");
    ASSERT_EQ(naive::Difference(term, naive::GermanNumbers()), "");
  }
}

}  // namespace
}  // namespace zepkit10

// Trace output: lines of texts, some of them printed while others are, against the rules. Each line
// is a byte of flags and a text up to a line feed, in Latin-1.
#include <cstdint>
#include <string>
#include <vector>

#include "debug/indentation.h"
#include "frame/errors.h"
#include "fuzz/expect.h"
#include "fuzz/input.h"

namespace {

using namespace zepkit10;

/// The rules, with the level and the open line as plain numbers.
class Rules {
 public:
  std::u16string Compose(const std::u16string& text, bool omit_line_end) {
    const auto begins = [&](const char16_t* mark) { return text.rfind(mark, 0) == 0; };
    if (begins(u"- ") && level_ > 0) level_ = level_ - 1;
    std::u16string line;
    if (!open_ && !begins(u"~ ") && !begins(u"--") && !begins(u"++")) {
      for (int i = 0; i < level_; ++i) line += u"  ";
    }
    return line + text + (omit_line_end ? u"" : u"\r\n");
  }

  /// `zero` tells whether the level was 0 when the line was composed.
  void Commit(const std::u16string& text, bool zero, bool omit_line_end) {
    if (text.rfind(u"+ ", 0) == 0) ++level_;
    if (text.rfind(u"++", 0) == 0 && zero && level_ == 0) level_ = 1;
    open_ = omit_line_end;
  }

  int level() const { return level_; }

 private:
  int level_ = 0;
  bool open_ = false;
};

struct Pending {
  std::u16string text;
  Indentation::Line line;
  bool zero, open;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 2000;
  if (size > kLongest) return 0;
  Input input(data, size);
  Indentation indentation;
  Rules rules;
  std::vector<Pending> pending;  // lines within which others are printed
  while (!input.AtEnd()) {
    const auto flags = input.Any<std::uint8_t>();
    const bool open = flags & 1, waits = flags & 2, dropped = flags & 4;
    std::u16string text;
    for (std::uint8_t c = 0; !input.AtEnd() && (c = input.Any<std::uint8_t>()) != '\n';) text += c;
    const bool zero = rules.level() == 0;
    const Indentation::Line line = indentation.Compose(text, open);
    Expect(line.text == rules.Compose(text, open), "another line");
    pending.push_back({text, line, zero, open});
    if (waits) continue;
    while (!pending.empty()) {
      const Pending& last = pending.back();
      if (!dropped) {
        indentation.Commit(last.line);
        rules.Commit(last.text, last.zero, last.open);
      }
      pending.pop_back();
    }
  }
  return 0;
}

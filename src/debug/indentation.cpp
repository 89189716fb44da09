#include "debug/indentation.h"

#include <limits>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

constexpr std::size_t kSpacesPerLevel = 2;

}  // namespace

Indentation::Line Indentation::Compose(std::u16string_view text, bool omit_line_end) {
  const std::u16string_view mark = text.substr(0, 2);
  LevelChange change = LevelChange::kNone;
  if (mark == u"+ ") {
    change = LevelChange::kDeeper;
  } else if (mark == u"++" && level_ == 0) {
    change = LevelChange::kFromZeroToOne;
  } else if (mark == u"- " && level_ > 0) {
    --level_;
  }
  const bool at_zero = line_is_open_ || mark == u"~ " || mark == u"--" || mark == u"++";
  const std::size_t level = at_zero ? 0 : static_cast<std::size_t>(level_);
  std::u16string line(level * kSpacesPerLevel, u' ');
  line += text;
  if (!omit_line_end) line += u"\r\n";
  return {std::move(line), change, omit_line_end};
}

// Whoever printed the line may have had others printed meanwhile: the level is the one they left.
void Indentation::Commit(const Line& line) {
  if (line.change == LevelChange::kDeeper) {
    if (level_ == std::numeric_limits<std::int16_t>::max()) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
    }
    ++level_;
  } else if (line.change == LevelChange::kFromZeroToOne && level_ == 0) {
    level_ = 1;
  }
  line_is_open_ = line.stays_open;
}

}  // namespace zepkit10

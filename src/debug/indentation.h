#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zepkit10 {

/// The indentation of trace output: two spaces for each level. The first two characters of a text,
/// which are printed too, say what becomes of the level:
///     "+ "        at the level; the next lines stand one level deeper
///     "- "        one level less deep from this line on, but not below 0
///     "~ ", "--"  this line alone at level 0
///     "++"        this line alone at level 0; level 0 becomes 1 for the next lines
/// A text that continues an open line is not indented.
class Indentation {
 public:
  enum class LevelChange { kNone, kDeeper, kFromZeroToOne };

  /// A line to print, and what it leaves behind once it is printed.
  struct Line {
    std::u16string text;  // indented, with its line end unless it stays open
    LevelChange change;
    bool stays_open;
  };

  /// The line of a text. Only "- " changes the level already here.
  Line Compose(std::u16string_view text, bool omit_line_end);

  /// Applies what a printed line leaves behind. Error 6, and nothing applied, where the level would
  /// pass 32767.
  void Commit(const Line& line);

 private:
  std::int16_t level_ = 0;
  bool line_is_open_ = false;
};

}  // namespace zepkit10

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Delimited lists: texts of several items with a delimiter between them, where an item that holds
/// the delimiter stands between quotes. All comparisons are code unit by code unit.
namespace zepkit10 {

struct ListFormat {
  std::u16string_view delimiter;
  std::u16string_view quote_begin;
  std::u16string_view quote_end;
};

/// Splits a list. Quotes nest if they differ and toggle if they are equal; both empty is no quoting
/// at all. Only the first character of a quote is dropped. An empty delimiter makes the whole text
/// one item.
class ListReader {
 public:
  ListReader(std::u16string_view text, const ListFormat& format) : text_(text), format_(format) {}

  /// Steps to the next item; false at the end.
  bool Next();

  /// Valid until the next step.
  std::u16string_view Item() const { return item_; }

 private:
  bool At(std::u16string_view part) const {
    if (part.empty()) return true;
    return text_[position_] == part[0] &&
           (part.size() == 1 || text_.substr(position_).starts_with(part));
  }
  bool AtQuote() const { return quoting_ && (At(format_.quote_begin) || At(format_.quote_end)); }
  bool NextOfUndelimited();
  void CountQuote();
  void DropCharacter();

  const std::u16string_view text_;
  const ListFormat format_;
  const bool quoting_ = !format_.quote_begin.empty() || !format_.quote_end.empty();
  std::size_t position_ = 0;
  std::size_t begin_ = 0;   // of the item, as long as it stands in the text as it is
  bool assembled_ = false;  // the item differs from the text and stands in `buffer_`
  bool after_delimiter_ = false;
  bool ended_ = false;
  std::int64_t depth_ = 0;  // of quotes; a delimiter splits below 1
  std::u16string buffer_;
  std::u16string_view item_;
};

/// Joins items into a list. An empty item and one that holds the delimiter are quoted.
class ListWriter {
 public:
  explicit ListWriter(const ListFormat& format) : format_(format) {}

  void Append(std::u16string_view item);
  std::u16string Take() { return std::move(text_); }

 private:
  const ListFormat format_;
  bool first_ = true;
  std::u16string text_;
};

}  // namespace zepkit10

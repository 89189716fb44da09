#include "util/delimited_list.h"

#include <utility>

namespace zepkit10 {

bool ListReader::Next() {
  if (ended_) return false;
  if (format_.delimiter.empty()) return NextOfUndelimited();
  begin_ = position_;
  assembled_ = false;
  for (; position_ < text_.size(); ++position_) {
    const bool delimiter = At(format_.delimiter);
    if (delimiter && depth_ < 1) {
      item_ = assembled_ ? std::u16string_view(buffer_) : text_.substr(begin_, position_ - begin_);
      position_ += format_.delimiter.size();
      after_delimiter_ = true;
      return true;
    }
    after_delimiter_ = false;
    if (!delimiter && AtQuote()) {
      CountQuote();
      DropCharacter();
    } else if (assembled_) {
      buffer_ += text_[position_];
    }
  }
  ended_ = true;
  item_ = assembled_ ? std::u16string_view(buffer_) : text_.substr(begin_);
  return !item_.empty() || after_delimiter_;
}

bool ListReader::NextOfUndelimited() {
  ended_ = true;
  item_ = text_;
  return !item_.empty();
}

void ListReader::CountQuote() {
  if (format_.quote_begin == format_.quote_end) {
    depth_ = depth_ > 0 ? 0 : 1;
  } else {
    depth_ += At(format_.quote_begin) ? 1 : -1;
  }
}

void ListReader::DropCharacter() {
  if (assembled_) return;
  buffer_ = text_.substr(begin_, position_ - begin_);
  assembled_ = true;
}

void ListWriter::Append(std::u16string_view item) {
  if (!std::exchange(first_, false)) text_ += format_.delimiter;
  if (item.empty() || item.find(format_.delimiter) != item.npos) {
    text_.append(format_.quote_begin).append(item).append(format_.quote_end);
  } else {
    text_ += item;
  }
}

}  // namespace zepkit10

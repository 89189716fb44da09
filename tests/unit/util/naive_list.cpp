#include "unit/util/naive_list.h"

#include <algorithm>

namespace zepkit10::naive {
namespace {

using Items = std::vector<std::u16string>;

/// The text of the given length at a position from 1, shorter at the end.
std::u16string Mid(std::u16string_view text, std::size_t position, std::size_t length) {
  return std::u16string(text.substr(position - 1, length));
}

Items SplitByTheLibrary(std::u16string_view text, const ListFormat& format) {
  Items items;
  for (ListReader reader(text, format); reader.Next();) items.emplace_back(reader.Item());
  return items;
}

std::u16string JoinByTheLibrary(const Items& items, const ListFormat& format) {
  ListWriter writer(format);
  for (const auto& item : items) writer.Append(item);
  return writer.Take();
}

}  // namespace

Items Split(std::u16string_view text, const ListFormat& format) {
  const std::u16string delimiter(format.delimiter), begin(format.quote_begin),
      end(format.quote_end);
  if (delimiter.empty()) return text.empty() ? Items{} : Items{std::u16string(text)};
  Items items;
  std::u16string item;
  long depth = 0;
  bool just_closed = false;
  for (std::size_t i = 1; i <= text.size();) {
    const auto character = Mid(text, i, 1);
    if (Mid(text, i, delimiter.size()) == delimiter) {
      if (depth < 1) {
        items.push_back(item);
        item.clear();
        just_closed = true;
        i += delimiter.size();
      } else {
        item += character;
        just_closed = false;
        i += 1;
      }
      continue;
    }
    const bool at_begin = Mid(text, i, begin.size()) == begin;
    const bool at_end = Mid(text, i, end.size()) == end;
    if ((at_begin || at_end) && begin != end) {
      depth += at_begin ? 1 : -1;
    } else if ((at_begin || at_end) && !begin.empty()) {
      depth = depth > 0 ? 0 : 1;
    } else {
      item += character;
    }
    just_closed = false;
    i += 1;
  }
  if (!item.empty() || just_closed) items.push_back(item);
  return items;
}

std::u16string Join(const Items& items, const ListFormat& format) {
  std::u16string list;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) list += format.delimiter;
    const bool quoted = items[i].empty() || items[i].find(format.delimiter) != std::u16string::npos;
    if (quoted) list += format.quote_begin;
    list += items[i];
    if (quoted) list += format.quote_end;
  }
  return list;
}

bool SurvivesRoundTrip(const Items& items, const ListFormat& format) {
  if (format.delimiter.size() != 1 || format.quote_begin.size() != 1 ||
      format.quote_end.size() != 1 || format.delimiter == format.quote_begin ||
      format.delimiter == format.quote_end) {
    return false;
  }
  return (items.empty() || !items.back().empty()) &&
         std::all_of(items.begin(), items.end(), [&](const std::u16string& item) {
           return item.find(format.quote_begin) == item.npos &&
                  item.find(format.quote_end) == item.npos;
         });
}

std::string Difference(std::u16string_view text, const ListFormat& format) {
  const Items items = Split(text, format);
  if (SplitByTheLibrary(text, format) != items) return "split differently";
  const std::u16string list = Join(items, format);
  if (JoinByTheLibrary(items, format) != list) return "joined differently";
  if (SurvivesRoundTrip(items, format) && SplitByTheLibrary(list, format) != items) {
    return "joined, but not split into the same items again";
  }
  return {};
}

}  // namespace zepkit10::naive

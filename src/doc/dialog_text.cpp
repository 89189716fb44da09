#include "doc/dialog_text.h"

#include <algorithm>

namespace zepkit10 {
namespace {

constexpr char16_t kSeparator = u'|';
constexpr std::u16string_view kEnds = {u"\0\0", 2};
constexpr auto kNone = std::u16string_view::npos;

/// Without its period; empty for a name without one or with nothing behind it.
std::u16string_view ExtensionOf(std::u16string_view name) {
  const auto period = name.rfind(u'.');
  return period == kNone ? std::u16string_view() : name.substr(period + 1);
}

}  // namespace

bool IsFilterList(std::u16string_view filter) {
  if (filter.empty()) return true;
  if (filter.find(u'\0') != kNone) return false;
  // An empty part would end the system's list.
  if (filter.front() == kSeparator || filter.back() == kSeparator) return false;
  if (filter.find(u"||") != kNone) return false;
  return std::ranges::count(filter, kSeparator) % 2 == 1;
}

std::u16string SystemFilter(std::u16string_view filter) {
  std::u16string list(filter);
  std::ranges::replace(list, kSeparator, u'\0');
  return list.append(kEnds);
}

std::u16string_view ChoiceIn(std::u16string_view buffer, bool several) {
  return buffer.substr(0, buffer.find(kEnds.substr(0, several ? 2 : 1)));
}

std::u16string_view FileTitleOf(std::u16string_view choice) {
  if (choice.find(u'\0') != kNone) return {};
  return choice.substr(choice.find_last_of(u"\\/:") + 1);
}

bool HasOtherExtension(std::u16string_view choice, std::u16string_view default_extension,
                       SameText& same) {
  if (default_extension.starts_with(u'.')) default_extension.remove_prefix(1);
  if (default_extension.empty()) return false;
  const auto differs = [&](std::u16string_view name) {
    const std::u16string_view extension = ExtensionOf(name);
    return !extension.empty() && !same(extension, default_extension);
  };
  auto end = choice.find(u'\0');
  if (end == kNone) return differs(FileTitleOf(choice));
  while (end != kNone) {
    choice.remove_prefix(end + 1);
    end = choice.find(u'\0');
    if (differs(choice.substr(0, end))) return true;
  }
  return false;
}

}  // namespace zepkit10

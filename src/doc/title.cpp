#include "doc/title.h"

#include <atomic>
#include <limits>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

std::atomic<std::int32_t> untitled_count = 0;

std::size_t NamePosition(std::u16string_view path) { return path.rfind(u'\\') + 1; }

}  // namespace

std::u16string TitleOf(std::u16string_view path) {
  if (path.empty()) RaiseZepError(ZepErrors::zepErrIndexOutOfRange, u"List");
  std::u16string_view title = NameOf(path);
  if (title.ends_with(u'"')) title.remove_suffix(1);
  return std::u16string(title);
}

std::u16string_view FolderOf(std::u16string_view path) {
  return path.substr(0, NamePosition(path));
}

std::u16string_view NameOf(std::u16string_view path) { return path.substr(NamePosition(path)); }

std::u16string NextUntitledTitle() {
  std::int32_t count = untitled_count;
  do {
    if (count == std::numeric_limits<std::int32_t>::max()) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow, u"DocHand");
    }
  } while (!untitled_count.compare_exchange_weak(count, count + 1));
  const std::string digits = std::to_string(count + 1);
  return std::u16string(u"Unbenannt").append(digits.begin(), digits.end());
}

}  // namespace zepkit10

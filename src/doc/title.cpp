#include "doc/title.h"

#include "frame/errors.h"

namespace zepkit10 {
namespace {

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

std::u16string UntitledTitle(TagCounter& numbers) { return u"Unbenannt" + numbers.Next(); }

}  // namespace zepkit10

// Titles of documents: the last item of the path as a list between backslashes. The input is a
// path, in Latin-1.
#include <cstdint>
#include <string>

#include "doc/title.h"
#include "frame/errors.h"
#include "fuzz/expect.h"
#include "unit/util/naive_list.h"

namespace {

/// Whether a path without items is refused.
bool IsRefused(std::u16string_view path) {
  try {
    zepkit10::TitleOf(path);
    return false;
  } catch (const zepkit10::Failure&) {
    return true;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string path(data, data + size);
  const auto items = zepkit10::naive::Split(path, {u"\\", {}, {}});
  Expect(IsRefused(path) == items.empty(), "a path with items is refused, or one without is not");
  if (!items.empty()) {
    std::u16string title = items.back();
    if (title.ends_with(u'"')) title.pop_back();
    Expect(zepkit10::TitleOf(path) == title, "another title");
  }
  const auto folder = zepkit10::FolderOf(path), name = zepkit10::NameOf(path);
  Expect(folder.empty() || folder.ends_with(u'\\'), "a folder without a backslash");
  Expect(name.find(u'\\') == name.npos, "a name with a backslash");
  Expect(std::u16string(folder).append(name) == path, "folder and name are not the path");
  return 0;
}

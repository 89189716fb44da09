// Lists of filters and the buffers of file dialogs: what the system is told is read back, part by
// part, and what a buffer holds is found within it. The first byte tells whether several files may
// be chosen, the rest is the text, in Latin-1.
#include <cstdint>
#include <string>

#include "doc/dialog_text.h"
#include "fuzz/expect.h"

namespace {

/// A list of filters as the system reads it: pairs up to an empty part.
std::u16string ReadBack(const std::u16string& list) {
  std::u16string filter;
  const char16_t* part = list.c_str();
  for (; *part; part += std::u16string_view(part).size() + 1) {
    if (!filter.empty()) filter += u'|';
    filter += part;
  }
  Expect(part == list.data() + list.size() - 1, "the list ends early");
  return filter;
}

bool Same(std::u16string_view left, std::u16string_view right) { return left == right; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const bool several = data[0] % 2;
  const std::u16string text(data + 1, data + size);
  if (!text.empty() && zepkit10::IsFilterList(text)) {
    Expect(ReadBack(zepkit10::SystemFilter(text)) == text, "filters are lost");
  }
  const auto choice = zepkit10::ChoiceIn(text, several);
  Expect(choice.size() <= text.size(), "the choice is longer than the buffer");
  const std::u16string_view ends(u"\0\0", several ? 2 : 1);
  Expect(choice.find(ends) == choice.npos, "the choice goes on behind its end");
  const auto title = zepkit10::FileTitleOf(choice);
  Expect(title.find_first_of(std::u16string_view(u"\\/:\0", 4)) == title.npos, "no title");
  const bool other = zepkit10::HasOtherExtension(choice, u"txt", Same);
  Expect(!other || choice.find(u'.') != choice.npos, "an extension from nowhere");
  Expect(!zepkit10::HasOtherExtension(choice, u"", Same), "another one than none");
  return 0;
}

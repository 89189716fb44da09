#include "about/about_members_object.h"

#include <optional>
#include <string>

#include "frame/errors.h"
#include "platform/about_icon.h"
#include "platform/about_window.h"
#include "platform/automation/variant.h"
#include "util/array_members_object.h"
#include "util/array_values_object.h"

namespace zepkit10 {
namespace {

/// The lines of a parameter array and of the arrays in it, with line feeds between them; nothing
/// for none. Error 13 for a value that is no text and cannot be made one.
std::optional<std::u16string> LinesIn(SAFEARRAY* parameters) {
  VARIANT list{};
  list.vt = VT_ARRAY | VT_VARIANT;
  list.parray = parameters;
  const Variant flat = ArrayMembers::TransformPArray(list, nullptr);
  const std::int32_t first = ArrayMembers::ZepLBound(flat.get(), std::int32_t{0});
  const std::int32_t last = ArrayMembers::ZepUBound(flat.get(), std::int32_t{-1});
  if (last < first) return {};
  const ArrayElements lines(*ArrayIn(flat.get()));
  std::u16string text;
  for (std::int64_t i = 0; i < lines.Count(); ++i) {
    const auto line = ConvertToText(lines.At(i));
    if (!line) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
    if (i > 0) text += u'\n';
    text += *line;
  }
  return text;
}

}  // namespace

Microsoft::WRL::ComPtr<IPictureDisp> AboutMembers::LoadZepIcon(ZepIcons Number) {
  if (Number != ZepIcons::zepIcoZepkit) RaiseInCalledClass(ZepErrors::zepErrBadCall);
  return MakeIconPicture();
}

void AboutMembers::ShowAbout(std::u16string_view Caption, IPictureDisp* Icon,
                             std::u16string_view FirstLine, SAFEARRAY** AdditionalLines) {
  // Everything is copied: the messages that are dispatched meanwhile may change it.
  AboutWindow window(
      {std::u16string(Caption), std::u16string(FirstLine), LinesIn(*AdditionalLines), Icon});
  window.Run();
}

}  // namespace zepkit10

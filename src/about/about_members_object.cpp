#include "about/about_members_object.h"

#include <optional>
#include <string>

#include "frame/errors.h"
#include "platform/about_icon.h"
#include "platform/about_window.h"
#include "platform/automation/late_call.h"
#include "platform/automation/translate.h"
#include "util/array_members_object.h"
#include "util/array_values_object.h"

namespace zepkit10 {
namespace {

/// The default value of an object, whose own errors pass on; error 13 where it has none.
Variant DefaultOf(IDispatch& object) {
  try {
    return CallMember(object, DISPID_VALUE, DISPATCH_PROPERTYGET, LOCALE_USER_DEFAULT);
  } catch (const Failure& failure) {
    if (failure.number != FromHresult(DISP_E_MEMBERNOTFOUND)) throw;
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  }
}

/// A value as a line; error 13 for one that is no text and cannot be made one.
std::u16string LineOf(const VARIANT& value) {
  constexpr int kMaxObjects = 8;  // the value of one may be the next one, in a circle too
  const auto is_object = [](const VARIANT* shown) { return shown && shown->vt == VT_DISPATCH; };
  const VARIANT* shown = Follow(&value);
  Variant held;
  for (int i = 0; i < kMaxObjects && is_object(shown) && shown->pdispVal; ++i) {
    held = DefaultOf(*shown->pdispVal);
    shown = Follow(&held.get());
  }
  const auto line = shown && !is_object(shown) ? ConvertToText(*shown) : std::nullopt;
  if (!line) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  return *line;
}

/// The lines of a parameter array and of the arrays in it, with line feeds between them; nothing
/// for none.
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
    if (i > 0) text += u'\n';
    text += LineOf(lines.At(i));
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
  // Copied first: objects that tell their text, and messages that are dispatched, may change it.
  AboutWindow window(
      {std::u16string(Caption), std::u16string(FirstLine), Icon, LinesIn(*AdditionalLines)});
  window.Run();
}

}  // namespace zepkit10

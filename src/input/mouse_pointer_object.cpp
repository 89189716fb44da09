#include "input/mouse_pointer_object.h"

#include "platform/automation/variant.h"
#include "util/decimal_text.h"

namespace zepkit10 {
namespace {

[[noreturn]] void RaiseApiError(DWORD error) {
  // Clients know the system's errors as Longs.
  throw Failure{static_cast<std::int32_t>(ZepErrors::zepErrUnexpected), u"Zepkit10.MousePointer",
                u"API-Error '" + DecimalText(static_cast<std::int32_t>(error)) + u"'"};
}

}  // namespace

void MousePointer::GetPos() {
  POINT position;
  if (!GetCursorPos(&position)) RaiseApiError(GetLastError());
  x_ = position.x;
  y_ = position.y;
  changed_ = false;
}

void MousePointer::SetPosX(std::int32_t NewPosX) {
  x_ = NewPosX;
  changed_ = true;
}

void MousePointer::SetPosY(std::int32_t NewPosY) {
  y_ = NewPosY;
  changed_ = true;
}

void MousePointer::SetPos(const VARIANT& x, const VARIANT& y) {
  const std::int32_t to_x = Coordinate(x, x_);
  const std::int32_t to_y = Coordinate(y, y_);
  SetCursorPos(to_x, to_y);
  changed_ = false;
}

std::int32_t MousePointer::Coordinate(const VARIANT& given, std::int32_t otherwise) {
  if (IsMissing(&given)) return otherwise;
  try {
    return ConvertToLong(given);
  } catch (const Failure&) {
    Raise(ZepErrors::zepErrBadParam);
  }
}

}  // namespace zepkit10

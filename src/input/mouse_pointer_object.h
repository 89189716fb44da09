#pragma once

#include "mouse_pointer_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

/// A position of the mouse pointer, in pixels of the screen: read from the system, edited, written
/// back.
class MousePointer final : public AutomationObject<MousePointer, MousePointerShim> {
 public:
  /// Starts with the pointer's position; raises what `GetPos` does.
  MousePointer() { GetPos(); }

  /// Whether the position was edited since it was read or written.
  bool Changed() const { return changed_; }
  void SetChanged(bool NewChanged) { changed_ = NewChanged; }
  /// `zepErrUnexpected` with the number of the system's error if it cannot tell the position; the
  /// object then stays as it is.
  void GetPos();
  std::int32_t PosX() const { return x_; }
  void SetPosX(std::int32_t NewPosX);
  std::int32_t PosY() const { return y_; }
  void SetPosY(std::int32_t NewPosY);
  /// Moves the pointer, to the object's own coordinate where one is missing. The object's own stay.
  /// `zepErrBadParam` for what does not convert to a 32-bit integer; the pointer then stays.
  void SetPos(const VARIANT& x, const VARIANT& y);

 private:
  static std::int32_t Coordinate(const VARIANT& given, std::int32_t otherwise);

  std::int32_t x_ = 0;
  std::int32_t y_ = 0;
  bool changed_ = false;
};

}  // namespace zepkit10

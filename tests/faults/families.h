#pragma once

#include <ostream>
#include <vector>

#include "com/every_member/calls.h"
#include "com/keyboard_fixture.h"
#include "faults/dialog_stub.h"

namespace faults {

/// A user who closes every about window that waits for input.
class AboutCloser {
 public:
  AboutCloser();
  ~AboutCloser() { KillTimer(nullptr, timer_); }
  AboutCloser(const AboutCloser&) = delete;
  AboutCloser& operator=(const AboutCloser&) = delete;

 private:
  const UINT_PTR timer_;
};

/// What the calls of a family work on; new for each performance.
struct Surroundings {
  Surroundings() { EXPECT_TRUE(GetCursorPos(&pointer)); }
  ~Surroundings() { SetCursorPos(pointer.x, pointer.y); }

  TemporaryFolder folder;
  DialogStub user;
  const AboutCloser closer;
  Target target;
  const Keys keys;
  const Settings settings;
  POINT pointer{};
};

/// The calls of a family, see com/every_member/calls.h.
struct Family {
  const char* name;
  call_table::Rows (*rows)(Surroundings&);
  /// How many drawing objects the system itself may keep or give back meanwhile: those that show
  /// windows, of which a leak would leave more.
  int gdi_objects_of_system = 0;

  friend void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }
};

const std::vector<Family>& Families();

}  // namespace faults

#pragma once

#include "report.h"

namespace zepcheck {

/// Uses every family of the component as a client would, in a temporary folder that is gone
/// afterwards. Shows no window and moves no pointer. Needs COM in this thread.
void SelfTest(Report& report);

}  // namespace zepcheck

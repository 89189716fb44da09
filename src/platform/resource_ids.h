#pragma once

// The numbers of resources and of the about window's controls, for the resource compiler as well as
// for C++: hence macros.
#define ZEPKIT10_ICON 1
#define ZEPKIT10_MANIFEST 2  // 1 would be that of the process
#define ZEPKIT10_ABOUT 1
#define ZEPKIT10_ABOUT_ICON 101
#define ZEPKIT10_ABOUT_TEXT 102
#define ZEPKIT10_ABOUT_SCROLL_BAR 103
#define ZEPKIT10_ABOUT_FRAME 104
#define ZEPKIT10_ABOUT_MOVING_TEXT 105

#pragma once

#include <windows.h>

/// Only where the user's language is German do these texts and number formats appear.
#define SKIP_UNLESS_GERMAN()                                  \
  if (PRIMARYLANGID(GetUserDefaultLangID()) != LANG_GERMAN) { \
    GTEST_SKIP() << "needs a German user";                    \
  }

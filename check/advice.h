#pragma once

#include <string>

namespace zepcheck {

/// How to register the component of this program's bitness: the DLL beside this program if there is
/// one. For all users or for the current one alone.
std::wstring HowToRegister(bool for_all_users);

/// How to get the component of this program's bitness onto a machine that lacks it.
std::wstring HowToInstall();

}  // namespace zepcheck

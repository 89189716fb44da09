#pragma once

#include <windows.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <string_view>

#include "enums.h"

namespace zepkit10 {

/// The members of `Library` and `Global` that show what a program is.
class AboutMembers {
 public:
  static Microsoft::WRL::ComPtr<IPictureDisp> LoadZepIcon(ZepIcons Number);
  static void ShowAbout(std::u16string_view Caption, IPictureDisp* Icon,
                        std::u16string_view FirstLine, SAFEARRAY** AdditionalLines);
};

}  // namespace zepkit10

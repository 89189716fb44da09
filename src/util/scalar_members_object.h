#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <string_view>

#include "enums.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/string.h"
#include "platform/automation/variant.h"

namespace zepkit10 {

/// The members of `Library` and `Global` that work on single values and strings.
class ScalarMembers {
 public:
  static Bstr ByteArrayToString(SAFEARRAY** ByteArray, ZepStringType StringType);
  static Variant Decr(VARIANT* What, const VARIANT& ByWhat);
  static std::u16string FinalizeString(std::u16string_view Source, std::u16string_view FinalString);
  static Variant Incr(VARIANT* What, const VARIANT& ByWhat);
  static void MessageBeep(ZepMsgType MsgType);
  static std::u16string NewTag();
  static SafeArray StringToByteArray(std::u16string_view StringToConv, ZepStringType StringType);
  static void SwapVars(VARIANT* Var1, VARIANT* Var2);
};

}  // namespace zepkit10

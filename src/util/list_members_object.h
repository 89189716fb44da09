#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <string_view>

#include "platform/automation/ref.h"
#include "platform/automation/safe_array.h"
#include "util/collection_object.h"

namespace zepkit10 {

/// The members of `Library` and `Global` that convert between delimited lists, collections and
/// arrays of strings.
class ListMembers {
 public:
  static std::u16string CollectionToList(IDispatch* Collection, std::u16string_view Delimiter,
                                         std::u16string_view QuoteBegin,
                                         std::u16string_view QuoteEnd);
  static Ref<zepkit10::Collection> ListToCollection(std::u16string_view List,
                                                    std::u16string_view Delimiter,
                                                    std::u16string_view QuoteBegin,
                                                    std::u16string_view QuoteEnd);
  static SafeArray ListToStringArray(std::u16string_view List, std::u16string_view Delimiter,
                                     std::u16string_view QuoteBegin, std::u16string_view QuoteEnd);
  static std::u16string StringArrayToList(const VARIANT& StringArray, std::u16string_view Delimiter,
                                          std::u16string_view QuoteBegin,
                                          std::u16string_view QuoteEnd);
};

}  // namespace zepkit10

#include "util/list_members_object.h"

#include "frame/errors.h"
#include "platform/automation/array_access.h"
#include "platform/automation/late_call.h"
#include "util/delimited_list.h"

namespace zepkit10 {

using enum ZepErrors;

std::u16string ListMembers::CollectionToList(IDispatch* Collection, std::u16string_view Delimiter,
                                             std::u16string_view QuoteBegin,
                                             std::u16string_view QuoteEnd) {
  if (!Collection) return {};
  const std::vector<Variant> items = ItemsOf(*Collection);
  ListWriter list({Delimiter, QuoteBegin, QuoteEnd});
  for (const Variant& item : items) {
    const auto text = TextOf(item.get());
    if (!text) RaiseInCalledClass(zepErrBadCall);
    list.Append(*text);
  }
  return list.Take();
}

Ref<Collection> ListMembers::ListToCollection(std::u16string_view List,
                                              std::u16string_view Delimiter,
                                              std::u16string_view QuoteBegin,
                                              std::u16string_view QuoteEnd) {
  auto collection = Make<Collection>();
  ListReader items(List, {Delimiter, QuoteBegin, QuoteEnd});
  while (items.Next()) collection->Append(Variant(items.Item()));
  return collection;
}

SafeArray ListMembers::ListToStringArray(std::u16string_view List, std::u16string_view Delimiter,
                                         std::u16string_view QuoteBegin,
                                         std::u16string_view QuoteEnd) {
  const ListReader items(List, {Delimiter, QuoteBegin, QuoteEnd});
  ULONG count = 0;
  for (ListReader counted = items; counted.Next();) ++count;
  if (count == 0) return {};
  SafeArray array = SafeArray::Create(VT_BSTR, 1, count);
  BSTR* element = array.Elements<BSTR>();
  for (ListReader read = items; read.Next();) *element++ = MakeBstr(read.Item());
  return array;
}

std::u16string ListMembers::StringArrayToList(const VARIANT& StringArray,
                                              std::u16string_view Delimiter,
                                              std::u16string_view QuoteBegin,
                                              std::u16string_view QuoteEnd) {
  const VARIANT* given = Follow(&StringArray);
  if (!given || (given->vt & ~VT_BYREF) != (VT_ARRAY | VT_BSTR)) RaiseInCalledClass(zepErrBadCall);
  SAFEARRAY* array = (given->vt & VT_BYREF) ? *given->pparray : given->parray;
  const ArrayAccess texts(array);
  if (texts.IsEmpty()) return {};
  // Elements that are no strings, whatever the value says.
  if (array->cbElements != sizeof(BSTR)) RaiseInCalledClass(zepErrBadCall);
  ListWriter list({Delimiter, QuoteBegin, QuoteEnd});
  // Lists count from 1, whatever the array's lower bound is.
  for (std::int64_t i = 1; i <= texts.UpperBound(); ++i) {
    list.Append(ViewOf(*static_cast<BSTR*>(texts.At(i))));
  }
  return list.Take();
}

}  // namespace zepkit10

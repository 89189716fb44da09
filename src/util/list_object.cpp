#include "util/list_object.h"

#include "platform/automation/enumerator.h"
#include "platform/automation/late_call.h"
#include "util/delimited_list.h"

namespace zepkit10 {

using enum ZepErrors;

void List::AddItem(std::u16string_view Item, std::int32_t Index) {
  if (Index == 0 || Index < -1 || Index > std::int64_t{Count()} + 1) Raise(zepErrBadCall);
  const auto place = Index == -1 ? items_.end() : items_.begin() + (Index - 1);
  items_.emplace(place, Item);
}

void List::Clear() { items_.clear(); }

std::int32_t List::Count() const { return static_cast<std::int32_t>(items_.size()); }

std::u16string List::Item(std::int32_t Index) const { return items_[PositionOf(Index)]; }

void List::SetItem(std::int32_t Index, std::u16string_view NewItem) {
  items_[PositionOf(Index)] = NewItem;
}

Ref<Collection> List::Items() const {
  auto items = Make<Collection>();
  for (const std::u16string& item : items_) items->Append(Variant(item));
  return items;
}

void List::SetItems(IDispatch* NewItems) {
  std::vector<std::u16string> items;
  if (NewItems) {
    for (const Variant& item : ItemsOf(*NewItems)) {
      const auto text = TextOf(item.get());
      if (!text) Raise(zepErrBadCall);
      items.emplace_back(*text);
    }
  }
  items_ = std::move(items);
}

void List::SetDelimiter(std::u16string_view NewDelimiter) {
  if (NewDelimiter.empty() || NewDelimiter == quote_begin_ || NewDelimiter == quote_end_) {
    Raise(zepErrBadPropValue);
  }
  delimiter_ = NewDelimiter;
}

std::u16string List::ListString() const {
  ListWriter list({delimiter_, quote_begin_, quote_end_});
  for (const std::u16string& item : items_) list.Append(item);
  return list.Take();
}

void List::SetListString(std::u16string_view NewListString) {
  std::vector<std::u16string> items;
  ListReader list(NewListString, {delimiter_, quote_begin_, quote_end_});
  while (list.Next()) items.emplace_back(list.Item());
  items_ = std::move(items);
}

Microsoft::WRL::ComPtr<IUnknown> List::NewEnum() const {
  auto snapshot = std::make_shared<std::vector<Variant>>();
  snapshot->reserve(items_.size());
  for (const std::u16string& item : items_) snapshot->emplace_back(item);
  return Enumerator<VariantEnumeratorTraits>::Create(std::move(snapshot));
}

void List::SetQuoteBegin(std::u16string_view NewQuoteBegin) {
  if (NewQuoteBegin == delimiter_) Raise(zepErrBadPropValue);
  quote_begin_ = NewQuoteBegin;
}

void List::SetQuoteEnd(std::u16string_view NewQuoteEnd) {
  if (NewQuoteEnd == delimiter_) Raise(zepErrBadPropValue);
  quote_end_ = NewQuoteEnd;
}

void List::RemoveItem(std::int32_t Index) {
  if (items_.empty() || Index == 0 || Index < -1 || Index > Count()) Raise(zepErrBadCall);
  items_.erase(Index == -1 ? items_.end() - 1 : items_.begin() + (Index - 1));
}

std::size_t List::PositionOf(std::int32_t index) const {
  if (index < 1 || index > Count()) Raise(zepErrIndexOutOfRange);
  return static_cast<std::size_t>(index) - 1;
}

}  // namespace zepkit10

#pragma once

#include <string>
#include <vector>

#include "list_shim.h"
#include "platform/automation/automation_object.h"
#include "util/collection_object.h"

namespace zepkit10 {

/// A list of texts that reads and writes as one delimited text.
class List final : public AutomationObject<List, ListShim> {
 public:
  void AddItem(std::u16string_view Item, std::int32_t Index);
  void Clear();
  std::int32_t Count() const;
  std::u16string Item(std::int32_t Index) const;
  void SetItem(std::int32_t Index, std::u16string_view NewItem);
  Ref<Collection> Items() const;
  void SetItems(IDispatch* NewItems);
  std::u16string Delimiter() const { return delimiter_; }
  void SetDelimiter(std::u16string_view NewDelimiter);
  std::u16string ListString() const;
  void SetListString(std::u16string_view NewListString);
  Microsoft::WRL::ComPtr<IUnknown> NewEnum() const;
  std::u16string QuoteBegin() const { return quote_begin_; }
  void SetQuoteBegin(std::u16string_view NewQuoteBegin);
  std::u16string QuoteEnd() const { return quote_end_; }
  void SetQuoteEnd(std::u16string_view NewQuoteEnd);
  void RemoveItem(std::int32_t Index);

 private:
  std::size_t PositionOf(std::int32_t index) const;

  std::u16string delimiter_ = u" ";
  std::vector<std::u16string> items_;
  std::u16string quote_begin_;
  std::u16string quote_end_;
};

}  // namespace zepkit10

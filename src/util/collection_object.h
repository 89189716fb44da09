#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "collection_shim.h"
#include "platform/automation/automation_object.h"
#include "platform/automation/variant.h"

namespace zepkit10 {

/// A collection of values with optional keys, like a host's own: what the library hands out where
/// the type library says collection.
class Collection final : public AutomationObject<Collection, CollectionShim> {
 public:
  void Add(const VARIANT& Item, const VARIANT& Key, const VARIANT& Before, const VARIANT& After);
  std::int32_t Count() const;
  Variant Item(const VARIANT& Index) const;
  Microsoft::WRL::ComPtr<IUnknown> NewEnum() const;
  void Remove(const VARIANT& Index);

  /// Adds a value at the end, without a key.
  void Append(Variant value);

 private:
  struct Entry {
    Variant value;
    std::optional<std::u16string> key;  // folded
  };

  std::size_t PositionOf(const VARIANT& index) const;
  std::size_t PlaceFor(const VARIANT& before, const VARIANT& after) const;

  std::vector<std::unique_ptr<Entry>> entries_;
  std::unordered_map<std::u16string, Entry*> keys_;
};

}  // namespace zepkit10

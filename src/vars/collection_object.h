#pragma once

#include <wrl/client.h>

#include <memory>
#include <vector>

#include "platform/automation/automation_object.h"
#include "platform/automation/enumerator.h"
#include "platform/automation/variant.h"
#include "vars/item_list.h"

/// The shape that all collections of the library share, as layers over AutomationObject:
///     class VarSets : public CollectionOf<Deletable<VarSets, VarSetsShim>, VarSet>
///     class Variable : public ItemOf<Deletable<Variable, VariableShim>, VarSet>
/// A collection holds its items and an item holds its parent; deleting the item breaks both links.
namespace zepkit10 {

/// An object that may be deleted while clients still hold it: from then on it awaits its last
/// release and every member raises `zepErrAwaitTerm`.
template <class Self_, template <class> class ShimOf>
class Deletable : public AutomationObject<Self_, ShimOf> {
 public:
  using Self = Self_;
  using AutomationObject<Self_, ShimOf>::AutomationObject;

  bool Deleted() const { return deleted_; }

 protected:
  void EnsureAlive() const {
    if (deleted_) this->Raise(ZepErrors::zepErrAwaitTerm);
  }
  void MarkDeleted() { deleted_ = true; }
  Self& self() { return static_cast<Self&>(*this); }

 private:
  bool deleted_ = false;
};

template <class Base, class ItemType>
class CollectionOf : public Base {
 public:
  using Base::Base;

  void Clear() {
    this->EnsureAlive();
    DeleteAll();
  }

  std::int32_t Count() const {
    this->EnsureAlive();
    return static_cast<std::int32_t>(items_.Count());
  }

  /// The item at a position (a 16- or 32-bit integer) or of a name; any other index raises
  /// `zepErrBadParam`.
  Ref<ItemType> Item(const VARIANT& Index) {
    this->EnsureAlive();
    if (const auto position = IntegerOf(Index)) return items_.At(*position);
    const std::u16string_view name = NameOf(Index);
    if (ItemType* found = items_.FindByName(name)) return Ref<ItemType>(found);
    return this->self().ItemNotFound(name);
  }

  Microsoft::WRL::ComPtr<IUnknown> NewEnum() {
    this->EnsureAlive();
    auto snapshot = std::make_shared<std::vector<Variant>>();
    snapshot->reserve(items_.Count());
    for (const Ref<ItemType>& item : items_) snapshot->emplace_back(item->Abi());
    return Enumerator<VariantEnumeratorTraits>::Create(std::move(snapshot));
  }

  void Remove(const VARIANT& Index) {
    this->EnsureAlive();
    Ref<ItemType> item;
    if (const auto position = IntegerOf(Index)) {
      item = items_.At(*position);
    } else {
      item = Ref<ItemType>(items_.FindByName(NameOf(Index)));
      if (!item) this->Raise(ZepErrors::zepErrItemNotExistant);
    }
    item->Delete();
  }

  /// The first item of that name, or null.
  ItemType* FindByName(std::u16string_view name) const { return items_.FindByName(name); }

  const ItemList<ItemType>& Items() const { return items_; }

  /// Keeps the index of names up to date; called by an item of this collection that is renamed.
  void Renamed(ItemType& item, std::u16string_view old_name, std::u16string_view new_name) {
    items_.SetName(item, old_name, new_name);
  }

  /// Takes an item out; called by the item's `Delete`.
  void Forget(const ItemType& item, std::u16string_view name) noexcept {
    items_.Remove(item, name);
  }

  /// Deletes every item, in order. Needs no memory.
  void DeleteAll() {
    const auto taken = items_.TakeAll();
    if (!taken) return;
    for (const Ref<ItemType>& item : *taken) {
      if (!item->Deleted()) item->Delete();
    }
  }

  /// The owner's own end: the collection awaits its last release, its items are deleted.
  void Shutdown() {
    this->MarkDeleted();
    DeleteAll();
  }

 protected:
  void Append(const Ref<ItemType>& item) { items_.Append(item); }

  /// Adds an item and names it; one that cannot take its name is deleted again.
  void AppendNamed(const Ref<ItemType>& item, std::u16string_view name) {
    Append(item);
    try {
      item->SetName(name);
    } catch (...) {
      item->Delete();
      throw;
    }
  }

  void EnsureUnused(std::u16string_view name) const {
    if (items_.FindByName(name)) this->Raise(ZepErrors::zepErrItemAlreadyExists);
  }

  /// What `Item` does about a name that is not there; a collection may do something else.
  Ref<ItemType> ItemNotFound(std::u16string_view) { this->Raise(ZepErrors::zepErrItemNotExistant); }

 private:
  std::u16string_view NameOf(const VARIANT& index) const {
    const auto name = TextOf(index);
    if (!name) this->Raise(ZepErrors::zepErrBadParam);
    return *name;
  }

  ItemList<ItemType> items_;
};

template <class Base, class ParentType>
class ItemOf : public Base {
 public:
  using Base::Base;

  void Delete() {
    this->EnsureAlive();
    this->MarkDeleted();
    const Ref<typename Base::Self> keeper(&this->self());
    if (const Ref<ParentType> parent = std::exchange(parent_, nullptr)) {
      parent->Forget(this->self(), name_);
    }
    this->self().ReleaseContent();
  }

  std::u16string Name() const {
    this->EnsureAlive();
    return name_;
  }

  void SetName(std::u16string_view NewName) {
    this->EnsureAlive();
    if (parent_->FindByName(NewName)) this->Raise(ZepErrors::zepErrItemAlreadyExists);
    std::u16string name(NewName);
    parent_->Renamed(this->self(), name_, name);
    name_ = std::move(name);
  }

  Ref<ParentType> Parent() const {
    this->EnsureAlive();
    return parent_;
  }

  /// Links a new item to its owner, once.
  void AttachParent(ParentType* parent) {
    if (parent_ || !parent) this->Raise(ZepErrors::zepErrUnexpected);
    parent_ = Ref<ParentType>(parent);
  }

 protected:
  ParentType& parent() const { return *parent_; }

 private:
  Ref<ParentType> parent_;
  std::u16string name_;
};

}  // namespace zepkit10

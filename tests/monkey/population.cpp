#include "monkey/population.h"

#include <algorithm>
#include <utility>

#include "Zepkit10.h"

namespace monkey {
namespace {

using Microsoft::WRL::ComPtr;

constexpr std::size_t kMost = 96;
constexpr std::size_t kMostEnumerators = 8;

/// A collection of a client's values, which may lead back to it: a circle that only the client can
/// open.
bool HoldsAnything(const Class& its_class) {
  return its_class.iid == __uuidof(_Collection) || its_class.iid == __uuidof(_Messages);
}

void Empty(IUnknown* object) {
  ComPtr<_Collection> collection;
  ComPtr<_Messages> board;
  object->QueryInterface(IID_PPV_ARGS(&collection));
  object->QueryInterface(IID_PPV_ARGS(&board));
  VARIANT first{};
  first.vt = VT_I4;
  first.lVal = 1;
  while (collection && SUCCEEDED(collection->Remove(first))) {
  }
  while (board && SUCCEEDED(board->Remove(1, VARIANT_FALSE))) {
  }
}

}  // namespace

void Population::Join(IUnknown* object) {
  ComPtr<IDispatch> joining;
  if (!object) return;
  if (FAILED(object->QueryInterface(IID_PPV_ARGS(&joining)))) return JoinAsEnumerator(object);
  if (std::count(arguments_.begin(), arguments_.end(), joining.Get())) return;
  const int class_index = ClassIndexOf(joining.Get());
  if (class_index == kNoClass) {
    guest_ = std::move(joining);
    return;
  }
  auto connections = connect_(joining.Get(), classes_[static_cast<std::size_t>(class_index)]);
  arguments_.push_back(joining.Get());
  inhabitants_.push_back({std::move(joining), class_index, std::move(connections)});
  if (inhabitants_.size() > kMost) LetOneGo();
}

void Population::JoinAsEnumerator(IUnknown* object) {
  ComPtr<IEnumVARIANT> joining;
  if (FAILED(object->QueryInterface(IID_PPV_ARGS(&joining)))) return;
  enumerators_.push_back(std::move(joining));
  if (enumerators_.size() > kMostEnumerators) enumerators_.erase(enumerators_.begin());
}

int Population::ClassIndexOf(IDispatch* object) const {
  // Not by their type information: Wine's pictures register their type library whenever they are
  // asked for it, and lose three handles by that.
  const auto found = std::find_if(classes_.begin(), classes_.end(), [&](const Class& each) {
    ComPtr<IUnknown> known;
    return SUCCEEDED(
        object->QueryInterface(each.iid, reinterpret_cast<void**>(known.GetAddressOf())));
  });
  return found == classes_.end() ? kNoClass : static_cast<int>(found - classes_.begin());
}

IDispatch* Population::AnyOf(int class_index) {
  std::size_t count = 0;
  for (const Inhabitant& each : inhabitants_) count += each.class_index == class_index;
  if (count == 0) return nullptr;
  std::size_t chosen = Below(count);
  for (const Inhabitant& each : inhabitants_) {
    if (each.class_index == class_index && chosen-- == 0) return each.object.Get();
  }
  return nullptr;
}

std::vector<Population::Inhabitant>::const_iterator Population::Find(IDispatch* object) const {
  return std::find_if(inhabitants_.begin(), inhabitants_.end(),
                      [&](const Inhabitant& each) { return each.object.Get() == object; });
}

bool Population::Has(IDispatch* object) const { return Find(object) != inhabitants_.end(); }

int Population::ClassOf(IDispatch* object) const {
  const auto found = Find(object);
  return found == inhabitants_.end() ? kNoClass : found->class_index;
}

void Population::LetGo(IDispatch* object) {
  const auto found = Find(object);
  if (found == inhabitants_.end()) return;
  // Letting an object go may run code that lets others go.
  Inhabitant leaving = *found;
  inhabitants_.erase(found);
  std::erase(arguments_, object);
  for (const Connection& each : leaving.connections) each.point->Unadvise(each.cookie);
  if (HoldsAnything(classes_[static_cast<std::size_t>(leaving.class_index)])) {
    leaving_.push_back(std::move(leaving));
  }
}

void Population::SeeOff() {
  while (!leaving_.empty()) {
    const Inhabitant leaving = std::move(leaving_.back());
    leaving_.pop_back();
    Empty(leaving.object.Get());
  }
}

void Population::LetOneGo() {
  if (!inhabitants_.empty()) LetGo(inhabitants_[Below(inhabitants_.size())].object.Get());
}

void Population::LetAllGo() {
  guest_ = nullptr;
  enumerators_.clear();
  while (!inhabitants_.empty()) LetGo(inhabitants_.back().object.Get());
  SeeOff();
}

void Population::AddStrangers(const Objects& strangers) {
  arguments_.insert(arguments_.end(), strangers.begin(), strangers.end());
}

IEnumVARIANT* Population::AnyEnumerator() {
  return enumerators_.empty() ? nullptr : enumerators_[Below(enumerators_.size())].Get();
}

}  // namespace monkey

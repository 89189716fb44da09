#include "faults/object_state.h"

#include <map>
#include <set>

#include "com/every_member/call_table.h"
#include "com/type_library_reader.h"

namespace faults {
namespace {

using call_table::Elements;
using call_table::Narrow;
using Microsoft::WRL::ComPtr;
using zepkit10::AttributesOf;
using zepkit10::DocumentationOf;
using zepkit10::FunctionAt;

bool Same(const client::Outcome& left, const client::Outcome& right) {
  if (!left.ok() || !right.ok()) return left.number == right.number;
  if (left.value.type() != right.value.type()) return false;
  if (!(left.value.type() & VT_ARRAY)) return left.value == right.value;
  if (!left.value.raw().parray || !right.value.raw().parray) {
    return left.value.raw().parray == right.value.raw().parray;
  }
  return Elements(left.value) == Elements(right.value);
}

using Names = std::vector<std::wstring>;

bool HoldsObject(const client::Outcome& outcome) {
  return outcome.ok() &&
         (outcome.value.type() == VT_DISPATCH || outcome.value.type() == VT_UNKNOWN);
}

Names PropertiesOf(ITypeInfo& type) {
  Names names;
  const ComPtr<ITypeInfo> own = zepkit10::VtableHalf(type);
  const UINT count = AttributesOf(*own.Get())->cFuncs;
  for (UINT i = 0; i < count; ++i) {
    const auto function = FunctionAt(*own.Get(), i);
    if (function->invkind != INVOKE_PROPERTYGET || function->cParams != 1) continue;
    const std::string name = DocumentationOf(*own.Get(), function->memid).name;
    names.emplace_back(name.begin(), name.end());
  }
  return names;
}

const Names& NamesFor(const client::Object& object) {
  static std::map<std::string, Names> known;
  // What these make at the first use is to be made by the calls under test; what a term's value
  // needs, too.
  static const std::set<std::string> lazy{"_Global", "_Library", "_Expression", "_Variable"};
  ComPtr<ITypeInfo> type;
  if (FAILED(object.get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type))) throw std::bad_alloc();
  const std::string name = DocumentationOf(*type.Get()).name;
  const auto [found, added] = known.try_emplace(name);
  if (added && !lazy.count(name)) found->second = PropertiesOf(*type.Get());
  return found->second;
}

}  // namespace

ObjectState::ObjectState(IDispatch* object, const std::wstring& left_out) {
  const client::Object read(object, client::Binding::kDispatch);
  for (const std::wstring& name : NamesFor(read)) {
    if (name == left_out) continue;
    client::Outcome outcome = read.Get(name.c_str());
    const bool anew = HoldsObject(outcome) && !Same(outcome, read.Get(name.c_str()));
    if (anew) outcome.value = client::Value(L"another each time");
    properties_.push_back({name, std::move(outcome)});
  }
}

std::vector<std::wstring> ObjectState::Difference(const ObjectState& later) const {
  std::vector<std::wstring> names;
  for (std::size_t i = 0; i < properties_.size() && i < later.properties_.size(); ++i) {
    if (!Same(properties_[i].outcome, later.properties_[i].outcome)) {
      names.push_back(properties_[i].name);
    }
  }
  return names;
}

}  // namespace faults

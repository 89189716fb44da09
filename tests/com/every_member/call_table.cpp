#include "com/every_member/call_table.h"

#include <gtest/gtest.h>

#include "com/class_walk.h"
#include "com/every_member/session.h"
#include "com/type_library_reader.h"
#include "com/value_array.h"

namespace call_table {
namespace {

using Microsoft::WRL::ComPtr;
using zepkit10::AttributesOf;
using zepkit10::DocumentationOf;
using zepkit10::FunctionAt;
using zepkit10::FunctionDescription;

void AddMembers(ITypeInfo& type, std::set<std::string>& members) {
  const auto attributes = AttributesOf(type);
  const bool dual = (attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0;
  const ComPtr<ITypeInfo> own = zepkit10::VtableHalf(type);
  const UINT count = AttributesOf(*own.Get())->cFuncs;
  for (UINT i = 0; i < count; ++i) {
    const FunctionDescription function = FunctionAt(*own.Get(), i);
    members.insert(DocumentationOf(type).name + "." +
                   DocumentationOf(*own.Get(), function->memid).name +
                   (dual ? KindName(static_cast<WORD>(function->invkind)) : " event"));
  }
}

}  // namespace

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

const char* KindName(WORD kind) {
  switch (kind) {
    case DISPATCH_PROPERTYGET:
      return " get";
    case DISPATCH_PROPERTYPUT:
      return " put";
    case DISPATCH_PROPERTYPUTREF:
      return " putref";
    default:
      return " method";
  }
}

std::vector<Value> Elements(const Value& list) {
  if (list.type() & VT_ARRAY) return value_array::Read(list);
  std::vector<Value> values;
  ComPtr<IEnumVARIANT> enumerator;
  if (list.type() != VT_UNKNOWN || !list.raw().punkVal ||
      FAILED(list.raw().punkVal->QueryInterface(IID_PPV_ARGS(&enumerator)))) {
    ADD_FAILURE() << "no list: " << list;
    return values;
  }
  Value value;
  while (enumerator->Next(1, &value.raw(), nullptr) == S_OK) {
    values.push_back(std::exchange(value, Value()));
  }
  return values;
}

Row Row::Gives(Argument expected) && {
  check_ = [expected](Session& session, const Value& result) {
    EXPECT_EQ(session.Passed(expected), result);
  };
  return std::move(*this);
}

Row Row::GivesA(const wchar_t* class_name, const wchar_t* name) && {
  check_ = [class_name, name](Session& session, const Value& result) {
    session.Name(name, class_name, result);
  };
  return std::move(*this);
}

Row Row::Lists(Arguments expected) && {
  check_ = [expected](Session& session, const Value& result) {
    std::vector<Value> values;
    for (const Argument& each : expected) values.push_back(session.Passed(each));
    EXPECT_EQ(values, Elements(result));
  };
  return std::move(*this);
}

Row Row::Satisfies(std::function<void(const Value&)> check) && {
  check_ = [check = std::move(check)](Session&, const Value& result) { check(result); };
  return std::move(*this);
}

void Row::Perform(Session& session) const {
  if (work_) return work_(session);
  const Outcome outcome = session.Call(*this);
  EXPECT_TRUE(outcome.ok()) << outcome;
  if (!outcome.ok()) return;
  if (check_) return check_(session, outcome.value);
  EXPECT_NE(DISPATCH_PROPERTYGET, kind_) << "the row expects nothing";
  EXPECT_EQ(VT_EMPTY, outcome.value.type()) << "the row expects no result";
}

Row New(const wchar_t* class_name, const wchar_t* name) {
  return Row(0, std::wstring(class_name), {}).GivesA(class_name, name);
}

Row Get(const std::wstring& call, Arguments arguments) {
  return {DISPATCH_PROPERTYGET, call, std::move(arguments)};
}
Row Put(const std::wstring& call, Arguments arguments) {
  return {DISPATCH_PROPERTYPUT, call, std::move(arguments)};
}
Row Set(const std::wstring& call, Arguments arguments) {
  return {DISPATCH_PROPERTYPUTREF, call, std::move(arguments)};
}
Row Run(const std::wstring& call, Arguments arguments) {
  return {DISPATCH_METHOD, call, std::move(arguments)};
}

Row Assign(const wchar_t* name, Value value) {
  return {std::wstring(name) + L" =", [=](Session& session) { session.named_[name] = value; }};
}

Row Holds(const wchar_t* name, Value expected) {
  return {std::wstring(name) + L" ?",
          [=](Session& session) { EXPECT_EQ(expected, session.Named(name)); }};
}

Row HoldsList(const wchar_t* name, std::vector<Value> expected) {
  return {std::wstring(name) + L" ?",
          [=](Session& session) { EXPECT_EQ(expected, Elements(session.Named(name))); }};
}

Row Do(std::function<void()> action) {
  return {L"an action", [action = std::move(action)](Session&) { action(); }};
}

Row Drop(const wchar_t* name) {
  return {std::wstring(name) + L" goes", [=](Session& session) { session.named_.erase(name); }};
}

std::set<std::string> MembersOfTypeLibrary() {
  std::set<std::string> members;
  const ComPtr<ITypeLib> library = class_walk::TypeLibrary();
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(S_OK, library->GetTypeInfo(i, &type));
    if (AttributesOf(*type.Get())->typekind == TKIND_DISPATCH) AddMembers(*type.Get(), members);
  }
  return members;
}

}  // namespace call_table

#include "com/every_member/call_table.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "com/class_walk.h"
#include "com/component.h"
#include "com/type_library_reader.h"
#include "com/value_array.h"

namespace call_table {
namespace {

using Microsoft::WRL::ComPtr;
using zepkit10::AttributesOf;
using zepkit10::DocumentationOf;
using zepkit10::FunctionAt;
using zepkit10::FunctionDescription;

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

ComPtr<ITypeInfo> TypeOf(IDispatch& object) {
  ComPtr<ITypeInfo> type;
  EXPECT_EQ(S_OK, object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &type));
  return type;
}

ComPtr<ITypeLib> TypeLibrary() {
  ComPtr<ITypeLib> library;
  EXPECT_EQ(S_OK, LoadTypeLibEx(component::ComponentPath().c_str(), REGKIND_NONE, &library));
  return library;
}

const class_walk::Class* FindClass(const std::wstring& name) {
  static const std::vector<class_walk::Class> classes = class_walk::Classes();
  const auto found = std::find_if(classes.begin(), classes.end(),
                                  [&](const class_walk::Class& each) { return each.name == name; });
  return found == classes.end() ? nullptr : &*found;
}

IDispatch* ObjectIn(const Value& value) {
  return value.type() == VT_DISPATCH ? value.raw().pdispVal : nullptr;
}

/// The function of a dual interface, if it is one whose last argument takes all that are left.
FunctionDescription FindParameterArray(ITypeInfo& type, const std::wstring& member) {
  constexpr SHORT kParameterArray = -1;
  const UINT count = AttributesOf(type)->cFuncs;
  for (UINT i = 0; i < count; ++i) {
    FunctionDescription function = FunctionAt(type, i);
    if (function->cParamsOpt == kParameterArray &&
        DocumentationOf(type, function->memid).name == Narrow(member)) {
      return function;
    }
  }
  return nullptr;
}

/// Calls the slot itself: the platform's early binding may not serve parameter arrays. The
/// arguments before the array must have the types of their parameters.
Outcome CallWithParameterArray(IDispatch* object, const FUNCDESC& function,
                               const std::vector<Value>& arguments) {
  const PARAMDESC& last = function.lprgelemdescParam[function.cParams - 1].paramdesc;
  const bool has_result = (last.wParamFlags & PARAMFLAG_FRETVAL) != 0;
  const std::size_t fixed = static_cast<std::size_t>(function.cParams) - (has_result ? 2 : 1);
  std::vector<VARTYPE> types;
  std::vector<VARIANT*> passed;
  const auto pass = [&](VARIANT& argument) {
    types.push_back(argument.vt);
    passed.push_back(&argument);
  };
  std::vector<Value> first(arguments.begin(), arguments.begin() + fixed);
  Value rest = value_array::Variants(0, {arguments.begin() + fixed, arguments.end()});
  VARIANT array, result, returned{};
  array.vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
  array.pparray = &rest.raw().parray;
  Outcome outcome;
  result.vt = VT_BYREF | VT_VARIANT;
  result.pvarVal = &outcome.value.raw();
  for (Value& argument : first) pass(argument.raw());
  pass(array);
  if (has_result) pass(result);
  EXPECT_EQ(S_OK,
            DispCallFunc(object, function.oVft, CC_STDCALL, VT_ERROR,
                         static_cast<UINT>(types.size()), types.data(), passed.data(), &returned));
  outcome.result = returned.scode;
  return outcome;
}

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
  return {std::wstring(L"a new ") + class_name, [class_name, name](Session& session) {
            const class_walk::Class* described = FindClass(class_name);
            ASSERT_TRUE(described);
            const auto made = component::Create<IDispatch>(described->clsid);
            session.Name(name, class_name, Value(made.Get()));
          }};
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

void Session::Perform(const Rows& rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE("row " + std::to_string(i + 1) + ": " + Narrow(rows[i].text()));
    rows[i].Perform(*this);
  }
}

std::set<std::string> Session::Reached() const {
  std::set<std::string> reached = called_;
  const ComPtr<ITypeLib> library = TypeLibrary();
  for (const Listener& listener : listeners_) {
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(S_OK, library->GetTypeInfoOfGuid(listener.events, &type));
    for (const client::Event& event : listener.sink->events()) {
      reached.insert(DocumentationOf(*type.Get()).name + "." +
                     DocumentationOf(*type.Get(), event.id).name + " event");
    }
  }
  return reached;
}

void Session::Name(const std::wstring& name, const std::wstring& class_name, const Value& object) {
  ASSERT_TRUE(ObjectIn(object)) << "no object: " << object;
  EXPECT_EQ("_" + Narrow(class_name), DocumentationOf(*TypeOf(*ObjectIn(object)).Get()).name);
  named_[name] = object;
  // Collection is an interface without a class.
  const class_walk::Class* described = FindClass(class_name);
  if (!described || described->events == GUID_NULL) return;
  listeners_.push_back(
      {described->events, client::Sink::Connect(ObjectIn(object), described->events)});
}

Value& Session::Named(const std::wstring& name) {
  const auto found = named_.find(name);
  if (found == named_.end()) throw std::runtime_error("nothing is named " + Narrow(name));
  return found->second;
}

Value Session::Passed(const Argument& argument) {
  if (argument.name.empty()) return argument.value;
  Value& named = Named(argument.name);
  if (argument.passing == Argument::Passing::kValue) return named;
  if (argument.passing == Argument::Passing::kVariant) return named.Reference();
  VARIANT reference;
  reference.vt = static_cast<VARTYPE>(VT_BYREF | named.type());
  reference.byref = value_array::ContentOf(named.raw());
  return Value(reference);
}

Outcome Session::Call(const Row& row) {
  const std::size_t dot = row.text().find(L'.');
  IDispatch* object = ObjectIn(Named(row.text().substr(0, dot)));
  if (!object) throw std::runtime_error("no object: " + Narrow(row.text()));
  const std::wstring member = row.text().substr(dot + 1);
  std::vector<Value> arguments;
  for (const Argument& each : row.arguments_) arguments.push_back(Passed(each));
  const ComPtr<ITypeInfo> type = zepkit10::VtableHalf(*TypeOf(*object).Get());
  called_.insert(DocumentationOf(*type.Get()).name + "." + Narrow(member) + KindName(row.kind_));
  const FunctionDescription function = FindParameterArray(*type.Get(), member);
  if (function && binding_ == client::Binding::kVtable) {
    return CallWithParameterArray(object, *function, arguments);
  }
  return client::Object(object, binding_).Invoke(member.c_str(), row.kind_, arguments);
}

std::set<std::string> MembersOfTypeLibrary() {
  std::set<std::string> members;
  const ComPtr<ITypeLib> library = TypeLibrary();
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(S_OK, library->GetTypeInfo(i, &type));
    if (AttributesOf(*type.Get())->typekind == TKIND_DISPATCH) AddMembers(*type.Get(), members);
  }
  return members;
}

}  // namespace call_table

#include "com/every_member/session.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "com/class_walk.h"
#include "com/component.h"
#include "com/fault_plan.h"
#include "com/type_library_reader.h"
#include "com/value_array.h"

namespace call_table {
namespace {

using Microsoft::WRL::ComPtr;
using zepkit10::AttributesOf;
using zepkit10::DocumentationOf;
using zepkit10::FunctionAt;
using zepkit10::FunctionDescription;

ComPtr<ITypeInfo> TypeOf(IDispatch& object) {
  ComPtr<ITypeInfo> type;
  EXPECT_EQ(S_OK, object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &type));
  return type;
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
  HRESULT called = E_UNEXPECTED;
  {
    const faults::InsideCall inside;
    called = DispCallFunc(object, function.oVft, CC_STDCALL, VT_ERROR,
                          static_cast<UINT>(types.size()), types.data(), passed.data(), &returned);
  }
  EXPECT_EQ(S_OK, called);
  outcome.result = returned.scode;
  if (!outcome.ok()) client::ReadErrorInfo(outcome);
  return outcome;
}

}  // namespace

void Session::Perform(const Rows& rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE("row " + std::to_string(i + 1) + ": " + Narrow(rows[i].text()));
    rows[i].Perform(*this);
  }
}

std::set<std::string> Session::Reached() const {
  std::set<std::string> reached = called_;
  const ComPtr<ITypeLib> library = class_walk::TypeLibrary();
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

void Session::End() {
  named_.clear();
  listeners_.clear();
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

Outcome Session::Create(const Row& row) {
  Outcome outcome;
  const class_walk::Class* described = FindClass(row.text());
  if (!described) throw std::runtime_error("no class: " + Narrow(row.text()));
  ComPtr<IDispatch> made;
  outcome.result = component::CreateInstance(described->clsid, IID_PPV_ARGS(&made));
  if (!outcome.ok()) client::ReadErrorInfo(outcome);
  outcome.value = Value(made.Get());
  return outcome;
}

IDispatch* Session::ObjectOf(const Row& row) {
  const std::size_t dot = row.text().find(L'.');
  return dot == std::wstring::npos ? nullptr : ObjectIn(Named(row.text().substr(0, dot)));
}

Outcome Session::Call(const Row& row) {
  if (row.kind_ == 0) return Create(row);
  IDispatch* object = ObjectOf(row);
  if (!object) throw std::runtime_error("no object: " + Narrow(row.text()));
  const std::wstring member = row.text().substr(row.text().find(L'.') + 1);
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

}  // namespace call_table

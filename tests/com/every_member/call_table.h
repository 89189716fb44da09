#pragma once

#include <concepts>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "com/client.h"

/// Calls of members as tables: one row a call, with what it must give. Objects and variables have
/// names, which rows give and later rows use:
///     New(L"Counter", L"counter"),
///     Run(L"counter.Increment", {2}),
///     Get(L"counter.Value").Gives(2),
namespace call_table {

using client::Outcome;
using client::Value;

/// A value, or what a name stands for when the row is reached.
struct Argument {
  enum class Passing { kValue, kVariant, kTyped };

  template <std::convertible_to<Value> From>
  Argument(From&& from) : value(std::forward<From>(from)) {}
  Argument(Passing how, const wchar_t* named) : passing(how), name(named) {}

  Value value;
  Passing passing = Passing::kValue;
  std::wstring name;  // empty for a value
};
using Arguments = std::vector<Argument>;

/// What a name stands for, by value.
inline Argument The(const wchar_t* name) { return {Argument::Passing::kValue, name}; }
/// A variable by reference, as clients without types pass it.
inline Argument Variable(const wchar_t* name) { return {Argument::Passing::kVariant, name}; }
/// A variable by reference, of the type that it has.
inline Argument TypedVariable(const wchar_t* name) { return {Argument::Passing::kTyped, name}; }

/// For messages.
std::string Narrow(const std::wstring& text);
/// How a member is called (DISPATCH_…), as a word behind its name.
const char* KindName(WORD kind);

/// The elements of an array, or what an enumerator visits.
std::vector<Value> Elements(const Value& list);

class Session;

class Row {
 public:
  using Work = std::function<void(Session&)>;
  using Check = std::function<void(Session&, const Value& result)>;

  Row(std::wstring text, Work work) : text_(std::move(text)), work_(std::move(work)) {}
  Row(WORD kind, std::wstring call, Arguments arguments)
      : text_(std::move(call)), kind_(kind), arguments_(std::move(arguments)) {}

  /// The call gives this value, of this type; an object with this identity.
  Row Gives(Argument expected) &&;
  /// The call gives an object of a class, which is named from here on.
  Row GivesA(const wchar_t* class_name, const wchar_t* name) &&;
  /// The call gives an array or an enumerator of these.
  Row Lists(Arguments expected) &&;
  Row Satisfies(std::function<void(const Value& result)> check) &&;

  void Perform(Session& session) const;
  const std::wstring& text() const { return text_; }
  /// DISPATCH_…; 0 where an object is made.
  WORD kind() const { return kind_; }
  const Arguments& arguments() const { return arguments_; }

 private:
  friend class Session;

  std::wstring text_;  // of a call: "object.Member"; of a new object: its class
  WORD kind_ = 0;
  Arguments arguments_;
  Check check_;
  Work work_;
};
using Rows = std::vector<Row>;

/// Creates an object of a class and names it.
Row New(const wchar_t* class_name, const wchar_t* name);
Row Get(const std::wstring& call, Arguments arguments = {});
Row Put(const std::wstring& call, Arguments arguments);
Row Set(const std::wstring& call, Arguments arguments);
Row Run(const std::wstring& call, Arguments arguments = {});
/// Makes a variable.
Row Assign(const wchar_t* name, Value value);
Row Holds(const wchar_t* name, Value expected);
Row HoldsList(const wchar_t* name, std::vector<Value> expected);
/// Something besides calls, or a look at the effect of one.
Row Do(std::function<void()> action);
/// Lets go of what is named.
Row Drop(const wchar_t* name);

/// Every member and event that a type library describes, written as `Session::Reached` does.
std::set<std::string> MembersOfTypeLibrary();

}  // namespace call_table

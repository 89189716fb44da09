#pragma once

#include <concepts>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "com/client.h"
#include "com/sink.h"

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

 private:
  friend class Session;

  std::wstring text_;  // of a call: "object.Member"
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

/// Performs rows in one binding and keeps what was called and heard.
class Session {
 public:
  explicit Session(client::Binding binding) : binding_(binding) {}

  void Perform(const Rows& rows);

  /// "_Counter.Value get", "__Counter.ValueChanged event".
  std::set<std::string> Reached() const;

 private:
  friend class Row;
  friend Row New(const wchar_t*, const wchar_t*);
  friend Row Assign(const wchar_t*, Value);
  friend Row Holds(const wchar_t*, Value);
  friend Row HoldsList(const wchar_t*, std::vector<Value>);
  friend Row Drop(const wchar_t*);

  struct Listener {
    IID events;
    Microsoft::WRL::ComPtr<client::Sink> sink;
  };

  void Name(const std::wstring& name, const std::wstring& class_name, const Value& object);
  Value& Named(const std::wstring& name);
  Value Passed(const Argument& argument);
  Outcome Call(const Row& row);

  const client::Binding binding_;
  std::map<std::wstring, Value> named_;
  std::vector<Listener> listeners_;
  std::set<std::string> called_;
};

/// Every member and event that a type library describes, written as `Session::Reached` does.
std::set<std::string> MembersOfTypeLibrary();

}  // namespace call_table

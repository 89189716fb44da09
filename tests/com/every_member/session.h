#pragma once

#include <map>

#include "com/every_member/call_table.h"
#include "com/sink.h"

namespace call_table {

/// Performs rows in one binding and keeps what was called and heard.
class Session {
 public:
  explicit Session(client::Binding binding) : binding_(binding) {}
  virtual ~Session() = default;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void Perform(const Rows& rows);

  /// "_Counter.Value get", "__Counter.ValueChanged event".
  std::set<std::string> Reached() const;

 protected:
  /// Makes the call of a row, or the object.
  virtual Outcome Call(const Row& row);
  /// The object that a row calls; null where it makes one.
  IDispatch* ObjectOf(const Row& row);
  Value& Named(const std::wstring& name);
  /// Lets go of everything.
  void End();

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
  Value Passed(const Argument& argument);
  Outcome Create(const Row& row);

  const client::Binding binding_;
  std::map<std::wstring, Value> named_;
  std::vector<Listener> listeners_;
  std::set<std::string> called_;
};

}  // namespace call_table

#pragma once

#include <string>
#include <vector>

#include "com/client.h"

namespace faults {

/// What an object's properties without parameters say. One is left out by name: reading it first
/// would do what a later call is to do.
class ObjectState {
 public:
  ObjectState() = default;
  ObjectState(IDispatch* object, const std::wstring& left_out);

  /// The names of the properties that differ.
  std::vector<std::wstring> Difference(const ObjectState& later) const;

 private:
  struct Property {
    std::wstring name;
    client::Outcome outcome;
  };

  std::vector<Property> properties_;
};

}  // namespace faults

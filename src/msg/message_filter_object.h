#pragma once

#include <wrl/client.h>

#include <optional>
#include <string>

#include "msg/message_record_object.h"

namespace zepkit10 {

/// Which messages a client asks for: those that equal every argument given. `zepErrBadCall` where
/// none is given, or parameters that are no array; error 13 for a time that is none.
class MessageFilter {
 public:
  MessageFilter(const VARIANT& message, const VARIANT& source, const VARIANT& destination,
                const VARIANT& parameters, const VARIANT& time);

  /// Compares as the platform compares Variants and raises its errors; arrays cannot be compared.
  /// Runs code of the objects that it compares.
  bool Matches(const MessageRecord& record) const;

 private:
  /// A value that others must equal in type and value; objects only equal themselves.
  class Criterion {
   public:
    explicit Criterion(const VARIANT& argument);
    bool Matches(const VARIANT& value) const;

   private:
    Variant value_;
    std::u16string type_name_;
    Microsoft::WRL::ComPtr<IUnknown> identity_;  // of an object
  };

  static std::optional<Criterion> CriterionOf(const VARIANT& argument);

  std::optional<Criterion> message_;
  std::optional<Criterion> source_;
  std::optional<Criterion> destination_;
  bool has_parameters_;
  std::optional<DATE> time_;
};

}  // namespace zepkit10

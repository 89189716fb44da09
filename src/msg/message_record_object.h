#pragma once

#include <memory>

#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

namespace zepkit10 {

/// What a board keeps of a message. Boards and `Message` objects share it.
struct MessageRecord {
  std::int32_t index = 0;
  Variant message;
  DATE time = 0;  // local, in whole seconds
  Variant source;
  Variant destination;
  SafeArray parameters;  // of Variants; null without elements
};

/// True where an optional argument was passed, be it Null or Empty.
bool IsGiven(const VARIANT& argument);

/// Raises `zepErrBadCall` unless the parameters were left out or are an array.
void EnsureParametersAreArray(const VARIANT& parameters);

/// A record of this moment that owns copies of the arguments, without a posting index yet.
/// `zepErrBadCall` where the message is Null, Empty or an empty text or the parameters are no
/// array.
std::shared_ptr<MessageRecord> MakeMessageRecord(const VARIANT& message, const VARIANT& source,
                                                 const VARIANT& destination,
                                                 const VARIANT& parameters);

/// A copy as an array of Variants; null of an array without elements.
SafeArray CopyOfParameters(SAFEARRAY* parameters);

}  // namespace zepkit10

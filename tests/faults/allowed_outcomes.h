#pragma once

#include <string>
#include <vector>

#include "com/client.h"

namespace faults {

/// Whether a failed call ended as its member's contract says instead of with error 7.
bool EndedAsContractSays(const std::string& member, const client::Outcome& outcome,
                         IDispatch* object);

/// Where error 7 comes from: the class whose member was called, or the one that its contract names.
std::wstring SourceOfError7(const std::string& member);

/// Whether an object does not work as before after an error 7 of a member, by the member's
/// contract: a document whose transfer failed hears its content no longer.
bool SpoilsObject(const std::string& member);

/// Whether properties may differ after a failed call of a member, by the member's contract.
bool MayChange(const std::string& member, IDispatch* object,
               const std::vector<std::wstring>& properties);

}  // namespace faults

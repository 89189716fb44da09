#pragma once

#include <vector>

#include "com/client.h"

/// The kinds of values that a client may pass as the index of a collection.
namespace index_kinds {

/// Every form of a position, given as an integer, and of a name.
std::vector<client::Value> Accepted(short position, const wchar_t* name);

/// Values that are neither, though many of them hold the position 1.
std::vector<client::Value> Refused(IDispatch* object);

}  // namespace index_kinds

#pragma once

#include <functional>

namespace component {

/// Runs a body on a thread, and so in an apartment, of its own, whose end has been dealt with when
/// this returns: what its objects shared is torn down.
void InNewApartment(const std::function<void()>& body);

}  // namespace component

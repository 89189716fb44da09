#pragma once

namespace monkey {

/// Uses once what keeps something for good that it makes at its first use, in the platform or in
/// the component: afterwards whatever a round leaves behind is a leak.
void MakeFirstUses();

}  // namespace monkey

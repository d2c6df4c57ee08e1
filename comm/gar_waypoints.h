/// Waypoints from and to a Garmin receiver: the jobs "W_L" and "W_S".
#pragma once

#include "core/store.h"

#include <string>
#include <vector>

namespace velkoro {

/// Reads the receiver's waypoints, and its proximity waypoints when it has a protocol for them,
/// into the store. The records are kept whole until the transfer has ended, so that nothing slows
/// the acknowledgements down. A list that breaks off is kept as far as it came. The result window
/// counts what was read, changed and unchanged.
void G_W_lesen();

/// Writes the waypoints of transfer.choice: first those with a proximity distance as proximity
/// waypoints, when the receiver has a protocol for them, then the others; then the chosen routes.
void G_W_schreiben();

/// Inserts received waypoints within one batch and tells the totals in the result window. `again`:
/// those that may have come before in the same transfer, as proximity waypoints do.
/// A user who ends the batch keeps what was taken so far.
void insert_received(std::vector<wayp_rec> waypoints, std::vector<wayp_rec> again);

} // namespace velkoro

/// Puts the handlers of the waypoints folder on the main window and fills its hooks.
#pragma once

namespace velkoro {

/// Call it after shell_install and before shell_start.
void waypoints_install();

} // namespace velkoro

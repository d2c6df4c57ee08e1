/// Wires the interchange folder to the main window, once at start.
#pragma once

namespace velkoro {

/// Behind waypoints_install, whose entries for files it takes over.
void interchange_install();

} // namespace velkoro

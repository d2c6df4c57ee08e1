/// Puts the handlers of the comm folder on the main window and registers its jobs.
#pragma once

namespace velkoro {

/// Call it after shell_install and before shell_start.
void comm_install();

} // namespace velkoro

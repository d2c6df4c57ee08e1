/// The transfers as jobs and as entries of the main window.
#pragma once

namespace velkoro {

/// Registers the jobs "W_L", "W_S", "R_L", "R_S", "T_L" and "T_S" and serves the menu entries for
/// reading and writing.
void transfer_install();

} // namespace velkoro

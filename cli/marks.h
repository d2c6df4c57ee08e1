/// Marks of waypoints without a list to show them: as in the list, what a batch brought in is
/// marked, so that `--select WM` means it.
#pragma once

#include <vector>

namespace velkoro {

struct cli_marks_state {
    std::vector<bool> marked{}; ///< by store index
};
inline cli_marks_state cli_marks;

/// Fills the hooks that tell of rows. The order of the list stays that of the store.
void install_cli_marks();

} // namespace velkoro

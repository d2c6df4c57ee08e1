/// Puts the coordinate folder's handlers on the controls of the main window and fills its hooks.
#pragma once

namespace velkoro {

/// Fills hooks.distance, hooks.position_text and hooks.read_datums. Call it once, after
/// shell_install.
void coords_install();

} // namespace velkoro

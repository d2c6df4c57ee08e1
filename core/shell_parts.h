/// The pieces that shell_install puts together; nothing for other folders.
#pragma once

#include <string>

namespace velkoro {

/// Adds the shell's own start-up steps.
void shell_start_steps();
/// Puts the handlers of the System, Profile and Help menus in place.
void shell_menu_handlers();

/// The texts of the main window that no tag can hold: drop-down entries, dynamic menu entries.
void shell_fill_texts();
/// Left, top, width and height of the main window from text; cut to the screen and moved onto it.
void layout_read();
/// Writes `pos_main`, `scale` and `col_main`.
void layout_write();
/// Column widths of `Waypl2`, from and to the active profile.
void columns_read();
void columns_write();

} // namespace velkoro

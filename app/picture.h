/// Pictures of windows for documentation and for use without a display.
#pragma once

#include <string>

namespace velkoro {

/// Renders the main window as it stands into a PNG file. False when it cannot be written.
bool save_main_picture(const std::string& path);

/// Waits until the main window is on the screen and paints it as it stands.
void paint_main_window();

} // namespace velkoro

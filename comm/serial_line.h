/// The serial line of this system: termios2 with any speed, on devices and pseudo terminals.
/// The line tells bytes through platform.watch. A device that goes away is closed at once; DTR and
/// RTS are raised where the device has them.
/// Source: Linux, tty_ioctl(4) and termios(3), BOTHER.
#pragma once

#include "core/platform.h"

#include <string>
#include <vector>

namespace velkoro {

/// Fills platform.serial, but for the event. After the platform itself was filled.
void serial_line_install();

/// The serial devices under a root folder ("/"): those with a name by their maker first, then
/// ttyUSB and ttyACM, then the ttyS that have a circuit behind them. Behind them the simulated
/// receiver, when one of this user runs.
std::vector<serial_device> serial_devices(const std::string& root);

/// Where a simulated receiver of this user leaves a link to its terminal:
/// $XDG_RUNTIME_DIR/velkoro-simulator, or /tmp/velkoro-simulator- and the user's number.
std::string simulator_path();

} // namespace velkoro

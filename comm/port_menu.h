/// The menu of ports and the search for the port that has a receiver.
#pragma once

namespace velkoro {

/// Puts the handlers on Form1.menu_com, registers the job "COM", and keeps the entries and the
/// port in step with the devices and the active profile.
void port_menu_install();

/// Chooses a port: 1 to 8 serial, 100 USB, 9 searches all ports after a question. Shows the
/// properties of the receiver there, and stores the port in the active profile, on the user's wish
/// in all.
void menu_com(int index);

/// The job "COM": asks the ports from 8 down to 1 for a receiver and leaves comm.comm_port at the
/// first that has one, or at 0 when none has or the user cancels. Ports without a device, and
/// devices that cannot be opened, are passed over in silence.
void port_search();

/// Names the devices in the entries of the menu.
void port_menu_show();

} // namespace velkoro

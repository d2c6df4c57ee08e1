/// The USB pipes of this system: libusb-1.0 in the place of the maker's driver.
/// The first interface class is the maker's receivers (vendor 091E, product 0003); the second one
/// any other device of that vendor whose interface has the same three pipes. The kernel's own
/// driver is put aside while the device is open. Reads and writes end after a few seconds at the
/// latest.
#pragma once

namespace velkoro {

/// Fills platform.usb. The library starts at the first use.
void libusb_pipes_install();

} // namespace velkoro

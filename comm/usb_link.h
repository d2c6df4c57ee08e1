/// USB receivers: exchange of packets over the pipes of platform.usb, in the frame form of the
/// serial line, so that nothing above knows the difference.
/// A packet is its type (20 application, 0 USB layer), 3 zero bytes, id, 3 zero bytes, size of the
/// data in 4 bytes, data. Source: Garmin interface document 001-00063-00, USB link.
#pragma once

#include <string>
#include <string_view>

namespace velkoro {

/// Finds and opens the device and starts the session: comm.usb_handle is set, or 0 without one.
void usb_open();
void usb_close();

/// Sends one packet (acknowledgements are not sent, USB needs none) and reads the answer; ids as
/// the link protocol in force numbers them. The result is DLE, id, low byte of the size, data and
/// three zero bytes; empty when nothing or not everything came. `expected` 6 gives an
/// acknowledgement at once, -2 an empty text.
std::string usb_comm(int packet_id, std::string_view data, int expected);

} // namespace velkoro

/// The state of the road to the receiver, and opening and closing its transport.
/// Every byte to or from a receiver goes through here: garmin_link.h exchanges packets, mag_link.h
/// exchanges sentences, usb_link.h stands under the first one for USB. All strings are byte
/// strings.
#pragma once

#include <cstdint>
#include <string>

namespace velkoro {

inline constexpr std::int16_t usb_port = 100; ///< comm_state::comm_port for USB
inline constexpr std::int16_t serial_ports = 8;

struct comm_state {
    std::int16_t comm_port = 0; ///< 0 none, 1 to 8 a serial port, 100 USB
    /// Bytes received and not yet taken into a frame. Sending does not clear it.
    std::string comm_rx_buf{};
    /// The frame completed last, whole and unstuffed: DLE, id, size, data, checksum, DLE, ETX; or
    /// the sentences read.
    std::string comm_rx_frame{};
    bool comm_strip_ack = false; ///< acknowledgements are cut before they become frames
    /// The user has agreed to retry after a time-out; stays for the run of the program.
    bool comm_retry = false;
    int naks = 0; ///< packets asked for again since the program started
    bool nmea_live = false; ///< live position is reading sentences
    /// The device could not be opened. It is told once, and nothing more is tried until the port is
    /// closed, so that a job ends instead of asking again at each packet.
    bool refused = false;
    bool quiet = false; ///< the port search: a device that cannot be opened is passed over

    int usb_handle = 0;                ///< 0 closed
    std::uint32_t usb_packet_size = 0; ///< largest transfer out, read once; 0 not yet read
    bool usb_bulk = false;             ///< the receiver has announced data on the bulk pipe
};
inline comm_state comm;

/// Opens (serial: with "9600,n,8,1") or closes the transport chosen by comm_port. A serial port
/// that is open already keeps its settings. True when the transport is open afterwards. A device
/// that cannot be opened, or refuses the speed, is reported by text 8040, once until the port is
/// closed.
bool comm_port_set(bool open);

/// Opens the serial port chosen by comm_port with these settings, as comm_port_set does. An open
/// port stays as it is.
bool comm_serial_open(const std::string& settings);

/// Makes the link listen to the bytes of platform.serial.
void comm_listen();

/// Serial settings of a Magellan or NMEA format: 1 to 6 are 4800, 9600, 19200, 28800, 56000 and
/// 128000 baud, all others the 9600 baud of Garmin's own protocol. "4800,n,8,1".
std::string comm_settings(int format);

/// The device behind a serial port number: the key `Com1` to `Com8` of `Main` when it is there,
/// else a device that was found (com_ports.h). Empty when there is none.
std::string comm_device(int port);

} // namespace velkoro

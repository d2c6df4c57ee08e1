/// Exchange of Garmin packets: framing, the one way to send and wait, and the handler of received
/// bytes, which also collects the sentences of Magellan and NMEA receivers.
/// A frame is DLE, packet id, size of the data, data, checksum, DLE, ETX; a DLE within size, data
/// and checksum is sent twice. Source: Garmin interface document 001-00063-00, serial
/// link.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

inline constexpr char dle = 0x10, etx = 0x03;
inline constexpr int pid_ack = 6, pid_nak = 21, pid_xfer_cmplt = 12;
inline constexpr int any_packet = -1; ///< `expected` of garmin_comm: whatever comes
inline constexpr int no_wait = -2;    ///< `expected` of garmin_comm: send only

/// Sends one packet and waits for the answer. `packet_id` and `expected` are numbers of L001 and
/// are translated to the link protocol in force. The result is the frame received (see gar_data),
/// or empty: without a port, after a time-out, with `expected` no_wait. A frame that closes a
/// transfer (12, or 255 where 253 or 255 is expected) ends the wait too. Each wait lasts 1 s; when
/// the user has agreed to retry, three more follow, each behind a NAK. `ask`: the user may be asked
/// (text 1530), and giving up sends the closing frame. Events are served while waiting.
std::string garmin_comm(int packet_id, std::string_view data, int expected, bool ask);
/// The same with a command number of A010 (or the packet id that an acknowledgement names) as
/// two data bytes; it is translated to the command protocol in force.
std::string garmin_comm(int packet_id, int command, int expected, bool ask);

/// Takes the bytes of one receive event; completes at most one frame in comm.comm_rx_frame.
void Garmin_OnComm(std::string_view input);

/// Packet id of L001 as the link protocol in force numbers it.
int pid_map(int id);
/// Command number of A010 as the command protocol in force numbers it.
int cmd_map(int command);

/// Packet id of a frame, 0 when it is too short to have one.
int gar_id(std::string_view frame);
/// Data field of a frame: what stands between the size and the three closing bytes. Over USB it may
/// be longer than the size byte says.
std::string gar_data(std::string_view frame);

/// The frame of a packet as it goes over the wire, DLEs doubled. At most 255 data bytes.
std::string gar_frame(int packet_id, std::string_view data);

/// Bytes of blank-separated hexadecimal numbers: "10 15 02".
std::string hex_to_bytes(std::string_view text);

} // namespace velkoro

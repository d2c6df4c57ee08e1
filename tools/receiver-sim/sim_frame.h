/// Garmin serial frames as a receiver builds and reads them.
/// Frame: DLE (10h), packet id, size, data, checksum, DLE, ETX (03h). The checksum makes the sum of
/// id, size, data and checksum 0 modulo 256; every 10h in size, data and checksum is sent twice.
/// Source: Garmin interface document 001-00063-00, section on the serial link. Deliberately no code
/// of the program's own link layer, so that the one tests the other.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

struct sim_packet {
    int id = 0;         ///< 0 to 255
    std::string data{}; ///< at most 255 bytes on a serial line
    bool operator==(const sim_packet&) const = default;
};

/// The frame of a packet, ready for the line. Data beyond 255 bytes is cut.
std::string sim_frame(const sim_packet& packet);

/// What one byte made of the stream.
enum class sim_take { more, packet, damaged };

/// Takes frames apart, byte by byte. Bytes outside a frame are dropped.
struct sim_unframer {
    enum class at { outside, id, size, data, checksum, dle, etx } state = at::outside;
    bool doubled = false; ///< a 10h was read that must come twice
    std::uint8_t sum = 0, size = 0;
    sim_packet packet{}; ///< whole after sim_take::packet; its id alone counts after `damaged`

    sim_take take(char byte);
};

} // namespace velkoro

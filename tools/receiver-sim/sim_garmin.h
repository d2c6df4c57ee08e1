/// A Garmin receiver as seen from its serial connector: identification, lists to and from the host,
/// clock, position, live position.
/// It keeps whole packets and knows nothing of what they hold: sim_memory.h fills and reads them.
/// Ids and commands are kept in their L001 and A010 numbers and translated at the connector.
/// Source: Garmin interface document 001-00063-00 (packet ids, commands, transfer protocols).
#pragma once

#include "tools/receiver-sim/sim_frame.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velkoro {

/// The lists of a receiver by the command (A010) that asks for them.
enum class sim_list : int { proximity = 3, routes = 4, track = 6, waypoints = 7 };

struct sim_identity {
    int product = 77;
    int version = 350; ///< times 100
    std::string description = "GPS 12 Software Version 3.50";
    /// Protocols as tokens: "L001 A010 A100 D103 ..."; those of the link and the commands decide
    /// how the connector speaks.
    std::vector<std::string> protocols{};
    bool reports_protocols = false; ///< packet 253 follows the product data
    int extended_packets = 0;       ///< packets 248 ahead of it
};

struct sim_garmin {
    sim_identity identity{};
    std::map<sim_list, std::vector<sim_packet>> memory{};
    /// Where bytes go; one call a frame.
    std::function<void(std::string)> send = [](const std::string&) {};
    /// A list has arrived whole, or broke off; it stands in `arrived` under its number.
    std::function<void(sim_list)> received = [](sim_list) {};
    /// Date and time for command 5, as packet 14 carries them; the position for command 2 as packet
    /// 17; the live record as packet 51. Empty data: not answered.
    std::function<std::string()> clock_data = [] { return std::string{}; };
    std::function<std::string()> position_data = [] { return std::string{}; };
    std::function<std::string()> live_data = [] { return std::string{}; };
    /// The host set the clock (data of packet 14).
    std::function<void(const std::string&)> clock_set = [](const std::string&) {};

    // What happens on the line
    sim_unframer in{};
    std::deque<sim_packet> queue{}; ///< still to be sent; each waits for the acknowledgement of
                                    ///< the one ahead
    std::string last{};             ///< the frame sent last, repeated when the host asks for it
    bool waits = false;             ///< for an acknowledgement
    std::optional<std::vector<sim_packet>> arriving{}; ///< a list under way from the host
    int announced = 0;                                 ///< its number of packets
    std::map<sim_list, std::vector<sim_packet>> arrived{};
    bool live = false;   ///< the host asked for live positions
    bool powered = true; ///< false after the command to switch off
    int frames_in = 0, damaged_in = 0;
};

/// Takes bytes from the host; answers through `send`.
void sim_garmin_take(sim_garmin& receiver, std::string_view bytes);

/// Once a second: sends the live position when the host asked for it.
void sim_garmin_second(sim_garmin& receiver);

/// The number of a protocol token ("A" 100 of "A100") whose letter and hundreds are these; 0 when
/// the receiver lacks it. Letter "L": hundreds 0.
int sim_protocol(const sim_identity& identity, char letter, int hundreds);
/// The n-th D behind that A, counted from 1; 0 when there is none.
int sim_record(const sim_identity& identity, int a_hundreds, int n);

} // namespace velkoro

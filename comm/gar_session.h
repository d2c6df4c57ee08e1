/// Lists of packets from and to a Garmin receiver: what the transfers of waypoints, routes and
/// tracks have in common.
/// A list is a packet with the number of records, the records, and a packet that closes the
/// transfer; the receiver's side of each step is an acknowledgement.
/// Source: Garmin interface document 001-00063-00, application protocols A100 to A400.
#pragma once

#include "comm/transfer.h"

#include <functional>
#include <string>
#include <vector>

namespace velkoro {

inline constexpr int pid_command = 10, pid_records = 27, pid_prx_waypoint = 19, pid_rte_hdr = 29,
                     pid_rte_waypoint = 30, pid_trk_point = 34, pid_waypoint = 35,
                     pid_rte_link = 98, pid_trk_hdr = 99;
/// Commands of A010; garmin_comm translates them.
inline constexpr int cmd_proximity = 3, cmd_routes = 4, cmd_tracks = 6, cmd_waypoints = 7;

/// Where the records of a list go.
struct gar_sink {
    /// The announced number of records.
    std::function<void(std::size_t count)> begin{};
    /// A record, in the order of the wire.
    std::function<void(const std::string& frame)> take{};
    /// The record taken as number n (from 0) was its predecessor once more: forget it.
    std::function<void(std::size_t n)> forget{};
};

/// Asks for a list and takes it. `expected`: packet id of the records, any_packet when there are
/// several. `number`: text that tells count and receiver while it runs. `first` false: a further
/// list of the session, whose silence is no failure and whose emptiness is not told.
/// A record that the receiver repeats because it was asked to is taken once; so is one that it
/// repeats on its own, which shows when more records come than were announced.
/// Ends with whole, empty, incomplete, cancelled, broken_off, too_many or no_receiver. The result
/// window tells of an incomplete list.
transfer_end gar_read_list(int command, int expected, int number, bool first, const gar_sink& sink);

struct gar_packet {
    int id = 0; ///< of L001
    std::string data{};
    bool operator==(const gar_packet&) const = default;
};

/// Sends a list. `number`: text that counts the records sent. The closing packet also goes out
/// after a cancel. Ends with whole, cancelled, broken_off or no_receiver; the result window tells
/// the last two.
transfer_end gar_write_list(int command, const std::vector<gar_packet>& packets, int number);

} // namespace velkoro

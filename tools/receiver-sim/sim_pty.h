/// The line of the simulated receiver: the controlling end of a pseudo terminal, with a pace.
#pragma once

#include "tools/receiver-sim/sim_faults.h"

#include <deque>
#include <string>

namespace velkoro {

struct sim_line {
    int controller = -1; ///< file descriptor of our end
    int kept_open = -1;  ///< the host's end, held so that a closing host does not hang up the line
    std::string path{};  ///< of the host's end
    double bytes_per_s = 0; ///< 0: as fast as the machine can
    struct due_bytes {
        double at = 0; ///< on the clock of sim_now
        std::string bytes{};
    };
    std::deque<due_bytes> waiting{};
};

/// Opens a pseudo terminal without echo or line editing. Throws std::system_error.
sim_line sim_open_line();
/// Gives the line back.
void sim_close_line(sim_line& line);

/// Seconds of a clock that only rises.
double sim_now();

/// Puts chunks on the line, each behind what waits already.
void sim_put(sim_line& line, const std::vector<sim_chunk>& chunks);
/// Writes what is due. Returns the seconds until more is, negative when nothing waits.
double sim_write_due(sim_line& line);
/// Bytes that have come from the host; waits at most that long for the first.
std::string sim_read(sim_line& line, double seconds);

} // namespace velkoro

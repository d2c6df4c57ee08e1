/// A simulated receiver on the scripted line, for tests of whole sessions.
///
///     transfer_rig rig;                                  // a Garmin receiver on port 1
///     rig.protocols("L001 A010 A100 D103");              // which reports them
///     rig.holds(sim_list::waypoints, {{35, data}});
///     rig.run("W_L");                                    // the job, to its end
///     EXPECT_EQ(transfer.end, transfer_end::whole);
///     rig.faults.rules = {{.what = sim_fault::drop, .at = 3}};
///
/// The clock is that of the scripted_platform. Everything that went over the line stands in
/// `transcript`, "> " for what the program sent and "< " for what the receiver answered.
#pragma once

#include "comm/transfer.h"
#include "core/store.h"
#include "tests/comm/scripted_line.h"
#include "tests/support/program_folder.h"
#include "tools/receiver-sim/sim_faults.h"
#include "tools/receiver-sim/sim_garmin.h"
#include "tools/receiver-sim/sim_magellan.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct transfer_rig {
    scripted_platform user{};
    program_folder home{}; ///< with small symbol tables
    scripted_line line{user};
    sim_garmin garmin{};
    sim_magellan magellan{};
    sim_faults faults{};
    bool speaks_sentences = false; ///< a Magellan receiver stands on the line
    std::string transcript{};
    int writes = 0; ///< what the program has sent so far
    /// Before the receiver sees what the program sends; the number counts from 1. False: it never
    /// sees it.
    std::function<bool(int write, const std::string& bytes)> on_write{};

    transfer_rig();
    transfer_rig(const transfer_rig&) = delete;
    transfer_rig& operator=(const transfer_rig&) = delete;

    /// The receiver's protocols, blank-separated, which it reports.
    void protocols(std::string_view tokens);
    void holds(sim_list list, std::vector<sim_packet> packets);
    /// Turns the receiver into a Magellan one, at 4800 baud.
    void speak_sentences();
    /// Runs a job from an idle program. Seconds that it took on the clock.
    double run(const std::string& code);
    /// Names in the store, blank-separated.
    static std::string names();
    /// The bodies of what a Magellan receiver was sent.
    std::vector<std::string> sentences{};
};

/// Number `n` of a library of waypoints, all different in name, place and comment.
wayp_rec some_waypoint(int n);
/// Its packet as a receiver with that record type holds it.
sim_packet waypoint_packet(int n, int type, int id = 35);
/// Packets of waypoints 0 to count - 1.
std::vector<sim_packet> waypoint_packets(int count, int type);

/// Number `n` of a track of points, all different.
trackp_rec some_point(int n);
sim_packet point_packet(int n, int type, bool segment = false);
sim_packet header_packet(const std::string& name, int type = 310);

/// Compares with tests/golden/<folder>/<name>; with VELKORO_GOLDEN=write writes the file instead.
void expect_golden_text(const std::string& folder, const std::string& name,
                        const std::string& actual);

} // namespace velkoro

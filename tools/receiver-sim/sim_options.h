/// What the simulated receiver is told on its command line.
#pragma once

#include "tools/receiver-sim/sim_faults.h"
#include "tools/receiver-sim/sim_garmin.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

enum class sim_speech { garmin, magellan, nmea };

struct sim_options {
    sim_speech speech = sim_speech::garmin;
    sim_identity identity{};
    std::string magellan_version = "024,1.10,MAP 330";
    std::vector<std::string> load{}; ///< native files
    std::vector<std::string> save{}; ///< native files to write, by extension
    std::string link{};              ///< symbolic link to the line, "" none
    std::string log{};               ///< file for the bytes in both directions, "-" standard output
    std::vector<sim_fault_rule> faults{};
    std::uint64_t seed = 1;
    int baud = 0;          ///< pace of the line, 0 none
    double exit_after = 0; ///< seconds of silence behind the first traffic, 0 never
    bool has_fix = true;
    std::string datum = "WGS 84"; ///< that the NMEA stream names
    std::string start{};          ///< "2001-06-14 10:15:02", "" now
    std::string home{};           ///< program folder
};

/// The kinds of receiver that have a name: "old" is looked up in Garmin.ini, "new" reports its
/// protocols, "aviation" speaks the second link protocol. Nothing for another name.
std::optional<sim_identity> sim_kind(std::string_view name);

/// The protocols of a product from the lines of Garmin.ini: the first line of that product whose
/// version limit is above the version. Empty when there is none.
std::vector<std::string> sim_protocols_of(std::string_view garmin_ini, int product, int version);

/// Seconds since 31 December 1989 of "yyyy-mm-dd hh:mm:ss" (UTC); nothing when it is not one.
std::optional<std::int64_t> sim_time_of_text(std::string_view text);

} // namespace velkoro

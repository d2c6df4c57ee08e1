/// Where the simulated receiver is: a walk along the points of a track, or along a circle when it
/// holds none, as NMEA sentences and as Garmin live records.
/// Sources: NMEA 0183 2.0 (GGA, RMC), Garmin's PGRMM; Garmin interface document (D600, D700, D800).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct sim_place {
    double lat = 48.47355, lon = 9.21243; ///< degrees on WGS 84, north and east positive
    double alt_m = 412;
    bool has_alt = true;
    std::int64_t time = 0; ///< seconds since 31 December 1989 00:00 UTC
};

struct sim_walk {
    std::vector<sim_place> points{}; ///< in order; times are not used
    std::int64_t start_time = 0;     ///< seconds since 31 December 1989 00:00 UTC
    bool has_fix = true;
    std::string datum = "WGS 84"; ///< name that PGRMM tells
};

/// Speed and course come from the place one second later.
struct sim_fix {
    sim_place place{};
    double speed_m_s = 0;
    double course = 0; ///< degrees, 0 to below 360, clockwise from north
};

/// The fix `second` seconds after the start: one point a second, back to the first behind the last.
sim_fix sim_fix_at(const sim_walk& walk, std::int64_t second);

/// GGA, RMC and PGRMM of that second, with checksums and line ends.
std::string sim_nmea(const sim_walk& walk, std::int64_t second);

/// Data of the Garmin records of that second.
std::string sim_d600(std::int64_t time); ///< date and time
/// The time that such a record holds, seconds since 31 December 1989 UTC; nothing when it is none.
std::optional<std::int64_t> sim_time_of_d600(std::string_view data);
std::string sim_d700(const sim_walk& walk, std::int64_t second);
std::string sim_d800(const sim_walk& walk, std::int64_t second);

struct sim_calendar {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};
/// Date and time of day, UTC; the time counts seconds since 31 December 1989.
sim_calendar sim_calendar_of(std::int64_t time);
/// The reverse; nothing for a date or a time of day that there is not.
std::optional<std::int64_t> sim_time_of(const sim_calendar& c);

/// ddmm.mmm and hemisphere as two fields ("4828.413,N"); three degree digits for a longitude.
std::string sim_angle(double degrees, bool is_latitude);
/// Degrees of those two fields; nothing when they hold no angle.
std::optional<double> sim_degrees_of(std::string_view number, std::string_view hemisphere);

} // namespace velkoro

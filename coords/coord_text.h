/// Positions as text and back: every list, editor, printout and file in a human format goes through
/// pos_to_text and text_to_pos.
/// A coordinate is three texts: zone, east (longitude in the degree formats), north (latitude).
/// East and north may carry a second field behind a tab: millimetres on a paper map of the scale
/// 1:settings.scale, measured from the point that the first field names. Formats are numbered by
/// coord_fmt, the index of the list `posform`.
#pragma once

#include "coords/datum.h"

#include <array>
#include <string>
#include <string_view>

namespace velkoro {

enum coord_fmt : int {
    fmt_degrees = 0,
    fmt_minutes = 1,
    fmt_seconds = 2,
    fmt_utm = 3,
    fmt_mgrs = 4,
    fmt_gk = 5,
    fmt_swiss = 6,
    fmt_lambert = 7,
    fmt_british = 8,
    fmt_irish = 9,
    fmt_nz = 10,
    fmt_user = 11 ///< and up: the user grids of Datum.ini
};

inline constexpr char map_tab = '\t'; ///< between a text and its millimetres on the map
/// Grids have no text beyond 88 degrees of latitude (semicircles).
inline constexpr std::int32_t grid_lat_limit = 1049880895;

struct coord_state {
    int zone_choice = 0; ///< chosen row of `zone`, 0 "Zone auto"
    int zone = 0;        ///< row of `zone` that the last grid text belongs to
    int zone_fmt = -1;   ///< and its format
    std::string zone_text{};
    bool zone_halt = false;                 ///< the editor holds zone and base texts
    std::array<std::string, 3> zone_held{}; ///< zone, north, east
};
inline coord_state coord;

/// The texts of a position on the chosen datum. `fmt` -1: the chosen format. `keep` above 0 keeps
/// zone and zone text of the call before, 0 and below lets them be found or chosen, -1 also leaves
/// the held texts aside. A grid that does not reach the place gives empty texts.
void pos_to_text(const pos_rec& pos, std::string& zone, std::string& east, std::string& north,
                 int keep = 0, int fmt = -1);

/// The position that texts name; zone text "org" stands for the grid's origin. `fmt` and `datum`
/// -1: the chosen ones. `pos` is written whenever the numbers lead to a place; the result is false
/// when they do not, or when a text is no coordinate of the format (it is then read as far as it
/// goes: a beep for angles, nothing else).
bool text_to_pos(std::string_view zone, std::string_view east, std::string_view north, pos_rec& pos,
                 int fmt = -1, int datum = -1);

/// One angle as text: letter 'N' or 'E' for the positive side, format 0 to 2. Degrees in.
std::string angle_to_text(double degrees, char letter, int fmt);
/// One angle from text, in radians. `letters` is "NS" or "EW". Out of range or not readable: a
/// beep, `ok` false, the value as far as it was read.
double text_to_angle(std::string_view text, std::string_view letters, bool* ok = nullptr);

/// Whole metres of a grid text: with a point kilometres, without one the leading digits of a number
/// of so many digits.
double grid_text_to_m(std::string_view text, int digits);
/// Whole metres of the millimetres behind the tab.
double grid_text_rel(std::string_view text);

/// The position as one line in the chosen format and datum: latitude and longitude, or zone, east
/// and north.
std::string position_line(const pos_rec& pos);

} // namespace velkoro

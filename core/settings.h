/// Settings and profiles: velkoro.ini in the program folder.
/// Section `Main` holds what belongs to the installation; each profile has a section of its own for
/// what belongs to one receiver and one way of working. settings_keys.h lists every key,
/// ini_file.h reads and writes the file, profiles.h switches the section.
#pragma once

#include "core/ini_file.h"
#include "core/profiles.h"
#include "core/settings_keys.h"
#include "core/store.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkoro {

/// Metres per distance unit (kilometre, statute mile, nautical mile); the same in an hour for
/// speed.
inline constexpr std::array<float, 3> dist_factors{1000.0F, 1609.344F, 1852.0F};
/// Metres per altitude unit (metre, foot).
inline constexpr std::array<float, 2> alt_factors{1.0F, 0.3048F};
inline constexpr std::uint32_t list_back_blue = 0xFFFF00; ///< blue, green, red

/// Places of the key `Garmin` that have a meaning of their own here, counted from 0.
enum class gar_place : std::size_t {
    mwp,            ///< waypoints that the receiver holds
    mprox,          ///< proximity waypoints
    mrou,           ///< routes
    mwp_rou,        ///< waypoints in a route
    mtrack,         ///< track points
    gar_pos_format, ///< protocol of the live position: 0 Garmin, 1 to 6 NMEA and a speed
    gar_wp_format,  ///< protocol of transfers: 0 Garmin, 1 to 6 Magellan and a speed
    mnaml,          ///< store.wp_name_max
    r_unique,       ///< route names must be unique
    AVD,            ///< aviation data
    Lokalz,         ///< local time in the comment of a waypoint
    Zeichen         ///< store.wp_ext_chars
};
inline constexpr std::array<int, 12> garmin_defaults{512, 0, 20, 30, 1024, 0, 0, 6, 0, 0, 0, 0};

struct settings_state {
    std::string ini_path{};           ///< program folder + "velkoro.ini"
    std::string profile = "Standard"; ///< active profile: the section of its keys
    std::string home_zone = "+0";     ///< time zone rule at home, key `Time`
    std::string list_zone = "+0";     ///< time zone rule of the list in use
    int lang = -1;                    ///< language number, key `Lang3`
    std::string month_names{};  ///< comma list, the key `Month` in front of the built-in groups
    std::int32_t scale = 50000; ///< map scale of the list, key `Scale`
    int dist_index = 0, speed_index = 0, alt_index = 0; ///< selected units
    float dist_unit = 1000.0F;                          ///< metres
    float speed_unit = 1000.0F;                         ///< metres per hour
    float alt_unit = 1.0F;                              ///< metres
    bool printer_option = true;                         ///< `Flags` weight 3
    bool utm_zero = true;                               ///< "UTM: führende 0 ergänzen", weight 6
    bool km_grid = true;                                ///< metric coordinates in km, weight 12
    int symbol_level = 0;                               ///< 0, 2 or 3 (digit of weight 24)
    bool back_blue = false;                             ///< weight 120
    bool alt_kom = false;                               ///< weight 240
    bool backup_on = true;                              ///< weight 960
    bool pc_clock = false;                              ///< weight 1920
    std::array<int, 12> garmin = garmin_defaults;       ///< key `Garmin`, see gar_place
    int st_options = -1;   ///< map window options, key `st_options3`; -1 none
    bool map_keys = false; ///< `map_options` is "yes": the profile has map keys
    int port = 0;          ///< 1 to 8 serial, 100 USB, 0 none
    std::uint32_t list_back = own_colour_setting;
    std::string wp_file{}, trk_file{};       ///< file in use
    std::string wp_pending{}, trk_pending{}; ///< to be opened
    /// Values for this run only (section, key in lower case), ahead of the file.
    std::map<std::pair<std::string, std::string>, std::string> overrides{};
    static constexpr std::uint32_t own_colour_setting = 0xFFFFFFFF;
};
inline settings_state settings;

/// The value of the key `Garmin` at a place.
int gar_option(gar_place place);

/// Reads the active profile: `Flags`, map options, `Units`, `Garmin`, `Time`, `Port`. Applies units
/// and receiver properties, loads the symbol table and shows it all in the menus.
void settings_read();
/// Writes `Flags`, `Units`, `Garmin` into the active section and removes `fil_k`, `fil_t`,
/// `fil_wp`. Runs after every change of a switch, so that a crash loses nothing.
void settings_write();
/// Sets the checks of Form1's menu entries, the receiver menu's caption and the list's background
/// from the settings.
void settings_show();

/// The mixed-radix number of the key `Flags`.
int flags_pack();
/// Takes the switches from the number. The digit of weight 6 is written when the switch is on and
/// read as "off", so this switch changes its state by being written and read back: files of other
/// versions mean it that way. A negative number is taken as 0.
void flags_unpack(int flags);
/// The key `Units`: distance + 3 speed + 9 altitude.
int units_pack();
/// Chooses the units of the number and sets their factors; indexes outside their list become 0.
void units_unpack(int units);

/// The language number of `Lang3`, -1 when none was chosen yet. An old key `Lang` without `Lang3`
/// moves there as 1 minus its value, as the two languages have changed places; `Lang` goes.
int settings_read_language();
/// Moves an old `Port` of `Main` into every profile and sets settings.port.
void settings_migrate_port();
/// Number of maps that may be shown at once: `K_MAX`, where 0 means 4.
int settings_map_limit();

/// "file|folder" of a key such as `Last_W0` as a path: found case-blind, folders without "/" in
/// front lie in the program folder. Absent keys give their default, unknown ones an empty path.
std::string last_path(std::string_view key);
/// Stores a path under the key; a folder within the program folder is stored relative to it.
void last_put(std::string_view key, std::string_view path);

} // namespace velkoro

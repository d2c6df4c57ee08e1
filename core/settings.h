/// Settings and profiles: velkoro.ini in the program folder.
/// Section `Main` holds what belongs to the installation; each profile has a section of its own.
/// Names are case-blind, an absent text deletes. The file keeps the order and every line that is
/// not understood.
#pragma once

#include "core/store.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkoro {

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
    std::array<int, 12> garmin{512, 0, 20, 30, 1024, 0, 0, 6, 0, 0, 0, 0};
    int port = 0; ///< 1 to 8 serial, 100 USB, 0 none
    std::uint32_t list_back = own_colour_setting;
    std::string wp_file{}, trk_file{};       ///< file in use
    std::string wp_pending{}, trk_pending{}; ///< to be opened
    /// Values for this run only (section, key in lower case), ahead of the file.
    std::map<std::pair<std::string, std::string>, std::string> overrides{};
    static constexpr std::uint32_t own_colour_setting = 0xFFFFFFFF;
};
inline settings_state settings;

/// Text of a key, up to 1024 characters, trimmed; empty when absent.
std::string ini_get(std::string_view section, std::string_view key);
int ini_get_int(std::string_view section, std::string_view key, int fallback);
/// An absent text removes the key, an absent key the section. A file that cannot be written stops
/// nothing.
void ini_put(std::string_view section, std::optional<std::string_view> key,
             std::optional<std::string_view> value);
/// Keys of a section in file order.
std::vector<std::string> ini_keys(std::string_view section);

/// Parsing and writing of the text itself, for tests and fuzzing: sections of keys in file order.
struct ini_line {
    std::string section{}, key{},
        value{}; ///< key empty: `value` is the raw line (comment, heading, blank)
    bool operator==(const ini_line&) const = default;
};
std::vector<ini_line> ini_parse(std::string_view text);
std::string ini_text(const std::vector<ini_line>& lines);

/// Reads the active profile; applies units, flags and receiver properties, and sets the checks of
/// the menu entries.
void settings_read();
/// Writes `Flags`, `Units`, `Garmin` into the active section and removes `fil_k`, `fil_t`,
/// `fil_wp`. Runs after every change of a switch.
void settings_write();
/// The mixed-radix number of the key `Flags`.
int flags_pack();
void flags_unpack(int flags);

/// "file|folder" of a key such as `Last_W0` as a path, and back.
std::string last_path(std::string_view key);
void last_put(std::string_view key, std::string_view path);

/// Profile names in order, from `Pr_0` on.
std::vector<std::string> profile_names();
/// Makes "Standard" when the file names no profile; reads `Pr_act`.
void profiles_load();
void profile_switch(int index);
void profile_new();
void profile_delete();

} // namespace velkoro

#include "core/settings_keys.h"

#include "core/settings.h"
#include "core/text_tools.h"

#include <algorithm>

namespace velkoro {
namespace {

using enum key_place;
using enum key_form;

// clang-format off
constexpr setting_key keys[] = {
    {"Lang3",        main, integer,     nullptr, "language column of the text table"},
    {"Lang",         main, legacy,      nullptr, "language of old versions, 1 minus the value of Lang3"},
    {"Month",        main, comma_list,  "", "additional month names, ahead of the built-in ones"},
    {"Last_W0",      main, file_folder, "sample.wp|Waypoints", "last waypoint file"},
    {"Last_T0",      main, file_folder, "sample.t|Track", "last track file"},
    {"Last_W_O",     main, text,        nullptr, "file window, reading: format row, bar, folder"},
    {"Last_W_C",     main, text,        nullptr, "file window, saving: format row, bar, folder"},
    {"Last_K0",      main, file_folder, "sample.cal|maps", "last map file"},
    {"Pr_act",       main, text,        "Standard", "name of the active profile"},
    {"Pr_0",         main, text,        "Standard", "profile names, without gaps from 0"},
    {"Port",         main, legacy,      nullptr, "serial port of old versions, moved to the profiles"},
    {"Scale",        main, number,      "50000", "map scale of the list"},
    {"Opt",          main, numbers,     nullptr, "index of order, position format, datum"},
    {"pos_main",     main, numbers,     nullptr, "main window: left top width height, comma, list width"},
    {"pos_mapc",     main, numbers,     nullptr, "calibration window: left top"},
    {"pos_rou",      main, numbers,     nullptr, "route editor: left top width height"},
    {"pos_wp",       main, numbers,     nullptr, "waypoint editor: left top"},
    {"pos_map",      main, numbers,     nullptr, "map window: left top width height, -1 behind when maximised"},
    {"map_options",  main, text,        nullptr, "\"yes\": the profile has the map keys"},
    {"maps_show",    main, integer,     "0", "which maps are shown"},
    {"user_form",    main, text,        "none", "last user file format"},
    {"track_depth",  main, integer,     "0", "depths as comments of track points read: 0 none, 1 first of a track, 2 all"},
    {"track_defcol", main, integer,     "255", "colour of tracks sent that have none"},
    {"Theme",        main, text,        nullptr, "colours of the windows: light or dark, else the desktop's"},
    {"pcx5",         main, text,        "2.08", "version of PCX5 that written files name"},
    {"Com1",         main, text,        nullptr, "device of port 1"},
    {"Com2",         main, text,        nullptr, "device of port 2"},
    {"Com3",         main, text,        nullptr, "device of port 3"},
    {"Com4",         main, text,        nullptr, "device of port 4"},
    {"Com5",         main, text,        nullptr, "device of port 5"},
    {"Com6",         main, text,        nullptr, "device of port 6"},
    {"Com7",         main, text,        nullptr, "device of port 7"},
    {"Com8",         main, text,        nullptr, "device of port 8"},
    {"Flags",        profile, integer,    "0", "packed switches"},
    {"Units",        profile, integer,    "-1", "units: distance + 3 speed + 9 altitude; -1: from Flags"},
    {"Garmin",       profile, numbers,    "512 0 20 30 1024 0 0 6 0 0 0 0", "receiver properties"},
    {"Time",         profile, text,       "+0", "time zone rule at home"},
    {"Port",         profile, integer,    "0", "1 to 8 serial, 100 USB, 0 none"},
    {"st_options3",  profile, integer,    "-1", "map window options"},
    {"st_options2",  profile, legacy,     nullptr, "map window options, older form"},
    {"st_options",   profile, legacy,     nullptr, "map window options, oldest form"},
    {"K_MAX",        profile, integer,    "4", "number of maps shown at once; 0 is 4"},
    {"tracks_split", profile, numbers,    nullptr, "limits at which tracks are split"},
    {"map_flags",    profile, numbers,    "0 0", "map switches"},
    {"Map_w",        profile, numbers,    nullptr, "waypoints on the map, older form of Chart1"},
    {"Map_r",        profile, numbers,    nullptr, "routes on the map, older form of Chart2"},
    {"Map_t",        profile, numbers,    nullptr, "tracks on the map, older form of Chart3"},
    {"Map_d",        profile, numbers,    nullptr, "diagram, older form of Diag"},
    {"Map_t2",       profile, numbers,    nullptr, "grid on the map, older form of Chart4's first number"},
    {"Map_k",        profile, numbers,    nullptr, "maps, older form of Chart4"},
    {"Chart1",       profile, numbers,    "0 0 0 0 0 0 1 0", "waypoints on the map"},
    {"Chart2",       profile, numbers,    "0 0 0 0 0 0 1 0", "routes on the map"},
    {"Chart3",       profile, numbers,    "0 0 0 0 0 0 1 0", "tracks on the map"},
    {"Chart4",       profile, numbers,    "0 0 0 0 0 0 1 0", "grid and maps"},
    {"Diag",         profile, numbers,    nullptr, "diagram"},
    {"Diag_limits",  profile, dollar_list, nullptr, "limits of the diagram"},
    {"Map_bri",      profile, integer,    nullptr, "brightness of maps"},
    {"Map_play",     profile, integer,    nullptr, "speed of the replay"},
    {"Map_rec",      profile, integer,    nullptr, "interval of the recording"},
    {"Map_vals",     profile, comma_list, "30,60,500,-5,5", "steps of the marks along a track"},
    {"Map_levels",   profile, comma_list, "0,30,60,500,-5", "kind and thresholds of the line colours"},
    {"Font_size",    profile, numbers,    "8 8 8 8 6 5 6 6 6 6 12 12 2 2 1 3 0 0 0", "text sizes of drawing and print"},
    {"Print_head",   profile, text,       "", "heading of a print"},
    {"col_main",     profile, numbers,    nullptr, "column widths of the waypoint list"},
    {"col_rou",      profile, numbers,    nullptr, "column widths of the route list"},
    {"fil_k",        profile, legacy,     nullptr, "removed by each write of the settings"},
    {"fil_t",        profile, legacy,     nullptr, "removed by each write of the settings"},
    {"fil_wp",       profile, legacy,     nullptr, "removed by each write of the settings"},
};
// clang-format on

} // namespace

std::span<const setting_key> setting_keys()
{
    return keys;
}

const setting_key* setting_find(std::string_view name, key_place place)
{
    const auto hit = std::ranges::find_if(keys, [&](const setting_key& k) {
        return k.place == place && equal_nocase(k.name, name);
    });
    return hit == std::end(keys) ? nullptr : hit;
}

std::string setting_get(std::string_view name, key_place place)
{
    const std::string value =
        ini_get(place == key_place::main ? std::string("Main") : settings.profile, name);
    const setting_key* row = setting_find(name, place);
    return value.empty() && row != nullptr && row->standard != nullptr ? row->standard : value;
}

} // namespace velkoro

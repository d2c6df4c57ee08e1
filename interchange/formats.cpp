#include "interchange/formats.h"

#include "core/text_tools.h"
#include "interchange/atlas_gis.h"
#include "interchange/corpscon.h"
#include "interchange/fugawi.h"
#include "interchange/gardown.h"
#include "interchange/garlink.h"
#include "interchange/geocaching.h"
#include "interchange/geogrid.h"
#include "interchange/mapsource.h"
#include "interchange/native_text.h"
#include "interchange/ozi.h"
#include "interchange/pcx5.h"
#include "interchange/streetatlas.h"
#include "interchange/terrain_navigator.h"
#include "interchange/waypoint_plus.h"

#include <algorithm>
#include <string>

namespace velkoro {
namespace {

/// The rows stand in the order of the list `filform`. Each format's procedures and its test of a
/// file's content are declared in its own header.
constexpr format_row table[] = {
    // The native text format: what a row text without one of the other names means.
    {.name = "VELkoro Text",
     .import_patterns = "*.txt",
     .export_patterns = "*.txt",
     .read = read_native_text,
     .write = write_native_text,
     .options = opt_posform | opt_grids | opt_separator | opt_time | opt_name_length | opt_comment,
     .holds = {.comment = true,
               .altitude = true,
               .proximity = true,
               .time = time_step::second,
               .routes = true,
               .route_names = true}},

    // Fugawi
    {.name = "Fugawi Text",
     .import_patterns = "*.txt",
     .export_patterns = "*.txt",
     .read = read_fugawi,
     .write = write_fugawi,
     .is_it = is_fugawi,
     .options = opt_name_length,
     .holds = {.time = time_step::day, .name_lacks = ",#"}},

    // Gardown
    {.name = "Gardown",
     .import_patterns = "*.gd",
     .export_patterns = "*.gd",
     .read = read_gardown,
     .write = write_gardown,
     .datum = "WGS 84",
     .options = opt_comment,
     .holds = {.comment = true,
               .time = time_step::second,
               .routes = true,
               .route_names = true,
               .name_width = 6,
               .position_step = 0.001 / 60}},

    // Garlink
    {.name = "Garlink",
     .import_patterns = "*.swp",
     .export_patterns = "*.swp",
     .read = read_garlink,
     .write = write_garlink,
     .track_import = "Garlink Track *.twp",
     .track_export = "Garlink *.twp",
     .datum = "WGS 84",
     .options = opt_posform | opt_name_length | opt_comment,
     .holds = {.comment = true, .time = time_step::minute, .name_lacks = " "}},

    // OziExplorer
    {.name = "OziExplorer",
     .import_patterns = "*.wpt;*.rte",
     .export_patterns = "*.wpt;*.rte",
     .route_extension = ".rte",
     .read = read_ozi,
     .write = write_ozi,
     .track_import = "OziExplorer *.plt",
     .track_export = "OziExplorer *.plt",
     .is_it = is_ozi,
     .datum = "WGS 84",
     .options = opt_name_length | opt_comment,
     .holds = {.comment = true,
               .altitude = true,
               .time = time_step::second,
               .routes = true,
               .route_names = true,
               .comment_lacks = "\xD1"}}, // comes back as a comma

    // Geocaching
    {.name = "Geocaching",
     .import_patterns = "*.loc",
     .read = read_geocaching,
     .holds = {.comment = true}},

    // PCX5
    {.name = "PCX5",
     .import_patterns = "*.wpt;*.prx;*.rte;*.grm",
     .export_patterns = "*.wpt;*.rte",
     .route_extension = ".rte",
     .read = read_pcx5,
     .write = write_pcx5,
     .track_import = "PCX5 Track *.trk",
     .track_export = "PCX5 Track *.trk",
     .is_it = is_pcx5,
     .datum = "WGS 84",
     .options = opt_posform | opt_name_length | opt_comment,
     .holds = {.comment = true,
               .altitude = true,
               .proximity = true,
               .time = time_step::second,
               .routes = true,
               .route_names = true,
               .comment_width = 40}},

    // Waypoint+
    {.name = "Waypoint+ Text",
     .import_patterns = "*.txt",
     .export_patterns = "*.txt",
     .read = read_waypoint_plus,
     .write = write_waypoint_plus,
     .is_it = is_waypoint_plus,
     .datum = "WGS 84",
     .options = opt_name_length | opt_comment,
     .holds = {.comment = true,
               .time = time_step::second,
               .routes = true,
               .route_names = true,
               .name_lacks = ","}},

    // StreetAtlas
    {.name = "StreetAtlas 7.0",
     .import_patterns = "*.txt",
     .export_patterns = "*.txt",
     .read = read_streetatlas,
     .write = write_streetatlas,
     .is_it = is_streetatlas,
     .options = opt_name_length,
     .holds = {.name_lacks = ",\""}},

    // Mapsource
    {.name = "Mapsource",
     .import_patterns = "*.txt",
     .read = read_mapsource,
     .is_it = is_mapsource,
     .holds = {.comment = true,
               .altitude = true,
               .proximity = true,
               .time = time_step::second,
               .routes = true,
               .route_names = true}},

    // Atlas GIS
    {.name = "Atlas GIS",
     .import_patterns = "*.bna",
     .export_patterns = "*.bna",
     .read = read_atlas_gis,
     .write = write_atlas_gis,
     .options = opt_name_length | opt_comment,
     .holds = {.comment = true, .routes = true, .route_names = true, .comment_lacks = "\""}},

    // GeogridViewer
    {.name = "GeogridViewer",
     .import_patterns = "*.ovl;*.coo",
     .export_patterns = "*.ovl",
     .read = read_geogrid,
     .write = write_geogrid,
     .datum = "WGS 84",
     .options = opt_name_length,
     .holds = {.routes = true, .route_names = true, .position_step = 1e-8}},

    // TerrainNavigator
    {.name = "TerrainNavigator",
     .import_patterns = "*.mxf;*.rxf",
     .export_patterns = "*.mxf;*.rxf",
     .route_extension = ".rxf",
     .read = read_terrain_navigator,
     .write = write_terrain_navigator,
     .track_import = "TerrainNavigator *.txf",
     .track_export = "TerrainNavigator *.txf",
     .options = opt_name_length | opt_comment,
     .holds = {.comment = true, .routes = true, .comment_lacks = "\"", .position_step = 1e-7}},

    // CORPSCON
    {.name = "CORPSCON",
     .import_patterns = "*.geo;*.utm",
     .export_patterns = "*.geo;*.utm",
     .read = read_corpscon,
     .write = write_corpscon,
     .options = opt_posform | opt_name_length,
     .holds = {.name_lacks = ",;#"}},
};

/// The word that tells a format in a row text: the first one of its name, for the native format
/// the whole name.
std::string_view key_word(const format_row& row)
{
    return row.name == table[0].name ? row.name : row.name.substr(0, row.name.find(' '));
}

std::string row_text(std::string_view direction, const format_row& row, std::string_view patterns)
{
    std::string text(direction);
    text.append(" ").append(row.name).append(" ").append(patterns);
    return text;
}

std::string_view first_pattern(std::string_view& patterns)
{
    return next_field(patterns, ';');
}

} // namespace

std::span<const format_row> formats()
{
    return table;
}

const format_row* format_of_text(std::string_view text, bool exact)
{
    // "StreetAtlas" holds "Atlas": the longest word that is found counts.
    const format_row* found = nullptr;
    for (const format_row& row : table) {
        const std::string_view word = key_word(row);
        if (find_nocase(text, word) != std::string_view::npos &&
            (!found || word.size() > key_word(*found).size()))
            found = &row;
    }
    return found || exact ? found : &table[0];
}

std::string import_text(const format_row& row)
{
    return row_text("IMPORT", row, row.import_patterns);
}

std::string export_text(const format_row& row)
{
    return row_text("EXPORT", row, row.export_patterns);
}

std::vector<std::string> import_rows()
{
    std::vector<std::string> rows;
    for (const format_row& row : table)
        if (row.read)
            rows.push_back(import_text(row));
    return rows;
}

std::vector<std::string> export_rows()
{
    std::vector<std::string> rows;
    for (const format_row& row : table)
        if (row.write)
            rows.push_back(export_text(row));
    return rows;
}

bool has_pattern(std::string_view patterns, std::string_view extension)
{
    while (!patterns.empty()) {
        std::string_view pattern = first_pattern(patterns);
        if (pattern.starts_with('*'))
            pattern.remove_prefix(1);
        if (!extension.empty() && equal_nocase(pattern, extension))
            return true;
    }
    return false;
}

const format_row* format_of_file(std::string_view extension, std::string_view text)
{
    const format_row* by_extension = nullptr;
    for (const format_row& row : table) {
        if (!row.read || !has_pattern(row.import_patterns, extension))
            continue;
        if (row.is_it && row.is_it(text, extension))
            return &row;
        // A row without a test takes what no other one knows.
        if (!row.is_it && !by_extension)
            by_extension = &row;
    }
    return by_extension;
}

const format_row* format_to_write(std::string_view extension)
{
    const auto hit = std::ranges::find_if(table, [&](const format_row& row) {
        return row.write && has_pattern(row.export_patterns, extension);
    });
    return hit == std::ranges::end(table) ? nullptr : hit;
}

} // namespace velkoro

/// The table of file formats of other programs: one row a format.
/// It feeds the file window, the command line, the tests and the documentation. The row texts hold
/// name and file patterns, and a format is found again by the words in such a text. A direction
/// whose procedure is missing is not offered. A new format is two files with its procedures, one
/// row here and samples in tests/interchange/samples.
#pragma once

#include "core/store.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct import_job;
struct export_job;

using format_reader = void (*)(import_job&);
using format_writer = void (*)(export_job&);
/// Whether a file is of the format, for extensions that several formats share. `text` is the whole
/// file without byte order mark, the extension in lower case with its point.
using format_test = bool (*)(std::string_view text, std::string_view extension);

/// How exact a time is kept.
enum class time_step : std::uint8_t { none, day, minute, second };

/// What a waypoint (or route) file of a format keeps; what writing and reading again gives back.
struct format_holds {
    bool comment = false, altitude = false, proximity = false;
    time_step time = time_step::none;
    bool routes = false;              ///< in the same file, or in one of `route_extension`
    bool route_names = false;         ///< else the reader makes them up
    bool point_names = true;          ///< names of route points; else the reader makes them up
    int name_width = 0;               ///< characters, 0 any number
    int comment_width = 0;            ///< characters, 0 any number
    std::string_view name_lacks{};    ///< characters of a name that come back as "-"
    std::string_view comment_lacks{}; ///< characters of a comment that come back as another one
    double position_step = 1e-5;      ///< degrees of the last digit written
};

/// Option controls of the file window that mean something to the writer of a format.
enum format_option : unsigned {
    opt_posform = 1,     ///< coordinate format: export_job::fmt and ::sign
    opt_separator = 2,   ///< `Trenn`: export_job::separator
    opt_time = 4,        ///< `Zeitf`: export_job::time_picture
    opt_name_length = 8, ///< `naml`: export_job::name_length
    opt_comment = 16,    ///< `beschr`: export_job::comments
    opt_grids = 32       ///< any coordinate format, grids too
};

struct format_row {
    std::string_view name{}; ///< the words of its row texts, and its name on the command line
    /// Patterns as the row texts have them ("*.wpt;*.rte"); empty: no such row.
    std::string_view import_patterns{}, export_patterns{};
    std::string_view route_extension{}; ///< files of this extension hold routes only
    format_reader read{};
    format_writer write{};

    std::string_view track_import{}, track_export{}; ///< row texts of tracks, behind "IMPORT "
    format_reader read_track{};
    format_writer write_track{};

    format_test is_it{};      ///< missing: the extension alone decides
    std::string_view datum{}; ///< of what is written; empty: the list's
    unsigned options = 0;     ///< of format_option
    format_holds holds{};
};

/// All rows, in the order of the list `filform`.
std::span<const format_row> formats();

/// The row whose name stands in a row text ("IMPORT OziExplorer *.wpt;*.rte") or is the text; any
/// other text means the native text format, as long as `exact` is false. Case does not matter.
const format_row* format_of_text(std::string_view text, bool exact = false);

/// Row texts of waypoints and routes that are installed: "IMPORT <name> <patterns>".
std::vector<std::string> import_rows();
std::vector<std::string> export_rows();
std::string import_text(const format_row& row);
std::string export_text(const format_row& row);

/// Whether the patterns ("*.wpt;*.rte") hold an extension (".wpt"); case does not matter.
bool has_pattern(std::string_view patterns, std::string_view extension);

/// The format of a file, by its extension, and by its content where several rows share that; null
/// when no installed row fits. `text` is the file's bytes.
const format_row* format_of_file(std::string_view extension, std::string_view text);
/// The format that a file of this name is written in: the first installed row with a writer, by
/// the extension; null when none.
const format_row* format_to_write(std::string_view extension);

} // namespace velkoro

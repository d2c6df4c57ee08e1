/// A file of another program on its way into the store: what every reader works with.
/// A reader gets the job with the whole text, walks through it by lines or by its own means, and
/// hands in records. It makes no string per field: fields are views into the text. The job knows
/// the line under way, counts malformed lines, shifts positions from the datum of the file,
/// enters records by wayp_insert (mode -1, one batch), puts routes together and serves events.
/// What was handed in stays, whatever ends the reading.
///
///     void read_example(import_job& in)
///     {
///         std::array<std::string_view, 8> f;
///         for (std::string_view line; next_line(in, line);) {
///             const std::size_t n = split_fields(line, ',', f);  // trimmed views, rest empty
///             wayp_rec w;
///             if (n < 3 || !file_position(in, f[1], f[2], w.pos)) {
///                 bad_line(in);
///                 continue;
///             }
///             w.nam = f[0];
///             add_waypoint(in, w);
///         }
///     }
#pragma once

#include "coords/datum.h"
#include "core/store.h"
#include "interchange/fields.h"
#include "interchange/formats.h"
#include "waypoints/native_end.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velkoro {

/// Malformed lines that the report names; the others are only counted.
inline constexpr std::size_t named_lines = 10;

/// What a file holds, for those who want to look at it and leave the store alone.
struct import_content {
    struct route {
        std::string name{};
        std::vector<wayp_rec> points{};
    };
    std::vector<wayp_rec> waypoints{};
    std::vector<route> routes{};
    std::vector<trackp_rec> track{};
    std::string track_title{};
};

struct import_job {
    // For the reader to look at
    std::string_view text{}; ///< the whole file, Windows-1252, without byte order mark
    std::string extension{}; ///< ".wpt", lower case
    bool from_utf8 = false;  ///< the file had a UTF-8 mark and was converted
    int line = 0;            ///< number of the line that next_line gave last, from 1

    // For the reader to set
    std::string title{}; ///< of the list or the track, when the file has one

    // The job's own
    import_content* into = nullptr; ///< when given, records end here and not in the store
    std::size_t at = 0;             ///< next line
    datum_rec datum{};              ///< of the file
    int datum_row = -1;             ///< its row in the table, -1 WGS 84 without a row
    int waypoints = 0, route_points = 0, routes = 0, track_points = 0; ///< handed in
    int bad_lines = 0;
    int last_bad = 0;
    std::vector<int> bad_numbers{}; ///< of the first malformed lines
    native_end end = native_end::whole;
    int refusal = 0;            ///< text number of the reason of a refusal, 0 none
    std::string refusal_text{}; ///< its parameter

    /// Points that this file has given, to know them again as points of routes.
    struct seen_row {
        std::size_t name_hash = 0;
        pos_rec pos{};
        std::int32_t index = -1; ///< in the store, or in into->waypoints
        std::int32_t next = -1;  ///< row of the same hash behind it
    };
    std::vector<seen_row> seen{};
    struct seen_chain {
        std::int32_t first = -1, last = -1;
    };
    std::unordered_map<std::size_t, seen_chain> seen_names{};      ///< made with the first route
    std::size_t names_done = 0;                                    ///< rows of `seen` that it knows
    std::unordered_map<std::uint64_t, std::int32_t> seen_places{}; ///< first row at a position
    std::size_t places_done = 0;

    /// The route under way.
    bool route_open = false;
    route_rec route{};
    std::vector<std::int32_t> route_indexes{};
    struct route_leg {
        std::string speed{}, korr{}, anw{};
    };
    std::vector<route_leg> route_legs{}; ///< of the first points; shorter where the rest has none
    wayp_rec record{};                   ///< room that is used again and again
};

// Lines
// -------------------------------------------------------------------------------------------------

/// The next line, without its end (CR LF, LF or CR) and as it stands otherwise; false behind the
/// last one. A progress point: throws batch_cancelled when the user has broken the job off.
bool next_line(import_job& in, std::string_view& line);
/// As next_line, past lines that hold nothing but blanks; the line comes trimmed.
bool next_full_line(import_job& in, std::string_view& line);
/// Gives the line back: next_line returns it once more.
void unread_line(import_job& in, std::string_view line);
/// A progress point for readers that do not go by lines; `at` (a place in the text) says how far.
void import_pump(import_job& in, std::size_t at);

/// Counts the line under way as malformed, once.
void bad_line(import_job& in);
/// Ends the reading: the file is not of this kind, or of a variant that cannot be read. The number
/// of a text that says so and its parameter; 7962 when the number is 0 ("not a file of this kind").
/// Call it and return; what was handed in before stays.
void refuse(import_job& in, int text_number = 0, std::string_view parameter = {});

// Positions
// -------------------------------------------------------------------------------------------------

/// The datum of the positions that follow. Names are compared without regard to case, blanks and
/// punctuation, and by the names that other programs use. An unknown one is told (text 7961): the
/// user may read the positions as they stand on WGS 84, or refuse; false then, and the reader
/// returns. An empty name means WGS 84.
bool set_datum(import_job& in, std::string_view name);

/// A position in degrees on the datum of the file; false when out of range.
bool file_position(const import_job& in, double lat, double lon, pos_rec& pos);
/// From two angles as text (see to_angle).
bool file_position(const import_job& in, std::string_view lat, std::string_view lon, pos_rec& pos);
/// From the three texts of a coordinate in any coordinate format (coords/coord_text.h).
bool file_position(const import_job& in, std::string_view zone, std::string_view east,
                   std::string_view north, int fmt, pos_rec& pos);

// Records
// -------------------------------------------------------------------------------------------------

/// Hands in a waypoint: name and comment as in the file, the rest as wayp_rec has it, with `dat` 0
/// and `alt` alt_unknown for what the file does not tell. Control characters become blanks.
/// Returns where it is in the store, -1 when it was kept out. Passes on batch_cancelled and
/// std::overflow_error: the reader does not catch them.
int add_waypoint(import_job& in, const wayp_rec& record);
/// The same from views, without a record of the reader's own.
int add_waypoint(import_job& in, std::string_view name, std::string_view comment,
                 const pos_rec& pos, std::int32_t dat = 0, std::int16_t alt = alt_unknown,
                 std::int16_t prox = 0, std::int16_t symb = 0);

/// Begins a route, ending the one before. An empty name gets a made-up one ("Route 1", ...).
/// `colour` 0: chosen by the store.
void begin_route(import_job& in, std::string_view name, std::int16_t colour = 0);
/// Appends a point: a point of this file with the same name and position is the same waypoint, any
/// other is handed in as a waypoint. Outside a route it is one.
void add_route_point(import_job& in, const wayp_rec& record);
void add_route_point(import_job& in, std::string_view name, std::string_view comment,
                     const pos_rec& pos, std::int32_t dat = 0, std::int16_t alt = alt_unknown,
                     std::int16_t prox = 0, std::int16_t symb = 0);
/// Appends the first point of this file that has the name; false when there is none.
bool add_route_point(import_job& in, std::string_view name);
/// Appends the first point of this file that has the key (see core/names.h), else the waypoint of
/// the store that has it; false when there is none.
bool add_route_key(import_job& in, std::string_view key);
/// Speed, correction and instruction of the leg that ends at the point appended last. Outside a
/// route, and ahead of its first point, nothing happens.
void set_route_leg(import_job& in, std::string_view speed, std::string_view korr,
                   std::string_view anw);
/// Appends a point that has no name in the file: the first one of the file at that place, else a
/// new one with a free name, made of the route's name and the point's number in it.
void add_unnamed_point(import_job& in, const pos_rec& pos);
/// Hands the route over; a route without points is none. The end of the reading does it too.
void end_route(import_job& in);

/// Hands in a track point; `new_segment` also for the first one of a file.
void add_track_point(import_job& in, const pos_rec& pos, std::int32_t time, std::int16_t alt,
                     bool new_segment);

// Running a reader
// -------------------------------------------------------------------------------------------------

/// A numbered text that tells of malformed lines or a refusal.
struct import_remark {
    int number = 0;
    std::string text{};
};

struct import_result {
    native_end end = native_end::whole; ///< not_native: refused
    const format_row* format = nullptr;
    int waypoints = 0, routes = 0, track_points = 0; ///< read, whatever became of them
    int bad_lines = 0;
    std::string title{};
    std::string report{}; ///< of the batch, "" all were new
    std::vector<import_remark> remarks_list{};
    std::string remarks{}; ///< their texts, a line each; "" none
};

/// Reads a file's bytes by a row of the table. `extension` tells variants apart. With `into` the
/// records end there and the store stays as it is. `tracks` reads the tracks of the file.
import_result import_bytes(const format_row& format, std::string_view bytes,
                           std::string_view extension, bool tracks = false,
                           import_content* into = nullptr);

/// A file of which no line said anything is of another kind: the result becomes a refusal, with
/// text 7962 ahead of its remarks.
void refuse_if_nothing_read(import_result& result);

} // namespace velkoro

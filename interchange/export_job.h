/// The store on its way into a file of another program: what every writer works with.
/// A writer gets the job with what was selected and the options, and appends to one buffer. The
/// helpers make no strings; positions come out as pos_to_text gives them.
///
///     void write_example(export_job& out)
///     {
///         put_line(out, "Example 1.0");
///         int number = 0;
///         each_waypoint(out, [&](const wayp_rec& w) {
///             const geo_degrees g = on_datum(out, w.pos);
///             put_int(out, ++number);
///             put(out, ',');
///             put_text(out, w.nam, ",", '-');
///             put(out, ',');
///             put_decimal(out, g.lat, 2, 5); // -43.21049
///             put_end(out);                  // CR LF
///         });
///     }
#pragma once

#include "coords/coord_text.h"
#include "coords/datum.h"
#include "core/route_lists.h"
#include "core/store.h"
#include "interchange/formats.h"
#include "waypoints/native_end.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// What is to be written and how.
struct export_options {
    /// "W" all waypoints, "WM" marked ones, "R" all routes with their waypoints, "RM" chosen ones;
    /// "A" and "U" append to the file; tested as parts of the text.
    std::string flags = "WR";
    std::vector<int> routes{}; ///< store indexes of the chosen routes, for "RM"
    int fmt = fmt_degrees;     ///< coord_fmt of the positions
    bool sign = false;         ///< "+ddd.ddddd°": decimal degrees with a sign in place of letters
    char separator = ';';
    std::string time_picture = "dd.mm.yyyy hh:nn:ss"; ///< see date_pic
    int name_length = 0;                              ///< names are cut to this; 0 not
    bool comments = true;
    int datum = -1; ///< of formats without a datum of their own; -1 the list's
};

struct export_job {
    // For the writer to look at
    std::string extension{}; ///< ".wpt", lower case
    bool route_file = false; ///< the extension is that of the format's route files
    bool appends = false;    ///< the text goes behind what the file holds
    std::string title{};     ///< of the list or the track
    export_options options{};
    /// Store indexes: the waypoints in the order of the list (in formats with routes in the same
    /// file, or without routes, also the points of the selected routes), and the routes.
    std::vector<int> waypoints{}, routes{};
    int datum_index = -1; ///< row of the datum of the file, -1 WGS 84
    std::string datum_name{};

    // The writer fills
    std::string bytes{};

    // The job's own
    datum_rec datum{};
    std::size_t done = 0, all = 0; ///< records
    int written = 0, routes_written = 0, track_points = 0;
    std::string zone{}, east{}, north{}; ///< of coordinate_texts, used again and again
};

// Records
// -------------------------------------------------------------------------------------------------

/// A progress point; throws batch_cancelled when the user has broken the job off.
void export_step(export_job& out);

/// Calls `put_one(const wayp_rec&)` for each selected waypoint. The record is good until the next
/// progress point.
template <class F> void each_waypoint(export_job& out, F put_one)
{
    for (std::size_t k = 0; k < out.waypoints.size(); ++k) {
        export_step(out);
        const int i = out.waypoints[k];
        if (i > store.wp_top) // the progress point serves events
            continue;
        ++out.written;
        put_one(static_cast<const wayp_rec&>(store.wp[static_cast<std::size_t>(i)]));
    }
}

/// Calls `put_one(int number, std::string_view name, const route_rec&, const std::vector<int>&
/// points)` for each selected route; number from 1, the name trimmed, points as store indexes.
template <class F> void each_route(export_job& out, F put_one)
{
    int number = 0;
    for (std::size_t k = 0; k < out.routes.size(); ++k) {
        export_step(out);
        const int r = out.routes[k];
        if (r > store.rou_top)
            continue;
        const route_rec route = store.rou[static_cast<std::size_t>(r)];
        std::string_view name = route.nam;
        while (!name.empty() && name.back() == ' ')
            name.remove_suffix(1);
        while (!name.empty() && name.front() == ' ')
            name.remove_prefix(1);
        ++out.routes_written;
        put_one(++number, name, route, route_points(route));
    }
}

// Text
// -------------------------------------------------------------------------------------------------

inline void put(export_job& out, std::string_view text)
{
    out.bytes.append(text);
}
inline void put(export_job& out, char c)
{
    out.bytes += c;
}
/// The end of a line: CR LF.
inline void put_end(export_job& out)
{
    out.bytes.append("\r\n", 2);
}
inline void put_line(export_job& out, std::string_view text)
{
    put(out, text);
    put_end(out);
}
/// Without characters of `unwanted` and control characters, for which `instead` stands.
void put_text(export_job& out, std::string_view text, std::string_view unwanted = {},
              char instead = ' ');
/// Left-aligned in so many columns, cut or filled up with blanks; control characters become blanks.
void put_padded(export_job& out, std::string_view text, std::size_t width);
/// Right-aligned; a longer text stands whole.
void put_right(export_job& out, std::string_view text, std::size_t width);
/// A whole number, with at least so many digits.
void put_int(export_job& out, std::int64_t number, int digits = 1);
/// A whole number right-aligned in so many columns.
void put_int_right(export_job& out, std::int64_t number, std::size_t width);
/// A number with at least `whole` digits ahead of the point and exactly `decimals` behind it;
/// a minus ahead of what does not round to zero.
void put_decimal(export_job& out, double number, int whole, int decimals);
/// The name of a waypoint, cut by the option.
std::string_view name_of(const export_job& out, const wayp_rec& w);
/// The comment of a waypoint without blanks around it; empty when the option leaves comments out.
std::string_view comment_of(const export_job& out, const wayp_rec& w);

// Positions and times
// -------------------------------------------------------------------------------------------------

/// Degrees on the datum of the file, north and east positive.
struct geo_degrees {
    double lat = 0, lon = 0;
};
geo_degrees on_datum(const export_job& out, const pos_rec& pos);

/// The degree text of angle_to_text ("N 48.12345°", "E011°34.073'", "W043°12'37.8\""), taken apart:
/// letter 'N' or 'E', format 0 to 2. Digits as they stand there ("48", "011", "34.073", "12").
struct angle_parts {
    std::string text{};
    bool negative = false;
    std::uint8_t degrees_at = 1, degrees_size = 0; ///< "48.12345" in format 0
    std::uint8_t minutes_at = 0, minutes_size = 0;
    std::uint8_t seconds_at = 0, seconds_size = 0;
    std::string_view degrees() const { return view(degrees_at, degrees_size); }
    std::string_view minutes() const { return view(minutes_at, minutes_size); }
    std::string_view seconds() const { return view(seconds_at, seconds_size); }
    std::string_view view(std::size_t at, std::size_t size) const
    {
        return std::string_view(text).substr(at, size);
    }
};
angle_parts split_angle(double degrees, char letter, int fmt);
/// Decimal degrees of five decimals with a minus in place of "S" and "W" and nothing in place of
/// "N" and "E"; leading zeros stay: "48.12345", "-043.21049".
void put_degrees(export_job& out, double degrees, char letter);

/// The three texts of a position on the datum of the file in any coordinate format, left in
/// out.zone, out.east and out.north, as pos_to_text gives them. -1: options.fmt.
void coordinate_texts(export_job& out, const pos_rec& pos, int fmt = -1);

/// A time by a picture of date_pic, or by the months' names as the format writes them ("dd-mmm-yy"
/// gives "02-MAY-03"). UTC.
void put_time(export_job& out, std::int32_t time, std::string_view picture);
/// The time where a year of two digits tells it (1980 to 2079), else 0.
std::int32_t in_two_digits(std::int32_t time);
/// Days since 30 December 1899 with seven decimals.
void put_day_number(export_job& out, std::int32_t time);
/// True when the record has a time.
inline bool has_time(std::int32_t dat)
{
    return dat != 0;
}

// Running a writer
// -------------------------------------------------------------------------------------------------

struct export_result {
    native_end end = native_end::whole; ///< or broken_off: the bytes hold what was written
    std::string bytes{};
    int waypoints = 0, routes = 0, track_points = 0;
};

/// The selected records as the bytes of a file of the format. `appends`: for a file that has
/// content. `tracks` writes the track.
/// The options that a format is written with unless the user says otherwise: the list's coordinate
/// format where the format can hold it, else degrees.
export_options export_defaults(const format_row& format);

/// "+ddd.ddddd°", the entry of `posform` that only files of other programs have.
std::string signed_format();

export_result export_bytes(const format_row& format, const export_options& options,
                           std::string_view extension, bool appends = false, bool tracks = false);

} // namespace velkoro

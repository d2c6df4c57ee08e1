#include "coords/distance.h"
#include "coords/times.h"
#include "coords/units.h"
#include "core/form1.h"
#include "core/names.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "core/text_tools.h"
#include "interchange/native_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace velkoro {
namespace {

constexpr std::size_t name_width = 10; // "Summ      "
/// Farthest that a grid text may lie from its place, in semicircles of latitude: 20 m. The series
/// of the grids are within a few metres where the grid is used.
constexpr double grid_reach = 2150;

// Fields
// -------------------------------------------------------------------------------------------------

char separator_of(const export_job& out)
{
    const char c = out.options.separator;
    return c == ',' || c == '\t' ? c : ';';
}

bool is_word(std::string_view text)
{
    for (const std::string_view word :
         {native_waypoints, native_zone, native_route, native_sum, native_direct, native_name})
        if (begins(text, word))
            return true;
    return text.starts_with('<');
}

/// A field, in quotation marks where it would not come back alone. `first`: at the start of a line.
void put_field(export_job& out, std::string_view text, bool first)
{
    const bool marks = text.find(separator_of(out)) != std::string_view::npos ||
                       text.starts_with('"') || text.starts_with(' ') || text.ends_with(' ') ||
                       (first ? is_word(text) : text.starts_with('@')) ||
                       text.find_first_of(";\t") != std::string_view::npos;
    if (!marks) {
        put_text(out, text);
        return;
    }
    put(out, '"');
    for (const char c : text) {
        if (c == '"')
            put(out, c);
        put_text(out, {&c, 1});
    }
    put(out, '"');
}

/// The first field of a line, in its column.
void put_name(export_job& out, std::string_view name)
{
    const std::size_t start = out.bytes.size();
    put_field(out, name, true);
    const std::size_t size = out.bytes.size() - start;
    if (size < name_width)
        out.bytes.append(name_width - size, ' ');
}

void put_comment(export_job& out, std::string_view comment)
{
    if (comment.empty())
        return;
    put(out, separator_of(out));
    put(out, '@');
    put_text(out, comment);
}

// Waypoints
// -------------------------------------------------------------------------------------------------

bool in_degrees(const export_job& out)
{
    return out.options.sign || out.options.fmt <= fmt_seconds;
}

void put_title(export_job& out)
{
    const auto fmt = static_cast<std::size_t>(std::max(0, out.options.fmt));
    const auto& captions = Form1.posform.items;
    put(out, native_waypoints);
    put(out, ' ');
    put_field(out, out.title, false);
    put(out, separator_of(out));
    if (out.options.sign)
        put(out, native_signed_degrees());
    else if (fmt < captions.size())
        put_field(out, captions[fmt], false);
    put(out, separator_of(out));
    put_field(out, out.datum_name, false);
    put_end(out);
}

void put_headings(export_job& out)
{
    const char separator = separator_of(out);
    put_padded(out, native_name, name_width);
    const auto heading = [&](std::string_view text) {
        put(out, separator);
        put(out, text);
    };
    heading(in_degrees(out) ? "Latitude" : "East");
    heading(in_degrees(out) ? "Longitude" : "North");
    heading("Alt m");
    heading("Symbol");
    heading(native_time);
    put(out, out.options.time_picture);
    heading("Prox m");
    heading("Comment");
    put_end(out);
}

/// The name of a symbol where that leads back to its number, else the number.
void put_symbol(export_job& out, int number)
{
    const std::string name = symb_ext(number);
    double value = 0;
    if (symb_ext(std::string_view(name)) == number && !to_number(name, value))
        put_field(out, name, false);
    else
        put_int(out, number);
}

void put_signed(export_job& out, double angle, int whole)
{
    if (angle >= 0)
        put(out, '+');
    put_decimal(out, angle, whole, 5);
    put(out, '\xB0');
}

/// The texts of the place in the grid, in out.zone, out.east and out.north; false when the grid
/// does not reach it.
bool grid_texts(export_job& out, const pos_rec& pos)
{
    coordinate_texts(out, pos);
    pos_rec back;
    const int datum = out.datum_index >= 0 ? out.datum_index : datums.wgs_datum;
    if (out.east.empty() || out.north.empty() ||
        !text_to_pos(out.zone, out.east, out.north, back, out.options.fmt, datum))
        return false;
    const auto away = [](std::int32_t a, std::int32_t b) {
        return std::fabs(static_cast<double>(a) - b);
    };
    const double east = away(pos.lon, back.lon);
    return away(pos.lat, back.lat) < grid_reach &&
           std::min(east, 4294967296.0 - east) * std::cos(pos.lat * semi_to_rad) < grid_reach;
}

void put_position(export_job& out, const pos_rec& pos, bool grid)
{
    const char separator = separator_of(out);
    if (out.options.sign) {
        const geo_degrees g = on_datum(out, pos);
        put_signed(out, g.lat, 2);
        put(out, separator);
        put_signed(out, g.lon, 3);
        return;
    }
    const bool degrees = in_degrees(out);
    if (!grid)
        coordinate_texts(out, pos, degrees ? out.options.fmt : fmt_degrees);
    put(out, degrees ? out.north : out.east);
    put(out, separator);
    put(out, degrees ? out.east : out.north);
}

void put_waypoints(export_job& out)
{
    const char separator = separator_of(out);
    std::string zone;
    bool headed = false;
    each_waypoint(out, [&](const wayp_rec& w) {
        const bool grid = !in_degrees(out) && grid_texts(out, w.pos);
        if (grid && out.zone != zone) {
            zone = out.zone;
            put(out, native_zone);
            put(out, ' ');
            put_line(out, zone);
        }
        if (!headed)
            put_headings(out);
        headed = true;
        put_name(out, name_of(out, w));
        put(out, separator);
        put_position(out, w.pos, grid);
        put(out, separator);
        if (w.alt != alt_unknown)
            put_int(out, w.alt);
        put(out, separator);
        put_symbol(out, w.symb);
        put(out, separator);
        if (has_time(w.dat))
            put_time(out, w.dat, out.options.time_picture);
        put(out, separator);
        if (w.prox != 0)
            put_int(out, w.prox * 100);
        put_comment(out, comment_of(out, w));
        put_end(out);
    });
    if (!headed)
        put_headings(out);
    put_line(out, native_end_line);
}

// Routes
// -------------------------------------------------------------------------------------------------

/// A point of a route as its line shows it.
struct route_point {
    std::string key{}; // of the waypoint as its own line gives it
    std::string speed{}, corr{}, text{};
    int index = -1; // in the store
};

std::vector<route_point> points_of(const export_job& out, const route_rec& route)
{
    const std::vector<std::string> keys = list_tokens(route.wps), speeds = list_tokens(route.speed);
    const std::vector<std::string> corrs = list_tokens(route.korr), texts = list_tokens(route.anw);
    const auto token = [](const std::vector<std::string>& list, std::size_t i) {
        return i < list.size() ? list[i] : std::string{};
    };
    std::vector<route_point> points;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const int index = wp_find_key(keys[i], {}, -1, store.wp_top);
        if (index < 0)
            continue;
        const wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
        points.push_back({wp_key(name_of(out, w), comment_of(out, w)), token(speeds, i),
                          token(corrs, i), token(texts, i), index});
    }
    return points;
}

dist_bear leg(const route_point& to, const route_point& from)
{
    return dist_flat(store.wp[static_cast<std::size_t>(to.index)].pos,
                     store.wp[static_cast<std::size_t>(from.index)].pos);
}

/// The bearing in whole degrees, with the correction of the leg.
void put_bearing(export_job& out, float bearing, double correction)
{
    double degrees = std::fmod(round_even(bearing) + correction, 360.0);
    if (degrees < 0)
        degrees += 360;
    put(out, pic(std::fmod(round_even(degrees), 360.0), "000"));
    put(out, '\xB0');
}

void put_hours(export_job& out, double seconds)
{
    if (seconds > 0)
        put_right(out, hours_text(seconds), 8); // as wide as "   hh:mm"
}

/// Seconds of a leg, 0 without a speed. Distance in the selected unit, speed in km/h.
double leg_seconds(double distance, std::string_view speed)
{
    const double v = val(comma_to_dot(speed));
    return v > 0 ? distance / v * settings.dist_unit / 1000 * 3600 : 0;
}

void put_route(export_job& out, int number, std::string_view name, const route_rec& route)
{
    const char separator = separator_of(out);
    put(out, native_route);
    put(out, ' ');
    put_int(out, number, 2);
    put(out, ' ');
    put_field(out, name, false);
    put(out, separator);
    put_int(out, route.farbe);
    put_end(out);

    put_padded(out, native_name, name_width);
    for (const std::string& heading :
         {std::string("Bearing"), std::string("Distance ") + dist_label(), std::string("   hh:mm"),
          std::string("km/h"), std::string("Corr"), std::string("Comment")}) {
        put(out, separator);
        put(out, heading);
    }
    put_end(out);

    const std::vector<route_point> points = points_of(out, route);
    double distance = 0, seconds = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const route_point& p = points[i];
        put_name(out, p.key);
        put(out, separator);
        if (i > 0) {
            const dist_bear d = leg(p, points[i - 1]);
            const double time = leg_seconds(d.distance, p.speed);
            distance += d.distance;
            seconds += time;
            put_bearing(out, d.bearing, val(comma_to_dot(p.corr)));
            put(out, separator);
            put_decimal(out, d.distance, 1, 1);
            put(out, separator);
            put_hours(out, time);
        } else {
            put(out, separator);
            put(out, separator);
        }
        put(out, separator);
        put_field(out, p.speed, false);
        put(out, separator);
        put_field(out, p.corr, false);
        put_comment(out, p.text);
        put_end(out);
    }
    // A route of one point has no leg and an empty sum.
    const bool legs = points.size() > 1;
    put_padded(out, native_sum, name_width);
    put(out, separator);
    put(out, separator);
    if (legs)
        put_decimal(out, distance, 1, 1);
    put(out, separator);
    put_hours(out, seconds);
    put_end(out);
    put_padded(out, native_direct, name_width);
    put(out, separator);
    if (legs) {
        const dist_bear d = leg(points.back(), points.front());
        put_bearing(out, d.bearing, 0);
        put(out, separator);
        put_decimal(out, d.distance, 1, 1);
    } else {
        put(out, separator);
    }
    put_end(out);
    put_line(out, native_end_line);
}

} // namespace

void write_native_text(export_job& out)
{
    put_title(out);
    put_waypoints(out);
    each_route(out, [&](int number, std::string_view name, const route_rec& route,
                        const std::vector<int>&) { put_route(out, number, name, route); });
}

} // namespace velkoro

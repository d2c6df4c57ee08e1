#include "coords/coord_text.h"

#include "coords/distance.h"
#include "coords/grid_lambert.h"
#include "coords/grid_nzmg.h"
#include "coords/grid_swiss.h"
#include "coords/grid_tm.h"
#include "coords/grid_utm.h"
#include "core/form1.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/trap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace velkoro {
namespace {

constexpr double deg = 180 / std::numbers::pi;
constexpr double plane_limit = 1e9; // metres: no grid reaches so far, and beyond lies no number

int format_of(int fmt)
{
    const int f = fmt == -1 ? Form1.posform.selected : fmt;
    return f < 0 || f >= fmt_user + static_cast<int>(datums.grids.size()) ? 0 : f;
}

const grid_rec& user_grid_of(int fmt)
{
    return datums.grids[static_cast<std::size_t>(fmt - fmt_user)];
}

/// Digits of a format's texts: whole metres, and kilometres ahead of the point.
struct digit_row {
    int east_m, north_m, east_km, north_km;
};
digit_row digits_of(int fmt)
{
    switch (fmt) {
    case fmt_gk: return {6, 7, 3, 4};
    case fmt_swiss: return {6, 6, 3, 3};
    case fmt_mgrs:
    case fmt_british:
    case fmt_irish: return {5, 5, 2, 2};
    default: return {7, 7, 4, 4};
    }
}

void append_number(std::string& out, double value, int whole, int decimals)
{
    char text[360];
    char* const start = text + 1;
    char* const end = put_fixed(start, std::fabs(value), whole, decimals);
    const char* first = start;
    if (value < 0 && !std::all_of(start, end, [](char c) { return c == '0' || c == '.'; })) {
        text[0] = '-';
        first = text;
    }
    out.append(first, static_cast<std::size_t>(end - first));
}

/// A datum row of senseless constants leads to no number and has no text.
void append_metres(std::string& out, double metres, int digits_m, int digits_km)
{
    if (!std::isfinite(metres))
        return;
    if (settings.km_grid)
        append_number(out, metres / 1000, digits_km, 3);
    else
        append_number(out, metres, digits_m, 0);
}

// Out
// -------------------------------------------------------------------------------------------------

/// Where the zone of a text comes from.
enum class zone_from { place, choice, before, held };

/// A position in a grid as its texts show it.
struct grid_place {
    plane_rec plane{}; // metres, false origin included, or the residue in a square
    bool east_ok = true, north_ok = true;
    int prefix = -1; // zone digit ahead of the east text
};

/// The rows of `zone` belong to the format that is chosen in the window.
bool shares_zones(int a, int b)
{
    return a == b || (a >= fmt_utm && a <= fmt_mgrs && b >= fmt_utm && b <= fmt_mgrs);
}

zone_from source_of(int keep, int fmt)
{
    if (coord.zone_halt && keep != -1)
        return zone_from::held;
    if (keep > 0 && coord.zone_fmt != -1 && shares_zones(fmt, coord.zone_fmt))
        return zone_from::before;
    const bool own = shares_zones(fmt, Form1.posform.selected);
    return own && coord.zone_choice > 0 ? zone_from::choice : zone_from::place;
}

void put_utm_zone(std::string& zone, int number, double lat)
{
    zone.clear();
    append_number(zone, number, 2, 0);
    zone += utm_band(lat);
}

bool utm_place(const geo_rec& geo, int fmt, zone_from from, const datum_rec& datum,
               std::string& zone, grid_place& g)
{
    const double lat = geo.lat * deg;
    double meridian = 0;
    switch (from) {
    case zone_from::held: meridian = utm_zone_meridian(utm_zone_number(zone)); break;
    case zone_from::before: meridian = utm_zone_meridian(coord.zone); break;
    case zone_from::choice:
        coord.zone = coord.zone_choice;
        meridian = utm_zone_meridian(coord.zone);
        break;
    case zone_from::place:
        meridian = utm_meridian(geo.lon * deg, lat);
        coord.zone = utm_zone_of(meridian);
        break;
    }
    const plane_rec p = tm_forward(geo, meridian, datum);
    const double e = p.east * utm_scale, n = p.north * utm_scale;
    g.east_ok = std::fabs(e) < 2000000;
    const bool fresh = from == zone_from::place || from == zone_from::choice;
    if (fresh)
        put_utm_zone(zone, coord.zone, lat);
    if (!std::isfinite(e) || !std::isfinite(n))
        return false;
    if (fmt == fmt_utm) {
        g.plane = {utm_south(zone) ? n + utm_false_northing : n, e + utm_false_easting};
        return true;
    }
    if (fresh &&
        !mgrs_letters(e + utm_false_easting, n < 0 ? n + utm_false_northing : n, coord.zone, zone))
        return false;
    g.plane = {n - mgrs_row(zone) * 100000.0, e - mgrs_col(zone) * 100000.0 + utm_false_easting};
    return true;
}

bool gk_place(const geo_rec& geo, zone_from from, const datum_rec& datum, grid_place& g)
{
    if (geo.lat < 0)
        return false;
    double meridian = 0;
    switch (from) {
    case zone_from::held: meridian = 3 * val(trim_left(coord.zone_held[2]).substr(0, 1)); break;
    case zone_from::before: meridian = 3.0 * (coord.zone - 1); break;
    case zone_from::choice:
        coord.zone = coord.zone_choice;
        meridian = 3.0 * (coord.zone - 1);
        break;
    case zone_from::place:
        meridian = gk_meridian(geo.lon * deg);
        coord.zone = static_cast<int>(meridian / 3) + 1;
        break;
    }
    const plane_rec p = tm_forward(geo, meridian, datum);
    g.east_ok = std::fabs(p.east) < 500000;
    g.prefix = static_cast<int>(meridian / 3);
    g.plane = {p.north, p.east + 500000};
    return true;
}

void lambert_place(const geo_rec& geo, zone_from from, const datum_rec& datum, std::string& zone,
                   grid_place& g)
{
    int number = coord.zone;
    if (from == zone_from::held)
        number = static_cast<int>(std::clamp(val(zone), 0.0, 9.0));
    else if (from == zone_from::choice)
        number = coord.zone_choice;
    else if (from == zone_from::place)
        number = lambert_zone(geo);
    if (from == zone_from::choice || from == zone_from::place) {
        coord.zone = number;
        zone.assign(1, static_cast<char>('0' + number));
    }
    g.plane = lambert_zone_forward(geo, number, datum);
    g.east_ok = g.plane.east >= 0 && g.plane.east < 2000000;
    g.north_ok = g.plane.north >= 0 && g.plane.north < 5000000;
}

bool square_place(const geo_rec& geo, int fmt, zone_from from, const datum_rec& datum,
                  std::string& zone, grid_place& g)
{
    const bool british = fmt == fmt_british;
    const plane_rec p = grid_forward(geo, british ? british_grid : irish_grid, datum);
    plane_rec origin;
    const bool kept = from == zone_from::held || from == zone_from::before;
    if (kept && (british ? british_origin(zone, origin) : irish_origin(zone, origin))) {
        g.plane = {p.north - origin.north, p.east - origin.east};
        return true;
    }
    const square_rec s = british ? british_square(p) : irish_square(p);
    zone = s.letters;
    g.plane = {s.north, s.east};
    return !zone.empty();
}

/// False when the grid has no text for the place. `zone` comes in as kept or held.
bool place_of(const geo_rec& geo, int fmt, zone_from from, const datum_rec& datum,
              std::string& zone, grid_place& g)
{
    switch (fmt) {
    case fmt_utm:
    case fmt_mgrs: return utm_place(geo, fmt, from, datum, zone, g);
    case fmt_lambert: lambert_place(geo, from, datum, zone, g); return true;
    case fmt_british:
    case fmt_irish: return square_place(geo, fmt, from, datum, zone, g);
    default: break;
    }
    if (from != zone_from::held)
        zone.clear();
    if (fmt == fmt_gk)
        return gk_place(geo, from, datum, g);
    if (fmt == fmt_swiss) {
        const plane_rec p = swiss_forward(geo, datum);
        g.plane = {p.north + 200000, p.east + 600000};
        g.east_ok = g.plane.east >= 0 && g.plane.east < 1000000;
        g.north_ok = g.plane.north >= 0 && g.plane.north < 1000000;
    } else if (fmt == fmt_nz) {
        g.plane = nzmg_forward(geo);
        g.east_ok = g.plane.east >= 0 && g.plane.east < 10000000;
        g.north_ok = g.plane.north >= 0 && g.plane.north < 10000000;
    } else {
        g.plane = grid_forward(geo, user_grid(user_grid_of(fmt)), datum);
    }
    return true;
}

std::string_view base_text(std::string_view text)
{
    return text.substr(0, text.find(map_tab));
}

/// The east text as text_to_pos reads it: the zone digit off, the leading zero on.
std::string_view east_digits(std::string_view east, int fmt, std::string& room)
{
    if (fmt == fmt_gk) {
        east = trim_left(east);
        return east.substr(east.empty() ? 0 : 1);
    }
    if (fmt == fmt_utm && settings.utm_zero) {
        east = trim_left(east);
        if (!east.starts_with('0') && !east.starts_with('-')) {
            room = '0';
            room += east;
            return room;
        }
    }
    return east;
}

void put_tail(std::string& out, std::string_view base, double tail)
{
    out = base;
    out += map_tab;
    append_number(out, std::isfinite(tail) ? tail : 0, 1, 0);
}

/// Held mode: the base texts stay, the rest is shown in millimetres on the map.
void held_angles(const pos_rec& pos, int fmt, std::string& zone, std::string& east,
                 std::string& north)
{
    const auto& [held_zone, held_north, held_east] = coord.zone_held;
    pos_rec base;
    text_to_pos(held_zone, base_text(held_east), base_text(held_north), base, fmt, -1);
    const dist_bear d = dist_flat(pos, base);
    const double mm = d.distance / static_cast<double>(settings.scale) * 1000000;
    zone = held_zone;
    put_tail(east, base_text(held_east), mm * std::sin(d.bearing / deg));
    put_tail(north, base_text(held_north), mm * std::cos(d.bearing / deg));
}

void held_grid(const grid_place& g, int fmt, std::string& east, std::string& north)
{
    const std::string_view base_east = base_text(coord.zone_held[2]);
    const std::string_view base_north = base_text(coord.zone_held[1]);
    const digit_row d = digits_of(fmt);
    std::string room;
    const double e = grid_text_to_m(east_digits(base_east, fmt, room), d.east_m);
    const double n = grid_text_to_m(base_north, d.north_m);
    put_tail(east, base_east, (g.plane.east - e) / settings.scale * 1000);
    put_tail(north, base_north, (g.plane.north - n) / settings.scale * 1000);
}

} // namespace

void pos_to_text(const pos_rec& pos, std::string& zone, std::string& east, std::string& north,
                 int keep, int fmt)
try {
    fmt = format_of(fmt);
    const datum_rec& datum = datum_at(-1);
    const geo_rec geo = wgs_to_datum(pos, datum);
    if ((fmt > fmt_seconds && std::abs(static_cast<std::int64_t>(pos.lat)) > grid_lat_limit) ||
        !std::isfinite(geo.lat) || !std::isfinite(geo.lon)) {
        east.clear();
        north.clear();
        return;
    }
    const zone_from from = source_of(keep, fmt);
    if (fmt <= fmt_seconds) {
        if (from == zone_from::held) {
            held_angles(pos, fmt, zone, east, north);
            return;
        }
        zone.clear();
        east = angle_to_text(geo.lon * deg, 'E', fmt);
        north = angle_to_text(geo.lat * deg, 'N', fmt);
        return;
    }
    if (from == zone_from::held)
        zone = coord.zone_held[0];
    else if (from == zone_from::before)
        zone = coord.zone_text;
    grid_place g;
    const bool reached = place_of(geo, fmt, from, datum, zone, g);
    coord.zone_text = zone;
    coord.zone_fmt = fmt;
    east.clear();
    north.clear();
    if (!reached)
        return;
    if (from == zone_from::held) {
        held_grid(g, fmt, east, north);
        return;
    }
    const digit_row d = digits_of(fmt);
    if (g.east_ok) {
        if (g.prefix >= 0)
            append_number(east, g.prefix, 1, 0);
        append_metres(east, g.plane.east, d.east_m, d.east_km);
    }
    if (g.north_ok)
        append_metres(north, g.plane.north, d.north_m, d.north_km);
} catch (...) {
    trap("pos_to_text");
}

// In
// -------------------------------------------------------------------------------------------------

namespace {

/// A number that a factor took past the largest one is the largest one.
double finite(double value)
{
    constexpr double most = std::numeric_limits<double>::max();
    return std::clamp(value, -most, most);
}

} // namespace

double grid_text_to_m(std::string_view text, int digits)
{
    text = trim(base_text(trim(text)));
    std::string room;
    if (text.find(',') != std::string_view::npos)
        text = room = comma_to_dot(text);
    if (text.find('.') != std::string_view::npos)
        return finite(round_even(val(text) * 1000));
    const auto length = static_cast<std::size_t>(text.starts_with('-') ? digits + 1 : digits);
    std::array<char, 16> padded{};
    if (text.size() >= length || length > padded.size())
        return round_even(val(text));
    std::fill(std::copy(text.begin(), text.end(), padded.begin()), padded.end(), '0');
    return round_even(val({padded.data(), length}));
}

double grid_text_rel(std::string_view text)
{
    const std::size_t at = text.find(map_tab);
    if (at == std::string_view::npos)
        return 0;
    return finite(round_even(val(comma_to_dot(text.substr(at + 1))) * settings.scale / 1000));
}

namespace {

struct coord_texts {
    std::string zone{}, east{}, north{};
};

/// The texts of the origin of a format.
coord_texts origin_texts(int fmt)
{
    switch (fmt) {
    case fmt_utm:
    case fmt_mgrs: return {"31N", "05", "0"};
    case fmt_gk: return {"", "35", "0"};
    case fmt_swiss: return {"", "6", "2"};
    case fmt_lambert: return {"2", "06", "22"};
    case fmt_british: return {"SO", "0", "0"};
    case fmt_irish: return {"R", "0", "0"};
    case fmt_nz: return {"", "251", "602315"};
    default: break;
    }
    if (fmt <= fmt_seconds)
        return {"", "0", "0"};
    const grid_rec& g = user_grid_of(fmt);
    double north = g.false_northing;
    if (g.origin_latitude < -45) // else the digits would fall short
        north += 5000000;
    return {"", pic(g.false_easting, "0000000"), pic(north, "0000000")};
}

bool has_digit(std::string_view text)
{
    return base_text(text).find_first_of("0123456789") != std::string_view::npos;
}

/// Zone text in capitals with two digits.
std::string zone_in(std::string_view zone)
{
    std::string z = upper(trim(zone));
    if (z.size() > 1 &&
        std::string_view("ABCDEFGHJKLMNPQRSTUVWXYZ").find(z[1]) != std::string_view::npos)
        z.insert(0, 1, '0');
    return z;
}

/// Position on the datum; `ok` false when a text is none of the format.
geo_rec grid_geo(std::string_view zone, std::string_view east, std::string_view north, int fmt,
                 const datum_rec& datum, bool& ok)
{
    const digit_row d = digits_of(fmt);
    std::string room;
    plane_rec p = {grid_text_to_m(north, d.north_m) + grid_text_rel(north),
                   grid_text_to_m(east_digits(east, fmt, room), d.east_m) + grid_text_rel(east)};
    ok = has_digit(east) && has_digit(north);
    if (!(std::fabs(p.north) < plane_limit && std::fabs(p.east) < plane_limit)) {
        ok = false;
        return {std::nan(""), std::nan("")};
    }
    switch (fmt) {
    case fmt_utm:
    case fmt_mgrs: {
        const std::string z = zone_in(zone);
        const int number = utm_zone_number(z);
        ok = ok && number >= 1 && number <= 60;
        if (fmt == fmt_mgrs) {
            p.east += mgrs_col(z) * 100000.0;
            p.north += mgrs_row(z) * 100000.0;
        } else if (utm_south(z)) {
            p.north -= utm_false_northing;
        }
        return tm_inverse({p.north / utm_scale, (p.east - utm_false_easting) / utm_scale},
                          utm_zone_meridian(number), datum);
    }
    case fmt_gk: {
        const std::string_view digit = trim_left(east).substr(0, 1);
        ok = ok && digit >= "0" && digit <= "9";
        return tm_inverse({p.north, p.east - 500000}, 3 * val(digit), datum);
    }
    case fmt_swiss: return swiss_inverse({p.north - 200000, p.east - 600000}, datum);
    case fmt_lambert: {
        const double number = val(zone);
        ok = ok && number >= 1 && number < 5;
        return lambert_zone_inverse(p, ok ? static_cast<int>(number) : 2, datum);
    }
    case fmt_british:
    case fmt_irish: {
        plane_rec origin;
        const std::string_view letters = trim(zone);
        const bool known =
            fmt == fmt_british ? british_origin(letters, origin) : irish_origin(letters, origin);
        ok = ok && known;
        return grid_inverse({p.north + origin.north, p.east + origin.east},
                            fmt == fmt_british ? british_grid : irish_grid, datum);
    }
    case fmt_nz: return nzmg_inverse(p);
    default: return grid_inverse(p, user_grid(user_grid_of(fmt)), datum);
    }
}

} // namespace

bool text_to_pos(std::string_view zone, std::string_view east, std::string_view north, pos_rec& pos,
                 int fmt, int datum)
try {
    fmt = format_of(fmt);
    const datum_rec& row = datum_at(datum);
    if (zone == "org") {
        const coord_texts t = origin_texts(fmt);
        return text_to_pos(t.zone, t.east, t.north, pos, fmt, datum);
    }
    bool ok = true;
    if (fmt > fmt_seconds)
        return datum_to_wgs(grid_geo(zone, east, north, fmt, row, ok), row, pos) && ok;

    bool east_ok = true;
    const geo_rec geo = {text_to_angle(north, "NS", &ok), text_to_angle(east, "EW", &east_ok)};
    if (!datum_to_wgs(geo, row, pos))
        return false;
    const double east_m = grid_text_rel(east), north_m = grid_text_rel(north);
    if (east_m != 0)
        pos = dist_to_wgs_dir(east_m / settings.dist_unit, 90, pos);
    if (north_m != 0)
        pos = dist_to_wgs_dir(north_m / settings.dist_unit, 0, pos);
    return ok && east_ok;
} catch (...) {
    trap("text_to_pos");
    return false;
}

std::string position_line(const pos_rec& pos)
{
    std::string zone, east, north;
    pos_to_text(pos, zone, east, north, -1);
    if (Form1.posform.selected <= fmt_seconds)
        return north + " " + east;
    if (east.empty() && north.empty())
        return {};
    return zone + (zone.empty() ? "" : " ") + east + " " + north;
}

} // namespace velkoro

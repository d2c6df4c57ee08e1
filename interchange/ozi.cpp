#include "interchange/ozi.h"

#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>

namespace velkoro {
namespace {

constexpr char comma_letter = '\xD1'; // stands for a comma in texts
constexpr double unknown_feet = -777;
constexpr double feet_per_metre = 1 / 0.3048;

// Reading
// -------------------------------------------------------------------------------------------------

enum class ozi_kind { none, waypoints, routes };

ozi_kind kind_of(std::string_view first_line)
{
    if (find_nocase(first_line, "OziExplorer") == std::string_view::npos)
        return ozi_kind::none;
    if (find_nocase(first_line, "Waypoint File") != std::string_view::npos)
        return ozi_kind::waypoints;
    if (find_nocase(first_line, "Route File") != std::string_view::npos)
        return ozi_kind::routes;
    return ozi_kind::none;
}

/// The text with another character in place of one; `room` is used only where it occurs.
std::string_view replaced(std::string_view text, char from, char to, std::string& room)
{
    if (text.find(from) == std::string_view::npos)
        return text;
    room.assign(text);
    std::ranges::replace(room, from, to);
    return room;
}

/// What a point of either kind of file tells, in fields from its name on.
struct ozi_point {
    std::string_view name{}, comment{};
    pos_rec pos{};
    std::int32_t dat = 0;
    std::int16_t alt = alt_unknown;
    std::string name_room{}, comment_room{};
};

/// Places of the fields, counted from the name.
enum : std::size_t { at_name, at_lat, at_lon, at_date, at_comment = 9, at_altitude = 13 };

bool read_point(const import_job& in, std::span<const std::string_view> f, ozi_point& p)
{
    double lat = 0, lon = 0;
    if (!to_number(f[at_lat], lat) || !to_number(f[at_lon], lon) ||
        !file_position(in, lat, lon, p.pos))
        return false;
    p.name = replaced(f[at_name], comma_letter, ',', p.name_room);
    p.comment = replaced(f[at_comment], comma_letter, ',', p.comment_room);
    p.dat = day_number_time(f[at_date]);
    return true;
}

void read_waypoints(import_job& in)
{
    std::array<std::string_view, 16> f; // the last one takes what newer versions add
    ozi_point p;
    for (std::string_view line; next_full_line(in, line);) {
        split_fields(line, ',', f);
        const auto fields = std::span(f).subspan(1);
        if (!read_point(in, fields, p)) {
            bad_line(in);
            continue;
        }
        double feet = 0;
        p.alt = to_number(fields[at_altitude], feet) && feet != unknown_feet
                    ? feet_to_altitude(feet)
                    : alt_unknown;
        add_waypoint(in, p.name, p.comment, p.pos, p.dat, p.alt);
    }
}

void read_route_head(import_job& in, std::string_view name)
{
    std::string commas, blanks;
    name = replaced(name, comma_letter, ',', commas);
    begin_route(in, trim(replaced(name, '_', ' ', blanks)));
}

void read_routes(import_job& in)
{
    std::array<std::string_view, 16> f;
    ozi_point p;
    for (std::string_view line; next_full_line(in, line);) {
        split_fields(line, ',', f);
        if (equal_nocase(f[0], "R"))
            read_route_head(in, f[2]);
        else if (equal_nocase(f[0], "W") && read_point(in, std::span(f).subspan(4), p))
            add_route_point(in, p.name, p.comment, p.pos, p.dat);
        else
            bad_line(in);
    }
}

// Writing
// -------------------------------------------------------------------------------------------------

void put_head(export_job& out, std::string_view first_line)
{
    if (out.appends)
        return;
    put_line(out, first_line);
    put_line(out, "WGS 84");
    put_line(out, "Reserved 2");
    put_line(out, "Reserved 3");
}

/// Nothing but a comma could end the field.
void put_field(export_job& out, std::string_view text)
{
    put_text(out, text, ",", comma_letter);
}

/// Name, position, date and symbol. The symbol is 0: without the field all later ones would move
/// up by one for a reader of another program.
void put_point(export_job& out, const wayp_rec& w)
{
    const geo_degrees g = on_datum(out, w.pos);
    put_field(out, name_of(out, w));
    put(out, ", ");
    put_degrees(out, g.lat, 'N');
    put(out, ", ");
    put_degrees(out, g.lon, 'E');
    put(out, ',');
    if (has_time(w.dat))
        put_day_number(out, w.dat);
    put(out, ",0");
}

void write_waypoints(export_job& out)
{
    put_head(out, "OziExplorer Waypoint File Version 1.0");
    int number = 0;
    each_waypoint(out, [&](const wayp_rec& w) {
        put_int(out, ++number);
        put(out, ',');
        put_point(out, w);
        put(out, ", 1, 3,   8388608,     65535,");
        put_field(out, comment_of(out, w));
        put(out, ", 0, 0, 0, ");
        put_int(out, w.alt == alt_unknown ? std::lround(unknown_feet)
                                          : std::lround(w.alt * feet_per_metre));
        put_end(out);
    });
}

void write_routes(export_job& out)
{
    put_head(out, "OziExplorer Route File Version 1.0");
    each_route(out, [&](int number, std::string_view name, const route_rec&,
                        const std::vector<int>& points) {
        put(out, "R,");
        put_int(out, number);
        put(out, " ,");
        put_field(out, name);
        put_line(out, ",,");
        for (std::size_t k = 0; k < points.size(); ++k) {
            const wayp_rec& w = store.wp[static_cast<std::size_t>(points[k])];
            put(out, "W,");
            put_int(out, number);
            for (int twice = 0; twice < 2; ++twice) { // as point and as waypoint
                put(out, " ,");
                put_int(out, static_cast<std::int64_t>(k) + 1);
            }
            put(out, " ,");
            put_point(out, w);
            put(out, ", 1, 0,   8388608,     65535,");
            put_field(out, comment_of(out, w));
            put_line(out, ", 0, 0");
        }
    });
}

} // namespace

bool is_ozi(std::string_view text, std::string_view)
{
    return kind_of(text.substr(0, text.find_first_of("\r\n"))) != ozi_kind::none;
}

void read_ozi(import_job& in)
{
    std::string_view first, datum, line;
    next_line(in, first);
    const ozi_kind kind = kind_of(first);
    if (kind == ozi_kind::none) {
        refuse(in);
        return;
    }
    next_line(in, datum);
    if (!set_datum(in, trim(datum)))
        return;
    for (int reserved = 0; reserved < 2; ++reserved)
        next_line(in, line);
    if (kind == ozi_kind::waypoints)
        read_waypoints(in);
    else
        read_routes(in);
}

void write_ozi(export_job& out)
{
    if (out.route_file)
        write_routes(out);
    else
        write_waypoints(out);
}

} // namespace velkoro

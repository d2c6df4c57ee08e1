#include "interchange/geogrid.h"

#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>
#include <vector>

namespace velkoro {
namespace {

constexpr std::string_view list_head = "Geographische Koordinaten", row_word = "COO";
constexpr std::string_view binary_head = "DOMGVCRD Ovlfile", route_mark = "R-";
constexpr char degree = '\xB0';

// Overlays
// -------------------------------------------------------------------------------------------------

enum class ovl_kind { text = 2, line = 3, area = 4 };

struct ovl_place {
    double lat = 0, lon = 0;
    bool has_lat = false, has_lon = false;
};

/// A coordinate of a point of a line. They are put in order when the section ends, so that a
/// number, however large, costs nothing.
struct ovl_part {
    unsigned number = 0;
    bool longitude = false;
    double value = 0;
};

/// A section under way.
struct ovl_symbol {
    bool open = false;
    int line = 0; // where it began
    int kind = 0;
    int colour = 0;
    int count = -1; // of the points of a line, as told
    std::string_view text{};
    ovl_place place{};
    std::vector<ovl_part> parts{};
    bool bad = false;
};

struct ovl_route {
    std::string_view name{};
    std::int16_t colour = 0;
    std::vector<pos_rec> points{};
};

struct ovl_reader {
    import_job& in;
    ovl_symbol symbol{};
    std::string_view route_name{}; // of a text that names the line behind it
    pos_rec route_place{};
    bool has_route_name = false;
    /// Put together at the end, when all waypoints that their points may be are known.
    std::vector<ovl_route> routes{};
};

void set_coordinate(ovl_place& place, bool longitude, double angle)
{
    (longitude ? place.lon : place.lat) = angle;
    (longitude ? place.has_lon : place.has_lat) = true;
}

bool position_of(const import_job& in, const ovl_place& place, pos_rec& pos)
{
    return place.has_lat && place.has_lon && file_position(in, place.lat, place.lon, pos);
}

/// Counts the section as malformed, by its first line.
void bad_symbol(ovl_reader& r)
{
    const int here = std::exchange(r.in.line, r.symbol.line);
    bad_line(r.in);
    r.in.line = here;
}

/// A text "R-..." without a line behind it is a waypoint like the others.
void give_back_name(ovl_reader& r)
{
    if (r.has_route_name)
        add_waypoint(r.in, r.route_name, {}, r.route_place);
    r.has_route_name = false;
}

void finish_line(ovl_reader& r)
{
    ovl_route route;
    if (r.has_route_name)
        route.name = r.route_name.substr(route_mark.size());
    r.has_route_name = false;
    if (r.symbol.colour >= 1 && r.symbol.colour <= 4)
        route.colour = static_cast<std::int16_t>(r.symbol.colour);
    std::vector<ovl_part>& parts = r.symbol.parts;
    std::ranges::stable_sort(parts, {}, &ovl_part::number);
    bool bad = r.symbol.bad;
    int points = 0;
    for (std::size_t i = 0; i < parts.size(); ++points) {
        const unsigned number = parts[i].number;
        ovl_place place;
        for (; i < parts.size() && parts[i].number == number; ++i)
            set_coordinate(place, parts[i].longitude, parts[i].value);
        pos_rec pos;
        if (position_of(r.in, place, pos))
            route.points.push_back(pos);
        else
            bad = true;
    }
    if (bad || points == 0 || (r.symbol.count >= 0 && r.symbol.count != points))
        bad_symbol(r);
    r.routes.push_back(std::move(route));
}

void finish_symbol(ovl_reader& r)
{
    ovl_symbol& s = r.symbol;
    if (!s.open)
        return;
    s.open = false;
    if (s.kind == static_cast<int>(ovl_kind::line) || s.kind == static_cast<int>(ovl_kind::area)) {
        finish_line(r);
        return;
    }
    give_back_name(r);
    if (s.text.empty())
        return; // a figure or a picture
    pos_rec pos;
    if (!position_of(r.in, s.place, pos)) {
        bad_symbol(r);
    } else if (s.text.starts_with(route_mark)) {
        r.route_name = s.text;
        r.route_place = pos;
        r.has_route_name = true;
    } else {
        add_waypoint(r.in, s.text, {}, pos);
    }
}

void begin_symbol(ovl_reader& r)
{
    std::vector<ovl_part> room = std::move(r.symbol.parts);
    room.clear();
    r.symbol = {};
    r.symbol.open = true;
    r.symbol.line = r.in.line;
    r.symbol.parts = std::move(room);
}

/// "XKoord" or "YKoord", alone or with the number of a point.
void take_coordinate(ovl_reader& r, bool longitude, std::string_view number, std::string_view value)
{
    double angle = 0;
    if (!to_number(value, angle)) {
        r.symbol.bad = true;
        return;
    }
    if (number.empty()) {
        set_coordinate(r.symbol.place, longitude, angle);
        return;
    }
    unsigned i = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, i);
    if (error != std::errc() || stop != end)
        bad_line(r.in);
    else
        r.symbol.parts.push_back({i, longitude, angle});
}

void take_key(ovl_reader& r, std::string_view key, std::string_view value)
{
    constexpr std::string_view east = "XKoord", north = "YKoord";
    if (begins(key, east) || begins(key, north))
        take_coordinate(r, begins(key, east), key.substr(east.size()), value);
    else if (equal_nocase(key, "Typ"))
        to_number(value, r.symbol.kind);
    else if (equal_nocase(key, "Col"))
        to_number(value, r.symbol.colour);
    else if (equal_nocase(key, "Punkte"))
        to_number(value, r.symbol.count);
    else if (equal_nocase(key, "Text"))
        r.symbol.text = trim(value);
}

void read_overlay(import_job& in)
{
    ovl_reader r{in};
    bool any = false;
    for (std::string_view line; next_full_line(in, line);) {
        if (line.starts_with('[')) {
            finish_symbol(r);
            any = true;
            if (begins(line, "[Symbol "))
                begin_symbol(r);
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            if (any)
                bad_line(in);
        } else if (r.symbol.open) {
            take_key(r, trim(line.substr(0, equals)), line.substr(equals + 1));
        }
    }
    finish_symbol(r);
    give_back_name(r);
    if (!any)
        refuse(in);
    int number = 0;
    for (const ovl_route& route : r.routes) {
        ++number;
        if (route.name.empty())
            begin_route(in, std::string(route_mark) + std::to_string(number), route.colour);
        else
            begin_route(in, route.name, route.colour);
        for (const pos_rec& pos : route.points)
            add_unnamed_point(in, pos);
    }
}

// Lists of coordinates
// -------------------------------------------------------------------------------------------------

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// An angle off the front: a number, and as long as marks are there its minutes and seconds.
bool take_angle(std::string_view& rest, double& degrees)
{
    rest = trim_left(rest);
    const bool minus = rest.starts_with('-');
    if (minus)
        rest.remove_prefix(1);
    constexpr std::array<char, 3> marks{degree, '\'', '"'};
    double value = 0, unit = 1;
    std::size_t n = 0;
    for (; n < marks.size() && !rest.empty() && is_digit(rest.front()); ++n, unit /= 60) {
        double part = 0;
        const auto [end, error] =
            std::from_chars(rest.data(), rest.data() + rest.size(), part, std::chars_format::fixed);
        if (error != std::errc() || (n > 0 && part >= 60))
            return false;
        rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
        value += part * unit;
        const std::string_view behind = trim_left(rest);
        if (!behind.starts_with(marks[n])) {
            ++n;
            break;
        }
        rest = trim_left(behind.substr(1));
    }
    degrees = minus ? -value : value;
    return n > 0;
}

enum class direction { none, north, south, east, west };

/// The German word of a direction off the front, if there is one.
direction take_direction(std::string_view& rest)
{
    struct word {
        std::string_view text;
        direction is;
    };
    constexpr word words[] = {{"Nord", direction::north},
                              {"N", direction::north},
                              {"S\xFC"
                               "d",
                               direction::south},
                              {"Sued", direction::south},
                              {"S", direction::south},
                              {"Ost", direction::east},
                              {"O", direction::east},
                              {"E", direction::east},
                              {"West", direction::west},
                              {"W", direction::west}};
    rest = trim_left(rest);
    const std::string_view first = rest.substr(0, rest.find_first_of(" \t"));
    for (const word& w : words)
        if (equal_nocase(first, w.text)) {
            rest.remove_prefix(first.size());
            return w.is;
        }
    return direction::none;
}

/// Two angles in either order, told apart by their words; without words longitude first. What is
/// left is the name.
bool take_place(std::string_view& rest, double& lat, double& lon)
{
    double first = 0, second = 0;
    if (!take_angle(rest, first))
        return false;
    const direction a = take_direction(rest);
    if (!take_angle(rest, second))
        return false;
    const direction b = a == direction::none ? a : take_direction(rest);
    const auto of_latitude = [](direction d) {
        return d == direction::north || d == direction::south;
    };
    if (a == direction::south || a == direction::west)
        first = -first;
    if (b == direction::south || b == direction::west)
        second = -second;
    if (a != direction::none && (b == direction::none || of_latitude(a) == of_latitude(b)))
        return false;
    lat = of_latitude(a) ? first : second;
    lon = of_latitude(a) ? second : first;
    return true;
}

void read_list(import_job& in)
{
    bool headed = false, rows = false;
    for (std::string_view line; next_full_line(in, line);) {
        if (begins(line, row_word) && line.size() > row_word.size() &&
            line[row_word.size()] == ' ') {
            rows = true;
            line.remove_prefix(row_word.size());
            double lat = 0, lon = 0;
            pos_rec pos;
            if (!take_place(line, lat, lon) || trim(line).empty() ||
                !file_position(in, lat, lon, pos))
                bad_line(in);
            else
                add_waypoint(in, trim(line), {}, pos);
        } else if (begins(line, list_head)) {
            headed = true;
        } else if (!headed) {
            break; // coordinates of a grid, or no such list at all
        } else if (!rows && !set_datum(in, line)) {
            return;
        }
    }
    if (!headed && !rows)
        refuse(in);
}

// Writing
// -------------------------------------------------------------------------------------------------

void put_key(export_job& out, std::string_view key, double value)
{
    put(out, key);
    put(out, '=');
    put_decimal(out, value, 1, 8);
    put_end(out);
}

void put_symbol(export_job& out, int number, std::string_view keys)
{
    put(out, "[Symbol ");
    put_int(out, number);
    put(out, "]\r\n");
    put(out, keys);
}

void put_label(export_job& out, int number, const pos_rec& pos, std::string_view mark,
               std::string_view text)
{
    put_symbol(
        out, number,
        "Typ=2\r\nGroup=1\r\nCol=1\r\nArea=1\r\nZoom=1\r\nSize=130\r\nFont=1\r\nDir=100\r\n");
    const geo_degrees g = on_datum(out, pos);
    put_key(out, "XKoord", g.lon);
    put_key(out, "YKoord", g.lat);
    put(out, "Text=");
    put(out, mark);
    put_text(out, text);
    put_end(out);
}

void put_route(export_job& out, int number, const route_rec& route, const std::vector<int>& points)
{
    put_symbol(out, number, "Typ=3\r\nGroup=1\r\nCol=");
    put_int(out, route.farbe);
    put(out, "\r\nZoom=1\r\nSize=102\r\nArt=1\r\nPunkte=");
    put_int(out, static_cast<std::int64_t>(points.size()));
    put_end(out);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const geo_degrees g = on_datum(out, store.wp[static_cast<std::size_t>(points[i])].pos);
        const std::string place = std::to_string(i);
        put_key(out, "XKoord" + place, g.lon);
        put_key(out, "YKoord" + place, g.lat);
    }
}

} // namespace

void read_geogrid(import_job& in)
{
    const std::size_t start = std::min(in.text.find_first_not_of(" \t\r\n"), in.text.size());
    const std::string_view head = in.text.substr(start);
    if (begins(head, binary_head))
        refuse(in);
    else if (in.extension == ".coo" || begins(head, list_head))
        read_list(in);
    else
        read_overlay(in);
}

void write_geogrid(export_job& out)
{
    int symbols = 0;
    each_waypoint(
        out, [&](const wayp_rec& w) { put_label(out, ++symbols, w.pos, {}, name_of(out, w)); });
    each_route(out, [&](int, std::string_view name, const route_rec& route,
                        const std::vector<int>& points) {
        if (points.empty())
            return;
        // Lines have no name of their own: a text at the first point holds it.
        const pos_rec start = store.wp[static_cast<std::size_t>(points.front())].pos;
        put_label(out, ++symbols, start, route_mark, name);
        put_route(out, ++symbols, route, points);
    });
    put_line(out, "[Overlay]");
    put(out, "Symbols=");
    put_int(out, symbols);
    put_end(out);
}

} // namespace velkoro

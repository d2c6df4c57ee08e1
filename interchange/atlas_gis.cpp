#include "interchange/atlas_gis.h"

#include "core/text_tools.h"

#include <array>
#include <cstdint>
#include <cstdlib>

namespace velkoro {
namespace {

constexpr std::string_view route_word = "Route";

/// The head of a record.
struct bna_head {
    std::array<std::string_view, 4> names{};
    std::size_t count_names = 0;
    int count = 0;
};

/// Where a record is in its coordinates.
struct bna_state {
    bna_head head{};
    int missing = 0;    // coordinates to come
    bool given = false; // a head was read
    bool circle = false;
    bool line = false; // its coordinates are points of a route
    double lon = 0;    // of the coordinate under way
    bool has_lon = false;
};

bool take_head(std::string_view line, bna_head& head)
{
    head = {};
    while (line.starts_with('"')) {
        // The mark that closes a name has a comma behind it.
        std::size_t end = line.find('"', 1);
        std::string_view behind;
        for (; end != std::string_view::npos; end = line.find('"', end + 1)) {
            behind = trim_left(line.substr(end + 1));
            if (behind.starts_with(','))
                break;
        }
        if (end == std::string_view::npos || head.count_names == head.names.size())
            return false;
        head.names[head.count_names++] = line.substr(1, end - 1);
        line = trim_left(behind.substr(1));
    }
    return to_number(line, head.count) && head.count != 0 && head.count > -2000000000;
}

void end_record(import_job& in, bna_state& s)
{
    if (s.given && s.missing > 0)
        bad_line(in); // the file or the next head came too early
    s.given = false;
    s.missing = 0;
    end_route(in);
}

void begin_record(import_job& in, bna_state& s)
{
    s.given = true;
    s.has_lon = false;
    s.missing = std::abs(s.head.count);
    const bool route = begins(trim(s.head.names[0]), route_word);
    s.circle = s.head.count == 2 && !route;
    s.line = !s.circle && (s.missing > 1 || (s.head.count < 0 && route));
    if (s.line)
        begin_route(in, s.head.count_names > 1 && !trim(s.head.names[1]).empty() ? s.head.names[1]
                                                                                 : s.head.names[0]);
}

bool take_coordinate(import_job& in, bna_state& s, double lat)
{
    --s.missing;
    if (s.circle)
        return true; // centre and radii make no waypoint
    pos_rec pos;
    if (!file_position(in, lat, s.lon, pos))
        return false;
    if (s.line) {
        add_unnamed_point(in, pos);
        return true;
    }
    const std::string_view name = trim(s.head.names[0]).empty() ? s.head.names[1] : s.head.names[0];
    if (trim(name).empty())
        return false;
    add_waypoint(in, name, s.head.names[1], pos);
    return true;
}

/// A line of coordinates: numbers with commas or blanks between, several pairs perhaps.
void take_numbers(import_job& in, bna_state& s, std::string_view line)
{
    while (s.missing > 0) {
        line = trim_left(line);
        if (line.starts_with(','))
            line = trim_left(line.substr(1));
        if (line.empty())
            return;
        const std::size_t end = line.find_first_of(", \t");
        double number = 0;
        if (!to_number(line.substr(0, end), number)) {
            bad_line(in);
            s.has_lon = false;
            --s.missing;
            return;
        }
        line.remove_prefix(end == std::string_view::npos ? line.size() : end);
        if (line.starts_with('\t'))
            line.remove_prefix(1);
        if (!s.has_lon)
            s.lon = number;
        else if (!take_coordinate(in, s, number))
            bad_line(in);
        s.has_lon = !s.has_lon;
    }
    if (!trim(line).empty())
        bad_line(in);
}

void put_texts(export_job& out, std::string_view first, std::string_view second, std::int64_t count)
{
    put(out, '"');
    put_text(out, first, "\"", '\'');
    put(out, "\",\"");
    put_text(out, second, "\"", '\'');
    put(out, "\",");
    put_int(out, count);
    put_end(out);
}

void put_coordinate(export_job& out, const pos_rec& pos)
{
    const geo_degrees g = on_datum(out, pos);
    put_decimal(out, g.lon, 3, 5);
    put(out, ',');
    put_decimal(out, g.lat, 2, 5);
    put_end(out);
}

} // namespace

void read_atlas_gis(import_job& in)
{
    bna_state s;
    for (std::string_view line; next_full_line(in, line);) {
        if (line.starts_with('"')) {
            end_record(in, s);
            if (take_head(line, s.head))
                begin_record(in, s);
            else
                bad_line(in);
        } else if (s.missing > 0) {
            take_numbers(in, s, line);
        } else {
            bad_line(in);
        }
    }
    end_record(in, s);
}

void write_atlas_gis(export_job& out)
{
    each_waypoint(out, [&](const wayp_rec& w) {
        put_texts(out, name_of(out, w), comment_of(out, w), 1);
        put_coordinate(out, w.pos);
    });
    each_route(out, [&](int number, std::string_view name, const route_rec&,
                        const std::vector<int>& points) {
        if (points.empty())
            return;
        std::string first(route_word);
        first += number < 10 ? " 0" : " ";
        first += std::to_string(number);
        // A negative count is an open line; a positive one would be closed, or a circle.
        put_texts(out, first, name, -static_cast<std::int64_t>(points.size()));
        for (const int i : points)
            put_coordinate(out, store.wp[static_cast<std::size_t>(i)].pos);
    });
}

} // namespace velkoro

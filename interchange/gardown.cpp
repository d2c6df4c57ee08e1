#include "interchange/gardown.h"

#include "coords/times.h"
#include "core/text_tools.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velkoro {
namespace {

constexpr std::size_t name_width = 6;

// Reading
// -------------------------------------------------------------------------------------------------

bool is_name(std::string_view word)
{
    return !word.empty() && std::ranges::all_of(word, [](char c) { return lower(c) != upper(c); });
}

/// Takes a date off the front of the text: "Fri May 02 08:15:30 2003", also with "0" or nothing in
/// place of the weekday, or "02-MAY-03 08:15:30". The text stays as it is when there is none.
std::int32_t take_date(std::string_view& text)
{
    std::string_view rest = text;
    std::string_view word = next_field(rest, " ");
    if (word == "0" || (is_name(word) && month_of(word) == 0))
        word = next_field(rest, " ");
    std::optional<std::int32_t> time;
    if (is_name(word)) {
        const std::string_view day = next_field(rest, " "), clock = next_field(rest, " ");
        std::string date(next_field(rest, " ")); // short enough to need no memory
        date.append("-").append(word.substr(0, 3)).append("-").append(day.substr(0, 2));
        time = to_time(date, clock);
    } else {
        const std::string_view clock = next_field(rest, " ");
        time = to_time(word, clock);
    }
    if (!time)
        return 0;
    text = rest;
    return *time;
}

/// A row from its name on.
void read_row(import_job& in, std::string_view row, bool of_route)
{
    constexpr std::size_t usual_lat = 7;
    double lat = 0, lon = 0;
    std::string_view name, rest;
    pos_rec pos;
    if ((!find_angles(row, usual_lat, lat, lon, name, rest) &&
         !find_angles(row, 1, lat, lon, name, rest)) ||
        !file_position(in, lat, lon, pos)) {
        bad_line(in);
        return;
    }
    const std::int32_t dat = take_date(rest);
    rest = trim(rest);
    if (rest.starts_with('@'))
        rest.remove_prefix(1);
    if (of_route)
        add_route_point(in, name, rest, pos, dat);
    else
        add_waypoint(in, name, rest, pos, dat);
}

/// The name behind the number; the number alone where there is no name.
std::string_view datum_name(std::string_view rest)
{
    const std::string_view number = next_field(rest, " ");
    return trim(rest).empty() && number != "100" ? number : trim(rest);
}

// Writing
// -------------------------------------------------------------------------------------------------

template <class F> void each_name(const export_job& out, F look)
{
    const auto look_at = [&](int i) { look(name_of(out, store.wp[static_cast<std::size_t>(i)])); };
    std::ranges::for_each(out.waypoints, look_at);
    for (const int r : out.routes)
        std::ranges::for_each(route_points(store.rou[static_cast<std::size_t>(r)]), look_at);
}

/// What stands in the columns for each name that is too long for them.
using short_names = std::unordered_map<std::string, std::string>;

/// Cuts the names. Where a cut name is taken, its end becomes a number; the numbers go on from one
/// name to the next, so that many names of one beginning cost no more than few.
short_names cut_names(const export_job& out)
{
    short_names cut;
    std::vector<std::string_view> too_long;
    each_name(out, [&](std::string_view name) {
        if (name.size() > name_width)
            too_long.push_back(name);
    });
    if (too_long.empty())
        return cut;
    std::unordered_set<std::string> taken;
    each_name(out, [&](std::string_view name) {
        if (name.size() <= name_width)
            taken.emplace(name);
    });
    std::unordered_map<std::string, int> last_number;
    for (const std::string_view name : too_long) {
        const auto [entry, fresh] = cut.try_emplace(std::string(name));
        if (!fresh)
            continue;
        const std::string start(name.substr(0, name_width));
        std::string shown = start;
        for (int& number = last_number[start]; !taken.insert(shown).second;) {
            const std::string digits = std::to_string(++number);
            shown = start.substr(0, name_width - std::min(digits.size(), name_width)) + digits;
        }
        entry->second = std::move(shown);
    }
    return cut;
}

/// "N48 07.4070"
void put_angle(export_job& out, double degrees, char letter)
{
    const angle_parts a = split_angle(degrees, letter, fmt_minutes);
    put(out, a.negative ? (letter == 'N' ? 'S' : 'W') : letter);
    put(out, a.degrees());
    put(out, ' ');
    put(out, a.minutes());
    put(out, '0'); // other programs expect four digits behind the point
}

void put_row(export_job& out, const short_names& cut, const wayp_rec& w)
{
    constexpr std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const geo_degrees g = on_datum(out, w.pos);
    const std::string_view name = name_of(out, w);
    const auto it = name.size() > name_width ? cut.find(std::string(name)) : cut.end();
    put_padded(out, it == cut.end() ? name : std::string_view(it->second), name_width);
    put(out, ' ');
    put_angle(out, g.lat, 'N');
    put(out, ' ');
    put_angle(out, g.lon, 'E');
    put(out, "   0 "); // in the columns of the weekday
    const auto month = static_cast<std::size_t>(seconds_date(w.dat).month - 1);
    put(out, months.substr(month * 3, 3));
    put_time(out, w.dat, " dd hh:nn:ss yyyy ");
    put(out, '@');
    put_text(out, comment_of(out, w));
    put_end(out);
}

} // namespace

void read_gardown(import_job& in)
{
    for (std::string_view line; next_full_line(in, line);) {
        std::string_view rest = line;
        const std::string_view kind = next_field(rest, " ");
        if (equal_nocase(kind, "W")) {
            read_row(in, line.substr(std::min<std::size_t>(3, line.size())), false);
        } else if (equal_nocase(kind, "WR")) {
            next_field(rest, " "); // number of the point
            read_row(in, rest, true);
        } else if (equal_nocase(kind, "R")) {
            begin_route(in, behind_number(rest));
        } else if (equal_nocase(kind, "E")) {
            end_route(in);
        } else if (equal_nocase(kind, "D")) {
            if (!set_datum(in, datum_name(rest)))
                return;
        } else if (!equal_nocase(kind, "T")) {
            bad_line(in);
        }
    }
}

void write_gardown(export_job& out)
{
    const short_names cut = cut_names(out);
    if (!out.appends)
        put_line(out, "D  100   WGS 84");
    each_waypoint(out, [&](const wayp_rec& w) {
        put(out, "W  ");
        put_row(out, cut, w);
    });
    each_route(out, [&](int number, std::string_view title, const route_rec&,
                        const std::vector<int>& points) {
        put(out, "R  ");
        put_int(out, number, 2);
        put(out, ' ');
        put_text(out, title);
        put_end(out);
        for (std::size_t k = 0; k < points.size(); ++k) {
            put(out, "WR ");
            put_int(out, static_cast<std::int64_t>(k) + 1, 2);
            put(out, ' ');
            put_row(out, cut, store.wp[static_cast<std::size_t>(points[k])]);
        }
        put_line(out, "E  ");
    });
}

} // namespace velkoro

#include "interchange/pcx5.h"

#include "core/settings.h"
#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace velkoro {
namespace {

constexpr int unknown_metres = -9999;
constexpr std::size_t least_name = 6, comment_width = 40;
constexpr std::size_t none = std::string_view::npos;
constexpr int text_positions = 7964; // positions in a form that is not known

// Reading
// -------------------------------------------------------------------------------------------------

enum class pcx5_form { unknown, deg, dm, dms };

/// Where the fields of a row begin, from 0. The defaults are those of a name of six characters.
struct pcx5_columns {
    std::size_t name = 3, lat = 10, date = 35, description = 60, proximity = 101;
};

struct pcx5_state {
    pcx5_form form = pcx5_form::unknown;
    pcx5_columns columns{};
    bool in_route = false;
};

/// Takes the columns from a head of waypoints; other heads change nothing.
void read_head(std::string_view line, pcx5_columns& columns)
{
    const auto at = [&](std::string_view word) { return find_nocase(line, word); };
    if (at(" IDNT") == none || at("LATITUDE") == none)
        return;
    columns = {.name = at(" IDNT") + 1,
               .lat = at("LATITUDE"),
               .date = at(" DATE") == none ? none : at(" DATE") + 1,
               .description = at("DESCRIPTION"),
               .proximity = at("PROXIMITY")};
}

/// The name of the datum: the text up to its number and the five differences.
std::string_view datum_name(std::string_view line)
{
    line = line.substr(std::min<std::size_t>(5, line.size()));
    std::size_t end = 0;
    while (end < line.size() &&
           !(line[end] == ' ' && end + 1 < line.size() &&
             (line[end + 1] == ' ' || line[end + 1] == '+' || line[end + 1] == '-')))
        ++end;
    std::string_view name = trim(line.substr(0, end));
    if (end < line.size() && line[end + 1] != ' ') { // no gap: the number still stands behind it
        const std::size_t last = name.rfind(' ');
        int number = 0;
        if (last != none && to_number(name.substr(last), number))
            name = trim(name.substr(0, last));
    }
    return name;
}

/// True when the form is one that the reader knows.
bool read_form(std::string_view line, pcx5_form& form)
{
    const std::size_t at = find_nocase(line, "LAT LON");
    const std::string_view word = at == none ? std::string_view() : trim(line.substr(at + 7));
    if (equal_nocase(word, "DEG"))
        form = pcx5_form::deg;
    else if (equal_nocase(word, "DM"))
        form = pcx5_form::dm;
    else if (equal_nocase(word, "DMS"))
        form = pcx5_form::dms;
    else
        return false;
    return true;
}

/// Takes the last two digits off the whole number ahead of the point.
double take_two(double& whole)
{
    const double front = std::floor(whole / 100);
    const double two = whole - front * 100;
    whole = front;
    return two;
}

/// "N4807.40700", "S00.13260" (the degrees are missing), "+48.1234500", "E0113404.404".
bool to_packed(std::string_view word, std::string_view letters, pcx5_form form, double& degrees)
{
    if (word.size() < 2)
        return false;
    const char sign = upper(word.front());
    if (sign != letters[0] && sign != letters[1] && sign != '+' && sign != '-')
        return false;
    word.remove_prefix(1);
    const std::size_t point = std::min(word.find('.'), word.size());
    double whole = 0, fraction = 0;
    if (!std::ranges::all_of(word, [](char c) { return c == '.' || (c >= '0' && c <= '9'); }) ||
        !to_number(word.substr(0, point), whole))
        return false;
    if (point + 1 < word.size() && !to_number(word.substr(point), fraction))
        return false;
    double value = 0;
    if (form == pcx5_form::deg) {
        if (!to_number(word, value))
            return false;
    } else if (form == pcx5_form::dm) {
        const double minutes = take_two(whole) + fraction;
        if (minutes > 60)
            return false;
        value = whole + minutes / 60;
    } else {
        const double seconds = take_two(whole) + fraction, minutes = take_two(whole);
        if (seconds > 60 || minutes > 60)
            return false;
        value = whole + (minutes + seconds / 60) / 60;
    }
    degrees = sign == letters[1] || sign == '-' ? -value : value;
    return true;
}

/// The next word from `at` on, which moves behind it.
std::string_view word_at(std::string_view line, std::size_t& at)
{
    at = std::min(line.find_first_not_of(' ', at), line.size());
    const std::size_t from = at;
    at = std::min(line.find(' ', from), line.size());
    return line.substr(from, at - from);
}

/// Characters from column `from` to ahead of `to`, both moved by `shift`, trimmed.
std::string_view between(std::string_view line, std::size_t from, std::size_t to,
                         std::ptrdiff_t shift)
{
    const auto moved = [&](std::size_t column) {
        const auto place = static_cast<std::ptrdiff_t>(column) + shift;
        return std::min(static_cast<std::size_t>(std::max<std::ptrdiff_t>(place, 0)), line.size());
    };
    if (from == none)
        return {};
    const std::size_t start = moved(from), end = to == none ? line.size() : moved(to);
    return end > start ? trim(line.substr(start, end - start)) : std::string_view();
}

void read_row(import_job& in, const pcx5_state& state, std::string_view line)
{
    const pcx5_columns& c = state.columns;
    double lat = 0, lon = 0;
    pos_rec pos;
    std::size_t at = c.lat;
    if (state.form == pcx5_form::unknown || c.name >= c.lat || line.size() <= c.lat ||
        !to_packed(word_at(line, at), "NS", state.form, lat) ||
        !to_packed(word_at(line, at), "EW", state.form, lon) || !file_position(in, lat, lon, pos)) {
        bad_line(in);
        return;
    }
    // A position that is short moves the rest of the row: the date tells by how much.
    const std::size_t behind_position = at;
    const std::string_view date = word_at(line, at);
    const std::size_t date_at = at - date.size();
    const std::string_view time = word_at(line, at);
    const std::optional<std::int32_t> dat = to_time(date, time);
    std::ptrdiff_t shift = 0;
    if (!dat)
        at = behind_position;
    else if (c.date != none)
        shift = static_cast<std::ptrdiff_t>(date_at) - static_cast<std::ptrdiff_t>(c.date);

    std::int16_t alt = alt_unknown;
    double metres = 0;
    const std::size_t text_from = c.description == none ? c.proximity : c.description;
    const std::string_view height = word_at(line, at);
    const auto height_at = static_cast<std::ptrdiff_t>(at - height.size());
    if ((text_from == none || height_at < static_cast<std::ptrdiff_t>(text_from) + shift) &&
        to_number(height, metres) && metres != unknown_metres)
        alt = to_altitude(metres);

    const std::string_view name = between(line, c.name, c.lat, 0);
    const std::string_view comment = between(line, c.description, c.proximity, shift);
    std::size_t first = 0;
    std::int16_t prox = 0;
    if (to_number(word_at(between(line, c.proximity, none, shift), first), metres))
        prox = to_proximity(metres);
    if (state.in_route)
        add_route_point(in, name, comment, pos, dat.value_or(0), alt, prox);
    else
        add_waypoint(in, name, comment, pos, dat.value_or(0), alt, prox);
}

// Writing
// -------------------------------------------------------------------------------------------------

/// Waypoints of the file: of a route file the points of all routes.
template <class F> void each_record(export_job& out, F look)
{
    const auto look_at = [&](int i) { look(store.wp[static_cast<std::size_t>(i)]); };
    if (!out.route_file)
        std::ranges::for_each(out.waypoints, look_at);
    else
        for (const int r : out.routes)
            std::ranges::for_each(route_points(store.rou[static_cast<std::size_t>(r)]), look_at);
}

std::size_t name_width(export_job& out)
{
    std::size_t width = least_name;
    each_record(out, [&](const wayp_rec& w) { width = std::max(width, name_of(out, w).size()); });
    return width;
}

void put_column_head(export_job& out, std::size_t width)
{
    put_padded(out, "H  IDNT", 4 + width);
    put_line(out, "LATITUDE    LONGITUDE    DATE      TIME     ALT   DESCRIPTION"
                  "                              PROXIMITY ;waypts");
}

int degree_form(const export_job& out)
{
    return out.options.fmt > fmt_seconds ? fmt_degrees : out.options.fmt;
}

void put_head(export_job& out, std::size_t width)
{
    constexpr std::array<std::string_view, 3> forms{"DEG", "DM", "DMS"};
    put_line(out, "H  SOFTWARE NAME & VERSION");
    put(out, "I  PCX5 ");
    put(out, setting_get("pcx5", key_place::main));
    put_line(out, "  Created by VELkoro " VELKORO_VERSION);
    put_line(out, "H  R DATUM                IDX DA            DF            DX            DY"
                  "            DZ");
    put_line(out, "M  G WGS 84               100 +0.000000e+00 +0.000000e+00 +0.000000e+00"
                  " +0.000000e+00 +0.000000e+00");
    put_line(out, "H  COORDINATE SYSTEM");
    put(out, "U  LAT LON ");
    put_line(out, forms[static_cast<std::size_t>(degree_form(out))]);
    put_column_head(out, width);
}

/// "N4807.40700": the digits without their marks, filled up with zeros so that the columns stay.
void put_position(export_job& out, double degrees, char letter, std::size_t width)
{
    const std::size_t end = out.bytes.size() + width;
    const angle_parts a = split_angle(degrees, letter, degree_form(out));
    const bool north = letter == 'N';
    if (out.options.sign && degree_form(out) == fmt_degrees)
        put(out, a.negative ? '-' : '+');
    else
        put(out, a.negative ? (north ? 'S' : 'W') : letter);
    put(out, a.degrees());
    put(out, a.minutes());
    put(out, a.seconds());
    if (out.bytes.size() < end)
        out.bytes.append(end - out.bytes.size(), '0');
}

void put_proximity(export_job& out, std::int16_t prox)
{
    std::array<char, 32> text{};
    const double metres = prox > 0 ? prox * 100.0 : 0; // negative: kept while the alarm is off
    const auto end = std::to_chars(text.data(), text.data() + text.size(), metres,
                                   std::chars_format::scientific, 5);
    put(out, ' ');
    put(out, std::string_view(text.data(), static_cast<std::size_t>(end.ptr - text.data())));
}

void put_row(export_job& out, const wayp_rec& w, std::size_t width)
{
    const geo_degrees g = on_datum(out, w.pos);
    put(out, "W  ");
    put_padded(out, name_of(out, w), width);
    put(out, ' ');
    put_position(out, g.lat, 'N', 11);
    put(out, ' ');
    put_position(out, g.lon, 'E', 12);
    put(out, ' ');
    put_time(out, in_two_digits(w.dat), "dd-mmm-yy hh:nn:ss");
    put(out, ' ');
    const bool known = w.alt != alt_unknown && w.alt > unknown_metres;
    put_int_right(out, known ? w.alt : unknown_metres, 5);
    put(out, ' ');
    put_padded(out, comment_of(out, w), comment_width);
    put_proximity(out, w.prox);
    put_end(out);
}

} // namespace

bool is_pcx5(std::string_view text, std::string_view)
{
    const std::size_t from = text.find_first_not_of(" \r\n");
    if (from == none)
        return false;
    text.remove_prefix(from);
    return begins(text, "H  SOFTWARE NAME") ||
           (begins(text, "H  ") && find_nocase(text.substr(0, 2000), "\nU  LAT LON") != none);
}

void read_pcx5(import_job& in)
{
    pcx5_state state;
    for (std::string_view line; next_line(in, line);) {
        if (trim(line).empty())
            continue;
        const char kind = line.size() < 2 || line[1] == ' ' ? upper(line.front()) : ' ';
        const std::string_view rest = line.substr(std::min<std::size_t>(2, line.size()));
        switch (kind) {
        case 'W': read_row(in, state, line); break;
        case 'R':
            begin_route(in, behind_number(rest));
            state.in_route = true;
            break;
        case 'H': read_head(line, state.columns); break;
        case 'M':
            if (!set_datum(in, datum_name(line)))
                return;
            break;
        case 'U':
            if (!read_form(line, state.form)) {
                refuse(in, text_positions, trim(rest));
                return;
            }
            break;
        case 'I':
        case 'F':
        case 'S':
        case 'T': break;
        default: bad_line(in); break;
        }
    }
}

void write_pcx5(export_job& out)
{
    const std::size_t width = name_width(out);
    put_head(out, width); // also behind other rows, whose columns and form may be others
    if (!out.route_file) {
        each_waypoint(out, [&](const wayp_rec& w) { put_row(out, w, width); });
        return;
    }
    each_route(out, [&](int number, std::string_view name, const route_rec&,
                        const std::vector<int>& points) {
        put(out, "R  ");
        put_int(out, number, 2);
        put(out, ' ');
        put_text(out, name);
        put_end(out);
        put_column_head(out, width);
        for (const int i : points)
            put_row(out, store.wp[static_cast<std::size_t>(i)], width);
    });
}

} // namespace velkoro

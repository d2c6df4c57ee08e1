#include "interchange/waypoint_plus.h"

#include "core/text_tools.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace velkoro {
namespace {

// Reading
// -------------------------------------------------------------------------------------------------

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// Digits as a number with two of them ahead of the point.
double two_and_decimals(std::string_view digits)
{
    double value = 0, unit = 10;
    for (const char c : digits) {
        value += (c - '0') * unit;
        unit /= 10;
    }
    return value;
}

/// A number that holds minutes, or minutes and seconds, in the digits behind the point
/// (48°07'24.42" as 48.072442). The parts are taken from the digits, since the binary number may
/// lie just below a full minute.
bool to_packed(std::string_view field, bool seconds, double& degrees)
{
    field = trim(field);
    const std::size_t point = std::min(field.find('.'), field.size());
    const std::string_view digits = field.substr(std::min(point + 1, field.size()));
    double whole = 0;
    if (!to_number(field.substr(0, point), whole) || !std::ranges::all_of(digits, is_digit))
        return false;
    const std::size_t split = seconds ? std::min<std::size_t>(2, digits.size()) : digits.size();
    const double minute = two_and_decimals(digits.substr(0, split));
    const double second = two_and_decimals(digits.substr(split));
    if (minute >= 60 || second >= 60)
        return false;
    degrees = std::fabs(whole) + minute / 60 + second / 3600;
    if (field.starts_with('-')) // also of "-0"
        degrees = -degrees;
    return true;
}

/// An angle in so many fields of their own: degrees, minutes, seconds, the sign at the degrees.
bool take_parts(std::string_view& rest, int parts, double& degrees)
{
    const std::string_view first = trim(next_field(rest, ','));
    if (!to_number(first, degrees))
        return false;
    const bool negative = first.starts_with('-'); // also of "-0"
    degrees = std::fabs(degrees);
    for (double unit = 60; --parts > 0; unit *= 60) {
        double part = 0;
        if (!to_number(next_field(rest, ','), part) || part < 0 || part >= 60)
            return false;
        degrees += part / unit;
    }
    if (negative)
        degrees = -degrees;
    return true;
}

/// Zone with its band letter, east and north in metres.
bool take_utm(const import_job& in, std::string_view& rest, pos_rec& pos)
{
    std::string zone(trim(next_field(rest, ',')));
    std::erase(zone, ' ');
    if (zone.size() == 2) // one digit and the letter
        zone.insert(0, 1, '0');
    double east = 0, north = 0;
    if (zone.size() != 3 || upper(zone[2]) < 'C' || upper(zone[2]) > 'X' ||
        !to_number(next_field(rest, ','), east) || !to_number(next_field(rest, ','), north))
        return false;
    zone[2] = upper(zone[2]);
    // Grid texts with a point are kilometres: whole metres have none.
    return file_position(in, zone, std::to_string(std::lround(east)),
                         std::to_string(std::lround(north)), fmt_utm, pos);
}

/// Takes the fields of the position off the front of the line.
bool take_position(const import_job& in, std::string_view form, std::string_view& rest,
                   pos_rec& pos)
{
    if (equal_nocase(form, "UTM"))
        return take_utm(in, rest, pos);
    double lat = 0, lon = 0;
    bool good = false;
    if (equal_nocase(form, "D")) {
        good = take_parts(rest, 1, lat) && take_parts(rest, 1, lon);
    } else if (equal_nocase(form, "DMX")) {
        good = take_parts(rest, 2, lat) && take_parts(rest, 2, lon);
    } else if (equal_nocase(form, "DMSX")) {
        good = take_parts(rest, 3, lat) && take_parts(rest, 3, lon);
    } else if (const bool dms = equal_nocase(form, "DMS"); dms || equal_nocase(form, "DM")) {
        good = to_packed(next_field(rest, ','), dms, lat) &&
               to_packed(next_field(rest, ','), dms, lon);
    }
    return good && file_position(in, lat, lon, pos);
}

bool looks_like_time(std::string_view word)
{
    return !word.empty() && is_digit(word.front()) && word.find(':') != std::string_view::npos;
}

/// Takes the time off the front; what is left is the comment, commas included. The comment follows
/// behind a comma or, in some files, behind a blank.
std::string_view take_time(std::string_view& rest)
{
    rest = trim(rest);
    std::string_view word = rest.substr(0, rest.find_first_of(", "));
    if (!word.empty() && !looks_like_time(word))
        return {};
    rest.remove_prefix(word.size());
    rest = trim_left(rest);
    if (rest.starts_with(','))
        rest.remove_prefix(1);
    rest = trim_left(rest);
    return word;
}

void read_point(import_job& in, std::string_view rest, bool of_route)
{
    const std::string_view form = trim(next_field(rest, ','));
    const std::string_view name = trim(next_field(rest, ','));
    pos_rec pos;
    if (!take_position(in, form, rest, pos)) {
        bad_line(in);
        return;
    }
    const std::string_view date = trim(next_field(rest, ','));
    const std::string_view time = take_time(rest);
    const std::int32_t dat = to_time(date, time, date_order::month_day_year).value_or(0);
    if (of_route)
        add_route_point(in, name, rest, pos, dat);
    else
        add_waypoint(in, name, rest, pos, dat);
}

void read_route_head(import_job& in, std::string_view rest)
{
    const std::string_view number = trim(next_field(rest, ','));
    double n = 0;
    begin_route(in, trim(rest).empty() && !to_number(number, n) ? number : trim(rest));
}

// Writing
// -------------------------------------------------------------------------------------------------

void put_point(export_job& out, std::string_view kind, const wayp_rec& w)
{
    const geo_degrees g = on_datum(out, w.pos);
    put(out, kind);
    put_text(out, name_of(out, w), ",", '-');
    put(out, ", ");
    put_degrees(out, g.lat, 'N');
    put(out, ", ");
    put_degrees(out, g.lon, 'E');
    put(out, ',');
    if (has_time(w.dat))
        put_time(out, w.dat, "mm/dd/yyyy,hh:nn:ss");
    else
        put(out, ',');
    put(out, ", ");
    put_text(out, comment_of(out, w));
    put_end(out);
}

} // namespace

bool is_waypoint_plus(std::string_view text, std::string_view)
{
    const std::size_t from = text.find_first_not_of(" \r\n");
    if (from == std::string_view::npos)
        return false;
    text.remove_prefix(from);
    std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    const bool fields = line.find(',') != std::string_view::npos;
    const std::string_view kind = trim(next_field(line, ','));
    for (const char* one : {"Datum", "WP", "TP", "RN", "RP"})
        if (fields && equal_nocase(kind, one))
            return true;
    return false;
}

void read_waypoint_plus(import_job& in)
{
    for (std::string_view line; next_full_line(in, line);) {
        const std::string_view kind = trim(next_field(line, ','));
        if (equal_nocase(kind, "WP")) {
            read_point(in, line, false);
        } else if (equal_nocase(kind, "RP")) {
            read_point(in, line, true);
        } else if (equal_nocase(kind, "RN")) {
            read_route_head(in, line);
        } else if (equal_nocase(kind, "Datum")) {
            if (!set_datum(in, trim(next_field(line, ','))))
                return;
        } else if (!equal_nocase(kind, "TP")) {
            bad_line(in);
        }
    }
}

void write_waypoint_plus(export_job& out)
{
    if (!out.appends)
        put_line(out, "Datum,WGS84,WGS84,0,0,0,0,0");
    each_waypoint(out, [&](const wayp_rec& w) { put_point(out, "WP,D,", w); });
    each_route(out, [&](int number, std::string_view name, const route_rec&,
                        const std::vector<int>& points) {
        put(out, "RN,");
        put_int(out, number);
        put(out, " ,");
        put_text(out, name, ",", '-');
        put_end(out);
        for (const int i : points)
            put_point(out, "RP,D,", store.wp[static_cast<std::size_t>(i)]);
    });
}

} // namespace velkoro

#include "interchange/fugawi.h"

#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <optional>

namespace velkoro {
namespace {

constexpr std::string_view datum_lead = "coordinates are in ", datum_tail = " datum";
constexpr std::size_t name = 0;

using row = std::array<std::string_view, 9>;

/// "# Latitude, Longitude and UTM coordinates are in WGS84 datum". False when the file cannot be
/// read.
bool take_remark(import_job& in, std::string_view line)
{
    const std::size_t at = find_nocase(line, datum_lead);
    line = trim(line);
    if (at == std::string_view::npos || !ends_with_nocase(line, datum_tail))
        return true;
    const std::size_t from = at + datum_lead.size();
    if (from + datum_tail.size() > line.size())
        return true;
    return set_datum(in, line.substr(from, line.size() - datum_tail.size() - from));
}

bool angles(const row& f, std::size_t at, double& lat, double& lon)
{
    return to_angle(f[at], "NS", lat) && to_angle(f[at + 1], "EW", lon);
}

/// Column of the latitude, 0 when there is none: the first two neighbours that can be a position.
/// Where two texts between could be numbers too, the longer line decides.
std::size_t position_at(const row& f, std::size_t n, double& lat, double& lon)
{
    if (n >= 6 && angles(f, 3, lat, lon))
        return 3;
    for (std::size_t at = 1; at <= 3; ++at)
        if (angles(f, at, lat, lon))
            return at;
    return 0;
}

/// "030502" is a date too, year first.
std::optional<std::int32_t> date_of(std::string_view date, std::string_view time)
{
    const auto digits = [](std::string_view s) {
        return std::ranges::all_of(s, [](char c) { return c >= '0' && c <= '9'; });
    };
    std::array<char, 8> spread{};
    std::string_view day = date;
    if (date.size() == 6 && digits(date)) {
        spread = {date[0], date[1], '-', date[2], date[3], '-', date[4], date[5]};
        day = {spread.data(), spread.size()};
    }
    std::array<char, 8> clock{};
    if (time.size() == 6 && digits(time)) {
        clock = {time[0], time[1], ':', time[2], time[3], ':', time[4], time[5]};
        time = {clock.data(), clock.size()};
    }
    const date_order order =
        day.data() == spread.data() ? date_order::year_month_day : date_order::day_month_year;
    if (const auto both = to_time(day, time, order))
        return both;
    return to_time(day, {}, order);
}

} // namespace

void read_fugawi(import_job& in)
{
    row f{};
    for (std::string_view line; next_full_line(in, line);) {
        if (line.starts_with('#')) {
            if (!take_remark(in, line))
                return;
            continue;
        }
        const std::size_t n = split_fields(line, ',', f);
        double lat = 0, lon = 0;
        pos_rec pos;
        const std::size_t at = position_at(f, n, lat, lon);
        if (at == 0 || f[name].empty() || !file_position(in, lat, lon, pos)) {
            bad_line(in);
            continue;
        }
        const std::string_view comment = at > 1 ? f[1] : std::string_view{};
        std::int16_t alt = alt_unknown;
        double metres = 0;
        std::optional<std::int32_t> dat;
        if (at < 3) {
            dat = date_of(f[at + 2], {});
        } else {
            if (to_number(f[at + 2], metres))
                alt = to_altitude(metres);
            dat = date_of(f[at + 3], f[at + 4]);
        }
        add_waypoint(in, f[name], comment, pos, dat.value_or(0), alt);
    }
}

bool is_fugawi(std::string_view text, std::string_view)
{
    const std::size_t at = text.find_first_not_of(" \t\r\n");
    return at != std::string_view::npos && text[at] == '#';
}

void write_fugawi(export_job& out)
{
    if (!out.appends) {
        put_line(out, "# Fugawi Export");
        put(out, "# Latitude, Longitude and UTM ");
        put(out, datum_lead);
        put_text(out, out.datum_name);
        put_line(out, datum_tail);
        put_line(out, "# Name, Latitude, Longitude, Date");
    }
    each_waypoint(out, [&](const wayp_rec& w) {
        const geo_degrees g = on_datum(out, w.pos);
        put_text(out, name_of(out, w), ",#", '-');
        put(out, ',');
        put_decimal(out, g.lat, 2, 5);
        put(out, ',');
        put_decimal(out, g.lon, 3, 5);
        put(out, ',');
        if (has_time(w.dat))
            put_time(out, w.dat, "yyyymmdd");
        put_end(out);
    });
}

} // namespace velkoro

#include "interchange/corpscon.h"

#include "coords/grid_tm.h"
#include "coords/grid_utm.h"
#include "core/text_tools.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numbers>

namespace velkoro {
namespace {

constexpr double deg = 180 / std::numbers::pi;
constexpr std::string_view zone_words = "UTM Zone", datum_word = "; Datum ", head_mark = "##";
constexpr std::string_view geo_head = "Name,Latitude,Longitude";
constexpr std::string_view bands = "CDEFGHJKLMNPQRSTUVWX";

struct utm_zone_rec {
    int number = 0; // 0: none known
    bool south = false;
    bool operator==(const utm_zone_rec&) const = default;
};

// Reading
// -------------------------------------------------------------------------------------------------

/// "32U", "32 U", "32" (north).
bool take_zone(std::string_view text, utm_zone_rec& zone)
{
    text = trim(text);
    std::size_t digits = 0;
    while (digits < text.size() && digits < 2 && text[digits] >= '0' && text[digits] <= '9')
        ++digits;
    int number = 0;
    if (!to_number(text.substr(0, digits), number) || number < 1 || number > 60)
        return false;
    text = trim(text.substr(digits));
    if (text.size() > 1 || (!text.empty() && bands.find(upper(text[0])) == std::string_view::npos))
        return false;
    zone = {number, !text.empty() && upper(text[0]) < 'N'};
    return true;
}

/// A remark or head; false when the file cannot be read.
bool take_remark(import_job& in, std::string_view line, utm_zone_rec& zone)
{
    if (begins(line, datum_word))
        return set_datum(in, line.substr(datum_word.size()));
    const std::size_t at = find_nocase(line, zone_words);
    if (at == std::string_view::npos)
        return true;
    std::string_view rest = trim(line.substr(at + zone_words.size()));
    if (rest.starts_with(':'))
        rest.remove_prefix(1);
    if (!take_zone(rest, zone)) {
        zone = {};
        bad_line(in);
    }
    return true;
}

bool utm_position(const import_job& in, const utm_zone_rec& zone, std::string_view east,
                  std::string_view north, pos_rec& pos)
{
    double e = 0, n = 0;
    if (zone.number == 0 || !to_number(east, e) || !to_number(north, n) ||
        !(std::fabs(e) < 1e7 && std::fabs(n) < 2e7))
        return false;
    if (zone.south)
        n -= utm_false_northing;
    const geo_rec geo = tm_inverse({n / utm_scale, (e - utm_false_easting) / utm_scale},
                                   utm_zone_meridian(zone.number), in.datum);
    return std::fabs(geo.lat * deg) <= 90 && datum_to_wgs(geo, in.datum, pos);
}

/// Two numbers of a grid rather than angles: metres are longer than any number of degrees.
bool is_metres(std::string_view field)
{
    double number = 0;
    return to_number(field, number) && std::fabs(number) > 180;
}

bool take_row(const import_job& in, std::string_view line, const utm_zone_rec& zone,
              std::string_view& name, pos_rec& pos)
{
    std::array<std::string_view, 5> f{};
    const std::size_t n = split_fields(line, ',', f);
    name = f[0];
    if (n < 3 || name.empty())
        return false;
    utm_zone_rec own;
    if (n > 3 && is_metres(f[3]) && take_zone(f[1], own))
        return utm_position(in, own, f[2], f[3], pos);
    if (is_metres(f[1]) || is_metres(f[2]))
        return utm_position(in, zone, f[1], f[2], pos);
    if (file_position(in, f[1], f[2], pos))
        return true;
    // Longitude first, where the letters tell it.
    return f[1].find_first_of("EWew") != std::string_view::npos &&
           file_position(in, f[2], f[1], pos);
}

// Writing
// -------------------------------------------------------------------------------------------------

void put_angle(export_job& out, double degrees, char letter)
{
    const int fmt = out.options.fmt > fmt_seconds ? fmt_degrees : out.options.fmt;
    for (const char c : angle_to_text(degrees, letter, fmt))
        if (c != ' ')
            put(out, c);
}

void put_name(export_job& out, const wayp_rec& w)
{
    put_text(out, name_of(out, w), ",;#", '-');
    put(out, ',');
}

void put_degrees(export_job& out, const wayp_rec& w)
{
    const geo_degrees g = on_datum(out, w.pos);
    put_name(out, w);
    put_angle(out, g.lat, 'N');
    put(out, ',');
    put_angle(out, g.lon, 'E');
    put_end(out);
}

void put_remark(export_job& out)
{
    put(out, datum_word);
    put_text(out, out.datum_name);
    put_end(out);
}

void put_zone(export_job& out, int zone, char band)
{
    put(out, head_mark);
    put(out, zone_words);
    put(out, ' ');
    put_int(out, zone, 2);
    put(out, band);
    put_end(out);
}

void write_utm(export_job& out)
{
    int shown_zone = 0;
    char shown_band = 0;
    each_waypoint(out, [&](const wayp_rec& w) {
        if (std::abs(static_cast<std::int64_t>(w.pos.lat)) > grid_lat_limit) {
            put_degrees(out, w); // the poles have no zone
            return;
        }
        const geo_rec geo = wgs_to_datum(w.pos, out.datum);
        const double lat = geo.lat * deg, meridian = utm_meridian(geo.lon * deg, lat);
        const char named = utm_band(lat); // the last one of the hemisphere where there is none
        const char band = named != '?' ? named : lat < 0 ? 'C' : 'X';
        const plane_rec p = tm_forward(geo, meridian, out.datum);
        const double east = p.east * utm_scale + utm_false_easting;
        const double north = p.north * utm_scale + (band < 'N' ? utm_false_northing : 0);
        if (utm_zone_of(meridian) != shown_zone || band != shown_band) {
            shown_zone = utm_zone_of(meridian);
            shown_band = band;
            put_zone(out, shown_zone, band);
        }
        put_name(out, w);
        put_decimal(out, east, 1, 2);
        put(out, ',');
        put_decimal(out, north, 1, 2);
        put_end(out);
    });
}

void write_geo(export_job& out)
{
    put(out, head_mark);
    put_line(out, geo_head);
    each_waypoint(out, [&](const wayp_rec& w) { put_degrees(out, w); });
}

} // namespace

void read_corpscon(import_job& in)
{
    utm_zone_rec zone;
    for (std::string_view line; next_full_line(in, line);) {
        if (line.starts_with(';') || line.starts_with(head_mark)) {
            if (!take_remark(in, line, zone))
                return;
            continue;
        }
        std::string_view name;
        pos_rec pos;
        if (begins(line, zone_words) && line.find(',') == std::string_view::npos)
            take_remark(in, line, zone);
        else if (take_row(in, line, zone, name, pos))
            add_waypoint(in, name, {}, pos);
        else
            bad_line(in);
    }
}

void write_corpscon(export_job& out)
{
    put_remark(out);
    if (out.extension == ".utm")
        write_utm(out);
    else
        write_geo(out);
}

} // namespace velkoro

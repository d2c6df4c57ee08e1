#include "coords/datum.h"

#include "coords/distance.h"
#include "coords/fast_trig.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/num_text.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <cmath>

namespace velkoro {
namespace {

constexpr const char* file_name = "DATUM.INI";
constexpr double wgs_f = 0.003352810665;
constexpr double df_limit = 0.0002; // no ellipsoid in use differs more; above it df is times 10000
constexpr std::size_t fixed_formats = 11;
const datum_rec wgs_84 = datum_make("WGS 84", 0, 0, 0, 0, 0); // where there is no table

double number(std::string_view field)
{
    return val(comma_to_dot(field));
}

void parse_grid_datums(std::string_view line, datum_state& table)
{
    const bool short_line = std::ranges::count(line, ',') < 10; // written before MGRS was there
    while (table.grid_datum.size() < fixed_formats) {
        if (short_line && table.grid_datum.size() == 4)
            table.grid_datum.push_back(table.grid_datum.back());
        else
            table.grid_datum.emplace_back(trim(next_field(line, ',')));
    }
}

void parse_grid(std::string_view line, datum_state& table)
{
    line.remove_prefix(1);
    table.grid_names.emplace_back(trim(next_field(line, ',')));
    table.grid_datum.emplace_back(trim(next_field(line, ',')));
    grid_rec g;
    g.central_meridian = static_cast<float>(number(next_field(line, ',')));
    g.origin_latitude = static_cast<float>(number(next_field(line, ',')));
    g.scale = static_cast<float>(number(next_field(line, ',')));
    g.false_easting = to_i32(number(next_field(line, ',')));
    g.false_northing = to_i32(number(next_field(line, ',')));
    table.grids.push_back(g);
}

void parse_datum(std::string_view line, datum_state& table)
{
    const std::string_view name = trim(next_field(line, ','));
    const double da = number(next_field(line, ','));
    const std::string_view df_field = trim(next_field(line, ','));
    double df = number(df_field);
    // One table was written with a decimal comma, which cut this field in two.
    if (name == "NAD83" && df_field == "-0")
        df = val("-0." + std::string(trim(next_field(line, ','))));
    const std::int16_t dx = to_i16(number(next_field(line, ',')));
    const std::int16_t dy = to_i16(number(next_field(line, ',')));
    const std::int16_t dz = to_i16(number(next_field(line, ',')));
    if (da == 0 && df == 0 && dx == 0 && dy == 0 && dz == 0)
        table.wgs_datum = to_i16(static_cast<std::int64_t>(table.rows.size()));
    table.rows.push_back(datum_make(name, da, df, dx, dy, dz));
}

struct sines {
    double sin_lat, cos_lat, sin_lon, cos_lon;
};
sines sines_of(double lat, double lon)
{
    // What people type may lie anywhere.
    if (!(std::fabs(lat) <= fast::half_pi && std::fabs(lon) <= 2 * fast::half_pi))
        return {std::sin(lat), std::cos(lat), std::sin(lon), std::cos(lon)};
    const auto [sin_lat, cos_lat] = fast::sin_cos_of(lat);
    const auto [sin_lon, cos_lon] = fast::sin_cos_wide(lon);
    return {sin_lat, cos_lat, sin_lon, cos_lon};
}

/// atan2_own of two pairs.
fast::two angles_of(fast::two y, fast::two x)
{
    using fast::two;
    const two angle = fast::atan_ratio(fast::size_of(y), fast::size_of(x));
    constexpr two turn = {2 * fast::half_pi, 2 * fast::half_pi};
    const two whole = fast::with_sign(x < 0.0 ? turn - angle : angle, y);
    return fast::only(y != 0.0, whole);
}

/// Latitude and longitude of a point in earth-centred coordinates by Bowring's step. Sine and
/// cosine of its helping angle come from the legs, without the angle.
geo_rec bowring(double x, double y, double z, double a, double b, double e2, double ep2)
{
    const double p = std::sqrt(x * x + y * y);
    const double s = z * a, c = p * b;
    const double leg = std::sqrt(s * s + c * c);
    const double sine = leg > 0 ? s / leg : 0, cosine = leg > 0 ? c / leg : 1;
    const fast::two angles = angles_of(fast::two{z + ep2 * b * sine * sine * sine, y},
                                       fast::two{p - e2 * a * cosine * cosine * cosine, x});
    return {angles[0], angles[1]};
}

} // namespace

datum_rec datum_make(std::string_view name, double da, double df, std::int16_t dx, std::int16_t dy,
                     std::int16_t dz)
{
    if (std::fabs(df) > df_limit)
        df /= 10000;
    datum_rec d{.name = std::string(name), .dx = dx, .dy = dy, .dz = dz};
    d.a = static_cast<float>(wgs_a - da);
    d.f = static_cast<float>(wgs_f - df);
    const double a = d.a, f = d.f;
    d.e2 = static_cast<float>(2 * f - f * f);
    d.b = static_cast<float>(a * (1 - f));
    const double b = d.b;
    d.ep2 = static_cast<float>(a / b * (a / b) - 1);
    d.n = static_cast<float>((a - b) / (a + b));
    return d;
}

datum_state datum_parse(std::string_view text)
{
    datum_state table;
    const std::vector<std::string_view> lines = split_lines(text);
    if (!lines.empty())
        parse_grid_datums(lines.front(), table);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const std::string_view line = lines[i];
        if (trim(line).empty())
            continue; // it would count as WGS 84
        if (line.front() == '#')
            parse_grid(line, table);
        else
            parse_datum(line, table);
    }
    return table;
}

void datum_read()
try {
    datums = datum_parse(read_file(program_path(file_name)).value_or(""));
    Form1.Datum.items.clear();
    for (const datum_rec& d : datums.rows)
        Form1.Datum.items.push_back(d.name);
    Form1.posform.items.resize(std::min(Form1.posform.items.size(), fixed_formats));
    for (const std::string& name : datums.grid_names)
        Form1.posform.items.push_back(name);
    if (datums.wgs_datum < 0)
        say(1020, buttons::ok, icon::critical);
    Form1.Datum.selected = static_cast<int>(datums.rows.size()) - 1;
    Form1.posform.selected = 0;
} catch (...) {
    trap("datum_read");
}

const datum_rec& datum_at(int index)
{
    const int i = index == -1 ? Form1.Datum.selected : index;
    if (i < 0 || i >= static_cast<int>(datums.rows.size()))
        return wgs_84;
    return datums.rows[static_cast<std::size_t>(i)];
}

int datum_find(std::string_view name)
{
    const auto hit = std::ranges::find_if(
        datums.rows, [&](const datum_rec& d) { return trim(d.name) == trim(name); });
    return hit == datums.rows.end() ? -1 : static_cast<int>(hit - datums.rows.begin());
}

geo_rec wgs_to_datum(const pos_rec& pos, const datum_rec& datum)
{
    const sines t = sines_of(pos.lat * semi_to_rad, pos.lon * semi_to_rad);
    const double radius = wgs_a / std::sqrt(1 - wgs_e2 * t.sin_lat * t.sin_lat);
    const double x = radius * t.cos_lat * t.cos_lon - datum.dx;
    const double y = radius * t.cos_lat * t.sin_lon - datum.dy;
    const double z = wgs_1_e2 * radius * t.sin_lat - datum.dz;
    return bowring(x, y, z, datum.a, datum.b, datum.e2, datum.ep2);
}

bool datum_to_wgs(const geo_rec& geo, const datum_rec& datum, pos_rec& pos)
{
    const double e2 = datum.e2;
    const sines t = sines_of(geo.lat, geo.lon);
    const double radius = datum.a / std::sqrt(1 - e2 * t.sin_lat * t.sin_lat);
    const double x = radius * t.cos_lat * t.cos_lon + datum.dx;
    const double y = radius * t.cos_lat * t.sin_lon + datum.dy;
    const double z = (1 - e2) * radius * t.sin_lat + datum.dz;
    const geo_rec wgs = bowring(x, y, z, wgs_a, wgs_b, wgs_e2, wgs_ep2);
    if (!std::isfinite(wgs.lat) || !std::isfinite(wgs.lon))
        return false;
    pos = {rad_to_semi(wgs.lat), rad_to_semi(wgs.lon)};
    return true;
}

} // namespace velkoro

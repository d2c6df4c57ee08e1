#include "coords/grid_lambert.h"

#include "core/log.h"

#include <array>
#include <cmath>
#include <numbers>

namespace velkoro {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double rad = pi / 180;
constexpr double lon_paris = 2.3372222 * rad;

struct zone_row {
    double lat1, lat2, lat0, false_easting, false_northing;
};
// The false easting of zone 4 is the whole number.
constexpr std::array<zone_row, 4> zones = {{
    {48.59852285, 50.39591163, 49.5, 600000, 1200000},
    {45.898918964419, 47.696014502038, 46.8, 600000, 2200000},
    {43.19929127, 44.99609381, 44.1, 600000, 3200000},
    {41.56038784, 42.76766347, 42.165, 234, 4185861},
}};

lambert_rec zone_cone; // the one used last

double m_of(double lat, double e2)
{
    const double s = std::sin(lat);
    return std::cos(lat) / std::sqrt(1 - e2 * s * s);
}

double t_of(double lat, double e)
{
    const double v = e * std::sin(lat);
    return std::tan(pi / 4 - lat / 2) / std::pow((1 - v) / (1 + v), e / 2);
}

const zone_row& row_of(int zone)
{
    return zones[zone >= 1 && zone <= 4 ? static_cast<std::size_t>(zone - 1) : 1];
}

const lambert_rec& cone_of(const zone_row& z, const datum_rec& d)
{
    if (zone_cone.lat1 != z.lat1 || zone_cone.lat2 != z.lat2 || zone_cone.lat0 != z.lat0 ||
        zone_cone.a != d.a || zone_cone.e2 != d.e2)
        zone_cone = lambert_set(z.lat1, z.lat2, z.lat0, d);
    return zone_cone;
}

} // namespace

lambert_rec lambert_set(double lat1, double lat2, double lat0, const datum_rec& datum)
{
    lambert_rec c{.lat1 = lat1, .lat2 = lat2, .lat0 = lat0, .a = datum.a, .e2 = datum.e2};
    c.e = std::sqrt(static_cast<double>(datum.e2));
    const double m1 = m_of(lat1 * rad, datum.e2), m2 = m_of(lat2 * rad, datum.e2);
    const double t1 = t_of(lat1 * rad, c.e), t2 = t_of(lat2 * rad, c.e);
    c.n = std::log(m1 / m2) / std::log(t1 / t2);
    c.a_f = datum.a * (m1 / (c.n * std::pow(t1, c.n)));
    c.rho0 = c.a_f * std::pow(t_of(lat0 * rad, c.e), c.n);
    if (!std::isfinite(c.rho0))
        log_line("lambert error");
    return c;
}

plane_rec lambert_forward(const geo_rec& geo, double lon0, const lambert_rec& cone)
{
    const double rho = cone.a_f * std::pow(t_of(geo.lat, cone.e), cone.n);
    const double theta = cone.n * (geo.lon - lon0);
    return {cone.rho0 - rho * std::cos(theta), rho * std::sin(theta)};
}

geo_rec lambert_inverse(const plane_rec& plane, double lon0, const lambert_rec& cone)
{
    const double down = cone.rho0 - plane.north;
    const double theta = std::atan(plane.east / down);
    const double rho = std::sqrt(plane.east * plane.east + down * down);
    const double t = std::pow(rho / cone.a_f, 1 / cone.n);
    double lat = pi / 2 - 2 * std::atan(t);
    for (int round = 0; round < 20; ++round) {
        const double v = cone.e * std::sin(lat);
        const double next = pi / 2 - 2 * std::atan(t * std::pow((1 - v) / (1 + v), cone.e / 2));
        const bool done = !(std::fabs(next - lat) >= 3e-07);
        lat = next;
        if (done)
            break;
    }
    return {lat, theta / cone.n + lon0};
}

int lambert_zone(const geo_rec& geo)
{
    if (geo.lat < 0.738274 || (geo.lat < 0.754 && geo.lon > 0.1396)) // the south, Corsica
        return 4;
    return geo.lat < 0.793252 ? 3 : geo.lat < 0.840376 ? 2 : 1;
}

plane_rec lambert_zone_forward(const geo_rec& geo, int zone, const datum_rec& datum)
{
    const zone_row& z = row_of(zone);
    const plane_rec p = lambert_forward(geo, lon_paris, cone_of(z, datum));
    return {p.north + z.false_northing, p.east + z.false_easting};
}

geo_rec lambert_zone_inverse(const plane_rec& plane, int zone, const datum_rec& datum)
{
    const zone_row& z = row_of(zone);
    return lambert_inverse({plane.north - z.false_northing, plane.east - z.false_easting},
                           lon_paris, cone_of(z, datum));
}

} // namespace velkoro

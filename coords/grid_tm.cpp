#include "coords/grid_tm.h"

#include "coords/fast_trig.h"
#include "core/text_tools.h"

#include <cmath>
#include <numbers>

namespace velkoro {
namespace {

/// Sine and cosine of a latitude.
fast::sin_cos_one sines_of(double lat)
{
    if (!(std::fabs(lat) <= fast::half_pi))
        return {std::sin(lat), std::cos(lat)};
    return fast::sin_cos_of(lat);
}

constexpr double rad = std::numbers::pi / 180;
constexpr std::string_view squares_500 = "STNOHJ";
constexpr std::string_view squares_100 = "VWXYZQRSTULMNOPFGHJKABCDE";

/// Radius of the sphere that has the length of the meridian.
double meridian_radius(const datum_rec& d)
{
    const double n = d.n, n2 = n * n;
    return (static_cast<double>(d.a) + d.b) / 2 * (1 + n2 / 4 + n2 * n2 / 64);
}

double c2_of(double n)
{
    const double n3 = n * n * n;
    return -3.0 / 2 * n + 9.0 / 16 * n3 - 3.0 / 32 * n3 * n * n;
}

double arc_of(double lat, double sin2, double cos2, const datum_rec& d)
{
    const double n = d.n, n2 = n * n;
    const double c4 = 15.0 / 16 * n2 - 15.0 / 32 * n2 * n2;
    return meridian_radius(d) * (lat + c2_of(n) * sin2 + c4 * 2 * sin2 * cos2);
}

} // namespace

double tm_arc(double lat, const datum_rec& datum)
{
    return arc_of(lat, std::sin(2 * lat), std::cos(2 * lat), datum);
}

double tm_arc_inverse(double lat, const datum_rec& datum)
{
    const double n = datum.n;
    const double c4 = 15.0 / 16 * n * n;
    return meridian_radius(datum) * (lat + c2_of(n) * std::sin(2 * lat) + c4 * std::sin(4 * lat));
}

plane_rec tm_forward(const geo_rec& geo, double meridian, const datum_rec& datum)
{
    const auto [sine, cosine] = sines_of(geo.lat);
    const double a = datum.a, b = datum.b;
    const double t = sine / cosine, t2 = t * t;
    const double h = datum.ep2 * cosine * cosine;
    const double r = a * a / (b * std::sqrt(1 + h));
    const double c = (geo.lon - meridian * rad) * cosine, c2 = c * c;
    const double arc = arc_of(geo.lat, 2 * sine * cosine, cosine * cosine - sine * sine, datum);
    return {arc + t / 2 * r * c2 + t / 24 * r * c2 * c2 * (5 - t2 + 9 * h + 4 * h * h),
            r * c + r / 6 * c2 * c * (1 - t2 + h)};
}

geo_rec tm_inverse(const plane_rec& plane, double meridian, const datum_rec& datum)
{
    const double n = datum.n, n2 = n * n, n3 = n2 * n;
    const double d2 = 3.0 / 2 * n - 27.0 / 32 * n3 + 269.0 / 512 * n3 * n2;
    const double d4 = 21.0 / 16 * n2 - 55.0 / 32 * n2 * n2;
    const double mu = plane.north / meridian_radius(datum);
    const auto [sin1, cos1] = sines_of(mu);
    const double sin2 = 2 * sin1 * cos1, cos2 = 1 - 2 * sin1 * sin1;
    const double foot = mu + d2 * sin2 + d4 * 2 * sin2 * cos2;
    const double a = datum.a, b = datum.b, y = plane.east;
    const auto [sine, cosine] = sines_of(foot);
    const double t = sine / cosine, t2 = t * t;
    const double h = datum.ep2 * cosine * cosine;
    const double r = a * a / (b * std::sqrt(1 + h));
    const double q = y / r, q2 = q * q;
    return {foot + t / 2 * (-1 - h) * q2 +
                t / 24 * (5 + 3 * t2 + 6 * h - 6 * t2 * h - 3 * h * h - 9 * t2 * h * h) * q2 * q2,
            meridian * rad + q / cosine + (-1 - 2 * t2 - h) / 6 * q2 * q / cosine};
}

tm_grid user_grid(const grid_rec& grid)
{
    return {grid.central_meridian, grid.origin_latitude, grid.scale,
            static_cast<double>(grid.false_easting), static_cast<double>(grid.false_northing)};
}

plane_rec grid_forward(const geo_rec& geo, const tm_grid& grid, const datum_rec& datum)
{
    const plane_rec p = tm_forward(geo, grid.meridian, datum);
    return {(p.north - tm_arc(grid.latitude * rad, datum)) * grid.scale + grid.false_northing,
            p.east * grid.scale + grid.false_easting};
}

geo_rec grid_inverse(const plane_rec& plane, const tm_grid& grid, const datum_rec& datum)
{
    const double arc = tm_arc_inverse(grid.latitude * rad, datum);
    return tm_inverse({(plane.north - grid.false_northing) / grid.scale + arc,
                       (plane.east - grid.false_easting) / grid.scale},
                      grid.meridian, datum);
}

namespace {

/// The letter of a 100 km square and what is left within it; half a millimetre and a bit decides
/// for the higher square, so that a text never shows 100000.
struct hundreds {
    double east, north; // whole hundreds of kilometres
};

hundreds hundreds_of(const plane_rec& plane)
{
    constexpr double bit_m = 0.5;
    return {std::floor((plane.east + bit_m) / 100000), std::floor((plane.north + bit_m) / 100000)};
}

std::size_t letter_in(std::string_view letters, char c)
{
    return letters.find(upper(c));
}

} // namespace

square_rec british_square(const plane_rec& plane)
{
    const hundreds h = hundreds_of(plane);
    const double e5 = std::floor(h.east / 5), n5 = std::floor(h.north / 5);
    if (!(e5 >= 0 && e5 <= 1 && n5 >= 0 && n5 <= 2))
        return {};
    const auto e = static_cast<std::size_t>(h.east), n = static_cast<std::size_t>(h.north);
    square_rec s;
    s.letters[0] = squares_500[n / 5 * 2 + e / 5];
    s.letters[1] = squares_100[n % 5 * 5 + e % 5];
    s.east = plane.east - h.east * 100000;
    s.north = plane.north - h.north * 100000;
    return s;
}

square_rec irish_square(const plane_rec& plane)
{
    const hundreds h = hundreds_of(plane);
    if (!(h.east >= 0 && h.east <= 4 && h.north >= 0 && h.north <= 4))
        return {};
    square_rec s;
    s.letters[0] =
        squares_100[static_cast<std::size_t>(h.north) * 5 + static_cast<std::size_t>(h.east)];
    s.east = plane.east - h.east * 100000;
    s.north = plane.north - h.north * 100000;
    return s;
}

bool british_origin(std::string_view letters, plane_rec& origin)
{
    origin = {};
    if (letters.empty())
        return false;
    const std::size_t k = letter_in(squares_500, letters[0]);
    if (k == std::string_view::npos)
        return false;
    origin = {static_cast<double>(k / 2 * 500000), static_cast<double>(k % 2 * 500000)};
    plane_rec inner;
    if (letters.size() < 2 || !irish_origin(letters.substr(1), inner))
        return false;
    origin.east += inner.east;
    origin.north += inner.north;
    return true;
}

bool irish_origin(std::string_view letters, plane_rec& origin)
{
    origin = {};
    const std::size_t j =
        letters.empty() ? std::string_view::npos : letter_in(squares_100, letters[0]);
    if (j == std::string_view::npos)
        return false;
    origin = {static_cast<double>(j / 5 * 100000), static_cast<double>(j % 5 * 100000)};
    return true;
}

} // namespace velkoro

#include "coords/grid_swiss.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velkoro {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double lat_bern = static_cast<double>(0.8194740414619446F);
constexpr double lon_bern = 0.1298452241;

/// What depends on the ellipsoid alone.
struct swiss_setup {
    float a = 0, b = 0, e2 = 0, ep2 = 0; // of the row it was made for
    double e = 0, alpha = 0, sin_b0 = 0, cos_b0 = 0, k = 0, radius = 0;
};
swiss_setup swiss;

double asin_cut(double x)
{
    return std::asin(std::clamp(x, -1.0, 1.0));
}

double isometric(double lat, const swiss_setup& s)
{
    const double v = s.e * std::sin(lat);
    return std::pow(std::tan(pi / 4 + lat / 2), s.alpha) *
           std::pow((1 - v) / (1 + v), s.alpha * s.e / 2);
}

const swiss_setup& setup_for(const datum_rec& d)
{
    if (swiss.a == d.a && swiss.b == d.b && swiss.e2 == d.e2 && swiss.ep2 == d.ep2)
        return swiss;
    swiss = {.a = d.a, .b = d.b, .e2 = d.e2, .ep2 = d.ep2};
    const double a = d.a, c = std::cos(lat_bern), c2 = c * c;
    swiss.e = std::sqrt(static_cast<double>(d.e2));
    swiss.alpha = std::sqrt(1 + d.ep2 * c2 * c2);
    const double b0 = asin_cut(std::sin(lat_bern) / swiss.alpha);
    swiss.sin_b0 = std::sin(b0);
    swiss.cos_b0 = std::cos(b0);
    swiss.k = std::tan(pi / 4 + b0 / 2) / isometric(lat_bern, swiss);
    swiss.radius = a * a / d.b / (1 + d.ep2 * c2);
    return swiss;
}

} // namespace

plane_rec swiss_forward(const geo_rec& geo, const datum_rec& datum)
{
    const swiss_setup& s = setup_for(datum);
    const double b = 2 * std::atan(isometric(geo.lat, s) * s.k) - pi / 2;
    const double l = s.alpha * (geo.lon - lon_bern);
    const double b2 = asin_cut(s.cos_b0 * std::sin(b) - s.sin_b0 * std::cos(b) * std::cos(l));
    const double l2 = std::atan(std::sin(l) / (s.sin_b0 * std::tan(b) + s.cos_b0 * std::cos(l)));
    return {s.radius * std::log(std::tan(pi / 4 + b2 / 2)), s.radius * l2};
}

geo_rec swiss_inverse(const plane_rec& plane, const datum_rec& datum)
{
    const swiss_setup& s = setup_for(datum);
    const double b2 = 2 * std::atan(std::exp(plane.north / s.radius)) - pi / 2;
    const double l2 = plane.east / s.radius;
    const double b = asin_cut(s.cos_b0 * std::sin(b2) + s.sin_b0 * std::cos(b2) * std::cos(l2));
    const double l = std::atan(std::sin(l2) / (s.cos_b0 * std::cos(l2) - s.sin_b0 * std::tan(b2)));
    double lat = b;
    for (int round = 0; round < 10; ++round) {
        const double found = 2 * (std::atan(isometric(lat, s) * s.k) - pi / 4);
        if (std::fabs(found - b) < 3e-07)
            break;
        lat = b + lat - found;
    }
    return {lat, l / s.alpha + lon_bern};
}

} // namespace velkoro

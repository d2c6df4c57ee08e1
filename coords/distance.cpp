#include "coords/distance.h"

#include "coords/fast_trig.h"
#include "core/num_text.h"
#include "core/settings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace velkoro {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double deg = 180.0 / pi;

int sgn(double v)
{
    return (v > 0) - (v < 0);
}

/// Longitude difference in -180 up to 180 degrees: whole turns fall off the 32 bits.
std::int32_t semi_difference(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

double asin_own(double x)
{
    if (std::fabs(x) >= 1.0)
        return sgn(x) * fast::half_pi;
    return std::atan(x / std::sqrt(1.0 - x * x));
}

float bearing_of(double radians)
{
    const double b = radians * deg;
    const auto f = static_cast<float>(b < 0 ? b + 360.0 : b);
    return f >= 360.0F ? 0.0F : f; // a hair west of north rounds up to the full circle
}

/// Radians of a bearing, its whole turns taken off.
double bearing_rad(double bearing)
{
    double b = std::fmod(bearing, 360.0);
    if (b < 0)
        b += 360.0;
    return b / deg;
}

/// Folds a latitude that ran over a pole back and turns the longitude; both in radians.
pos_rec folded(double lat, double lon)
{
    while (std::fabs(lat) > pi / 2) {
        lat = sgn(lat) * pi - lat;
        lon += pi;
    }
    return {rad_to_semi(lat), rad_to_semi(std::remainder(lon, 2 * pi))};
}

} // namespace

double atan2_own(double y, double x)
{
    if (x == 0)
        return sgn(y) * fast::half_pi;
    const double angle = std::atan(y / x);
    return x < 0 ? angle + sgn(y) * pi : angle;
}

std::int32_t rad_to_semi(double rad)
{
    const double semi = round_even(rad / semi_to_rad);
    if (!(std::fabs(semi) < 9e18))
        return to_i32(semi); // throws
    return static_cast<std::int32_t>(
        static_cast<std::uint32_t>(static_cast<std::uint64_t>(static_cast<std::int64_t>(semi))));
}

dist_bear dist_flat(const pos_rec& target, const pos_rec& origin)
{
    using fast::two;
    const double radius = earth_radius / settings.dist_unit;
    // Half angles all the way: halving is exact.
    constexpr double half_semi = semi_to_rad / 2;
    const double lat_t = target.lat * half_semi, lat_o = origin.lat * half_semi;
    const double middle = lat_t + lat_o;
    const auto c = static_cast<float>(fast::cosine_of(two{middle, middle})[0]);
    const double d_lon = semi_difference(target.lon, origin.lon) * half_semi * c;
    const fast::sin_cos d = fast::sin_cos_of_half(fast::as_floats(two{lat_t - lat_o, d_lon}));
    const double sin_lat = d.sin[0], sin_lon = d.sin[1], cos_lon = d.cos[1];

    // Two arc tangents: of the arc's cosine over its sine (an arc cosine as atn gives it), and of
    // the bearing, tan d_lon over sin d_lat, its quotients taken together.
    const double x = d.cos[0] * cos_lon;
    const two angles = fast::with_sign(
        fast::atan_ratio(fast::size_of(two{x, sin_lon}),
                         fast::size_of(two{std::sqrt(1.0 - x * x), cos_lon * sin_lat})),
        two{x, sin_lat});
    const auto arc = static_cast<float>(fast::half_pi - angles[0]);
    const auto distance = static_cast<float>(arc * radius);
    if (sin_lon == 0)
        return {distance, 0}; // as atan2_own has it, due south too
    const two y = fast::with_sign(two{1, 1}, two{cos_lon * sin_lon, sin_lat});
    const two turn = fast::only(y < 0.0, two{360, pi});
    const auto bearing = static_cast<float>(y[0] * (turn[1] + angles[1]) * deg + turn[0]);
    return {distance, bearing >= 360.0F ? 0.0F : bearing};
}

dist_bear dist_chord(const pos_rec& target, const pos_rec& origin)
{
    const double lat_t = target.lat * semi_to_rad, lat_o = origin.lat * semi_to_rad;
    const double d_lon = semi_difference(target.lon, origin.lon) * semi_to_rad;
    double azimuth = 0;
    if (d_lon == 0) {
        azimuth = lat_t >= lat_o ? 0 : pi;
    } else {
        // Cotangent of the azimuth; on the equator the second term is gone.
        const double v =
            std::fabs(lat_o) <= 1e-6
                ? std::tan(lat_t) / std::sin(d_lon)
                : (std::cos(lat_o) * std::tan(lat_t) - std::sin(lat_o) * std::cos(d_lon)) /
                      std::sin(d_lon);
        azimuth = pi / 2 - std::atan(v);
        if (d_lon < 0)
            azimuth -= pi;
    }
    const double lon_t = target.lon * semi_to_rad, lon_o = origin.lon * semi_to_rad;
    const double dx = std::cos(lat_t) * std::cos(lon_t) - std::cos(lat_o) * std::cos(lon_o);
    const double dy = std::cos(lat_t) * std::sin(lon_t) - std::cos(lat_o) * std::sin(lon_o);
    const double dz = std::sin(lat_t) - std::sin(lat_o);
    const double chord = std::sqrt(dx * dx + dy * dy + dz * dz);
    return {static_cast<float>(2 * asin_own(std::min(1.0, chord / 2)) * earth_radius /
                               settings.dist_unit),
            bearing_of(azimuth)};
}

pos_rec dist_to_wgs(double distance, double bearing, const pos_rec& from)
{
    if (distance == 0 || !std::isfinite(distance) || !std::isfinite(bearing))
        return from;
    if (distance <= 1)
        return dist_to_wgs_dir(distance, bearing, from);
    const double b = bearing_rad(bearing);
    const double arc = std::fmod(distance / earth_radius * settings.dist_unit, 2 * pi);
    const double lat = from.lat * semi_to_rad, lon = from.lon * semi_to_rad;
    if (b == 0)
        return folded(lat + arc, lon);
    if (b == bearing_rad(180))
        return folded(lat - arc, lon);
    // The target as a vector in the frame of the start's meridian: well-conditioned everywhere,
    // where the arc sine of the sine rule loses centimetres near the equator and needs to guess
    // between two colatitudes.
    const double x = std::cos(lat) * std::cos(arc) - std::sin(lat) * std::sin(arc) * std::cos(b);
    const double y = std::sin(arc) * std::sin(b);
    const double z = std::sin(lat) * std::cos(arc) + std::cos(lat) * std::sin(arc) * std::cos(b);
    return folded(std::atan2(z, std::hypot(x, y)), lon + std::atan2(y, x));
}

pos_rec dist_to_wgs_dir(double distance, double bearing, const pos_rec& from)
{
    if (!std::isfinite(distance) || !std::isfinite(bearing))
        return from;
    const double b = bearing / deg;
    const double arc = distance / earth_radius * settings.dist_unit;
    const double lat = from.lat * semi_to_rad, lon = from.lon * semi_to_rad;
    const double d_lat = std::atan(std::tan(arc) * std::cos(b));
    const double d_lon = asin_own(std::sin(arc) * std::sin(b)) / std::cos(lat + d_lat / 2);
    return folded(lat + d_lat, lon + d_lon);
}

double dist_cross(const pos_rec& p, const pos_rec& a, const pos_rec& b)
{
    const dist_bear to_p = dist_flat(a, p), to_b = dist_flat(a, b);
    const double turn = (static_cast<double>(to_p.bearing) - to_b.bearing) / deg;
    const double d = to_p.distance;
    const double along = d * std::cos(turn);
    if (along < 0)
        return d;
    if (along <= to_b.distance)
        return std::fabs(d * std::sin(turn));
    return dist_flat(b, p).distance;
}

} // namespace velkoro

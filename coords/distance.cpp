#include "coords/distance.h"

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
constexpr double half_pi_high = 1.5707963267948966, half_pi_low = 6.123233995736766e-17;
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

struct sin_cos {
    double sin, cos;
};

/// Sine and cosine together for up to two turns, by their Taylor series on -45 to 45 degrees. The
/// library's two calls cost twice as much, and dist_flat runs over whole tracks.
sin_cos sin_cos_of(double x)
{
    constexpr double half_pi_33 = 1.57079632673412561417; // the first 33 bits: k times it is exact
    constexpr double half_pi_rest = 6.07710050650619224932e-11;
    const double k = std::nearbyint(x * (1.0 / half_pi_high));
    const double r = (x - k * half_pi_33) - k * half_pi_rest;
    const double z = r * r;
    const double s =
        r +
        r * z *
            (-1.0 / 6 +
             z * (1.0 / 120 +
                  z * (-1.0 / 5040 + z * (1.0 / 362880 + z * (-1.0 / 39916800 +
                                                              z * (1.0 / 6227020800 +
                                                                   z * (-1.0 / 1307674368000)))))));
    // 1 - z/2 exactly, then the rest: near points live from the last bit of the cosine.
    const double half = 0.5 * z, high = 1.0 - half;
    const double c =
        high +
        (((1.0 - high) - half) +
         z * z *
             (1.0 / 24 +
              z * (-1.0 / 720 +
                   z * (1.0 / 40320 +
                        z * (-1.0 / 3628800 + z * (1.0 / 479001600 + z * (-1.0 / 87178291200)))))));
    const auto quarter = static_cast<unsigned>(static_cast<int>(k)) & 3U;
    const double s2 = quarter & 1U ? c : s, c2 = quarter & 1U ? s : c;
    return {quarter & 2U ? -s2 : s2, quarter == 1U || quarter == 2U ? -c2 : c2};
}

/// atan(n / d) for n and d of at least 0, not both 0: brought to within 1/8 of a multiple of 1/4 of
/// slope, there by its series.
double atan_ratio(double n, double d)
{
    constexpr std::array<double, 5> base = {0.0, 0.24497866312686414, 0.4636476090008061,
                                            0.6435011087932844, 0.7853981633974483};
    const bool steep = n > d;
    const double a = steep ? d : n, b = steep ? n : d;
    const int i = (8 * a > b) + (8 * a > 3 * b) + (8 * a > 5 * b) + (8 * a > 7 * b);
    const double c = 0.25 * i;
    const double t = (a - c * b) / (b + c * a);
    const double z = t * t;
    const double part =
        t + t * z *
                (-1.0 / 3 +
                 z * (1.0 / 5 +
                      z * (-1.0 / 7 +
                           z * (1.0 / 9 + z * (-1.0 / 11 + z * (1.0 / 13 + z * (-1.0 / 15)))))));
    const double angle = base[static_cast<std::size_t>(i)] + part;
    return steep ? half_pi_high - (angle - half_pi_low) : angle;
}

/// acos by way of the arc tangent; its result is a 32-bit float.
float acos_own(double x)
{
    if (x >= 1.0)
        return 0.0F;
    if (x <= -1.0)
        return 3.14159265F;
    const double angle = atan_ratio(std::fabs(x), std::sqrt(1.0 - x * x));
    return static_cast<float>(x < 0 ? half_pi_high + angle : half_pi_high - angle);
}

double asin_own(double x)
{
    if (std::fabs(x) >= 1.0)
        return sgn(x) * half_pi_high;
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
        return sgn(y) * half_pi_high;
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
    const double lat_t = target.lat * semi_to_rad, lat_o = origin.lat * semi_to_rad;
    const auto d_lat = static_cast<float>(lat_t - lat_o);
    const auto c = static_cast<float>(sin_cos_of((lat_t + lat_o) / 2).cos);
    const auto d_lon =
        static_cast<float>(semi_difference(target.lon, origin.lon) * semi_to_rad * c);
    const sin_cos along = sin_cos_of(d_lat), across = sin_cos_of(d_lon);

    const double arc = acos_own(along.cos * across.cos);
    // atan2_own(tan d_lon, sin d_lat), the quotients taken together.
    const double x = along.sin, y = across.cos < 0 ? -across.sin : across.sin;
    double angle = sgn(y) * half_pi_high;
    if (x != 0) {
        angle = atan_ratio(std::fabs(y), std::fabs(across.cos * x));
        if (x < 0)
            angle = sgn(y) * (pi - angle);
        else if (y < 0)
            angle = -angle;
    }
    return {static_cast<float>(arc * earth_radius / settings.dist_unit), bearing_of(angle)};
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

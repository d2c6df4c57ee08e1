#include "coords/grid_nzmg.h"

#include <array>
#include <numbers>

namespace velkoro {
namespace {

constexpr double rad = std::numbers::pi / 180;
constexpr double nz_a = 6378388, nz_lat0 = -41, nz_lon0 = 3.019419605950187;
constexpr double nz_east = 2510000, nz_north = 6023150;
constexpr double unit = 0.036; // 100000 seconds of arc to a degree

struct pair {
    float re = 0, im = 0;
};
pair add(pair p, pair q)
{
    return {p.re + q.re, p.im + q.im};
}
pair multiply(pair p, pair q)
{
    return {p.re * q.re - p.im * q.im, p.re * q.im + p.im * q.re};
}
pair divide(pair p, pair q)
{
    const float size = q.re * q.re + q.im * q.im;
    return {(p.re * q.re + p.im * q.im) / size, (p.im * q.re - p.re * q.im) / size};
}
pair scale(pair p, float by)
{
    return {p.re * by, p.im * by};
}

// clang-format off
constexpr std::array series_a = {0.6399175073, -0.1358797613, 0.063294409, -0.02526853, 0.0117879,
                                 -0.0055161, 0.0026906, -0.001333, 0.00067, -0.00034};
constexpr std::array series_d = {1.5627014243, 0.5185406398, -0.03333098, -0.1052906, -0.0368594,
                                 0.007317, 0.01220, 0.00394, -0.0013};
constexpr std::array<pair, 6> series_b = {{{0.7557853228F, 0.0F},
                                           {0.249204646F, 0.003371507F},
                                           {-0.001541739F, 0.041058560F},
                                           {-0.10162907F, 0.01727609F},
                                           {-0.26623489F, -0.36249218F},
                                           {-0.6870983F, -1.1651967F}}};
constexpr std::array<pair, 6> series_c = {{{1.3231270439F, 0.0F},
                                           {-0.577245789F, -0.007809598F},
                                           {0.508307513F, -0.112208952F},
                                           {-0.15094762F, 0.18200602F},
                                           {1.01418179F, 1.64497696F},
                                           {1.9660549F, 2.5127645F}}};
// clang-format on

template <std::size_t N> double sum(const std::array<double, N>& terms, double x)
{
    double total = 0, power = 1;
    for (const double t : terms) {
        power *= x;
        total += t * power;
    }
    return total;
}

pair sum(const std::array<pair, 6>& terms, pair x)
{
    pair total, power = {1, 0};
    for (const pair t : terms) {
        power = multiply(power, x);
        total = add(total, multiply(t, power));
    }
    return total;
}

} // namespace

plane_rec nzmg_forward(const geo_rec& geo)
{
    const double psi = sum(series_a, (geo.lat / rad - nz_lat0) * unit);
    const pair z = sum(series_b, {static_cast<float>(psi), static_cast<float>(geo.lon - nz_lon0)});
    return {nz_a * z.re + nz_north, nz_a * z.im + nz_east};
}

geo_rec nzmg_inverse(const plane_rec& plane)
{
    const pair z = {static_cast<float>((plane.north - nz_north) / nz_a),
                    static_cast<float>((plane.east - nz_east) / nz_a)};
    pair zeta = sum(series_c, z);
    for (int round = 0; round < 2; ++round) {
        pair over = z, under = series_b[0], power = {1, 0};
        for (std::size_t k = 1; k < series_b.size(); ++k) {
            const auto n = static_cast<float>(k + 1);
            power = multiply(power, zeta); // zeta to the n - 1
            under = add(under, scale(multiply(series_b[k], power), n));
            over = add(over, scale(multiply(series_b[k], multiply(power, zeta)), n - 1));
        }
        zeta = divide(over, under);
    }
    return {(nz_lat0 + sum(series_d, zeta.re) / unit) * rad, nz_lon0 + zeta.im};
}

} // namespace velkoro

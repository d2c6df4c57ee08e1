/// Sine, cosine and arc tangent for the loops that run over whole tracks and lists: as exact as the
/// library's to about one unit in the last place, without its calls and without branches.
/// They take two numbers at once, which the processor calculates side by side. The polynomials are
/// Chebyshev fits to the series of sine and arc tangent, exact to 4e-17; their terms are added in
/// pairs, which is shorter to wait for than one after the other.
#pragma once

#include <cmath>

namespace velkoro::fast {

/// Two numbers that take the same steps, and their bits.
using two = double __attribute__((vector_size(16)));
using two_bits = long long __attribute__((vector_size(16)));

inline constexpr double half_pi = 1.5707963267948966, half_pi_low = 6.123233995736766e-17;

/// Constants, each of them twice. They stand in a file of their own, as compilers that see the
/// values build the pairs anew on every use.
struct trig_table {
    two sine[8]; ///< (sin r / r - 1) / r^2 by powers of r^2, for r up to half pi
    two arc[11]; ///< (atan t / t - 1) / t^2 by powers of t^2, for t up to tan 22.5 degrees
    two slope;   ///< tan 22.5 degrees
    two half_pi, half_pi_low, quarter_pi;
    two one, least;
    two_bits sign, size; ///< the sign's bit and all others
};
extern const trig_table table;

[[gnu::always_inline]] inline two_bits bits_of(two x)
{
    return reinterpret_cast<two_bits>(x);
}
[[gnu::always_inline]] inline two of_bits(two_bits b)
{
    return reinterpret_cast<two>(b);
}
[[gnu::always_inline]] inline two size_of(two x)
{
    return of_bits(bits_of(x) & table.size);
}
/// The value where the condition holds, else 0.
[[gnu::always_inline]] inline two only(two_bits condition, two value)
{
    return of_bits(condition & bits_of(value));
}
/// A value of at least 0 with the sign of another one.
[[gnu::always_inline]] inline two with_sign(two size, two sign)
{
    return of_bits(bits_of(size) ^ (bits_of(sign) & table.sign));
}

/// Both rounded to 32-bit floats. (Written out, as GCC 12 leaves the rounding of single numbers out
/// when they meet in a pair.)
[[gnu::always_inline]] inline two as_floats(two x)
{
    using two_floats = float __attribute__((vector_size(8)));
    return __builtin_convertvector(__builtin_convertvector(x, two_floats), two);
}

/// r + r z times the polynomial of the sine.
[[gnu::always_inline]] inline two sine_sum(two r, two start)
{
    const auto& k = table.sine;
    const two z = r * r, z2 = z * z, z4 = z2 * z2;
    const two low = (k[0] + k[1] * z) + (k[2] + k[3] * z) * z2;
    const two high = (k[4] + k[5] * z) + (k[6] + k[7] * z) * z2;
    return start + r * z * (low + high * z4);
}

/// Sine of -90 to 90 degrees, in radians.
[[gnu::always_inline]] inline two sine_of(two r)
{
    return sine_sum(r, r);
}

/// Cosine of -90 to 90 degrees, in radians: the sine of the rest to 90 degrees.
[[gnu::always_inline]] inline two cosine_of(two r)
{
    const two rest = table.half_pi - size_of(r);
    return sine_sum(rest, rest + table.half_pi_low);
}

/// Sine and cosine of one angle.
struct sin_cos_one {
    double sin, cos;
};
/// Of -90 to 90 degrees, in radians.
[[gnu::always_inline]] inline sin_cos_one sin_cos_of(double x)
{
    const double rest = half_pi - std::fabs(x);
    const two r = sine_sum(two{x, rest}, two{x, rest + half_pi_low});
    return {r[0], r[1]};
}
/// Of -180 to 180 degrees, in radians.
[[gnu::always_inline]] inline sin_cos_one sin_cos_wide(double x)
{
    const auto [s, c] = sin_cos_of(0.5 * x);
    return {2 * s * c, 1 - 2 * s * s};
}

/// Sines and cosines of two angles of -180 to 180 degrees that are given by their halves, in
/// radians. The cosine is exact to the last bit near 1, where the arcs between near points live.
struct sin_cos {
    two sin, cos;
};
[[gnu::always_inline]] inline sin_cos sin_cos_of_half(two h)
{
    const two s = sine_of(h), s2 = s + s;
    const two c2 = table.one - s * s;
    if (c2[0] < 1e-3 || c2[1] < 1e-3) [[unlikely]] // within 4 degrees of 180 the root is coarse
        return {two{std::sin(2 * h[0]), std::sin(2 * h[1])},
                two{std::cos(2 * h[0]), std::cos(2 * h[1])}};
    const two c = {std::sqrt(c2[0]), std::sqrt(c2[1])};
    return {s2 * c, table.one - s2 * s};
}

/// atan(n / d) for n and d of at least 0; 90 degrees when both are 0.
[[gnu::always_inline]] inline two atan_ratio(two n, two d)
{
    n = n < table.least ? table.least : n;
    // Below 22.5 degrees as it is, beyond 67.5 the rest to 90 degrees, else to 45 degrees.
    const two_bits flat = n < table.slope * d, steep = d < table.slope * n;
    const two t = (only(~steep, n) - only(~flat, d)) / (only(~flat, n) + only(~steep, d));
    const two base = only(~flat, table.quarter_pi) + only(steep, table.quarter_pi);
    const two start = t + only(steep, table.half_pi_low);
    const auto& k = table.arc;
    const two z = t * t, z2 = z * z, z4 = z2 * z2;
    const two first = (k[0] + k[1] * z) + (k[2] + k[3] * z) * z2;
    const two second = (k[4] + k[5] * z) + (k[6] + k[7] * z) * z2;
    const two third = (k[8] + k[9] * z) + k[10] * z2;
    return base + (start + t * z * ((first + second * z4) + third * (z4 * z4)));
}

} // namespace velkoro::fast

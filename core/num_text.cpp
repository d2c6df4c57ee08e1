#include "core/num_text.h"

#include "core/text_tools.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr std::array<double, 23> powers_of_ten = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// The number at the front of a text, cut into its parts.
struct number_parts {
    bool negative = false;
    std::size_t begin = 0; // first digit or point
    std::size_t mantissa_end = 0;
    std::size_t end = 0;        // behind the exponent
    std::uint64_t mantissa = 0; // the first 19 digits
    int scale = 0;              // power of ten that belongs to `mantissa`, the exponent included
    bool exact = true;          // no digit was left out of `mantissa`
    bool found = false;
};

number_parts scan_number(std::string_view text)
{
    number_parts p;
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ')
        ++i;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        p.negative = text[i++] == '-';
    p.begin = i;
    int digits = 0; // significant ones
    bool point = false;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '.' && !point) {
            point = true;
            continue;
        }
        if (!is_digit(c))
            break;
        p.found = true;
        if (digits < 19) {
            p.mantissa = p.mantissa * 10 + static_cast<std::uint64_t>(c - '0');
            if (p.mantissa != 0)
                ++digits;
            if (point)
                --p.scale;
        } else {
            p.exact = p.exact && c == '0';
            if (!point)
                ++p.scale;
        }
    }
    p.mantissa_end = p.end = i;
    if (!p.found)
        return p;
    if (i < text.size() && std::strchr("eEdD", text[i]) != nullptr && text[i] != '\0') {
        std::size_t k = i + 1;
        bool minus = false;
        if (k < text.size() && (text[k] == '-' || text[k] == '+'))
            minus = text[k++] == '-';
        if (k < text.size() && is_digit(text[k])) {
            int e = 0;
            for (; k < text.size() && is_digit(text[k]); ++k)
                if (e < 100000)
                    e = e * 10 + (text[k] - '0');
            p.scale += minus ? -e : e;
            p.end = k;
        }
    }
    return p;
}

constexpr std::array<std::uint64_t, 20> whole_powers = [] {
    std::array<std::uint64_t, 20> p{1};
    for (std::size_t i = 1; i < p.size(); ++i)
        p[i] = p[i - 1] * 10;
    return p;
}();

/// Writes the digits of n, at least `whole` of them ahead of the point and `decimals` behind it.
char* put_digits(char* out, std::uint64_t n, int whole, int decimals)
{
    int count = whole + decimals;
    while (count < 20 && n >= whole_powers[static_cast<std::size_t>(count)])
        ++count;
    char* p = out + count;
    for (; p - out >= 2; n /= 100) { // two digits to a division
        const auto pair = static_cast<unsigned>(n % 100);
        *--p = static_cast<char>('0' + pair % 10);
        *--p = static_cast<char>('0' + pair / 10);
    }
    if (p != out)
        *out = static_cast<char>('0' + n % 10);
    p = out + count;
    if (decimals == 0)
        return p;
    for (int i = 0; i < decimals; ++i, --p)
        *p = p[-1];
    *p = '.';
    return out + count + 1;
}

} // namespace

double val(std::string_view text)
{
    const number_parts p = scan_number(text);
    if (!p.found || p.mantissa == 0)
        return 0.0;
    double v = 0.0;
    if (p.exact && p.mantissa <= (std::uint64_t{1} << 53) && p.scale >= -22 && p.scale <= 22) {
        // Both factors are exact, so the one rounding of the product or quotient is the right one.
        v = static_cast<double>(p.mantissa);
        v = p.scale < 0 ? v / powers_of_ten[static_cast<std::size_t>(-p.scale)]
                        : v * powers_of_ten[static_cast<std::size_t>(p.scale)];
    } else {
        std::string form(text.substr(p.begin, p.end - p.begin));
        if (p.end > p.mantissa_end)
            form[p.mantissa_end - p.begin] = 'e';
        const auto [at, error] = std::from_chars(form.data(), form.data() + form.size(), v);
        if (error == std::errc::result_out_of_range)
            v = p.scale > 0 ? std::numeric_limits<double>::max() : 0.0;
    }
    return p.negative ? -v : v;
}

std::string comma_to_dot(std::string_view text)
{
    std::string out(text);
    const std::size_t at = out.find(',');
    if (at != std::string::npos)
        out[at] = '.';
    return out;
}

bool is_number(std::string_view text)
{
    text = trim(text);
    const number_parts p = scan_number(text);
    return p.found && p.end == text.size();
}

char* put_fixed(char* out, double magnitude, int whole, int decimals)
{
    const double unit = powers_of_ten[static_cast<std::size_t>(decimals)];
    const double scaled = magnitude * unit;
    if (!(scaled < 1e15)) { // the fraction is below the precision: all digits as they are
        char digits[360];
        const auto done = std::to_chars(digits, digits + sizeof digits, magnitude,
                                        std::chars_format::fixed, decimals);
        const auto length = static_cast<std::size_t>(done.ptr - digits);
        std::memcpy(out, digits, length);
        return out + length;
    }
    auto n = static_cast<std::uint64_t>(scaled);
    const double below_half = 0.5 - (scaled - static_cast<double>(n));
    if (below_half <= 0.0) {
        ++n;
    } else if (below_half <= scaled * 0.5e-14 && scaled < 1e14) {
        // Close below a half. Half is what the value says in 15 digits: 1.005 shows as 1.01,
        // although the nearest double lies a little lower.
        std::size_t magnitude_of_ten = 0;
        while (powers_of_ten[magnitude_of_ten + 1] <= scaled)
            ++magnitude_of_ten;
        if (below_half <= 0.5 * powers_of_ten[magnitude_of_ten] * 1e-14)
            ++n;
    }
    return put_digits(out, n, whole, decimals);
}

std::string pic(double value, std::string_view picture)
{
    if (!std::isfinite(value))
        return {};
    const auto in_number = [](char c) { return c == '0' || c == '#' || c == '.'; };
    std::size_t i = 0;
    while (i < picture.size() && !in_number(picture[i]))
        ++i;
    const std::size_t first = i;
    int whole = 0, least = 0, most = 0; // digits ahead of the point, decimals
    bool point = false;
    for (; i < picture.size() && in_number(picture[i]); ++i) {
        const char c = picture[i];
        if (c == '.') {
            if (point)
                break;
            point = true;
        } else if (point) {
            ++most;
            if (c == '0')
                least = most;
        } else if (c == '0' || whole > 0) {
            ++whole;
        }
    }
    most = std::min(most, 15);
    least = std::min(least, 15);
    if (first == i)
        return std::string(picture);

    char number[400];
    char* end = put_fixed(number, std::fabs(value), std::min(whole, 30), most);
    for (int decimals = most; decimals > least && end[-1] == '0'; --decimals)
        --end;
    const bool zero = std::string_view(number, static_cast<std::size_t>(end - number))
                          .find_first_of("123456789") == std::string_view::npos;
    std::string out;
    if (value < 0 && !zero)
        out += '-';
    out.append(picture.substr(0, first));
    out.append(number, static_cast<std::size_t>(end - number));
    out.append(picture.substr(i));
    return out;
}

double round_even(double value)
{
    return std::nearbyint(value);
}

double fix(double value)
{
    return std::trunc(value);
}

namespace {

template <class T> T narrow(double value)
{
    const double r = round_even(value);
    // Not-a-number fails both comparisons.
    if (!(r >= static_cast<double>(std::numeric_limits<T>::min()) &&
          r <= static_cast<double>(std::numeric_limits<T>::max())))
        throw std::overflow_error("Overflow");
    return static_cast<T>(r);
}

template <class T> T narrow(std::int64_t value)
{
    if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max())
        throw std::overflow_error("Overflow");
    return static_cast<T>(value);
}

} // namespace

std::int16_t to_i16(double value)
{
    return narrow<std::int16_t>(value);
}

std::int32_t to_i32(double value)
{
    return narrow<std::int32_t>(value);
}

std::int16_t to_i16(std::int64_t value)
{
    return narrow<std::int16_t>(value);
}

std::int32_t to_i32(std::int64_t value)
{
    return narrow<std::int32_t>(value);
}

} // namespace velkoro

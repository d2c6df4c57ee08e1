#include "coords/coord_text.h"

#include "core/num_text.h"
#include "core/platform.h"
#include "core/text_tools.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <memory_resource>
#include <numbers>
#include <string>

namespace velkoro {
namespace {

constexpr double rad = std::numbers::pi / 180;
constexpr char degree = '\xB0';

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// Position of the first such letter, capital or small.
std::size_t letter_at(std::string_view text, char capital)
{
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((text[i] & ~0x20) == capital)
            return i;
    return std::string_view::npos;
}

/// The text without its hemisphere letters: the sign in front, the first comma a point.
void put_together(std::string_view text, std::size_t plus, std::size_t minus, std::pmr::string& t)
{
    t.reserve(text.size() + 1);
    if (minus != std::string_view::npos)
        t += '-';
    bool first = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == plus || i == minus)
            continue;
        if (!first || text[i] != ' ') // our own texts have a blank behind the letter
            t += text[i];
        first = false;
    }
    const std::size_t comma = t.find(',');
    if (comma != std::string::npos)
        t[comma] = '.';
}

/// Position of the character that ends the degrees, npos when there is none.
std::size_t end_of_degrees(std::string_view text)
{
    std::size_t i = text.find(degree);
    if (i != std::string_view::npos)
        return i;
    for (i = 0; i < text.size() && !is_digit(text[i]);)
        ++i;
    while (i < text.size() && (is_digit(text[i]) || text[i] == '.'))
        ++i;
    return i < text.size() ? i : std::string_view::npos;
}

/// A separator divides only between two other characters.
bool divides(std::size_t at, std::string_view text)
{
    return at != std::string_view::npos && at >= 1 && at + 1 < text.size();
}

/// Reads "-8.5" and our own degrees "S 08.50000°", which need no rules: nothing but a letter or a
/// sign in front, one number, a degree sign behind. False: not one of them.
bool plain_degrees(std::string_view text, std::string_view letters, double& value)
{
    constexpr std::array<double, 16> powers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                               1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (text.ends_with(degree))
        text.remove_suffix(1);
    if (text.empty())
        return false;
    const bool letter = text[0] == letters[0] || text[0] == letters[1];
    const bool negative = text[0] == letters[1] || text[0] == '-';
    std::size_t i = letter || negative ? 1 : 0;
    if (letter && i < text.size() && text[i] == ' ')
        ++i;
    if (i == text.size() || text.size() - i > 15) // all digits count exactly
        return false;
    std::uint64_t digits = 0;
    std::size_t point = text.size();
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (is_digit(c))
            digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
        else if (c == '.' && point == text.size())
            point = i + 1;
        else
            return false;
    }
    value = static_cast<double>(digits) / powers[text.size() - point];
    if (negative)
        value = -value;
    return point < text.size() || is_digit(text.back());
}

/// The value in degrees, and whether it is no number or out of range; `good` comes in true.
double read_angle(std::string_view text, std::string_view letters, bool& good, bool& empty)
{
    text = trim(text.substr(0, text.find(map_tab)));
    const std::size_t plus = letter_at(text, letters[0]), minus = letter_at(text, letters[1]);
    // Plain numbers are read where they stand; others, however long, are put together in this
    // block, so that reading a million lines allocates nothing.
    std::array<char, 256> room;
    std::pmr::monotonic_buffer_resource block(room.data(), room.size());
    std::pmr::string t(&block);
    std::string_view v = text;
    if (plus != std::string_view::npos || minus != std::string_view::npos ||
        text.find(',') != std::string_view::npos) {
        put_together(text, plus, minus, t);
        v = t;
    }
    empty = !v.empty() && v.find_first_of("0123456789") == std::string_view::npos;
    const std::size_t at = end_of_degrees(v);
    if (!divides(at, v))
        return val(v);
    double part = val(v.substr(at + 1)) / 60;
    const std::size_t mark = v.find('\'');
    if (divides(mark, v))
        part += val(v.substr(mark + 1)) / 3600;
    const std::string_view front = v.substr(0, at);
    good = is_number(front);
    return val(front) + (v.front() == '-' ? -part : part);
}

} // namespace

std::string angle_to_text(double degrees, char letter, int fmt)
{
    const bool north = letter == 'N', negative = degrees < 0;
    double deg = fix(degrees);
    double min = std::fabs(degrees - deg) * 60;
    deg = std::fabs(deg);
    // Ahead of the seconds, so that 60 shows in the minutes field just below a full degree.
    if (min >= 59.9994) {
        deg += 1;
        min = 0;
    }
    char out[400];
    char* p = out;
    *p++ = !negative ? letter : north ? 'S' : 'W';
    if (north)
        *p++ = ' '; // in place of the third digit of longitudes
    const int digits = north ? 2 : 3;
    if (fmt == fmt_degrees) {
        p = put_fixed(p, std::fabs(degrees), digits, 5);
        *p++ = degree;
    } else if (fmt == fmt_minutes) {
        p = put_fixed(p, deg, digits, 0);
        *p++ = degree;
        p = put_fixed(p, min, 2, 3);
        *p++ = '\'';
    } else {
        double whole = fix(min), sec = (min - whole) * 60;
        if (sec >= 59.96) {
            whole += 1;
            sec = 0;
        }
        p = put_fixed(p, deg, digits, 0);
        *p++ = degree;
        p = put_fixed(p, whole, 2, 0);
        *p++ = '\'';
        p = put_fixed(p, sec, 2, 1);
        *p++ = '"';
    }
    return std::string(out, static_cast<std::size_t>(p - out));
}

double text_to_angle(std::string_view text, std::string_view letters, bool* ok)
{
    bool good = true, empty = false; // empty: read as 0 without a beep
    double value = 0;
    if (!plain_degrees(text, letters, value))
        value = read_angle(text, letters, good, empty);
    if (std::fabs(value) > (letters == "NS" ? 90 : 180))
        good = false;
    if (!good)
        platform.beep();
    if (ok)
        *ok = good && !empty;
    return value * rad;
}

} // namespace velkoro

#include "coords/grid_utm.h"

#include "core/num_text.h"
#include "core/text_tools.h"

#include <algorithm>
#include <cmath>

namespace velkoro {
namespace {

constexpr std::string_view columns = "ABCDEFGHJKLMNPQRSTUVWXYZ";
constexpr std::string_view rows_even_start = "ABCDEFGHJKLMNPQRSTUVABCDE";
constexpr std::string_view rows_odd = "ABCDEFGHJKLMNPQRSTUV";
constexpr std::string_view rows_even = "FGHJKLMNPQRSTUVABCDE";
constexpr std::string_view bands = "CDEFGHJKLMNPQRSTUVWX";

/// Position of a character counted from 1, 0 when it is not there.
int place(std::string_view letters, char c)
{
    const std::size_t at = letters.find(c);
    return at == std::string_view::npos ? 0 : static_cast<int>(at) + 1;
}

/// Number of the first two of seven digits. A negative value has its sign in front of them.
int first_two_digits(double value)
{
    if (value >= 0 && value < 9999999) // the usual case: the digits of a whole number
        return static_cast<int>(static_cast<std::uint32_t>(value + 0.5) / 100000);
    char digits[340];
    const char* const end = put_fixed(digits, std::fabs(value), 7, 0);
    const int lead = digits[0] - '0';
    const bool zero =
        std::all_of(static_cast<const char*>(digits), end, [](char c) { return c == '0'; });
    return value < 0 && !zero ? -lead : lead * 10 + (digits[1] - '0');
}

} // namespace

double utm_meridian(double lon, double lat)
{
    if (lon > 3 && lon < 6 && lat >= 56 && lat < 64)
        return 9;    // the west coast of Norway
    if (lat >= 72) { // Svalbard
        if (lon >= 0 && lon <= 9)
            return 3;
        if (lon >= 9 && lon <= 21)
            return 15;
        if (lon >= 21 && lon <= 33)
            return 27;
        if (lon >= 33 && lon <= 37)
            return 39;
    }
    return 6 * round_even((lon - 3) / 6) + 3;
}

int utm_zone_of(double meridian)
{
    return static_cast<int>(round_even((meridian + 183) / 6));
}

int utm_zone_number(std::string_view zone_text)
{
    return static_cast<int>(val(zone_text.substr(0, 2)));
}

char utm_band(double lat)
{
    constexpr std::string_view letters = "??CDEFGHJKLMNPQRSTUVWXX?";
    const double i = std::floor(lat / 8) + 12;
    return i >= 0 && i < static_cast<double>(letters.size()) ? letters[static_cast<std::size_t>(i)]
                                                             : '?';
}

bool utm_south(std::string_view zone_text)
{
    return zone_text.size() > 2 && place("CDEFGHJKLM", upper(zone_text[2])) > 0;
}

bool mgrs_letters(double easting, double northing, int zone, std::string& zone_text)
{
    const int column = first_two_digits(easting) + (zone - 1) % 3 * 8;
    if (column < 1)
        return false;
    if (column <= static_cast<int>(columns.size()))
        zone_text += columns[static_cast<std::size_t>(column - 1)];
    const int row = std::max(0, first_two_digits(northing)) % 20 + (zone % 2 == 0 ? 5 : 0);
    zone_text += rows_even_start[static_cast<std::size_t>(row)];
    return true;
}

int mgrs_col(std::string_view zone_text)
{
    return zone_text.size() < 4 ? 0 : (place(columns, zone_text[3]) - 1) % 8 + 1;
}

int mgrs_row(std::string_view zone_text)
{
    if (zone_text.size() < 4)
        return 0;
    const bool odd = utm_zone_number(zone_text) % 2 != 0;
    // A row letter that is missing counts as the first one.
    const int at = zone_text.size() < 5 ? 1 : place(odd ? rows_odd : rows_even, zone_text[4]);
    const int band = place(bands, zone_text[2]) - 11;
    const double limit = round_even(8.855 * band - 4.4225);
    int row = (at - 1) % 20 - 100;
    while (row < limit)
        row += 20;
    return row;
}

double gk_meridian(double lon)
{
    return std::clamp(3 * round_even(lon / 3), 0.0, 15.0);
}

} // namespace velkoro

#include "interchange/fields.h"

#include "coords/times.h"
#include "core/num_text.h"
#include "core/store.h"
#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

namespace velkoro {
namespace {

constexpr double foot_m = 0.3048;
constexpr double base_day = 32873; // 31 December 1989 in days since 30 December 1899
constexpr char degree = '\xB0';

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

bool is_space(char c)
{
    return c == ' ' || c == '\t';
}

std::string_view trim_space(std::string_view text)
{
    while (!text.empty() && is_space(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_space(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace

// Fields
// -------------------------------------------------------------------------------------------------

std::string_view next_field(std::string_view& text, std::string_view delimiter)
{
    if (delimiter == " ")
        text = trim(text);
    const std::size_t cut = text.find(delimiter);
    const std::size_t end = std::min(cut, text.find('\r'));
    const std::string_view head = text.substr(0, end);
    if (end == std::string_view::npos) {
        text = {};
        return head;
    }
    text.remove_prefix(end + (end == cut ? std::max<std::size_t>(delimiter.size(), 1) : 1));
    if (text.starts_with('\n'))
        text.remove_prefix(1);
    return head;
}

std::size_t split_fields(std::string_view line, char delimiter, std::span<std::string_view> fields)
{
    std::size_t n = 0;
    while (n + 1 < fields.size()) {
        const std::size_t cut = line.find(delimiter);
        fields[n++] = trim_space(line.substr(0, cut));
        if (cut == std::string_view::npos) {
            std::ranges::fill(fields.subspan(n), std::string_view{});
            return n;
        }
        line.remove_prefix(cut + 1);
    }
    if (n < fields.size())
        fields[n++] = trim_space(line);
    return n;
}

std::size_t split_quoted(std::string_view line, char delimiter, std::span<std::string_view> fields)
{
    std::size_t n = 0;
    bool more = true;
    while (more && n < fields.size()) {
        while (!line.empty() && is_space(line.front()) && line.front() != delimiter)
            line.remove_prefix(1);
        if (line.starts_with('"')) {
            std::size_t end = 1;
            while (end < line.size() && (line[end] != '"' || line.substr(end).starts_with("\"\"")))
                end += line[end] == '"' ? 2 : 1;
            end = std::min(end, line.size());
            fields[n++] = line.substr(1, end - 1);
            line.remove_prefix(end);
            const std::size_t cut = line.find(delimiter);
            more = cut != std::string_view::npos;
            line.remove_prefix(more ? cut + 1 : line.size());
        } else {
            const std::size_t cut =
                n + 1 < fields.size() ? line.find(delimiter) : std::string_view::npos;
            fields[n++] = trim_space(line.substr(0, cut));
            more = cut != std::string_view::npos;
            line.remove_prefix(more ? cut + 1 : line.size());
        }
    }
    std::ranges::fill(fields.subspan(n), std::string_view{});
    return n;
}

std::size_t split_words(std::string_view line, std::span<std::string_view> words)
{
    std::size_t n = 0;
    line = trim_space(line);
    while (!line.empty() && n + 1 < words.size()) {
        std::size_t end = 0;
        while (end < line.size() && !is_space(line[end]))
            ++end;
        words[n++] = line.substr(0, end);
        line = trim_space(line.substr(end));
    }
    if (!line.empty() && n < words.size())
        words[n++] = line;
    std::ranges::fill(words.subspan(n), std::string_view{});
    return n;
}

std::string_view behind_number(std::string_view text)
{
    text = trim_space(text);
    std::size_t digits = 0;
    while (digits < text.size() && is_digit(text[digits]))
        ++digits;
    const bool ends = digits == text.size() || is_space(text[digits]);
    return digits >= 1 && digits <= 3 && ends ? trim_space(text.substr(digits)) : text;
}

std::string_view columns(std::string_view line, std::size_t first, std::size_t last)
{
    if (first < 1 || first > line.size() || last < first)
        return {};
    return trim_space(line.substr(first - 1, last - first + 1));
}

bool begins(std::string_view line, std::string_view head)
{
    return line.size() >= head.size() && equal_nocase(line.substr(0, head.size()), head);
}

// Numbers and angles
// -------------------------------------------------------------------------------------------------

namespace {

/// The number at the front of the text, which loses it; plain decimals, no exponent.
bool take_number(std::string_view& text, double& number)
{
    if (text.empty() || !(is_digit(text.front()) || text.front() == '.'))
        return false;
    double value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (error != std::errc() || !std::isfinite(value))
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    number = value;
    return true;
}

template <class T> bool whole_field(std::string_view field, T& number)
{
    field = trim_space(field);
    if (field.starts_with('+')) {
        field.remove_prefix(1);
        if (field.starts_with('-'))
            return false;
    }
    T value = 0;
    const char* const end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (error != std::errc() || stop != end)
        return false;
    if constexpr (std::is_floating_point_v<T>)
        if (!std::isfinite(value))
            return false;
    number = value;
    return true;
}

std::int16_t altitude_of(double metres)
{
    const double whole = std::round(metres);
    return whole > -32768 && whole < 32767 ? static_cast<std::int16_t>(whole) : alt_unknown;
}

} // namespace

bool to_number(std::string_view field, double& number)
{
    return whole_field(field, number);
}

bool to_number(std::string_view field, int& number)
{
    return whole_field(field, number);
}

std::int16_t to_altitude(double metres)
{
    return altitude_of(metres);
}

std::int16_t feet_to_altitude(double feet)
{
    return altitude_of(feet * foot_m);
}

std::int16_t to_proximity(double metres)
{
    if (!(metres > 0))
        return 0;
    return static_cast<std::int16_t>(std::clamp(std::round(metres / 100), 1.0, 32767.0));
}

bool to_angle(std::string_view text, std::string_view letters, double& degrees)
{
    text = trim_space(text);
    bool negative = false, signed_ = false;
    const auto letter = [&](char c) {
        const char capital = static_cast<char>(c & ~0x20);
        if (capital != letters[0] && capital != letters[1])
            return false;
        negative = capital == letters[1];
        return true;
    };
    if (!text.empty() && letter(text.front())) {
        signed_ = true;
        text = trim_space(text.substr(1));
    } else if (!text.empty() && letter(text.back())) {
        signed_ = true;
        text = trim_space(text.substr(0, text.size() - 1));
    }
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        if (signed_ && !negative && text.front() == '-')
            return false; // "N-12": nobody can tell which
        negative = negative || text.front() == '-';
        text = trim_space(text.substr(1));
    }
    std::array<double, 3> parts{};
    std::size_t n = 0;
    constexpr std::array<char, 3> marks{degree, '\'', '"'};
    bool fraction = false;
    while (n < 3 && !text.empty()) {
        const std::size_t before = text.size();
        const char* const start = text.data();
        if (fraction || !take_number(text, parts[n]))
            return false;
        fraction =
            std::string_view(start, before - text.size()).find('.') != std::string_view::npos;
        text = trim_space(text);
        if (!text.empty() && (text.front() == marks[n] || text.front() == ':'))
            text = trim_space(text.substr(1));
        ++n;
    }
    if (n == 0 || !text.empty() || parts[1] > 60 || parts[2] > 60)
        return false;
    const double value = parts[0] + (parts[1] + parts[2] / 60) / 60;
    if (value > (letters[0] == 'N' ? 90 : 180))
        return false;
    degrees = negative ? -value : value;
    return true;
}

namespace {

/// Takes an angle with its letter off the front of a row of words: the word of the letter and, as
/// long as the part before is whole, numbers that follow as words of their own. Fewer words are
/// tried where the last one does not belong to it.
bool take_angle(std::string_view& row, std::string_view letters, double& degrees)
{
    if (row.empty() || letters.find(upper(row.front())) == std::string_view::npos)
        return false;
    std::array<std::size_t, 3> ends{};
    std::size_t n = 0;
    for (std::size_t at = 0; n < ends.size();) {
        const std::size_t end = std::min(row.find(' ', at), row.size());
        const std::string_view word = row.substr(at, end - at);
        if (n > 0 && (word.empty() || !is_digit(word.front())))
            break;
        ends[n++] = end;
        if (word.find('.') != std::string_view::npos)
            break;
        at = row.find_first_not_of(' ', end);
        if (at == std::string_view::npos)
            break;
    }
    for (; n > 0; --n)
        if (to_angle(row.substr(0, ends[n - 1]), letters, degrees)) {
            row = trim_space(row.substr(ends[n - 1]));
            return true;
        }
    return false;
}

} // namespace

bool find_angles(std::string_view row, std::size_t from, double& lat, double& lon,
                 std::string_view& ahead, std::string_view& behind)
{
    for (std::size_t i = from; i + 1 < row.size(); ++i) {
        const char letter = upper(row[i]);
        if ((letter != 'N' && letter != 'S') || !is_digit(row[i + 1]) ||
            (i > 0 && !is_space(row[i - 1])))
            continue;
        std::string_view rest = row.substr(i);
        double north = 0, east = 0;
        if (!take_angle(rest, "NS", north) || !take_angle(rest, "EW", east))
            continue;
        lat = north;
        lon = east;
        ahead = trim_space(row.substr(0, i));
        behind = rest;
        return true;
    }
    return false;
}

// Times
// -------------------------------------------------------------------------------------------------

std::int32_t day_number_time(double days)
{
    const double seconds = std::round((days - base_day) * day_seconds);
    if (!(days > 0) || !(std::fabs(seconds) <= std::numeric_limits<std::int32_t>::max()))
        return 0;
    return static_cast<std::int32_t>(seconds);
}

std::int32_t day_number_time(std::string_view field)
{
    double days = 0;
    return to_number(field, days) ? day_number_time(days) : 0;
}

namespace {

struct date_part {
    int value = 0;
    std::size_t length = 0; // digits, 0 for the name of a month
};

bool is_letter(char c)
{
    return lower(c) != upper(c);
}

/// Month 1 to 12 of an English name, or of one in a language that the settings know; 0 for none.
int month_named(std::string_view name)
{
    constexpr std::string_view english = "janfebmaraprmayjunjulaugsepoctnovdec";
    if (name.size() < 3)
        return 0;
    for (std::size_t m = 0; m < 12; ++m)
        if (equal_nocase(name.substr(0, 3), english.substr(3 * m, 3)))
            return static_cast<int>(m) + 1;
    return month_of(name);
}

/// The three parts of a date off the front of the text.
bool take_date(std::string_view& text, std::array<date_part, 3>& parts)
{
    for (std::size_t n = 0; n < 3; ++n) {
        while (!text.empty() &&
               std::string_view(".-/, \t").find(text.front()) != std::string_view::npos)
            text.remove_prefix(1);
        std::size_t length = 0;
        int value = 0;
        while (length < text.size() && is_digit(text[length])) {
            if (length == 8)
                return false;
            value = value * 10 + (text[length++] - '0');
        }
        if (length == 8 && n == 0) { // yyyymmdd
            parts = {date_part{value / 10000, 4}, {value / 100 % 100, 2}, {value % 100, 2}};
            text.remove_prefix(length);
            return true;
        }
        if (length == 0) {
            while (length < text.size() && is_letter(text[length]))
                ++length;
            value = month_named(text.substr(0, length));
            if (value == 0)
                return false;
            parts[n] = {value, 0};
        } else {
            if (length > 4)
                return false;
            parts[n] = {value, length};
        }
        text.remove_prefix(length);
    }
    return true;
}

/// "8:15", "08:15:30", "8:15:30 PM" as seconds of the day; -1 for anything else.
std::int32_t seconds_of_day(std::string_view text)
{
    std::array<int, 3> parts{};
    std::size_t n = 0;
    while (n < 3) {
        std::size_t length = 0;
        int value = 0;
        while (length < text.size() && length < 2 && is_digit(text[length]))
            value = value * 10 + (text[length++] - '0');
        if (length == 0)
            return -1;
        parts[n++] = value;
        text.remove_prefix(length);
        if (!text.starts_with(':'))
            break;
        text.remove_prefix(1);
    }
    if (n < 2 || parts[0] > 23 || parts[1] > 59 || parts[2] > 59)
        return -1;
    int half = 0;
    if (text.starts_with('.')) { // parts of a second, rounded to the nearest one
        text.remove_prefix(1);
        half = !text.empty() && text.front() >= '5' && text.front() <= '9' ? 1 : 0;
        while (!text.empty() && is_digit(text.front()))
            text.remove_prefix(1);
    }
    text = trim_space(text);
    if (text.starts_with('Z'))
        text.remove_prefix(1);
    if (equal_nocase(text, "AM") || equal_nocase(text, "PM")) {
        if (parts[0] < 1 || parts[0] > 12)
            return -1;
        parts[0] = parts[0] % 12 + (lower(text.front()) == 'p' ? 12 : 0);
    } else if (!text.empty()) {
        return -1;
    }
    return (parts[0] * 60 + parts[1]) * 60 + parts[2] + half;
}

} // namespace

std::optional<std::int32_t> to_time(std::string_view date, std::string_view time, date_order order)
{
    std::array<date_part, 3> p;
    date = trim_space(date);
    if (!take_date(date, p))
        return std::nullopt;
    date_part year = p[2], month = p[1], day = p[0];
    if (p[0].length == 4 || (order == date_order::year_month_day && p[2].length != 4))
        year = p[0], month = p[1], day = p[2];
    else if (p[0].length == 0 || (order == date_order::month_day_year && p[1].length != 0))
        month = p[0], day = p[1];
    if (day.length == 0 || day.length > 2 || month.length > 2 ||
        (year.length != 2 && year.length != 4))
        return std::nullopt;
    int y = year.value;
    if (year.length == 2)
        y += y < 80 ? 2000 : 1900;
    using namespace std::chrono;
    if (!(std::chrono::year{y} / month.value / day.value).ok())
        return std::nullopt;
    std::int64_t seconds =
        static_cast<std::int64_t>(day_number(y, month.value, day.value)) * day_seconds;
    date = trim_space(date);
    if (date.starts_with('T') || date.starts_with(','))
        date = trim_space(date.substr(1));
    time = trim_space(time);
    if (!date.empty() && !time.empty())
        return std::nullopt;
    if (!date.empty() || !time.empty()) {
        const std::int32_t of_day = seconds_of_day(date.empty() ? time : date);
        if (of_day < 0)
            return std::nullopt;
        seconds += of_day;
    }
    if (seconds > std::numeric_limits<std::int32_t>::max() ||
        seconds < std::numeric_limits<std::int32_t>::min())
        return std::nullopt;
    return static_cast<std::int32_t>(seconds);
}

} // namespace velkoro

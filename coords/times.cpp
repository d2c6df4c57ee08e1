#include "coords/times.h"

#include "core/num_text.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace velkoro {
namespace {

using namespace std::chrono;
constexpr sys_days date_base = year{1989} / December / 31;

struct daylight_field {
    char which = 'F';
    int month = 0;
    bool given = false;
};

daylight_field parse_field(std::string_view field)
{
    field = trim(field);
    if (field.empty())
        return {};
    return {upper(field.front()), static_cast<int>(std::clamp(val(field.substr(1)), -1.0, 99.0)),
            true};
}

/// Day number of the Sunday that the field names.
std::int32_t sunday_of(const daylight_field& f, int y)
{
    if (f.which == 'L') {
        const int next_year = f.month == 12 ? y + 1 : y, next = f.month == 12 ? 1 : f.month + 1;
        const std::int32_t last = day_number(next_year, next, 1) - 1;
        return last - last % 7; // date_base is a Sunday
    }
    const std::int32_t first = day_number(y, f.month, 1);
    const int weeks = f.which == 'S' ? 1 : f.which == 'T' ? 2 : 0;
    return first + (7 - first % 7) % 7 + 7 * weeks;
}

zone_year parse_rule(const std::string& rule, int y)
{
    std::string_view rest = rule;
    const auto next = [&rest] {
        rest = trim_left(rest);
        return next_field(rest, ' ');
    };
    zone_year z;
    const double hours = val(comma_to_dot(next()));
    z.offset_s = static_cast<std::int32_t>(round_even(std::clamp(hours, -24.0, 24.0) * 3600));
    const daylight_field start = parse_field(next()), end = parse_field(next());
    if (!start.given || !end.given)
        return z;
    for (const daylight_field& f : {start, end})
        if (f.month < 1 || f.month > 12) {
            if (times.told != rule) {
                times.told = rule;
                say(1830, buttons::ok, icon::critical);
            }
            return z;
        }
    z.daylight = true;
    // 02:00 standard time, and 03:00 daylight time, which is the same hour of standard time.
    const std::int64_t hour = change_hour * 3600 - z.offset_s;
    z.start = static_cast<std::int64_t>(sunday_of(start, y)) * day_seconds + hour;
    z.end = static_cast<std::int64_t>(sunday_of(end, y)) * day_seconds + hour;
    return z;
}

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

bool is_letter(char c)
{
    return lower(c) != upper(c);
}

} // namespace

std::int32_t day_number(int y, int month, int day)
{
    return static_cast<std::int32_t>((sys_days{year{y} / month / 1} - date_base).count() +
                                     (day - 1));
}

date_time day_date(std::int32_t day)
{
    const year_month_day d{date_base + days{day}};
    return {.year = int{d.year()},
            .month = static_cast<int>(unsigned{d.month()}),
            .day = static_cast<int>(unsigned{d.day()})};
}

date_time seconds_date(std::int64_t seconds)
{
    std::int64_t day = seconds / day_seconds, rest = seconds % day_seconds;
    if (rest < 0) {
        --day;
        rest += day_seconds;
    }
    date_time t = day_date(static_cast<std::int32_t>(day));
    t.hour = static_cast<int>(rest / 3600);
    t.minute = static_cast<int>(rest / 60 % 60);
    t.second = static_cast<int>(rest % 60);
    return t;
}

std::int64_t date_seconds(const date_time& t)
{
    return static_cast<std::int64_t>(day_number(t.year, t.month, t.day)) * day_seconds +
           t.hour * 3600 + t.minute * 60 + t.second;
}

const zone_year& zone_rule(const std::string& rule, int year)
{
    if (times.year != year || times.rule != rule) {
        times.changes = parse_rule(rule, year);
        times.year = year;
        times.rule = rule;
    }
    return times.changes;
}

std::int32_t zone_offset(std::int64_t utc, const std::string& rule)
{
    // The year of the local standard time decides; no change lies near its turn.
    const std::int32_t standard = zone_rule(rule, times.year == 0 ? 1990 : times.year).offset_s;
    const zone_year& z = zone_rule(rule, seconds_date(utc + standard).year);
    if (!z.daylight)
        return z.offset_s;
    const bool summer =
        z.start <= z.end ? utc >= z.start && utc < z.end : utc >= z.start || utc < z.end;
    return z.offset_s + (summer ? 3600 : 0);
}

std::int64_t zone_local(std::int64_t utc, const std::string& rule)
{
    return utc + zone_offset(utc, rule);
}

std::int64_t zone_utc(std::int64_t local, const std::string& rule)
{
    const std::int32_t standard = zone_rule(rule, seconds_date(local).year).offset_s;
    const std::int64_t as_daylight = local - standard - 3600;
    if (zone_offset(as_daylight, rule) == standard + 3600)
        return as_daylight;
    return local - standard;
}

std::string date_pic(const date_time& t, std::string_view picture)
{
    std::string out;
    for (std::size_t i = 0; i < picture.size();) {
        const char c = lower(picture[i]);
        std::size_t n = 1;
        while (i + n < picture.size() && lower(picture[i + n]) == c)
            ++n;
        const auto number = [&](int v) { out += pic(v, n >= 2 ? "00" : "0"); };
        switch (c) {
        case 'd': number(t.day); break;
        case 'h': number(t.hour); break;
        case 'n': number(t.minute); break;
        case 's': number(t.second); break;
        case 'y': out += n >= 4 ? pic(t.year, "0000") : pic(t.year % 100, "00"); break;
        case 'm':
            if (n >= 3) {
                constexpr std::string_view names = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
                const int m = std::clamp(t.month, 1, 12);
                out += names.substr(static_cast<std::size_t>(m - 1) * 3, 3);
            } else {
                number(t.month);
            }
            break;
        default: out.append(picture.substr(i, n)); break;
        }
        i += n;
    }
    return out;
}

int month_of(std::string_view name)
{
    name = name.substr(0, 3);
    if (name.size() < 3)
        return 0;
    std::string_view rest = settings.month_names;
    for (int place = 0; !rest.empty(); ++place)
        if (equal_nocase(trim(next_field(rest, ',')), name))
            return place % 12 + 1;
    return 0;
}

std::optional<date_time> date_parse(std::string_view text)
{
    struct part {
        int value = 0;
        std::size_t length = 0;
        bool month = false;
    };
    std::array<part, 3> date;
    std::size_t parts = 0, i = 0;
    text = trim(text);
    for (; i < text.size() && parts < 3;) {
        const std::size_t from = i;
        if (is_digit(text[i])) {
            while (i < text.size() && is_digit(text[i]))
                ++i;
            if (i - from > 4)
                return std::nullopt;
            date[parts++] = {static_cast<int>(val(text.substr(from, i - from))), i - from, false};
        } else if (is_letter(text[i])) {
            while (i < text.size() && is_letter(text[i]))
                ++i;
            const int m = month_of(text.substr(from, i - from));
            if (m == 0)
                return std::nullopt;
            date[parts++] = {m, 0, true};
        } else if (std::string_view(".-/, ").find(text[i]) != std::string_view::npos) {
            ++i;
        } else {
            return std::nullopt;
        }
    }
    if (parts < 3)
        return std::nullopt;
    part d = date[0], m = date[1], y = date[2];
    if (d.length == 4)
        std::swap(d, y);
    else if (d.month) // "MAY 17 2026"
        std::swap(d, m);
    date_time t{.year = y.value, .month = m.value, .day = d.value};
    if (d.month || y.month || d.length > 2 || m.length > 2 || (y.length != 2 && y.length != 4))
        return std::nullopt;
    if (y.length == 2)
        t.year += t.year < 80 ? 2000 : 1900;
    if (!(year{t.year} / t.month / t.day).ok())
        return std::nullopt;

    std::string_view rest = trim(text.substr(i));
    if (rest.starts_with('T') || rest.starts_with(','))
        rest = trim(rest.substr(1));
    int* const fields[] = {&t.hour, &t.minute, &t.second};
    const int limits[] = {24, 60, 60};
    std::size_t k = 0;
    for (; !rest.empty(); ++k) {
        const std::string_view f = trim(next_field(rest, ':'));
        if (k == 3 || f.empty() || f.size() > 2 || !std::ranges::all_of(f, is_digit) ||
            val(f) >= limits[k])
            return std::nullopt;
        *fields[k] = static_cast<int>(val(f));
    }
    if (k == 1)
        return std::nullopt; // an hour alone is no time
    return t;
}

std::string hours_text(double seconds)
{
    if (!std::isfinite(seconds))
        return {};
    const double minutes = std::floor(std::fabs(seconds) / 60 + 0.5);
    const double days_part = std::floor(minutes / 1440);
    const double rest = minutes - days_part * 1440, hours = std::floor(rest / 60);
    std::string out = seconds < 0 && minutes > 0 ? "-" : "";
    if (days_part > 0)
        out += pic(days_part, "0") + "d ";
    return out + pic(hours, "0") + ":" + pic(rest - hours * 60, "00");
}

} // namespace velkoro

/// Times: the receiver's clock as calendar dates, time zone rules, date and time as text and back.
/// A stored time is a signed count of seconds since 31 December 1989 00:00 UTC. A zone is a rule
/// text of up to three blank-separated fields: hours from UTC, start and end of daylight time as a
/// letter (F, S, T, L: first, second, third, last Sunday) and a month. An end month before the
/// start month means daylight time across the turn of the year.
#pragma once

#include "core/platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velkoro {

inline constexpr std::int32_t day_seconds = 86400;
/// The days change at 02:00 standard time in spring and at 03:00 daylight time in autumn: what
/// central Europe, Australia and New Zealand do.
inline constexpr int change_hour = 2;

/// A rule's changes in one year, in seconds since date_base: `start` and `end` are UTC instants.
struct zone_year {
    std::int32_t offset_s = 0; ///< standard time east of UTC
    bool daylight = false;
    std::int64_t start = 0, end = 0;
};

struct time_state {
    int year = 0; ///< of the rule in `changes`, 0 none
    std::string rule{};
    std::string told{}; ///< rule whose wrong month was shown already
    zone_year changes{};
};
inline time_state times;

/// Days from date_base to a date of the calendar, and back.
std::int32_t day_number(int year, int month, int day);
date_time day_date(std::int32_t day);
/// Calendar date and time of a count of seconds, without any zone.
date_time seconds_date(std::int64_t seconds);
std::int64_t date_seconds(const date_time& t);

/// The changes of a rule in a year; parsed once per year and rule. A month outside 1 to 12 shows
/// text 1830 once for the rule and leaves it without daylight time.
const zone_year& zone_rule(const std::string& rule, int year);
/// Seconds east of UTC at a time (UTC).
std::int32_t zone_offset(std::int64_t utc, const std::string& rule);
/// UTC to local time of a rule, and back. At the hour that comes twice in autumn the way back takes
/// daylight time; times in the hour that is left out in spring move behind it.
std::int64_t zone_local(std::int64_t utc, const std::string& rule);
std::int64_t zone_utc(std::int64_t local, const std::string& rule);

/// A date and time by a picture: "d", "dd" day, "m", "mm" month, "mmm" its name in capitals (first
/// built-in list), "yy", "yyyy", "h", "hh" hour, "nn" minute, "ss" second; all else stands.
std::string date_pic(const date_time& t, std::string_view picture);
/// Month 1 to 12 of a name: the place in settings.month_names modulo 12. Three characters count,
/// capital or small; 0 when there is none.
int month_of(std::string_view name);
/// A date with or without a time: year month day by numbers with a year of four digits in front,
/// else day month year; the month may be a name; separators are points, strokes, slashes, commas
/// and blanks; years of two digits lie in 1980 to 2079. The time is h:mm or h:mm:ss. Nothing when
/// it is no date.
std::optional<date_time> date_parse(std::string_view text);

/// A span of seconds as "h:mm", with days in front from 24 hours on ("2d 3:05"); seconds are
/// rounded to the nearest minute.
std::string hours_text(double seconds);

} // namespace velkoro

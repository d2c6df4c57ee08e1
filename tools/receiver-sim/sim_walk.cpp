#include "tools/receiver-sim/sim_walk.h"

#include "core/byte_io.h"
#include "core/num_text.h"
#include "tools/receiver-sim/sim_magellan.h"

#include <bit>
#include <chrono>
#include <cmath>
#include <numbers>

namespace velkoro {
namespace {

constexpr double earth_m = 6371000;
constexpr double to_radians = std::numbers::pi / 180;
constexpr double knots = 1852.0 / 3600;
constexpr int leap_seconds = 13;
constexpr std::int64_t week_s = 7 * 86400;

constexpr std::chrono::sys_days epoch = std::chrono::year{1989} / 12 / 31;

sim_place place_at(const sim_walk& walk, std::int64_t second)
{
    sim_place place;
    if (walk.points.empty()) { // once around 200 m in five minutes
        const double angle = static_cast<double>(second) * std::numbers::pi / 150;
        place.lat += 200 / earth_m / to_radians * std::cos(angle);
        place.lon +=
            200 / earth_m / to_radians * std::sin(angle) / std::cos(place.lat * to_radians);
    } else {
        const auto n = static_cast<std::int64_t>(walk.points.size());
        place = walk.points[static_cast<std::size_t>((second % n + n) % n)];
    }
    place.time = walk.start_time + second;
    return place;
}

void put_f32(byte_writer& w, double value)
{
    w.le(std::bit_cast<std::uint32_t>(static_cast<float>(value)));
}

void put_f64(byte_writer& w, double value)
{
    w.le(std::bit_cast<std::uint64_t>(value));
}

} // namespace

sim_calendar sim_calendar_of(std::int64_t time)
{
    using namespace std::chrono;
    const sys_seconds at = sys_seconds(epoch) + seconds(time);
    const sys_days day = floor<days>(at);
    const year_month_day date(day);
    const auto in_day = static_cast<int>((at - day).count());
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            in_day / 3600,
            in_day / 60 % 60,
            in_day % 60};
}

std::optional<std::int64_t> sim_time_of(const sim_calendar& c)
{
    using namespace std::chrono;
    const year_month_day date{year{c.year}, month{static_cast<unsigned>(c.month)},
                              day{static_cast<unsigned>(c.day)}};
    if (!date.ok() || c.hour < 0 || c.hour > 23 || c.minute < 0 || c.minute > 59 || c.second < 0 ||
        c.second > 59)
        return std::nullopt;
    return std::int64_t{(sys_days(date) - epoch).count()} * 86400 + c.hour * 3600 + c.minute * 60 +
           c.second;
}

sim_fix sim_fix_at(const sim_walk& walk, std::int64_t second)
{
    sim_fix fix{place_at(walk, second)};
    const sim_place next = place_at(walk, second + 1);
    const double north = (next.lat - fix.place.lat) * to_radians * earth_m;
    const double east = std::remainder(next.lon - fix.place.lon, 360) * to_radians * earth_m *
                        std::cos(fix.place.lat * to_radians);
    fix.speed_m_s = std::hypot(north, east);
    fix.course = std::fmod(std::atan2(east, north) / to_radians + 360, 360);
    return fix;
}

std::string sim_angle(double degrees, bool is_latitude)
{
    const char hemisphere = is_latitude ? (degrees < 0 ? 'S' : 'N') : (degrees < 0 ? 'W' : 'E');
    const double thousandths = std::round(std::abs(degrees) * 60000);
    const double whole = std::floor(thousandths / 60000);
    return pic(whole, is_latitude ? "00" : "000") +
           pic((thousandths - whole * 60000) / 1000, "00.000") + "," + hemisphere;
}

std::optional<double> sim_degrees_of(std::string_view number, std::string_view hemisphere)
{
    if (!is_number(number) || hemisphere.size() != 1)
        return std::nullopt;
    const double packed = val(number);
    const double whole = std::floor(packed / 100);
    const double degrees = whole + (packed - whole * 100) / 60;
    switch (hemisphere[0]) {
    case 'N':
    case 'E': return degrees;
    case 'S':
    case 'W': return -degrees;
    default: return std::nullopt;
    }
}

std::string sim_nmea(const sim_walk& walk, std::int64_t second)
{
    const sim_fix fix = sim_fix_at(walk, second);
    const sim_calendar c = sim_calendar_of(fix.place.time);
    const std::string time = pic(c.hour, "00") + pic(c.minute, "00") + pic(c.second, "00");
    const std::string date = pic(c.day, "00") + pic(c.month, "00") + pic(c.year % 100, "00");
    std::string out;
    if (!walk.has_fix) {
        out += sim_sentence("GPGGA," + time + ",,,,,0,00,,,M,,M,,");
        out += sim_sentence("GPRMC," + time + ",V,,,,,,," + date + ",,");
    } else {
        const std::string position =
            sim_angle(fix.place.lat, true) + "," + sim_angle(fix.place.lon, false);
        const std::string height = fix.place.has_alt ? pic(fix.place.alt_m, "0.0") : "";
        out +=
            sim_sentence("GPGGA," + time + "," + position + ",1,07,1.4," + height + ",M,47.9,M,,");
        out += sim_sentence("GPRMC," + time + ",A," + position + "," +
                            pic(fix.speed_m_s / knots, "000.0") + "," + pic(fix.course, "000.0") +
                            "," + date + ",,");
    }
    return out + sim_sentence("PGRMM," + walk.datum);
}

std::string sim_d600(std::int64_t time)
{
    const sim_calendar c = sim_calendar_of(time);
    byte_writer w;
    w.u8(static_cast<std::uint8_t>(c.month));
    w.u8(static_cast<std::uint8_t>(c.day));
    w.i16(static_cast<std::int16_t>(c.year));
    w.i16(static_cast<std::int16_t>(c.hour));
    w.u8(static_cast<std::uint8_t>(c.minute));
    w.u8(static_cast<std::uint8_t>(c.second));
    return w.out;
}

std::optional<std::int64_t> sim_time_of_d600(std::string_view data)
{
    byte_reader in(data);
    sim_calendar c;
    c.month = in.u8();
    c.day = in.u8();
    c.year = in.i16();
    c.hour = in.i16();
    c.minute = in.u8();
    c.second = in.u8();
    return in.ok() ? sim_time_of(c) : std::nullopt;
}

std::string sim_d700(const sim_walk& walk, std::int64_t second)
{
    const sim_fix fix = sim_fix_at(walk, second);
    byte_writer w;
    put_f64(w, fix.place.lat * to_radians);
    put_f64(w, fix.place.lon * to_radians);
    return w.out;
}

std::string sim_d800(const sim_walk& walk, std::int64_t second)
{
    const sim_fix fix = sim_fix_at(walk, second);
    constexpr double geoid_m = 47.9;
    const std::int64_t gps_time = fix.place.time + leap_seconds;
    const std::int64_t week_start = gps_time - ((gps_time % week_s) + week_s) % week_s;
    byte_writer w;
    put_f32(w, fix.place.alt_m + geoid_m);
    put_f32(w, 12);
    put_f32(w, 9);
    put_f32(w, 8);
    w.i16(walk.has_fix ? 3 : 1);
    put_f64(w, static_cast<double>(gps_time - week_start));
    put_f64(w, fix.place.lat * to_radians);
    put_f64(w, fix.place.lon * to_radians);
    put_f32(w, fix.speed_m_s * std::sin(fix.course * to_radians));
    put_f32(w, fix.speed_m_s * std::cos(fix.course * to_radians));
    put_f32(w, 0);
    put_f32(w, -geoid_m); // the ellipsoid's height above sea level
    w.i16(leap_seconds);
    w.i32(static_cast<std::int32_t>(week_start / 86400));
    return w.out;
}

} // namespace velkoro

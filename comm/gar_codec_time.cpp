#include "comm/gar_codec_time.h"

#include "coords/times.h"
#include "core/byte_io.h"
#include "core/platform.h"
#include "core/settings.h"

#include <limits>

namespace velkoro {
namespace {

using seconds_limits = std::numeric_limits<std::int32_t>;

bool fits(std::int64_t seconds)
{
    return seconds >= seconds_limits::min() && seconds <= seconds_limits::max();
}

std::int64_t present()
{
    const date_time now = platform.now();
    return date_seconds(now) - now.utc_offset_s;
}

} // namespace

void gar_wp_time(std::string_view time_bytes, std::string_view comment, std::int32_t& result)
{
    byte_reader in(time_bytes);
    result = in.i32();
    if (result != 0)
        return;
    if (const auto date = date_parse(comment)) {
        std::int64_t seconds = date_seconds(*date);
        if (gar_option(gar_place::Lokalz) != 0)
            seconds = zone_utc(seconds, settings.list_zone);
        if (fits(seconds)) {
            result = static_cast<std::int32_t>(seconds);
            return;
        }
    }
    const std::int64_t now = present();
    result = fits(now) ? static_cast<std::int32_t>(now) : 0;
}

std::int32_t gar_time_known(std::int32_t time)
{
    return time == seconds_limits::max() || time == -1 ? 0 : time;
}

std::optional<std::int32_t> gar_clock_decode(std::string_view data)
{
    byte_reader in(data);
    date_time t;
    t.month = in.u8();
    t.day = in.u8();
    t.year = in.le<std::uint16_t>();
    t.hour = in.i16();
    t.minute = in.u8();
    t.second = in.u8();
    const bool date = in.ok() && t.month >= 1 && t.month <= 12 && t.day >= 1 && t.day <= 31 &&
                      t.hour >= 0 && t.hour < 24 && t.minute < 60 && t.second <= 60 &&
                      t.year >= 1900 && t.year <= 2100;
    if (!date)
        return std::nullopt;
    const std::int64_t seconds = date_seconds(t);
    if (!fits(seconds))
        return std::nullopt;
    return static_cast<std::int32_t>(seconds);
}

std::string gar_clock_encode(std::int32_t seconds)
{
    const date_time t = seconds_date(seconds);
    byte_writer out;
    out.u8(static_cast<std::uint8_t>(t.month));
    out.u8(static_cast<std::uint8_t>(t.day));
    out.le(static_cast<std::uint16_t>(t.year));
    out.i16(static_cast<std::int16_t>(t.hour));
    out.u8(static_cast<std::uint8_t>(t.minute));
    out.u8(static_cast<std::uint8_t>(t.second));
    return out.out;
}

} // namespace velkoro

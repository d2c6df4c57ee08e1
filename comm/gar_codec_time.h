/// Times of Garmin records.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velkoro {

/// The time of a waypoint, seconds since date_base, UTC. It is that of the first four bytes when
/// they are not all 0; else that of a date written in the comment, local time of the list's zone
/// when the option `Lokalz` is on; else the present.
void gar_wp_time(std::string_view time_bytes, std::string_view comment, std::int32_t& result);

/// The time as the store keeps it: receivers write 7FFFFFFF and FFFFFFFF for "none".
std::int32_t gar_time_known(std::int32_t time);

/// D600, the receiver's clock in UTC: seconds since date_base. Nothing when it is no date.
std::optional<std::int32_t> gar_clock_decode(std::string_view data);
std::string gar_clock_encode(std::int32_t seconds);

} // namespace velkoro

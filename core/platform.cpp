#include "core/platform.h"

#include <chrono>
#include <ctime>

namespace velkoro {
namespace {

date_time local_now()
{
    const std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    return {local.tm_year + 1900,
            local.tm_mon + 1,
            local.tm_mday,
            local.tm_hour,
            local.tm_min,
            local.tm_sec,
            static_cast<int>(local.tm_gmtoff)};
}

} // namespace

platform_table::platform_table()
{
    clock = [] {
        const auto t = std::chrono::system_clock::now();
        const double part =
            static_cast<double>((t.time_since_epoch() % std::chrono::seconds(1)).count()) * 1e-9;
        const date_time d = local_now();
        return d.hour * 3600.0 + d.minute * 60.0 + d.second + part;
    };
    ticks = [] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    };
    now = local_now;
}

} // namespace velkoro

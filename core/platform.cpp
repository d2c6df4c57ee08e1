#include "core/platform.h"

#include <chrono>
#include <ctime>

namespace velkoro {
namespace {

using std::chrono::system_clock;

date_time local_time(std::time_t t)
{
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
        // One reading for all parts: std::time may lag behind by a few milliseconds, and a clock
        // that falls back by a second at its turn makes waits run out that have just begun.
        const auto t = system_clock::now();
        const auto whole = std::chrono::floor<std::chrono::seconds>(t);
        const double part = std::chrono::duration<double>(t - whole).count();
        const date_time d = local_time(system_clock::to_time_t(whole));
        return d.hour * 3600.0 + d.minute * 60.0 + d.second + part;
    };
    ticks = [] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    };
    now = [] { return local_time(system_clock::to_time_t(system_clock::now())); };
}

} // namespace velkoro

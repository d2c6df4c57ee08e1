#include "core/platform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

using namespace velkoro;

TEST(Platform, TheClockDoesNotStepAtTheTurnOfASecond)
{
    const platform_table real;
    const double begin = real.clock();
    if (begin > 86390) // the fall at midnight is meant
        std::this_thread::sleep_for(std::chrono::seconds(11));
    const double part = real.clock() - std::floor(real.clock());
    std::this_thread::sleep_for(std::chrono::duration<double>(std::max(0.0, 0.99 - part)));
    double last = real.clock();
    const double until = real.ticks() + 0.05;
    while (real.ticks() < until) {
        const double now = real.clock();
        ASSERT_GE(now, last);
        ASSERT_LT(now - last, 0.9);
        last = now;
    }
}

TEST(Platform, TheClockAndTheDateAgree)
{
    const platform_table real;
    const date_time d = real.now();
    const double clock = real.clock();
    const double date = d.hour * 3600.0 + d.minute * 60.0 + d.second;
    EXPECT_LT(std::fmod(clock - date + 86400, 86400), 5.0);
}

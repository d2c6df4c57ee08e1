#include "coords/times.h"

#include "core/settings.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <random>

namespace velkoro {
namespace {

class Times : public testing::Test {
protected:
    scripted_platform user{};
    Times() { times = {}; }
    ~Times() override { times = {}; }
    static std::int64_t at(int y, int mo, int d, int h, int mi = 0, int s = 0)
    {
        return date_seconds({y, mo, d, h, mi, s, 0});
    }
    static std::string local(std::int64_t utc, const char* rule)
    {
        return date_pic(seconds_date(zone_local(utc, rule)), "yyyy-mm-dd hh:nn:ss");
    }
};

constexpr const char* berlin = "+1 L3 L10";
constexpr const char* sydney = "+10 L10 L3";

TEST_F(Times, CountFromTheLastDayOf1989)
{
    EXPECT_EQ(day_number(1989, 12, 31), 0);
    EXPECT_EQ(at(1990, 1, 1, 0), 86400);
    EXPECT_EQ(at(1989, 12, 30, 23, 59, 59), -1);
    EXPECT_EQ(date_pic(seconds_date(-1), "d.m.yyyy h:nn:ss"), "30.12.1989 23:59:59");
    EXPECT_EQ(date_pic(seconds_date(0), "dd-mmm-yy hh:nn"), "31-DEC-89 00:00");
}

TEST_F(Times, BerlinChangesAtOneUtc)
{
    EXPECT_EQ(local(at(2001, 3, 25, 0, 59, 59), berlin), "2001-03-25 01:59:59");
    EXPECT_EQ(local(at(2001, 3, 25, 1), berlin), "2001-03-25 03:00:00");
    EXPECT_EQ(local(at(2001, 10, 28, 0, 59, 59), berlin), "2001-10-28 02:59:59");
    EXPECT_EQ(local(at(2001, 10, 28, 1), berlin), "2001-10-28 02:00:00");
}

TEST_F(Times, SydneyHasItsSummerAcrossTheTurnOfTheYear)
{
    EXPECT_EQ(local(at(2001, 3, 24, 15, 59, 59), sydney), "2001-03-25 02:59:59");
    EXPECT_EQ(local(at(2001, 3, 24, 16), sydney), "2001-03-25 02:00:00");
    EXPECT_EQ(local(at(2001, 10, 27, 16), sydney), "2001-10-28 03:00:00");
    EXPECT_EQ(local(at(2001, 12, 31, 14), sydney), "2002-01-01 01:00:00");
}

TEST_F(Times, UtcReturnsOutsideTheDoubleHour)
{
    std::mt19937 random(1);
    for (const std::string rule : {"+0", berlin, sydney, "-5 F4 L10", "+5.5", "+12.75 L9 F4"})
        for (int i = 0; i < 20000; ++i) {
            const std::int64_t utc = static_cast<std::int64_t>(random() % 1600000000U);
            const zone_year z = zone_rule(rule, seconds_date(utc + 36000).year);
            if (z.daylight && utc >= z.end - 3600 && utc < z.end + 3600)
                continue;
            ASSERT_EQ(zone_utc(zone_local(utc, rule), rule), utc) << rule;
        }
}

TEST_F(Times, FractionsAndCommasAreUnderstood)
{
    EXPECT_EQ(zone_offset(0, "+5,75"), 20700);
    EXPECT_EQ(zone_offset(0, "-3.5"), -12600);
    EXPECT_EQ(zone_offset(0, ""), 0);
}

TEST_F(Times, AMonthThatIsNoneSwitchesDaylightOff)
{
    EXPECT_EQ(zone_offset(at(2001, 7, 1, 0), "+1 L3 L13"), 3600);
    EXPECT_EQ(user.count(1830), 1);
    EXPECT_EQ(zone_offset(at(2002, 7, 1, 0), "+1 L3 L13"), 3600);
    EXPECT_EQ(user.count(1830), 1);
}

TEST_F(Times, SundaysAreFound)
{
    EXPECT_EQ(zone_rule("+0 F4 S3", 2007).start / 86400, day_number(2007, 4, 1));
    EXPECT_EQ(zone_rule("-5 S3 F11", 2026).start / 86400, day_number(2026, 3, 8));
    EXPECT_EQ(zone_rule("-5 S3 F11", 2026).end / 86400, day_number(2026, 11, 1));
    EXPECT_EQ(zone_rule("+0 T5 L12", 2026).start / 86400, day_number(2026, 5, 17));
    EXPECT_EQ(zone_rule("+0 T5 L12", 2026).end / 86400, day_number(2026, 12, 27));
}

TEST_F(Times, DatesAreReadWithNumbersAndNamesOfAllLanguages)
{
    settings.month_names = "JAN,FEB,MAR,APR,MAY,JUN,JUL,AUG,SEP,OCT,NOV,DEC,"
                           "JAN,FEB,MRZ,APR,MAJ,JUN,JUL,AUG,SEP,OKT,NOV,DEZ";
    const date_time want{2026, 12, 5, 0, 0, 0, 0};
    for (const char* t : {"2026-12-05", "5.12.2026", "05/12/26", "5 Dez 2026", "DEC 5 2026",
                          "5. dezember 2026", "5-DEC-26"}) {
        const auto d = date_parse(t);
        ASSERT_TRUE(d.has_value()) << t;
        EXPECT_EQ(date_seconds(*d), date_seconds(want)) << t;
    }
    const auto timed = date_parse("5.12.2026 7:08:09");
    ASSERT_TRUE(timed.has_value());
    EXPECT_EQ(date_pic(*timed, "hhnnss"), "070809");
    for (const char* t : {"", "5.12", "31.2.2026", "5.13.2026", "5 XYZ 2026", "5.12.2026 25:00",
                          "5.12.2026 7", "5.12.2026 7:08:09:1", "12345.1.1", "a"})
        EXPECT_FALSE(date_parse(t).has_value()) << t;
}

TEST(HoursText, ShowsDaysFromTwentyFourHoursOn)
{
    EXPECT_EQ(hours_text(0), "0:00");
    EXPECT_EQ(hours_text(29), "0:00");
    EXPECT_EQ(hours_text(30), "0:01");
    EXPECT_EQ(hours_text(3600 * 23 + 59 * 60), "23:59");
    EXPECT_EQ(hours_text(86400), "1d 0:00");
    EXPECT_EQ(hours_text(2 * 86400 + 3 * 3600 + 300), "2d 3:05");
    EXPECT_EQ(hours_text(-90 * 60), "-1:30");
}

} // namespace
} // namespace velkoro

#include "core/num_text.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <stdexcept>

namespace velkoro {
namespace {

TEST(Val, ReadsTheNumberAtTheFrontAndIgnoresTheRest)
{
    EXPECT_EQ(val("12"), 12.0);
    EXPECT_EQ(val("  -3.25xyz"), -3.25);
    EXPECT_EQ(val("+7"), 7.0);
    EXPECT_EQ(val(".5"), 0.5);
    EXPECT_EQ(val("5."), 5.0);
    EXPECT_EQ(val("1.2.3"), 1.2);
    EXPECT_EQ(val("1e3"), 1000.0);
    EXPECT_EQ(val("1D-2 "), 0.01);
    EXPECT_EQ(val("48 12"), 48.0);
    EXPECT_EQ(val("0.1"), 0.1);
    EXPECT_EQ(val("123456789012345678901234567890"), 123456789012345678901234567890.0);
}

TEST(Val, GivesZeroWithoutANumber)
{
    for (const char* t : {"", " ", "-", "+", ".", "-.", "E5", "abc", "--1", ",5", "nan", "inf"})
        EXPECT_EQ(val(t), 0.0) << t;
}

TEST(Val, LeavesAnExponentWithoutDigitsAlone)
{
    EXPECT_EQ(val("2E"), 2.0);
    EXPECT_EQ(val("2E+"), 2.0);
    EXPECT_EQ(val("2 E3"), 2.0);
}

TEST(Val, TakesOnlyThePointAsDecimalSign)
{
    EXPECT_EQ(val("1,5"), 1.0);
    EXPECT_EQ(val(comma_to_dot("1,5")), 1.5);
}

TEST(Val, IsAlwaysFinite)
{
    EXPECT_EQ(val("1e999"), std::numeric_limits<double>::max());
    EXPECT_EQ(val("-1e999999999999"), -std::numeric_limits<double>::max());
    EXPECT_EQ(val("1e-999"), 0.0);
    EXPECT_EQ(val("0e999"), 0.0);
    EXPECT_EQ(val(std::string(400, '9')), std::numeric_limits<double>::max());
    EXPECT_EQ(val("0." + std::string(400, '0') + "1"), 0.0);
}

TEST(Val, ReadsBackEveryDoubleWrittenWithSeventeenDigits)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const double v =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 200) - 150);
        char t[64];
        std::snprintf(t, sizeof t, "%.17g", v);
        ASSERT_EQ(val(t), v) << t;
        ASSERT_TRUE(is_number(t)) << t;
    }
}

TEST(CommaToDot, ReplacesTheFirstCommaOnly)
{
    EXPECT_EQ(comma_to_dot("1,2,3"), "1.2,3");
    EXPECT_EQ(comma_to_dot("12"), "12");
}

TEST(IsNumber, WantsOneWholeNumber)
{
    for (const char* t : {"1", "-1", "+1.5", " 1 ", ".5", "5.", "1E5"})
        EXPECT_TRUE(is_number(t)) << t;
    for (const char* t : {"", " ", "-", ".", "1 2", "1x", "1E", "x1", "1,5", "--1"})
        EXPECT_FALSE(is_number(t)) << t;
}

TEST(Pic, ShowsZerosAndNeededDigits)
{
    EXPECT_EQ(pic(0, "0"), "0");
    EXPECT_EQ(pic(7, "00000"), "00007");
    EXPECT_EQ(pic(123456, "00000"), "123456");
    EXPECT_EQ(pic(8.12345, "000.00000"), "008.12345");
    EXPECT_EQ(pic(0, "##0.0"), "0.0");
    EXPECT_EQ(pic(12.34, "##0.0"), "12.3");
    EXPECT_EQ(pic(1234.56, "##0.0"), "1234.6");
    EXPECT_EQ(pic(0, "##"), "");
    EXPECT_EQ(pic(3, "##"), "3");
    EXPECT_EQ(pic(1.5, "0.0##"), "1.5");
    EXPECT_EQ(pic(1.23456, "0.0##"), "1.235");
    EXPECT_EQ(pic(0.5, "#.00"), ".50");
}

TEST(Pic, CopiesWhatStandsAroundTheDigits)
{
    EXPECT_EQ(pic(5, "0 "), "5 ");
    EXPECT_EQ(pic(-5, "N 00\xB0"), "-N 05\xB0");
    EXPECT_EQ(pic(5, "abc"), "abc");
    EXPECT_EQ(pic(5, ""), "");
}

TEST(Pic, RoundsHalfAwayFromZeroOnTheLastDigitShown)
{
    EXPECT_EQ(pic(0.5, "0"), "1");
    EXPECT_EQ(pic(1.5, "0"), "2");
    EXPECT_EQ(pic(2.5, "0"), "3");
    EXPECT_EQ(pic(-2.5, "0"), "-3");
    EXPECT_EQ(pic(0.125, "0.00"), "0.13");
    EXPECT_EQ(pic(2.4999999, "0"), "2");
    EXPECT_EQ(pic(9.995, "0.00"), "10.00");
    EXPECT_EQ(pic(0.703125, "00.00000"), "00.70313");
}

TEST(Pic, TakesTheValueAsWrittenInFifteenDigits)
{
    EXPECT_EQ(pic(1.005, "0.00"), "1.01");
    EXPECT_EQ(pic(2.675, "0.00"), "2.68");
    EXPECT_EQ(pic(1.00499999999999, "0.00"), "1.00"); // the fifteen digits say less than half
}

TEST(Pic, ShowsAResidueOfZeroWithoutSign)
{
    EXPECT_EQ(pic(-0.0, "0"), "0");
    EXPECT_EQ(pic(-0.4, "0"), "0");
    EXPECT_EQ(pic(-0.0004, "0.000"), "0.000");
    EXPECT_EQ(pic(-0.0005, "0.000"), "-0.001");
}

TEST(Pic, HasNoTextForWhatIsNoNumber)
{
    EXPECT_EQ(pic(std::nan(""), "0"), "");
    EXPECT_EQ(pic(std::numeric_limits<double>::infinity(), "0.0"), "");
}

TEST(Pic, ShowsAllDigitsOfLargeValues)
{
    EXPECT_EQ(pic(123456789012345678.0, "0"), "123456789012345680");
    EXPECT_EQ(pic(999999999999999.0, "0"), "999999999999999");
    EXPECT_EQ(pic(1e300, "0.0").size(), 303U);
    EXPECT_EQ(pic(-1e22, "0.00"), "-10000000000000000000000.00");
}

TEST(Pic, AgreesWithTheExactDecimalOfRandomValues)
{
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> value(-1e7, 1e7);
    const char* pictures[] = {"0", "0.0", "0.00", "0.000", "0.0000", "0.00000"};
    for (int i = 0; i < 200000; ++i) {
        const double v = value(random);
        const int d = i % 6;
        const double scaled = std::fabs(v) * std::pow(10.0, d);
        if (std::fabs(scaled - std::floor(scaled) - 0.5) < 0.01)
            continue; // a half in fifteen digits
        char t[64];
        std::snprintf(t, sizeof t, "%.*f", d, v);
        const std::string want =
            std::string_view(t).find_first_of("123456789") == std::string_view::npos && t[0] == '-'
                ? t + 1
                : t;
        ASSERT_EQ(pic(v, pictures[d]), want) << v;
    }
}

TEST(Pic, DoesNotFollowTheLocale)
{
    const std::string old = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "C.UTF-8"})
        if (std::setlocale(LC_ALL, name) != nullptr) {
            EXPECT_EQ(pic(1234.5, "0.0"), "1234.5") << name;
            EXPECT_EQ(val("1234.5"), 1234.5) << name;
        }
    std::setlocale(LC_ALL, old.c_str());
}

TEST(Rounding, GoesToTheEvenNeighbourOrTowardsZero)
{
    EXPECT_EQ(round_even(0.5), 0.0);
    EXPECT_EQ(round_even(1.5), 2.0);
    EXPECT_EQ(round_even(2.5), 2.0);
    EXPECT_EQ(round_even(-2.5), -2.0);
    EXPECT_EQ(fix(2.9), 2.0);
    EXPECT_EQ(fix(-2.9), -2.0);
}

TEST(Narrowing, ThrowsOutsideTheRange)
{
    EXPECT_EQ(to_i16(32767.4), 32767);
    EXPECT_THROW(to_i16(32767.6), std::overflow_error);
    EXPECT_EQ(to_i16(-32768.5), -32768);
    EXPECT_EQ(to_i32(2147483647.4), 2147483647);
    EXPECT_THROW(to_i32(2147483647.5), std::overflow_error);
    EXPECT_THROW(to_i32(std::nan("")), std::overflow_error);
    EXPECT_THROW(to_i32(std::numeric_limits<double>::infinity()), std::overflow_error);
    EXPECT_THROW(to_i16(std::int64_t{32768}), std::overflow_error);
    EXPECT_EQ(to_i16(std::int64_t{-32768}), -32768);
    EXPECT_THROW(to_i32(std::int64_t{1} << 31), std::overflow_error);
    EXPECT_EQ(to_i32((std::int64_t{1} << 31) - 1), 2147483647);
}

} // namespace
} // namespace velkoro

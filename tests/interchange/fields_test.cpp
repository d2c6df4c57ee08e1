#include "interchange/fields.h"

#include "coords/times.h"
#include "core/code_page.h"
#include "core/store.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

using namespace velkoro;

namespace {

using four = std::array<std::string_view, 4>;

std::int32_t at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return static_cast<std::int32_t>(date_seconds({.year = year,
                                                   .month = month,
                                                   .day = day,
                                                   .hour = hour,
                                                   .minute = minute,
                                                   .second = second}));
}

} // namespace

TEST(NextField, EndsAtTheDelimiter)
{
    std::string_view text = "A, B,C";
    EXPECT_EQ(next_field(text, ","), "A");
    EXPECT_EQ(text, " B,C");
    EXPECT_EQ(next_field(text, ","), " B");
    EXPECT_EQ(next_field(text, ","), "C");
    EXPECT_EQ(text, "");
    EXPECT_EQ(next_field(text, ","), "");
}

TEST(NextField, EndsAtACarriageReturnAndTakesTheLineFeedBehindIt)
{
    std::string_view text = "A\r\nB,C";
    EXPECT_EQ(next_field(text, ","), "A");
    EXPECT_EQ(text, "B,C");
    text = "A\rB";
    EXPECT_EQ(next_field(text, ","), "A");
    EXPECT_EQ(text, "B");
}

TEST(NextField, OfBlanksTrimsTheTextFirst)
{
    std::string_view text = "  A  B ";
    EXPECT_EQ(next_field(text, " "), "A");
    EXPECT_EQ(next_field(text, " "), "B");
    EXPECT_EQ(text, "");
}

TEST(Fields, AreTrimmedAndMissingOnesAreEmpty)
{
    four f{"x", "x", "x", "x"};
    EXPECT_EQ(split_fields(" a ,\tb", ',', f), 2U);
    EXPECT_EQ(f, (four{"a", "b", "", ""}));
    EXPECT_EQ(split_fields("1,2,3,4,5 ", ',', f), 4U);
    EXPECT_EQ(f, (four{"1", "2", "3", "4,5"}));
    EXPECT_EQ(split_fields("", ',', f), 1U);
    EXPECT_EQ(f, (four{"", "", "", ""}));
}

TEST(Fields, InQuotationMarksKeepDelimiters)
{
    four f;
    EXPECT_EQ(split_quoted("\"a, b\" , c ,\"\",\"d \"", ',', f), 4U);
    EXPECT_EQ(f, (four{"a, b", "c", "", "d "}));
    EXPECT_EQ(split_quoted("\"open, end", ',', f), 1U);
    EXPECT_EQ(f[0], "open, end");
    EXPECT_EQ(split_quoted("\"", ',', f), 1U);
    EXPECT_EQ(split_quoted("1,2,3,4,5", ',', f), 4U);
    EXPECT_EQ(f[3], "4,5");
}

TEST(Fields, OfWordsStandBetweenBlanksAndTabs)
{
    four f;
    EXPECT_EQ(split_words("  W \t A  B", f), 3U);
    EXPECT_EQ(f, (four{"W", "A", "B", ""}));
    EXPECT_EQ(split_words("1 2 3 4 and more", f), 4U);
    EXPECT_EQ(f[3], "4 and more");
}

TEST(Fields, OfColumnsStopAtTheEndOfTheLine)
{
    EXPECT_EQ(columns("W  ALPHA  N48", 4, 9), "ALPHA");
    EXPECT_EQ(columns("W  ALPHA  N48", 11), "N48");
    EXPECT_EQ(columns("W  ALPHA", 11, 20), "");
    EXPECT_EQ(columns("W", 0, 3), "");
}

TEST(Numbers, AreWholeFields)
{
    double d = 7;
    EXPECT_TRUE(to_number(" +1.5 ", d));
    EXPECT_EQ(d, 1.5);
    EXPECT_TRUE(to_number("-9999", d));
    EXPECT_EQ(d, -9999);
    for (const char* text : {"", "1,5", "1 2", "nan", "inf", "0x10", "+-1", "abc", "1e999"})
        EXPECT_FALSE(to_number(text, d)) << text;
    EXPECT_EQ(d, -9999);
    int n = 3;
    EXPECT_TRUE(to_number("04 ", n));
    EXPECT_EQ(n, 4);
    EXPECT_FALSE(to_number("4.5", n));
}

TEST(Numbers, BecomeAltitudesOfTheStore)
{
    EXPECT_EQ(feet_to_altitude(1703), 519);
    EXPECT_EQ(feet_to_altitude(-1384), -422);
    EXPECT_EQ(to_altitude(1e9), alt_unknown);
    EXPECT_EQ(to_altitude(-40000), alt_unknown);
    EXPECT_EQ(to_proximity(500), 5);
    EXPECT_EQ(to_proximity(20), 1);
    EXPECT_EQ(to_proximity(0), 0);
    EXPECT_EQ(to_proximity(-1), 0);
}

TEST(Angles, AreReadInEveryUsualForm)
{
    struct {
        std::string text;
        const char* letters;
        double degrees;
    } const rows[] = {
        {"48.12345", "NS", 48.12345},
        {" -43.21049 ", "EW", -43.21049},
        {"+011.5", "EW", 11.5},
        {"N48.12345", "NS", 48.12345},
        {"s 22.5", "NS", -22.5},
        {"22.5S", "NS", -22.5},
        {"N48°07.407'"_w, "NS", 48.12345},
        {"N48 07.407", "NS", 48.12345},
        {"W000 08.436", "EW", -0.1406},
        {"E011°34'04.4\""_w, "EW", 11 + 34.0 / 60 + 4.4 / 3600},
        {"N 48°60'00.0\""_w, "NS", 49}, // a place just below the degree
        {"48 07 24.42 N", "NS", 48.12345},
        {"48:07:24.42", "NS", 48.12345},
        {"-0 30.0", "NS", -0.5},
        {"W-12", "EW", -12},
        {"180", "EW", 180},
    };
    for (const auto& row : rows) {
        double degrees = 0;
        EXPECT_TRUE(to_angle(row.text, row.letters, degrees)) << row.text;
        EXPECT_NEAR(degrees, row.degrees, 1e-9) << row.text;
    }
}

TEST(Angles, ThatAreNoneAreTold)
{
    double degrees = 5;
    for (const char* text : {"", "N", "90.01", "abc", "48 60.1", "48 7 61", "48.5 7", "1 2 3 4",
                             "48,5", "E48", "--3", "nan", "48 -7", "N-12", "1e400"})
        EXPECT_FALSE(to_angle(text, "NS", degrees)) << text;
    EXPECT_EQ(degrees, 5);
}

TEST(Angles, AreFoundInARowOfWords)
{
    struct one_row {
        std::string_view row{}, ahead{}, behind{};
        double lat = 0, lon = 0;
    };
    const std::vector<one_row> rows{
        {"A N48.5 W11.25 rest of it", "A", "rest of it", 48.5, -11.25},
        {"A B   S48 30.0 E011 15.0   0 May", "A B", "0 May", -48.5, 11.25},
        {"n48 30 0.0 e11 15 0.0", "", "", 48.5, 11.25},
        {"N4 S5 N48.5 W11.25", "N4 S5", "", 48.5, -11.25},
        {"A N48 E11 0 03.05.02", "A", "03.05.02", 48, 11},
    };
    for (const one_row& r : rows) {
        double lat = 0, lon = 0;
        std::string_view ahead, behind;
        EXPECT_TRUE(find_angles(r.row, 0, lat, lon, ahead, behind)) << r.row;
        EXPECT_EQ(lat, r.lat) << r.row;
        EXPECT_EQ(lon, r.lon) << r.row;
        EXPECT_EQ(ahead, r.ahead);
        EXPECT_EQ(behind, r.behind);
    }
    double lat = 7, lon = 7;
    std::string_view ahead = "x", behind = "x";
    for (const char* text : {"", "A", "N48.5", "N48.5 11.25", "AN48.5 E11.25", "N48 60.1 E11 0.0",
                             "N91.0 E11.0", "N48.5 x E11.0", "E11.25 N48.5"})
        EXPECT_FALSE(find_angles(text, 0, lat, lon, ahead, behind)) << text;
    EXPECT_FALSE(find_angles("N48.5 W11.25", 1, lat, lon, ahead, behind)) << "behind its start";
    EXPECT_FALSE(find_angles("N48.5 W11.25", 99, lat, lon, ahead, behind));
    EXPECT_EQ(lat, 7);
    EXPECT_EQ(ahead, "x");
}

TEST(Fields, OfNumberedNamesLoseTheNumber)
{
    EXPECT_EQ(behind_number("  01   NAME OF IT "), "NAME OF IT");
    EXPECT_EQ(behind_number("001 2 NAMES"), "2 NAMES");
    EXPECT_EQ(behind_number("NAME 01"), "NAME 01");
    EXPECT_EQ(behind_number("2003 TOUR"), "2003 TOUR");
    EXPECT_EQ(behind_number("1A"), "1A");
    EXPECT_EQ(behind_number("03"), "");
    EXPECT_EQ(behind_number(""), "");
}

TEST(Times, OfDayNumbersAreRoundedToTheNearestSecond)
{
    EXPECT_EQ(day_number_time("37743.3440972"), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(day_number_time("37743.34410"), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(day_number_time("0"), 0);
    EXPECT_EQ(day_number_time(""), 0);
    EXPECT_EQ(day_number_time("1e300"), 0);
}

TEST(Times, AreReadInTheFormsOfTheFormats)
{
    const auto order = date_order::month_day_year;
    EXPECT_EQ(to_time("02-MAY-03", "08:15:30"), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(to_time("02-May-03 08:15:30"), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(to_time("05/02/2003", "08:15:30", order), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(to_time("5/2/2003 8:15:30 PM", {}, order), at(2003, 5, 2, 20, 15, 30));
    EXPECT_EQ(to_time("5/2/2003 12:15:30 AM", {}, order), at(2003, 5, 2, 0, 15, 30));
    EXPECT_EQ(to_time("02.05.2003 08:15:30 "), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(to_time("20030502"), at(2003, 5, 2));
    EXPECT_EQ(to_time("2003-05-02T08:15:30Z"), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(to_time("03.05.02", "08:15", date_order::year_month_day), at(2003, 5, 2, 8, 15));
    EXPECT_EQ(to_time("2003-05-02", "08:15:29.6"), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(to_time("2003-05-02T08:15:30.499Z"), at(2003, 5, 2, 8, 15, 30));
    EXPECT_EQ(to_time("May 02 2003 08:15"), at(2003, 5, 2, 8, 15));
}

TEST(Times, OfTwoDigitYearsLieIn1980To2079)
{
    EXPECT_EQ(to_time("01-JAN-80"), at(1980, 1, 1));
    EXPECT_EQ(to_time("01-JAN-99"), at(1999, 1, 1));
    EXPECT_EQ(to_time("01-JAN-00"), at(2000, 1, 1));
    EXPECT_EQ(to_time("01-JAN-57"), at(2057, 1, 1));
}

TEST(Times, OfTheReceiversEpochAreNone)
{
    EXPECT_EQ(to_time("31-DEC-89", "00:00:00"), 0);
}

TEST(Times, ThatAreNoneAreTold)
{
    for (const char* text : {"", "00/00/00", "31.02.2003", "1.1", "abc", "1.1.12345", "01-QQQ-03",
                             "1.1.2003 25:00", "1.1.2003 8", "123456789"})
        EXPECT_EQ(to_time(text), std::nullopt) << text;
}

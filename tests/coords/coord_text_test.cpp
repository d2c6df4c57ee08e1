#include "tests/coords/coord_fixture.h"

#include "core/num_text.h"

#include <cmath>
#include <limits>
#include <random>

namespace velkoro {
namespace {

constexpr double pi = 3.14159265358979323846;

class AngleText : public CoordTest {
protected:
    bool good = false;
    double angle(const std::string& text, const char* letters = "NS")
    {
        return text_to_angle(text, letters, &good) * 180 / pi;
    }
};

TEST_F(AngleText, ShowsTheThreeFormats)
{
    EXPECT_EQ(angle_to_text(48.12345, 'N', 0), "N 48.12345\xB0");
    EXPECT_EQ(angle_to_text(8.12345, 'E', 0), "E008.12345\xB0");
    EXPECT_EQ(angle_to_text(-8.5, 'E', 1), "W008\xB0"
                                           "30.000'");
    EXPECT_EQ(angle_to_text(-48.2085, 'N', 2), "S 48\xB0"
                                               "12'30.6\"");
    EXPECT_EQ(angle_to_text(0, 'N', 1), "N 00\xB0"
                                        "00.000'");
    EXPECT_EQ(angle_to_text(180, 'E', 0), "E180.00000\xB0");
    EXPECT_EQ(angle_to_text(123.5, 'E', 1), "E123\xB0"
                                            "30.000'");
    EXPECT_EQ(angle_to_text(99.999999, 'E', 0), "E100.00000\xB0");
}

TEST_F(AngleText, MinutesCarryIntoTheDegrees)
{
    EXPECT_EQ(angle_to_text(47 + 59.9995 / 60, 'N', 1), "N 48\xB0"
                                                        "00.000'");
    EXPECT_EQ(angle_to_text(-(47 + 59.9995 / 60), 'N', 1), "S 48\xB0"
                                                           "00.000'");
    EXPECT_EQ(angle_to_text(-(9 + 59.9999 / 60), 'E', 2), "W010\xB0"
                                                          "00'00.0\"");
}

TEST_F(AngleText, SecondsCarryIntoAMinuteOfSixty)
{
    const double just = 59 + 59.0 / 60;
    EXPECT_EQ(angle_to_text(just + 59.961 / 3600, 'N', 2), "N 59\xB0"
                                                           "60'00.0\"");
    // The minute test comes first: from 59.964 seconds on the degree is full.
    EXPECT_EQ(angle_to_text(just + 59.97 / 3600, 'N', 2), "N 60\xB0"
                                                          "00'00.0\"");
    EXPECT_EQ(angle_to_text(48 + 30.0 / 60 + 59.97 / 3600, 'N', 2), "N 48\xB0"
                                                                    "31'00.0\"");
    EXPECT_EQ(angle_to_text(just + 59.9 / 3600, 'N', 2), "N 59\xB0"
                                                         "59'59.9\"");
}

TEST_F(AngleText, ReadsWhatPeopleWrite)
{
    const std::pair<const char*, double> forms[] = {
        {"N48 12.345", 48 + 12.345 / 60},
        {"48\xB0"
         "12'30.5\"S",
         -(48 + 12.0 / 60 + 30.5 / 3600)},
        {"-8,5", -8.5},
        {"48.5S", -48.5},
        {"S48.5", -48.5},
        {"s 48.5", -48.5},
        {"48.5 n", 48.5},
        {"N 48.12345\xB0", 48.12345},
        {"S 48.12345\xB0", -48.12345},
        {"", 0},
        {"48 ", 48},
        {"48\xB0", 48},
        {"48:30", 48.5},
        {"-48 30", -48.5},
        {"-0 30", -0.5},
        {"48.5\t12", 48.5},
        {"  48.5  ", 48.5},
        {"N 48\xB0"
         "30.000'",
         48.5},
    };
    for (const auto& [text, value] : forms) {
        EXPECT_NEAR(angle(text), value, 1e-12) << text;
        EXPECT_TRUE(good) << text;
    }
    EXPECT_NEAR(angle("E 8 30", "EW"), 8.5, 1e-12);
    EXPECT_NEAR(angle("8 30 W", "EW"), -8.5, 1e-12);
    // However long it is written.
    EXPECT_NEAR(angle("South   " + std::string(300, ' ') + "48\xB0" + std::string(300, ' ') + "30"),
                -0.5, 1e-12); // with "outh" in front the degrees are no number
    EXPECT_FALSE(good);
    EXPECT_NEAR(angle(std::string(300, ' ') + "48\xB0" + std::string(300, ' ') + "30'" +
                      std::string(300, ' ') + "36\" S"),
                -48.51, 1e-12);
    EXPECT_TRUE(good);
    EXPECT_EQ(user.beeps, 1);
}

TEST_F(AngleText, PlainDegreesReadAsTheyDoByTheRules)
{
    // What stands behind a tab is cut off, so the same text goes through all the rules.
    std::mt19937 random(8);
    const std::string letters = "0123456789012345678901234567899..--+ NSEW\xB0";
    int read = 0;
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        for (auto n = random() % 9; n > 0; --n)
            text += letters[random() % letters.size()];
        for (const char* sides : {"NS", "EW"}) {
            bool plain_good = false, good_by_rules = false;
            const double plain = text_to_angle(text, sides, &plain_good);
            ASSERT_EQ(plain, text_to_angle(text + "\t", sides, &good_by_rules)) << text;
            ASSERT_EQ(plain_good, good_by_rules) << text;
            read += plain_good;
        }
    }
    EXPECT_GT(read, 10000);
    for (const double degrees : {0.0, 8.12345, 48.5, 89.99999, -0.00001, -8.5, -90.0})
        for (const char letter : {'N', 'E'}) {
            const std::string text = angle_to_text(degrees, letter, 0);
            const char* const sides = letter == 'N' ? "NS" : "EW";
            EXPECT_EQ(text_to_angle(text, sides), text_to_angle(text + "\t", sides)) << text;
        }
}

TEST_F(AngleText, BeepsOutsideTheRangeAndReturnsTheValue)
{
    EXPECT_NEAR(angle("90.5"), 90.5, 1e-12);
    EXPECT_FALSE(good);
    EXPECT_EQ(user.beeps, 1);
    EXPECT_NEAR(angle("90"), 90, 1e-12);
    EXPECT_TRUE(good);
    EXPECT_NEAR(angle("W181", "EW"), -181, 1e-12);
    EXPECT_NEAR(angle("x48 30"), 0.5, 1e-12); // degrees that are no number
    EXPECT_FALSE(good);
    EXPECT_EQ(user.beeps, 3);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(angle("abc"), 0);
    EXPECT_FALSE(good);
    EXPECT_EQ(user.beeps, 3);
}

TEST(GridText, WithoutAPointIsPaddedToItsDigits)
{
    EXPECT_EQ(grid_text_to_m("05", 7), 500000);
    EXPECT_EQ(grid_text_to_m("123", 5), 12300);
    EXPECT_EQ(grid_text_to_m("0500000", 7), 500000);
    EXPECT_EQ(grid_text_to_m("12345678", 7), 12345678);
    EXPECT_EQ(grid_text_to_m(".8E881", 7), std::numeric_limits<double>::max());
    EXPECT_EQ(grid_text_to_m("-.8E881", 7), -std::numeric_limits<double>::max());
    EXPECT_EQ(grid_text_to_m("-05", 7), -500000);
    EXPECT_EQ(grid_text_to_m("", 7), 0);
    EXPECT_EQ(grid_text_to_m(" 05 ", 7), 500000);
    EXPECT_EQ(grid_text_to_m("05\t7", 7), 500000);
    EXPECT_EQ(grid_text_to_m("x", 7), 0);
}

TEST(GridText, WithAPointIsKilometres)
{
    EXPECT_EQ(grid_text_to_m("123.456", 7), 123456);
    EXPECT_EQ(grid_text_to_m("123,456", 7), 123456);
    EXPECT_EQ(grid_text_to_m("1.", 7), 1000);
    EXPECT_EQ(grid_text_to_m("-0.5", 7), -500);
    EXPECT_EQ(grid_text_to_m("0.0005", 7), 0); // halves go to the even metre
    EXPECT_EQ(grid_text_to_m("0.0015", 7), 2);
}

class CoordText : public CoordTest {
protected:
    pos_rec read(const std::string& z, const std::string& e, const std::string& n, int fmt)
    {
        pos_rec p{-1, -1};
        good = text_to_pos(z, e, n, p, fmt);
        return p;
    }
    bool good = false;
};

TEST_F(CoordText, MillimetresOnTheMapFollowTheTab)
{
    EXPECT_EQ(grid_text_rel("123.456\t5"), 250); // 1:50000
    EXPECT_EQ(grid_text_rel("123.456"), 0);
    EXPECT_EQ(grid_text_rel("1\t-2,5"), -125);
    settings.scale = 25000;
    EXPECT_EQ(grid_text_rel("1\t4"), 100);
    settings.scale = 50000;
    EXPECT_EQ(read("32U", "0562.470\t5", "5705.813\t-2", fmt_utm),
              read("32U", "0562.720", "5705.713", fmt_utm));
    const pos_rec base = read("", "E010.00000\xB0", "N 50.00000\xB0", fmt_degrees);
    const pos_rec off = read("", "E010.00000\xB0\t20", "N 50.00000\xB0\t-10", fmt_degrees);
    EXPECT_NEAR(dist_chord(off, base).distance, std::hypot(1.0, 0.5), 1e-3);
    EXPECT_NEAR(dist_chord(off, base).bearing, 180 - std::atan2(1.0, 0.5) * 180 / pi, 0.1);
}

TEST_F(CoordText, DegreeFormatsReturn)
{
    std::mt19937 random(5);
    for (int i = 0; i < 30000; ++i) {
        const pos_rec p = {static_cast<std::int32_t>(random()) / 2,
                           static_cast<std::int32_t>(random())};
        const int fmt = i % 3;
        pos_to_text(p, zone, east, north, 0, fmt);
        pos_rec back;
        ASSERT_TRUE(text_to_pos(zone, east, north, back, fmt)) << east << " " << north;
        ASSERT_LT(apart(p, back), 3.1) << east << " " << north;
    }
    EXPECT_EQ(user.beeps, 0);
}

TEST_F(CoordText, ZoneTextsWithOneAndTwoDigitsReadAlike)
{
    EXPECT_EQ(read("5N", "0500000", "1000000", fmt_utm),
              read("05N", "0500000", "1000000", fmt_utm));
    EXPECT_TRUE(good);
    EXPECT_EQ(read("5n", "0500000", "1000000", fmt_utm),
              read("05N", "0500000", "1000000", fmt_utm));
    EXPECT_EQ(read("4QFJ", "12345", "67890", fmt_mgrs), read("04QFJ", "12345", "67890", fmt_mgrs));
}

TEST_F(CoordText, TheLeadingZeroOfUtmIsPutInOnRequest)
{
    const pos_rec want = read("32U", "0500000", "5500000", fmt_utm);
    settings.utm_zero = true;
    EXPECT_EQ(read("32U", "0500000", "5500000", fmt_utm), want);
    EXPECT_EQ(read("32U", "500000", "5500000", fmt_utm), want);
    EXPECT_EQ(read("32U", "500.000", "5500000", fmt_utm), want);
    EXPECT_EQ(read("32U", " 0500000", "5500000", fmt_utm), want);
    EXPECT_EQ(read("32U", " 500000", "5500000", fmt_utm), want);
    settings.utm_zero = false;
    EXPECT_NE(read("32U", "500000", "5500000", fmt_utm), want);
}

TEST_F(CoordText, TheSouthHasTenMillionMetresAddedByItsBandLetter)
{
    const pos_rec cape = at(-33.9, 18.4);
    EXPECT_EQ(line(cape, fmt_utm).substr(0, 4), "34H|");
    EXPECT_NEAR(val(north), 6246000, 10000);
    EXPECT_LT(apart(read(zone, east, north, fmt_utm), cape), 1);
    const pos_rec far_south = at(-85, 18.4);
    EXPECT_EQ(line(far_south, fmt_utm).substr(0, 4), "34?|");
    EXPECT_EQ(north.front(), '-');
    EXPECT_LT(apart(read(zone, east, north, fmt_utm), far_south), 1);
}

TEST_F(CoordText, MgrsReferencesMayBeShort)
{
    const pos_rec p = read("32UNC", "62470", "05813", fmt_mgrs);
    EXPECT_LT(apart(p, at(51.5, 9.9)), 2);
    EXPECT_EQ(read("32UNC", "624", "058", fmt_mgrs), read("32UNC", "62400", "05800", fmt_mgrs));
}

TEST_F(CoordText, BeyondEightyEightDegreesGridsHaveNoText)
{
    for (int fmt = 3; fmt < static_cast<int>(Form1.posform.items.size()); ++fmt) {
        line({grid_lat_limit + 1, 0}, fmt);
        EXPECT_EQ(east + north, "") << fmt;
        line({-grid_lat_limit - 1, 0}, fmt);
        EXPECT_EQ(east + north, "") << fmt;
    }
    EXPECT_NE(line({grid_lat_limit, 0}, fmt_utm), "||");
    EXPECT_EQ(line({1 << 30, 0}, fmt_degrees), "|E000.00000\xB0|N 90.00000\xB0");
    line({INT32_MIN, INT32_MIN}, fmt_utm);
    EXPECT_EQ(east + north, "");
}

TEST_F(CoordText, PlacesOutsideAGridHaveEmptyTexts)
{
    use_datum("Potsdam");
    EXPECT_EQ(line(at(-10, 10), fmt_gk), "||");
    EXPECT_EQ(line(at(10, 60), fmt_gk).substr(0, 2), "||");
    EXPECT_NE(north, "");
    EXPECT_EQ(line(at(10, 100), fmt_swiss), "||");
    EXPECT_EQ(line(at(10, 100), fmt_british), "||");
    EXPECT_EQ(line(at(10, 100), fmt_irish), "||");
    EXPECT_EQ(line(at(45, -30), fmt_lambert).substr(0, 3), "3||");
}

TEST_F(CoordText, KilometresHaveThreeDecimals)
{
    settings.km_grid = true;
    EXPECT_EQ(line(at(51.5, 9.9), fmt_utm), "32U|0562.471|5705.813");
    EXPECT_EQ(line(at(51.5, 9.9), fmt_mgrs), "32UNC|62.471|05.813");
    settings.km_grid = false;
    EXPECT_EQ(line(at(51.5, 9.9), fmt_utm), "32U|0562471|5705813");
    EXPECT_EQ(line(at(51.5, 9.9), fmt_mgrs), "32UNC|62471|05813");
}

TEST_F(CoordText, GaussKruegerLeadsWithItsZoneDigit)
{
    use_datum("Potsdam");
    EXPECT_EQ(line(at(51.5, 9.9), fmt_gk), "|3562568|5707659");
    settings.km_grid = true;
    EXPECT_EQ(line(at(51.5, 9.9), fmt_gk), "|3562.568|5707.659");
    EXPECT_EQ(read("", "3562.568", "5707.659", fmt_gk), read("", "3562568", "5707659", fmt_gk));
    EXPECT_EQ(line(at(51.5, 17), fmt_gk).substr(0, 3), "|56");
}

TEST_F(CoordText, TheSwissOriginComesOut)
{
    use_datum("CH-1903");
    settings.km_grid = true;
    constexpr double rad = pi / 180;
    pos_rec bern;
    datum_to_wgs({46.95240555 * rad, 7.43958333 * rad}, datum_at(-1), bern);
    EXPECT_EQ(line(bern, fmt_swiss), "|600.000|200.000");
}

TEST_F(CoordText, OrgStandsForTheOriginOfEachGrid)
{
    const struct {
        int fmt;
        const char* datum;
        double lat, lon;
    } rows[] = {{fmt_degrees, "WGS 84", 0, 0}, {fmt_utm, "WGS 84", 0, 3}, {fmt_gk, "WGS 84", 0, 9}};
    for (const auto& r : rows) {
        use_datum(r.datum);
        pos_rec p;
        EXPECT_TRUE(text_to_pos("org", "", "", p, r.fmt)) << r.fmt;
        EXPECT_LT(apart(p, at(r.lat, r.lon)), 2) << r.fmt;
    }
    for (int fmt = 5; fmt < static_cast<int>(Form1.posform.items.size()); ++fmt) {
        pos_rec p{7, 7};
        EXPECT_TRUE(text_to_pos("org", "", "", p, fmt)) << fmt;
        EXPECT_NE(p, (pos_rec{7, 7}));
    }
    // A user grid's origin: false easting and northing as texts.
    const int tm = format_named("(FIN) ETRS-TM35FIN");
    pos_rec p;
    EXPECT_TRUE(text_to_pos("org", "", "", p, tm, datum_find("WGS 84")));
    EXPECT_LT(apart(p, at(0, 27)), 1);
}

TEST_F(CoordText, TheOriginOfEachGridHasTheTextsThatStandForIt)
{
    // A grid so far south that its northings would lack a digit counts from 5000 km further on.
    datums.grid_names.push_back("south");
    datums.grid_datum.push_back("WGS 84");
    datums.grids.push_back({173, -46, 1, 700000, 800000});
    const int south = fmt_user + static_cast<int>(datums.grids.size()) - 1;
    const struct {
        int fmt;
        const char* datum;
        const char* texts;
    } rows[] = {{fmt_degrees, "WGS 84", "|E000.00000\xB0|N 00.00000\xB0"},
                {fmt_utm, "WGS 84", "31N|0500000|0000000"},
                {fmt_gk, "Potsdam", "|3500000|0000000"},
                {fmt_swiss, "CH-1903", "|600000|200000"},
                {fmt_lambert, "NTF (France)", "2|0600000|2200000"},
                {fmt_british, "Ord Srvy GB", "SO|00000|00000"},
                {fmt_irish, "Ireland 1965", "R|00000|00000"},
                {fmt_nz, "Geodetic Datum 1949", "|2510000|6023150"},
                {format_named("(L) Luxembourg"), "Luxembourg 1930", "|0080000|0100000"},
                {south, "WGS 84", "|0700000|5800000"}};
    for (const auto& r : rows) {
        use_datum(r.datum);
        pos_rec p;
        EXPECT_TRUE(text_to_pos("org", "", "", p, r.fmt)) << r.texts;
        EXPECT_EQ(line(p, r.fmt), r.texts);
    }
}

TEST_F(CoordText, WhatLeadsNowhereIsToldAndLeavesThePositionAlone)
{
    EXPECT_EQ(read("32U", "1e300", "0", fmt_utm), (pos_rec{-1, -1}));
    EXPECT_FALSE(good);
    EXPECT_EQ(read("32U", "0." + std::string(400, '9'), "1e308.", fmt_utm), (pos_rec{-1, -1}));
    EXPECT_FALSE(good);
    for (const char* z : {"", "x", "00U", "61U", "99"}) {
        read(z, "0500000", "5000000", fmt_utm);
        EXPECT_FALSE(good) << z;
    }
    read("32U", "", "", fmt_utm);
    EXPECT_FALSE(good);
    read("ZZ", "0", "0", fmt_british);
    EXPECT_FALSE(good);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(CoordText, ADatumOfSenselessConstantsHasNoTexts)
{
    for (const double da : {1e38, -1e38, wgs_a, wgs_a + 1}) {
        datums.rows.push_back(datum_make("bad", da, 0.9, 1, 1, 1));
        Form1.Datum.selected = static_cast<int>(datums.rows.size()) - 1;
        for (int fmt = 0; fmt < static_cast<int>(Form1.posform.items.size()); ++fmt) {
            line(at(51.5, 9.9), fmt);
            for (const std::string& t : {zone, east, north})
                EXPECT_EQ(t.find_first_of("nf"), std::string::npos) << fmt << " " << t;
        }
    }
}

TEST_F(CoordText, ChosenZonesHoldForTheFormatOfTheWindowOnly)
{
    Form1.posform.selected = fmt_utm;
    coord.zone_choice = 33;
    EXPECT_EQ(line(at(51.5, 9.9), fmt_utm).substr(0, 4), "33U|");
    EXPECT_LT(apart(read(zone, east, north, fmt_utm), at(51.5, 9.9)), 3.5);
    EXPECT_EQ(line(at(51.5, 9.9), fmt_mgrs).substr(0, 3), "33U");
    EXPECT_LT(apart(read(zone, east, north, fmt_mgrs), at(51.5, 9.9)), 3.5);
    use_datum("Potsdam");
    EXPECT_EQ(line(at(51.5, 9.9), fmt_gk).substr(0, 2), "|3");
    Form1.posform.selected = fmt_gk;
    coord.zone_choice = 5; // "Zone 4"
    EXPECT_EQ(line(at(51.5, 9.9), fmt_gk).substr(0, 2), "|4");
}

TEST_F(CoordText, AKeptZoneStaysForThePositionsThatFollow)
{
    EXPECT_EQ(line(at(51.5, 11.9), fmt_utm).substr(0, 3), "32U");
    EXPECT_EQ(coord.zone, 32);
    EXPECT_EQ(line(at(51.5, 12.1), fmt_utm, 1).substr(0, 3), "32U");
    EXPECT_EQ(line(at(51.5, 12.1), fmt_utm, 0).substr(0, 3), "33U");
    EXPECT_EQ(coord.zone_text, "33U");
}

TEST_F(CoordText, HeldTextsShowTheRestInMillimetres)
{
    coord.zone_halt = true;
    coord.zone_held = {"32U", "5705000", "0562000"};
    EXPECT_EQ(line(at(51.5, 9.9), fmt_utm), "32U|0562000\t9|5705000\t16");
    EXPECT_EQ(line(at(51.5, 9.9), fmt_utm, -1), "32U|0562471|5705813");
    coord.zone_held = {"32UNC", "05000", "62000"};
    EXPECT_EQ(line(at(51.5, 9.9), fmt_mgrs), "32UNC|62000\t9|05000\t16");
    coord.zone_held = {"32U", "5706000", "0563000"};
    EXPECT_EQ(line(at(51.5, 9.9), fmt_utm), "32U|0563000\t-11|5706000\t-4");
    coord.zone_held = {"", "N 51.49000\xB0", "E009.90000\xB0"};
    EXPECT_EQ(line(at(51.5, 9.9), fmt_degrees), "|E009.90000\xB0\t0|N 51.49000\xB0\t22");
    use_datum("Potsdam");
    coord.zone_held = {"", "5707000", "3562000"};
    EXPECT_EQ(line(at(51.5, 9.9), fmt_gk), "|3562000\t11|5707000\t13");
}

TEST_F(CoordText, HeldTextsWithTheirTailsReadBackToThePlace)
{
    coord.zone_halt = true;
    coord.zone_held = {"32U", "5705000", "0562000"};
    line(at(51.5, 9.9), fmt_utm);
    const pos_rec back = read(zone, east, north, fmt_utm);
    EXPECT_LT(apart(back, at(51.5, 9.9)), 40); // half a millimetre is 25 m
}

TEST_F(CoordText, TheDateLineIsNoEdge)
{
    for (const double lon : {179.9999, -179.9999, 180.0, -180.0}) {
        const pos_rec p = at(-17, lon);
        line(p, fmt_utm);
        EXPECT_EQ(zone, lon == 179.9999 ? "60K" : "01K") << lon;
        EXPECT_LT(apart(read(zone, east, north, fmt_utm), p), 1);
    }
}

TEST_F(CoordText, PositionLinesPutLatitudeFirstInDegreesOnly)
{
    EXPECT_EQ(position_line(at(51.5, 9.9)), "N 51.50000\xB0 E009.90000\xB0");
    Form1.posform.selected = fmt_utm;
    EXPECT_EQ(position_line(at(51.5, 9.9)), "32U 0562471 5705813");
    EXPECT_EQ(position_line(at(89.5, 9.9)), "");
    Form1.posform.selected = fmt_gk;
    use_datum("Potsdam");
    EXPECT_EQ(position_line(at(51.5, 9.9)), "3562568 5707659");
}

TEST_F(CoordText, AnyTextOfAnyFormatIsReadWithoutHarm)
{
    std::mt19937 random(9);
    const std::string letters = "0123456789.,-+ NSEWUMVC\xB0'\"\teEdD$#AZ?";
    for (int i = 0; i < 60000; ++i) {
        std::string t[3];
        for (std::string& s : t)
            for (auto n = random() % 14; n > 0; --n)
                s += letters[random() % letters.size()];
        pos_rec p{};
        text_to_pos(t[0], t[1], t[2], p, static_cast<int>(random() % 40));
        ASSERT_LE(std::abs(static_cast<std::int64_t>(p.lat)), std::int64_t{1} << 30);
    }
    EXPECT_TRUE(user.messages.empty());
}

} // namespace
} // namespace velkoro

#include "interchange/pcx5.h"

#include "core/settings.h"
#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class Pcx5 : public format_fixture {
protected:
    static constexpr const char* columns_head =
        "H  IDNT   LATITUDE    LONGITUDE    DATE      TIME     ALT   DESCRIPTION"
        "                              PROXIMITY ;waypts\r\n";

    std::string rows(const std::string& text, const std::string& form = "DM",
                     const std::string& head = columns_head)
    {
        return read("PCX5", ".wpt",
                    "H  SOFTWARE NAME & VERSION\r\nI  PCX5 2.09\r\n\r\n"
                    "M  G WGS 84               121 +0.000000e+00 +0.000000e+00 +0.000000e+00 "
                    "+0.000000e+00 +0.000000e+00\r\n\r\nU  LAT LON " +
                        form + "\r\n\r\n" + head + text);
    }
    static std::string head_lines(const std::string& form, std::size_t blanks)
    {
        return crlf("H  SOFTWARE NAME & VERSION\n"
                    "I  PCX5 2.08  Created by VELkoro " VELKORO_VERSION "\n"
                    "H  R DATUM                IDX DA            DF            DX            "
                    "DY            DZ\n"
                    "M  G WGS 84               100 +0.000000e+00 +0.000000e+00 +0.000000e+00 "
                    "+0.000000e+00 +0.000000e+00\n"
                    "H  COORDINATE SYSTEM\n"
                    "U  LAT LON " +
                    form + "\n") +
               column_line(blanks);
    }
    static std::string column_line(std::size_t blanks)
    {
        return "H  IDNT" + std::string(blanks, ' ') +
               "LATITUDE    LONGITUDE    DATE      TIME     ALT   DESCRIPTION"
               "                              PROXIMITY ;waypts\r\n";
    }
    static std::string padded(std::string text)
    {
        text.resize(40, ' ');
        return text;
    }
};

} // namespace

TEST_F(Pcx5, WritesWaypointsLetterByLetter)
{
    put_awkward();
    export_options options;
    options.fmt = fmt_minutes;
    EXPECT_EQ(
        write("PCX5", ".wpt", options),
        head_lines("DM", 3) +
            crlf("W  ALPHA  N4807.40700 E01134.07300 02-MAY-03 08:15:30   519 " +
                 padded("Start, Nordtor") + " 0.00000e+00\n" +
                 "W  K\xD6LN-1 N5056.47700 E00657.49700 02-MAY-03 09:00:00    53 " +
                 padded("Br\xFC"
                        "cke \xFC"
                        "ber Flu\xDF") +
                 " 0.00000e+00\n" + "W  RIO    S2257.11500 W04312.62900 29-FEB-04 23:59:59   710 " +
                 padded("\"Cristo\" & 'co'") + " 0.00000e+00\n" +
                 "W  FIJI   S1634.69100 E17959.25900 31-DEC-89 00:00:00 -9999 " + padded("") +
                 " 0.00000e+00\n" + "W  A,B    N6408.82000 W17959.99400 01-APR-96 17:20:00     0 " +
                 padded("a comma, two commas,") + " 1.50000e+03\n" +
                 "W  DEADSE N3130.00000 E03530.00000 04-MAR-02 05:06:07  -428 " +
                 padded("below sea level") + " 0.00000e+00\n" +
                 "W  QUITO  S0000.13300 E00000.00000 08-AUG-08 08:08:08  2483 " +
                 padded("Mitad_0;Grad") + " 0.00000e+00\n"));
}

TEST_F(Pcx5, TheColumnsStayInEveryForm)
{
    put("ALPHA", "", 48.12345, 11.56789);
    put("RIO", "", -22.95192, -43.21049);
    const auto rows_of = [](const std::string& file) {
        std::vector<std::string> rows;
        for (std::size_t at = 0; (at = file.find("\nW  ", at)) != std::string::npos; ++at)
            rows.push_back(file.substr(at + 11, 24));
        return rows;
    };
    export_options options;
    EXPECT_EQ(rows_of(write("PCX5", ".wpt", options)),
              (std::vector<std::string>{"N48.1234500 E011.5678900", "S22.9519200 W043.2104900"}));
    options.sign = true;
    EXPECT_EQ(rows_of(write("PCX5", ".wpt", options)),
              (std::vector<std::string>{"+48.1234500 +011.5678900", "-22.9519200 -043.2104900"}));
    options.fmt = fmt_seconds;
    EXPECT_EQ(rows_of(write("PCX5", ".wpt", options)),
              (std::vector<std::string>{"N480724.400 E0113404.400", "S225706.900 W0431237.800"}));
    options.fmt = fmt_utm; // none of the format's
    options.sign = false;
    const std::string file = write("PCX5", ".wpt", options);
    EXPECT_EQ(rows_of(file).front(), "N48.1234500 E011.5678900");
    EXPECT_NE(file.find("U  LAT LON DEG\r\n"), std::string::npos);
}

TEST_F(Pcx5, WritesRoutesLetterByLetter)
{
    put_awkward();
    put("LONGERNAME", std::string(45, 'x'), 1, 2);
    put_route("SECOND", {"LONGERNAME"});
    const std::string alpha = "W  ALPHA      N48.1234500 E011.5678900 02-MAY-03 08:15:30   519 " +
                              padded("Start, Nordtor") + " 0.00000e+00\n";
    EXPECT_EQ(write("PCX5", ".rte"),
              head_lines("DEG", 7) + "R  01 LOOP 1\r\n" + column_line(7) +
                  crlf(alpha + "W  RIO        S22.9519200 W043.2104900 29-FEB-04 23:59:59   710 " +
                       padded("\"Cristo\" & 'co'") + " 0.00000e+00\n" +
                       "W  A,B        N64.1470000 W179.9999000 01-APR-96 17:20:00     0 " +
                       padded("a comma, two commas,") + " 1.50000e+03\n" + alpha) +
                  "R  02 SECOND\r\n" + column_line(7) +
                  crlf("W  LONGERNAME N01.0000000 E002.0000000 31-DEC-89 00:00:00 -9999 " +
                       std::string(40, 'x') + " 0.00000e+00\n"));
}

TEST_F(Pcx5, TheVersionOfTheOtherProgramIsASetting)
{
    settings.overrides[{"main", "pcx5"}] = "2.09";
    EXPECT_NE(write("PCX5", ".wpt").find("\nI  PCX5 2.09  Created by VELkoro "), std::string::npos);
}

TEST_F(Pcx5, ReadsBackWhatItWrites)
{
    put_awkward();
    put("LONGERNAME", "with two  blanks", 1, 2);
    const std::string expected =
        "W ALPHA|Start, Nordtor|48.12345 11.56789|2003-05-02 08:15:30|519|-\n"
        "W K\xD6LN-1|Br\xFC"
        "cke \xFC"
        "ber Flu\xDF|50.94128 6.95828|2003-05-02 09:00:00|53|-\n"
        "W RIO|\"Cristo\" & 'co'|-22.95192 -43.21049|2004-02-29 23:59:59|710|-\n"
        "W FIJI||-16.57819 179.98765|-|-|-\n"
        "W A,B|a comma, two commas,|64.14700 -179.99990|1996-04-01 17:20:00|0|15\n"
        "W DEADSE|below sea level|31.50000 35.50000|2002-03-04 05:06:07|-428|-\n"
        "W QUITO|Mitad_0;Grad|-0.00221 0.00000|2008-08-08 08:08:08|2483|-\n"
        "W LONGERNAME|with two  blanks|1.00000 2.00000|-|-|-\n";
    export_options options;
    EXPECT_EQ(read("PCX5", ".wpt", write("PCX5", ".wpt", options)), expected);
    options.sign = true;
    EXPECT_EQ(read("PCX5", ".wpt", write("PCX5", ".wpt", options)), expected);
    EXPECT_EQ(read("PCX5", ".rte", write("PCX5", ".rte")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|2003-05-02 08:15:30|519|-\n"
              "W RIO|\"Cristo\" & 'co'|-22.95192 -43.21049|2004-02-29 23:59:59|710|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|1996-04-01 17:20:00|0|15\n"
              "R LOOP 1: ALPHA RIO A,B ALPHA\n");
}

TEST_F(Pcx5, JustBelowAFullDegreeIsReadBack)
{
    export_options options;
    for (const int fmt : {fmt_degrees, fmt_minutes, fmt_seconds}) {
        store_reset();
        put("A", "", 48 + 59 / 60.0 + 59.962 / 3600, -(59 / 60.0 + 59.99 / 3600));
        put("B", "", -(59 + 59.999 / 60) / 60, 179 + 59.9999 / 60);
        options.fmt = fmt;
        import_content content;
        import_bytes(*format_of_text("PCX5", true), write("PCX5", ".wpt", options), ".wpt", false,
                     &content);
        ASSERT_EQ(content.waypoints.size(), 2U) << fmt;
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_NEAR(content.waypoints[i].pos.lat, store.wp[i].pos.lat, 250) << fmt;
            // 180 degrees west are 180 degrees east.
            const std::uint32_t lon = static_cast<std::uint32_t>(content.waypoints[i].pos.lon) -
                                      static_cast<std::uint32_t>(store.wp[i].pos.lon);
            EXPECT_NEAR(static_cast<std::int32_t>(lon), 0, 250) << fmt;
        }
    }
}

TEST_F(Pcx5, ADateThatTwoDigitsCannotTellIsWrittenAsNone)
{
    put("A", "", 1, 2, "31.12.1979 23:59:59");
    put("B", "", 1, 2, "01.01.1980 00:00:00");
    EXPECT_EQ(read("PCX5", ".wpt", write("PCX5", ".wpt")),
              "W A||1.00000 2.00000|-|-|-\nW B||1.00000 2.00000|1980-01-01 00:00:00|-|-\n");
}

TEST_F(Pcx5, AProximityThatIsOffIsWrittenAsNone)
{
    put("A", "", 1, 2, {}, 5, -15);
    put("B", "", 1, 2, {}, 5, 32767);
    EXPECT_EQ(read("PCX5", ".wpt", write("PCX5", ".wpt")),
              "W A||1.00000 2.00000|-|5|-\nW B||1.00000 2.00000|-|5|32767\n");
}

TEST_F(Pcx5, AShortLatitudeShiftsTheRow)
{
    EXPECT_EQ(rows("W  QUITO  S00.13260 W07827.34980 08-AUG-08 08:08:08  2483 " +
                   padded("Mitad, 0 Grad") + " 1.500000e+03  0\r\n"),
              "W QUITO|Mitad, 0 Grad|-0.00221 -78.45583|2008-08-08 08:08:08|2483|15\n");
    // The description begins with a number and has no blank to spare.
    const std::string text = "1234567890123456789012345678901234567890";
    EXPECT_EQ(rows("W  QUITO  S00.13260 W07827.34980 08-AUG-08 08:08:08  2483 " + text +
                   " 1.500000e+03  0\r\n"),
              "W QUITO|" + text + "|-0.00221 -78.45583|2008-08-08 08:08:08|2483|15\n");
}

TEST_F(Pcx5, TheColumnHeadTellsTheColumns)
{
    const std::string head = "H  idnt            latitude   longitude   date      time     alt   "
                             "description                              proximity ;waypts\r\n";
    EXPECT_EQ(
        rows("W  A NAME AS LONG  N4807.4070 E01134.0734 02-MAY-03 08:15:30   519 Start        "
             "                            5.00000e+02\r\n",
             "DM", head),
        "W A NAME AS LONG|Start|48.12345 11.56789|2003-05-02 08:15:30|519|5\n");
    const std::string bare = "H  IDNT   LATITUDE    LONGITUDE\r\n";
    EXPECT_EQ(rows("W  ALPHA  N4807.40700 E01134.07340\r\n", "DM", bare),
              "W ALPHA||48.12345 11.56789|-|-|-\n");
}

TEST_F(Pcx5, FieldsThatARowLacksAreUnknown)
{
    EXPECT_EQ(rows("W  A      N4807.40700 E01134.07340\r\n"
                   "W  B      N4807.40700 E01134.07340 31-DEC-89 00:00:00 -9999\r\n"
                   "W  C      N4807.40700 E01134.07340 02-MAY-03 08:15:30       text 1\r\n"
                   "W  D      N4807.40700 E01134.07340 02-MAY-03 08:15:30       12 apostles\r\n"
                   "W  E      N4807.40700 E01134.07340 nowhere   00:00:00    12 text\r\n"),
              "W A||48.12345 11.56789|-|-|-\n"
              "W B||48.12345 11.56789|-|-|-\n"
              "W C|text 1|48.12345 11.56789|2003-05-02 08:15:30|-|-\n"
              "W D|12 apostles|48.12345 11.56789|2003-05-02 08:15:30|-|-\n"
              "W E|text|48.12345 11.56789|-|-|-\n");
}

TEST_F(Pcx5, ReadsEveryFormOfPosition)
{
    const std::string rest = " 31-DEC-89 00:00:00 -9999\r\n";
    EXPECT_EQ(rows("W  A      s22.9519200 W043.2104900" + rest, "DEG"),
              "W A||-22.95192 -43.21049|-|-|-\n");
    EXPECT_EQ(rows("W  A      -22.9519200 +043.2104900" + rest, "deg"),
              "W A||-22.95192 43.21049|-|-|-\n");
    EXPECT_EQ(rows("W  A      N480724.420 W0113404.404" + rest, "DMS"),
              "W A||48.12345 -11.56789|-|-|-\n");
    EXPECT_EQ(rows("W  A      S.13260 W.5" + rest, "DM"), "bad 1\n");
    EXPECT_EQ(rows("W  A      S0.13260 W0.5" + rest, "DM"), "W A||-0.00221 -0.00833|-|-|-\n");
}

TEST_F(Pcx5, MalformedRowsAreCountedAndTheRestIsRead)
{
    EXPECT_EQ(rows("W  A      N4807.40700 E01134.07340\r\n"
                   "W  B      N4861.00000 E01134.07340\r\n"
                   "W  C      4807.40700  E01134.07340\r\n"
                   "W  D      N9107.40700 E01134.07340\r\n"
                   "W\r\n"
                   "W  SHORT\r\n"
                   "hello\r\n"
                   "Waypoint\r\n"
                   "F  ID---- Latitude\r\nS  1\r\nT  N4807.40700 E01134.07340\r\n"
                   "w  Z      N4807.40700 E01134.07340\r\n"),
              "W A||48.12345 11.56789|-|-|-\nW Z||48.12345 11.56789|-|-|-\nbad 7\n");
}

TEST_F(Pcx5, RowsAheadOfTheCoordinateFormAreMalformed)
{
    EXPECT_EQ(read("PCX5", ".wpt",
                   "H  SOFTWARE NAME & VERSION\r\nW  A      N48.1234500 E011.5678900\r\n"),
              "bad 1\n");
}

TEST_F(Pcx5, OtherCoordinateSystemsAreRefusedByName)
{
    const std::string row = "W  A      N4807.40700 E01134.07340\r\n";
    EXPECT_EQ(rows(row, "XYZ"), "refused\n");
    scripted_platform::plain_texts();
    const import_result result =
        import_bytes(*format_of_text("PCX5", true),
                     "H  SOFTWARE NAME & VERSION\r\nU  UTM UPS\r\n" + row, ".wpt");
    EXPECT_EQ(result.end, native_end::not_native);
    EXPECT_EQ(result.remarks, text(7964, "UTM UPS"));
    EXPECT_EQ(store.wp_top, -1);
}

TEST_F(Pcx5, TheFilesDatumCounts)
{
    const auto with = [&](const std::string& datum) {
        return read("PCX5", ".wpt",
                    "H  SOFTWARE NAME & VERSION\r\n" + datum +
                        "\r\nU  LAT LON DEG\r\nW  A      N48.1234500 E011.5678900\r\n");
    };
    const std::string shifted = "W A||48.12261 11.56683|-|-|-\n";
    const std::string numbers = " -2.510000e+02 -1.419270e-05 -8.700000e+01 -9.800000e+01 -1.2e+02";
    EXPECT_EQ(with("M  G European 1950        38" + numbers), shifted);
    EXPECT_EQ(with("M  G EUROPEAN 1950 103" + numbers), shifted);
    EXPECT_EQ(with("M  G European 1950"), shifted);
    EXPECT_EQ(with("M  G WGS 84               121"), "W A||48.12345 11.56789|-|-|-\n");
    EXPECT_EQ(with("M  G WGS 84"), "W A||48.12345 11.56789|-|-|-\n");
    EXPECT_TRUE(user.messages.empty());
    user.answers = {answer::no};
    EXPECT_EQ(with("M  G Mars                 12" + numbers), "refused\n");
}

TEST_F(Pcx5, RoutesHaveANumberOrNone)
{
    const std::string a = "W  A      N4807.40700 E01134.07340\r\n";
    const std::string b = "W  B      N4907.40700 E01134.07340\r\n";
    EXPECT_EQ(rows(a + "R  01 DAY ONE\r\n\r\n" + columns_head + b + a + "\r\nR  NORTH\r\n" + a +
                   "R  03\r\n" + b + "R  2003 TOUR\r\n" + b + "R  05 EMPTY\r\n"),
              "W A||48.12345 11.56789|-|-|-\nW B||49.12345 11.56789|-|-|-\n"
              "R DAY ONE: B A\nR NORTH: A\nR Route 3: B\nR 2003 TOUR: B\n");
}

TEST_F(Pcx5, IsKnownByItsHead)
{
    EXPECT_TRUE(is_pcx5("H  SOFTWARE NAME & VERSION\r\nI  PCX5", ".wpt"));
    EXPECT_TRUE(is_pcx5("\r\nh  software name & version\n", ".rte"));
    EXPECT_TRUE(is_pcx5("H  COORDINATE SYSTEM\r\nU  LAT LON DEG\r\n", ".wpt"));
    EXPECT_FALSE(is_pcx5("OziExplorer Waypoint File Version 1.0\r\n", ".wpt"));
    EXPECT_FALSE(is_pcx5("H  \r\n", ".wpt"));
    EXPECT_FALSE(is_pcx5("", ".wpt"));
}

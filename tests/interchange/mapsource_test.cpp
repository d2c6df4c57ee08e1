#include "interchange/mapsource.h"

#include "tests/interchange/format_fixture.h"

#include <algorithm>

using namespace velkoro;

namespace {

/// "|" stands for a TAB.
std::string tabs(std::string text)
{
    std::ranges::replace(text, '|', '\t');
    return text;
}

class Mapsource : public format_fixture {
protected:
    std::string file(const std::string& lines, const std::string& grid = "Lat/Lon hddd.ddddd\xB0",
                     const std::string& datum = "WGS 84")
    {
        return read("Mapsource", ".txt",
                    tabs("Grid|" + grid + "\r\nDatum|" + datum + "\r\n\r\n" + lines));
    }
    /// What is read of a waypoint at 1, 2 with that date.
    std::string date(const std::string& text)
    {
        const std::string out = file("Header|Name|Position|Date Modified\r\n"
                                     "Waypoint|A|N1.0 E2.0|" +
                                     text + "\r\n");
        const std::string start = "W A||1.00000 2.00000|";
        EXPECT_EQ(out.substr(0, start.size()), start);
        return out.substr(start.size(), out.find('|', start.size()) - start.size());
    }
    /// Latitude and longitude as read.
    std::string place(const std::string& text)
    {
        const std::string out = file("Header|Name|Position\r\nWaypoint|A|" + text + "\r\n");
        return out == "bad 1\n" ? out : out.substr(5, out.find('|', 5) - 5);
    }
};

} // namespace

TEST_F(Mapsource, ReadsWaypointsAndRoutes)
{
    EXPECT_EQ(file("Header|Name|Description|Type|Position|Altitude|Depth|Proximity|Temperature|"
                   "Display Mode|Color|Symbol|Facility|City|State|Country|Date Modified|Link\r\n"
                   "\r\n"
                   "Waypoint|ALPHA|Start, \"Nordtor\"|User Waypoint|N48.12345 E11.56789|519 m||"
                   "500 m|||Unknown|Waypoint|||||02.05.2003 08:15:30 ||\r\n"
                   "Waypoint|K\xD6LN-1||User Waypoint|S50.94128 W6.95828|-428 m\r\n"
                   "\r\nHeader|Name|Length|Course|Waypoints|Link\r\n\r\n"
                   "Route|TOUR|12 km|90\xB0 true|3 waypoints|\r\n\r\n"
                   "Header|Waypoint Name|Distance|Leg Length|Course\r\n\r\n"
                   "Route Waypoint|ALPHA|0 m\r\nRoute Waypoint|K\xD6LN-1|0 m\r\n"
                   "Route Waypoint|ALPHA|0 m\r\n\r\n"
                   "Route|SECOND|12 km\r\n\r\nRoute Waypoint|ALPHA\r\n"
                   "Header|Name|Start Time|Elapsed Time|Length|Average Speed|Link\r\n"
                   "Track|MORNING|28.02.2004 23:55:00 |6:11:06\r\n"
                   "Header|Position|Time|Altitude|Depth\r\n"
                   "Trackpoint|N47.42000 E10.98000|28.02.2004 23:55:00 |700 m\r\n"
                   "Map|1|2|3\r\n"),
              "W ALPHA|Start, \"Nordtor\"|48.12345 11.56789|2003-05-02 08:15:30|519|5\n"
              "W K\xD6LN-1||-50.94128 -6.95828|-|-428|-\n"
              "R TOUR: ALPHA K\xD6LN-1 ALPHA\n"
              "R SECOND: ALPHA\n");
}

TEST_F(Mapsource, TheHeaderTellsTheColumns)
{
    EXPECT_EQ(file("Header|Position|Name|Altitude\r\nWaypoint|N1.0 E2.0|A|5 m\r\n"
                   "Header|Waypoint Name|Distance\r\nHeader|Position|Time|Altitude\r\n"
                   "Waypoint|N3.0 E4.0|B|6 m\r\n"
                   "header|name|description|position\r\nWaypoint|C|text|N5.0 E6.0|7 m\r\n"),
              "W A||1.00000 2.00000|-|5|-\nW B||3.00000 4.00000|-|6|-\n"
              "W C|text|5.00000 6.00000|-|-|-\n");
    // Without one the newest version's hold.
    EXPECT_EQ(file("Waypoint|A|text|User Waypoint|N1.0 E2.0|5 m\r\n"),
              "W A|text|1.00000 2.00000|-|5|-\n");
}

TEST_F(Mapsource, ReadsEveryFormOfPosition)
{
    EXPECT_EQ(place("N48.12345 E11.56789"), "48.12345 11.56789");
    EXPECT_EQ(place("N48 07.407 W011 34.073"), "48.12345 -11.56788");
    EXPECT_EQ(place("S48 7 24.4 E11 34 4.4"), "-48.12344 11.56789");
    EXPECT_EQ(place("S48\xB0"
                    "07'24.4\" E11\xB0"
                    "34'04.4\""),
              "-48.12344 11.56789");
    EXPECT_EQ(place("N0.00221 W179.99999"), "0.00221 -179.99999");
    for (const char* text : {"", "N48.1", "48.1 11.5", "N48.1 E11.5 x", "N91.0 E1.0", "N1.0 E181.0",
                             "N48 60.1 E11 0.0", "32 U 691088 5333211"})
        EXPECT_EQ(place(text), "bad 1\n") << text;
}

TEST_F(Mapsource, TheGridLineIsKnownInEveryLanguage)
{
    const std::string row = "Waypoint|A||User Waypoint|N1.0 E2.0\r\n";
    const std::string read_well = "W A||1.00000 2.00000|-|-|-\n";
    EXPECT_EQ(file(row, "Breite/L\xE4nge hddd.ddddd\xB0"), read_well);
    EXPECT_EQ(file(row, "Lat/Lon hddd\xB0mm.mmm'"), read_well);
    EXPECT_EQ(file(row, "Lat/Lon hddd\xB0mm'ss.s\""), read_well);
    EXPECT_EQ(file(row, "UTM"), "refused\n");
    EXPECT_EQ(file(row, "Swiss Grid"), "refused\n");
    scripted_platform::plain_texts();
    EXPECT_EQ(import_bytes(*format_of_text("Mapsource", true), "Grid\tMGRS\r\n" + tabs(row), ".txt")
                  .remarks,
              text(7964, "MGRS"));
    EXPECT_EQ(read("Mapsource", ".txt", tabs(row)), "refused\n");
}

TEST_F(Mapsource, DatesAreThoseOfTheComputer)
{
    const std::string d = "2003-05-02 ";
    EXPECT_EQ(date("02.05.2003 08:15:30 "), d + "08:15:30");
    EXPECT_EQ(date("02/05/2003 08:15:30"), d + "08:15:30");
    EXPECT_EQ(date("5/2/2003 8:15:30 AM "), d + "08:15:30");
    EXPECT_EQ(date("5/2/2003 12:15:30 AM"), d + "00:15:30");
    EXPECT_EQ(date("5/2/2003 12:15:30 PM"), d + "12:15:30");
    EXPECT_EQ(date("5/2/2003 8:15:30 pm"), d + "20:15:30");
    EXPECT_EQ(date("2003-05-02 08:15:30"), d + "08:15:30");
    EXPECT_EQ(date("02.05.2003"), d + "00:00:00");
    EXPECT_EQ(date("02.05.2003 08:15:30 (UTC)"), d + "08:15:30");
    EXPECT_EQ(date("02.05.2003 08:15:30 (UTC+2)"), d + "06:15:30");
    EXPECT_EQ(date("02.05.2003 08:15:30 (UTC-7)"), d + "15:15:30");
    EXPECT_EQ(date("01.05.2003 19:45:30 (UTC-12:30)"), d + "08:15:30");
    for (const char* none : {"", "yesterday", "32.05.2003 08:15:30", "02.05.2003 25:00:00"})
        EXPECT_EQ(date(none), "-") << none;
}

TEST_F(Mapsource, HeightsAndDistancesHaveUnits)
{
    const auto row = [&](const std::string& altitude, const std::string& proximity) {
        const std::string out =
            file("Waypoint|A||User Waypoint|N1.0 E2.0|" + altitude + "||" + proximity + "\r\n");
        const std::string start = "W A||1.00000 2.00000|-|";
        EXPECT_EQ(out.substr(0, start.size()), start);
        return out.substr(start.size());
    };
    EXPECT_EQ(row("519 m", "500 m"), "519|5\n");
    EXPECT_EQ(row("1703 ft", "1.2 km"), "519|12\n");
    EXPECT_EQ(row("0 m", "0 m"), "0|-\n");
    EXPECT_EQ(row("-428 m", "1 mi"), "-428|16\n");
    EXPECT_EQ(row("", ""), "-|-\n");
    EXPECT_EQ(row("12 furlong", "x m"), "-|-\n");
    EXPECT_EQ(row("99999 m", "1 nm"), "-|19\n");
}

TEST_F(Mapsource, MalformedLinesAreCountedAndTheRestIsRead)
{
    EXPECT_EQ(file("Waypoint|A||User Waypoint|N1.0 E2.0\r\nWaypoint|B\r\nWaypoint\r\nhello\r\n"
                   "Route|R\r\nRoute Waypoint|NOBODY\r\nRoute Waypoint|A\r\n"
                   "Waypoint|C||User Waypoint|N3.0 E4.0\r\n"),
              "W A||1.00000 2.00000|-|-|-\nW C||3.00000 4.00000|-|-|-\nR R: A\nbad 4\n");
}

TEST_F(Mapsource, TheFilesDatumCounts)
{
    const std::string row = "Waypoint|A||User Waypoint|N48.12345 E11.56789\r\n";
    const std::string grid = "Lat/Lon hddd.ddddd\xB0";
    EXPECT_EQ(file(row, grid, "European 1950"), "W A||48.12261 11.56683|-|-|-\n");
    user.answers = {answer::no};
    EXPECT_EQ(file(row, grid, "Mars"), "refused\n");
}

TEST_F(Mapsource, IsKnownByItsFirstLine)
{
    EXPECT_TRUE(is_mapsource("Grid\tLat/Lon hddd.ddddd\xB0\r\n", ".txt"));
    EXPECT_TRUE(is_mapsource("\r\ngrid\tUTM", ".txt"));
    EXPECT_FALSE(is_mapsource("Grid,Lat/Lon\r\n", ".txt"));
    EXPECT_FALSE(is_mapsource("Datum,WGS84\r\n", ".txt"));
    EXPECT_FALSE(is_mapsource("", ".txt"));
}

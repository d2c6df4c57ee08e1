#include "interchange/waypoint_plus.h"

#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class WaypointPlus : public format_fixture {
protected:
    std::string lines(const std::string& text)
    {
        return read("Waypoint+ Text", ".txt", "Datum,WGS84,WGS84,0,0,0,0,0\r\n" + text);
    }
    /// What is read of the position in that form.
    std::string place(const std::string& form, const std::string& fields)
    {
        const std::string out = lines("WP," + form + ",A," + fields + ",05/02/2003,08:15:30,x\r\n");
        return out == "bad 1\n" ? out : out.substr(6, out.find('|', 6) - 6);
    }
    /// What is read behind the position.
    std::string behind(const std::string& fields) { return lines("WP,D,A,1,2" + fields + "\r\n"); }
};

} // namespace

TEST_F(WaypointPlus, WritesWaypointsAndRoutesLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(write("Waypoint+ Text", ".txt"),
              crlf("Datum,WGS84,WGS84,0,0,0,0,0\n"
                   "WP,D,ALPHA, 48.12345, 011.56789,05/02/2003,08:15:30, Start, Nordtor\n"
                   "WP,D,K\xD6LN-1, 50.94128, 006.95828,05/02/2003,09:00:00, Br\xFC"
                   "cke \xFC"
                   "ber Flu\xDF\n"
                   "WP,D,RIO, -22.95192, -043.21049,02/29/2004,23:59:59, \"Cristo\" & 'co'\n"
                   "WP,D,FIJI, -16.57819, 179.98765,,, \n"
                   "WP,D,A-B, 64.14700, -179.99990,04/01/1996,17:20:00, a comma, two commas,\n"
                   "WP,D,DEADSE, 31.50000, 035.50000,03/04/2002,05:06:07, below sea level\n"
                   "WP,D,QUITO, -00.00221, 000.00000,08/08/2008,08:08:08, Mitad_0;Grad\n"
                   "RN,1 ,LOOP 1\n"
                   "RP,D,ALPHA, 48.12345, 011.56789,05/02/2003,08:15:30, Start, Nordtor\n"
                   "RP,D,RIO, -22.95192, -043.21049,02/29/2004,23:59:59, \"Cristo\" & 'co'\n"
                   "RP,D,A-B, 64.14700, -179.99990,04/01/1996,17:20:00, a comma, two commas,\n"
                   "RP,D,ALPHA, 48.12345, 011.56789,05/02/2003,08:15:30, Start, Nordtor\n"));
}

TEST_F(WaypointPlus, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(read("Waypoint+ Text", ".txt", write("Waypoint+ Text", ".txt")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|2003-05-02 08:15:30|-|-\n"
              "W K\xD6LN-1|Br\xFC"
              "cke \xFC"
              "ber Flu\xDF|50.94128 6.95828|2003-05-02 09:00:00|-|-\n"
              "W RIO|\"Cristo\" & 'co'|-22.95192 -43.21049|2004-02-29 23:59:59|-|-\n"
              "W FIJI||-16.57819 179.98765|-|-|-\n"
              "W A-B|a comma, two commas,|64.14700 -179.99990|1996-04-01 17:20:00|-|-\n"
              "W DEADSE|below sea level|31.50000 35.50000|2002-03-04 05:06:07|-|-\n"
              "W QUITO|Mitad_0;Grad|-0.00221 0.00000|2008-08-08 08:08:08|-|-\n"
              "R LOOP 1: ALPHA RIO A-B ALPHA\n");
}

TEST_F(WaypointPlus, ReadsEveryFormOfPosition)
{
    EXPECT_EQ(place("D", " 48.123450000, -11.5678900000"), "48.12345 -11.56789");
    EXPECT_EQ(place("DM", "48.074070,-138.592100"), "48.12345 -138.98683");
    EXPECT_EQ(place("dms", "48.07244200,-0.0826268"), "48.12345 -0.14063");
    EXPECT_EQ(place("DMX", "48,07.4070,-0,08.4378"), "48.12345 -0.14063");
    EXPECT_EQ(place("DMSX", "-48,07,24.42,11,34,04.404"), "-48.12345 11.56789");
    EXPECT_EQ(place("UTM", "32U,691088.71,5333210.74"), "48.12345 11.56789");
    EXPECT_EQ(place("UTM", "32 u,691089,5333211"), "48.12345 11.56789");
    EXPECT_EQ(place("UTM", "23K,683477.51,7460685.08"), "-22.95192 -43.21049");
}

TEST_F(WaypointPlus, PackedPartsAreTakenFromTheDigits)
{
    // As binary numbers these lie below the full minute.
    EXPECT_EQ(place("DMS", "10.53,20.07"), "10.88333 20.11667");
    EXPECT_EQ(place("DMS", "10.5300,20.0700000"), "10.88333 20.11667");
    EXPECT_EQ(place("DM", "10.53,20.1"), "10.88333 20.16667");
    EXPECT_EQ(place("DMS", "10,20."), "10.00000 20.00000");
    EXPECT_EQ(place("DMS", "10.5959999,20.1"), "11.00000 20.16667");
    EXPECT_EQ(place("DMS", "-0.0000000001,0"), "0.00000 0.00000");
}

TEST_F(WaypointPlus, PositionsThatAreNoneAreMalformed)
{
    for (const char* fields :
         {"48.6,11", "48.1e2,11", "48,11.60", "x,11", "48,", "91,11", "48,181"})
        EXPECT_EQ(place("DM", fields), "bad 1\n") << fields;
    EXPECT_EQ(place("DMS", "48.0060,11"), "bad 1\n");
    EXPECT_EQ(place("DMX", "48,60,11,0"), "bad 1\n");
    EXPECT_EQ(place("DMX", "48,-1,11,0"), "bad 1\n");
    EXPECT_EQ(place("UTM", "32,691088,5333210"), "bad 1\n"); // of north or south?
    EXPECT_EQ(place("XYZ", "1,2"), "bad 1\n");
}

TEST_F(WaypointPlus, TheCommentIsAllBehindTheTime)
{
    const std::string start = "W A|";
    const std::string end = "|1.00000 2.00000|2003-05-02 08:15:30|-|-\n";
    EXPECT_EQ(behind(",05/02/2003,08:15:30,one, two,three"), start + "one, two,three" + end);
    EXPECT_EQ(behind(",05/02/2003,08:15:30, one"), start + "one" + end);
    EXPECT_EQ(behind(",05/02/2003,08:15:30 one, two"), start + "one, two" + end);
    EXPECT_EQ(behind(",05/02/2003,08:15:30 , one"), start + "one" + end);
    EXPECT_EQ(behind(",05/02/2003,08:15:30,12:30 lunch"), start + "12:30 lunch" + end);
    EXPECT_EQ(behind(",05/02/2003,08:15:30"), start + end);
    EXPECT_EQ(behind(",05/02/03,08:15:30,"), start + end);
    EXPECT_EQ(behind(" , 5/2/2003 , 8:15:30 , "), start + end);
}

TEST_F(WaypointPlus, DatesMayBeMissing)
{
    const std::string none = "W A|x|1.00000 2.00000|-|-|-\n";
    EXPECT_EQ(behind(",,,x"), none);
    EXPECT_EQ(behind(",00/00/00,00:00:00,x"), none);
    EXPECT_EQ(behind(",13/45/2003,08:15:30,x"), none);
    EXPECT_EQ(behind(",12/31/1989,00:00:00,x"), none);
    EXPECT_EQ(behind(",05/02/2003,,x"), "W A|x|1.00000 2.00000|2003-05-02 00:00:00|-|-\n");
    EXPECT_EQ(behind(""), "W A||1.00000 2.00000|-|-|-\n");
}

TEST_F(WaypointPlus, RoutesAndTracksStandBesideWaypoints)
{
    EXPECT_EQ(lines("\r\nwp,d,A,1,2\r\nTP,D,9,9,05/02/2003,08:15:30,1\r\nrn,1 ,DAY, TWO\r\n"
                    "RP,D,A,1,2\r\nRP,D,B,3,4,,,text\r\nRN,NORTH\r\nRP,D,B,3,4\r\nRN,3\r\n"
                    "RP,D,A,1,2\r\n"),
              "W A||1.00000 2.00000|-|-|-\nW B|text|3.00000 4.00000|-|-|-\n"
              "R DAY, TWO: A B\nR NORTH: B\nR Route 3: A\n");
}

TEST_F(WaypointPlus, OtherLinesAreMalformed)
{
    EXPECT_EQ(lines("WP,D,A,1,2\r\nWP\r\nhello\r\nWP,D\r\nWP,D,B,3,4"),
              "W A||1.00000 2.00000|-|-|-\nW B||3.00000 4.00000|-|-|-\nbad 3\n");
}

TEST_F(WaypointPlus, TheFilesDatumCounts)
{
    const std::string rest = "\r\nWP,D,A,48.12345,11.56789\r\n";
    EXPECT_EQ(read("Waypoint+ Text", ".txt",
                   "Datum,European 1950,International 1924,-251,-0.14192702,-87,-98,-121" + rest),
              "W A||48.12261 11.56683|-|-|-\n");
    EXPECT_EQ(read("Waypoint+ Text", ".txt",
                   "\xEF\xBB\xBF"
                   "Datum,WGS 84" +
                       rest),
              "W A||48.12345 11.56789|-|-|-\n");
    user.answers = {answer::no};
    EXPECT_EQ(read("Waypoint+ Text", ".txt", "Datum,Mars" + rest), "refused\n");
}

TEST_F(WaypointPlus, IsKnownByItsFirstLine)
{
    EXPECT_TRUE(is_waypoint_plus("Datum,WGS84,WGS84,0,0,0,0,0\r\n", ".txt"));
    EXPECT_TRUE(is_waypoint_plus("\r\n wp,d,A,1,2", ".txt"));
    EXPECT_FALSE(is_waypoint_plus("Grid\tLat/Lon hddd.ddddd\xB0\r\nDatum\tWGS 84\r\n", ".txt"));
    EXPECT_FALSE(is_waypoint_plus("Datum\r\n", ".txt"));
    EXPECT_FALSE(is_waypoint_plus("ALPHA,48.1,11.5\r\n", ".txt"));
    EXPECT_FALSE(is_waypoint_plus("", ".txt"));
}

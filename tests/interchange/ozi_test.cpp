#include "interchange/ozi.h"

#include "core/files.h"
#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class Ozi : public format_fixture {
protected:
    static constexpr const char* head = "OziExplorer Waypoint File Version 1.1\r\n"
                                        "WGS 84\r\nReserved 2\r\nReserved 3\r\n";
    static constexpr const char* route_head = "OziExplorer Route File Version 1.0\r\n"
                                              "WGS 84\r\nReserved 1\r\nReserved 2\r\n";

    std::string wpt(const std::string& lines) { return read("OziExplorer", ".wpt", head + lines); }
    std::string rte(const std::string& lines)
    {
        return read("OziExplorer", ".rte", route_head + lines);
    }
};

} // namespace

TEST_F(Ozi, WritesWaypointsLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(
        write("OziExplorer", ".wpt"),
        crlf("OziExplorer Waypoint File Version 1.0\nWGS 84\nReserved 2\nReserved 3\n") +
            crlf("1,ALPHA, 48.12345, 011.56789,37743.3440972,0, 1, 3,   8388608,     65535,"
                 "Start\xD1 Nordtor, 0, 0, 0, 1703\n") +
            crlf("2,K\xD6LN-1, 50.94128, 006.95828,37743.3750000,0, 1, 3,   8388608,     65535,"
                 "Br\xFC"
                 "cke \xFC"
                 "ber Flu\xDF, 0, 0, 0, 174\n") +
            crlf("3,RIO, -22.95192, -043.21049,38046.9999884,0, 1, 3,   8388608,     65535,"
                 "\"Cristo\" & 'co', 0, 0, 0, 2329\n") +
            crlf("4,FIJI, -16.57819, 179.98765,,0, 1, 3,   8388608,     65535,, 0, 0, 0, -777\n") +
            crlf("5,A\xD1"
                 "B, 64.14700, -179.99990,35156.7222222,0, 1, 3,   8388608,     65535,"
                 "a comma\xD1 two commas\xD1, 0, 0, 0, 0\n") +
            crlf("6,DEADSE, 31.50000, 035.50000,37319.2125810,0, 1, 3,   8388608,     65535,"
                 "below sea level, 0, 0, 0, -1404\n") +
            crlf("7,QUITO, -00.00221, 000.00000,39668.3389815,0, 1, 3,   8388608,     65535,"
                 "Mitad_0;Grad, 0, 0, 0, 8146\n"));
}

TEST_F(Ozi, WritesRoutesLetterByLetter)
{
    put_awkward();
    const auto alpha = [](int n) {
        const std::string k = std::to_string(n);
        return "W,1 ," + k + " ," + k +
               " ,ALPHA, 48.12345, 011.56789,37743.3440972,0, 1, 0,   8388608,     65535,"
               "Start\xD1 Nordtor, 0, 0\n";
    };
    EXPECT_EQ(
        write("OziExplorer", ".rte"),
        crlf("OziExplorer Route File Version 1.0\nWGS 84\nReserved 2\nReserved 3\nR,1 ,LOOP 1,,\n" +
             alpha(1) +
             "W,1 ,2 ,2 ,RIO, -22.95192, -043.21049,38046.9999884,0, 1, 0,   8388608,     65535,"
             "\"Cristo\" & 'co', 0, 0\n"
             "W,1 ,3 ,3 ,A\xD1"
             "B, 64.14700, -179.99990,35156.7222222,0, 1, 0,   8388608,     65535,"
             "a comma\xD1 two commas\xD1, 0, 0\n" +
             alpha(4)));
}

TEST_F(Ozi, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(read("OziExplorer", ".wpt", write("OziExplorer", ".wpt")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|2003-05-02 08:15:30|519|-\n"
              "W K\xD6LN-1|Br\xFC"
              "cke \xFC"
              "ber Flu\xDF|50.94128 6.95828|2003-05-02 09:00:00|53|-\n"
              "W RIO|\"Cristo\" & 'co'|-22.95192 -43.21049|2004-02-29 23:59:59|710|-\n"
              "W FIJI||-16.57819 179.98765|-|-|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|1996-04-01 17:20:00|0|-\n"
              "W DEADSE|below sea level|31.50000 35.50000|2002-03-04 05:06:07|-428|-\n"
              "W QUITO|Mitad_0;Grad|-0.00221 0.00000|2008-08-08 08:08:08|2483|-\n");
    EXPECT_EQ(read("OziExplorer", ".rte", write("OziExplorer", ".rte")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|2003-05-02 08:15:30|-|-\n"
              "W RIO|\"Cristo\" & 'co'|-22.95192 -43.21049|2004-02-29 23:59:59|-|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|1996-04-01 17:20:00|-|-\n"
              "R LOOP 1: ALPHA RIO A,B ALPHA\n");
}

TEST_F(Ozi, EveryAltitudeInMetresSurvivesTheFeet)
{
    for (int metres = -500; metres <= 9000; metres += 1) {
        put("P" + std::to_string(metres + 500), "", 10, 10, {}, static_cast<std::int16_t>(metres));
    }
    import_content content;
    import_bytes(*format_of_text("OziExplorer", true), write("OziExplorer", ".wpt"), ".wpt", false,
                 &content);
    ASSERT_EQ(content.waypoints.size(), 9501U);
    for (std::size_t i = 0; i < content.waypoints.size(); ++i)
        ASSERT_EQ(content.waypoints[i].alt, static_cast<int>(i) - 500);
}

TEST_F(Ozi, ReadsPaddedFieldsOfAnyLineEndAndCase)
{
    const std::string row = "  -1,ALPHA      ,  48.123450, -11.567890,37743.34410,  0, 1, 3,   0, "
                            "65535,Start\xD1 here    , 0, 0,    0,   1703";
    const std::string expected =
        "W ALPHA|Start, here|48.12345 -11.56789|2003-05-02 08:15:30|519|-\n";
    EXPECT_EQ(wpt(row + "\r\n"), expected);
    EXPECT_EQ(wpt("\r\n" + row), expected);
    EXPECT_EQ(read("OziExplorer", ".wpt",
                   "OZIEXPLORER WAYPOINT FILE VERSION 9.9\nwgs 84\n\ngarmin\n" + row),
              expected);
    EXPECT_EQ(read("OziExplorer", ".wpt",
                   "\xEF\xBB\xBFOziExplorer Waypoint File Version 1.1\nWGS 84\n\n\n"
                   "1,A,1,2,,0,1,3,0,65535,Br\xC3\xBC"
                   "cke\xC3\x91 Nord\n"),
              "W A|Br\xFC"
              "cke, Nord|1.00000 2.00000|-|-|-\n");
}

TEST_F(Ozi, FieldsThatALineLacksAreUnknown)
{
    EXPECT_EQ(wpt("1,A,1.5,2.5\r\n2,B,1.5,-2.5,\r\n3,C,1.5,2.5,37743.5,0,1,3,0,65535,text\r\n"),
              "W A||1.50000 2.50000|-|-|-\n"
              "W B||1.50000 -2.50000|-|-|-\n"
              "W C|text|1.50000 2.50000|2003-05-02 12:00:00|-|-\n");
}

TEST_F(Ozi, DayNumbersAreRoundedToTheNearestSecond)
{
    // 37743.34410 is 08:15:30.24, 38046.99999 is 23:59:59.14, 38046.999995 the next day.
    EXPECT_EQ(wpt("1,A,1,2,37743.34410\r\n2,B,1,2,38046.99999\r\n3,C,1,2,38046.999995\r\n"
                  "4,D,1,2,37743.34409\r\n"),
              "W A||1.00000 2.00000|2003-05-02 08:15:30|-|-\n"
              "W B||1.00000 2.00000|2004-02-29 23:59:59|-|-\n"
              "W C||1.00000 2.00000|2004-03-01 00:00:00|-|-\n"
              "W D||1.00000 2.00000|2003-05-02 08:15:29|-|-\n");
}

TEST_F(Ozi, NoDateIsAnEmptyFieldZeroOrNonsense)
{
    EXPECT_EQ(wpt("1,A,1,2,\r\n2,B,1,2,0\r\n3,C,1,2,0.0000000\r\n4,D,1,2,soon\r\n5,E,1,2,1e300\r\n"
                  "6,F,1,2,-5\r\n"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W B||1.00000 2.00000|-|-|-\n"
              "W C||1.00000 2.00000|-|-|-\n"
              "W D||1.00000 2.00000|-|-|-\n"
              "W E||1.00000 2.00000|-|-|-\n"
              "W F||1.00000 2.00000|-|-|-\n");
}

TEST_F(Ozi, TheUnknownAltitudeIsANumber)
{
    const std::string front = ",1,2,,0,1,3,0,65535,,0,0,0,";
    EXPECT_EQ(wpt("1,A" + front + "-777\r\n2,B" + front + " -777.0\r\n3,C" + front +
                  "-777.5\r\n4,D" + front + "1e9\r\n5,E" + front + "3.3,6,0,17\r\n"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W B||1.00000 2.00000|-|-|-\n"
              "W C||1.00000 2.00000|-|-237|-\n"
              "W D||1.00000 2.00000|-|-|-\n"
              "W E||1.00000 2.00000|-|1|-\n");
}

TEST_F(Ozi, MalformedLinesAreCountedAndTheRestIsRead)
{
    EXPECT_EQ(wpt("1,A,1,2\r\n2,B,one,2\r\n3,C,91,2\r\n4,D,1,181\r\nnonsense\r\n6,F,1,nan\r\n"
                  "7,G,1,2\r\n"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W G||1.00000 2.00000|-|-|-\n"
              "bad 5\n");
    scripted_platform::plain_texts();
    const import_result result =
        import_bytes(*format_of_text("OziExplorer", true),
                     std::string(head) + "1,A,1,2\r\n2,B,one,2\r\n3,C,3,4\r\n4\r\n", ".wpt");
    EXPECT_EQ(result.waypoints, 2);
    EXPECT_EQ(result.bad_lines, 2);
    EXPECT_EQ(result.remarks, text(7960, "2", "6, 8"));
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(Ozi, RoutesComeOneBehindTheOther)
{
    EXPECT_EQ(rte("\r\n\r\nR,  0,DAY_1\xD1 NORTH  ,,255\r\n"
                  "W,  0,  1,  1,ALPHA   ,  48.123450,  11.567890,37743.3440972,0,1,3,0,65535,"
                  "Start\xD1_Nordtor,0,0\r\n"
                  "W,0,,2,B,1.000000,-2.000000,,0\r\n"
                  "R,1,,,\r\n"
                  "W,1,,1,ALPHA,48.123450,11.567890,,0,1,3,0,65535,,0,0\r\n"),
              "W ALPHA|Start,_Nordtor|48.12345 11.56789|2003-05-02 08:15:30|-|-\n"
              "W B||1.00000 -2.00000|-|-|-\n"
              "R DAY 1, NORTH: ALPHA B\n"
              "R Route 2: ALPHA\n");
}

TEST_F(Ozi, DamagedRouteLinesAreLeftOut)
{
    // A raw comma in a name moves the position.
    EXPECT_EQ(rte("R,1,X,,\r\nW,1,,1,A, B,1,2,0\r\nW,1,,2,C,1,2,0\r\nX,1\r\n"),
              "W C||1.00000 2.00000|-|-|-\nR X: C\nbad 2\n");
}

TEST_F(Ozi, ThePointsOfALoopAreOneWaypoint)
{
    EXPECT_EQ(rte("R,1,LOOP,,\r\nW,1,,1,A,1,2,0\r\nW,1,,2,B,3,4,0\r\nW,1,,3,A,1,2,0\r\n"
                  "W,1,,4,A,5,6,0\r\n"),
              "W A||1.00000 2.00000|-|-|-\nW B||3.00000 4.00000|-|-|-\n"
              "W A||5.00000 6.00000|-|-|-\nR LOOP: A B A A\n");
}

TEST_F(Ozi, TheFilesDatumCounts)
{
    const std::string rest = "\r\nReserved 2\r\nReserved 3\r\n1,A,48.12345,11.56789\r\n";
    const std::string first = "OziExplorer Waypoint File Version 1.1\r\n";
    EXPECT_EQ(read("OziExplorer", ".wpt", first + "European 1950" + rest),
              "W A||48.12261 11.56683|-|-|-\n");
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(read("OziExplorer", ".wpt", first + "european-1950 (Mean Solution)" + rest),
              "W A||48.12261 11.56683|-|-|-\n");
    // An unknown one is told, and nothing is read against the user's will.
    user.answers = {answer::no};
    EXPECT_EQ(read("OziExplorer", ".wpt", first + "Mars 2000" + rest), "refused\n");
    EXPECT_EQ(user.numbers(), (std::vector<int>{7961}));
}

TEST_F(Ozi, DatumsOfOtherProgramsAreKnownByTheirNames)
{
    datums = datum_parse(
        read_file(VELKORO_SOURCE_DIR "/data/Datum.ins").value_or("")); // the shipped table
    for (const char* name :
         {"Potsdam Rauenberg DHDN", "Ord Srvy Grt Britn", "NTF France", "CH-1903", "Finland Hayfrd",
          "Geod Datum '49", "So American '69", "Tokyo mean", "Austria", "Ain el Abd 1970",
          "NAD27 CONUS", "Prov So Chilean '63"}) {
        const std::string out = read("OziExplorer", ".wpt",
                                     "OziExplorer Waypoint File Version 1.1\r\n" +
                                         std::string(name) + "\r\n\r\n\r\n1,A,10,20\r\n");
        EXPECT_TRUE(user.messages.empty()) << name;
        EXPECT_NE(out, "W A||10.00000 20.00000|-|-|-\n") << name << " is shifted";
    }
}

TEST_F(Ozi, OtherFilesAreRefused)
{
    for (const char* text :
         {"", "\r\n", "H  SOFTWARE NAME & VERSION\r\n",
          "OziExplorer Track Point File Version 2.0\r\nWGS 84\r\n", "1,A,1,2,0\r\n"})
        EXPECT_EQ(read("OziExplorer", ".wpt", text), "refused\n") << text;
    EXPECT_EQ(wpt(""), "");
}

TEST_F(Ozi, IsKnownByItsFirstLine)
{
    EXPECT_TRUE(is_ozi("OziExplorer Waypoint File Version 1.0\r\nWGS 84\r\n", ".wpt"));
    EXPECT_TRUE(is_ozi("oziexplorer route file version 1.0", ".rte"));
    EXPECT_FALSE(is_ozi("OziExplorer Track Point File Version 2.0\r\n", ".plt"));
    EXPECT_FALSE(is_ozi("H  SOFTWARE NAME & VERSION\r\nOziExplorer Waypoint File", ".wpt"));
    EXPECT_FALSE(is_ozi("", ".wpt"));
}

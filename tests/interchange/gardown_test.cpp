#include "interchange/gardown.h"

#include "tests/interchange/format_fixture.h"

#include <set>

using namespace velkoro;

namespace {

class Gardown : public format_fixture {
protected:
    std::string lines(const std::string& text)
    {
        return read("Gardown", ".gd", "D  100   WGS 84\r\n" + text);
    }
};

const std::string alpha = "ALPHA  N48 07.4070 E011 34.0730   0 May 02 08:15:30 2003 "
                          "@Start, Nordtor\n";
const std::string rio = "RIO    S22 57.1150 W043 12.6290   0 Feb 29 23:59:59 2004 "
                        "@\"Cristo\" & 'co'\n";
const std::string a_b = "A,B    N64 08.8200 W179 59.9940   0 Apr 01 17:20:00 1996 "
                        "@a comma, two commas,\n";

} // namespace

TEST_F(Gardown, WritesWaypointsAndRoutesLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(write("Gardown", ".gd"),
              crlf("D  100   WGS 84\nW  " + alpha +
                   "W  K\xD6LN-1 N50 56.4770 E006 57.4970   0 May 02 09:00:00 2003 @Br\xFC"
                   "cke \xFC"
                   "ber Flu\xDF\n"
                   "W  " +
                   rio +
                   "W  FIJI   S16 34.6910 E179 59.2590   0 Dec 31 00:00:00 1989 @\n"
                   "W  " +
                   a_b +
                   "W  DEADSE N31 30.0000 E035 30.0000   0 Mar 04 05:06:07 2002 "
                   "@below sea level\n"
                   "W  QUITO  S00 00.1330 E000 00.0000   0 Aug 08 08:08:08 2008 @Mitad_0;Grad\n"
                   "R  01 LOOP 1\n"
                   "WR 01 " +
                   alpha + "WR 02 " + rio + "WR 03 " + a_b + "WR 04 " + alpha + "E  \n"));
}

TEST_F(Gardown, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(read("Gardown", ".gd", write("Gardown", ".gd")),
              "W ALPHA|Start, Nordtor|48.12345 11.56788|2003-05-02 08:15:30|-|-\n"
              "W K\xD6LN-1|Br\xFC"
              "cke \xFC"
              "ber Flu\xDF|50.94128 6.95828|2003-05-02 09:00:00|-|-\n"
              "W RIO|\"Cristo\" & 'co'|-22.95192 -43.21048|2004-02-29 23:59:59|-|-\n"
              "W FIJI||-16.57818 179.98765|-|-|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|1996-04-01 17:20:00|-|-\n"
              "W DEADSE|below sea level|31.50000 35.50000|2002-03-04 05:06:07|-|-\n"
              "W QUITO|Mitad_0;Grad|-0.00222 0.00000|2008-08-08 08:08:08|-|-\n"
              "R LOOP 1: ALPHA RIO A,B ALPHA\n");
}

TEST_F(Gardown, ACommentThatBeginsWithTheMarkKeepsIt)
{
    put("A", "@ABC text", 1, 2);
    EXPECT_EQ(read("Gardown", ".gd", write("Gardown", ".gd")),
              "W A|@ABC text|1.00000 2.00000|-|-|-\n");
}

TEST_F(Gardown, LongNamesAreCutAndStayApart)
{
    put("MOUNTAIN 1", "", 1, 2);
    put("MOUNTAIN 2", "", 1, 3);
    put("MOUNT1", "", 1, 4);
    put("MOUNTAIN 3", "", 1, 5);
    put_route("R", {"MOUNTAIN 2", "MOUNT1", "MOUNTAIN 1"});
    EXPECT_EQ(read("Gardown", ".gd", write("Gardown", ".gd")),
              "W MOUNTA||1.00000 2.00000|-|-|-\nW MOUNT2||1.00000 3.00000|-|-|-\n"
              "W MOUNT1||1.00000 4.00000|-|-|-\nW MOUNT3||1.00000 5.00000|-|-|-\n"
              "R R: MOUNT2 MOUNT1 MOUNTA\n");
}

TEST_F(Gardown, ManyLongNamesOfOneBeginningStayApart)
{
    for (int i = 0; i < 2000; ++i)
        put("MOUNTAIN " + std::to_string(i), "", i / 100.0, 2);
    import_content content;
    import_bytes(*format_of_text("Gardown", true), write("Gardown", ".gd"), ".gd", false, &content);
    std::set<std::string> names;
    for (const wayp_rec& w : content.waypoints)
        names.insert(w.nam);
    EXPECT_EQ(names.size(), 2000U);
}

TEST_F(Gardown, DatesComeInSeveralForms)
{
    const auto row = [&](const std::string& behind) {
        return lines("W  ALPHA  N48 07.4070 E011 34.0734 " + behind + "\r\n");
    };
    const std::string start = "W ALPHA|Start|48.12345 11.56789|";
    const std::string dated = start + "2003-05-02 08:15:30|-|-\n";
    EXPECT_EQ(row("Fri May 02 08:15:30 2003 Start"), dated);
    EXPECT_EQ(row("Fri May  2 08:15:30 2003 Start"), dated);
    EXPECT_EQ(row("  0 May 02 08:15:30 2003 @Start"), dated);
    EXPECT_EQ(row("May 02 08:15:30 2003 Start"), dated);
    EXPECT_EQ(row("02-MAY-03 08:15:30 Start"), dated);
    EXPECT_EQ(row("02-May-2003 08:15:30 @Start"), dated);
    EXPECT_EQ(row("Sun Dec 31 00:00:00 1989 Start"), start + "-|-|-\n");
    EXPECT_EQ(row("31-DEC-89 00:00:00 Start"), start + "-|-|-\n");
    EXPECT_EQ(row("Start"), start + "-|-|-\n");
    EXPECT_EQ(row("@Start"), start + "-|-|-\n");
    EXPECT_EQ(row(""), "W ALPHA||48.12345 11.56789|-|-|-\n");
    EXPECT_EQ(row("Fri May 42 08:15:30 2003 Start"),
              "W ALPHA|Fri May 42 08:15:30 2003 Start|48.12345 11.56789|-|-|-\n");
}

TEST_F(Gardown, RowsMayBeShifted)
{
    const std::string rest = " Fri May 02 08:15:30 2003 Start\r\n";
    EXPECT_EQ(lines("W  A LONG NAME N48 07.407 W011 34.0734" + rest +
                    "W  B N48 07.4070 E011 34.0734" + rest + "w  C      s48.12345 e11.56789" +
                    rest + "W  N4 S5  N48 07.4070 E011 34.0734" + rest),
              "W A LONG NAME|Start|48.12345 -11.56789|2003-05-02 08:15:30|-|-\n"
              "W B|Start|48.12345 11.56789|2003-05-02 08:15:30|-|-\n"
              "W C|Start|-48.12345 11.56789|2003-05-02 08:15:30|-|-\n"
              "W N4 S5|Start|48.12345 11.56789|2003-05-02 08:15:30|-|-\n");
}

TEST_F(Gardown, RoutesEndWithTheirLine)
{
    EXPECT_EQ(lines("R  01 DAY ONE\r\nWR 01 A      N01 00.0000 E002 00.0000\r\n"
                    "WR 02 B      N03 00.0000 E004 00.0000\r\nE  \r\n"
                    "WR 01 C      N05 00.0000 E006 00.0000\r\n"
                    "R  02\r\nWR 100 A      N01 00.0000 E002 00.0000\r\n"),
              "W A||1.00000 2.00000|-|-|-\nW B||3.00000 4.00000|-|-|-\n"
              "W C||5.00000 6.00000|-|-|-\nR DAY ONE: A B\nR Route 2: A\n");
}

TEST_F(Gardown, MalformedLinesAreCountedAndTheRestIsRead)
{
    EXPECT_EQ(lines("W  A      N01 00.0000 E002 00.0000\r\nW\r\nW  B\r\n"
                    "W  C      N91 00.0000 E002 00.0000\r\nW  D      N01 60.1000 E002 00.0000\r\n"
                    "WR\r\nhello\r\nT  N01 00.0000 E002 00.0000\r\n"
                    "W  Z      N03 00.0000 E004 00.0000"),
              "W A||1.00000 2.00000|-|-|-\nW Z||3.00000 4.00000|-|-|-\nbad 6\n");
}

TEST_F(Gardown, TheDatumLineMayBeMissing)
{
    const std::string row = "W  A      N48.12345 E11.56789\r\n";
    EXPECT_EQ(read("Gardown", ".gd", row), "W A||48.12345 11.56789|-|-|-\n");
    EXPECT_EQ(read("Gardown", ".gd", "D  100\r\n" + row), "W A||48.12345 11.56789|-|-|-\n");
    EXPECT_EQ(read("Gardown", ".gd", "D  38    European 1950\r\n" + row),
              "W A||48.12261 11.56683|-|-|-\n");
    user.answers = {answer::no, answer::no};
    EXPECT_EQ(read("Gardown", ".gd", "D  99    Mars\r\n" + row), "refused\n");
    EXPECT_EQ(read("Gardown", ".gd", "D  99\r\n" + row), "refused\n");
}

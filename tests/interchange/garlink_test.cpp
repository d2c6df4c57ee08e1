#include "interchange/garlink.h"

#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class Garlink : public format_fixture {
protected:
    std::string lines(const std::string& text)
    {
        return read("Garlink", ".swp", "Lat/Lon WGS-84\r\n" + text);
    }
};

} // namespace

TEST_F(Garlink, WritesWaypointsLetterByLetter)
{
    put_awkward();
    put("LA PAZ", "", -16.5, -68.15);
    EXPECT_EQ(write("Garlink", ".swp"),
              crlf("Lat/Lon WGS-84\n"
                   "ALPHA N48.12345 E011.56789 0 03.05.02 08:15 @Start, Nordtor\n"
                   "K\xD6LN-1 N50.94128 E006.95828 0 03.05.02 09:00 @Br\xFC"
                   "cke \xFC"
                   "ber Flu\xDF\n"
                   "RIO S22.95192 W043.21049 0 04.02.29 23:59 @\"Cristo\" & 'co'\n"
                   "FIJI S16.57819 E179.98765 0 89.12.31 00:00 @\n"
                   "A,B N64.14700 W179.99990 0 96.04.01 17:20 @a comma, two commas,\n"
                   "DEADSE N31.50000 E035.50000 0 02.03.04 05:06 @below sea level\n"
                   "QUITO S00.00221 E000.00000 0 08.08.08 08:08 @Mitad_0;Grad\n"
                   "LA-PAZ S16.50000 W068.15000 0 89.12.31 00:00 @\n"));
}

TEST_F(Garlink, WritesTheChosenDegreeForm)
{
    put("ALPHA", "", 48.12345, -11.56789);
    export_options options;
    options.fmt = fmt_minutes;
    EXPECT_EQ(write("Garlink", ".swp", options), "Lat/Lon WGS-84\r\nALPHA N48\xB0"
                                                 "07.407' W011\xB0"
                                                 "34.073' 0 89.12.31 00:00 @\r\n");
    options.fmt = fmt_seconds;
    EXPECT_EQ(write("Garlink", ".swp", options), "Lat/Lon WGS-84\r\nALPHA N48\xB0"
                                                 "07'24.4\" W011\xB0"
                                                 "34'04.4\" 0 89.12.31 00:00 @\r\n");
}

TEST_F(Garlink, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(read("Garlink", ".swp", write("Garlink", ".swp")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|2003-05-02 08:15:00|-|-\n"
              "W K\xD6LN-1|Br\xFC"
              "cke \xFC"
              "ber Flu\xDF|50.94128 6.95828|2003-05-02 09:00:00|-|-\n"
              "W RIO|\"Cristo\" & 'co'|-22.95192 -43.21049|2004-02-29 23:59:00|-|-\n"
              "W FIJI||-16.57819 179.98765|-|-|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|1996-04-01 17:20:00|-|-\n"
              "W DEADSE|below sea level|31.50000 35.50000|2002-03-04 05:06:00|-|-\n"
              "W QUITO|Mitad_0;Grad|-0.00221 0.00000|2008-08-08 08:08:00|-|-\n");
}

TEST_F(Garlink, JustBelowAFullDegreeIsReadBack)
{
    export_options options;
    for (const int fmt : {fmt_degrees, fmt_minutes, fmt_seconds}) {
        store_reset();
        put("A", "", 48 + 59 / 60.0 + 59.962 / 3600, -(59 / 60.0 + 59.99 / 3600));
        options.fmt = fmt;
        EXPECT_EQ(read("Garlink", ".swp", write("Garlink", ".swp", options)).substr(0, 4), "W A|")
            << write("Garlink", ".swp", options);
    }
}

TEST_F(Garlink, ReadsWhatOtherFilesMayHave)
{
    EXPECT_EQ(
        lines("\r\nLA PAZ S16.5 W68.15 0 12.12.12 12:12:12 @blank @ two\n"
              "A N48\xB0"
              "07.407' E11\xB0"
              "34.073' 0 2003.05.02 08:15 @\n"
              "B n1.0 e2.0\nC N1.0 E2.0 0\nD N1.0 E2.0 @x\nE N1.0 E2.0 0 03.05.02 08:15 text\n"
              "F N1.0 E2.0 some text\nG N1 E2 0 03.05.02 08:15 @x\n"),
        "W LA PAZ|blank @ two|-16.50000 -68.15000|2012-12-12 12:12:12|-|-\n"
        "W A||48.12345 11.56788|2003-05-02 08:15:00|-|-\n"
        "W B||1.00000 2.00000|-|-|-\nW C||1.00000 2.00000|-|-|-\n"
        "W D|x|1.00000 2.00000|-|-|-\n"
        "W E|text|1.00000 2.00000|2003-05-02 08:15:00|-|-\n"
        "W F|some text|1.00000 2.00000|-|-|-\n"
        "W G|x|1.00000 2.00000|2003-05-02 08:15:00|-|-\n");
}

TEST_F(Garlink, MalformedLinesAreCountedAndTheRestIsRead)
{
    EXPECT_EQ(lines("A N1.0 E2.0 0\nB\nC N1.0\nD 1.0 2.0 0\nE N91.0 E2.0 0\nZ N3.0 E4.0 0"),
              "W A||1.00000 2.00000|-|-|-\nW Z||3.00000 4.00000|-|-|-\nbad 4\n");
}

TEST_F(Garlink, TheHeadNamesTheDatum)
{
    const std::string row = "A N48.12345 E11.56789 0\r\n";
    EXPECT_EQ(read("Garlink", ".swp", "lat/lon wgs84\r\n" + row), "W A||48.12345 11.56789|-|-|-\n");
    EXPECT_EQ(read("Garlink", ".swp",
                   "Lat/Lon European-1950\r\n" + row + "Lat/Lon WGS-84\r\n" +
                       "B N48.12345 E11.56789 0\r\n"),
              "W A||48.12261 11.56683|-|-|-\nW B||48.12345 11.56789|-|-|-\n");
    EXPECT_EQ(read("Garlink", ".swp", row), "refused\n");
    EXPECT_EQ(read("Garlink", ".swp", ""), "refused\n");
    user.answers = {answer::no};
    EXPECT_EQ(read("Garlink", ".swp", "Lat/Lon Mars\r\n" + row), "refused\n");
}

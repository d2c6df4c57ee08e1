#include "interchange/fugawi.h"

#include "core/form1.h"
#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class Fugawi : public format_fixture {
protected:
    Fugawi() { Form1.Datum.selected = 1; } // WGS 84
    std::string txt(std::string_view text) { return read("Fugawi Text", ".txt", text); }
};

} // namespace

TEST_F(Fugawi, WritesWaypointsLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(write("Fugawi Text", ".txt"),
              crlf("# Fugawi Export\n"
                   "# Latitude, Longitude and UTM coordinates are in WGS 84 datum\n"
                   "# Name, Latitude, Longitude, Date\n"
                   "ALPHA,48.12345,011.56789,20030502\n"
                   "K\xD6LN-1,50.94128,006.95828,20030502\n"
                   "RIO,-22.95192,-043.21049,20040229\n"
                   "FIJI,-16.57819,179.98765,\n"
                   "A-B,64.14700,-179.99990,19960401\n"
                   "DEADSE,31.50000,035.50000,20020304\n"
                   "QUITO,-00.00221,000.00000,20080808\n"));
}

TEST_F(Fugawi, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(txt(write("Fugawi Text", ".txt")),
              "W ALPHA||48.12345 11.56789|2003-05-02 00:00:00|-|-\n"
              "W K\xD6LN-1||50.94128 6.95828|2003-05-02 00:00:00|-|-\n"
              "W RIO||-22.95192 -43.21049|2004-02-29 00:00:00|-|-\n"
              "W FIJI||-16.57819 179.98765|-|-|-\n"
              "W A-B||64.14700 -179.99990|1996-04-01 00:00:00|-|-\n"
              "W DEADSE||31.50000 35.50000|2002-03-04 00:00:00|-|-\n"
              "W QUITO||-0.00221 0.00000|2008-08-08 00:00:00|-|-\n");
}

TEST_F(Fugawi, NamesTheListsDatumAndShiftsBackFromIt)
{
    put("A", "", 48.12345, 11.56789);
    Form1.Datum.selected = 0;
    const std::string text = write("Fugawi Text", ".txt");
    EXPECT_NE(text.find("are in European 1950 datum\r\n"), std::string::npos);
    EXPECT_NE(text.find("A,48.12429,011.56895,"), std::string::npos);
    EXPECT_EQ(txt(text), "W A||48.12345 11.56789|-|-|-\n");
}

TEST_F(Fugawi, ReportsAnUnknownDatum)
{
    user.answers = {answer::no};
    EXPECT_EQ(txt("# coordinates are in Atlantis datum\nA,1,2\n"), "refused\n");
    EXPECT_EQ(user.count(7961), 1);
}

TEST_F(Fugawi, FindsThePositionBehindNoneOneAndTwoTexts)
{
    EXPECT_EQ(txt("A,48.1,-11.5\n"
                  "B, comment , -48.1 , 11.5 ,x\n"
                  "C,short,long text,48.1,11.5,-428.6,20030502,081530\n"
                  "D,short,long text,48.1,11.5,,,\n"
                  "E,12,34,48.1,11.5,100\n"),
              "W A||48.10000 -11.50000|-|-|-\n"
              "W B|comment|-48.10000 11.50000|-|-|-\n"
              "W C|short|48.10000 11.50000|2003-05-02 08:15:30|-429|-\n"
              "W D|short|48.10000 11.50000|-|-|-\n"
              "W E|12|48.10000 11.50000|-|100|-\n");
}

TEST_F(Fugawi, ReadsEveryFormOfDate)
{
    EXPECT_EQ(txt("A,1,2,20030502\nB,1,2,030502\nC,1,2,2003-05-02\nD,1,2,02.05.2003\n"
                  "E,1,2,991231\nF,1,2,20031399\nG,1,2,0\n"),
              "W A||1.00000 2.00000|2003-05-02 00:00:00|-|-\n"
              "W B||1.00000 2.00000|2003-05-02 00:00:00|-|-\n"
              "W C||1.00000 2.00000|2003-05-02 00:00:00|-|-\n"
              "W D||1.00000 2.00000|2003-05-02 00:00:00|-|-\n"
              "W E||1.00000 2.00000|1999-12-31 00:00:00|-|-\n"
              "W F||1.00000 2.00000|-|-|-\n"
              "W G||1.00000 2.00000|-|-|-\n");
}

TEST_F(Fugawi, ReadsDegreesSplitByPointsAndBlanks)
{
    EXPECT_EQ(txt("A,48 07.407,-11 34.0734\nB,N48 07 24.42,W11 34 04.4\n"),
              "W A||48.12345 -11.56789|-|-|-\n"
              "W B||48.12345 -11.56789|-|-|-\n");
}

TEST_F(Fugawi, CountsMalformedLinesAndReadsTheRest)
{
    EXPECT_EQ(txt("\xEF\xBB\xBF# head\r\n\r\nA,1,2\r\nnothing\r\n,1,2\r\nB,91,2\r\nC,x,y,z\r\n"
                  "D,-1,-2"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W D||-1.00000 -2.00000|-|-|-\n"
              "bad 4\n");
}

TEST_F(Fugawi, IsToldByItsRemarks)
{
    EXPECT_TRUE(is_fugawi("\r\n  # x\r\n", ".txt"));
    EXPECT_FALSE(is_fugawi("A,1,2\r\n", ".txt"));
    EXPECT_FALSE(is_fugawi("", ".txt"));
}

#include "interchange/streetatlas.h"

#include "core/form1.h"
#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class StreetAtlas : public format_fixture {
protected:
    StreetAtlas() { Form1.Datum.selected = 1; } // WGS 84
    std::string txt(std::string_view text) { return read("StreetAtlas 7.0", ".txt", text); }
};

} // namespace

TEST_F(StreetAtlas, WritesWaypointsLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(write("StreetAtlas 7.0", ".txt"), crlf("48.12345 011.56789 ALPHA\n"
                                                     "50.94128 006.95828 K\xD6LN-1\n"
                                                     "-22.95192 -043.21049 RIO\n"
                                                     "-16.57819 179.98765 FIJI\n"
                                                     "64.14700 -179.99990 A-B\n"
                                                     "31.50000 035.50000 DEADSE\n"
                                                     "-00.00221 000.00000 QUITO\n"));
}

TEST_F(StreetAtlas, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(txt(write("StreetAtlas 7.0", ".txt")), "W ALPHA||48.12345 11.56789|-|-|-\n"
                                                     "W K\xD6LN-1||50.94128 6.95828|-|-|-\n"
                                                     "W RIO||-22.95192 -43.21049|-|-|-\n"
                                                     "W FIJI||-16.57819 179.98765|-|-|-\n"
                                                     "W A-B||64.14700 -179.99990|-|-|-\n"
                                                     "W DEADSE||31.50000 35.50000|-|-|-\n"
                                                     "W QUITO||-0.00221 0.00000|-|-|-\n");
}

TEST_F(StreetAtlas, WritesOnTheListsDatum)
{
    put("A", "", 48.12345, 11.56789);
    Form1.Datum.selected = 0; // European 1950
    EXPECT_EQ(write("StreetAtlas 7.0", ".txt"), "48.12429 011.56895 A\r\n");
}

TEST_F(StreetAtlas, ReadsCommasBlanksAndBoth)
{
    EXPECT_EQ(txt("BEGIN SYMBOL\n"
                  "48.1,-11.5,Plain\n"
                  "48.1, -11.5, With blanks\n"
                  "48.1 -11.5 Only blanks\n"
                  "48.1\t-11.5\tTabs\n"
                  "  +48.1 , -11.5 , \"In, marks\"\n"
                  "48.1 -11.5 12 oaks\n"
                  "END\n"
                  "Other lines\n"),
              "W Plain||48.10000 -11.50000|-|-|-\n"
              "W With blanks||48.10000 -11.50000|-|-|-\n"
              "W Only blanks||48.10000 -11.50000|-|-|-\n"
              "W Tabs||48.10000 -11.50000|-|-|-\n"
              "W In, marks||48.10000 -11.50000|-|-|-\n"
              "W 12 oaks||48.10000 -11.50000|-|-|-\n");
}

TEST_F(StreetAtlas, CountsMalformedLinesAndReadsTheRest)
{
    EXPECT_EQ(txt("48.1,-11.5\n48.1,x,A\n48.1\n91,1,B\n1,181,C\n1,2,D"),
              "W D||1.00000 2.00000|-|-|-\nbad 5\n");
}

TEST_F(StreetAtlas, IsToldByItsFirstLine)
{
    EXPECT_TRUE(is_streetatlas("BEGIN SYMBOL\r\n1,2,A\r\n", ".txt"));
    EXPECT_TRUE(is_streetatlas("begin line\n", ".txt"));
    EXPECT_TRUE(is_streetatlas("\n48.1 11.5 A\n", ".txt"));
    EXPECT_FALSE(is_streetatlas("4811 5 A\n", ".txt"));
    EXPECT_FALSE(is_streetatlas("A;48.1;11.5\n", ".txt"));
    EXPECT_FALSE(is_streetatlas("\n\n", ".txt"));
}

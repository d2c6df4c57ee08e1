#include "interchange/terrain_navigator.h"

#include "core/form1.h"
#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class TerrainNavigator : public format_fixture {
protected:
    TerrainNavigator() { Form1.Datum.selected = 1; } // WGS 84

    std::string mxf(std::string_view text) { return read("TerrainNavigator", ".mxf", text); }
    std::string rxf(std::string_view text) { return read("TerrainNavigator", ".rxf", text); }
};

} // namespace

// The 32-bit figures of the datum table leave 0.1 m.
TEST_F(TerrainNavigator, WritesWaypointsLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(write("TerrainNavigator", ".mxf"),
              crlf("48.1234491, 11.5678900, \"ALPHA\", \"Start, Nordtor\", ff0000, 3\n"
                   "50.9412790, 06.9582800, \"K\xD6LN-1\", \"Br\xFC"
                   "cke \xFC"
                   "ber Flu\xDF\", ff0000, 3\n"
                   "-22.9519198, -43.2104900, \"RIO\", \"'Cristo' & 'co'\", ff0000, 3\n"
                   "-16.5781899, 179.9876500, \"FIJI\", \"\", ff0000, 3\n"
                   "64.1469990, -179.9999000, \"A,B\", \"a comma, two commas,\", ff0000, 3\n"
                   "31.4999996, 35.5000000, \"DEADSE\", \"below sea level\", ff0000, 3\n"
                   "-00.0022100, 00.0000000, \"QUITO\", \"Mitad_0;Grad\", ff0000, 3\n"));
}

TEST_F(TerrainNavigator, WritesRoutesWithAnEmptyLineBetween)
{
    put("A", "first", 1, 2);
    put("B", "", -1, -2);
    put_route("ONE", {"A", "B"});
    put_route("TWO", {"B"});
    EXPECT_EQ(write("TerrainNavigator", ".rxf"),
              crlf("01.0000000, 02.0000000, \"A\", \"first\", 800000, ff0000, 3\n"
                   "-01.0000000, -02.0000000, \"B\", \"\", 800000, ff0000, 3\n"
                   "\n"
                   "-01.0000000, -02.0000000, \"B\", \"\", 800000, ff0000, 3\n"));
}

TEST_F(TerrainNavigator, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(mxf(write("TerrainNavigator", ".mxf")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|-|-|-\n"
              "W K\xD6LN-1|Br\xFC"
              "cke \xFC"
              "ber Flu\xDF|50.94128 6.95828|-|-|-\n"
              "W RIO|'Cristo' & 'co'|-22.95192 -43.21049|-|-|-\n"
              "W FIJI||-16.57819 179.98765|-|-|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|-|-|-\n"
              "W DEADSE|below sea level|31.50000 35.50000|-|-|-\n"
              "W QUITO|Mitad_0;Grad|-0.00221 0.00000|-|-|-\n");
    EXPECT_EQ(rxf(write("TerrainNavigator", ".rxf")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|-|-|-\n"
              "W RIO|'Cristo' & 'co'|-22.95192 -43.21049|-|-|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|-|-|-\n"
              "R Route 1: ALPHA RIO A,B ALPHA\n");
}

TEST_F(TerrainNavigator, WritesOnTheListsDatum)
{
    put("A", "", 48.12345, 11.56789);
    Form1.Datum.selected = 0; // European 1950
    EXPECT_EQ(write("TerrainNavigator", ".mxf").substr(0, 23), "48.1242909, 11.5689452,");
}

TEST_F(TerrainNavigator, ReadsOneTwoAndThreeTexts)
{
    EXPECT_EQ(
        mxf("43.7601389, -071.2791299, \"Cottonwood\", \"Cttnwd\", \"A large tree\", 800080, 137\n"
            "1,2,\"full\",\"\",\"third\",ff,1\r"
            "1, 2, \"name\", \"comment\", ff0000, 3\r\n"
            "1, 2, \"alone\", 0, 3\n"
            "1, 2, \"cut"),
        "W Cttnwd|A large tree|43.76014 -71.27913|-|-|-\n"
        "W full|third|1.00000 2.00000|-|-|-\n"
        "W name|comment|1.00000 2.00000|-|-|-\n"
        "W alone||1.00000 2.00000|-|-|-\n"
        "W cut||1.00000 2.00000|-|-|-\n");
}

TEST_F(TerrainNavigator, TakesMarksAndCommasWithinATextAsTheyAre)
{
    EXPECT_EQ(mxf("1, 2, \"a \"b\" c\", \"x, y\" z\", 0, 3\n"),
              "W a \"b\" c|x, y\" z|1.00000 2.00000|-|-|-\n");
}

TEST_F(TerrainNavigator, CountsMalformedLinesAndReadsTheRest)
{
    EXPECT_EQ(mxf("1, 2, \"A\", \"\", 0, 3\n"
                  "north, 2, \"B\", \"\", 0, 3\n"
                  "90.5, 2, \"B\", \"\", 0, 3\n"
                  "1, 180.5, \"B\", \"\", 0, 3\n"
                  "1, 2, B, , 0, 3\n"
                  "1, 2\n"
                  "1, 2, \"\", \"no name\", 0, 3\n"
                  "\n"
                  "3, 4, \"C\", \"\", 0, 3\n"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W C||3.00000 4.00000|-|-|-\n"
              "bad 6\n");
}

TEST_F(TerrainNavigator, StartsANewRouteAtAnEmptyLineAndMeetsPointsAgain)
{
    EXPECT_EQ(rxf("\n1, 2, \"A\", \"\", 0, 0, 3\n"
                  "3, 4, \"B\", \"\", 0, 0, 3\n"
                  "   \n\n"
                  "3, 4, \"B\", \"\", 0, 0, 3\n"
                  "5, 6, \"B\", \"\", 0, 0, 3\n"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W B||3.00000 4.00000|-|-|-\n"
              "W B||5.00000 6.00000|-|-|-\n"
              "R Route 1: A B\n"
              "R Route 2: B B\n");
}

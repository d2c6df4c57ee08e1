#include "interchange/atlas_gis.h"

#include "core/form1.h"
#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class AtlasGis : public format_fixture {
protected:
    AtlasGis() { Form1.Datum.selected = 1; } // WGS 84
    std::string bna(std::string_view text) { return read("Atlas GIS", ".bna", text); }
};

} // namespace

TEST_F(AtlasGis, WritesWaypointsAndRoutesLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(write("Atlas GIS", ".bna"), crlf("\"ALPHA\",\"Start, Nordtor\",1\n"
                                               "011.56789,48.12345\n"
                                               "\"K\xD6LN-1\",\"Br\xFC"
                                               "cke \xFC"
                                               "ber Flu\xDF\",1\n"
                                               "006.95828,50.94128\n"
                                               "\"RIO\",\"'Cristo' & 'co'\",1\n"
                                               "-043.21049,-22.95192\n"
                                               "\"FIJI\",\"\",1\n"
                                               "179.98765,-16.57819\n"
                                               "\"A,B\",\"a comma, two commas,\",1\n"
                                               "-179.99990,64.14700\n"
                                               "\"DEADSE\",\"below sea level\",1\n"
                                               "035.50000,31.50000\n"
                                               "\"QUITO\",\"Mitad_0;Grad\",1\n"
                                               "000.00000,-00.00221\n"
                                               "\"Route 01\",\"LOOP 1\",-4\n"
                                               "011.56789,48.12345\n"
                                               "-043.21049,-22.95192\n"
                                               "-179.99990,64.14700\n"
                                               "011.56789,48.12345\n"));
}

TEST_F(AtlasGis, ReadsBackWhatItWrites)
{
    put_awkward();
    EXPECT_EQ(bna(write("Atlas GIS", ".bna")),
              "W ALPHA|Start, Nordtor|48.12345 11.56789|-|-|-\n"
              "W K\xD6LN-1|Br\xFC"
              "cke \xFC"
              "ber Flu\xDF|50.94128 6.95828|-|-|-\n"
              "W RIO|'Cristo' & 'co'|-22.95192 -43.21049|-|-|-\n"
              "W FIJI||-16.57819 179.98765|-|-|-\n"
              "W A,B|a comma, two commas,|64.14700 -179.99990|-|-|-\n"
              "W DEADSE|below sea level|31.50000 35.50000|-|-|-\n"
              "W QUITO|Mitad_0;Grad|-0.00221 0.00000|-|-|-\n"
              "R LOOP 1: ALPHA RIO A,B ALPHA\n");
}

TEST_F(AtlasGis, KeepsARouteOfOnePointARoute)
{
    put("A", "", 1, 2);
    put_route("ONE", {"A"});
    EXPECT_EQ(bna(write("Atlas GIS", ".bna")), "W A||1.00000 2.00000|-|-|-\nR ONE: A\n");
}

TEST_F(AtlasGis, WritesOnTheListsDatum)
{
    put("A", "", 48.12345, 11.56789);
    Form1.Datum.selected = 0; // European 1950
    EXPECT_EQ(write("Atlas GIS", ".bna"), "\"A\",\"\",1\r\n011.56895,48.12429\r\n");
}

TEST_F(AtlasGis, ReadsOneToFourNamesAndBlanksAroundCommas)
{
    EXPECT_EQ(bna("\"A\",1\n2,1\n"
                  "\"B\" , \"c\" , 1\n 2 , 1 \n"
                  "\"C\",\"c\",\"third\",\"fourth\",1\n2 1\n"
                  "\"\",\"D\",1\n2,1\n"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W B|c|1.00000 2.00000|-|-|-\n"
              "W C|c|1.00000 2.00000|-|-|-\n"
              "W D|D|1.00000 2.00000|-|-|-\n");
}

TEST_F(AtlasGis, ReadsLinesOfAnySignAndSeveralCoordinatesOnOneLine)
{
    EXPECT_EQ(bna("\"A\",\"\",1\n2,1\n"
                  "\"Area\",\"\",3\n2,1 4,3\n2,1\n"
                  "\"Route 02\",\"Two\",2\n2,1,4,3\n"
                  "\"Lake\",\"round\",2\n2,1\n0.1,0.1\n"),
              "W A||1.00000 2.00000|-|-|-\n"
              "W Are2||3.00000 4.00000|-|-|-\n"
              "R Area: A Are2 A\n"
              "R Two: A Are2\n");
}

TEST_F(AtlasGis, CountsMalformedRecordsAndReadsTheRest)
{
    EXPECT_EQ(bna("\"A\",\"\"\n"          // no count
                  "\"B\",\"\",0\n"        // none
                  "\"C\",\"\",1\nx,1\n"   // no coordinate
                  "\"D\",\"\",1\n2,91\n"  // off the earth
                  "\"E\",\"\",-3\n2,1\n"  // cut by the next head
                  "\"F\",\"\",1\n2,1,5\n" // too many numbers
                  "stray\n"
                  "\"G\",\"\",1\n-2,-1"),
              "W E1||1.00000 2.00000|-|-|-\n"
              "W F||1.00000 2.00000|-|-|-\n"
              "W G||-1.00000 -2.00000|-|-|-\n"
              "R E: E1\n"
              "bad 7\n");
}

TEST_F(AtlasGis, SurvivesCountsThatNoFileHolds)
{
    EXPECT_EQ(bna("\"A\",\"\",-2147483648\n2,1\n\"B\",\"\",2000000000\n2,1\n"),
              "W B1||1.00000 2.00000|-|-|-\nR B: B1\nbad 3\n");
}

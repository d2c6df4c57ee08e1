#include "interchange/geogrid.h"

#include "core/code_page.h"
#include "core/form1.h"
#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class Geogrid : public format_fixture {
protected:
    // The chosen datum of the fixture stays: overlays are always on WGS 84.
    std::string ovl(std::string_view text) { return read("GeogridViewer", ".ovl", text); }
    std::string coo(std::string_view text) { return read("GeogridViewer", ".coo", text); }
};

const std::string text_keys = "Typ=2\nGroup=1\nCol=1\nArea=1\nZoom=1\nSize=130\nFont=1\nDir=100\n";

} // namespace

// Semicircles and the 32-bit figures of the datum table leave 0.1 m.
TEST_F(Geogrid, WritesTextsLinesAndTheirNumberLetterByLetter)
{
    put("ALPHA", "lost here", 48.12345, 11.56789, "02.05.2003 08:15:30", 519);
    put("A=[B]", "", -22.95192, -179.9999);
    put_route("LOOP 1", {"ALPHA", "A=[B]"});
    store.rou[0].farbe = 3;
    EXPECT_EQ(write("GeogridViewer", ".ovl"),
              crlf("[Symbol 1]\n" + text_keys + "XKoord=11.56788996\nYKoord=48.12344908\n" +
                   "Text=ALPHA\n" //
                   "[Symbol 2]\n" +
                   text_keys + "XKoord=-179.99990000\nYKoord=-22.95191985\nText=A=[B]\n" +
                   "[Symbol 3]\n" + text_keys +
                   "XKoord=11.56788996\nYKoord=48.12344908\nText=R-LOOP 1\n"
                   "[Symbol 4]\nTyp=3\nGroup=1\nCol=3\nZoom=1\nSize=102\nArt=1\nPunkte=2\n"
                   "XKoord0=11.56788996\nYKoord0=48.12344908\n"
                   "XKoord1=-179.99990000\nYKoord1=-22.95191985\n"
                   "[Overlay]\nSymbols=4\n"));
}

TEST_F(Geogrid, ReadsBackWhatItWrites)
{
    put_awkward();
    put_route("", {"QUITO", "FIJI"});
    EXPECT_EQ(ovl(write("GeogridViewer", ".ovl")), "W ALPHA||48.12345 11.56789|-|-|-\n"
                                                   "W K\xD6LN-1||50.94128 6.95828|-|-|-\n"
                                                   "W RIO||-22.95192 -43.21049|-|-|-\n"
                                                   "W FIJI||-16.57819 179.98765|-|-|-\n"
                                                   "W A,B||64.14700 -179.99990|-|-|-\n"
                                                   "W DEADSE||31.50000 35.50000|-|-|-\n"
                                                   "W QUITO||-0.00221 0.00000|-|-|-\n"
                                                   "R LOOP 1: ALPHA RIO A,B ALPHA\n"
                                                   "R R-2: QUITO FIJI\n");
}

TEST_F(Geogrid, ReadsKeysInAnyOrderAndCase)
{
    EXPECT_EQ(ovl("[SYMBOL 7]\nTEXT= a name \nykoord=1\nxkoord= -2\nTYP=2\n"
                  "[Symbol 3]\nText=R-Loop\nXKoord=0\nYKoord=0\nTyp=2\n"
                  "[Symbol 9]\nPunkte=2\nTyp=4\nCol=2\n"
                  "YKoord2=1\nXKoord2=-2\nXKoord1=5\nYKoord1=4\n"),
              "W a name||1.00000 -2.00000|-|-|-\n"
              "W Loo1||4.00000 5.00000|-|-|-\n"
              "R Loop: Loo1 a name\n");
}

TEST_F(Geogrid, LeavesFiguresOutAndKeepsLonelyRouteNames)
{
    EXPECT_EQ(ovl("[Symbol 1]\nTyp=7\nXKoord=1\nYKoord=2\n"
                  "[Symbol 2]\nTyp=1\nXKoord=1\nYKoord=2\nPath=x.bmp\n"
                  "[Symbol 3]\nTyp=2\nText=R-12\nXKoord=1\nYKoord=2\n"
                  "[Symbol 4]\nTyp=2\nText=B\nXKoord=3\nYKoord=4\n"
                  "[Symbol 5]\nTyp=2\nText=R-13\nXKoord=5\nYKoord=6\n"
                  "[Overlay]\nSymbols=5\n[MapLage]\nCenterLat=51\n"),
              "W R-12||2.00000 1.00000|-|-|-\n"
              "W B||4.00000 3.00000|-|-|-\n"
              "W R-13||6.00000 5.00000|-|-|-\n");
}

TEST_F(Geogrid, CountsMalformedSymbolsAndReadsTheRest)
{
    EXPECT_EQ(ovl("[Symbol 1]\nTyp=2\nText=no place\n"
                  "[Symbol 2]\nTyp=2\nText=off\nXKoord=181\nYKoord=0\n"
                  "[Symbol 3]\nTyp=3\n"
                  "[Symbol 4]\nTyp=3\nXKoord0=1\nYKoord0=2\nXKoord1=x\nYKoord1=2\n"
                  "[Symbol 5]\nTyp=2\nno key\nText=A\nXKoord=3\nYKoord=4\n"
                  "[Symbol 6]\nTyp=3\nXKoord40000000000=1\nXKoord99999=1\nXKoord-1=0\n"
                  "[Symbol 7]\nTyp=3\nPunkte=2\nXKoord0=1\nYKoord0=2\n"),
              "W A||4.00000 3.00000|-|-|-\n"
              "W R-21||2.00000 1.00000|-|-|-\n"
              "R R-2: R-21\n"
              "R R-4: R-21\n"
              "bad 9\n");
}

TEST_F(Geogrid, RefusesBinaryOverlaysAndOtherFiles)
{
    EXPECT_EQ(ovl("DOMGVCRD Ovlfile V2.0:\x00\x01"), "refused\n");
    EXPECT_EQ(ovl("hello\n"), "refused\n");
    EXPECT_EQ(coo("Gitterkoordinaten (UTM)\nWGS84\nCOO 32U 691088 5333211 A\n"), "refused\n");
}

TEST_F(Geogrid, ReadsEveryFormOfListsOfCoordinates)
{
    const std::string rows = "W A|"
                             "|48.12345 11.56789|-|-|-\n"
                             "W B C||-22.95192 -43.21049|-|-|-\n";
    EXPECT_EQ(coo("Geographische Koordinaten (dezimal)\nWGS84\n"
                  "COO 11.56789 Ost 48.12345 Nord A\nCOO 43.21049 West 22.95192 Süd B C\n"_w),
              rows);
    EXPECT_EQ(coo("GEOGRAPHISCHE KOORDINATEN (Grad/Min)\r\nWGS 84\r\n"
                  "COO 11°34.0734' Ost 48°07.4070' Nord A\r\n"
                  "coo 43°12.6294' WEST 22°57.1152' SÜD B C\r\n"_w),
              rows);
    EXPECT_EQ(coo("Geographische Koordinaten (Grad/Min/Sek)\nWGS84\n"
                  "COO 11°34'04.404\" Ost 48°07'24.42\" Nord A\n"
                  "COO 22° 57' 06.912\" Sued 43° 12' 37.764\" West B C\n"_w),
              rows);
}

TEST_F(Geogrid, ReadsAnglesWithoutWordsLongitudeFirst)
{
    EXPECT_EQ(coo("Geographische Koordinaten (dezimal)\nWGS84\nCOO -43.5 -22.5 7 Zwerge\n"),
              "W 7 Zwerge||-22.50000 -43.50000|-|-|-\n");
}

TEST_F(Geogrid, UsesTheDatumOfAList)
{
    EXPECT_EQ(coo("Geographische Koordinaten (dezimal)\nEuropean 1950\n"
                  "COO 11.5689453 Ost 48.1242912 Nord A\n"),
              "W A||48.12345 11.56789|-|-|-\n");
    user.answers = {answer::no};
    EXPECT_EQ(coo("Geographische Koordinaten (dezimal)\nAtlantis\nCOO 1 Ost 2 Nord A\n"),
              "refused\n");
}

TEST_F(Geogrid, CountsMalformedRowsOfLists)
{
    EXPECT_EQ(coo("Geographische Koordinaten (dezimal)\nWGS84\n"
                  "COO 11.5 Ost\nCOO 11.5 Ost 12.5 Ost A\nCOO 11.5 Ost 48.5 Nord\n"
                  "COO 11°61' Ost 48.5 Nord A\nCOO x\nCOO 181 Ost 1 Nord A\n"
                  "a remark\nCOO 1 Ost 2 Nord A"_w),
              "W A||2.00000 1.00000|-|-|-\nbad 6\n");
}

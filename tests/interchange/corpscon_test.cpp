#include "interchange/corpscon.h"

#include "coords/coord_text.h"
#include "core/code_page.h"
#include "core/form1.h"
#include "tests/interchange/format_fixture.h"

#include <cmath>
#include <random>

using namespace velkoro;

namespace {

class Corpscon : public format_fixture {
protected:
    Corpscon() { Form1.Datum.selected = 1; } // WGS 84
    std::string geo(std::string_view text) { return read("CORPSCON", ".geo", text); }
    std::string utm(std::string_view text) { return read("CORPSCON", ".utm", text); }
};

} // namespace

TEST_F(Corpscon, WritesDegreesLetterByLetter)
{
    put_awkward();
    EXPECT_EQ(write("CORPSCON", ".geo"), crlf("; Datum WGS 84\n"
                                              "##Name,Latitude,Longitude\n"
                                              "ALPHA,N48.12345°,E011.56789°\n"
                                              "KÖLN-1,N50.94128°,E006.95828°\n"
                                              "RIO,S22.95192°,W043.21049°\n"
                                              "FIJI,S16.57819°,E179.98765°\n"
                                              "A-B,N64.14700°,W179.99990°\n"
                                              "DEADSE,N31.50000°,E035.50000°\n"
                                              "QUITO,S00.00221°,E000.00000°\n"_w));
}

TEST_F(Corpscon, WritesTheChosenFormOfDegrees)
{
    put("RIO", "", -22.95192, -43.21049);
    EXPECT_NE(
        write("CORPSCON", ".geo", {.fmt = fmt_minutes}).find("RIO,S22°57.115',W043°12.629'"_w),
        std::string::npos);
    EXPECT_NE(
        write("CORPSCON", ".geo", {.fmt = fmt_seconds}).find("RIO,S22°57'06.9\",W043°12'37.8\""_w),
        std::string::npos);
    // A grid has no place in this file.
    EXPECT_NE(write("CORPSCON", ".geo", {.fmt = fmt_utm}).find("RIO,S22.95192°,W043.21049°"_w),
              std::string::npos);
}

// The 32-bit figures of the datum table leave 0.1 m.
TEST_F(Corpscon, WritesAZoneWheneverItChanges)
{
    put("ALPHA", "", 48.12345, 11.56789);
    put("A,B", "", 48.2, 11.6);
    put("RIO", "", -22.95192, -43.21049);
    put("POLE", "", 89.5, 10);
    EXPECT_EQ(write("CORPSCON", ".utm"), crlf("; Datum WGS 84\n"
                                              "##UTM Zone 32U\n"
                                              "ALPHA,691088.73,5333210.84\n"
                                              "A-B,693190.19,5341798.62\n"
                                              "##UTM Zone 23K\n"
                                              "RIO,683477.51,7460684.95\n"
                                              "POLE,N89.50000°,E010.00000°\n"_w));
}

TEST_F(Corpscon, ReadsBackWhatItWrites)
{
    put_awkward();
    const std::string rows = "W ALPHA||48.12345 11.56789|-|-|-\n"
                             "W KÖLN-1||50.94128 6.95828|-|-|-\n"
                             "W RIO||-22.95192 -43.21049|-|-|-\n"
                             "W FIJI||-16.57819 179.98765|-|-|-\n"
                             "W A-B||64.14700 -179.99990|-|-|-\n"
                             "W DEADSE||31.50000 35.50000|-|-|-\n"
                             "W QUITO||-0.00221 0.00000|-|-|-\n"_w;
    EXPECT_EQ(geo(write("CORPSCON", ".geo")), rows);
    EXPECT_EQ(utm(write("CORPSCON", ".utm")), rows);
    Form1.Datum.selected = 0; // European 1950
    EXPECT_EQ(geo(write("CORPSCON", ".geo")), rows);
    EXPECT_EQ(utm(write("CORPSCON", ".utm")), rows);
}

TEST_F(Corpscon, ReadsEveryFormOfAngle)
{
    EXPECT_EQ(geo("A,N48°07.407',E011°34.0734'\n"
                  "B,48°07'24.42\"S,11°34'04.404\"W\n"
                  "C,48 07 24.42 N,11 34 04.404 W\n"
                  "D,-48.12345,11.56789,519\n"
                  "E,W011.56789,S48.12345\n"_w),
              "W A||48.12345 11.56789|-|-|-\n"
              "W B||-48.12345 -11.56789|-|-|-\n"
              "W C||48.12345 -11.56789|-|-|-\n"
              "W D||-48.12345 11.56789|-|-|-\n"
              "W E||-48.12345 -11.56789|-|-|-\n");
}

TEST_F(Corpscon, ReadsZonesFromLinesAndFields)
{
    EXPECT_EQ(utm("; utm zone 32\n"
                  "A,691088.71,5333210.74\n"
                  "B,23K,683477.51,7460685.08\n"
                  "C,691088.71,5333210.74\n"
                  "UTM Zone: 23 k\n"
                  "D,683477.51,7460685.08\n"),
              "W A||48.12345 11.56789|-|-|-\n"
              "W B||-22.95192 -43.21049|-|-|-\n"
              "W C||48.12345 11.56789|-|-|-\n"
              "W D||-22.95192 -43.21049|-|-|-\n");
}

TEST_F(Corpscon, CountsMalformedLinesAndReadsTheRest)
{
    EXPECT_EQ(utm("A,691088.71,5333210.74\n" // no zone yet
                  "##UTM Zone 61U\n"
                  "B,691088.71,5333210.74\n"
                  "##UTM Zone 32U\n"
                  "C,691088.71\n"
                  ",691088.71,5333210.74\n"
                  "D,691088.71,x\n"
                  "E,1e300,5333210.74\n"
                  "F,N91°,E1°\n"
                  "G,691088.71,5333210.74"_w),
              "W G||48.12345 11.56789|-|-|-\nbad 8\n");
}

TEST_F(Corpscon, NamesThatLookLikeRemarksOrZonesStayNames)
{
    put(";1", "", 1, 2);
    put("##2", "", 3, 4);
    put("UTM ZONE 3", "", 5, 6);
    const std::string rows = "W -1||1.00000 2.00000|-|-|-\n"
                             "W --2||3.00000 4.00000|-|-|-\n"
                             "W UTM ZONE 3||5.00000 6.00000|-|-|-\n";
    EXPECT_EQ(geo(write("CORPSCON", ".geo")), rows);
    EXPECT_EQ(utm(write("CORPSCON", ".utm")), rows);
}

TEST_F(Corpscon, ReportsAnUnknownDatum)
{
    user.answers = {answer::no};
    EXPECT_EQ(geo("; Datum Atlantis\nA,N1,E1\n"), "refused\n");
    EXPECT_EQ(user.count(7961), 1);
}

TEST_F(Corpscon, UtmComesBackFromAllOverTheEarth)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> lat(-72, 72), lon(-180, 180);
    for (int i = 0; i < 500; ++i)
        put("P" + std::to_string(i), "", lat(random), lon(random));
    const std::vector<wayp_rec> before = store.wp;
    import_content content;
    import_bytes(*format_of_text("CORPSCON"), write("CORPSCON", ".utm"), ".utm", false, &content);
    ASSERT_EQ(content.waypoints.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        const pos_rec a = before[i].pos, b = content.waypoints[i].pos;
        EXPECT_LT(std::abs(a.lat - b.lat), 40) << i; // 0.4 m: the series of the grid
        EXPECT_LT(std::fabs(std::remainder(static_cast<double>(a.lon) - b.lon, 4294967296.0)) *
                      std::cos(a.lat * semi_to_rad),
                  40)
            << i;
    }
}

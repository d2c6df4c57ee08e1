#include "interchange/native_text.h"

#include "coords/distance.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/names.h"
#include "core/position_formats.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "tests/interchange/format_fixture.h"

#include <algorithm>
#include <cmath>
#include <random>

using namespace velkoro;

namespace {

class NativeText : public format_fixture {
protected:
    NativeText()
    {
        Form1.posform.items = position_formats();
        Form1.posform.selected = 0;
        choose_datum("WGS 84");
        Form1.wayp_titel.text = "Alps";
        settings.km_grid = false;
        symbols_parse("00:12 Waypoint\r\n07:13 Shipwreck\r\n", symbols);
        symbols.level = 2;
    }
    ~NativeText() override { Form1.posform.items.clear(); }

    static void choose_datum(std::string_view name) { Form1.Datum.selected = datum_find(name); }
    static std::string written(export_options options = {})
    {
        return write("VELkoro Text", ".txt", std::move(options));
    }
    std::string read_text(std::string_view text) { return read("VELkoro Text", ".txt", text); }
    /// The same, into the emptied store.
    import_result load(std::string_view text)
    {
        wayp_clear();
        return import_bytes(*format_of_text("VELkoro Text"), text, ".txt");
    }
    static wayp_rec& wp(int index) { return store.wp[static_cast<std::size_t>(index)]; }
};

const std::string end = "<end>\r\n";
const std::string columns_deg = ";Alt m;Symbol;Time    dd.mm.yyyy hh:nn:ss;Prox m;Comment\r\n";

} // namespace

// Writing
// -------------------------------------------------------------------------------------------------

TEST_F(NativeText, WritesTitleHeadingsAndWaypoints)
{
    put("ALPHA", "Start; Nordtor", 48.12345, 11.56789, "02.05.2003 08:15:30", 519, 15);
    put("RIO", "", -22.95192, -43.21049);
    wp(1).symb = 7;
    EXPECT_EQ(written(), "Waypoints Alps;hddd.ddddd°;WGS 84\r\n"_w +
                             "Name      ;Latitude;Longitude" + columns_deg +
                             "ALPHA     ;N 48.12345°;E011.56789°;519;Waypoint;"_w +
                             "02.05.2003 08:15:30;1500;@Start; Nordtor\r\n"
                             "RIO       ;S 22.95192°;W043.21049°;;Shipwreck;;\r\n"_w +
                             end);
}

TEST_F(NativeText, WritesMinutesSecondsAndSignedDegrees)
{
    put("RIO", "", -22.95192, -43.21049);
    EXPECT_NE(written({.fmt = fmt_minutes}).find("RIO       ;S 22°57.115';W043°12.629';"_w),
              std::string::npos);
    EXPECT_NE(written({.fmt = fmt_seconds}).find("RIO       ;S 22°57'06.9\";W043°12'37.8\";"_w),
              std::string::npos);
    const std::string text = written({.sign = true});
    EXPECT_NE(text.find("Waypoints Alps;+ddd.ddddd°;WGS 84\r\n"_w), std::string::npos);
    EXPECT_NE(text.find("RIO       ;-22.95192°;-043.21049°;"_w), std::string::npos);
    put("ALPHA", "", 48.12345, 11.56789);
    EXPECT_NE(written({.sign = true}).find(";+48.12345°;+011.56789°;"_w), std::string::npos);
}

TEST_F(NativeText, GivesTheZoneAheadOfThePositionsOfAGrid)
{
    put("ALPHA", "", 48.12345, 11.56789);
    put("BETA", "", 48.2, 11.6);
    put("SYDNEY", "", -33.85678, 151.2153);
    EXPECT_EQ(written({.fmt = fmt_utm}), "Waypoints Alps;UTM;WGS 84\r\n"
                                         "Zone 32U\r\n"
                                         "Name      ;East;North" +
                                             columns_deg +
                                             "ALPHA     ;0691089;5333211;;Waypoint;;\r\n"
                                             "BETA      ;0693190;5341799;;Waypoint;;\r\n"
                                             "Zone 56H\r\n"
                                             "SYDNEY    ;0334901;6252291;;Waypoint;;\r\n" +
                                             end);
}

TEST_F(NativeText, IsWrittenInTheChosenCoordinateFormat)
{
    const format_row& row = *format_of_text("VELkoro Text");
    for (const int fmt : {fmt_seconds, fmt_utm, fmt_swiss, fmt_nz}) {
        Form1.posform.selected = fmt;
        EXPECT_EQ(export_defaults(row).fmt, fmt);
    }
}

TEST_F(NativeText, GivesDegreesWhereTheGridDoesNotReach)
{
    put("BERN", "", 46.951, 7.4386);
    put("SYDNEY", "", -33.85678, 151.2153);
    const std::string text = written({.fmt = fmt_swiss});
    EXPECT_NE(text.find("SYDNEY    ;E151.21530°;S 33.85678°;"_w), std::string::npos);
    EXPECT_EQ(text.find("BERN      ;E"), std::string::npos);
}

TEST_F(NativeText, WritesTheLegsOfARoute)
{
    put("A", "", 48, 11);
    put("B", "", 48, 12);
    put("C", "", 49, 12);
    route_rec route{.nam = "TOUR            ",
                    .wps = "A$B$C$",
                    .farbe = 2,
                    .speed = "$4.5$$",
                    .korr = "$-2$$",
                    .anw = "$by train; then on foot$$"};
    ASSERT_GE(route_add(route), 0);
    const std::string text = written();
    // 74.5 km at 4.5 km/h are 16 h 33 min; the sum of times leaves out the leg without a speed.
    EXPECT_EQ(text.substr(text.find("Route")),
              "Route 01 TOUR;2\r\n"
              "Name      ;Bearing;Distance km;   hh:mm;km/h;Corr;Comment\r\n"
              "A         ;;;;;\r\n"
              "B         ;088°;74.5;   16:33;4.5;-2;@by train; then on foot\r\n"
              "C         ;000°;111.3;;;\r\n"
              "Summ      ;;185.8;   16:33\r\n"
              "Direct    ;034°;133.5\r\n"_w +
                  end);
}

TEST_F(NativeText, WritesARouteOfOnePointWithoutALeg)
{
    put("A", "", 48, 11);
    put_route("ONE", {"A"});
    const std::string text = written();
    EXPECT_EQ(text.substr(text.find("Route")),
              "Route 01 ONE;2\r\n"
              "Name      ;Bearing;Distance km;   hh:mm;km/h;Corr;Comment\r\n"
              "A         ;;;;;\r\n"
              "Summ      ;;;\r\n"
              "Direct    ;;\r\n" +
                  end);
}

TEST_F(NativeText, UsesTheChosenSeparatorAndTimePicture)
{
    put("ALPHA", "a, b; c", 48.12345, 11.56789, "02.05.2003 08:15:30");
    const std::string comma = written({.separator = ',', .time_picture = "mm/dd/yyyy hh:nn"});
    EXPECT_NE(comma.find("ALPHA     ,N 48.12345°,E011.56789°,,Waypoint,"_w
                         "05/02/2003 08:15,,@a, b; c\r\n"),
              std::string::npos)
        << to_utf8(comma);
    EXPECT_NE(written({.separator = '\t'}).find("ALPHA     \tN 48.12345°\tE011.56789°\t"_w),
              std::string::npos);
    // A separator that no reader knows is none.
    EXPECT_NE(written({.separator = 'x'}).find("ALPHA     ;N"), std::string::npos);
}

// Reading
// -------------------------------------------------------------------------------------------------

TEST_F(NativeText, ReadsLinesWithoutAnyHead)
{
    EXPECT_EQ(read_text("ALPHA;N 48.12345°;E011.56789°;519;Shipwreck;02.05.2003 08:15:30;500;@x\n"
                        "beta,48.5,-11.5,,,,,@with, commas; and @\n"
                        "gamma\t-48°30.0'\t11°30'36\"\r"
                        "delta;E011.5;N48.5\n"
                        "eps;48,5;11,25;-12m"_w),
              "W ALPHA|x|48.12345 11.56789|2003-05-02 08:15:30|519|5\n"
              "W beta|with, commas; and @|48.50000 -11.50000|-|-|-\n"
              "W gamma||-48.50000 11.51000|-|-|-\n"
              "W delta||48.50000 11.50000|-|-|-\n"
              "bad 1\n");
}

TEST_F(NativeText, TakesTheColumnsFromTheHeadings)
{
    EXPECT_EQ(read_text("Waypoints X;hddd.ddddd°;WGS 84\n"
                        "NAME;Time    mm/dd/yy;Alt ft;Longitude;Latitude\n"
                        "A;12/31/99;1000;11.5;-48.5;;@c\n"_w),
              "W A|c|-48.50000 11.50000|1999-12-31 00:00:00|305|-\n");
}

TEST_F(NativeText, ReadsWhatASpreadsheetMakesOfIt)
{
    EXPECT_EQ(load("Waypoints Alps;UTM;WGS 84;;;;;\n"
                   "Zone 32U;;;;;;;\n"
                   "\"Name\";East;North;Alt m;Symbol;Time;Prox m;Comment\n"
                   "A;0691089;5333211;;;02.05.2003;;\"@say \"\"a; b\"\"\"\n"
                   "B;0691089;5334211;;;;;no mark\n"
                   "<end>;;;;;;;\n"
                   "Route 01 R;2;;;;;;\n"
                   "Name;Bearing;Distance km;hh:mm;km/h;Corr;Comment;\n"
                   "A;;;;;;;\n"
                   "B;000°;1.0;;4;;\"@left; then right\";\n"
                   "Summ;;1.0;;;;;\n"_w)
                  .bad_lines,
              0);
    ASSERT_EQ(store.wp_top, 1);
    EXPECT_EQ(wp(0).kom, "say \"a; b\"");
    EXPECT_EQ(wp(1).kom, "no mark");
    EXPECT_NE(wp(0).dat, 0);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(store.rou[0].wps, "A$B$");
    EXPECT_EQ(store.rou[0].speed, "$4$");
    EXPECT_EQ(store.rou[0].anw, "$left; then right$");
}

TEST_F(NativeText, ReadsKeywordsInAnyCaseAndABlockWithinOtherText)
{
    EXPECT_EQ(load("WAYPOINTS Alps;utm;wgs 84\n"
                   "ZONE 32U\n"
                   "alpha;0691089;5333211\n"
                   "<END>\n"
                   "ROUTE 03 tour 7\n"
                   "ALPHA\n"
                   "summ;;1.0\n"
                   "direct\n"
                   "<end>\n")
                  .bad_lines,
              0);
    EXPECT_EQ(store.wp_top, 0);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(store.rou[0].nam, "tour 7          ");
}

TEST_F(NativeText, CountsMalformedLinesAndReadsTheRest)
{
    const import_result r = load("Waypoints X;hddd.ddddd°;WGS 84\n"
                                 "A;48.1;11.1\n"
                                 "no position here\n"
                                 "B;91.0;11.1\n"
                                 ";48.1;11.1\n"
                                 "C;48.3;11.3;;;yesterday\n"
                                 "Route 01 R\n"
                                 "A\n"
                                 "NOWHERE\n"
                                 "C\n"_w);
    EXPECT_EQ(r.bad_lines, 5);
    EXPECT_EQ(r.waypoints, 2);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(store.rou[0].wps, "A$C$");
    EXPECT_EQ(wp(1).dat, 0);
}

TEST_F(NativeText, RoutesFindTheirPointsInTheStoreToo)
{
    put("OLD", "", 1, 2);
    const import_result r =
        import_bytes(*format_of_text("VELkoro Text"), "Route 01 R;3\nOLD\n<end>\n", ".txt");
    EXPECT_EQ(r.bad_lines, 0);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(store.rou[0].wps, "OLD$");
    EXPECT_EQ(store.rou[0].farbe, 3);
}

TEST_F(NativeText, KeepsSymbolsByNameAndByNumber)
{
    load("A;1;1;;Shipwreck\nB;2;2;;7\nC;3;3;;no such symbol\nD;4;4\n");
    EXPECT_EQ(wp(0).symb, 7);
    EXPECT_EQ(wp(1).symb, 7);
    EXPECT_EQ(wp(2).symb, 0);
    EXPECT_EQ(wp(3).symb, 0);
    // Without a table numbers are written.
    symbols = {};
    EXPECT_NE(written().find(";7;"), std::string::npos);
}

TEST_F(NativeText, ShiftsFromTheDatumOfItsFirstLineAndReportsAnUnknownOne)
{
    put("ALPHA", "", 48.12345, 11.56789);
    const pos_rec before = wp(0).pos;
    choose_datum("European 1950");
    const std::string text = written();
    EXPECT_NE(text.find(";European 1950\r\n"), std::string::npos);
    EXPECT_EQ(text.find("48.12345"), std::string::npos);
    choose_datum("WGS 84");
    load(text);
    EXPECT_LT(std::abs(wp(0).pos.lat - before.lat), 120);
    EXPECT_LT(std::abs(wp(0).pos.lon - before.lon), 120);

    user.messages.clear();
    user.answers = {answer::no};
    const import_result r = load("Waypoints X;hddd.ddddd°;Atlantis 1800\nA;1;1\n"_w);
    EXPECT_EQ(user.numbers(), std::vector<int>{7961});
    EXPECT_EQ(r.end, native_end::not_native);
    EXPECT_EQ(store.wp_top, -1);
}

TEST_F(NativeText, WithoutAFirstLineTheListsFormatAndDatumApply)
{
    Form1.posform.selected = fmt_gk;
    choose_datum("European 1950");
    load("A;4468000;5332000\n");
    ASSERT_EQ(store.wp_top, 0);
    EXPECT_NEAR(wp(0).pos.lat * 180.0 / 2147483648.0, 48.12, 0.02);
    EXPECT_NEAR(wp(0).pos.lon * 180.0 / 2147483648.0, 11.57, 0.02);
}

// Both ways
// -------------------------------------------------------------------------------------------------

TEST_F(NativeText, NamesThatLookLikeOtherLinesComeBack)
{
    store.wp_name_max = 30;
    const char* names[] = {"ROUTE 1", "ROUTE", "ZONE 32U", "SUMM", "DIRECT", "NAME", "WAYPOINTS A"};
    double lat = 1;
    for (const char* name : names)
        put(name, "@ABCx", lat++, 1);
    put_route("Route 5", {"@ABCROUTE 1", "@ABCSUMM", "@ABCDIRECT", "@ABCNAME"});
    const std::string text = written();
    const import_result r = load(text);
    EXPECT_EQ(r.bad_lines, 0);
    ASSERT_EQ(store.wp_top, 6);
    for (int i = 0; i <= store.wp_top; ++i) {
        EXPECT_EQ(wp(i).nam, names[i]);
        EXPECT_EQ(wp(i).kom, "@ABCx");
    }
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(store.rou[0].nam, "Route 5         ");
    EXPECT_EQ(store.rou[0].wps, "@ABCROUTE 1$@ABCSUMM$@ABCDIRECT$@ABCNAME$");
    EXPECT_EQ(written(), text);
}

TEST_F(NativeText, WaypointsOfOneNameInTwoGroupsStayApartInRoutes)
{
    put("HUT", "@AAA one", 48, 11);
    put("HUT", "@BBB two", 49, 12);
    put("HUT", "plain", 50, 13);
    put_route("ALL", {"@BBBHUT", "HUT", "@AAAHUT"});
    load(written());
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(store.rou[0].wps, "@BBBHUT$HUT$@AAAHUT$");
}

TEST_F(NativeText, RoutesFollowNamesThatAreCutAndCommentsThatAreLeftOut)
{
    put("LONGNAME1", "@AAA one", 48, 11);
    put("OTHER", "", 49, 12);
    put_route("ALL", {"@AAALONGNAME1", "OTHER"});
    const std::string text = written({.name_length = 5, .comments = false});
    EXPECT_EQ(text.find("@AAA"), std::string::npos);
    EXPECT_EQ(load(text).bad_lines, 0);
    EXPECT_EQ(store.rou[0].wps, "LONGN$OTHER$");
}

TEST_F(NativeText, KeepsTheInputsOfEveryLeg)
{
    put("A", "", 48, 11);
    put("B", "", 48, 12);
    put("C", "", 49, 12);
    const route_rec route{.nam = "2003 \"T;\" 1     ",
                          .wps = "A$B$C$A$",
                          .farbe = 4,
                          .speed = "$4.5$$80$",
                          .korr = "$$-12$$",
                          .anw = "$go; \"on\"$$home @ 5$"};
    ASSERT_GE(route_add(route), 0);
    const std::string text = written();
    load(text);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_TRUE(store.rou[0] == route) << store.rou[0].speed << store.rou[0].korr;
    EXPECT_EQ(written(), text);
}

TEST_F(NativeText, TextsOfEveryKindComeBack)
{
    for (const char separator : {';', ',', '\t'}) {
        SCOPED_TRACE(separator);
        wayp_clear();
        put_awkward();
        put("Z1", "@@two marks", 1, 1);
        put("Z2", "\"quoted\"", 2, 1);
        put("Z3", "a\tb", 3, 1);
        put("Z4", ";,;", 4, 1);
        Form1.wayp_titel.text = "\"Alps\"; west, ;";
        const std::string text = written({.separator = separator});
        std::vector<wayp_rec> before = store.wp;
        before[static_cast<std::size_t>(store.wp_top - 1)].kom = "a b";
        const import_result r = load(text);
        EXPECT_EQ(r.title, "\"Alps\"; west, ;");
        EXPECT_EQ(r.bad_lines, 0);
        ASSERT_EQ(store.wp.size(), before.size());
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(store.wp[i].nam, name_clean(before[i].nam, 0));
            EXPECT_EQ(store.wp[i].kom, before[i].kom);
            EXPECT_EQ(store.wp[i].dat, before[i].dat);
            EXPECT_EQ(store.wp[i].alt, before[i].alt);
            EXPECT_EQ(store.wp[i].prox, before[i].prox);
        }
        EXPECT_EQ(store.rou_top, 0);
    }
}

/// Random places all over the earth, the poles and the date line among them, on every datum and in
/// every coordinate format: a place comes back within what the format shows, and writing again
/// gives the same degrees.
TEST_F(NativeText, PlacesComeBackInEveryCoordinateFormat)
{
    const std::string table =
        read_file(std::string(VELKORO_SOURCE_DIR) + "/data/Datum.ins").value_or("");
    datums = datum_parse(table);
    Form1.Datum.items.clear();
    for (const datum_rec& d : datums.rows)
        Form1.Datum.items.push_back(d.name);
    for (const std::string& name : datums.grid_names)
        Form1.posform.items.push_back(name);
    const auto formats_there = static_cast<int>(Form1.posform.items.size());
    ASSERT_GT(formats_there, fmt_user);

    std::mt19937 random(20240229);
    std::uniform_real_distribution<double> lat(-90, 90), lon(-180, 180), near(-3, 3);
    for (int fmt = 0; fmt < formats_there; ++fmt)
        for (const bool km : {false, true}) {
            SCOPED_TRACE(to_utf8(Form1.posform.items[static_cast<std::size_t>(fmt)]));
            settings.km_grid = settings.utm_zero = km;
            const std::string& usual = static_cast<std::size_t>(fmt) < datums.grid_datum.size()
                                           ? datums.grid_datum[static_cast<std::size_t>(fmt)]
                                           : std::string();
            Form1.Datum.selected = std::max(datum_find(usual), 0);
            wayp_clear();
            const std::pair<double, double> centres[] = {
                {48, 11}, {47, 8}, {46, 2}, {53, -1}, {53.5, -8}, {-41, 173}, {60, 25}, {-30, 25}};
            for (const auto& [y, x] : centres)
                for (int i = 0; i < 8; ++i)
                    put("P" + std::to_string(store.wp_top + 1), "", y + near(random),
                        x + near(random));
            for (int i = 0; i < 60; ++i)
                put("P" + std::to_string(store.wp_top + 1), "", lat(random), lon(random));
            put("NPOLE", "", 89.999, 12);
            put("SPOLE", "", -90, 0);
            put("EAST", "", 12, 179.999);
            put("WEST", "", 12, -179.999);
            put("ZERO", "", 0, 0);
            const std::vector<wayp_rec> before = store.wp;
            const std::string text = written({.fmt = fmt});
            const import_result r = load(text);
            ASSERT_EQ(r.bad_lines, 0);
            ASSERT_EQ(store.wp.size(), before.size());
            for (std::size_t i = 0; i < before.size(); ++i) {
                const pos_rec a = before[i].pos, b = store.wp[i].pos;
                // Texts of a tenth of a second are good for 1.6 m, the grids' series for a few.
                const double limit = (fmt < fmt_utm ? 2.5 : 20.0) / 0.0093;
                const double dlon =
                    std::remainder(static_cast<double>(a.lon) - b.lon, 4294967296.0) *
                    std::cos(a.lat * semi_to_rad);
                EXPECT_LT(std::fabs(static_cast<double>(a.lat) - b.lat), limit) << before[i].nam;
                EXPECT_LT(std::fabs(dlon), limit) << before[i].nam;
            }
        }
}

TEST_F(NativeText, SurvivesBrokenLines)
{
    for (const char* text :
         {"Route", "Route ", "Zone", "Waypoints", "<", "\"", "\"\"\"", "@", ";@", "\"A;1;1",
          "A;\"1\";\"1\"", "Name", "Name;Lat", ";;;;;;;;;;;;;;;;;;;;"})
        read_text(text);
    EXPECT_EQ(read_text("A;\"1\";\"2\"\n"), "W A||1.00000 2.00000|-|-|-\n");
}

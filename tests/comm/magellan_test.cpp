// Waypoints, routes and tracks from and to a Magellan receiver.
#include "comm/comm.h"
#include "comm/mag_routes.h"
#include "comm/mag_session.h"
#include "comm/mag_tracks.h"
#include "comm/mag_waypoints.h"
#include "coords/times.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace velkoro;

namespace {

constexpr const char* hut_line =
    "$PMGNWPL,4828.413,N,00912.746,E,0000412,M,HUT,Hut above the lake,a*79";
constexpr const char* quay_line = "$PMGNWPL,3351.274,S,15112.909,E,0000059,F,QUAY,,b*52";
constexpr const char* noalt_line = "$PMGNWPL,4830.000,N,00915.500,W,,,NOALT,,c*66";

std::string body(const std::string& line)
{
    return line.substr(1, line.rfind('*') - 1);
}

class Magellan : public testing::Test {
protected:
    transfer_rig rig{};
    void SetUp() override
    {
        rig.speak_sentences();
        store.wp_ext_chars = true;
        store.wp_name_max = 8;
    }
    /// What the program sent last, so many lines.
    std::string last_sent(int count) const
    {
        std::vector<std::string> sent;
        for (const std::string_view line : split_lines(rig.transcript))
            if (line.starts_with("> "))
                sent.emplace_back(line.substr(2));
        std::string out;
        const std::size_t all = sent.size();
        for (std::size_t n = all - std::min(all, static_cast<std::size_t>(count)); n < all; ++n)
            out += sent[n] + "\n";
        return out;
    }
    static const route_rec& route(int i) { return store.rou[static_cast<std::size_t>(i)]; }
    static wayp_rec& wp(int i) { return store.wp[static_cast<std::size_t>(i)]; }
    static void add(const std::string& name, pos_rec pos = {578311978, 109908571})
    {
        wayp_rec w;
        w.nam = name;
        w.pos = {pos.lat + (store.wp_top + 1) * 100000, pos.lon};
        wayp_insert(w, 0);
    }
};

} // namespace

TEST_F(Magellan, AWaypointLineIsTakenApart)
{
    const auto w = mag_wp_decode(hut_line);
    ASSERT_TRUE(w);
    EXPECT_EQ(w->nam, "HUT");
    EXPECT_EQ(w->kom, "Hut above the lake");
    EXPECT_EQ(w->alt, 412);
    EXPECT_EQ(w->symb, 0);
    EXPECT_NEAR(w->pos.lat, 578311978, 300); // half a unit of the last digit is 99
    EXPECT_NEAR(w->pos.lon, 109908571, 300);
}

TEST_F(Magellan, AHeightInFeetIsAnIntegerFirst)
{
    const auto w = mag_wp_decode(quay_line);
    ASSERT_TRUE(w);
    EXPECT_EQ(w->alt, 18); // 59 x 0.3048 = 17.98
    EXPECT_EQ(w->symb, 1);
    EXPECT_LT(w->pos.lat, 0);
    const auto cut = mag_wp_decode("$PMGNWPL,0000.000,N,00000.000,E,100.9,F,A,,a*00");
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->alt, 30); // of 100 feet
}

TEST_F(Magellan, AnEmptyHeightIsUnknown)
{
    const auto w = mag_wp_decode(noalt_line);
    ASSERT_TRUE(w);
    EXPECT_EQ(w->alt, alt_unknown);
    EXPECT_EQ(w->symb, 2);
    EXPECT_LT(w->pos.lon, 0);
}

TEST_F(Magellan, AShortWaypointLineHasANameOnly)
{
    const auto w = mag_wp_decode("$GPWPL,4828.413,N,00912.746,E,HUT*5B");
    ASSERT_TRUE(w);
    EXPECT_EQ(w->nam, "HUT");
    EXPECT_EQ(w->kom, "");
    EXPECT_EQ(w->alt, alt_unknown);
}

TEST_F(Magellan, IconsBeyondOneLetterCountByTheirFirst)
{
    EXPECT_EQ(mag_wp_decode("$PMGNWPL,0000.000,N,00000.000,E,,,A,,ab*00")->symb, 0);
    EXPECT_EQ(mag_wp_decode("$PMGNWPL,0000.000,N,00000.000,E,,,A,,z*00")->symb, 25);
    EXPECT_EQ(mag_wp_decode("$PMGNWPL,0000.000,N,00000.000,E,,,A,,*00")->symb, 0);
    EXPECT_EQ(mag_icon(3), 'd');
    EXPECT_EQ(mag_icon(26), 'a');
    EXPECT_EQ(mag_icon(-1), 'a');
}

TEST_F(Magellan, ALineWithoutAPlaceOnTheGlobeIsNone)
{
    EXPECT_FALSE(mag_wp_decode("$PMGNWPL,9928.413,N,00912.746,E,,,A,,a*00"));
    EXPECT_FALSE(mag_wp_decode("$PMGNWPL,4828.413,N,99912.746,E,,,A,,a*00"));
    EXPECT_FALSE(mag_wp_decode("$PMGNWPL,,,,,,,A,,a*00"));
    EXPECT_FALSE(mag_wp_decode("$PMGNWPL"));
    EXPECT_EQ(mag_wp_decode("$PMGNWPL,9000.000,S,18000.000,E,,,A,,a*00")->pos,
              (pos_rec{-1073741824, -2147483647 - 1}));
}

TEST_F(Magellan, AWaypointIsWrittenAsItIsRead)
{
    wayp_rec w = *mag_wp_decode(hut_line);
    EXPECT_EQ(mag_wp_encode(w), body(hut_line).substr(4));
    w.alt = alt_unknown;
    EXPECT_EQ(mag_wp_encode(w), "WPL,4828.413,N,00912.746,E,,,HUT,Hut above the lake,a");
    w = *mag_wp_decode(noalt_line);
    EXPECT_EQ(mag_wp_encode(w), body(noalt_line).substr(4));
}

TEST_F(Magellan, TextsLoseTheCharactersThatEndAField)
{
    wayp_rec w = *mag_wp_decode(hut_line);
    w.kom = "A, B*C$D";
    EXPECT_EQ(mag_wp_encode(w), "WPL,4828.413,N,00912.746,E,0000412,M,HUT,A  B C D,a");
}

TEST_F(Magellan, MinutesThatRoundToSixtyAreAFullDegree)
{
    const auto semi = [](double degrees) {
        return static_cast<std::int32_t>(std::lround(degrees * 2147483648.0 / 180.0));
    };
    EXPECT_EQ(mag_position_text({semi(48.99999999), semi(-9.99999999)}), "4900.000,N,01000.000,W");
    EXPECT_EQ(mag_position_text({semi(-0.5), semi(179.5)}), "0030.000,S,17930.000,E");
}

TEST_F(Magellan, PositionsSurviveTheirTextToAThousandthOfAMinute)
{
    for (int n = -1000; n <= 1000; ++n) {
        const pos_rec p{n * 1073741, n * 2147483};
        mag_fields fields("X," + mag_position_text(p) + "*00");
        const auto back = mag_position(fields);
        ASSERT_TRUE(back) << n;
        EXPECT_LE(std::abs(back->lat - p.lat), 100) << n;
        EXPECT_LE(std::abs(back->lon - p.lon), 100) << n;
    }
}

TEST_F(Magellan, WaypointsAreReadToTheEndLine)
{
    rig.magellan.waypoints = {body(hut_line), body(quay_line)};
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.names(), "HUT QUAY");
    EXPECT_EQ(op2.anz.caption, "2890 2 # #\n2900 0 # #\n2910 0 # #");
    EXPECT_EQ(rig.line.settings, "4800,n,8,1");
    EXPECT_FALSE(rig.line.opened);
    // The order on the line: version, its acknowledgement, then the session.
    const std::size_t hand_on = rig.transcript.find("> $PMGNCMD,HANDON*70\n"
                                                    "> $PMGNCMD,WAYPOINT*71\n");
    EXPECT_NE(hand_on, std::string::npos) << rig.transcript;
    EXPECT_EQ(last_sent(2), "$PMGNCSM,3D*12\n$PMGNCMD,HANDOFF*3E\n");
}

TEST_F(Magellan, AListOfNoItemsIsAcknowledgedAndNothingStored)
{
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::empty);
    EXPECT_EQ(op2.anz.caption, "2670 " + transfer.receiver + " # #");
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_NE(rig.transcript.find("> $PMGNCSM,3D*12"), std::string::npos);
}

TEST_F(Magellan, NoReceiverIsNoticedAfterThreeSeconds)
{
    rig.on_write = [](int, const std::string&) { return false; };
    const double seconds = rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::no_receiver);
    EXPECT_EQ(op2.anz.caption, "1110 # # #");
    EXPECT_GT(seconds, 3.0);
    EXPECT_LT(seconds, 3.2);
}

TEST_F(Magellan, ADamagedLineEndsTheListWithWhatCame)
{
    rig.magellan.waypoints = {body(hut_line), body(quay_line), body(noalt_line)};
    rig.faults.rules = {
        {.what = sim_fault::corrupt, .at = 4}}; // version, acknowledgement, first line
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::broken_off);
    EXPECT_EQ(rig.names(), "HUT");
    EXPECT_EQ(last_sent(1), "$PMGNCMD,HANDOFF*3E\n");
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(Magellan, CancelOnReadingSendsTheStop)
{
    rig.magellan.waypoints = {body(hut_line), body(quay_line), body(noalt_line)};
    rig.on_write = [](int, const std::string& bytes) {
        if (bytes.starts_with("$PMGNCSM,79"))
            op.Abbr.click();
        return true;
    };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(rig.names(), "HUT QUAY");
    EXPECT_EQ(last_sent(2), "$PMGNCMD,STOP*6A\n$PMGNCMD,HANDOFF*3E\n");
}

TEST_F(Magellan, WaypointsAreWrittenOneAcknowledgementEach)
{
    wayp_rec w = *mag_wp_decode(hut_line);
    wayp_insert(w, 0);
    w = *mag_wp_decode(quay_line);
    wayp_insert(w, 0);
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(transfer.records, 2);
    ASSERT_EQ(rig.sentences.size(), 2U);
    EXPECT_EQ(rig.sentences[0], body(hut_line));
    EXPECT_EQ(rig.sentences[1], "PMGNWPL,3351.274,S,15112.909,E,0000018,M,QUAY,,b");
    EXPECT_EQ(last_sent(1), "$PMGNCMD,HANDOFF*3E\n");
}

TEST_F(Magellan, AWrongAcknowledgementIsASilentReceiver)
{
    add("ONE");
    add("TWO");
    rig.faults.rules = {{.what = sim_fault::drop, .at = 3}};
    const double seconds = rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::broken_off);
    EXPECT_EQ(op2.anz.caption, "2730 1 # #");
    EXPECT_LT(seconds, 3.5);
    EXPECT_EQ(last_sent(1), "$PMGNCMD,HANDOFF*3E\n");

    rig.faults = {};
    rig.on_write = [&](int, const std::string& bytes) {
        if (!bytes.starts_with("$PMGNWPL"))
            return true;
        rig.line.send(sentence("PMGNCSM,00"));
        return false;
    };
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::broken_off);
    EXPECT_EQ(op2.anz.caption, "2730 0 # #");
}

TEST_F(Magellan, CancelOnWritingSendsTheHandOff)
{
    add("ONE");
    add("TWO");
    add("THREE");
    rig.on_write = [](int, const std::string& bytes) {
        if (bytes.starts_with("$PMGNWPL"))
            op.Abbr.click();
        return true;
    };
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(rig.sentences.size(), 1U);
    EXPECT_EQ(last_sent(1), "$PMGNCMD,HANDOFF*3E\n");
    EXPECT_EQ(rig.transcript.find("STOP"), std::string::npos);
}

// Routes
// ---------------------------------------------------------------------------------------------------------------

TEST_F(Magellan, ARouteOfSeveralLinesIsBuiltForwards)
{
    const auto routes = mag_routes_decode(
        {"$PMGNRTE,2,1,c,01,HUT,a,QUAY,b*60", "$PMGNRTE,2,2,c,01,PASS,a,<<>>,a*24"});
    ASSERT_EQ(routes.size(), 1U);
    EXPECT_EQ(routes[0].wps, "HUT$QUAY$PASS$");
    EXPECT_EQ(routes[0].nam, "8124 1 # #      ");
}

TEST_F(Magellan, AnotherRouteNumberBeginsANewRoute)
{
    const auto routes =
        mag_routes_decode({"$PMGNRTE,2,1,c,1,A,a,B,a*00", "$PMGNRTE,2,2,c,2,C,a,D,a*00",
                           "$PMGNRTE,1,1,c,2,E,a,F,a*00", "$PMGNRTE,1,1,c,02,G,a*00"});
    ASSERT_EQ(routes.size(), 4U); // a first line begins a route, whatever its number
    EXPECT_EQ(routes[0].wps, "A$B$");
    EXPECT_EQ(routes[1].wps, "C$D$");
    EXPECT_EQ(routes[2].wps, "E$F$");
    EXPECT_EQ(routes[3].wps, "G$");
}

TEST_F(Magellan, TheFirstPairDecidesWhetherIconsFollow)
{
    EXPECT_EQ(mag_routes_decode({"$PMGNRTE,1,1,c,1,A,B,C*00"}).at(0).wps, "A$B$C$");
    EXPECT_EQ(mag_routes_decode({"$PMGNRTE,1,1,c,1,A,a,B,b*00"}).at(0).wps, "A$B$");
    EXPECT_EQ(mag_routes_decode({"$PMGNRTE,1,1,c,1,A*00"}).at(0).wps, "A$");
}

TEST_F(Magellan, ANameAheadOfTheFirstPairIsThatOfTheRoute)
{
    const auto routes = mag_routes_decode({"$PMGNRTE,1,1,c,3,HOME,HUT,a,QUAY,b*00"});
    EXPECT_EQ(routes.at(0).wps, "HUT$QUAY$");
    EXPECT_EQ(routes.at(0).nam, "HOME            ");
}

TEST_F(Magellan, ALineOfTheOtherKindReplacesTheNote)
{
    const auto routes =
        mag_routes_decode({"$PMGNRTE,2,1,c,1,A,a,B,a*00", "$PMGNRTE,2,2,m,1,Over,the pass*00"});
    ASSERT_EQ(routes.size(), 1U);
    EXPECT_EQ(routes[0].nam, "Over the pass   ");
    EXPECT_EQ(routes[0].wps, "A$B$");
}

TEST_F(Magellan, RoutesAreReadByTheNamesOfTheStore)
{
    add("HUT");
    add("QUAY");
    rig.magellan.routes = {"PMGNRTE,2,1,c,01,HUT,a,QUAY,b", "PMGNRTE,2,2,c,01,NONE,a,<<>>,a"};
    rig.run("R_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(route(0).wps, "HUT$QUAY$");
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{1640})); // names what is missing
    EXPECT_EQ(op2.anz.caption, "8125 1 # #");
}

TEST_F(Magellan, ANameFindsAWaypointWhoseKeyHasAPrefix)
{
    wayp_rec w;
    w.nam = "HUT";
    w.kom = "@ALP refuge";
    w.pos = {1 << 20, 1 << 20};
    wayp_insert(w, 0);
    rig.magellan.routes = {"PMGNRTE,1,1,c,01,HUT,a"};
    rig.run("R_L");
    EXPECT_EQ(route(0).wps, "@ALPHUT$");
}

TEST_F(Magellan, WaypointsAreReadAheadOfTheRoutesWhenAsked)
{
    transfer.waypoints_first = true;
    rig.magellan.waypoints = {body(hut_line), body(quay_line)};
    rig.magellan.routes = {"PMGNRTE,1,1,c,01,QUAY,b,HUT,a"};
    rig.run("R_L");
    EXPECT_EQ(rig.names(), "HUT QUAY");
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(route(0).wps, "QUAY$HUT$");
    EXPECT_TRUE(rig.user.messages.empty());
    EXPECT_EQ(rig.transcript.find("HANDON"), rig.transcript.rfind("HANDON"));
}

TEST_F(Magellan, RoutesAreWrittenTwoPointsALineAndFilledUp)
{
    add("HUT");
    add("QUAY");
    add("PASS");
    wp(1).symb = 1;
    route_add({.nam = "HOME", .wps = "HUT$QUAY$PASS$"});
    EXPECT_EQ(
        mag_route_encode(route(0), 1),
        (std::vector<std::string>{"RTE,2,1,c,01,HUT,a,QUAY,b", "RTE,2,2,c,01,PASS,a,<<>>,a"}));
    transfer.choice.routes = true;
    rig.run("R_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.sentences.size(), 2U);
    EXPECT_EQ(rig.sentences.at(0), "PMGNRTE,2,1,c,01,HUT,a,QUAY,b");
}

// Tracks
// ---------------------------------------------------------------------------------------------------------------

TEST_F(Magellan, ATrackLineIsTakenApart)
{
    const auto p =
        mag_point_decode("$PMGNTRK,4828.413,N,00912.746,E,00412,M,101502.00,A,TOUR,140601*7D");
    ASSERT_TRUE(p);
    EXPECT_TRUE(p->valid);
    EXPECT_EQ(p->name, "TOUR");
    EXPECT_EQ(p->point.alt, 412);
    EXPECT_EQ(p->point.zeit, 361448102); // 14 June 2001 10:15:02
}

TEST_F(Magellan, MissingFieldsAtTheEndOfATrackLineAreUnknown)
{
    const auto p = mag_point_decode("$PMGNTRK,4828.413,N,00912.746,E*00");
    ASSERT_TRUE(p);
    EXPECT_TRUE(p->valid);
    EXPECT_EQ(p->point.alt, alt_unknown);
    EXPECT_EQ(p->point.zeit, 0);
    EXPECT_EQ(p->name, "");
    const auto timed = mag_point_decode("$PMGNTRK,4828.413,N,00912.746,E,00412,M,101502.00,A*00");
    EXPECT_EQ(timed->point.zeit, 0); // a time without a date is none
    EXPECT_EQ(timed->point.alt, 412);
}

TEST_F(Magellan, ADateOfTheLastCenturyIsOneSinceTheStartOfThem)
{
    const auto p = mag_point_decode("$PMGNTRK,4828.413,N,00912.746,E,,,235959.99,A,,311299*00");
    EXPECT_EQ(p->point.zeit, date_seconds({1999, 12, 31, 23, 59, 59, 0}));
    EXPECT_EQ(mag_point_decode("$PMGNTRK,4828.413,N,00912.746,E,,,235959,A,,311399*00")->point.zeit,
              0);
}

TEST_F(Magellan, TracksAreReadWithoutTheirInvalidPoints)
{
    rig.magellan.track = {"PMGNTRK,4828.413,N,00912.746,E,00412,M,101502.00,A,ONE,140601",
                          "PMGNTRK,4828.520,N,00912.900,E,00415,M,101532.00,A,ONE,140601",
                          "PMGNTRK,4828.611,N,00913.004,E,00000,M,101602.00,V,ONE,140601",
                          "PMGNTRK,4828.700,N,00913.100,E,00420,M,101632.00,A,TWO,140601"};
    store.trk_title = "<title>";
    rig.run("T_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    ASSERT_EQ(store.trk_top, 2);
    EXPECT_EQ(store.trk[0].neu, -1);
    EXPECT_EQ(store.trk[1].neu, 0);
    EXPECT_EQ(store.trk[2].neu, -1); // behind a change of name
    EXPECT_EQ(store.trk[0].kom, "ONE");
    EXPECT_EQ(store.trk[2].kom, "TWO");
    EXPECT_EQ(store.trk_title, "ONE");
    EXPECT_EQ(op2.anz.caption, "8126 3 2 #");
}

TEST_F(Magellan, ATitleOfTheUserStays)
{
    rig.magellan.track = {"PMGNTRK,4828.413,N,00912.746,E,00412,M,101502.00,A,ONE,140601"};
    store.trk_title = "My tour";
    rig.run("T_L");
    EXPECT_EQ(store.trk_title, "My tour");
}

TEST_F(Magellan, TracksAreWrittenWithoutTimes)
{
    trackp_rec p;
    p.pos = mag_point_decode("$PMGNTRK,4828.413,N,00912.746,E*00")->point.pos;
    p.alt = 412;
    p.zeit = 361448102;
    track_append(p);
    p.alt = alt_unknown;
    track_append(p);
    rig.run("T_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.sentences, (std::vector<std::string>{"PMGNTRK,4828.413,N,00912.746,E,00412,M,,A",
                                                       "PMGNTRK,4828.413,N,00912.746,E,,,,A"}));
}

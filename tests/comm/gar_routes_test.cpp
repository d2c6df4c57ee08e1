// Routes from and to a Garmin receiver, as whole sessions over the line.
#include "comm/gar_codec_route.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_routes.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/wayp_insert.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

sim_packet route_header(const std::string& name, int number, int type)
{
    return {29, gar_route_encode(name, number, type)};
}

sim_packet route_point(const wayp_rec& w, int type = 103)
{
    sim_packet p{.id = 30};
    gar_wp_encode(w, type, false, p.data);
    return p;
}

sim_packet route_link(const std::string& leg)
{
    return {98, gar_link_encode(leg)};
}

class GarRoutes : public testing::Test {
protected:
    transfer_rig rig{};

    static const route_rec& route(int i) { return store.rou[static_cast<std::size_t>(i)]; }
    void fill_store(int waypoints)
    {
        for (int n = 0; n < waypoints; ++n) {
            wayp_rec w = some_waypoint(n);
            wayp_insert(w, 0);
        }
    }
    std::vector<int> arrived_ids()
    {
        std::vector<int> ids;
        for (const sim_packet& p : rig.garmin.arrived[sim_list::routes])
            ids.push_back(p.id);
        return ids;
    }
    static void limit(gar_place place, int value)
    {
        settings.garmin[static_cast<std::size_t>(place)] = value;
    }
};

} // namespace

TEST_F(GarRoutes, AreReadWithTheirWaypointsAndLinks)
{
    rig.holds(sim_list::routes,
              {route_header("HOME", 1, 202), route_point(some_waypoint(0)), route_link("TRAIL&B"),
               route_point(some_waypoint(1)), route_link(""), route_point(some_waypoint(2)),
               route_header("BACK", 2, 202), route_point(some_waypoint(2)), route_link(""),
               route_point(some_waypoint(0))});
    rig.run("R_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002");
    ASSERT_EQ(store.rou_top, 1);
    EXPECT_EQ(route(0).nam, "HOME            ");
    EXPECT_EQ(route(0).wps, "W0000$W0001$W0002$");
    EXPECT_EQ(route(0).anw, "$TRAIL&B$$");
    EXPECT_EQ(route(1).wps, "W0002$W0000$");
    EXPECT_EQ(route(1).anw, "");
    EXPECT_EQ(op2.anz.caption, "8125 2 # #");
    EXPECT_FALSE(rig.line.opened);
    EXPECT_TRUE(store.wp_dirty);
}

TEST_F(GarRoutes, WithoutANameAreNamedAfterTheirNumber)
{
    rig.protocols("L001 A010 A100 D103 A200 D200 D103");
    rig.holds(sim_list::routes, {route_header("", 7, 200), route_point(some_waypoint(0))});
    rig.run("R_L");
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(route(0).nam, "8124 7 # #      ");
}

TEST_F(GarRoutes, APointThatTheStoreHasUnderAnotherNameKeepsTheStoredName)
{
    wayp_rec w = some_waypoint(0);
    w.nam = "MINE";
    w.pos.lat ^= 0x3FF; // within the ten low bits
    wayp_insert(w, 0);
    rig.holds(sim_list::routes, {route_header("HOME", 1, 202), route_point(some_waypoint(0)),
                                 route_point(some_waypoint(1))});
    rig.run("R_L");
    EXPECT_EQ(rig.names(), "MINE W0001");
    EXPECT_EQ(route(0).wps, "MINE$W0001$");
}

TEST_F(GarRoutes, APointAtThePlaceOfItsOwnNameIsTheStoredOne)
{
    wayp_rec other = some_waypoint(0); // an earlier record at the same place
    other.nam = "AAA";
    wp_append(other);
    wp_append(some_waypoint(0));
    rig.holds(sim_list::routes, {route_header("HOME", 1, 202), route_point(some_waypoint(0))});
    rig.run("R_L");
    EXPECT_EQ(route(0).wps, "W0000$");
}

TEST_F(GarRoutes, APointThatLiesElsewhereUnderItsNameIsAConflict)
{
    wayp_rec w = some_waypoint(0);
    w.pos.lat += 1 << 20;
    w.kom = "OTHER PLACE";
    wayp_insert(w, 0);
    hooks.conflict_ask = [](conflict_question&) { return conflict_answer::keep_both; };
    rig.holds(sim_list::routes, {route_header("HOME", 1, 202), route_point(some_waypoint(0)),
                                 route_point(some_waypoint(1))});
    rig.run("R_L");
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002"); // the next free name; then that one's own place
    EXPECT_EQ(store.wp[1].pos, some_waypoint(0).pos);
    EXPECT_EQ(route(0).wps.substr(0, 6), "W0001$");
}

TEST_F(GarRoutes, APointRenamedWhileTheListIsMergedStaysInItsRoute)
{
    // The first route uses a stored waypoint; the second brings another of its name, which takes
    // its place: both routes run through the one that is left.
    wayp_rec w = some_waypoint(0);
    wayp_insert(w, 0);
    wayp_rec moved = some_waypoint(0);
    moved.pos.lat += 1 << 22;
    moved.kom = "MOVED";
    hooks.conflict_ask = [](conflict_question&) { return conflict_answer::take_new; };
    rig.holds(sim_list::routes, {route_header("A", 1, 202), route_point(some_waypoint(0)),
                                 route_header("B", 2, 202), route_point(moved)});
    rig.run("R_L");
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_EQ(store.wp[0].kom, "MOVED");
    EXPECT_EQ(route(0).wps, "W0000$");
    EXPECT_EQ(route(1).wps, "W0000$");
    EXPECT_TRUE(rig.user.count(1640) == 0);
}

TEST_F(GarRoutes, AFacilityTakesThePlaceOfTheStoredOneOfItsName)
{
    rig.protocols("L001 A010 A100 D108 A201 D202 D108 D210");
    wayp_rec stored = some_waypoint(0);
    stored.nam = "EDDS";
    stored.kom = "@ADE OLD";
    stored.pos.lat += 1 << 22;
    wayp_insert(stored, 0);
    wayp_rec w = some_waypoint(0);
    w.nam = "EDDS";
    w.kom = "@ADE STUTTGART";
    // An airport with a country, as a receiver's own database sends it.
    sim_packet p{.id = 30};
    gar_wp_encode(w, 108, false, p.data);
    p.data[0] = 0x40;
    p.data[46] = 'D';
    p.data[47] = 'E';
    const std::size_t comment = p.data.find("@ADE ");
    if (comment != std::string::npos)
        p.data.erase(comment, 5);
    hooks.conflict_ask = [](conflict_question&) {
        ADD_FAILURE() << "a facility is not asked about";
        return conflict_answer::keep_old;
    };
    rig.holds(sim_list::routes, {route_header("FLY", 1, 202), p});
    rig.run("R_L");
    ASSERT_EQ(store.wp_top, 0) << rig.names();
    EXPECT_EQ(store.wp[0].pos, some_waypoint(0).pos);
    EXPECT_EQ(store.wp[0].kom.substr(0, 5), "@ADE ");
    EXPECT_NE(store.wp[0].kom.find("STUTTGART"), std::string::npos);
    EXPECT_EQ(route(0).wps, "@ADEEDDS$");
}

TEST_F(GarRoutes, AreReadAsFarAsTheyCame)
{
    rig.holds(sim_list::routes,
              {route_header("HOME", 1, 202), route_point(some_waypoint(0)), route_link(""),
               route_point(some_waypoint(1)), route_link(""), route_point(some_waypoint(2))});
    int acks = 0;
    rig.on_write = [&](int, const std::string& bytes) {
        return bytes != wire(6, le16(30)) || ++acks < 2;
    };
    rig.user.answers = {answer::no};
    rig.run("R_L");
    EXPECT_EQ(transfer.end, transfer_end::broken_off);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(route(0).wps, "W0000$W0001$");
}

TEST_F(GarRoutes, OfAReceiverWithoutARouteProtocolAreNone)
{
    rig.protocols("L001 A010 A100 D103");
    rig.run("R_L");
    EXPECT_NE(transfer.end, transfer_end::whole);
    fill_store(1);
    route_add({.nam = "X", .wps = "W0000$"});
    transfer.choice.routes = true;
    rig.run("R_S");
    EXPECT_EQ(transfer.end, transfer_end::unsupported);
    EXPECT_EQ(op2.anz.caption, "8120 " + transfer.receiver + " # #");
}

TEST_F(GarRoutes, OfAnEmptyReceiverGiveAMessage)
{
    rig.run("R_L");
    EXPECT_EQ(transfer.end, transfer_end::empty);
    EXPECT_EQ(op2.anz.caption, "2670 " + transfer.receiver + " # #");
}

TEST_F(GarRoutes, GoOutAsHeaderPointsAndALinkAheadOfEachFurtherPoint)
{
    fill_store(3);
    route_add({.nam = "HOME", .wps = "W0000$W0001$W0002$", .anw = "$TRAIL&B$$"});
    transfer.choice.routes = true;
    rig.run("R_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(arrived_ids(), (std::vector<int>{29, 30, 98, 30, 98, 30}));
    EXPECT_NE(rig.transcript.find("> " + hex(wire(27, le16(6)))), std::string::npos);
    EXPECT_TRUE(rig.transcript.find("> " + hex(wire(12, le16(4)))) != std::string::npos);
    const std::vector<sim_packet>& got = rig.garmin.arrived[sim_list::routes];
    EXPECT_EQ(gar_link_decode(got[2].data), "TRAIL&B");
    EXPECT_EQ(gar_link_decode(got[4].data), "");
}

TEST_F(GarRoutes, WithoutALinkRecordGoOutWithoutLinks)
{
    rig.protocols("L001 A010 A100 D103 A200 D201 D103");
    fill_store(2);
    route_add({.nam = "HOME", .wps = "W0000$W0001$"});
    route_add({.nam = "BACK", .wps = "W0001$W0000$"});
    transfer.choice.routes = true;
    rig.run("R_S");
    EXPECT_EQ(arrived_ids(), (std::vector<int>{29, 30, 30, 29, 30, 30}));
    const std::vector<sim_packet>& got = rig.garmin.arrived[sim_list::routes];
    EXPECT_EQ(got[0].data[0], 1); // 0 is the route that the receiver is following
    EXPECT_EQ(got[3].data[0], 2);
}

TEST_F(GarRoutes, OfOneNameGoOutUnderDifferentOnesWhenTheReceiverNeedsIt)
{
    fill_store(2);
    for (int n = 0; n < 3; ++n)
        route_add({.nam = "HOME", .wps = "W0000$"});
    route_add({.nam = "ABCDEFGHIJKLMNOP", .wps = "W0001$"});
    route_add({.nam = "ABCDEFGHIJKLMNOP", .wps = "W0001$"});
    transfer.choice.routes = true;
    const auto names = [&] {
        std::vector<std::string> out;
        for (const sim_packet& p : rig.garmin.arrived[sim_list::routes])
            if (p.id == 29)
                out.push_back(p.data.substr(0, p.data.size() - 1));
        return out;
    };
    rig.run("R_S");
    EXPECT_EQ(names(), (std::vector<std::string>{"HOME", "HOME", "HOME", "ABCDEFGHIJKLMNOP",
                                                 "ABCDEFGHIJKLMNOP"}));
    rig.garmin.arrived.clear();
    limit(gar_place::r_unique, 1);
    rig.run("R_S");
    EXPECT_EQ(names(), (std::vector<std::string>{"HOME", "HOME 2", "HOME 3", "ABCDEFGHIJKLMNOP",
                                                 "ABCDEFGHIJKLMN 2"}));
}

TEST_F(GarRoutes, ReadBackAsTheyWereWritten)
{
    fill_store(4);
    route_add({.nam = "HOME", .wps = "W0000$W0003$W0001$", .anw = "$BY CAR&C$$"});
    const route_rec before = route(0);
    transfer.choice.routes = true;
    rig.run("R_S");
    rig.holds(sim_list::routes, rig.garmin.arrived[sim_list::routes]);
    store_reset();
    rig.run("R_L");
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(route(0).nam, before.nam);
    EXPECT_EQ(route(0).wps, before.wps);
    EXPECT_EQ(route(0).anw, before.anw);
}

TEST_F(GarRoutes, MoreThanTheReceiverHoldsAreAskedAbout)
{
    fill_store(2);
    route_add({.nam = "ONE", .wps = "W0000$W0001$"});
    route_add({.nam = "TWO", .wps = "W0001$W0000$"});
    transfer.choice.routes = true;
    limit(gar_place::mrou, 1);
    rig.user.answers = {answer::no};
    rig.run("R_S");
    EXPECT_EQ(rig.user.messages.at(0).text, "2750 2 1 # 2760 # # #");
    EXPECT_EQ(transfer.end, transfer_end::declined);

    limit(gar_place::mrou, 2);
    limit(gar_place::mwp_rou, 1);
    rig.user.messages.clear();
    rig.user.answers = {answer::no};
    rig.run("R_S");
    EXPECT_EQ(rig.user.messages.at(0).text, "2770 ONE, TWO 1 # 2760 # # #");
    EXPECT_TRUE(rig.garmin.arrived.empty());

    rig.user.answers = {answer::yes};
    rig.run("R_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
}

TEST_F(GarRoutes, CancelOnWritingStillClosesTheTransfer)
{
    fill_store(3);
    route_add({.nam = "ONE", .wps = "W0000$W0001$W0002$"});
    transfer.choice.routes = true;
    rig.on_write = [&](int, const std::string& bytes) {
        if (bytes[1] == 98)
            op.Abbr.click();
        return true;
    };
    rig.run("R_S");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(arrived_ids(), (std::vector<int>{29, 30, 98}));
    EXPECT_FALSE(rig.line.opened);
}

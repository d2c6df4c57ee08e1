// The windows that choose what goes to the receiver.
#include "comm/selwp.h"

#include "comm/selrou.h"
#include "comm/transfer_jobs.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

/// A window that runs a procedure while it is open.
void while_open(window& w, std::function<void()> act)
{
    platform.wait_closed = [&w, act = std::move(act)](window& opened) {
        if (&opened == &w)
            act();
        opened.shown = false;
    };
}

class Choice : public testing::Test {
protected:
    transfer_rig rig{};

    void SetUp() override
    {
        for (int n = 0; n < 6; ++n) {
            wayp_rec w = some_waypoint(n);
            wayp_insert(w, 0);
        }
        route_add({.nam = "ONE", .wps = "W0000$W0001$W0002$"});
        route_add({.nam = "TWO", .wps = "W0002$W0005$"});
    }
    void TearDown() override { selrou_run = {}; }
    static void check(control& c, bool on)
    {
        c.checked = on;
        c.click();
    }
    static list_row& row(control& list, int r)
    {
        return list.rows.rows.at(static_cast<std::size_t>(r));
    }
    static void mark(control& list, int r, bool on = true)
    {
        row(list, r).marked = on;
        list.rows.current = r;
        list.row_click(r);
    }
    static void limit(gar_place place, int value)
    {
        settings.garmin[static_cast<std::size_t>(place)] = value;
    }
};

} // namespace

TEST_F(Choice, BeginsWithAllWaypointsAndNoRoutes)
{
    while_open(selwp.form, [] {
        EXPECT_TRUE(selwp.ausw_w.checked);
        EXPECT_FALSE(selwp.ausw_wm.enabled);
        EXPECT_FALSE(selwp.ausw_r.checked);
        EXPECT_FALSE(selwp.ausw_rm.enabled);
        EXPECT_FALSE(selwp.routen_m.enabled);
        EXPECT_EQ(selwp.gar_t.caption, "3860 6 0 #");
        EXPECT_EQ(selwp.gar_v.value, 6);
        EXPECT_EQ(selwp.gar_v.max, 512);
    });
    EXPECT_FALSE(selwp_open());
}

TEST_F(Choice, OfMarkedWaypointsIsOfferedWhenThereAreMarks)
{
    hooks.marked_rows = [] { return std::vector<int>{1, 3}; };
    while_open(selwp.form, [&] {
        EXPECT_TRUE(selwp.ausw_wm.checked);
        EXPECT_EQ(selwp.gar_t.caption, "3860 2 0 #");
        check(selwp.ausw_wm, false);
        EXPECT_EQ(selwp.gar_t.caption, "3860 6 0 #");
        check(selwp.ausw_w, false);
        EXPECT_FALSE(selwp.ausw_wm.enabled);
        EXPECT_FALSE(selwp.OK.enabled);
    });
    selwp_open();
}

TEST_F(Choice, CountsEachWaypointOfTheRoutesOnce)
{
    while_open(selwp.form, [&] {
        check(selwp.ausw_w, false);
        check(selwp.ausw_r, true);
        EXPECT_TRUE(selwp.routen_m.enabled);
        EXPECT_EQ(selwp.gar_t.caption, "3860 4 2 #");
        mark(selwp.routen_m, 1);
        EXPECT_TRUE(selwp.ausw_rm.checked);
        EXPECT_EQ(selwp.gar_t.caption, "3860 2 1 #");
        mark(selwp.routen_m, 1, false);
        EXPECT_EQ(selwp.gar_t.caption, "3860 0 0 #");
        EXPECT_FALSE(selwp.OK.enabled);
    });
    selwp_open();
}

TEST_F(Choice, IsStoredWithOneFigurePerRoute)
{
    while_open(selwp.form, [&] {
        check(selwp.ausw_w, false);
        check(selwp.ausw_r, true);
        mark(selwp.routen_m, 1);
        selwp.OK.click();
        EXPECT_FALSE(selwp.form.shown);
    });
    EXPECT_TRUE(selwp_open());
    EXPECT_EQ(transfer.choice.route_marks, "01");
    EXPECT_TRUE(transfer.choice.routes);
    EXPECT_FALSE(transfer.choice.waypoints);
    EXPECT_EQ(chosen_routes(transfer.choice), (std::vector<int>{1}));
    EXPECT_EQ(chosen_waypoints(transfer.choice), (std::vector<int>{2, 5}));
}

TEST_F(Choice, CancelStoresNothing)
{
    transfer.choice.route_marks = "kept";
    while_open(selwp.form, [&] {
        check(selwp.ausw_r, true);
        selwp.Abbr.click();
    });
    EXPECT_FALSE(selwp_open());
    EXPECT_EQ(transfer.choice.route_marks, "kept");
}

TEST_F(Choice, TellsWhenALimitIsPassed)
{
    limit(gar_place::mwp, 5);
    while_open(selwp.form, [&] {
        EXPECT_EQ(selwp.gar_t.caption, "3870 6 # #");
        EXPECT_NE(selwp.gar_t.back, own_colour);
        EXPECT_EQ(selwp.gar_v.value, selwp.gar_v.max);
        limit(gar_place::mwp, 6);
        selwp_recount();
        EXPECT_EQ(selwp.gar_t.caption, "3860 6 0 #");
        EXPECT_EQ(selwp.gar_t.back, own_colour);
        limit(gar_place::mrou, 1);
        check(selwp.ausw_r, true);
        EXPECT_EQ(selwp.gar_t.caption, "3880 2 # #");
        limit(gar_place::mrou, 9);
        limit(gar_place::mwp_rou, 2);
        selwp_recount();
        EXPECT_EQ(selwp.gar_t.caption, "3880 2 # #");
        mark(selwp.routen_m, 1); // only the short one
        EXPECT_EQ(selwp.gar_t.caption, "3860 6 1 #");
        EXPECT_TRUE(selwp.OK.enabled); // the user may go on
    });
    selwp_open();
}

TEST_F(Choice, ShowsWhatTheRoutesRunThroughOrWhereTheyLie)
{
    hooks.position_text = [](const pos_rec&) { return std::string("place"); };
    while_open(selwp.form, [&] {
        ASSERT_EQ(selwp.routen_m.rows.rows.size(), 2U);
        EXPECT_EQ(row(selwp.routen_m, 0).cells,
                  (std::vector<std::string>{"00: ONE", "8150 W0000 W0002 3"}));
        row(selwp.routen_m, 1).marked = true;
        selwp.r_b.checked = false;
        selwp.r_k.checked = true;
        selwp.r_k.click();
        EXPECT_EQ(selwp.routen_m.rows.columns[1].heading, "8133 # # #");
        EXPECT_NE(row(selwp.routen_m, 0).cells[1], "8150 W0000 W0002 3");
        EXPECT_TRUE(row(selwp.routen_m, 1).marked); // marks stay
    });
    selwp_open();
}

TEST_F(Choice, WithoutWaypointsNothingCanBeSent)
{
    store_reset();
    while_open(selwp.form, [] {
        EXPECT_FALSE(selwp.ausw_w.enabled);
        EXPECT_FALSE(selwp.ausw_r.enabled);
        EXPECT_FALSE(selwp.OK.enabled);
    });
    selwp_open();
}

TEST_F(Choice, TheMenuEntrySendsWhatWasChosen)
{
    while_open(selwp.form, [&] {
        check(selwp.ausw_w, false);
        check(selwp.ausw_r, true);
        mark(selwp.routen_m, 1);
        selwp.OK.click();
    });
    Form1.Wayp_Garmin_Speichern.click();
    EXPECT_EQ(rig.garmin.arrived[sim_list::waypoints].size(), 2U);
    EXPECT_EQ(rig.garmin.arrived[sim_list::routes].size(), 4U);
    EXPECT_FALSE(rig.line.opened);
    rig.garmin.arrived.clear();
    while_open(selwp.form, [] { selwp.Abbr.click(); });
    Form1.Wayp_Garmin_Speichern.click();
    EXPECT_TRUE(rig.garmin.arrived.empty());
}

TEST_F(Choice, TheMenuEntriesRead)
{
    int begun = 0;
    hooks.receiver_read_begins = [&] { ++begun; };
    Form1.Wayp_Garmin_lesen.click();
    EXPECT_NE(rig.transcript.find(hex(wire(10, le16(7)))), std::string::npos);
    Form1.R_Garmin_Lesen.click();
    EXPECT_NE(rig.transcript.find(hex(wire(10, le16(4)))), std::string::npos);
    Form1.T_Garmin_Lesen.click();
    EXPECT_NE(rig.transcript.find(hex(wire(10, le16(6)))), std::string::npos);
    EXPECT_EQ(begun, 3);
}

// selrou
// ---------------------------------------------------------------------------------------------------------------

TEST_F(Choice, OfRoutesAloneListsThemWithTheirPoints)
{
    while_open(selrou.form, [] {
        ASSERT_EQ(selrou.routen_m.rows.rows.size(), 2U);
        EXPECT_EQ(row(selrou.routen_m, 0).cells,
                  (std::vector<std::string>{"00: ONE", "8150 W0000 W0002 3"}));
        EXPECT_EQ(selrou.com.caption, "W0000 W0001 W0002");
        EXPECT_FALSE(selrou.OK.enabled);
        mark(selrou.routen_m, 1);
        EXPECT_EQ(selrou.com.caption, "W0002 W0005");
        EXPECT_TRUE(selrou.OK.enabled);
        selrou.OK.click();
    });
    EXPECT_EQ(selrou_open(), (std::vector<int>{1}));
}

TEST_F(Choice, OfRoutesClosedWithoutOkIsNone)
{
    while_open(selrou.form, [] { mark(selrou.routen_m, 1); });
    EXPECT_TRUE(selrou_open().empty());
}

TEST_F(Choice, OfRoutesKeepsItsOrderFromOneOpeningToTheNext)
{
    while_open(selrou.form, [] {
        selrou.routen_m.header_click(0);
        EXPECT_EQ(row(selrou.routen_m, 0).data, 0);
        selrou.routen_m.header_click(0);
        EXPECT_EQ(row(selrou.routen_m, 0).data, 1);
        EXPECT_TRUE(selrou.routen_m.rows.sort_down);
    });
    selrou_open();
    while_open(selrou.form, [] {
        EXPECT_EQ(row(selrou.routen_m, 0).data, 1);
        EXPECT_EQ(selrou.routen_m.rows.sort_column, 0);
    });
    selrou_open();
}

TEST_F(Choice, OfRoutesTakesTheCaptionOfItsCaller)
{
    while_open(selrou.form, [] { EXPECT_EQ(selrou.form.caption, "3850 # # #"); });
    selrou_open(3850);
    while_open(selrou.form, [] { EXPECT_EQ(selrou.form.caption, "8144 # # #"); });
    selrou_open();
}

TEST_F(Choice, OfRoutesIsSent)
{
    while_open(selrou.form, [] {
        mark(selrou.routen_m, 0);
        selrou.OK.click();
    });
    selrou_send();
    EXPECT_EQ(rig.garmin.arrived[sim_list::routes].size(), 6U);
    EXPECT_EQ(rig.garmin.arrived.count(sim_list::waypoints), 0U);
}

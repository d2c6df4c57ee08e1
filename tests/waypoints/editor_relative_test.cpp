#include "tests/waypoints/editor_fixture.h"

using namespace velkoro;

namespace {

struct Relative : EditorTest {
    int ref = -1, other = -1;

    Relative()
    {
        ref = add({.nam = "START", .kom = "Rundtour", .pos = at(51.5, 9.9)});
        other = add({.nam = "A", .pos = at(51.52, 9.95)});
        refer_to(ref);
    }
};

} // namespace

TEST_F(Relative, ShowsBearingAndDistanceFromTheReference)
{
    edit(other, [] {
        EXPECT_EQ(WAYPOINT.refp.caption, "START \xB7 Rundtour");
        EXPECT_EQ(WAYPOINT.bear.text, "57");
        EXPECT_EQ(WAYPOINT.dist.text, "4.12");
        EXPECT_EQ(WAYPOINT.dist_km.caption, "km");
        EXPECT_FALSE(WAYPOINT.lat_rel.enabled);
    });
}

TEST_F(Relative, BearingAndDistanceMoveThePosition)
{
    edit(other, [] {
        type(WAYPOINT.bear, "90");
        type(WAYPOINT.dist, "10");
        EXPECT_EQ(WAYPOINT.lat.text.substr(0, 7), "N 51°29"_w);
        EXPECT_EQ(WAYPOINT.bear.text, "90"); // what is being typed stays
        ok();
    });
    EXPECT_NEAR(apart_m(wp(other).pos, wp(ref).pos), 10000, 0.5);
    edit(other, [] {
        EXPECT_EQ(WAYPOINT.bear.text, "90");
        EXPECT_EQ(WAYPOINT.dist.text, "10.00");
    });
}

TEST_F(Relative, ATypedPositionChangesBearingAndDistance)
{
    edit(other, [] {
        type(WAYPOINT.lat, "N51 36");
        type(WAYPOINT.lon, "E9 54");
        EXPECT_EQ(WAYPOINT.bear.text, "0");
        EXPECT_EQ(WAYPOINT.dist.text, "11.13");
        type(WAYPOINT.lat, "N");
        type(WAYPOINT.lon, "");
        EXPECT_EQ(WAYPOINT.dist.text, "");
    });
}

TEST_F(Relative, OffsetsInMetresWorkBothWaysInAnglesAndGrids)
{
    for (const int fmt : {int{fmt_minutes}, int{fmt_utm}, int{fmt_mgrs}, int{fmt_gk}}) {
        Form1.posform.selected = fmt;
        wp_move(other, at(51.52, 9.95));
        edit(other, [&] {
            choose(WAYPOINT.relativ, static_cast<int>(rel_method::metres));
            EXPECT_TRUE(WAYPOINT.lat_rel.enabled);
            EXPECT_EQ(WAYPOINT.lat_rel_e.caption, "m");
            EXPECT_NEAR(std::stod(WAYPOINT.lat_rel.text), 2226, 60) << fmt;
            EXPECT_NEAR(std::stod(WAYPOINT.lon_rel.text), 3465, 60) << fmt;
            type(WAYPOINT.lat_rel, "-1000");
            type(WAYPOINT.lon_rel, "2000");
            EXPECT_EQ(WAYPOINT.lat_rel.text, "-1000");
            EXPECT_EQ(WAYPOINT.bear.text, "117") << fmt;
            EXPECT_NEAR(std::stod(WAYPOINT.dist.text), 2.236, 0.01) << fmt; // on the sphere
            ok();
        });
        edit(other, [&] {
            EXPECT_NEAR(std::stod(WAYPOINT.lat_rel.text), -1000, 1) << fmt;
            EXPECT_NEAR(std::stod(WAYPOINT.lon_rel.text), 2000, 1) << fmt;
        });
    }
}

TEST_F(Relative, GridOffsetsReachAcrossAZoneBorder)
{
    Form1.posform.selected = fmt_utm;
    wp_move(ref, at(51.5, 11.99));
    refer_to(ref);
    wp_move(other, at(51.5, 12.01)); // zone 33
    edit(other, [] {
        choose(WAYPOINT.relativ, static_cast<int>(rel_method::metres));
        EXPECT_EQ(WAYPOINT.zone.text.substr(0, 2), "33");
        EXPECT_NEAR(std::stod(WAYPOINT.lon_rel.text), 1388, 5);
        EXPECT_LT(std::abs(std::stod(WAYPOINT.lat_rel.text)), 100);
    });
}

TEST_F(Relative, OffsetsInMillimetresFollowTheMapScale)
{
    settings.scale = 25000;
    Form1.posform.selected = fmt_utm;
    edit(other, [] {
        choose(WAYPOINT.relativ, static_cast<int>(rel_method::map_mm));
        EXPECT_EQ(WAYPOINT.relativ.items[2], text(7818, 25000));
        EXPECT_EQ(WAYPOINT.dist_km.caption, "mm");
        EXPECT_EQ(WAYPOINT.lat_rel_e.caption, "mm");
        type(WAYPOINT.lat_rel, "40");
        type(WAYPOINT.lon_rel, "0");
        EXPECT_EQ(WAYPOINT.dist.text, "40.0");
        type(WAYPOINT.bear, "0");
        type(WAYPOINT.dist, "80");
        EXPECT_NEAR(std::stod(WAYPOINT.lat_rel.text), 80, 0.1);
        ok();
    });
    EXPECT_NEAR(apart_m(wp(other).pos, wp(ref).pos), 2000, 1);
    EXPECT_EQ(settings.scale, 25000);
}

TEST_F(Relative, WithoutAReferenceNothingRelativeCanBeTyped)
{
    store.refp_name = "??????";
    edit(other, [] {
        EXPECT_FALSE(WAYPOINT.bear.enabled);
        EXPECT_FALSE(WAYPOINT.relativ.enabled);
        EXPECT_EQ(WAYPOINT.bear.text, "");
    });
}

TEST_F(Relative, AHeldZoneShowsTheRestInMillimetres)
{
    Form1.posform.selected = fmt_utm;
    edit(other, [] {
        tick(WAYPOINT.zone_halt, true);
        const std::string base = WAYPOINT.lon.text;
        ASSERT_NE(base.find(map_tab), std::string::npos);
        EXPECT_EQ(base.substr(base.find(map_tab)), "\t0");
        EXPECT_LT(editor.coordinate_state, 2); // another way to show it is no change
        type(WAYPOINT.lon, base.substr(0, base.find(map_tab)) + "\t20");
        ok();
    });
    EXPECT_NEAR(apart_m(wp(other).pos, at(51.52, 9.95)), 1000, 3);
    enter([] { // the next one begins at the held point
        EXPECT_TRUE(WAYPOINT.zone_halt.checked);
        EXPECT_EQ(WAYPOINT.zone.text, "32U");
        EXPECT_EQ(WAYPOINT.lat.text.back(), map_tab);
        tick(WAYPOINT.zone_halt, false);
        EXPECT_EQ(WAYPOINT.lat.text.find(map_tab), std::string::npos);
    });
    EXPECT_FALSE(coord.zone_halt);
}

TEST_F(Relative, NothingCanBeHeldWithoutAPosition)
{
    enter([&] {
        tick(WAYPOINT.zone_halt, true);
        EXPECT_FALSE(WAYPOINT.zone_halt.checked);
        EXPECT_EQ(user.numbers(), (ints{4310}));
    });
    EXPECT_FALSE(coord.zone_halt);
}

TEST_F(Relative, AnotherFormatEndsTheHolding)
{
    Form1.posform.selected = fmt_utm;
    edit(other, [] { tick(WAYPOINT.zone_halt, true); });
    Form1.posform.selected = fmt_minutes;
    edit(other, [] {
        EXPECT_FALSE(WAYPOINT.zone_halt.checked);
        EXPECT_EQ(WAYPOINT.lat.text, "N 51°31.200'"_w);
    });
}

TEST_F(Relative, ThePresetStartsANewPositionLikeTheLastOne)
{
    const int i = enter([] {
        EXPECT_EQ(WAYPOINT.lat.text, "");
        tick(WAYPOINT.Vorgabe, true);
        EXPECT_EQ(WAYPOINT.lat.text, "N 51°"_w);
        EXPECT_EQ(WAYPOINT.lon.text, "E009°"_w);
        type(WAYPOINT.nam, "P");
        for (const char c : std::string("31200"))
            type(WAYPOINT.lat, WAYPOINT.lat.text + c);
        for (const char c : std::string("6."))
            type(WAYPOINT.lon, WAYPOINT.lon.text + c);
        EXPECT_EQ(WAYPOINT.lat.text, "N 51°31.200"_w);
        EXPECT_EQ(WAYPOINT.lon.text, "E009°06."_w);
        ok();
    });
    ASSERT_GE(i, 0);
    EXPECT_LT(apart_m(wp(i).pos, at(51.52, 9.1)), 2);
    enter([] { EXPECT_EQ(WAYPOINT.lat.text, "N 51°"_w); });
}

TEST_F(Relative, APresetStartAloneIsNoPosition)
{
    editor.preset = true;
    enter([&] {
        type(WAYPOINT.nam, "P");
        ok();
        EXPECT_EQ(user.numbers(), (ints{4310}));
    });
    EXPECT_EQ(store.wp_top, other);
}

TEST_F(Relative, LabelsFollowTheFormat)
{
    edit(other, [] {
        EXPECT_EQ(WAYPOINT.T_lat.caption, text(7804));
        EXPECT_FALSE(WAYPOINT.zone.enabled);
    });
    Form1.posform.selected = fmt_utm;
    edit(other, [] {
        EXPECT_EQ(WAYPOINT.T_lat.caption, text(7806));
        EXPECT_EQ(WAYPOINT.T_lon.caption, text(7807));
        EXPECT_TRUE(WAYPOINT.zone.enabled);
        EXPECT_EQ(WAYPOINT.zone.text, "32U");
    });
}

// Nearest waypoints
// -------------------------------------------------------------------------------------------------

TEST_F(Relative, TheSixNearestAreListedByDistance)
{
    for (int n = 1; n <= 8; ++n)
        add({.nam = "N" + std::to_string(n), .pos = at(51.52 + 0.01 * (9 - n), 9.95)});
    add({.nam = "FAR", .pos = at(-51.52, 9.95)});
    edit(other, [&] {
        const auto& rows = WAYPOINT.nächst.rows.rows;
        ASSERT_EQ(rows.size(), 6U);
        EXPECT_EQ(rows[0].cells, (std::vector<std::string>{"N8", "1.11 km", "000\xB0"}));
        EXPECT_EQ(rows[1].cells[0], "N7");
        type(WAYPOINT.lat, "N51 29"); // measured from what the window says
        EXPECT_EQ(rows[0].cells[0], "START");
    });
}

TEST_F(Relative, WaypointsBeyondTheLimitAreLeftOut)
{
    wp_move(ref, at(-40, 9.95));
    edit(other, [] { EXPECT_TRUE(WAYPOINT.nächst.rows.rows.empty()); });
}

TEST_F(Relative, AClickOpensTheNearestWaypointHere)
{
    edit(other, [&] {
        WAYPOINT.nächst.row_click(0);
        EXPECT_EQ(WAYPOINT.nam.text, "START");
        EXPECT_EQ(store.wp_cur, ref);
        type(WAYPOINT.kom, "neu");
        user.answers = {answer::cancel};
        WAYPOINT.nächst.row_click(0); // changes are not dropped unasked
        EXPECT_EQ(user.numbers(), (ints{7835}));
        EXPECT_EQ(WAYPOINT.nam.text, "START");
        ok();
    });
    EXPECT_EQ(wp(ref).kom, "neu");
    EXPECT_EQ(wp(other).kom, "");
}

TEST_F(Relative, ArrowKeysMoveAlongTheNearestWithoutOpening)
{
    add({.nam = "B", .pos = at(51.53, 9.95)});
    edit(other, [] {
        constexpr int down = 0x01000015;
        EXPECT_TRUE(WAYPOINT.nächst.key(down, false, false));
        EXPECT_TRUE(WAYPOINT.nächst.key(down, false, false));
        EXPECT_TRUE(WAYPOINT.nächst.key(down, false, false));
        EXPECT_EQ(WAYPOINT.nächst.rows.current, 1);
        EXPECT_EQ(WAYPOINT.nam.text, "A");
        WAYPOINT.nächst.row_open(1);
        EXPECT_EQ(WAYPOINT.nam.text, "START");
    });
}

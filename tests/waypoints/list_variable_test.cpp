#include "waypoints/list_variable.h"

#include "coords/distance.h"
#include "tests/waypoints/list_fixture.h"

using namespace velkoro;

namespace {

constexpr std::int32_t degree = 11930465; // semicircles

class VariableColumn : public ListTest {
protected:
    VariableColumn()
    {
        hooks.distance = [](const pos_rec& t, const pos_rec& o) {
            return static_cast<double>(dist_flat(t, o).distance);
        };
        hooks.chosen_routes = [this] { return chosen; };
    }
    static std::string shown(int row) { return cell(row, list_col::variable); }
    static void track(const std::vector<pos_rec>& points)
    {
        for (const pos_rec& p : points)
            track_append({.pos = p});
    }
    static const std::string& heading() { return list().columns[4].heading; }

    std::vector<int> chosen{};
};

} // namespace

TEST_F(VariableColumn, ShowsDistanceAndBearingFromTheReference)
{
    add({.nam = "NORTH", .pos = {2 * degree, 0}});
    add({.nam = "EAST", .pos = {0, degree}});
    add({.nam = "WEST", .pos = {0, -3 * degree}});
    store.refp_pos = {0, 0};
    sort_by(sort_entry::ref_distance);
    EXPECT_EQ(rows(), (lines{"EAST", "NORTH", "WEST"}));
    EXPECT_EQ(shown(0), "111.32 km  090°  "_w);
    EXPECT_EQ(shown(1), "222.64 km  000°  "_w);
    EXPECT_EQ(shown(2), "333.96 km  270°  "_w);
    EXPECT_EQ(heading(), text(7265));
    sort_by(sort_entry::ref_bearing);
    EXPECT_EQ(rows(), (lines{"NORTH", "EAST", "WEST"}));
    EXPECT_EQ(shown(2), "333.96 km  270°  "_w);
    EXPECT_EQ(heading(), text(7752));
    EXPECT_EQ(list().sort_column, static_cast<int>(list_col::variable));
}

TEST_F(VariableColumn, ABearingThatRoundsToTheFullCircleIsNorth)
{
    add({.nam = "A", .pos = {20 * degree, -degree / 20}});
    EXPECT_NEAR(dist_flat(store.wp[0].pos, {0, 0}).bearing, 359.86, 0.02);
    EXPECT_TRUE(variable_text(0, sort_entry::ref_bearing).shown.ends_with("  000°  "_w));
}

TEST_F(VariableColumn, AnotherReferenceSortsAnew)
{
    add({.nam = "A", .pos = {degree, degree}});
    add({.nam = "B", .pos = {2 * degree, 2 * degree}});
    sort_by(sort_entry::ref_distance);
    EXPECT_EQ(rows(), (lines{"A", "B"}));
    tick(0.2);
    Form1.refp.selected = 1;
    Form1.refp.change();
    EXPECT_EQ(rows(), (lines{"B", "A"}));
}

TEST_F(VariableColumn, ShowsTheDistanceToTheNearestOtherWaypoint)
{
    add({.nam = "A", .pos = {0, 0}});
    add({.nam = "B", .pos = {0, 10 * degree}});
    add({.nam = "C", .pos = {0, 12 * degree}});
    add({.nam = "D", .pos = {0, 15 * degree}});
    sort_by(sort_entry::nearest_wp);
    EXPECT_EQ(rows(), (lines{"B", "C", "D", "A"}));
    EXPECT_EQ(shown(0), "222.64");
    EXPECT_EQ(shown(2), "333.96");
    EXPECT_EQ(shown(3), "1113.19");
    EXPECT_EQ(list().rows[3].sort, "01113.195");
    EXPECT_EQ(heading(), text(7266) + " (km)");
    EXPECT_TRUE(list().columns[4].right);
}

TEST_F(VariableColumn, TheOnlyWaypointHasNoNearestOne)
{
    add({.nam = "A", .pos = {0, 0}});
    sort_by(sort_entry::nearest_wp);
    EXPECT_EQ(shown(0), "-.-");
    EXPECT_EQ(list().rows[0].sort, "10000.000");
}

TEST_F(VariableColumn, FollowsWaypointsThatComeMoveAndGo)
{
    add({.nam = "A", .pos = {0, 0}});
    add({.nam = "B", .pos = {0, 10 * degree}});
    sort_by(sort_entry::nearest_wp);
    EXPECT_EQ(shown(0), "1113.19");
    add({.nam = "C", .pos = {0, degree}});
    EXPECT_EQ(shown(0), "111.32");
    wp_move(2, {0, 2 * degree});
    row_refresh(2, false);
    EXPECT_EQ(shown(0), "222.64");
    wayp_delete(2);
    EXPECT_EQ(shown(0), "1113.19");
}

TEST_F(VariableColumn, DistancesFollowTheUnit)
{
    add({.nam = "A", .pos = {0, 0}});
    add({.nam = "B", .pos = {0, degree}});
    sort_by(sort_entry::nearest_wp);
    settings.dist_unit = 1852.0F;
    settings.dist_index = 2;
    hooks.units_changed();
    EXPECT_EQ(shown(0), "60.11");
    EXPECT_EQ(list().rows[0].sort, "00060.108");
    EXPECT_EQ(heading(), text(7266) + " (NM)");
}

TEST_F(VariableColumn, ListsTheRoutesThatHoldAWaypoint)
{
    add({.nam = "A", .pos = {0, 0}});
    add({.nam = "B", .kom = "@001", .pos = {0, 10 * degree}});
    add({.nam = "C", .pos = {0, 20 * degree}});
    route_add({.wps = "A$@001B$A$"});
    route_add({.wps = "C$@001B$"});
    sort_by(sort_entry::routes);
    EXPECT_EQ(rows(), (lines{"A", "B", "C"}));
    EXPECT_EQ(shown(0), "1") << "a route that holds it twice counts once";
    EXPECT_EQ(shown(1), "1,2");
    EXPECT_EQ(shown(2), "2");
    EXPECT_FALSE(list().columns[4].right);
    EXPECT_EQ(heading(), text(7270));
    route_delete(1);
    EXPECT_EQ(shown(1), "1");
    EXPECT_EQ(shown(2), std::string(20, '-'));
    sort_apply();
    EXPECT_EQ(rows(), (lines{"C", "A", "B"})) << "the sign sorts ahead of digits";
}

TEST_F(VariableColumn, ShowsTheDistanceToThePointsOfTheChosenRoutes)
{
    add({.nam = "A", .pos = {0, 0}});
    add({.nam = "B", .pos = {0, 10 * degree}});
    add({.nam = "C", .pos = {0, 12 * degree}});
    route_add({.wps = "A$"});
    route_add({.wps = "C$"});
    sort_by(sort_entry::route_distance);
    EXPECT_EQ(rows(), (lines{"A", "B", "C"}));
    EXPECT_EQ(shown(1), "-.-");
    EXPECT_EQ(list().rows[1].sort, "10000.000") << "no route is chosen";
    chosen = {1, 7};
    sort_apply();
    EXPECT_EQ(rows(), (lines{"C", "B", "A"}));
    EXPECT_EQ(shown(0), "0.00");
    EXPECT_EQ(shown(1), "222.64");
    chosen = {0, 1};
    EXPECT_EQ(shown(2), "0.00") << "the choice is looked at when a row is shown";
    EXPECT_EQ(heading(), text(7271) + " (km)");
}

TEST_F(VariableColumn, ShowsTheDistanceToTheNearestTrackPoint)
{
    add({.nam = "A", .pos = {0, 0}});
    add({.nam = "B", .pos = {0, 10 * degree}});
    sort_by(sort_entry::track_distance);
    EXPECT_EQ(shown(0), "-.-");
    // One point far off the others' way, within a hundred that are not near.
    std::vector<pos_rec> points(250, pos_rec{0, 50 * degree});
    points[137] = {0, 11 * degree};
    points[138] = {0, -3 * degree};
    track(points);
    sort_apply();
    EXPECT_EQ(rows(), (lines{"B", "A"}));
    EXPECT_EQ(shown(0), "111.32");
    EXPECT_EQ(shown(1), "333.96");
    EXPECT_EQ(heading(), text(7272) + " (km)");
    track_clear();
    EXPECT_EQ(shown(0), "-.-");
}

TEST_F(VariableColumn, AClickOnItsHeadingKeepsTheOrderThatItShows)
{
    add_names({"A", "B"});
    sort_by(sort_entry::routes);
    Form1.Waypl2.header_click(0);
    Form1.sort.selected = static_cast<int>(sort_entry::nearest_wp);
    Form1.Waypl2.header_click(static_cast<int>(list_col::variable));
    EXPECT_EQ(Form1.sort.selected, static_cast<int>(sort_entry::nearest_wp));
}

TEST_F(VariableColumn, DatesSortAsNumbers)
{
    add({.nam = "A", .pos = {0, 0}, .dat = 86400});
    const row_text t = variable_text(0, sort_entry::date);
    EXPECT_EQ(t.sort, "00000086400");
    EXPECT_EQ(t.shown, "1990-01-01");
}

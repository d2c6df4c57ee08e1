#include "core/store.h"

#include "core/code_page.h"
#include "tests/core/store_fixture.h"

using namespace velkoro;

namespace {

class StoreState : public Store {};
class FindKey : public Store {};
class FindPos : public Store {};
class Rename : public Store {};
class Move : public Store {};
class TrackAppend : public Store {};

/// Two records of each name: a file may hold doubles.
void fill_double(const std::string& letters)
{
    open_batch();
    for (const char c : letters)
        insert(waypoint(std::string(1, c), c));
    close_batch();
}

} // namespace

TEST_F(StoreState, IsEmptyAtStart)
{
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(store.wp_cur, -1);
    EXPECT_EQ(store.rou_top, -1);
    EXPECT_EQ(store.trk_top, -1);
    EXPECT_EQ(store.refp_name, "??????");
    EXPECT_EQ(store.wp_name_max, 6);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_FALSE(store.trk_dirty);
}

TEST_F(StoreState, ANewListKeepsTracksAndSettings)
{
    insert(waypoint("A", 1));
    add_route("R", "A$");
    track_append({});
    store.wp_name_max = 10;
    wayp_clear();
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(store.rou_top, -1);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(store.trk_top, 0);
    EXPECT_EQ(store.wp_name_max, 10);
    EXPECT_EQ(wp_find_key("A", "", -1, store.wp_top), -1);
    EXPECT_EQ(insert(waypoint("A", 1)), 0);
}

TEST_F(StoreState, EmptyTracksLeaveWaypointsAlone)
{
    insert(waypoint("A", 1));
    trackp_rec p;
    p.kom = "text";
    track_append(p);
    track_clear();
    EXPECT_EQ(store.trk_top, -1);
    EXPECT_TRUE(store.trk.empty());
    EXPECT_FALSE(store.trk_dirty);
    EXPECT_EQ(pool_bytes(), 0U);
    EXPECT_EQ(store.wp_top, 0);
}

TEST_F(FindKey, TheFirstOfTheArrayCounts)
{
    fill_double("ABAB");
    EXPECT_EQ(wp_find_key("A", "", -1, 3), 0);
    EXPECT_EQ(wp_find_key("B", "", -1, 3), 1);
    EXPECT_EQ(wp_find_key("C", "", -1, 3), -1);
}

TEST_F(FindKey, LeavesOutOneIndex)
{
    fill_double("ABAB");
    EXPECT_EQ(wp_find_key("A", "", 0, 3), 2);
    EXPECT_EQ(wp_find_key("A", "", 2, 3), 0);
    EXPECT_EQ(wp_find_key("A", "", 1, 3), 0);
}

TEST_F(FindKey, StopsAtTheLastIndex)
{
    fill_double("ABAB");
    EXPECT_EQ(wp_find_key("B", "", -1, 0), -1);
    EXPECT_EQ(wp_find_key("B", "", -1, 1), 1);
    EXPECT_EQ(wp_find_key("A", "", 0, 1), -1);
    EXPECT_EQ(wp_find_key("A", "", -1, -1), -1);
    EXPECT_EQ(wp_find_key("A", "", -1, 30000), 0);
}

TEST_F(FindKey, TheNamespaceOfTheCommentCounts)
{
    insert(waypoint("A", 1, "@123 x"));
    EXPECT_EQ(wp_find_key("A", "", -1, 0), -1);
    EXPECT_EQ(wp_find_key("A", "@123 another", -1, 0), 0);
    EXPECT_EQ(wp_find_key("@123A", "", -1, 0), 0) << "a whole key given as a name";
    EXPECT_EQ(wp_find_key("A", "@12", -1, 0), -1);
    EXPECT_EQ(wp_find_key("3A", "@12", -1, 0), 0) << "the joined text is the key";
}

TEST_F(FindKey, NamesAreComparedExactly)
{
    insert(waypoint("A", 1));
    EXPECT_EQ(wp_find_key("a", "", -1, 0), -1);
    EXPECT_EQ(wp_find_key("A ", "", -1, 0), -1);
}

TEST_F(FindKey, RecordsPutPastTheStoreAreFound)
{
    store.wp = {waypoint("A", 1), waypoint("B", 2)};
    store.wp_top = 1;
    EXPECT_EQ(wp_find_key("B", "", -1, 1), 1);
    EXPECT_EQ(wp_find_pos(waypoint("", 2).pos, 1), 1);
}

TEST_F(FindPos, TheTenLowestBitsDoNotCount)
{
    wayp_rec w = waypoint("A", 1);
    w.pos = {-1024, 1023};
    insert(w);
    EXPECT_EQ(wp_find_pos({-1, 0}, 0), 0);
    EXPECT_EQ(wp_find_pos({0, 0}, 0), -1);
    EXPECT_EQ(wp_find_pos({-1025, 0}, 0), -1);
    EXPECT_EQ(wp_find_pos({-1024, 1024}, 0), -1);
}

TEST_F(FindPos, TheFirstOfTheArrayUpToTheLastIndexCounts)
{
    open_batch();
    for (const char* n : {"A", "B", "C"})
        insert(waypoint(n, n[0] == 'A' ? 2 : 1));
    EXPECT_EQ(wp_find_pos(waypoint("", 1).pos, 2), 1);
    EXPECT_EQ(wp_find_pos(waypoint("", 1).pos, 0), -1);
}

TEST_F(FindPos, TheEndsOfTheRangeAreOrdinaryPositions)
{
    wayp_rec w = waypoint("A", 1);
    w.pos = {INT32_MIN, INT32_MAX};
    insert(w);
    EXPECT_EQ(wp_find_pos({INT32_MIN + 1023, INT32_MAX - 1023}, 0), 0);
    EXPECT_EQ(wp_find_pos({INT32_MAX, INT32_MIN}, 0), -1);
}

TEST_F(Rename, RewritesTheRoutesThatHoldTheOldKey)
{
    for (const char* n : {"A", "B", "AB"})
        insert(waypoint(n, n[0] + (n[1] != 0 ? 100 : 0)));
    add_route("ONE", "A$B$A$AB$");
    add_route("TWO", "B$AB$");
    add_route("THREE", "B$A$");
    rou(0).speed = "1$2$3$4$";
    EXPECT_EQ(wp_rename(0, "X", ""), "1, 3");
    EXPECT_EQ(rou(0).wps, "X$B$X$AB$");
    EXPECT_EQ(rou(0).speed, "1$2$3$4$");
    EXPECT_EQ(rou(1).wps, "B$AB$");
    EXPECT_EQ(rou(2).wps, "B$X$");
    EXPECT_EQ(wp_find_key("X", "", -1, 2), 0);
    EXPECT_EQ(wp_find_key("A", "", -1, 2), -1);
    expect_routes_resolve();
}

TEST_F(Rename, ANewNamespaceIsANewKey)
{
    insert(waypoint("A", 1));
    add_route("ONE", "A$");
    EXPECT_EQ(wp_rename(0, "A", "@123 hut"), "1");
    EXPECT_EQ(rou(0).wps, "@123A$");
    EXPECT_EQ(wp_rename(0, "A", "@123 house"), "") << "the same key";
    EXPECT_EQ(wp(0).kom, "@123 house");
}

TEST_F(Rename, OneOfTwoNamespacesLeavesTheOtherAlone)
{
    insert(waypoint("A", 1, "@123"));
    insert(waypoint("A", 2, "@124"));
    add_route("ONE", "@123A$@124A$");
    wp_rename(0, "B", "@123");
    EXPECT_EQ(rou(0).wps, "@123B$@124A$");
}

TEST_F(Rename, MarksTheStoreChangedOnlyWhenItIs)
{
    insert(waypoint("A", 1, "x"));
    store.wp_dirty = false;
    wp_rename(0, "A", "x");
    EXPECT_FALSE(store.wp_dirty);
    wp_rename(0, "A", "y");
    EXPECT_TRUE(store.wp_dirty);
}

TEST_F(Rename, ARenamedReferenceTakesItsNameAlong)
{
    insert(waypoint("A", 1));
    store.refp_name = "A";
    store.refp_pos = wp(0).pos;
    wp_rename(0, "B", "");
    EXPECT_EQ(store.refp_name, "B");
}

TEST_F(Rename, AnotherWaypointOfTheReferencesNameDoesNot)
{
    insert(waypoint("A", 1));
    insert(waypoint("A", 2, "@123"));
    store.refp_name = "A";
    store.refp_pos = wp(0).pos;
    wp_rename(1, "B", "@123");
    EXPECT_EQ(store.refp_name, "A");
}

TEST_F(Move, TheNewPositionIsFoundAndTheOldOneNot)
{
    insert(waypoint("A", 1));
    store.wp_dirty = false;
    wp_move(0, waypoint("", 2).pos);
    EXPECT_EQ(wp_find_pos(waypoint("", 1).pos, 0), -1);
    EXPECT_EQ(wp_find_pos(waypoint("", 2).pos, 0), 0);
    EXPECT_TRUE(store.wp_dirty);
}

TEST_F(Move, AMovedReferenceTakesItsPositionAlong)
{
    insert(waypoint("A", 1));
    store.refp_name = "A";
    store.refp_pos = wp(0).pos;
    wp_move(0, {7, 8});
    EXPECT_EQ(store.refp_pos, (pos_rec{7, 8}));
}

TEST_F(TrackAppend, GrowsInStepsOfAThousand)
{
    for (int i = 0; i < 2002; ++i) {
        trackp_rec p;
        p.zeit = i;
        track_append(p);
        const std::size_t expected = i < 1 ? 1 : i < 1001 ? 1001 : i < 2001 ? 2001 : 3001;
        ASSERT_EQ(store.trk.size(), expected) << i;
        ASSERT_EQ(store.trk_top, i);
    }
    for (int i = 0; i < 2002; ++i)
        ASSERT_EQ(store.trk[static_cast<std::size_t>(i)].zeit, i);
    EXPECT_TRUE(store.trk_dirty);
}

TEST_F(TrackAppend, APointIsSmall)
{
    EXPECT_LE(sizeof(trackp_rec), 24U);
}

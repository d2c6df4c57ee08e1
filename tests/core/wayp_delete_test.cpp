#include "core/store.h"

#include "core/code_page.h"
#include "tests/core/store_fixture.h"

using namespace velkoro;

namespace {

class WaypDelete : public Store {
protected:
    WaypDelete()
    {
        hooks.marked_rows = [this] { return marked; };
        hooks.rows_compacted = [this](const std::vector<int>& n) { compacted.push_back(n); };
        hooks.map_changed = [this] { ++map_changes; };
        hooks.route_refresh = [this] { ++route_refreshes; };
    }
    void fill(const std::string& letters)
    {
        for (const char c : letters)
            insert(waypoint(std::string(1, c), c));
        store.wp_dirty = false;
    }
    std::vector<int> marked{};
    std::vector<std::vector<int>> compacted{};
    int map_changes = 0, route_refreshes = 0;
};

} // namespace

TEST_F(WaypDelete, DeletingTheFirstOfThreeMovesTheThirdToItsPlace)
{
    fill("ABC");
    add_route("R", "A$B$C$");
    wayp_delete(0);
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "B"}));
    EXPECT_EQ(compacted, (std::vector<std::vector<int>>{{-1, 1, 0}}));
    EXPECT_EQ(rou(0).wps, "B$C$");
    expect_routes_resolve();
    EXPECT_EQ(store.wp.size(), 2U);
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(WaypDelete, TheIndexesFollow)
{
    fill("ABC");
    wayp_delete(0);
    EXPECT_EQ(wp_find_key("A", "", -1, store.wp_top), -1);
    EXPECT_EQ(wp_find_key("C", "", -1, store.wp_top), 0);
    EXPECT_EQ(wp_find_pos(waypoint("", 'C').pos, store.wp_top), 0);
    EXPECT_EQ(wp_find_pos(waypoint("", 'A').pos, store.wp_top), -1);
}

TEST_F(WaypDelete, MarksTheStoreChangedAndTellsMapEditorAndRoutes)
{
    fill("AB");
    store.wp_cur = 1;
    wayp_delete(0);
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_EQ(store.wp_cur, -1);
    EXPECT_EQ(map_changes, 1);
    EXPECT_EQ(route_refreshes, 1);
}

TEST_F(WaypDelete, AsksWithTheNameOfTheWaypoint)
{
    fill("AB");
    user.answers = {answer::cancel};
    wayp_delete(1);
    ASSERT_EQ(user.numbers(), (std::vector<int>{2060}));
    EXPECT_EQ(user.messages[0].text, "2060 B # #");
    EXPECT_EQ(user.messages[0].buttons, buttons::ok_cancel);
    EXPECT_EQ(store.wp_top, 1);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_TRUE(compacted.empty());
}

TEST_F(WaypDelete, WithNothingMarkedThereIsAMessageUnlessSilent)
{
    fill("AB");
    wayp_delete(-1);
    EXPECT_EQ(user.numbers(), (std::vector<int>{2050}));
    user.messages.clear();
    wayp_delete(-2);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(store.wp_top, 1);
    EXPECT_FALSE(store.wp_dirty);
}

TEST_F(WaypDelete, NamesAllMarkedOnesInRowOrder)
{
    fill("ABC");
    marked = {2, 0};
    wayp_delete(-1);
    EXPECT_EQ(user.messages[0].text, "2060 C A # #");
    EXPECT_EQ(names(), (std::vector<std::string>{"B"}));
}

TEST_F(WaypDelete, CutsTheNamesAt140Characters)
{
    for (int i = 0; i < 60; ++i) {
        insert(waypoint("N" + std::to_string(100 + i), i));
        marked.push_back(i);
    }
    user.answers = {answer::cancel};
    wayp_delete(-1);
    std::string names;
    for (int i = 0; i < 60; ++i)
        names += (i > 0 ? " N" : "N") + std::to_string(100 + i);
    EXPECT_EQ(user.messages[0].text, "2060 " + names.substr(0, 140) + " ... # #");
}

TEST_F(WaypDelete, NamesOf140CharactersStayWhole)
{
    store.wp_name_max = 140;
    insert(waypoint(std::string(140, 'A'), 1));
    wayp_delete(0);
    EXPECT_EQ(user.messages[0].text, "2060 " + std::string(140, 'A') + " # #");
}

TEST_F(WaypDelete, AsksAgainWithTheRoutesThatHoldAVictim)
{
    fill("ABC");
    add_route("ONE", "A$B$");
    add_route("TWO", "C$");
    add_route("THREE", "C$A$");
    marked = {0};
    user.answers = {answer::ok, answer::cancel};
    wayp_delete(-1);
    ASSERT_EQ(user.numbers(), (std::vector<int>{2060, 2070}));
    EXPECT_EQ(user.messages[1].text, "2070 1, 3 # #");
    EXPECT_EQ(user.messages[1].buttons, buttons::ok_cancel);
    EXPECT_EQ(store.wp_top, 2);
    EXPECT_EQ(rou(0).wps, "A$B$");
}

TEST_F(WaypDelete, TheSilentFormAsksNothing)
{
    fill("ABC");
    add_route("ONE", "A$B$");
    marked = {0};
    wayp_delete(-2);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(rou(0).wps, "B$");
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(WaypDelete, AWaypointThatARouteHoldsTwiceTakesBothPositionsWithTheirTokens)
{
    fill("ABC");
    add_route("R", "A$B$A$C$");
    rou(0).speed = "1$2$3$4$";
    rou(0).korr = "a$b$c$d$";
    rou(0).anw = "p$q$r$s$";
    wayp_delete(0);
    EXPECT_EQ(rou(0).wps, "B$C$");
    EXPECT_EQ(rou(0).speed, "2$4$");
    EXPECT_EQ(rou(0).korr, "b$d$");
    EXPECT_EQ(rou(0).anw, "q$s$");
}

TEST_F(WaypDelete, ShorterAndLongerListsKeepEachEntryAtItsPoint)
{
    fill("ABC");
    add_route("R", "A$B$C$");
    rou(0).speed = "1$2$";
    rou(0).korr = "";
    rou(0).anw = "p$q$r$s$t$";
    wayp_delete(1);
    EXPECT_EQ(rou(0).wps, "A$C$");
    EXPECT_EQ(rou(0).speed, "1$");
    EXPECT_EQ(rou(0).korr, "");
    EXPECT_EQ(rou(0).anw, "p$r$s$t$");
}

TEST_F(WaypDelete, TheOnlyPointOfARouteLeavesItEmptyForTheNextCleanup)
{
    fill("AB");
    add_route("R", "A$");
    wayp_delete(0);
    EXPECT_EQ(store.rou_top, 0);
    EXPECT_EQ(rou(0).wps, "");
    route_cleanup();
    EXPECT_EQ(store.rou_top, -1);
}

TEST_F(WaypDelete, OnlyTheKeyCountsForRoutesAndNotTheName)
{
    insert(waypoint("A", 1, "@123"));
    insert(waypoint("A", 2));
    add_route("R", "@123A$A$");
    wayp_delete(0);
    EXPECT_EQ(rou(0).wps, "A$");
}

TEST_F(WaypDelete, CompactsInTheOrderOfTheList)
{
    fill("ABCDEF");
    hooks.list_order = [] { return std::vector<int>{5, 0, 4, 1, 3, 2}; };
    marked = {0, 2};
    wayp_delete(-2);
    EXPECT_EQ(names(), (std::vector<std::string>{"F", "B", "E", "D"}));
    EXPECT_EQ(compacted, (std::vector<std::vector<int>>{{-1, 1, -1, 3, 2, 0}}));
}

TEST_F(WaypDelete, RecordsWithoutARowAreCompactedToo)
{
    fill("ABCD");
    hooks.list_order = [] { return std::vector<int>{0, 1}; };
    marked = {0, 1};
    wayp_delete(-2);
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "D"}));
}

TEST_F(WaypDelete, DeletingAllLeavesAnEmptyStore)
{
    fill("ABC");
    marked = {0, 1, 2};
    wayp_delete(-2);
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_TRUE(store.wp.empty());
    EXPECT_EQ(insert(waypoint("A", 1)), 0);
}

TEST_F(WaypDelete, MarksOutsideTheStoreAndMarksTwiceDoNotCount)
{
    fill("ABC");
    marked = {1, 1, 7, -1};
    wayp_delete(-2);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "C"}));
    wayp_delete(5);
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(WaypDelete, ANewWaypointThatWasGivenUpGoesWithoutAQuestion)
{
    fill("A");
    wp_rename(insert(waypoint("B", 2)), "$", "");
    wayp_delete(1);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(names(), (std::vector<std::string>{"A"}));
}

TEST_F(WaypDelete, VictimsAreFoundAgainWhenTheStoreChangesDuringAQuestion)
{
    fill("ABCD");
    marked = {3};
    user.on_message = [this](const message_box&) {
        user.on_message = nullptr;
        marked = {0};
        wayp_delete(-2);
        ASSERT_EQ(names(), (std::vector<std::string>{"D", "B", "C"}));
    };
    marked = {3};
    wayp_delete(-1);
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "B"}));
}

TEST_F(WaypDelete, VictimsOfOneKeyThatMovedAreNotCountedTwice)
{
    open_batch();
    fill("AXX");
    close_batch();
    user.on_message = [this](const message_box&) {
        user.on_message = nullptr;
        marked = {0};
        wayp_delete(-2); // moves the second X to index 0
    };
    marked = {1, 2};
    wayp_delete(-1);
    EXPECT_EQ(store.wp.size(), static_cast<std::size_t>(store.wp_top + 1));
    for (const std::string& n : names())
        EXPECT_EQ(n, "X");
}

#include "core/route_lists.h"

#include "core/code_page.h"
#include "tests/core/store_fixture.h"

#include <stdexcept>

using namespace velkoro;

namespace {

class Routes : public Store {
protected:
    void fill(const std::string& letters)
    {
        for (const char c : letters)
            insert(waypoint(std::string(1, c), c));
        store.wp_dirty = false;
    }
};
class RouteAdd : public Routes {};
class RouteCleanup : public Routes {};
class RouteDelete : public Routes {};

} // namespace

TEST_F(Routes, AListHoldsWholeTokensOnly)
{
    EXPECT_TRUE(list_holds("A$B$", "A"));
    EXPECT_TRUE(list_holds("A$B$", "B"));
    EXPECT_TRUE(list_holds("AB$XB$B$", "B"));
    EXPECT_FALSE(list_holds("AB$BA$", "A"));
    EXPECT_FALSE(list_holds("", "A"));
    EXPECT_FALSE(list_holds("A$", ""));
    EXPECT_TRUE(list_holds("A$$", ""));
    EXPECT_TRUE(list_holds("A$B", "B")) << "the last token may lack its end";
}

TEST_F(Routes, ReplacingATokenLeavesAllOthers)
{
    EXPECT_EQ(list_replace("A$AB$A$$B$", "A", "@12 X"), "@12 X$AB$@12 X$$B$");
    EXPECT_EQ(list_replace("A$B", "B", "C"), "A$C$");
}

TEST_F(RouteAdd, AppendsARoute)
{
    fill("AB");
    EXPECT_EQ(add_route("ONE", "A$B$A$"), 0);
    EXPECT_EQ(store.rou_top, 0);
    EXPECT_EQ(rou(0).nam, "ONE             ");
    EXPECT_EQ(rou(0).wps, "A$B$A$");
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(RouteAdd, ARouteWithoutPointsIsNotKept)
{
    EXPECT_EQ(add_route("ONE", ""), -1);
    EXPECT_EQ(store.rou_top, -1);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_FALSE(store.wp_dirty);
}

TEST_F(RouteAdd, UnknownPointsAreDroppedFromAllFourLists)
{
    fill("AB");
    route_rec r{
        .nam = "ONE", .wps = "X$A$Y$B$Z$", .speed = "1$2$3$4$5$6$", .korr = "a$b$c$", .anw = ""};
    EXPECT_EQ(route_add(r), 0);
    EXPECT_EQ(rou(0).wps, "A$B$");
    EXPECT_EQ(rou(0).speed, "2$4$6$");
    EXPECT_EQ(rou(0).korr, "b$");
    EXPECT_EQ(rou(0).anw, "");
    ASSERT_EQ(user.numbers(), (std::vector<int>{1640}));
    EXPECT_EQ(user.messages[0].text, "1640 ONE X Y Z #");
}

TEST_F(RouteAdd, ARouteOfWhichNothingIsLeftIsNotAppendedButTold)
{
    fill("A");
    EXPECT_EQ(add_route("ONE", "X$Y$"), -1);
    EXPECT_EQ(store.rou_top, -1);
    EXPECT_FALSE(store.wp_dirty);
    ASSERT_EQ(user.numbers(), (std::vector<int>{1640}));
    EXPECT_EQ(user.messages[0].text, "1640 ONE X Y #");
}

TEST_F(RouteAdd, EmptyTokensAreNoPoints)
{
    fill("AB");
    route_rec r{.nam = "ONE", .wps = "A$ $B$$", .speed = "1$2$3$4$"};
    EXPECT_EQ(route_add(r), 0);
    EXPECT_EQ(rou(0).wps, "A$B$");
    EXPECT_EQ(rou(0).speed, "1$3$");
    EXPECT_EQ(add_route("TWO", "$$"), -1);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(RouteAdd, TokensAreTrimmedAndABlankAheadOfAnAtGoes)
{
    insert(waypoint("A", 1));
    insert(waypoint("B", 2, "@123"));
    EXPECT_EQ(add_route("ONE", " A $ @123B$  @123B  $A"), 0);
    EXPECT_EQ(rou(0).wps, "A$@123B$@123B$A$");
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(RouteAdd, ARouteCanHoldTwoWaypointsOfOneName)
{
    insert(waypoint("A", 1, "@123"));
    insert(waypoint("A", 2, "@124"));
    EXPECT_EQ(add_route("ONE", "@124A$@123A$A$"), 0);
    EXPECT_EQ(rou(0).wps, "@124A$@123A$");
    EXPECT_EQ(user.messages[0].text, "1640 ONE A #");
}

TEST_F(RouteAdd, TheColourDefaultsToTheIndexCountedRound)
{
    fill("A");
    for (int i = 0; i < 6; ++i)
        add_route("R", "A$");
    EXPECT_EQ(rou(0).farbe, 2);
    EXPECT_EQ(rou(1).farbe, 3);
    EXPECT_EQ(rou(2).farbe, 4);
    EXPECT_EQ(rou(3).farbe, 1);
    EXPECT_EQ(rou(4).farbe, 2);
    route_rec r{.wps = "A$", .farbe = 4};
    EXPECT_EQ(rou(route_add(r)).farbe, 4);
}

TEST_F(RouteAdd, TheNameIsCutAt16Characters)
{
    fill("A");
    add_route("A name of more than sixteen", "A$");
    EXPECT_EQ(rou(0).nam, "A name of more t");
}

TEST_F(RouteAdd, KeysOfTheBatchLeadToStoredKeys)
{
    open_batch();
    insert(waypoint("LONGNAME", 1, "@123"));
    EXPECT_EQ(add_route("R", "@123LONGNAME$ @123LONGNAME $"), 0);
    EXPECT_EQ(rou(0).wps, "@123LONGNA$@123LONGNA$");
    close_batch();
    EXPECT_EQ(add_route("R", "@123LONGNAME$"), -1) << "a closed batch has forgotten";
}

TEST_F(RouteAdd, AFullStoreThrowsAndKeepsWhatItHas)
{
    fill("A");
    for (int i = 0; i < wp_limit; ++i)
        ASSERT_EQ(add_route("R", "A$"), i);
    EXPECT_THROW(add_route("R", "A$"), std::overflow_error);
    EXPECT_EQ(store.rou_top, wp_limit - 1);
}

TEST_F(RouteCleanup, DropsRoutesWithoutPointsAndTrimsNames)
{
    fill("A");
    for (const char* n : {"ONE", "TWO", "THREE"})
        add_route(n, "A$");
    rou(1).wps.clear();
    rou(2).nam = "  THREE         ";
    route_cleanup();
    EXPECT_EQ(store.rou_top, 1);
    EXPECT_EQ(store.rou.size(), 2U);
    EXPECT_EQ(rou(0).nam, "ONE             ");
    EXPECT_EQ(rou(1).nam, "THREE           ");
}

TEST_F(RouteCleanup, TheRouteInTheEditorStaysTheSame)
{
    fill("A");
    for (const char* n : {"ONE", "TWO", "THREE", "FOUR"})
        add_route(n, "A$");
    rou(0).wps.clear();
    rou(3).wps.clear();
    store.rou_cur = 2;
    route_cleanup();
    EXPECT_EQ(store.rou_cur, 1);
    EXPECT_EQ(rou(store.rou_cur).nam, "THREE           ");
}

TEST_F(RouteCleanup, NothingToDropLeavesTheStoreUnchanged)
{
    fill("A");
    add_route("ONE", "A$");
    store.wp_dirty = false;
    route_cleanup();
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(store.rou_top, 0);
}

TEST_F(RouteDelete, TheNextRouteTakesThePlaceOfTheOneInTheEditor)
{
    fill("A");
    for (const char* n : {"ONE", "TWO", "THREE"})
        add_route(n, "A$");
    store.rou_cur = 1;
    route_delete(1);
    EXPECT_EQ(store.rou_cur, 1);
    EXPECT_EQ(rou(1).nam, "THREE           ");
    route_delete(1);
    EXPECT_EQ(store.rou_cur, 0);
    route_delete(0);
    EXPECT_EQ(store.rou_cur, -1);
    EXPECT_EQ(store.rou_top, -1);
}

TEST_F(RouteDelete, AnIndexOutsideTheStoreDoesNothing)
{
    fill("A");
    add_route("ONE", "A$");
    store.wp_dirty = false;
    route_delete(-1);
    route_delete(1);
    EXPECT_EQ(store.rou_top, 0);
    EXPECT_FALSE(store.wp_dirty);
}

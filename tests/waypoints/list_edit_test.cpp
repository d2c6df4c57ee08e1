#include "waypoints/list_edit.h"

#include "core/wayp_insert.h"
#include "tests/waypoints/list_fixture.h"

using namespace velkoro;

namespace {

class ListEdit : public ListTest {
protected:
    ListEdit() { list_edit_install(); }
    ~ListEdit() override
    {
        Form1.mark_g.click = Form1.neu_mitt.click = {};
        Form1.Waypl2.label_edited = {};
    }
    static const wayp_rec& stored(int index) { return store.wp[static_cast<std::size_t>(index)]; }
    static void type(int row, const std::string& name) { Form1.Waypl2.label_edited(row, name); }
};

} // namespace

// Renaming in place
// ----------------------------------------------------------------------------------------------

TEST_F(ListEdit, ANameIsEditedInItsRow)
{
    add_names({"A", "B"});
    store.wp_dirty = false;
    EXPECT_TRUE(list().edit_names);
    type(1, "  hütte! "_w);
    EXPECT_EQ(rows(), (lines{"A", "HUTTE-"}));
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_EQ(wp_find_key("HUTTE-", "", -1, store.wp_top), 1);
    EXPECT_EQ(wp_find_key("B", "", -1, store.wp_top), -1);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(ListEdit, ALongNameIsCut)
{
    add_names({"A"});
    type(0, "Wanderweg");
    EXPECT_EQ(rows(), (lines{"WANDER"}));
    store.wp_name_max = 10;
    store.wp_ext_chars = true;
    type(0, "am rand des wegs");
    EXPECT_EQ(rows(), (lines{"AM RAND DE"}));
}

TEST_F(ListEdit, ATakenNameIsCountedUp)
{
    add_names({"A", "B", "B1"});
    type(0, "b");
    EXPECT_EQ(rows(), (lines{"B2", "B", "B1"}));
    type(1, "b");
    EXPECT_EQ(rows(), (lines{"B2", "B", "B1"})) << "its own name is not taken";
}

TEST_F(ListEdit, ANameIsTakenWithItsNamespaceOnly)
{
    add({.nam = "A", .kom = "@001", .pos = {1 << 20, 0}});
    add({.nam = "B", .kom = "@002", .pos = {2 << 20, 0}});
    type(1, "a");
    EXPECT_EQ(rows(), (lines{"A", "A"}));
}

TEST_F(ListEdit, RoutesFollowANewNameAndAreToldOf)
{
    add_names({"A", "B"});
    route_add({.wps = "A$B$A$", .speed = "1$2$3$"});
    route_add({.wps = "B$"});
    route_add({.wps = "B$A$"});
    type(0, "Alm");
    EXPECT_EQ(store.rou[0].wps, "ALM$B$ALM$");
    EXPECT_EQ(store.rou[0].speed, "1$2$3$");
    EXPECT_EQ(store.rou[2].wps, "B$ALM$");
    ASSERT_EQ(user.numbers(), (std::vector<int>{4340}));
    EXPECT_EQ(user.messages[0].text, text(4340, "ALM", "1, 3"));
}

TEST_F(ListEdit, TheReferenceTakesItsNewName)
{
    add_names({"A"});
    store.refp_name = "A";
    store.refp_pos = stored(0).pos;
    type(0, "B");
    EXPECT_EQ(store.refp_name, "B");
}

TEST_F(ListEdit, AnEmptyNameBeepsAndChangesNothing)
{
    add_names({"A"});
    store.wp_dirty = false;
    type(0, "   ");
    type(0, "");
    EXPECT_EQ(user.beeps, 2);
    type(0, "a");
    type(7, "b");
    EXPECT_EQ(rows(), (lines{"A"}));
    EXPECT_FALSE(store.wp_dirty);
}

// Groups
// ----------------------------------------------------------------------------------------------

TEST_F(ListEdit, TheGroupOfANameIsItsStem)
{
    add_names({"CAMP12", "WAY1", "CAMP", "CAMP3", "WAY2", "CAMPER"});
    list().current = 0;
    Form1.mark_g.click();
    EXPECT_EQ(rows(), (lines{"*CAMP12", "WAY1", "*CAMP", "*CAMP3", "WAY2", "CAMPER"}));
    EXPECT_EQ(Form1.anz.caption, text(7651, 3, 6));
    list().current = 4;
    Form1.mark_g.click();
    EXPECT_EQ(hooks.marked_rows().size(), 5U) << "groups add up";
    EXPECT_EQ(user.beeps, 0);
}

TEST_F(ListEdit, NamesOfDigitsAreAGroup)
{
    add_names({"001", "A1", "002"});
    EXPECT_EQ(group_rows(0), (std::vector<int>{0, 2}));
}

TEST_F(ListEdit, TheGroupOfANamespaceIsAllThatBearIt)
{
    add({.nam = "A1", .kom = "@ALP first", .pos = {1 << 20, 0}});
    add({.nam = "X", .kom = "@ALP second", .pos = {2 << 20, 0}});
    add({.nam = "A2", .kom = "", .pos = {3 << 20, 0}});
    add({.nam = "A3", .kom = "@JUR", .pos = {4 << 20, 0}});
    EXPECT_EQ(group_rows(0), (std::vector<int>{0, 1}));
    EXPECT_EQ(group_rows(1), (std::vector<int>{0, 1}));
    EXPECT_TRUE(group_rows(2).empty());
    EXPECT_TRUE(group_rows(3).empty());
}

TEST_F(ListEdit, WithoutAGroupThereIsABeep)
{
    add_names({"A", "B"});
    list().current = 1;
    Form1.mark_g.click();
    list().current = -1;
    Form1.mark_g.click();
    EXPECT_EQ(user.beeps, 2);
    EXPECT_EQ(rows(), (lines{"A", "B"}));
}

// Mean
// ----------------------------------------------------------------------------------------------

TEST_F(ListEdit, TheMeanOfTheMarkedOnesBecomesAWaypoint)
{
    add({.nam = "A", .pos = {1 << 20, 100}, .symb = 7, .symbmode = 1, .alt = 100});
    add({.nam = "Z", .pos = {3 << 20, 301}, .alt = alt_unknown});
    add({.nam = "N", .pos = {1 << 28, 0}, .alt = 900});
    add({.nam = "B", .pos = {5 << 20, 200}, .alt = 301});
    list().current = 2;
    store.wp_dirty = false;
    for (const int row : {0, 1, 3})
        mark(row);
    EXPECT_TRUE(Form1.neu_mitt.enabled);
    Form1.neu_mitt.click();
    ASSERT_EQ(store.wp_top, 4);
    const wayp_rec& mean = stored(4);
    EXPECT_EQ(mean.nam, "MEAN");
    EXPECT_EQ(mean.kom, text(7755, 3));
    EXPECT_EQ(mean.pos, (pos_rec{3 << 20, 200}));
    EXPECT_EQ(mean.alt, 200);
    EXPECT_EQ(mean.symb, 7);
    EXPECT_EQ(mean.symbmode, 1);
    EXPECT_EQ(mean.dat, 13286 * 86400) << "17 May 2026";
    EXPECT_EQ(rows(), (lines{"*A", "*B", "MEAN", "N", "*Z"}));
    EXPECT_EQ(list().current, 2);
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_FALSE(batch.open);
}

TEST_F(ListEdit, TheMeanOfFixesOfOnePlaceIsAWaypointOfItsOwn)
{
    add({.nam = "MEAN", .pos = {1000, 1000}});
    add({.nam = "B", .pos = {1 << 20, 1000}});
    wp_move(1, {1000, 1002});
    EXPECT_EQ(append_mean({0, 1}), 2);
    EXPECT_EQ(stored(2).nam, "MEAN1");
    EXPECT_EQ(stored(2).pos, (pos_rec{1000, 1001}));
    EXPECT_EQ(stored(2).alt, alt_unknown);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(ListEdit, TheMeanOfPlacesAtTheDateLineLiesBetweenThem)
{
    add({.nam = "A", .pos = {0, 2147483547}});
    add({.nam = "B", .pos = {0, -2147483149}});
    append_mean({0, 1});
    EXPECT_EQ(stored(2).pos.lon, -2147483449);
}

TEST_F(ListEdit, OneWaypointHasNoMean)
{
    add_names({"A"});
    mark(0);
    EXPECT_FALSE(Form1.neu_mitt.enabled);
    Form1.neu_mitt.click();
    EXPECT_EQ(user.beeps, 1);
    EXPECT_EQ(store.wp_top, 0);
}

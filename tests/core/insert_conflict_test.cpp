#include "core/wayp_insert.h"

#include "core/code_page.h"
#include "core/trap.h"
#include "tests/core/insert_fixture.h"

#include <array>

using namespace velkoro;

namespace {

class InsertConflict : public WaypInsert {};
class Reconcile : public WaypInsert {};
class ConflictMemory : public WaypInsert {};

} // namespace

// Taking over
// ---------------------------------------------------------------------------------------------------------------

TEST_F(InsertConflict, TakingTheNewOneReplacesItsData)
{
    wayp_rec old = waypoint("A", 1, "hut");
    old.alt = 100;
    old.prox = 5;
    old.symb = 3;
    old.symbmode = 1;
    old.dat = 10;
    old.mapx = 55;
    insert(old);
    wayp_rec w = waypoint("A", 2, "house");
    w.symb = 4;
    w.symbmode = 2;
    w.dat = 5;
    open_batch();
    EXPECT_EQ(insert(w), 0);
    EXPECT_EQ(wp(0).kom, "house");
    EXPECT_EQ(wp(0).pos, w.pos);
    EXPECT_EQ(wp(0).dat, 5);
    EXPECT_EQ(wp(0).prox, 0);
    EXPECT_EQ(wp(0).symb, 4);
    EXPECT_EQ(wp(0).symbmode, 2);
    EXPECT_EQ(wp(0).alt, 100) << "an unknown altitude keeps the old one";
    EXPECT_EQ(wp(0).mapx, 0);
    EXPECT_EQ(close_batch(), "2000 0 # #\n2010 1 # #\n2020 0 # #\n2030 0 # #");
}

TEST_F(InsertConflict, WithoutSymbolsInUseTheOldSymbolStays)
{
    hooks.symbols_in_use = [] { return false; };
    wayp_rec old = waypoint("A", 1, "hut");
    old.symb = 3;
    old.symbmode = 1;
    insert(old);
    wayp_rec w = waypoint("A", 1, "house");
    w.symb = 4;
    insert(w);
    EXPECT_EQ(wp(0).symb, 3);
    EXPECT_EQ(wp(0).symbmode, 1);
}

TEST_F(InsertConflict, ACommentEqualToTheStartOfTheOldOneKeepsTheOldOne)
{
    wayp_rec w = waypoint("A", 1, "Hütte am See"_w);
    w.alt = 100;
    insert(w);
    w.kom = "HUTTE";
    w.alt = 200;
    wayp_insert(w, 0);
    EXPECT_EQ(wp(0).kom, "Hütte am See"_w);
    EXPECT_EQ(wp(0).alt, 200);
    EXPECT_EQ(w.kom, wp(0).kom);
}

TEST_F(InsertConflict, ATakeOverByPositionRewritesRoutesAndReportsThemAtTheEnd)
{
    for (const char* n : {"A", "B", "C"})
        insert(waypoint(n, n[0]));
    add_route("ONE", "A$B$A$");
    add_route("TWO", "C$");
    add_route("THREE", "B$C$A$");
    open_batch();
    insert(waypoint("X", 'A'));
    EXPECT_EQ(rou(0).wps, "X$B$X$");
    EXPECT_EQ(rou(2).wps, "B$C$X$");
    EXPECT_EQ(user.count(2040), 0);
    insert(waypoint("Y", 'B'));
    EXPECT_EQ(close_batch(), "2000 0 # #\n2010 0 # #\n2020 2 # #\n2030 0 # #");
    ASSERT_EQ(user.numbers(), (std::vector<int>{2040}));
    EXPECT_EQ(user.messages[0].text, "2040 1, 3 # #");
    EXPECT_EQ(user.messages[0].icon, icon::information);
    expect_routes_resolve();
}

TEST_F(InsertConflict, TheRecordTakenOverIsFoundUnderItsNewKeyAndPosition)
{
    insert(waypoint("A", 1));
    wayp_rec w = waypoint("B", 1);
    w.pos.lat += 1;
    insert(w);
    EXPECT_EQ(wp_find_key("A", "", -1, store.wp_top), -1);
    EXPECT_EQ(wp_find_key("B", "", -1, store.wp_top), 0);
    insert(waypoint("B", 5, "moved"));
    EXPECT_EQ(wp_find_pos(waypoint("", 1).pos, store.wp_top), -1);
    EXPECT_EQ(wp_find_pos(waypoint("", 5).pos, store.wp_top), 0);
}

TEST_F(InsertConflict, AKeptCommentThatMeetsAThirdKeyGetsAFreeName)
{
    insert(waypoint("A", 1, "@123 hut"));
    insert(waypoint("B", 2, "@123"));
    wayp_rec w = waypoint("B", 1);
    wayp_insert(w, 0);
    EXPECT_EQ(wp(0).kom, "@123 hut");
    EXPECT_EQ(wp(0).nam, "B1");
    EXPECT_EQ(w.nam, "B1");
}

TEST_F(InsertConflict, AMatchByKeyIsNotRenamedBecauseTheStoreHoldsItsKeyTwice)
{
    open_batch();
    insert(waypoint("A", 1));
    insert(waypoint("A", 2));
    close_batch();
    insert(waypoint("A", 1, "new"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "A"}));
    EXPECT_EQ(wp(0).kom, "new");
}

// Keeping both, keeping the old
// ---------------------------------------------------------------------------------------------------------------

TEST_F(InsertConflict, KeepingBothRenamesAndAppendsTheNewOne)
{
    insert(waypoint("A", 1));
    given = conflict_answer::keep_both;
    open_batch();
    EXPECT_EQ(insert(waypoint("A", 2, "new")), 1);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "A1"}));
    EXPECT_EQ(close_batch(), "");
}

TEST_F(InsertConflict, KeepingBothTakesTheUsersNameAndComment)
{
    insert(waypoint("A", 1));
    hooks.conflict_ask = [](conflict_question& q) {
        q.incoming->nam = " my name";
        q.incoming->kom = "mine";
        return conflict_answer::keep_both;
    };
    insert(waypoint("A", 2, "new"));
    EXPECT_EQ(wp(1).nam, "MY-NAM");
    EXPECT_EQ(wp(1).kom, "e<mine");
}

TEST_F(InsertConflict, AfterKeepingBothLaterRecordsCompareWithTheWholeStore)
{
    insert(waypoint("A", 1));
    given = conflict_answer::keep_both;
    open_batch();
    insert(waypoint("B", 2));
    insert(waypoint("A", 3, "new"));
    EXPECT_EQ(asked, 1);
    insert(waypoint("B", 4, "new"));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B", "A1", "B1"}));
}

TEST_F(InsertConflict, AConflictByPositionKeepsTheFreeNameWhenBothAreKept)
{
    insert(waypoint("A", 1));
    given = conflict_answer::keep_both;
    insert(waypoint("B", 1));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
}

TEST_F(InsertConflict, KeepingTheOldOneDropsTheNewOneAndGivesItsNameAndComment)
{
    insert(waypoint("A", 1, "hut"));
    given = conflict_answer::keep_old;
    wayp_rec w = waypoint("B", 1, "house");
    EXPECT_EQ(wayp_insert(w, 0), 0);
    EXPECT_EQ(w.nam, "A");
    EXPECT_EQ(w.kom, "hut");
    EXPECT_EQ(store.wp_top, 0);
}

TEST_F(InsertConflict, CancelEndsTheBatchAndKeepsTheRecordsTakenSoFar)
{
    insert(waypoint("A", 1));
    open_batch();
    insert(waypoint("B", 2));
    given = conflict_answer::cancel_batch;
    EXPECT_THROW(insert(waypoint("A", 1, "new")), batch_cancelled);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(wp(0).kom, "");
}

TEST_F(InsertConflict, AnOldRecordThatMovedWhileTheQuestionStoodIsFoundAgain)
{
    for (const char* n : {"A", "B", "C"})
        insert(waypoint(n, n[0]));
    hooks.marked_rows = [] { return std::vector<int>{0}; };
    hooks.conflict_ask = [](conflict_question&) {
        wayp_delete(-2);
        return conflict_answer::take_new;
    };
    EXPECT_EQ(insert(waypoint("C", 'C', "new")), 0);
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "B"}));
    EXPECT_EQ(wp(0).kom, "new");
}

TEST_F(InsertConflict, AnOldRecordThatWentWhileTheQuestionStoodLeavesRoomForTheNewOne)
{
    insert(waypoint("A", 1));
    hooks.marked_rows = [] { return std::vector<int>{0}; };
    hooks.conflict_ask = [](conflict_question&) {
        wayp_delete(-2);
        return conflict_answer::take_new;
    };
    EXPECT_EQ(insert(waypoint("A", 1, "new")), 0);
    EXPECT_EQ(wp(0).kom, "new");
}

// The memory of answers
// ---------------------------------------------------------------------------------------------------------------

TEST_F(ConflictMemory, ARememberedAnswerIsGivenWithoutAQuestion)
{
    for (const conflict_answer a :
         {conflict_answer::keep_old, conflict_answer::take_new, conflict_answer::keep_both}) {
        store_reset();
        asked = 0;
        given = a;
        remember = true;
        insert(waypoint("A", 1));
        insert(waypoint("B", 2));
        open_batch();
        insert(waypoint("A", 1, "new"));
        insert(waypoint("B", 2, "new"));
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(batch.memory[0], 3 + static_cast<int>(a));
        EXPECT_EQ(wp(0).kom == "new", a == conflict_answer::take_new);
        EXPECT_EQ(wp(1).kom == "new", a == conflict_answer::take_new);
        EXPECT_EQ(store.wp_top, a == conflict_answer::keep_both ? 3 : 1);
        close_batch();
    }
}

TEST_F(ConflictMemory, EachKindHasItsOwn)
{
    insert(waypoint("A", 1));
    insert(waypoint("B", 2));
    remember = true;
    open_batch();
    insert(waypoint("A", 1, "new"));
    insert(waypoint("X", 2));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(batch.memory, (std::array<int, 2>{4, 4}));
}

TEST_F(ConflictMemory, IsClearedWhenTheBatchCloses)
{
    insert(waypoint("A", 1));
    remember = true;
    open_batch();
    insert(waypoint("A", 1, "one"));
    close_batch();
    open_batch();
    insert(waypoint("A", 1, "two"));
    EXPECT_EQ(asked, 2);
}

TEST_F(ConflictMemory, FromSixUpOnlyAGreaterDistanceAsks)
{
    for (int m = 6; m <= 8; ++m) {
        store_reset();
        asked = 0;
        insert(waypoint("A", 1));
        insert(waypoint("B", 2));
        open_batch();
        batch.memory[0] = m;
        distance = 0.999;
        insert(waypoint("A", 1, "new"));
        EXPECT_EQ(asked, 0);
        EXPECT_EQ(wp(0).kom == "new", m == 7);
        EXPECT_EQ(store.wp_top, m == 8 ? 2 : 1);
        distance = 1;
        given = conflict_answer::keep_old;
        insert(waypoint("B", 2, "new"));
        EXPECT_EQ(asked, 1);
        close_batch();
    }
}

TEST_F(ConflictMemory, BelowThreeEveryConflictAsks)
{
    for (int m = 0; m <= 2; ++m) {
        batch.memory[0] = m;
        insert(waypoint("A", 1, std::to_string(m)), -1);
    }
    EXPECT_EQ(asked, 2);
}

// Reconciling
// ---------------------------------------------------------------------------------------------------------------

TEST_F(Reconcile, RecordsWithoutAMatchAreDroppedAndCounted)
{
    insert(waypoint("A", 1));
    store.wp_dirty = false;
    open_batch(batch_reconcile);
    EXPECT_EQ(insert(waypoint("B", 2)), -1);
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(close_batch(), "2000 0 # #\n2010 0 # #\n2020 0 # #\n2030 1 # #");
}

TEST_F(Reconcile, ANewerNearRecordIsTakenWithoutAQuestion)
{
    insert(waypoint("A", 1));
    open_batch(batch_reconcile);
    distance = 10;
    given = conflict_answer::keep_old;
    insert(waypoint("A", 1, "new"));
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(wp(0).kom, "new");
}

TEST_F(Reconcile, AFarOrOlderRecordIsAskedAbout)
{
    wayp_rec old = waypoint("A", 1);
    old.dat = 10;
    insert(old);
    given = conflict_answer::keep_old;
    open_batch(batch_reconcile);
    wayp_rec w = waypoint("A", 1, "new");
    w.dat = 10;
    distance = 10.5;
    insert(w);
    EXPECT_EQ(asked, 1);
    distance = 0;
    w.dat = 9;
    insert(w);
    EXPECT_EQ(asked, 2);
}

TEST_F(Reconcile, AnAnswerThatWasRememberedHoldsForFarRecords)
{
    insert(waypoint("A", 1));
    given = conflict_answer::keep_old;
    remember = true;
    distance = 11;
    open_batch(batch_reconcile);
    insert(waypoint("A", 1, "new"));
    insert(waypoint("A", 1, "newer"));
    EXPECT_EQ(asked, 1);
    distance = 1;
    insert(waypoint("A", 1, "near"));
    EXPECT_EQ(wp(0).kom, "near");
}

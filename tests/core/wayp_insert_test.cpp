#include "core/wayp_insert.h"

#include "core/code_page.h"
#include "core/trap.h"
#include "tests/core/insert_fixture.h"

#include <stdexcept>

using namespace velkoro;

// Normalising
// ---------------------------------------------------------------------------------------------------------------

TEST_F(WaypInsert, TheFirstRecordOfAnEmptyStoreHasIndexZero)
{
    EXPECT_EQ(insert(waypoint("A", 1)), 0);
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_EQ(store.wp.size(), 1U);
    EXPECT_TRUE(store.wp_dirty);
}

TEST_F(WaypInsert, TheAltitudeThatMeansUnknownElsewhereBecomesOurs)
{
    wayp_rec w = waypoint("A", 1);
    w.alt = 32767;
    insert(w);
    EXPECT_EQ(wp(0).alt, alt_unknown);
}

TEST_F(WaypInsert, ANameOfSevenLosesTheLastCharacterToTheFrontOfTheComment)
{
    insert(waypoint("ABCDEFG", 1, "hut"));
    EXPECT_EQ(wp(0).nam, "ABCDEF");
    EXPECT_EQ(wp(0).kom, "G<hut");
    EXPECT_EQ(user.numbers(), (std::vector<int>{2035}));
    EXPECT_EQ(user.messages[0].buttons, buttons::yes_no);
    EXPECT_EQ(user.messages[0].text, "2035 6 # # 2760 # # #");
}

TEST_F(WaypInsert, TheTailOfANameStandsBehindTheCommentsPartOfTheKey)
{
    insert(waypoint("ABCDEFGH", 1, "@123hut"));
    EXPECT_EQ(wp(0).kom, "@123GH<hut");
    EXPECT_EQ(wp_key(0), "@123ABCDEF");
}

TEST_F(WaypInsert, ABlankAtTheCutIsTrimmedWithoutAWarningOfItsOwn)
{
    insert(waypoint("ABCDE FG", 1));
    EXPECT_EQ(wp(0).nam, "ABCDE");
    EXPECT_EQ(user.count(2038), 0);
}

TEST_F(WaypInsert, LongNamesAreWarnedAboutOnceABatch)
{
    open_batch();
    insert(waypoint("ABCDEFG", 1));
    insert(waypoint("BBCDEFG", 2));
    EXPECT_EQ(user.count(2035), 1);
    close_batch();
    open_batch();
    insert(waypoint("CBCDEFG", 3));
    EXPECT_EQ(user.count(2035), 2);
}

TEST_F(WaypInsert, NoToTheWarningEndsTheBatchWithWhatItHas)
{
    open_batch();
    insert(waypoint("A", 1));
    user.answers = {answer::no};
    EXPECT_THROW(insert(waypoint("ABCDEFG", 2)), batch_cancelled);
    EXPECT_EQ(names(), (std::vector<std::string>{"A"}));
    EXPECT_EQ(close_batch(batch_close_all), "2000 1 # #\n2010 0 # #\n2020 0 # #\n2030 0 # #");
}

TEST_F(WaypInsert, ACancelledBatchThatNobodyClosedLeavesNothingToTheNext)
{
    open_batch();
    insert(waypoint("A", 1));
    user.answers = {answer::no};
    EXPECT_THROW(insert(waypoint("ABCDEFG", 2)), batch_cancelled);
    open_batch();
    insert(waypoint("B", 2));
    EXPECT_EQ(close_batch(batch_close_all), "2000 1 # #\n2010 0 # #\n2020 0 # #\n2030 0 # #");
}

TEST_F(WaypInsert, ReplacedCharactersAreWarnedAboutOnceABatch)
{
    open_batch();
    insert(waypoint("a_b", 1));
    insert(waypoint("c_d", 2));
    EXPECT_EQ(names(), (std::vector<std::string>{"A-B", "C-D"}));
    EXPECT_EQ(user.numbers(), (std::vector<int>{2038}));
}

TEST_F(WaypInsert, BlanksAroundANameGoWithoutAWarning)
{
    insert(waypoint("  AB  ", 1));
    EXPECT_EQ(wp(0).nam, "AB");
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(WaypInsert, ARecordWithoutANameGetsOne)
{
    insert(waypoint("  ", 1));
    EXPECT_EQ(wp(0).nam, "-");
}

TEST_F(WaypInsert, TheRecordComesBackAsTheStoreHoldsIt)
{
    wayp_rec w = waypoint("abcdefg", 1, "x");
    wayp_insert(w, 0);
    EXPECT_EQ(w, wp(0));
}

TEST_F(WaypInsert, AFullStoreThrowsAndKeepsWhatItHas)
{
    open_batch();
    for (int i = 0; i < wp_limit; ++i)
        ASSERT_EQ(insert(waypoint("A", i)), i);
    store.wp_dirty = false;
    EXPECT_THROW(insert(waypoint("B", wp_limit)), std::overflow_error);
    EXPECT_EQ(store.wp_top, wp_limit - 1);
    EXPECT_EQ(store.wp.size(), static_cast<std::size_t>(wp_limit));
    EXPECT_FALSE(store.wp_dirty);
}

// Finding the stored record
// ---------------------------------------------------------------------------------------------------------------

TEST_F(WaypInsert, TwoOfOneNameWithDifferentNamespacesAreBothKept)
{
    insert(waypoint("A", 1, "@123"), -1);
    insert(waypoint("A", 2, "@124"), -1);
    insert(waypoint("A", 3), -1);
    EXPECT_EQ(store.wp_top, 2);
    EXPECT_EQ(asked, 0);
    add_route("R", "@123A$A$@124A$");
    EXPECT_EQ(rou(0).wps, "@123A$A$@124A$");
}

TEST_F(WaypInsert, PositionsEqualButForTheirTenLowestBitsConflict)
{
    wayp_rec a = waypoint("A", 1);
    a.pos = {1024, -1024};
    wayp_rec b = waypoint("B", 1);
    b.pos = {2047, -1};
    insert(a);
    insert(b);
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(last_question.by_position);
    EXPECT_EQ(names(), (std::vector<std::string>{"B"}));
}

TEST_F(WaypInsert, PositionsThatDifferAboveTheTenLowestBitsDoNotConflict)
{
    wayp_rec a = waypoint("A", 1);
    a.pos = {1024, 0};
    wayp_rec b = waypoint("B", 1);
    b.pos = {2048, 0};
    wayp_rec c = waypoint("C", 1);
    c.pos = {1024, -1};
    for (const wayp_rec& w : {a, b, c})
        insert(w);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(store.wp_top, 2);
}

TEST_F(WaypInsert, AMatchByKeyComesBeforeAMatchByPosition)
{
    insert(waypoint("A", 1));
    insert(waypoint("B", 2));
    wayp_rec w = waypoint("B", 1, "new");
    wayp_insert(w, 0);
    EXPECT_FALSE(last_question.by_position);
    EXPECT_EQ(last_question.old_index, 1);
    EXPECT_EQ(wp(1).kom, "new");
}

TEST_F(WaypInsert, RecordsOfOneBatchAreNotComparedWithEachOther)
{
    open_batch();
    insert(waypoint("A", 1, "one"));
    insert(waypoint("A", 1, "two"));
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(WaypInsert, ModesMinusOneAndMinusThreeCompareWithTheWholeStore)
{
    for (const int mode : {-1, -3}) {
        store_reset();
        asked = 0;
        open_batch();
        insert(waypoint("A", 1, "one"), mode);
        insert(waypoint("A", 2, "two"), mode);
        EXPECT_EQ(asked, 1) << mode;
        EXPECT_EQ(store.wp_top, 0) << mode;
        close_batch();
    }
}

TEST_F(WaypInsert, ModesBelowMinusOneMarkTheRow)
{
    insert(waypoint("A", 1), 0);
    insert(waypoint("B", 2), -1);
    insert(waypoint("C", 3), -2);
    insert(waypoint("D", 4), -3);
    insert(waypoint("A", 1, "new"), -3);
    EXPECT_EQ(added, (std::vector<row_event>{{0, false}, {1, false}, {2, true}, {3, true}}));
    EXPECT_EQ(changed, (std::vector<row_event>{{0, true}}));
}

TEST_F(WaypInsert, WithoutAnOpenBatchTheWholeStoreIsCompared)
{
    insert(waypoint("A", 1, "one"), 0);
    insert(waypoint("A", 1, "two"), 0);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(store.wp_top, 0);
}

TEST_F(WaypInsert, TheReferenceIsAdoptedWhenAWaypointOfItsNameArrives)
{
    store.refp_name = "A";
    insert(waypoint("A", 7));
    EXPECT_EQ(store.refp_pos, waypoint("A", 7).pos);
}

TEST_F(WaypInsert, AReferenceThatIsTakenOverTakesItsNameAndPositionAlong)
{
    insert(waypoint("A", 7));
    store.refp_name = "A";
    store.refp_pos = wp(0).pos;
    wayp_rec w = waypoint("B", 7);
    ++w.pos.lat;
    insert(w);
    EXPECT_EQ(store.refp_name, "B");
    EXPECT_EQ(store.refp_pos, w.pos);
}

// Unchanged records
// ---------------------------------------------------------------------------------------------------------------

TEST_F(WaypInsert, TheSameRecordIsUnchanged)
{
    wayp_rec w = waypoint("A", 1, "hut");
    w.alt = 100;
    w.prox = 5;
    w.symb = 3;
    insert(w);
    store.wp_dirty = false;
    open_batch();
    insert(w);
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(close_batch(), "2000 0 # #\n2010 0 # #\n2020 0 # #\n2030 1 # #");
}

TEST_F(WaypInsert, ACommentThatAReceiverCutOrCapitalisedIsTheSame)
{
    insert(waypoint("A", 1, "Hütte am See"_w));
    for (const char* kom : {"HUTTE AM SEE", "HUTTE", "H", ""})
        insert(waypoint("A", 1, kom));
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(wp(0).kom, "Hütte am See"_w);
    insert(waypoint("A", 1, "HUTTE AM SEE."));
    EXPECT_EQ(asked, 1);
}

TEST_F(WaypInsert, EachFieldThatDiffersMakesAConflict)
{
    wayp_rec old = waypoint("A", 1, "hut");
    old.alt = 100;
    old.prox = 5;
    old.symb = 3;
    insert(old);
    given = conflict_answer::keep_old;
    const auto conflicts = [&](auto change) {
        wayp_rec w = old;
        change(w);
        asked = 0;
        insert(w);
        return asked == 1;
    };
    EXPECT_TRUE(conflicts([](wayp_rec& w) { w.kom = "house"; }));
    EXPECT_TRUE(conflicts([](wayp_rec& w) { w.alt = 101; }));
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.alt = alt_unknown; }));
    EXPECT_TRUE(conflicts([](wayp_rec& w) { w.prox = 6; }));
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.prox = 0; }));
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.prox = -6; }));
    EXPECT_TRUE(conflicts([](wayp_rec& w) { w.symb = 4; }));
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.symb = 256 + 3; }));
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.symbmode = 2; }));
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.dat = 99; }));
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.pos = {5, 5}; }));
    EXPECT_TRUE(conflicts([](wayp_rec& w) { w.nam = "B"; }));
    hooks.symbols_in_use = [] { return false; };
    EXPECT_FALSE(conflicts([](wayp_rec& w) { w.symb = 4; }));
}

TEST_F(WaypInsert, AProximityThatTheOldRecordLacksIsTakenOverInSilence)
{
    insert(waypoint("A", 1));
    store.wp_dirty = false;
    wayp_rec w = waypoint("A", 1);
    w.prox = 7;
    open_batch();
    insert(w);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(wp(0).prox, 7);
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_EQ(close_batch(), "2000 0 # #\n2010 0 # #\n2020 0 # #\n2030 1 # #");
}

TEST_F(WaypInsert, AProximityWithItsAlarmOffIsNotLacking)
{
    wayp_rec w = waypoint("A", 1);
    w.prox = -7;
    insert(w);
    w.prox = 9;
    given = conflict_answer::keep_old;
    insert(w);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(wp(0).prox, -7);
}

TEST_F(WaypInsert, AKeptOutRecordThatLiesElsewhereIsNamedInTheReport)
{
    insert(waypoint("A", 1));
    insert(waypoint("B", 2));
    insert(waypoint("C", 3));
    open_batch();
    insert(waypoint("A", 9));
    insert(waypoint("B", 2));
    given = conflict_answer::keep_old;
    insert(waypoint("C", 8, "new"));
    EXPECT_EQ(close_batch(), "2000 0 # #\n2010 0 # #\n2020 0 # #\n2030 3 # #\n2031 2 A C #");
    EXPECT_EQ(wp(0).pos, waypoint("A", 1).pos);
}

// Reports
// ---------------------------------------------------------------------------------------------------------------

TEST_F(WaypInsert, ABatchWithNothingToTellHasNoReport)
{
    open_batch();
    EXPECT_EQ(close_batch(), "");
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(WaypInsert, OnlyNewRecordsAreReportedInModeThreeAlone)
{
    for (const int mode : {batch_close, batch_close_changes, batch_close_all}) {
        store_reset();
        open_batch();
        insert(waypoint("A", 1));
        insert(waypoint("B", 2));
        EXPECT_EQ(close_batch(mode),
                  mode == batch_close_all ? "2000 2 # #\n2010 0 # #\n2020 0 # #\n2030 0 # #" : "");
    }
}

TEST_F(WaypInsert, ModeTwoLeavesTheUnchangedOut)
{
    insert(waypoint("A", 1));
    open_batch();
    insert(waypoint("A", 1));
    insert(waypoint("B", 2));
    EXPECT_EQ(close_batch(batch_close_changes), "");
    open_batch();
    insert(waypoint("A", 1));
    insert(waypoint("B", 2, "new"));
    EXPECT_EQ(close_batch(batch_close_changes), "2000 0 # #\n2010 1 # #\n2020 0 # #\n2030 0 # #");
}

TEST_F(WaypInsert, TheCountsOfABatchBelongToItAlone)
{
    open_batch();
    insert(waypoint("A", 1));
    close_batch();
    open_batch();
    insert(waypoint("A", 1));
    EXPECT_EQ(close_batch(), "2000 0 # #\n2010 0 # #\n2020 0 # #\n2030 1 # #");
}

TEST_F(WaypInsert, ABatchOpenedWithinABatchKeepsItsCountsAndKeysAndWidensTheRange)
{
    open_batch();
    insert(waypoint("ABCDEFG", 1));
    insert(waypoint("B", 2));
    open_batch(batch_reconcile);
    insert(waypoint("B", 2, "new"));
    EXPECT_EQ(wp(1).kom, "new");
    EXPECT_EQ(batch_key("ABCDEFG"), "ABCDEF");
    EXPECT_EQ(close_batch(), "2000 2 # #\n2010 1 # #\n2020 0 # #\n2030 0 # #");
    EXPECT_EQ(batch_key("ABCDEFG"), "ABCDEFG");
}

TEST_F(WaypInsert, ALongListOfRecordsThatLieElsewhereIsCut)
{
    for (int i = 0; i < 60; ++i)
        insert(waypoint("N" + std::to_string(100 + i), i));
    open_batch();
    for (int i = 0; i < 60; ++i)
        insert(waypoint("N" + std::to_string(100 + i), 100 + i));
    const std::string report = close_batch();
    const std::string line = report.substr(report.find("2031"));
    EXPECT_EQ(line.substr(0, 18), "2031 60 N100 N101 ");
    EXPECT_NE(line.find(" ... #"), line.npos);
    EXPECT_EQ(line.size(), std::string("2031 60 ").size() + 140 + std::string(" ... #").size());
}

// Keys for the routes of the same source
// ---------------------------------------------------------------------------------------------------------------

TEST_F(WaypInsert, EveryRecordWhoseKeyChangedIsFoundByTheRoutes)
{
    insert(waypoint("OLD", 1));
    insert(waypoint("C", 3));
    open_batch();
    insert(waypoint("LONGNAME", 10)); // cut
    insert(waypoint("a_b", 11));      // cleaned
    given = conflict_answer::keep_both;
    insert(waypoint("C", 12, "other")); // renamed
    given = conflict_answer::keep_old;
    insert(waypoint("X", 1)); // kept old
    insert(waypoint("SAME", 14));
    EXPECT_EQ(add_route("R", "LONGNAME$a_b$C$X$SAME$"), 0);
    EXPECT_EQ(rou(0).wps, "LONGNA$A-B$C1$OLD$SAME$");
    EXPECT_EQ(user.count(1640), 0);
}

TEST_F(WaypInsert, AnUnchangedRecordInAnotherNamespaceLeadsToTheStoredKey)
{
    insert(waypoint("A", 1, "@123"));
    open_batch();
    insert(waypoint("A", 1));
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(batch_key("A"), "@123A");
}

TEST_F(WaypInsert, TheFirstOfTwoRecordsWithOneIncomingKeyDecides)
{
    insert(waypoint("A", 1));
    given = conflict_answer::keep_both;
    open_batch();
    insert(waypoint("A", 2, "one"));
    insert(waypoint("A", 3, "two"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "A1", "A2"}));
    EXPECT_EQ(batch_key("A"), "A1");
}

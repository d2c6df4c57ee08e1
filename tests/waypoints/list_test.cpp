#include "tests/waypoints/list_fixture.h"

#include <algorithm>
#include <random>

using namespace velkoro;

namespace {

class WaypList : public ListTest {};

} // namespace

// Rows
// ----------------------------------------------------------------------------------------------

TEST_F(WaypList, GetsARowForEveryWaypointInserted)
{
    add_names({"B", "A"});
    EXPECT_EQ(rows(), (lines{"B", "A"}));
    EXPECT_EQ(wp_index(0), 0);
    EXPECT_EQ(wp_index(2), -1);
    EXPECT_EQ(wp_row(1), 1);
    EXPECT_EQ(wp_row(2), -1);
}

TEST_F(WaypList, RowsThatTheStoreHoldsAndTheListLacksAppearAtTheNextTick)
{
    add_names({"A"});
    store.wp.push_back({.nam = "B"});
    store.wp_top = 1;
    store.wp_dirty = true;
    tick(0.2);
    EXPECT_EQ(rows(), (lines{"A", "B"}));
    store.wp_top = 0;
    store.wp.pop_back();
    tick(0.2);
    EXPECT_EQ(rows(), (lines{"A"}));
}

TEST_F(WaypList, ABatchUnderWayMakesItsRowsItself)
{
    store.wp.push_back({.nam = "B"});
    store.wp_top = 0;
    store.wp_dirty = true;
    job.code = "W_O";
    tick(0.2);
    EXPECT_TRUE(rows().empty());
    job.code.clear();
    tick(0.2);
    EXPECT_EQ(rows(), (lines{"B"}));
}

TEST_F(WaypList, ARefreshMayMarkTheRow)
{
    add_names({"A", "B"});
    const std::uint64_t before = list().version;
    row_refresh(1, true);
    EXPECT_EQ(rows(), (lines{"A", "*B"}));
    EXPECT_GT(list().version, before);
    row_refresh(7, true);
    EXPECT_EQ(rows(), (lines{"A", "*B"}));
}

// Order
// ----------------------------------------------------------------------------------------------

TEST_F(WaypList, SortsByNameAndKeepsEqualOnesInPlace)
{
    add({.nam = "C", .pos = {1 << 20, 0}});
    add({.nam = "A", .kom = "@002", .pos = {2 << 20, 0}});
    add({.nam = "B", .pos = {3 << 20, 0}});
    add({.nam = "A", .kom = "@001", .pos = {4 << 20, 0}});
    sort_by(sort_entry::name);
    EXPECT_EQ(rows(), (lines{"A", "A", "B", "C"}));
    EXPECT_EQ(wp_index(0), 1);
    EXPECT_EQ(wp_index(1), 3);
    EXPECT_EQ(wp_row(0), 3);
}

TEST_F(WaypList, SortsCommentsWhateverTheirCase)
{
    add({.nam = "A", .kom = "beta", .pos = {1 << 20, 0}});
    add({.nam = "B", .kom = "Alpha", .pos = {2 << 20, 0}});
    add({.nam = "C", .kom = "", .pos = {3 << 20, 0}});
    sort_by(sort_entry::comment);
    EXPECT_EQ(rows(), (lines{"C", "B", "A"}));
}

TEST_F(WaypList, SortsAltitudesAsNumbersAndPutsUnknownOnesLast)
{
    add({.nam = "NONE", .pos = {1 << 20, 0}});
    add({.nam = "HIGH", .pos = {2 << 20, 0}, .alt = 8848});
    add({.nam = "DEAD", .pos = {3 << 20, 0}, .alt = -430});
    add({.nam = "LOW", .pos = {4 << 20, 0}, .alt = 9});
    sort_by(sort_entry::altitude);
    EXPECT_EQ(rows(), (lines{"DEAD", "LOW", "HIGH", "NONE"}));
}

TEST_F(WaypList, SortsByProximityAndPutsThoseWithoutLast)
{
    add({.nam = "NONE", .pos = {1 << 20, 0}});
    add({.nam = "FAR", .pos = {2 << 20, 0}, .prox = 999});
    add({.nam = "OFF", .pos = {3 << 20, 0}, .prox = -20});
    sort_by(sort_entry::proximity);
    EXPECT_EQ(rows(), (lines{"OFF", "FAR", "NONE"}));
}

TEST_F(WaypList, SortsByLatitudeAndLongitudeAcrossTheirZero)
{
    add({.nam = "NE", .pos = {500000000, 700000000}});
    add({.nam = "SW", .pos = {-500000000, -2147483647}});
    add({.nam = "EQ", .pos = {0, 2147483647}});
    sort_by(sort_entry::latitude);
    EXPECT_EQ(rows(), (lines{"SW", "EQ", "NE"}));
    sort_by(sort_entry::longitude);
    EXPECT_EQ(rows(), (lines{"SW", "NE", "EQ"}));
}

TEST_F(WaypList, SortsByDateAsNumbers)
{
    add({.nam = "NEW", .pos = {1 << 20, 0}, .dat = 1100000000});
    add({.nam = "OLD", .pos = {2 << 20, 0}, .dat = 90000000});
    sort_by(sort_entry::date);
    EXPECT_EQ(rows(), (lines{"OLD", "NEW"}));
}

TEST_F(WaypList, SortsByTheDistanceToTheReference)
{
    hooks.distance = [](const pos_rec& t, const pos_rec& o) {
        return std::abs(t.lat - o.lat) / 1e6;
    };
    add({.nam = "FAR", .pos = {900000000, 0}});
    add({.nam = "NEAR", .pos = {5000000, 0}});
    add({.nam = "MID", .pos = {-40000000, 0}});
    sort_by(sort_entry::ref_distance);
    EXPECT_EQ(rows(), (lines{"NEAR", "MID", "FAR"}));
    EXPECT_EQ(cell(1, list_col::variable), "40.00 km  000°  "_w);
    EXPECT_EQ(list().columns[4].heading, text(7265));
    EXPECT_TRUE(list().columns[4].right);
}

TEST_F(WaypList, TheChosenOrderIsStored)
{
    sort_by(sort_entry::altitude);
    EXPECT_EQ(ini_get("Main", "Opt").substr(0, 2), "2 ");
}

TEST_F(WaypList, AClickOnAHeadingSortsByItAndASecondOneTurnsTheOrder)
{
    add_names({"B", "C", "A"});
    Form1.Waypl2.header_click(1);
    EXPECT_EQ(Form1.sort.selected, static_cast<int>(sort_entry::comment));
    Form1.Waypl2.header_click(0);
    EXPECT_EQ(Form1.sort.selected, static_cast<int>(sort_entry::name));
    EXPECT_EQ(rows(), (lines{"A", "B", "C"}));
    EXPECT_EQ(list().sort_column, 0);
    EXPECT_FALSE(list().sort_down);
    Form1.Waypl2.header_click(0);
    EXPECT_EQ(rows(), (lines{"C", "B", "A"}));
    EXPECT_TRUE(list().sort_down);
    Form1.Waypl2.header_click(4);
    EXPECT_EQ(Form1.sort.selected, static_cast<int>(sort_entry::date));
    EXPECT_FALSE(list().sort_down);
    Form1.Waypl2.header_click(99);
    EXPECT_EQ(Form1.sort.selected, static_cast<int>(sort_entry::date));
}

TEST_F(WaypList, TheCurrentRowStaysTheCurrentOne)
{
    add_names({"B", "C", "A"});
    list().current = 1;
    sort_by(sort_entry::name);
    EXPECT_EQ(list().current, 2);
}

TEST_F(WaypList, MarkedOnesMoveToTheTopInTheirOrder)
{
    add_names({"A", "B", "C", "D"});
    mark(1);
    mark(3);
    Form1.sort_oben.click();
    EXPECT_EQ(rows(), (lines{"*B", "*D", "A", "C"}));
    EXPECT_EQ(list().current, 1) << "the row clicked last";
}

TEST_F(WaypList, AChangeOfUnitsLeavesAnOrderMadeByHand)
{
    add_names({"A", "B", "C"});
    mark(2);
    Form1.sort_oben.click();
    hooks.units_changed();
    EXPECT_EQ(rows(), (lines{"*C", "A", "B"}));
}

TEST_F(WaypList, ALongSortShowsProgressAndGivesWayToAChangeOfTheRows)
{
    add_names({"B", "A"});
    int texts = 0;
    hooks.distance = [&](const pos_rec&, const pos_rec&) {
        user.time_s += 1; // slow
        return ++texts * -1.0 + 100;
    };
    lines shown;
    user.on_pump = [&] { shown.push_back(Form1.anz.caption); };
    sort_by(sort_entry::ref_distance);
    EXPECT_EQ(rows(), (lines{"A", "B"}));
    EXPECT_EQ(shown, (lines{text(7753, 0), text(7753, 50)}));
    EXPECT_NE(Form1.anz.caption, text(7753, 50));

    user.on_pump = [&] { list().changed(); };
    sort_by(sort_entry::ref_distance);
    EXPECT_EQ(rows(), (lines{"A", "B"})) << "the rows keep their order";
}

TEST_F(WaypList, AnotherOrderChosenDuringALongSortIsTheOneThatComesOut)
{
    add_names({"B", "C", "A"});
    hooks.distance = [&](const pos_rec&, const pos_rec&) { return user.time_s += 1; };
    bool once = true;
    user.on_pump = [&] {
        if (std::exchange(once, false))
            sort_by(sort_entry::name);
    };
    sort_by(sort_entry::ref_distance);
    EXPECT_EQ(rows(), (lines{"A", "B", "C"}));
}

TEST_F(WaypList, EscapeBreaksALongSortOff)
{
    constexpr int key_escape = 0x01000000;
    add_names({"B", "A"});
    EXPECT_FALSE(Form1.Waypl2.key(key_escape, false, false)) << "no sort is under way";
    int distance = 100;
    hooks.distance = [&](const pos_rec&, const pos_rec&) {
        user.time_s += 1;
        return --distance;
    };
    user.on_pump = [&] { EXPECT_TRUE(Form1.Waypl2.key(key_escape, false, false)); };
    sort_by(sort_entry::ref_distance);
    EXPECT_EQ(rows(), (lines{"B", "A"}));
    EXPECT_EQ(user.pumps, 1);
    user.on_pump = {};
    sort_apply();
    EXPECT_EQ(rows(), (lines{"A", "B"}));
}

TEST_F(WaypList, AFailingSortIsReportedAndTheListKeepsWhatItHas)
{
    add_names({"B", "A"});
    hooks.distance = [](const pos_rec&, const pos_rec&) -> double {
        throw std::runtime_error("no luck");
    };
    sort_by(sort_entry::ref_distance);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "no luck in wayp_sort_do");
    EXPECT_EQ(rows(), (lines{"B", "A"}));
    sort_by(sort_entry::name);
    EXPECT_EQ(rows(), (lines{"A", "B"}));
}

TEST_F(WaypList, SortTextsGiveTheOrderOfTheNumbersForAnyValues)
{
    std::mt19937 random(20240607);
    std::uniform_int_distribution<int> alt(-32767, 32766), lat(-(1 << 30), 1 << 30);
    for (int n = 0; n < 300; ++n) {
        store.wp.push_back({.nam = std::to_string(n),
                            .pos = {lat(random), lat(random) * 2},
                            .dat = std::abs(lat(random)),
                            .alt = static_cast<std::int16_t>(alt(random))});
        store.wp_top = static_cast<std::int16_t>(n);
    }
    list_refill();
    const auto at = [](int row) -> const wayp_rec& {
        return store.wp[static_cast<std::size_t>(wp_index(row))];
    };
    sort_by(sort_entry::altitude);
    for (int row = 1; row < 300; ++row)
        EXPECT_LE(at(row - 1).alt, at(row).alt);
    sort_by(sort_entry::latitude);
    for (int row = 1; row < 300; ++row)
        EXPECT_LE(at(row - 1).pos.lat, at(row).pos.lat);
    sort_by(sort_entry::longitude);
    for (int row = 1; row < 300; ++row)
        EXPECT_LE(at(row - 1).pos.lon, at(row).pos.lon);
    sort_by(sort_entry::date);
    for (int row = 1; row < 300; ++row)
        EXPECT_LE(at(row - 1).dat, at(row).dat);
}

// Marks
// ----------------------------------------------------------------------------------------------

TEST_F(WaypList, MarksAreCountedHalfASecondAfterTheLastClick)
{
    add_names({"A", "B", "C"});
    mark(0);
    mark(2);
    tick(0.4);
    EXPECT_EQ(Form1.anz.caption, "");
    tick(0.2);
    EXPECT_EQ(Form1.anz.caption, "2 / 3");
    EXPECT_EQ(store.wp_cur, 2);
}

TEST_F(WaypList, OneMarkShowsNoCount)
{
    add_names({"A", "B"});
    mark(0);
    tick(1);
    EXPECT_EQ(Form1.anz.caption, "");
}

TEST_F(WaypList, AListOfOneWaypointShowsNoCount)
{
    add_names({"A"});
    Form1.B_alle.click();
    EXPECT_EQ(rows(), (lines{"*A"}));
    EXPECT_EQ(Form1.anz.caption, "");
}

TEST_F(WaypList, NothingIsCountedWhileRowsAreMissing)
{
    add_names({"A", "B"});
    tick(0.2);
    mark(0);
    mark(1);
    job.code = "W_O"; // a refill under way
    store.wp.push_back({.nam = "C"});
    store.wp_top = 2;
    tick(1);
    EXPECT_EQ(Form1.anz.caption, "");
    EXPECT_NE(shell.mark_defer, 0) << "it is counted later";
    job.code.clear();
    store.wp_dirty = true;
    tick(1);
    EXPECT_EQ(Form1.anz.caption, "2 / 3");
}

TEST_F(WaypList, MarksSurviveASortAndComeBackByStoreIndex)
{
    add_names({"D", "B", "C", "A"});
    mark(0);
    mark(1);
    tick(1);
    sort_by(sort_entry::name);
    EXPECT_EQ(rows(), (lines{"A", "*B", "C", "*D"}));
    mark(1, false);
    mark(3, false);
    mark(0);
    tick(1);
    Form1.mark_recover.click();
    EXPECT_EQ(rows(), (lines{"A", "*B", "C", "*D"}));
}

TEST_F(WaypList, MarksCanBeSetForAllAndInverted)
{
    add_names({"A", "B", "C"});
    mark(1);
    Form1.mark_inv.click();
    EXPECT_EQ(rows(), (lines{"*A", "B", "*C"}));
    EXPECT_EQ(Form1.anz.caption, "2 / 3");
    Form1.B_alle.click();
    EXPECT_EQ(rows(), (lines{"*A", "*B", "*C"}));
    EXPECT_EQ(Form1.anz.caption, "3 / 3");
    EXPECT_TRUE(wp_mark(2));
    EXPECT_FALSE(wp_mark(3));
}

TEST_F(WaypList, TheStoreAsksTheListForMarksAndOrder)
{
    add_names({"C", "A", "B"});
    mark(0);
    mark(2);
    sort_by(sort_entry::name);
    EXPECT_EQ(hooks.list_order(), (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(hooks.marked_rows(), (std::vector<int>{2, 0}));
}

// Deleting
// ----------------------------------------------------------------------------------------------

TEST_F(WaypList, MarkedRowsAreDeletedAfterTheQuestionAndTheOthersFollowTheirRecords)
{
    add_names({"A", "B", "C", "D", "E"});
    sort_by(sort_entry::name);
    list().sort_down = true;
    sort_apply();
    EXPECT_EQ(rows(), (lines{"E", "D", "C", "B", "A"}));
    mark(4); // A, record 0
    mark(2); // C, record 2
    user.answers = {answer::ok};
    Form1.B_lösch.click();
    EXPECT_EQ(user.numbers(), (std::vector<int>{2060}));
    EXPECT_EQ(rows(), (lines{"E", "D", "B"}));
    EXPECT_EQ(store.wp_top, 2);
    std::vector<int> all = hooks.list_order();
    std::ranges::sort(all);
    EXPECT_EQ(all, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(list().current, 2) << "the row behind the one that went";
}

TEST_F(WaypList, CancelKeepsTheMarkedRows)
{
    add_names({"A", "B"});
    mark(0);
    user.answers = {answer::cancel};
    Form1.Edit_w[2].click();
    EXPECT_EQ(rows(), (lines{"*A", "B"}));
}

TEST_F(WaypList, DeletingWithoutMarksSaysSo)
{
    add_names({"A"});
    Form1.B_lösch.click();
    EXPECT_EQ(user.numbers(), (std::vector<int>{2050}));
    EXPECT_EQ(rows(), (lines{"A"}));
}

TEST_F(WaypList, TheKeysDeleteAndBackspaceDeleteTheMarkedRows)
{
    constexpr int key_backspace = 0x01000003, key_delete = 0x01000007;
    add_names({"A", "B", "C"});
    mark(0);
    EXPECT_TRUE(Form1.Waypl2.key(key_delete, false, false));
    EXPECT_EQ(rows(), (lines{"B", "C"}));
    mark(0);
    EXPECT_TRUE(Form1.Waypl2.key(key_backspace, false, false));
    EXPECT_EQ(rows(), (lines{"C"}));
    user.messages.clear();
    EXPECT_TRUE(Form1.Waypl2.key(key_delete, false, false));
    EXPECT_TRUE(user.messages.empty()) << "nothing is marked, the command is disabled";
    EXPECT_FALSE(Form1.Waypl2.key('Q', false, false));
}

TEST_F(WaypList, CtrlAMarksAll)
{
    add_names({"A", "B"});
    tick(0.2);
    EXPECT_TRUE(Form1.Waypl2.key('A', true, false));
    EXPECT_EQ(rows(), (lines{"*A", "*B"}));
}

TEST_F(WaypList, TheMarksKeptForLaterFollowADeletion)
{
    add_names({"A", "B", "C", "D"});
    mark(2);
    mark(3);
    tick(1); // kept: C and D
    for (int row = 0; row < 4; ++row)
        mark(row, row == 0);
    Form1.B_lösch.click();
    for (int row = 0; row < 3; ++row)
        mark(row, false);
    Form1.mark_recover.click();
    EXPECT_EQ(hooks.marked_rows().size(), 2U);
    for (const int index : hooks.marked_rows())
        EXPECT_NE(store.wp[static_cast<std::size_t>(index)].nam, "B");
}

TEST_F(WaypList, RandomInsertingDeletingAndSortingKeepsRowsAndRecordsTogether)
{
    std::mt19937 random(42);
    int made = 0;
    for (int round = 0; round < 60; ++round) {
        for (int n = 0; n < 5; ++n, ++made)
            add({.nam = "W" + std::to_string(made), .pos = {made << 12, made << 12}});
        for (list_row& r : list().rows)
            r.marked = random() % 4 == 0;
        std::vector<std::string> kept;
        for (const std::string& name : rows())
            if (!name.starts_with('*'))
                kept.push_back(name);
        wayp_delete(-2);
        EXPECT_EQ(rows(), kept) << round;
        sort_by(round % 2 ? sort_entry::name : sort_entry::longitude);
        std::vector<int> all = hooks.list_order();
        std::ranges::sort(all);
        ASSERT_EQ(static_cast<int>(all.size()), store.wp_top + 1);
        for (int i = 0; i < static_cast<int>(all.size()); ++i) {
            ASSERT_EQ(all[static_cast<std::size_t>(i)], i);
            ASSERT_EQ(wp_index(wp_row(i)), i);
        }
    }
}

// Commands around the list
// ----------------------------------------------------------------------------------------------

TEST_F(WaypList, CommandsNeedRowsAndMarks)
{
    Form1.neu_mitt.click = Form1.B_kop.click = {};
    list_states();
    EXPECT_FALSE(Form1.B_alle.enabled);
    EXPECT_FALSE(Form1.B_lösch.enabled);
    EXPECT_FALSE(Form1.wayp_neu.enabled);
    add_names({"A", "B"});
    tick(0.2);
    EXPECT_TRUE(Form1.B_alle.enabled);
    EXPECT_TRUE(Form1.wayp_neu.enabled);
    EXPECT_FALSE(Form1.B_lösch.enabled);
    EXPECT_FALSE(Form1.Edit_w[2].enabled);
    EXPECT_FALSE(Form1.mark_recover.enabled);
    mark(0);
    EXPECT_TRUE(Form1.B_lösch.enabled);
    EXPECT_FALSE(Form1.neu_mitt.enabled) << "nobody serves it";
    EXPECT_TRUE(Form1.Edit_w[2].enabled);
    EXPECT_TRUE(Form1.sort_oben.enabled);
    EXPECT_FALSE(Form1.B_kop.enabled) << "nobody serves it";
    mark(0, false);
    EXPECT_FALSE(Form1.B_lösch.enabled);
}

TEST_F(WaypList, AnEmptyListSaysSoInTheStatusLine)
{
    EXPECT_EQ(Form1.anz.caption, text(7602));
    add_names({"A"});
    tick(0.2);
    EXPECT_EQ(Form1.anz.caption, "");
    mark(0);
    Form1.B_lösch.click();
    EXPECT_EQ(Form1.anz.caption, text(7602));
}

TEST_F(WaypList, ANewListAsksWhenSomethingIsUnsaved)
{
    add_names({"A"});
    store.wp_dirty = true;
    settings.wp_file = "/data/a.wp";
    Form1.wayp_titel.text = "Harz";
    user.answers = {answer::cancel};
    Form1.wayp_neu.click();
    EXPECT_EQ(user.numbers(), (std::vector<int>{7742}));
    EXPECT_EQ(rows(), (lines{"A"}));

    Form1.wayp_neu.click();
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(settings.wp_file, "");
    EXPECT_EQ(Form1.wayp_titel.text, "");
    EXPECT_EQ(Form1.filnam.caption, "");
}

TEST_F(WaypList, ATitleTypedInIsAChange)
{
    store.wp_dirty = false;
    Form1.wayp_titel.text = "Harz";
    Form1.wayp_titel.change();
    EXPECT_TRUE(store.wp_dirty);
}

TEST_F(WaypList, FilesDroppedAreOpenedByTheirKind)
{
    lines opened;
    Form1.Wayp_Datei_lesen.click = [&] {
        opened.push_back(settings.wp_pending);
        settings.wp_pending.clear();
    };
    Form1.zeich_akt.click = [&] {
        opened.push_back(settings.trk_pending);
        settings.trk_pending.clear();
    };
    Form1.Waypl2.files_dropped({"/d/a b.wp", "/d/readme.txt", "/d/c.T"});
    EXPECT_EQ(opened, (lines{"/d/a b.wp", "/d/c.T"}));
    Form1.Wayp_Datei_lesen.click = Form1.zeich_akt.click = {};
}

TEST_F(WaypList, TheRightButtonOpensTheEditMenu)
{
    const control* opened = nullptr;
    platform.popup = [&](control& c) { opened = &c; };
    Form1.Waypl2.right_click();
    EXPECT_EQ(opened, &Form1.bbb);
}

TEST_F(WaypList, TheReferenceIsChosenFromTheNamesInTheList)
{
    add_names({"B", "A"});
    tick(0.2);
    EXPECT_EQ(Form1.refp.items, (lines{"A", "B"}));
    EXPECT_EQ(Form1.refp.selected, -1);
    EXPECT_TRUE(Form1.refp.enabled);
    Form1.refp.selected = 1;
    Form1.refp.change();
    EXPECT_EQ(store.refp_name, "B");
    EXPECT_EQ(store.refp_pos, store.wp[0].pos);
    tick(0.2);
    EXPECT_EQ(Form1.refp.selected, 1);
}

TEST_F(WaypList, ALongListOffersItsMarkedWaypointsAsReference)
{
    for (int n = 0; n < 2001; ++n)
        store.wp.push_back({.nam = "W" + std::to_string(n), .pos = {n << 12, 0}});
    store.wp_top = 2000;
    list_refill();
    tick(0.2);
    EXPECT_TRUE(Form1.refp.items.empty());
    EXPECT_FALSE(Form1.refp.enabled);
    mark(5);
    tick(0.2);
    EXPECT_EQ(Form1.refp.items.size(), 1U);
}

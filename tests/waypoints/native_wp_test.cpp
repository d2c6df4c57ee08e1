#include "waypoints/native_wp.h"

#include "core/byte_io.h"
#include "core/code_page.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/wayp_insert.h"
#include "tests/waypoints/native_support.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

wayp_rec waypoint(const std::string& nam, std::int32_t lat, const std::string& kom = {})
{
    wayp_rec w;
    w.nam = nam;
    w.kom = kom;
    w.pos = {lat, 131059734};
    w.dat = 700000000;
    return w;
}

void add(const std::string& nam, std::int32_t lat, const std::string& kom = {})
{
    wayp_rec w = waypoint(nam, lat, kom);
    wayp_insert(w, 0);
}

void add_route(const std::string& nam, const std::string& wps)
{
    route_rec r;
    r.nam = nam;
    r.wps = wps;
    r.farbe = 1;
    route_add(r);
}

/// Four waypoints A to D far apart and two routes over A, B and over C.
void small_store()
{
    for (int i = 0; i < 4; ++i)
        add(std::string(1, static_cast<char>('A' + i)), 1000000 * (i + 1));
    add_route("ab", "A$B$");
    add_route("c", "C$");
}

std::string names_in(const std::string& bytes)
{
    std::string names;
    wp_source s;
    EXPECT_EQ(wp_open(s, bytes), native_end::whole);
    while (true) {
        switch (wp_next(s)) {
        case wp_item::waypoint: names += s.wp.nam + " "; break;
        case wp_item::route: names += "[" + s.route.nam.substr(0, 2) + "] "; break;
        case wp_item::append: names += "+A "; break;
        case wp_item::reconcile: names += "+U "; break;
        case wp_item::end: return names;
        default: return names + "?";
        }
    }
}

std::string written(const std::string& flags, std::vector<int> routes = {})
{
    return names_in(write_wp({.flags = flags, .routes = std::move(routes)}).bytes);
}

/// A plain file: head and waypoints.
std::string file_of(const std::vector<wayp_rec>& wps, const std::string& title = "T")
{
    const store_state kept = store;
    const std::string kept_title = Form1.wayp_titel.text;
    store.wp = wps;
    store.wp_top = static_cast<std::int16_t>(wps.size() - 1);
    store.rou_top = -1;
    Form1.wayp_titel.text = title;
    const hook_table kept_hooks = hooks;
    hooks = {};
    std::string bytes = write_wp({}).bytes;
    hooks = kept_hooks;
    store = kept;
    Form1.wayp_titel.text = kept_title;
    return bytes;
}

} // namespace

TEST(WriteWaypoints, AnEmptyStoreGivesOnlyAHeadAndReadsBackEmpty)
{
    native_fixture f;
    const std::string bytes = write_wp({}).bytes;
    EXPECT_EQ(names_in(bytes), "");
    EXPECT_EQ(read_wp(bytes).end, native_end::whole);
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(store.rou_top, -1);
    EXPECT_FALSE(store.wp_dirty);
}

TEST(WriteWaypoints, LongNamesSurvive)
{
    native_fixture f;
    add("LONGNAME12", 5000000);
    const std::string bytes = write_wp({}).bytes;
    wayp_clear();
    read_wp(bytes);
    EXPECT_EQ(store.wp[0].nam, "LONGNAME12");
}

TEST(WriteWaypoints, FlagsChooseAllMarkedOrThoseOfRoutes)
{
    native_fixture f;
    small_store();
    hooks.marked_rows = [] { return std::vector<int>{3, 1}; };
    EXPECT_EQ(written("WR"), "A B C D [ab] [c ] ");
    EXPECT_EQ(written("W"), "A B C D ");
    EXPECT_EQ(written("WM"), "B D ");
    EXPECT_EQ(written("R"), "A B C [ab] [c ] ");
    EXPECT_EQ(written("WMR"), "A B C D [ab] [c ] ");
    EXPECT_EQ(written("RM", {1}), "C [c ] ");
    EXPECT_EQ(written("WMRM", {1}), "B C D [c ] ");
    EXPECT_EQ(written("RM", {7, -1}), "");
    EXPECT_EQ(written("WOK"), "A B C D ");
}

TEST(WriteWaypoints, ASectionHasATagAndNoHead)
{
    native_fixture f;
    small_store();
    const std::string head = file_of({});
    EXPECT_EQ(names_in(head + write_wp({.flags = "WRA", .section = true}).bytes),
              "+A A B C D [ab] [c ] ");
}

TEST(WriteWaypoints, AReconcilingSectionHoldsNoRoutes)
{
    native_fixture f;
    small_store();
    const std::string head = file_of({});
    EXPECT_EQ(names_in(head + write_wp({.flags = "WRU", .section = true}).bytes), "+U A B C D ");
    EXPECT_EQ(names_in(head + write_wp({.flags = "RU", .section = true}).bytes), "+U A B C ");
}

TEST(WriteWaypoints, FollowTheOrderOfTheListAndLoseNoneThatItLacks)
{
    native_fixture f;
    small_store();
    hooks.list_order = [] { return std::vector<int>{2, 0, 2, 99, -1}; };
    EXPECT_EQ(written("W"), "C A B D ");
}

TEST(WriteWaypoints, CommentsAreTrimmedButKeepTheirKey)
{
    native_fixture f;
    add("A", 1000000, "  two  ");
    add("B", 2000000, " @AB1 x ");
    const std::string bytes = write_wp({}).bytes;
    wayp_clear();
    read_wp(bytes);
    EXPECT_EQ(store.wp[0].kom, "two");
    EXPECT_EQ(store.wp[1].kom, " @AB1 x");
    EXPECT_EQ(wp_key(1), "B");
}

TEST(WriteWaypoints, ComputedOrdersAreKeptAsTheFirst)
{
    native_fixture f;
    for (int order = 0; order < sort_entries; ++order) {
        Form1.sort.selected = order;
        const std::string bytes = write_wp({}).bytes;
        const bool computed = order == 6 || order == 11 || order == 12;
        EXPECT_EQ(wp_info(bytes).head.sort, computed ? 0 : order);
    }
    Form1.sort.selected = -1;
    EXPECT_EQ(wp_info(write_wp({}).bytes).head.sort, 0);
}

TEST(WriteWaypoints, CancelKeepsWhatWasWritten)
{
    native_fixture f;
    small_store();
    f.user.on_pump = [] { job.op_cancel = true; };
    make_progress_due();
    const wp_write_result r = write_wp({});
    EXPECT_EQ(r.end, native_end::broken_off);
    EXPECT_GE(r.waypoints, 1);
    EXPECT_EQ(r.routes, 0);
    EXPECT_EQ(wp_info(r.bytes).end, native_end::whole);
    EXPECT_EQ(op.anz.caption.substr(0, 5), "2570 ");
}

TEST(WriteWaypoints, AStoreThatShrinksInAPumpIsNoHarm)
{
    native_fixture f;
    small_store();
    f.user.on_pump = [] { wayp_clear(); };
    make_progress_due();
    const wp_write_result r = write_wp({});
    EXPECT_EQ(r.end, native_end::whole);
    EXPECT_EQ(wp_info(r.bytes).waypoints, r.waypoints);
}

TEST(ReadWaypoints, AFreshListIsNotChanged)
{
    native_fixture f;
    read_wp(golden_bytes("wp", "v204.wp"));
    EXPECT_EQ(store.wp_top, 3);
    EXPECT_FALSE(store.wp_dirty);
}

TEST(ReadWaypoints, ASectionMakesTheListChanged)
{
    native_fixture f;
    read_wp(golden_bytes("wp", "append_204_to_203.wp"));
    EXPECT_TRUE(store.wp_dirty);
}

TEST(ReadWaypoints, IntoAListChangesItAndMarksTheNewRows)
{
    native_fixture f;
    small_store();
    store.wp_dirty = false;
    int marked = 0;
    hooks.row_added = [&](int, bool mark) { marked += mark; };
    const wp_read_result r = read_wp(golden_bytes("wp", "v204.wp"));
    EXPECT_FALSE(r.was_empty);
    EXPECT_EQ(marked, 4);
    EXPECT_TRUE(store.wp_dirty);
}

TEST(ReadWaypoints, IntoAnEmptyStoreMarksNothing)
{
    native_fixture f;
    int marked = 0;
    hooks.row_added = [&](int, bool mark) { marked += mark; };
    read_wp(golden_bytes("wp", "v204.wp"));
    EXPECT_EQ(marked, 0);
}

TEST(ReadWaypoints, TitlesAreJoined)
{
    native_fixture f;
    read_wp(file_of({waypoint("A", 1000000)}, "one"));
    EXPECT_EQ(Form1.wayp_titel.text, "one");
    read_wp(file_of({waypoint("B", 2000000)}, "two"));
    EXPECT_EQ(Form1.wayp_titel.text, "one & two");
    read_wp(file_of({waypoint("C", 3000000)}, ""));
    EXPECT_EQ(Form1.wayp_titel.text, "one & two");
}

TEST(ReadWaypoints, OnlyAnEmptyStoreTakesOrderAndReference)
{
    native_fixture f;
    small_store();
    Form1.sort.selected = 3;
    store.refp_name = "B";
    store.refp_pos = store.wp[1].pos;
    settings.scale = 10000;
    read_wp(golden_bytes("wp", "v204.wp"));
    EXPECT_EQ(Form1.sort.selected, 3);
    EXPECT_EQ(store.refp_name, "B");
    EXPECT_EQ(settings.scale, 25000);
    EXPECT_EQ(settings.list_zone, "+1 L3 L10");
}

TEST(ReadWaypoints, TheFormatIsAppliedAheadOfTheDatum)
{
    native_fixture f;
    Form1.posform.change = [] { Form1.Datum.selected = 3; }; // as a national grid does
    int datum_changes = 0;
    Form1.Datum.change = [&] { ++datum_changes; };
    read_wp(golden_bytes("wp", "v204.wp"));
    EXPECT_EQ(Form1.posform.selected, 1);
    EXPECT_EQ(Form1.Datum.selected, 7);
    EXPECT_EQ(datum_changes, 1);
}

TEST(ReadWaypoints, UnknownCaptionsAndIndexesLeaveTheMenusAlone)
{
    native_fixture f;
    Form1.posform.items = {"x", "y"};
    Form1.Datum.items = {"z"};
    Form1.sort.items = {"n"};
    Form1.posform.selected = 1;
    for (const char* name : {"v204.wp", "v202.wp", "datum_113_9.wp"}) {
        wayp_clear();
        read_wp(golden_bytes("wp", name));
        EXPECT_EQ(Form1.posform.selected, 1) << name;
        EXPECT_EQ(Form1.Datum.selected, 0) << name;
        EXPECT_EQ(Form1.sort.selected, 0) << name;
    }
}

TEST(ReadWaypoints, WorksWithoutAnyEntriesInTheMenus)
{
    native_fixture f;
    for (control* c : {&Form1.posform, &Form1.Datum, &Form1.sort}) {
        c->items.clear();
        c->selected = -1;
    }
    EXPECT_EQ(read_wp(golden_bytes("wp", "v204.wp")).end, native_end::whole);
    EXPECT_EQ(Form1.sort.selected, -1);
    EXPECT_EQ(store.wp_top, 3);
}

TEST(ReadWaypoints, AFileBelow111KeepsThePresentTimeZone)
{
    native_fixture f;
    settings.list_zone = "-5";
    read_wp(golden_bytes("wp", "v110.wp"));
    EXPECT_EQ(settings.list_zone, "-5");
}

TEST(ReadWaypoints, NoToTheQuestionKeepsTheRecordsAhead)
{
    native_fixture f;
    f.user.answers = {answer::no};
    const wp_read_result r = read_wp(golden_bytes("wp", "append_204_to_203.wp"));
    EXPECT_EQ(r.end, native_end::declined);
    EXPECT_EQ(f.user.numbers(), std::vector<int>{2540});
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(op.anz.caption, "2530 1 0 #");
}

TEST(ReadWaypoints, AReconcilingSectionUpdatesAndAddsNothing)
{
    native_fixture f;
    const wp_read_result r = read_wp(golden_bytes("wp", "reconcile.wp"));
    EXPECT_EQ(f.user.numbers(), std::vector<int>{2550});
    EXPECT_EQ(store.wp_top, 1);
    EXPECT_EQ(store.wp[0].kom, "newer");
    EXPECT_NE(r.report, "");
}

TEST(ReadWaypoints, RecordsOfOneFileAreNotComparedWithEachOther)
{
    native_fixture f;
    int asked = 0;
    hooks.conflict_ask = [&](conflict_question&) {
        ++asked;
        return conflict_answer::take_new;
    };
    const std::string bytes =
        file_of({waypoint("A", 1000000, "one"), waypoint("A", 1000000, "other")});
    read_wp(bytes);
    EXPECT_EQ(store.wp_top, 1);
    EXPECT_EQ(asked, 0);
    read_wp(bytes);
    EXPECT_EQ(asked, 1); // the second record differs from the stored first one
}

TEST(ReadWaypoints, ARouteFollowsWaypointsThatWereRenamed)
{
    native_fixture f;
    add("A", 9000000, "mine");
    hooks.conflict_ask = [](conflict_question&) { return conflict_answer::keep_both; };
    std::string bytes = file_of({waypoint("A", 1000000, "theirs")});
    byte_writer route;
    route.u8('R');
    route.fixed("r", 16);
    route.lstr("A$");
    route.i16(2);
    for (int i = 0; i < 3; ++i)
        route.lstr("");
    read_wp(bytes + route.out);
    ASSERT_EQ(store.wp_top, 1);
    EXPECT_NE(store.wp[1].nam, "A");
    EXPECT_EQ(store.rou[0].wps, store.wp[1].nam + "$");
}

TEST(ReadWaypoints, CancelKeepsTheRecordsSoFarAndClosesTheBatch)
{
    native_fixture f;
    std::vector<wayp_rec> many;
    for (int i = 0; i < 2000; ++i)
        many.push_back(waypoint("W" + std::to_string(i), 100000 * i));
    const std::string bytes = file_of(many);
    f.user.on_pump = [] { job.op_cancel = true; };
    make_progress_due();
    const wp_read_result r = read_wp(bytes);
    EXPECT_EQ(r.end, native_end::broken_off);
    EXPECT_GE(r.waypoints, 1);
    EXPECT_LT(r.waypoints, 2000);
    EXPECT_EQ(store.wp_top + 1, r.waypoints);
    EXPECT_EQ(op.anz.caption.substr(0, 5), "2530 ");
    EXPECT_FALSE(batch.open);
}

TEST(ReadWaypoints, CancelInTheConflictQuestionEndsTheReading)
{
    native_fixture f;
    add("A", 9000000, "mine");
    hooks.conflict_ask = [](conflict_question&) { return conflict_answer::cancel_batch; };
    const std::string bytes =
        file_of({waypoint("N", 1000000), waypoint("A", 2000000, "x"), waypoint("M", 3000000)});
    const wp_read_result r = read_wp(bytes);
    EXPECT_EQ(r.end, native_end::broken_off);
    EXPECT_EQ(store.wp_top, 1);
    EXPECT_FALSE(batch.open);
}

TEST(ReadWaypoints, MoreThanTheStoreHoldsKeepsWhatFits)
{
    native_fixture f;
    std::string bytes = file_of({});
    byte_writer w;
    for (int i = 0; i < wp_limit + 5; ++i) {
        w.u8('W');
        w.lstr("N" + std::to_string(i));
        w.lstr("");
        w.i32(40000 * i);
        w.i32(0);
        w.i32(0);
        for (int k = 0; k < 3; ++k)
            w.i16(0);
    }
    const wp_read_result r = read_wp(bytes + w.out);
    EXPECT_EQ(r.end, native_end::full);
    EXPECT_EQ(r.waypoints, wp_limit);
    EXPECT_EQ(store.wp_top, wp_limit - 1);
    EXPECT_FALSE(batch.open);
}

TEST(ReadWaypoints, AHostileScaleStaysUsable)
{
    native_fixture f;
    for (const std::int32_t scale : {0, -1, 1, 2147483647}) {
        settings.scale = scale;
        const std::string bytes = file_of({});
        settings.scale = 50000;
        read_wp(bytes);
        EXPECT_GE(settings.scale, 100);
        EXPECT_LE(settings.scale, 100000000);
    }
}

#include "tests/waypoints/editor_fixture.h"

#include "waypoints/row_text.h"

using namespace velkoro;

namespace {

constexpr std::int32_t day = 86400;
constexpr std::int32_t today = 13286 * day; // 17 May 2026 after 31 December 1989

route_rec route_of(const std::string& points)
{
    route_rec r;
    r.wps = points;
    return r;
}

} // namespace

// Fields
// -------------------------------------------------------------------------------------------------

TEST_F(EditorTest, ShowsAllOfAWaypoint)
{
    const int i = add({.nam = "BALDHT",
                       .kom = "Baldenweger H\xFCtte",
                       .pos = at(47.8829, 8.0241),
                       .dat = today,
                       .prox = -5,
                       .symb = 2,
                       .symbmode = 1,
                       .alt = 1310});
    edit(i, [&] {
        EXPECT_EQ(WAYPOINT.nam.text, "BALDHT");
        EXPECT_EQ(WAYPOINT.kom.text, "Baldenweger H\xFCtte");
        EXPECT_EQ(WAYPOINT.komlen.caption, "23");
        EXPECT_EQ(WAYPOINT.dat_type.caption, "2026-05-17");
        EXPECT_EQ(WAYPOINT.lat.text, "N 47°52.974'"_w);
        EXPECT_EQ(WAYPOINT.lon.text, "E008°01.446'"_w);
        EXPECT_EQ(WAYPOINT.Dat.caption, "WGS 84");
        EXPECT_EQ(WAYPOINT.alt_feld.text, "1310");
        EXPECT_EQ(WAYPOINT.Prox_feld.text, "0.5");
        EXPECT_FALSE(WAYPOINT.Prox_akt.checked);
        EXPECT_EQ(WAYPOINT.symb.items.at(static_cast<std::size_t>(WAYPOINT.symb.rows.current)),
                  symb_ext(2));
        EXPECT_EQ(WAYPOINT.symb.rows.glyph(0, 0).substr(0, 2), "g_");
        EXPECT_EQ(WAYPOINT.Symbmode.items.at(static_cast<std::size_t>(WAYPOINT.Symbmode.selected)),
                  "Symbol + name");
        EXPECT_FALSE(editor_changed());
    });
}

TEST_F(EditorTest, TypingALowerCaseUmlautGivesItsPlainCapitalAtOnce)
{
    enter([] {
        type(WAYPOINT.nam, "h\xFC");
        EXPECT_EQ(WAYPOINT.nam.text, "HU");
        type(WAYPOINT.nam, "a b/\xDF");
        EXPECT_EQ(WAYPOINT.nam.text, "A-B-S");
        type(WAYPOINT.nam, "ab ");
        EXPECT_EQ(WAYPOINT.nam.text, "AB-");
        store.wp_ext_chars = true;
        type(WAYPOINT.nam, " ab ");
        EXPECT_EQ(WAYPOINT.nam.text, " AB "); // the blank before the next word
    });
}

TEST_F(EditorTest, OneKilometreOfProximityIsStoredAsTen)
{
    const int i = add({.nam = "A", .pos = at(1, 1)});
    edit(i, [] {
        type(WAYPOINT.Prox_feld, "1");
        ok();
    });
    EXPECT_EQ(wp(i).prox, 10);
    edit(i, [] { EXPECT_EQ(WAYPOINT.Prox_feld.text, "1.0"); });
}

TEST_F(EditorTest, ProximitySwitchedOffKeepsTheDistance)
{
    const int i = add({.nam = "A", .pos = at(1, 1), .prox = 10});
    edit(i, [] {
        tick(WAYPOINT.Prox_akt, false);
        ok();
    });
    EXPECT_EQ(wp(i).prox, -10);
    EXPECT_EQ(wp_row_text(i, list_col::proximity, sort_entry::name).shown, "'''");
}

TEST_F(EditorTest, ProximityIsAlsoTypedInMillimetresOnAMap)
{
    const int i = add({.nam = "A", .pos = at(1, 1), .prox = 20});
    edit(i, [] {
        tick(WAYPOINT.Maßstab_akt, true);
        EXPECT_EQ(WAYPOINT.Maßstab_feld.text, "50000");
        EXPECT_EQ(WAYPOINT.Prox_feld.text, "40.0");
        EXPECT_EQ(WAYPOINT.prox_km.caption, "mm");
        type(WAYPOINT.Prox_feld, "20");
        EXPECT_EQ(editor.prox_val, 10);
        type(WAYPOINT.Maßstab_feld, "25000");
        EXPECT_EQ(editor.prox_val, 5);
        tick(WAYPOINT.Maßstab_akt, false);
        EXPECT_EQ(WAYPOINT.Prox_feld.text, "0.5");
        ok();
    });
    EXPECT_EQ(wp(i).prox, 5);
}

TEST_F(EditorTest, AProximityOutOfRangeTurnsRedAndIsClamped)
{
    const int i = add({.nam = "A", .pos = at(1, 1)});
    edit(i, [] {
        type(WAYPOINT.Prox_feld, "-1");
        EXPECT_EQ(WAYPOINT.Prox_feld.back, 255U);
        type(WAYPOINT.Prox_feld, "99,9");
        EXPECT_EQ(WAYPOINT.Prox_feld.back, 0xFFFFFFU);
        EXPECT_EQ(editor.prox_val, 999);
        type(WAYPOINT.Prox_feld, "100");
        EXPECT_EQ(WAYPOINT.Prox_feld.back, 255U);
        EXPECT_EQ(WAYPOINT.Prox_feld.tooltip, text(7867, "99.9 km"));
        type(WAYPOINT.Prox_feld, "x");
        EXPECT_EQ(WAYPOINT.Prox_feld.back, 255U);
        type(WAYPOINT.Prox_feld, "1e9");
        ok();
    });
    EXPECT_EQ(wp(i).prox, 999);
}

TEST_F(EditorTest, ProximityAndAltitudeThatNobodyTouchedStayToTheUnit)
{
    settings.dist_index = 1;
    settings.dist_unit = dist_factors[1];
    settings.alt_index = 1;
    settings.alt_unit = alt_factors[1];
    const int i = add({.nam = "A", .pos = at(1, 1), .prox = 7, .alt = 1311});
    edit(i, [] {
        EXPECT_EQ(WAYPOINT.alt_m.caption, "ft");
        EXPECT_EQ(WAYPOINT.prox_km.caption, "mi");
        type(WAYPOINT.kom, "x");
        ok();
    });
    EXPECT_EQ(wp(i).prox, 7);
    EXPECT_EQ(wp(i).alt, 1311);
    edit(i, [] {
        type(WAYPOINT.alt_feld, "1000");
        ok();
    });
    EXPECT_EQ(wp(i).alt, 305);
}

TEST_F(EditorTest, AnAltitudeOutOfRangeIsRefused)
{
    const int i = add({.nam = "A", .pos = at(1, 1), .alt = 5});
    for (const char* bad : {"40000", "-32769", "12m"}) {
        user.messages.clear();
        EXPECT_FALSE(edit(i, [&] {
            type(WAYPOINT.alt_feld, bad);
            ok();
            EXPECT_TRUE(WAYPOINT.form.shown);
            EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.alt_feld);
        })) << bad;
        EXPECT_EQ(user.numbers(), (ints{4330}));
        EXPECT_EQ(wp(i).alt, 5);
    }
    edit(i, [] {
        type(WAYPOINT.alt_feld, "");
        ok();
    });
    EXPECT_EQ(wp(i).alt, alt_unknown);
}

TEST_F(EditorTest, SymbolAndItsModeAreStored)
{
    const int i = add({.nam = "A", .pos = at(1, 1), .symb = 2});
    edit(i, [] {
        choose_symbol("Car");
        choose(WAYPOINT.Symbmode, 0);
        ok();
    });
    EXPECT_EQ(symb_ext(wp(i).symb), "Car");
    EXPECT_EQ(wp(i).symbmode, 2);
    enter([] {
        EXPECT_EQ(symbol_chosen(), symb_ext("Car")); // a new one begins with the last symbol
        EXPECT_EQ(symbol_mode_chosen(), 2);
    });
}

TEST_F(EditorTest, ASymbolNumberWithoutAnEntryStaysUntilOneIsChosen)
{
    const int i = add({.nam = "A", .pos = at(1, 1), .symb = 9999});
    edit(i, [] {
        EXPECT_EQ(WAYPOINT.symb.rows.current, -1);
        ok();
    });
    EXPECT_EQ(wp(i).symb, 9999);
}

// Confirming
// -------------------------------------------------------------------------------------------------

TEST_F(EditorTest, ANewWaypointIsAppendedWithItsRow)
{
    store.wp_dirty = false;
    const int i = enter([] {
        type(WAYPOINT.nam, "zug");
        type(WAYPOINT.kom, "Zugspitze");
        type(WAYPOINT.lat, "N47 25.26");
        type(WAYPOINT.lon, "E10 59.12");
        type(WAYPOINT.alt_feld, "2962");
        ok();
        EXPECT_FALSE(WAYPOINT.form.shown);
    });
    ASSERT_EQ(i, 0);
    EXPECT_EQ(wp(0).nam, "ZUG");
    EXPECT_LT(apart_m(wp(0).pos, at(47.421, 10.985333)), 2);
    EXPECT_EQ(wp(0).dat, today);
    EXPECT_EQ(wp(0).alt, 2962);
    EXPECT_EQ(wp_index(Form1.Waypl2.rows.current), 0);
    EXPECT_EQ(wp_find_key("ZUG", "Zugspitze", -1, 0), 0);
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_EQ(store.wp_cur, 0);
    EXPECT_EQ(user.numbers(), ints{});
}

TEST_F(EditorTest, ANewWaypointBeginsEmptyWithTheSymbolStoredLast)
{
    const int i = add({.nam = "A", .pos = at(1, 1), .symbmode = 1, .alt = 100});
    const int chosen = 11; // a row of the list of symbols
    int symbol = 0;
    edit(i, [&] {
        WAYPOINT.symb.rows.current = chosen;
        symbol = WAYPOINT.symb.rows.rows[chosen].data;
        ok();
    });
    ASSERT_EQ(wp(i).symb, symbol);
    enter([&] {
        EXPECT_EQ(WAYPOINT.symb.rows.current, chosen);
        EXPECT_EQ(symbol_mode_chosen(), 1);
        for (const control* c : {&WAYPOINT.nam, &WAYPOINT.kom, &WAYPOINT.lat, &WAYPOINT.lon,
                                 &WAYPOINT.alt_feld, &WAYPOINT.Prox_feld})
            EXPECT_EQ(c->text, "") << c->name;
        EXPECT_EQ(WAYPOINT.dat_type.caption, "");
        WAYPOINT.Abbr.click();
    });
}

TEST_F(EditorTest, CancelLeavesTheStoreAsItWas)
{
    store.wp_dirty = false;
    EXPECT_EQ(enter([] {
                  type(WAYPOINT.nam, "A");
                  WAYPOINT.Abbr.click();
                  EXPECT_FALSE(WAYPOINT.form.shown);
              }),
              -1);
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(store.wp_cur, -1);
    EXPECT_FALSE(store.wp_dirty);
}

TEST_F(EditorTest, OkOnAnUntouchedNamelessWindowCancels)
{
    EXPECT_EQ(enter([] {
                  ok();
                  EXPECT_FALSE(WAYPOINT.form.shown);
              }),
              -1);
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(user.numbers(), ints{});
}

TEST_F(EditorTest, ANameThatIsTooLongIsCutAfterAWarning)
{
    const int i = add({.nam = "A", .kom = "@123rest", .pos = at(1, 1)});
    edit(i, [] {
        type(WAYPOINT.nam, "ABCDEFGH");
        ok();
    });
    EXPECT_EQ(user.numbers(), (ints{2035}));
    EXPECT_EQ(wp(i).nam, "ABCDEF");
    EXPECT_EQ(wp(i).kom, "@123GH<rest");
}

TEST_F(EditorTest, AMissingCoordinateIsNamed)
{
    enter([&] {
        type(WAYPOINT.nam, "A");
        ok();
        EXPECT_EQ(user.numbers(), (ints{4310}));
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.lat);
        type(WAYPOINT.lat, "N1");
        ok();
        EXPECT_EQ(user.numbers(), (ints{4310, 4310}));
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.lon);
        EXPECT_TRUE(WAYPOINT.form.shown);
    });
    EXPECT_EQ(store.wp_top, -1);
}

TEST_F(EditorTest, AUtmZoneWithoutItsLetterIsAskedFor)
{
    Form1.posform.selected = fmt_utm;
    for (const bool south : {false, true}) {
        user.messages.clear();
        user.answers = {south ? answer::yes : answer::no};
        const int i = enter([&] {
            type(WAYPOINT.nam, south ? "S" : "N");
            type(WAYPOINT.zone, "32");
            type(WAYPOINT.lon, "0562471");
            type(WAYPOINT.lat, "5705813");
            ok();
            EXPECT_EQ(WAYPOINT.zone.text, south ? "32C" : "32X");
        });
        EXPECT_EQ(user.numbers(), (ints{4316}));
        ASSERT_GE(i, 0);
        EXPECT_EQ(wp(i).pos.lat > 0, !south);
    }
}

TEST_F(EditorTest, AnMgrsZoneWithoutSquareCannotBeRead)
{
    Form1.posform.selected = fmt_mgrs;
    enter([&] {
        type(WAYPOINT.nam, "A");
        type(WAYPOINT.zone, "32U");
        type(WAYPOINT.lon, "62471");
        type(WAYPOINT.lat, "05813");
        ok();
        EXPECT_EQ(user.numbers(), (ints{4320}));
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.zone);
        type(WAYPOINT.zone, "32unc");
        ok();
    });
    ASSERT_EQ(store.wp_top, 0);
    EXPECT_LT(apart_m(wp(0).pos, at(51.5, 9.9)), 2);
}

TEST_F(EditorTest, ACoordinateWithoutDirectionIsAskedAbout)
{
    user.answers = {answer::cancel, answer::ok};
    enter([&] {
        type(WAYPOINT.nam, "A");
        type(WAYPOINT.lat, "N47");
        type(WAYPOINT.lon, "8.5");
        ok();
        EXPECT_TRUE(WAYPOINT.form.shown);
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.lon);
        ok();
    });
    EXPECT_EQ(user.numbers(), (ints{4315, 4315}));
    ASSERT_EQ(store.wp_top, 0);
    EXPECT_LT(apart_m(wp(0).pos, at(47, 8.5)), 1);
}

TEST_F(EditorTest, UnreadableCoordinatesKeepTheWindowAndNameTheField)
{
    enter([&] {
        type(WAYPOINT.nam, "A");
        type(WAYPOINT.lat, "N47");
        type(WAYPOINT.lon, "E-x");
        EXPECT_EQ(user.beeps, 0); // not while typing
        ok();
        EXPECT_EQ(user.numbers(), (ints{4320}));
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.lon);
        type(WAYPOINT.lat, "N91");
        ok();
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.lat);
    });
    EXPECT_EQ(store.wp_top, -1);
}

TEST_F(EditorTest, AnUnchangedPositionKeepsTheDate)
{
    const pos_rec exact = at(47.1234567, 8.7654321);
    const int i = add({.nam = "A", .pos = exact, .dat = 5 * day});
    edit(i, [] {
        type(WAYPOINT.nam, "B");
        ok();
    });
    EXPECT_EQ(wp(i).nam, "B");
    EXPECT_EQ(wp(i).pos, exact);
    EXPECT_EQ(wp(i).dat, 5 * day);
    edit(i, [] {
        type(WAYPOINT.lat, "N48");
        ok();
    });
    EXPECT_EQ(wp(i).dat, today);
    EXPECT_EQ(wp_find_pos(wp(i).pos, store.wp_top), i);
}

TEST_F(EditorTest, ATakenKeyKeepsTheWindowUnlessANewNameIsAgreed)
{
    add({.nam = "A", .pos = at(1, 1)});
    const int i = add({.nam = "B", .pos = at(2, 2)});
    conflict_answer reply = conflict_answer::keep_old;
    int asked = 0;
    hooks.conflict_ask = [&](conflict_question& q) {
        ++asked;
        EXPECT_TRUE(q.silent);
        EXPECT_EQ(q.old_index, 0);
        EXPECT_EQ(q.incoming->nam, "A");
        if (reply == conflict_answer::keep_both) {
            q.incoming->nam = "A7";
            q.incoming->kom = "other";
        }
        return reply;
    };
    edit(i, [&] {
        type(WAYPOINT.nam, "A");
        ok();
        EXPECT_TRUE(WAYPOINT.form.shown);
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.nam);
        reply = conflict_answer::keep_both;
        ok();
    });
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(wp(i).nam, "A7");
    EXPECT_EQ(wp(i).kom, "other");
    edit(i, [&] { // one's own key is no conflict
        type(WAYPOINT.alt_feld, "1");
        ok();
    });
    EXPECT_EQ(asked, 2);
}

TEST_F(EditorTest, ACommentServesAsNameOfANamelessWaypoint)
{
    add({.nam = "HUTTE", .pos = at(1, 1)});
    const auto name_from = [](const std::string& comment) {
        const int i = enter(
            [&] {
                type(WAYPOINT.kom, comment);
                type(WAYPOINT.lat, "N2");
                ok();
            },
            at(3, 3));
        return i < 0 ? std::string("none") : wp(i).nam;
    };
    EXPECT_EQ(name_from("H\xFCtte"), "HUTTE1");
    EXPECT_EQ(name_from("Baldenweg"), "BALDEN");
    EXPECT_EQ(name_from("@ABCHof"), "HOF");
    EXPECT_EQ(name_from("@ABC"), "ABC");
}

TEST_F(EditorTest, ANewWaypointWithoutNameAndCommentIsGivenUp)
{
    add({.nam = "A", .pos = at(1, 1)});
    store.wp_dirty = false;
    EXPECT_EQ(enter(
                  [] {
                      type(WAYPOINT.lat, "N2");
                      ok();
                      EXPECT_FALSE(WAYPOINT.form.shown);
                  },
                  at(3, 3)),
              -1);
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_EQ(Form1.Waypl2.rows.rows.size(), 1U);
    EXPECT_EQ(user.numbers(), ints{});
    EXPECT_FALSE(store.wp_dirty);
}

TEST_F(EditorTest, AStoredWaypointNeverLosesItsName)
{
    const int i = add({.nam = "A", .pos = at(1, 1)});
    edit(i, [&] {
        type(WAYPOINT.nam, "");
        type(WAYPOINT.lat, "N2");
        ok();
        EXPECT_EQ(user.numbers(), (ints{7836}));
        EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.nam);
    });
    EXPECT_EQ(wp(i).nam, "A");
}

TEST_F(EditorTest, RenamingAWaypointOfTwoRoutesRewritesBothAndNamesThemOnce)
{
    const int i = add({.nam = "A", .pos = at(1, 1)});
    add({.nam = "B", .pos = at(2, 2)});
    route_add(route_of("A$B$A$"));
    route_add(route_of("B$"));
    route_add(route_of("B$A$"));
    int refreshed = 0;
    hooks.route_refresh = [&] { ++refreshed; };
    edit(i, [] {
        type(WAYPOINT.nam, "C");
        ok();
    });
    EXPECT_EQ(store.rou[0].wps, "C$B$C$");
    EXPECT_EQ(store.rou[2].wps, "B$C$");
    ASSERT_EQ(user.numbers(), (ints{4340}));
    EXPECT_EQ(user.messages[0].text, text(4340, "C", "1, 3"));
    EXPECT_EQ(user.messages[0].title, text(1650));
    EXPECT_GT(refreshed, 0);
}

TEST_F(EditorTest, TheReferenceFollowsItsWaypoint)
{
    const int i = add({.nam = "A", .pos = at(1, 1)});
    refer_to(i);
    edit(i, [] {
        type(WAYPOINT.nam, "B");
        type(WAYPOINT.lat, "N2");
        ok();
    });
    EXPECT_EQ(store.refp_name, "B");
    EXPECT_EQ(store.refp_pos, wp(i).pos);
    EXPECT_EQ(wp(i).dist, 0);
}

TEST_F(EditorTest, ChangedValuesAreOfferedToAllMarkedWaypoints)
{
    const int a = add({.nam = "A", .pos = at(1, 1)});
    const int b = add({.nam = "B", .pos = at(2, 2), .prox = 3});
    const int c = add({.nam = "C", .pos = at(3, 3)});
    mark({a, b});
    user.answers = {answer::yes, answer::no, answer::yes};
    edit(a, [] {
        choose_symbol("Car");
        choose(WAYPOINT.Symbmode, 1);
        type(WAYPOINT.Prox_feld, "2");
        ok();
    });
    EXPECT_EQ(user.numbers(), (ints{4350, 4360, 4370}));
    EXPECT_EQ(symb_ext(wp(b).symb), "Car");
    EXPECT_EQ(wp(b).symbmode, 0);
    EXPECT_EQ(wp(b).prox, 20);
    EXPECT_EQ(wp(c).prox, 0);
}

TEST_F(EditorTest, NothingIsOfferedWhenOnlyTheWaypointItselfIsMarked)
{
    const int a = add({.nam = "A", .pos = at(1, 1)});
    add({.nam = "B", .pos = at(2, 2)});
    mark({a});
    edit(a, [] {
        type(WAYPOINT.Prox_feld, "2");
        ok();
    });
    EXPECT_EQ(user.numbers(), ints{});
}

// From the main window
// -------------------------------------------------------------------------------------------------

TEST_F(EditorTest, ButtonsAndADoubleClickOpenIt)
{
    add({.nam = "A", .pos = at(1, 1)});
    add({.nam = "B", .pos = at(2, 2)});
    std::vector<std::string> opened;
    while_open([&] { opened.push_back(WAYPOINT.nam.text); });
    Form1.Waypl2.rows.current = 1;
    Form1.Edit_w[1].click();
    Form1.Waypl2.row_open(0);
    Form1.Edit_w[0].click();
    EXPECT_EQ(opened, (std::vector<std::string>{"B", "A", ""}));
    EXPECT_EQ(WAYPOINT.form.focus, &WAYPOINT.nam);
    EXPECT_TRUE(Form1.Edit_w[0].enabled);
}

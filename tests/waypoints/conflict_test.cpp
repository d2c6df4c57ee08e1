#include "waypoints/conflict.h"

#include "core/code_page.h"
#include "core/text_tools.h"
#include "core/trap.h"
#include "core/wayp_insert.h"
#include "tests/waypoints/list_fixture.h"

#include <deque>
#include <functional>

using namespace velkoro;

namespace {

/// A user who does one thing after the other in the open window; then he closes it.
struct Conflict : ListTest {
    std::deque<std::function<void()>> acts{};
    int opened = 0;

    Conflict()
    {
        platform.wait_closed = [this](window& w) {
            ++opened;
            while (w.shown && !acts.empty()) {
                const auto act = acts.front();
                acts.pop_front();
                act();
            }
        };
        hooks.distance = [](const pos_rec&, const pos_rec&) { return 0.417; };
        hooks.position_text = [](const pos_rec& p) {
            return "N" + std::to_string(p.lat) + " E" + std::to_string(p.lon);
        };
        hooks.symbols_in_use = [] { return false; };
    }
    static void choose(int option)
    {
        for (int n = 0; n < 3; ++n)
            einfüg_q.wp_sel[n].checked = n == option;
        einfüg_q.wp_sel[option].click();
    }
    static void type(control& field, const std::string& text)
    {
        field.text = text;
        if (field.change)
            field.change();
    }
    static void press_ok() { einfüg_q.OK.click(); }
    void answer_with(int option)
    {
        acts.emplace_back([option] {
            choose(option);
            press_ok();
        });
    }
    /// A record named HUT is stored, another one comes.
    wayp_rec incoming{.nam = "HUT", .kom = "new", .pos = {2 << 20, 0}};
    conflict_question question()
    {
        if (store.wp_top < 0)
            add({.nam = "HUT", .kom = "old", .pos = {1 << 20, 0}});
        return {.old_index = 0, .incoming = &incoming};
    }
};

} // namespace

// Asking
// ----------------------------------------------------------------------------------------------

TEST_F(Conflict, ShowsDistanceBothRecordsAndAFreeName)
{
    conflict_question q = question();
    acts.emplace_back([] {
        EXPECT_EQ(einfüg_q.form.caption, text(720));
        EXPECT_EQ(einfüg_q.entf.caption, "0.42 km");
        EXPECT_EQ(einfüg_q.neunam.text, "HUT1");
        EXPECT_EQ(einfüg_q.kom.text, "new");
        EXPECT_NE(einfüg_q.beschr_a.caption.find("/ old"), std::string::npos);
        EXPECT_NE(einfüg_q.beschr_n.caption.find("/ new"), std::string::npos);
        EXPECT_EQ(einfüg_q.wp_sel[sel_old].caption, text(723) + " HUT");
        EXPECT_EQ(einfüg_q.wp_sel[sel_new].caption, text(725) + " HUT");
        EXPECT_FALSE(einfüg_q.beschr_a.tooltip.empty());
        EXPECT_NE(einfüg_q.beschr_a.tooltip, einfüg_q.beschr_n.tooltip);
        EXPECT_FALSE(einfüg_q.ohne.checked);
    });
    conflict_ask(q);
    EXPECT_EQ(opened, 1);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Conflict, GivesTheAnswerChosen)
{
    conflict_question q = question();
    answer_with(sel_old);
    EXPECT_EQ(hooks.conflict_ask(q), conflict_answer::keep_old);
    answer_with(sel_new);
    EXPECT_EQ(hooks.conflict_ask(q), conflict_answer::take_new);
    EXPECT_EQ(incoming.nam, "HUT");
    answer_with(sel_both);
    EXPECT_EQ(hooks.conflict_ask(q), conflict_answer::keep_both);
    EXPECT_EQ(incoming.nam, "HUT1");
    EXPECT_EQ(incoming.kom, "new");
    EXPECT_FALSE(q.remember);
    EXPECT_FALSE(einfüg_q.form.shown);
}

TEST_F(Conflict, PresetsTheOptionOfLastTimeAndNotTheRefusalToAskAgain)
{
    conflict_question q = question();
    acts.emplace_back([] {
        EXPECT_TRUE(einfüg_q.wp_sel[sel_both].checked) << "at first nothing gets lost";
        EXPECT_TRUE(einfüg_q.neunam.enabled);
        einfüg_q.ohne.checked = true;
        choose(sel_new);
        EXPECT_FALSE(einfüg_q.neunam.enabled);
        EXPECT_FALSE(einfüg_q.kom.enabled);
        press_ok();
    });
    conflict_ask(q);
    EXPECT_TRUE(q.remember);
    acts.emplace_back([] {
        EXPECT_FALSE(einfüg_q.wp_sel[sel_both].checked);
        EXPECT_TRUE(einfüg_q.wp_sel[sel_new].checked);
        EXPECT_FALSE(einfüg_q.neunam.enabled);
        EXPECT_FALSE(einfüg_q.ohne.checked);
        EXPECT_EQ(einfüg_q.form.focus, &einfüg_q.wp_sel[sel_new]);
        choose(sel_both);
        EXPECT_TRUE(einfüg_q.neunam.enabled);
        press_ok();
    });
    conflict_ask(q);
    EXPECT_FALSE(q.remember);
    acts.emplace_back([] { EXPECT_EQ(einfüg_q.form.focus, &einfüg_q.neunam); });
    conflict_ask(q);
}

TEST_F(Conflict, CancelAndClosingEndTheBatchAndLeaveWhatCameBefore)
{
    question();
    for (const bool by_button : {true, false}) {
        acts.clear();
        if (by_button)
            acts.emplace_back([] { einfüg_q.Abbr.click(); });
        else
            acts.emplace_back([] { close_window(einfüg_q.form); });
        wayp_rec before{.nam = by_button ? "ONE" : "TWO",
                        .pos = {by_button ? 5 << 20 : 6 << 20, 0}};
        wayp_rec w = incoming;
        wayp_rec report;
        wayp_insert(report, batch_open);
        wayp_insert(before, 0);
        EXPECT_THROW(wayp_insert(w, 0), batch_cancelled);
        wayp_insert(report, batch_close);
        EXPECT_EQ(wp_find_key(before.nam, "", -1, store.wp_top), store.wp_top);
        EXPECT_EQ(store.wp[0].kom, "old");
    }
    EXPECT_EQ(opened, 2);
}

TEST_F(Conflict, AQuestionAboutNoStoredRecordKeepsTheOldOneUnasked)
{
    conflict_question q{.old_index = 5, .incoming = &incoming};
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_old);
    q = {.old_index = 0, .incoming = nullptr};
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_old);
    EXPECT_EQ(opened, 0);
}

TEST_F(Conflict, ASecondQuestionWhileOneStandsEndsItsOwnBatch)
{
    conflict_question q = question();
    wayp_rec other = incoming;
    conflict_question second{.old_index = 0, .incoming = &other};
    acts.emplace_back([&] {
        EXPECT_EQ(conflict_ask(second), conflict_answer::cancel_batch);
        EXPECT_TRUE(einfüg_q.form.shown);
        choose(sel_new);
        press_ok();
    });
    EXPECT_EQ(conflict_ask(q), conflict_answer::take_new);
    EXPECT_EQ(opened, 1);
}

// A name for the new one
// ----------------------------------------------------------------------------------------------

TEST_F(Conflict, ComesBackWithAFreeNameUntilTheUsersNameIsFree)
{
    conflict_question q = question();
    add({.nam = "BARN", .pos = {9 << 20, 0}});
    add({.nam = "BARN1", .pos = {10 << 20, 0}});
    acts.emplace_back([] {
        type(einfüg_q.neunam, "BARN");
        press_ok();
    });
    acts.emplace_back([] {
        EXPECT_TRUE(einfüg_q.form.shown);
        EXPECT_EQ(einfüg_q.neunam.text, "BARN2");
        EXPECT_EQ(einfüg_q.form.focus, &einfüg_q.neunam);
        type(einfüg_q.neunam, "HUT");
        press_ok();
    });
    acts.emplace_back([] {
        EXPECT_EQ(einfüg_q.neunam.text, "HUT1");
        type(einfüg_q.neunam, "CABIN");
        type(einfüg_q.kom, "by the lake");
        press_ok();
    });
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_both);
    EXPECT_EQ(user.numbers(), (std::vector<int>{735, 735}));
    EXPECT_NE(user.messages[0].text.find("BARN2"), std::string::npos);
    EXPECT_EQ(incoming.nam, "CABIN");
    EXPECT_EQ(incoming.kom, "by the lake");
}

TEST_F(Conflict, NeedsAName)
{
    conflict_question q = question();
    acts.emplace_back([] {
        type(einfüg_q.neunam, "");
        press_ok();
        EXPECT_EQ(einfüg_q.neunam.text, "HUT1");
        press_ok();
    });
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_both);
    EXPECT_EQ(user.numbers(), (std::vector<int>{736}));
    EXPECT_EQ(incoming.nam, "HUT1");
}

TEST_F(Conflict, CleansTheNameWhileItIsTyped)
{
    conflict_question q = question();
    acts.emplace_back([] {
        type(einfüg_q.neunam, "hütte"_w);
        EXPECT_EQ(einfüg_q.neunam.text, "HUTTE");
        type(einfüg_q.neunam, "A B.");
        EXPECT_EQ(einfüg_q.neunam.text, "A-B-") << "a character for a character";
        store.wp_ext_chars = true;
        type(einfüg_q.neunam, "A ");
        EXPECT_EQ(einfüg_q.neunam.text, "A ") << "more may follow the blank";
        press_ok();
    });
    conflict_ask(q);
    EXPECT_EQ(incoming.nam, "A");
}

TEST_F(Conflict, PutsTheTailOfALongNameInFrontOfTheComment)
{
    conflict_question q = question();
    acts.emplace_back([] {
        type(einfüg_q.neunam, "CABIN27");
        type(einfüg_q.kom, "@123lake");
        press_ok();
    });
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_both);
    EXPECT_EQ(user.numbers(), (std::vector<int>{2035}));
    EXPECT_EQ(incoming.nam, "CABIN2");
    EXPECT_EQ(incoming.kom, "@1237<lake");
}

TEST_F(Conflict, TellsOfLongNamesOnceABatch)
{
    question();
    wayp_rec report;
    wayp_insert(report, batch_open);
    for (const char* name : {"CABIN27", "STABLE9"}) {
        acts.emplace_back([name] {
            type(einfüg_q.neunam, name);
            press_ok();
        });
        wayp_rec w = incoming;
        wayp_insert(w, 0);
    }
    wayp_insert(report, batch_close);
    EXPECT_EQ(user.count(2035), 1);
    EXPECT_EQ(store.wp[1].nam, "CABIN2");
    EXPECT_EQ(store.wp[2].nam, "STABLE");
}

TEST_F(Conflict, ANameIsFreeUnderAnotherPartOfTheComment)
{
    conflict_question q = question();
    acts.emplace_back([] {
        type(einfüg_q.neunam, "HUT");
        type(einfüg_q.kom, "@002");
        press_ok();
    });
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_both);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(incoming.nam, "HUT");
    EXPECT_EQ(incoming.kom, "@002");
}

// Asked by the editor
// ----------------------------------------------------------------------------------------------

TEST_F(Conflict, TheEditorsQuestionHidesWhatDoesNotConcernIt)
{
    conflict_question q = question();
    q.silent = true;
    conflicts.option = sel_new;
    acts.emplace_back([] {
        for (const control* c :
             {&einfüg_q.ohne, &einfüg_q.Abbr, &einfüg_q.wp_sel[sel_new], &einfüg_q.beschr_n})
            EXPECT_FALSE(c->visible) << c->name;
        EXPECT_TRUE(einfüg_q.wp_sel[sel_both].checked) << "the hidden one cannot be preset";
        EXPECT_TRUE(einfüg_q.wp_sel[sel_old].visible);
    });
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_old) << "closed without an answer";
    EXPECT_EQ(incoming.nam, "HUT");
    answer_with(sel_both);
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_both);
    EXPECT_EQ(incoming.nam, "HUT1");
    q.silent = false;
    acts.emplace_back([] {
        EXPECT_TRUE(einfüg_q.ohne.visible);
        EXPECT_TRUE(einfüg_q.wp_sel[sel_new].visible);
    });
    conflict_ask(q);
}

TEST_F(Conflict, TheWaypointInTheEditorDoesNotTakeItsOwnName)
{
    question();
    add({.nam = "BARN", .pos = {9 << 20, 0}});
    conflict_question q{.old_index = 0, .incoming = &incoming, .silent = true, .skip_index = 1};
    acts.emplace_back([] {
        type(einfüg_q.neunam, "BARN");
        press_ok();
    });
    EXPECT_EQ(conflict_ask(q), conflict_answer::keep_both);
    EXPECT_EQ(incoming.nam, "BARN");
    EXPECT_TRUE(user.messages.empty());
}

// In a batch
// ----------------------------------------------------------------------------------------------

TEST_F(Conflict, PositionsEqualButForTheirTenLowestBitsMeet)
{
    add({.nam = "HUT", .kom = "old", .pos = {(7 << 10) + 1, (9 << 10) + 1000}});
    wayp_rec w{.nam = "CABIN", .kom = "new", .pos = {(7 << 10) + 1023, 9 << 10}};
    acts.emplace_back([] {
        EXPECT_EQ(einfüg_q.wp_sel[sel_old].caption, text(723) + " HUT");
        EXPECT_EQ(einfüg_q.wp_sel[sel_new].caption, text(725) + " CABIN");
        EXPECT_EQ(einfüg_q.neunam.text, "CABIN") << "free as it is";
        choose(sel_new);
        press_ok();
    });
    wayp_rec report;
    wayp_insert(report, batch_open);
    EXPECT_EQ(wayp_insert(w, 0), 0);
    wayp_insert(report, batch_close);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(store.wp[0].nam, "CABIN");
    EXPECT_NE(report.kom.find(text(2020, 1)), std::string::npos);
}

TEST_F(Conflict, AnAnswerForTheRestHoldsForItsKindUntilTheBatchEnds)
{
    add({.nam = "HUT", .kom = "old", .pos = {1 << 20, 0}});
    add({.nam = "BARN", .kom = "old", .pos = {2 << 20, 0}});
    add({.nam = "LAKE", .kom = "old", .pos = {3 << 20, 0}});
    acts.emplace_back([] {
        einfüg_q.ohne.checked = true;
        choose(sel_new);
        press_ok();
    });
    answer_with(sel_old);
    wayp_rec report;
    wayp_insert(report, batch_open);
    for (wayp_rec w : {wayp_rec{.nam = "HUT", .kom = "a", .pos = {1 << 20, 0}},
                       wayp_rec{.nam = "BARN", .kom = "b", .pos = {2 << 20, 0}},
                       wayp_rec{.nam = "POND", .kom = "c", .pos = {3 << 20, 0}}})
        wayp_insert(w, 0);
    EXPECT_EQ(opened, 2) << "by name once, by position once";
    wayp_insert(report, batch_close);
    EXPECT_EQ(store.wp[0].kom, "a");
    EXPECT_EQ(store.wp[1].kom, "b");
    EXPECT_EQ(store.wp[2].kom, "old");
    answer_with(sel_old);
    wayp_insert(report, batch_open);
    wayp_rec again{.nam = "HUT", .kom = "d", .pos = {1 << 20, 0}};
    wayp_insert(again, 0);
    wayp_insert(report, batch_close);
    EXPECT_EQ(opened, 3);
    EXPECT_EQ(store.wp[0].kom, "a");
}

TEST_F(Conflict, KeepingBothAppendsUnderTheUsersName)
{
    question();
    acts.emplace_back([] {
        type(einfüg_q.neunam, "CABIN");
        press_ok();
    });
    wayp_rec report;
    wayp_insert(report, batch_open);
    EXPECT_EQ(wayp_insert(incoming, 0), 1);
    wayp_insert(report, batch_close);
    EXPECT_EQ(rows(), (lines{"HUT", "CABIN"}));
    EXPECT_TRUE(report.kom.empty());
}

TEST_F(Conflict, ABatchWithoutAChangeHasNoReportWhenThereIsNothingToTell)
{
    wayp_rec report;
    wayp_insert(report, batch_open);
    wayp_insert(report, batch_close);
    EXPECT_TRUE(report.kom.empty());
    EXPECT_EQ(opened, 0);
}

// Summaries
// ----------------------------------------------------------------------------------------------

TEST_F(Conflict, SummariesStandInOneLayout)
{
    symbols.rows = {{.name = "Restaurant"}, {.name = "Haus"}};
    hooks.symbols_in_use = [] { return true; };
    const wayp_rec old{.nam = "A",
                       .kom = "Baldenweger Hütte"_w,
                       .pos = {11, 22},
                       .dat = 1,
                       .prox = 5,
                       .symb = 0,
                       .alt = 1310};
    const wayp_rec rec{
        .nam = "A", .kom = "HUETTE", .pos = {33, 44}, .dat = 86400, .symb = 1, .alt = 98};
    const conflict_summary s = conflict_summaries(old, rec);
    EXPECT_EQ(s.old_text,
              "1310 m / Prox 0.5   Restaurant  1989-12-31: N11 E22\n/ Baldenweger Hütte"_w);
    EXPECT_EQ(s.new_text, "  98 m / Prox -.-   Haus        1990-01-01: N33 E44\n/ HUETTE");
}

TEST_F(Conflict, SummariesLeaveOutWhatNeitherRecordHas)
{
    const wayp_rec old{.nam = "A", .kom = "", .pos = {11, 22}};
    const wayp_rec rec{.nam = "A", .kom = "x", .pos = {33, 44}, .prox = -10};
    const conflict_summary s = conflict_summaries(old, rec);
    EXPECT_EQ(s.old_text, " / Prox -.-: N11 E22\n/");
    EXPECT_EQ(s.new_text, " / Prox ''': N33 E44\n/ x");
}

TEST_F(Conflict, SummariesBreakALongComment)
{
    const std::string word(40, 'a');
    wayp_rec old{.nam = "A", .kom = word + " " + word, .pos = {11, 22}};
    wayp_rec rec{.nam = "A", .kom = std::string(1000, 'b'), .pos = {33, 44}};
    const conflict_summary s = conflict_summaries(old, rec);
    EXPECT_TRUE(s.old_text.ends_with("\n/ " + word + "\n  " + word)) << s.old_text;
    EXPECT_TRUE(s.new_text.ends_with("b ...")) << s.new_text;
    for (const auto line : split_lines(s.new_text))
        EXPECT_LE(line.size(), 64U);
}

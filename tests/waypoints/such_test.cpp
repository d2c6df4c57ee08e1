#include "waypoints/such.h"

#include "core/code_page.h"
#include "tests/waypoints/list_fixture.h"

#include <chrono>
#include <functional>
#include <utility>

using namespace velkoro;

namespace {

struct Search : ListTest {
    std::function<void()> in_window{};
    int opened = 0;

    Search()
    {
        such_install();
        such.form.shown = false;
        for (control* c : such.form.controls)
            static_cast<look&>(*c) = c->design; // the window keeps its state between searches
        platform.wait_closed = [this](window&) {
            ++opened;
            if (in_window)
                in_window();
        };
        add({.nam = "HUTTE", .kom = "Baldenweger Hütte"_w, .pos = {1 << 20, 0}});
        add({.nam = "BALDHT", .kom = "hütte am See"_w, .pos = {2 << 20, 0}});
        add({.nam = "SEE", .kom = "Feldsee", .pos = {3 << 20, 0}});
    }
    ~Search() override { such.form.shown = false; }
    static void choose(control (&options)[2], int n)
    {
        options[0].checked = n == 0;
        options[1].checked = n == 1;
        if (options[n].click)
            options[n].click();
    }
    static void type(const std::string& text)
    {
        such.stext.text = text;
        such.stext.change();
    }
    /// Opens the window from the menu, sets it, presses OK; true when it has closed itself.
    bool search(const std::string& text, int field, int place, bool add_marks = false)
    {
        bool closed = false;
        in_window = [&] {
            choose(such.nam, field);
            choose(such.Anf, place);
            such.mark.checked = add_marks;
            type(text);
            such.OK.click();
            closed = !such.form.shown;
        };
        Form1.suchen.click();
        return closed;
    }
};
constexpr int names = 0, comments = 1, beginning = 0, anywhere = 1;

} // namespace

TEST_F(Search, OpensFromTheMenuWithTheTextReadyToBeTyped)
{
    in_window = [] {
        EXPECT_TRUE(such.form.shown);
        EXPECT_EQ(such.form.caption, text(700));
        EXPECT_EQ(such.form.focus, &such.stext);
        EXPECT_TRUE(such.nam[0].checked);
        EXPECT_TRUE(such.Anf[0].checked);
        EXPECT_FALSE(such.mark.checked);
    };
    Form1.suchen.click();
    EXPECT_EQ(opened, 1);
}

TEST_F(Search, FindsNamesByTheirBeginning)
{
    EXPECT_TRUE(search("BAL", names, beginning));
    EXPECT_EQ(rows(), (lines{"HUTTE", "*BALDHT", "SEE"}));
    EXPECT_FALSE(search("ALD", names, beginning));
}

TEST_F(Search, FindsAPartOfAName)
{
    EXPECT_TRUE(search("T", names, anywhere));
    EXPECT_EQ(rows(), (lines{"*HUTTE", "*BALDHT", "SEE"}));
}

TEST_F(Search, FindsAPartOfAWordAnywhereInACommentWhateverItsCase)
{
    EXPECT_TRUE(search("HÜT"_w, comments, anywhere));
    EXPECT_EQ(rows(), (lines{"*HUTTE", "*BALDHT", "SEE"}));
    EXPECT_TRUE(search("see", comments, anywhere));
    EXPECT_EQ(rows(), (lines{"HUTTE", "*BALDHT", "*SEE"}));
}

TEST_F(Search, ComparesTheBeginningOfACommentAsItWasTyped)
{
    EXPECT_TRUE(search("hütte"_w, comments, beginning));
    EXPECT_EQ(rows(), (lines{"HUTTE", "*BALDHT", "SEE"}));
    EXPECT_FALSE(search("Hütte"_w, comments, beginning));
}

TEST_F(Search, TurnsTheTextToCapitalsForNamesOnly)
{
    choose(such.nam, comments);
    type("hütte"_w);
    EXPECT_EQ(such.stext.text, "hütte"_w);
    choose(such.nam, names);
    EXPECT_EQ(such.stext.text, "HÜTTE"_w);
    type("see");
    EXPECT_EQ(such.stext.text, "SEE");
}

TEST_F(Search, LeavesBlanksAroundTheTextOut)
{
    EXPECT_TRUE(search("  SEE ", names, beginning));
    EXPECT_EQ(rows(), (lines{"HUTTE", "BALDHT", "*SEE"}));
}

TEST_F(Search, ABlankTextClosesTheWindowAndLeavesTheMarks)
{
    mark(0);
    EXPECT_TRUE(search("   ", names, anywhere));
    EXPECT_EQ(rows(), (lines{"*HUTTE", "BALDHT", "SEE"}));
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Search, ReplacesTheMarksOrAddsToThem)
{
    mark(2);
    EXPECT_TRUE(search("HUT", names, beginning, true));
    EXPECT_EQ(rows(), (lines{"*HUTTE", "BALDHT", "*SEE"}));
    EXPECT_TRUE(search("BALD", names, beginning, false));
    EXPECT_EQ(rows(), (lines{"HUTTE", "*BALDHT", "SEE"}));
}

TEST_F(Search, CountsTheMarksAtOnce)
{
    EXPECT_TRUE(search("T", names, anywhere));
    EXPECT_EQ(Form1.anz.caption, text(7651, 2, 3));
    EXPECT_TRUE(Form1.B_lösch.enabled);
    EXPECT_EQ(shell.mark_defer, 0);
}

TEST_F(Search, BringsTheFirstMatchOfTheListIntoView)
{
    sort_by(sort_entry::name);
    ASSERT_EQ(rows(), (lines{"BALDHT", "HUTTE", "SEE"}));
    list().show_row = -1;
    EXPECT_TRUE(search("E", names, anywhere));
    EXPECT_EQ(list().show_row, 1);
    EXPECT_EQ(list().current, 1);
    EXPECT_EQ(store.wp_cur, wp_index(1));
}

TEST_F(Search, WithoutAMatchAStopSignComesAndTheWindowStays)
{
    mark(1);
    EXPECT_FALSE(search("NOWHERE", names, anywhere));
    EXPECT_EQ(user.numbers(), (std::vector<int>{7730}));
    EXPECT_EQ(user.messages[0].icon, icon::critical);
    EXPECT_NE(user.messages[0].text.find("NOWHERE"), std::string::npos);
    EXPECT_EQ(such.form.focus, &such.stext);
    EXPECT_EQ(rows(), (lines{"HUTTE", "BALDHT", "SEE"})) << "the marks went before the search";
    EXPECT_FALSE(Form1.B_lösch.enabled);
}

TEST_F(Search, KeepsTextAndOptionsForTheNextSearchButNotTheOneForTheMarks)
{
    search("hütte"_w, comments, anywhere, true);
    in_window = [] {
        EXPECT_EQ(such.stext.text, "hütte"_w);
        EXPECT_TRUE(such.nam[1].checked);
        EXPECT_TRUE(such.Anf[1].checked);
        EXPECT_FALSE(such.mark.checked);
    };
    Form1.suchen.click();
    EXPECT_EQ(opened, 2);
}

TEST_F(Search, CancelClosesTheWindow)
{
    in_window = [] {
        type("SEE");
        such.Abbr.click();
        EXPECT_FALSE(such.form.shown);
    };
    Form1.suchen.click();
    EXPECT_EQ(rows(), (lines{"HUTTE", "BALDHT", "SEE"}));
}

TEST_F(Search, ServesEventsOnceASecond)
{
    platform.ticks = [this] { return user.time_s += 0.4; };
    user.pumps = 0;
    for (int n = 0; n < 27; ++n)
        add({.nam = "N" + std::to_string(n), .pos = {(10 + n) << 20, 0}});
    EXPECT_TRUE(search("N2", names, beginning));
    EXPECT_EQ(user.pumps, 10) << "30 rows of 0.4 s: every third one";
}

TEST_F(Search, AWindowClosedMeanwhileEndsTheSearch)
{
    platform.ticks = [this] { return user.time_s += 2; };
    user.on_pump = [] {
        such.OK.click(); // is under way already
        close_window(such.form);
    };
    EXPECT_TRUE(search("E", names, anywhere));
    EXPECT_EQ(rows(), (lines{"*HUTTE", "BALDHT", "SEE"}));
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Search, RowsThatGoMeanwhileAreNotMissed)
{
    platform.ticks = [this] { return user.time_s += 2; };
    bool once = true;
    user.on_pump = [&] {
        if (std::exchange(once, false))
            wayp_delete(2);
    };
    EXPECT_TRUE(search("HT", names, anywhere));
    EXPECT_EQ(rows(), (lines{"HUTTE", "*BALDHT"}));
}

TEST_F(Search, GoesThroughAFullListWithoutAPause)
{
    for (int n = 3; n < 32000; ++n)
        store.wp.push_back({.nam = "W" + std::to_string(n), .kom = "a comment of usual length"});
    store.wp_top = 31999;
    list_refill();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(search("USUAL", comments, anywhere));
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(wayp_list.marks, 31997);
    EXPECT_LT(spent.count(), 3.0) << "with the sanitizers; a twentieth of that without";
}

TEST_F(Search, TheEntryFollowsTheRows)
{
    list_states();
    EXPECT_TRUE(Form1.suchen.enabled);
    wayp_clear();
    list_refill();
    EXPECT_FALSE(Form1.suchen.enabled);
}

#include "tests/core/shell_fixture.h"

#include "core/hooks.h"
#include "core/info.h"
#include "core/log.h"

#include <stdexcept>

using namespace velkoro;

namespace {

struct Shell : ShellTest {
    Shell()
    {
        ini("");
        shell_start("");
        shell.trail.clear();
    }
    static void unsaved_waypoint()
    {
        wayp_rec w{.nam = "ZUG"};
        wayp_insert(w, -10);
        wayp_insert(w, 0);
        wayp_insert(w, 1);
        store.wp_dirty = true;
    }
    static void unsaved_track()
    {
        track_append({.neu = -1});
        store.trk_dirty = true;
    }
};
using ShellClose = Shell;

} // namespace

// Shutdown
// ----------------------------------------------------------------------------------------------

TEST_F(ShellClose, WithoutChangesItEndsWithoutAQuestion)
{
    EXPECT_TRUE(close_window(Form1.form));
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(quits, 1);
    EXPECT_FALSE(Form1.form.shown);
    EXPECT_EQ(shell.trail,
              (lines{"save_waypoints", "save_track", "start_folder", "options", "layout", "end"}));
}

TEST_F(ShellClose, TheMenuEntryEndsTheProgramToo)
{
    Form1.Ende.click();
    EXPECT_EQ(quits, 1);
}

TEST_F(ShellClose, ChangedWaypointsAreSavedOnYes)
{
    unsaved_waypoint();
    settings.wp_file = "/data/harz.wp";
    std::vector<int> modes;
    hooks.wayp_save = [&](int mode) { return modes.push_back(mode), true; };
    user.answers = {answer::yes};
    EXPECT_TRUE(shell_close());
    EXPECT_EQ(modes, (std::vector<int>{0}));
    ASSERT_EQ(user.numbers(), (std::vector<int>{1030}));
    EXPECT_EQ(user.messages[0].title, text(1040));
    EXPECT_EQ(user.messages[0].buttons, buttons::yes_no_cancel);
    EXPECT_NE(user.messages[0].text.find("harz.wp"), std::string::npos);
    EXPECT_EQ(quits, 1);
}

TEST_F(ShellClose, NoEndsWithoutSaving)
{
    unsaved_waypoint();
    hooks.wayp_save = [](int) -> bool { throw std::runtime_error("must not be called"); };
    user.answers = {answer::no};
    EXPECT_TRUE(shell_close());
    EXPECT_EQ(quits, 1);
}

TEST_F(ShellClose, CancelStays)
{
    unsaved_waypoint();
    user.answers = {answer::cancel};
    EXPECT_FALSE(close_window(Form1.form));
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(Form1.form.shown);
    EXPECT_EQ(shell.trail, (lines{"save_waypoints"}));
}

TEST_F(ShellClose, AFailedSaveIsReportedAndStays)
{
    unsaved_waypoint();
    hooks.wayp_save = [](int) { return false; };
    user.answers = {answer::yes};
    EXPECT_FALSE(shell_close());
    EXPECT_EQ(user.numbers(), (std::vector<int>{1030, 1050}));
    EXPECT_EQ(quits, 0);
}

TEST_F(ShellClose, ASaveThatThrowsStays)
{
    unsaved_waypoint();
    hooks.wayp_save = [](int) -> bool { throw std::runtime_error("disk full"); };
    user.answers = {answer::yes};
    EXPECT_FALSE(shell_close());
    EXPECT_EQ(quits, 0);
}

TEST_F(ShellClose, ChangedTracksAreAskedForAfterTheWaypoints)
{
    unsaved_waypoint();
    unsaved_track();
    hooks.track_save = [](int) { return false; };
    user.answers = {answer::no, answer::yes};
    EXPECT_FALSE(shell_close());
    EXPECT_EQ(user.numbers(), (std::vector<int>{1030, 1060, 1070}));
    EXPECT_EQ(user.messages[1].title, text(1040));

    hooks.track_save = [](int) { return true; };
    user.answers = {answer::no, answer::yes};
    EXPECT_TRUE(shell_close());
    EXPECT_EQ(quits, 1);
}

TEST_F(ShellClose, AnEmptyStoreIsNotWorthAQuestion)
{
    store.wp_dirty = store.trk_dirty = true;
    EXPECT_TRUE(shell_close());
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(ShellClose, SettingsAndWindowPositionAreWritten)
{
    Form1.form.left = 12.25;
    Form1.form.top = 7;
    Form1.form.width = 1120;
    Form1.form.height = 720;
    Form1.Waypl2.rows.columns = {{.width = 120}, {.width = 300}};
    Form1.sort.selected = 13;
    Form1.posform.selected = 1;
    Form1.Datum.selected = 0;
    settings.scale = 25000;
    shell_close();
    EXPECT_EQ(ini_get("Main", "pos_main"), "12.3 7.0 1120.0 720.0,420");
    EXPECT_EQ(ini_get("Main", "Opt"), "13 1 0");
    EXPECT_EQ(ini_get("Main", "Scale"), "25000");
    EXPECT_EQ(ini_get(settings.profile, "col_main"), "120 300");
}

TEST_F(ShellClose, TheStartFolderIsTheCurrentOneAgain)
{
    shell_close();
    EXPECT_EQ(std::filesystem::current_path(), home.start);
}

TEST_F(ShellClose, StepsOfUpperFoldersTakeTheirPlaceAndMayStay)
{
    shell_add(shell.shutdown, 5, "pos_rou", [] { return true; });
    shell_add(shell.shutdown, 2, "recording", [] { return false; });
    EXPECT_FALSE(shell_close());
    EXPECT_EQ(shell.trail, (lines{"save_waypoints", "save_track", "recording"}));
    EXPECT_EQ(quits, 0);
}

TEST_F(ShellClose, AFailureAfterTheSavesIsReportedAndTheProgramEnds)
{
    shell_add(shell.shutdown, 5, "bad", []() -> bool { throw std::runtime_error("no luck"); });
    EXPECT_TRUE(shell_close());
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "no luck in Form_Unload");
    EXPECT_EQ(quits, 1);
}

TEST_F(ShellClose, AJobUnderWayIsCancelledFirst)
{
    job.code = "W_O";
    EXPECT_FALSE(shell_close());
    EXPECT_TRUE(job.op_cancel);
    EXPECT_EQ(quits, 0);
}

// Periodic tasks
// ----------------------------------------------------------------------------------------------

TEST_F(Shell, AFileThatCameDuringAJobIsOpenedAfterIt)
{
    job.code = "W_O";
    Form1.DDE_1.text = "/b.wp";
    Form1.DDE_1.change();
    Form1.wayp_big_timer.tick();
    EXPECT_TRUE(opened.empty());
    job.code.clear();
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(opened, (lines{"/b.wp"}));
}

TEST_F(Shell, MarksAreCountedHalfASecondAfterTheLastChange)
{
    int counts = 0;
    hooks.mark_count = [&] {
        ++counts;
        shell.mark_defer = 0;
    };
    for (int i = 0; i < 10; ++i) { // a sweep of clicks
        shell.mark_defer = user.time_s;
        user.time_s += 0.2;
        Form1.wayp_big_timer.tick();
    }
    EXPECT_EQ(counts, 0);
    user.time_s += 0.4;
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(counts, 1);
    user.time_s += 5;
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(counts, 1) << "nothing is pending";
}

TEST_F(Shell, MarksChangedBeforeMidnightAreCountedAfterIt)
{
    int counts = 0;
    hooks.mark_count = [&] {
        ++counts;
        shell.mark_defer = 0;
    };
    user.time_s = 86399.9;
    shell.mark_defer = user.time_s;
    user.time_s = 0.1;
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(counts, 1);
}

TEST_F(Shell, AClockSetBackALittleIsNotMidnight)
{
    int counts = 0;
    hooks.mark_count = [&] { ++counts; };
    shell.mark_defer = user.time_s;
    user.time_s -= 9.9;
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(counts, 0);
    user.time_s -= 0.1;
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(counts, 1);
}

TEST_F(Shell, AFailingPeriodicTaskIsReportedAndTheTimerGoesOn)
{
    shell_add(shell.periodic, 1, "bad", []() -> bool { throw std::runtime_error("no luck"); });
    Form1.wayp_big_timer.tick();
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "no luck in wayp_big_timer");
    EXPECT_TRUE(Form1.wayp_big_timer.enabled);
}

TEST_F(Shell, TheTimerIsFastEnoughForTheMarkCount)
{
    EXPECT_LT(Form1.wayp_big_timer.value, 500);
}

TEST_F(Shell, UnsavedDataShowInTitleAndFileName)
{
    settings.wp_file = "/data/harz.wp";
    store.wp.push_back({.nam = "BROCKN"});
    store.wp_top = 0;
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(Form1.filnam.caption, "/data/harz.wp");
    EXPECT_FALSE(Form1.form.modified);
    store.wp_dirty = true;
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(Form1.filnam.caption, "/data/harz.wp *");
    EXPECT_TRUE(Form1.form.modified);
    ASSERT_NE(std::getenv("HOME"), nullptr);
    settings.wp_file = std::string(std::getenv("HOME")) + "/gps/harz.wp";
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(Form1.filnam.caption, "~/gps/harz.wp *");
}

// Menus
// ----------------------------------------------------------------------------------------------

TEST_F(Shell, TheLanguageChangesAtRunTimeInAllWindowsAndMenus)
{
    EXPECT_EQ(Form1.datei.caption, "&File");
    int told = 0;
    hooks.language_changed = [&] { ++told; };
    const control* entry = Form1.m_lang_sel[1].get();
    Form1.m_lang_sel[1]->click();
    EXPECT_EQ(Form1.datei.caption, "&Datei");
    EXPECT_EQ(Form1.sort.items[3], "Symbol");
    EXPECT_EQ(Form1.sort.items[2], "Höhe"_w);
    EXPECT_EQ(op.Abbr.caption, "Abbrechen");
    EXPECT_TRUE(Form1.m_lang_sel[1]->checked);
    EXPECT_FALSE(Form1.m_lang_sel[0]->checked);
    EXPECT_EQ(ini_get("Main", "Lang3"), "1");
    EXPECT_EQ(told, 1);
    EXPECT_EQ(Form1.m_lang_sel[1].get(), entry) << "its handler is the one that runs";
    Form1.m_lang_sel[0]->click();
    EXPECT_EQ(Form1.datei.caption, "&File");
}

TEST_F(Shell, TheCaptionOfASecondProgramSurvivesALanguageChange)
{
    Form1.form.caption = "VELkoro2";
    language_select(1);
    EXPECT_EQ(Form1.form.caption, "VELkoro2");
}

TEST_F(Shell, TheBackupSwitchIsStoredAtOnce)
{
    const bool before = settings.backup_on;
    Form1.backup.click();
    EXPECT_EQ(settings.backup_on, !before);
    EXPECT_EQ(Form1.backup.checked, !before);
    const std::string flags = ini_get(settings.profile, "Flags");
    Form1.backup.click();
    EXPECT_NE(ini_get(settings.profile, "Flags"), flags);
}

TEST_F(Shell, TheBlueBackgroundGoesOnAndOff)
{
    Form1.back_b.click();
    EXPECT_TRUE(Form1.back_b.checked);
    EXPECT_EQ(settings.list_back, 16776960U);
    EXPECT_EQ(Form1.Waypl2.back, 16776960U);
    Form1.back_b.click();
    EXPECT_FALSE(Form1.back_b.checked);
    EXPECT_EQ(Form1.Waypl2.back, own_colour);
}

TEST_F(Shell, SwitchingTheProfileReadsItsSettingsAndColumns)
{
    Form1.Waypl2.rows.columns = {{.width = 100}, {.width = 100}};
    user.inputs = {"Boat"};
    Form1.prof_neu.click();
    ASSERT_EQ(Form1.prof.size(), 2U);
    EXPECT_EQ(settings.profile, "Boat");
    EXPECT_TRUE(Form1.prof[1]->checked);
    Form1.Waypl2.rows.columns[0].width = 222;
    ini_put("Boat", "Port", "100");
    std::vector<std::string> steps;
    shell_add(shell.profile_out, 1, "",
              [&] { return steps.push_back("out " + settings.profile), true; });
    shell_add(shell.profile_in, 1, "",
              [&] { return steps.push_back("in " + settings.profile), true; });

    Form1.prof[0]->click();
    EXPECT_EQ(settings.profile, "Standard");
    EXPECT_EQ(Form1.Waypl2.rows.columns[0].width, 100);
    EXPECT_TRUE(Form1.prof[0]->checked);
    EXPECT_FALSE(Form1.prof[1]->checked);
    Form1.prof[1]->click();
    EXPECT_EQ(Form1.Waypl2.rows.columns[0].width, 222);
    EXPECT_TRUE(Form1.menu_com[9].checked);
    EXPECT_EQ(steps, (lines{"out Boat", "in Standard", "out Standard", "in Boat"}));
}

TEST_F(Shell, DeletingAProfileTakesItOutOfTheMenu)
{
    EXPECT_FALSE(Form1.prof_lösch.enabled) << "the only profile stays";
    user.inputs = {"Boat"};
    Form1.prof_neu.click();
    EXPECT_TRUE(Form1.prof_lösch.enabled);
    Form1.prof_lösch.click();
    ASSERT_EQ(Form1.prof.size(), 1U);
    EXPECT_EQ(settings.profile, "Standard");
    EXPECT_TRUE(Form1.prof[0]->checked);
    EXPECT_FALSE(Form1.prof_lösch.enabled);
}

TEST_F(Shell, HelpNeedsItsPages)
{
    EXPECT_FALSE(Form1.hilf[0].enabled);
    EXPECT_FALSE(Form1.hilf[1].enabled);
    EXPECT_TRUE(Form1.hilf[2].enabled);
    std::filesystem::create_directories(home.path / "help/en");
    home.put("help/en/index.txt", "index.html\tWelcome\t1\n");
    language_select(0);
    EXPECT_TRUE(Form1.hilf[0].enabled);
    std::vector<std::string> topics;
    platform.help = [&](const std::string& t) { topics.push_back(t); };
    Form1.hilf[0].click();
    Form1.hilf[1].click();
    EXPECT_EQ(topics, (lines{"index", "news"}));
}

TEST_F(Shell, TheAboutWindowNamesTheVersion)
{
    bool seen = false;
    platform.wait_closed = [&](window& w) {
        seen = &w == &info.form;
        EXPECT_TRUE(w.modal);
        EXPECT_NE(info.anz.caption.find("1."), std::string::npos);
        EXPECT_EQ(info.log_anz.caption, "");
        info.OK.click();
    };
    Form1.hilf[2].click();
    EXPECT_TRUE(seen);
    EXPECT_FALSE(info.form.shown);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Shell, APictureInTheAboutWindowOpensTheLogAndSaysSo)
{
    platform.wait_closed = [&](window& w) {
        user.answers = {answer::cancel};
        info.Bild.click();
        EXPECT_FALSE(log_book.log_on);
        info.Bild.click();
        EXPECT_TRUE(log_book.log_on);
        EXPECT_EQ(info.log_anz.caption, text(7916));
        info.Bild.click();
        w.shown = false;
    };
    Form1.hilf[2].click();
    EXPECT_EQ(user.numbers(), (std::vector<int>{7720, 7720})) << "the third click does nothing";
    EXPECT_TRUE(home.has("velkoro.log"));
    log_close();
}

TEST_F(Shell, AnEmptyListHasNothingToSaveAndBearsNoMark)
{
    store.wp_dirty = true; // a title was typed
    shell_show_state();
    EXPECT_FALSE(Form1.form.modified);
    EXPECT_TRUE(close_window(Form1.form));
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Shell, WhatNobodyServesIsDisabled)
{
    disable_uninstalled(Form1.form);
    EXPECT_FALSE(Form1.gar_off.enabled);
    EXPECT_FALSE(Form1.Routen_akt.enabled);
    EXPECT_TRUE(Form1.Ende.enabled);
    EXPECT_TRUE(Form1.m_lang.enabled);
    EXPECT_TRUE(Form1.datei.enabled);
}

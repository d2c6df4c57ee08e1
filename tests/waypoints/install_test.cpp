#include "waypoints/install.h"

#include "coords/install.h"
#include "core/cmd_open.h"
#include "tests/waypoints/list_fixture.h"
#include "waypoints/editor.h"

#include <algorithm>
#include <filesystem>

using namespace velkoro;

namespace {

/// The whole program without a screen: shell, list, native files.
struct Program : testing::Test {
    scripted_platform user{};
    program_folder home{};
    int quits = 0;

    Program()
    {
        home.put("velkoro.ini", "[Main]\r\nLang3=0\r\n");
        for (const char* table : {"Datum.ins", "SYMBOL_3.INS"})
            std::filesystem::copy_file(VELKORO_SOURCE_DIR + std::string("/data/") + table,
                                       home.path / table);
        std::filesystem::create_directory(home.path / "Waypoints");
        std::filesystem::copy_file(VELKORO_SOURCE_DIR "/data/Waypoints/sample.wp",
                                   home.path / "Waypoints/sample.wp");
        std::filesystem::create_directory(home.path / "Track");
        std::filesystem::copy_file(VELKORO_SOURCE_DIR "/data/Track/sample.t",
                                   home.path / "Track/sample.t");
        platform.quit = [this] { ++quits; };
        shell_install();
        coords_install();
        waypoints_install();
        disable_uninstalled(Form1.form);
    }
    ~Program() override
    {
        job.jobs.clear();
        Form1.Wayp_Datei_lesen.click = {};
        Form1.form.query_close = {};
        shell = {};
        wayp_list = {};
    }
    void tick(double seconds)
    {
        user.time_s += seconds;
        Form1.wayp_big_timer.tick();
    }
    static row_list& list() { return Form1.Waypl2.rows; }
    static std::vector<std::string> names()
    {
        std::vector<std::string> out;
        for (int i = 0; i <= store.wp_top; ++i)
            out.push_back(wp_key(i));
        std::ranges::sort(out);
        return out;
    }
};

} // namespace

TEST_F(Program, ABareNameOnTheCommandLineOpensTheLibraryInTheList)
{
    ASSERT_TRUE(shell_start("sample.wp"));
    EXPECT_TRUE(user.messages.empty()) << user.messages[0].text;
    EXPECT_GE(store.wp_top, 59);
    EXPECT_EQ(static_cast<int>(list().rows.size()), store.wp_top + 1);
    EXPECT_TRUE(settings.wp_file.ends_with("Waypoints/sample.wp"));
    EXPECT_FALSE(store.wp_dirty);
    for (std::size_t row = 1; row < list().rows.size(); ++row)
        EXPECT_LE(list().cell(static_cast<int>(row) - 1, 0), list().cell(static_cast<int>(row), 0));
    tick(0.2);
    EXPECT_TRUE(Form1.Wayp_Datei_Speich[0].enabled);
    EXPECT_FALSE(Form1.form.modified);
}

TEST_F(Program, PositionsFollowTheFormatChosen)
{
    ASSERT_TRUE(shell_start("sample.wp"));
    std::vector<std::string> shown;
    for (const int format : {0, 1, 2}) {
        Form1.posform.selected = format;
        Form1.posform.change();
        shown.push_back(list().cell(0, static_cast<int>(list_col::position)));
        EXPECT_TRUE(shown.back().starts_with("  N")) << shown.back();
        EXPECT_EQ(list().columns[6].heading, Form1.posform.items[static_cast<std::size_t>(format)]);
    }
    EXPECT_NE(shown[0], shown[1]);
    EXPECT_NE(shown[1], shown[2]);
    EXPECT_EQ(ini_get("Main", "Opt").substr(0, 4), "0 2 ");
}

TEST_F(Program, PositionsInAGridStandBehindTheirZone)
{
    ASSERT_TRUE(shell_start("sample.wp"));
    Form1.posform.selected = 3; // UTM
    Form1.posform.change();
    EXPECT_EQ(list().columns[6].heading, "UTM");
    const std::string shown = list().cell(0, static_cast<int>(list_col::position));
    EXPECT_TRUE(shown.starts_with("  32")) << shown;
}

TEST_F(Program, ThePlaceOfTheEditorIsKeptFromOneRunToTheNext)
{
    WAYPOINT.form.left = WAYPOINT.form.top = -1;
    ASSERT_TRUE(shell_start(""));
    EXPECT_TRUE(close_window(Form1.form));
    EXPECT_EQ(ini_get("Main", "pos_wp"), "") << "it was never open";

    WAYPOINT.form.left = 120; // as the screen reports it back
    WAYPOINT.form.top = 80;
    program_folder::reset_form1();
    shell_install();
    waypoints_install();
    ASSERT_TRUE(shell_start(""));
    EXPECT_TRUE(close_window(Form1.form));
    EXPECT_EQ(ini_get("Main", "pos_wp"), "120.0 80.0");

    WAYPOINT.form.left = WAYPOINT.form.top = -1;
    program_folder::reset_form1();
    shell_install();
    waypoints_install();
    ASSERT_TRUE(shell_start(""));
    EXPECT_EQ(WAYPOINT.form.left, 120);
    EXPECT_EQ(WAYPOINT.form.top, 80);
    WAYPOINT.form.left = WAYPOINT.form.top = -1;
}

TEST_F(Program, MarkedWaypointsAreDeletedSavedAndGoneWhenReadAgain)
{
    ASSERT_TRUE(shell_start("sample.wp"));
    const int all = store.wp_top + 1;
    const std::vector<std::string> before = names();
    for (const int row : {0, 5, 17}) {
        list().rows[static_cast<std::size_t>(row)].marked = true;
        Form1.Waypl2.row_click(row);
    }
    tick(1);
    EXPECT_EQ(Form1.anz.caption, "3 / " + std::to_string(all));
    Form1.B_lösch.click();
    EXPECT_EQ(store.wp_top + 1, all - 3);
    EXPECT_EQ(static_cast<int>(list().rows.size()), all - 3);
    EXPECT_TRUE(store.wp_dirty);
    const std::vector<std::string> kept = names();
    std::vector<std::string> gone;
    std::ranges::set_difference(before, kept, std::back_inserter(gone));
    EXPECT_EQ(gone.size(), 3U);

    user.messages.clear();
    user.answers = {answer::yes}; // save before the end
    EXPECT_TRUE(close_window(Form1.form));
    EXPECT_EQ(user.numbers(), (std::vector<int>{1030}));
    EXPECT_EQ(quits, 1);
    EXPECT_TRUE(home.has("Waypoints/sample.wpb")) << "the backup switch is on at first";

    program_folder::reset_form1();
    shell_install();
    waypoints_install();
    ASSERT_TRUE(shell_start("sample.wp"));
    EXPECT_EQ(names(), kept);
    EXPECT_EQ(static_cast<int>(list().rows.size()), all - 3);
}

TEST_F(Program, ADroppedTrackIsReadAndANewTitleIsAskedForAtTheEnd)
{
    ASSERT_TRUE(shell_start(""));
    Form1.Waypl2.files_dropped({home.path.string() + "/Track/sample.t"});
    EXPECT_GT(store.trk_top, 100);
    EXPECT_TRUE(list().rows.empty());
    Form1.Waypl2.files_dropped({home.path.string() + "/Waypoints/sample.wp"});
    EXPECT_GE(store.wp_top, 59);
    Form1.wayp_titel.text = "Harz";
    Form1.wayp_titel.change();
    user.messages.clear();
    user.answers = {answer::cancel};
    EXPECT_FALSE(close_window(Form1.form));
    EXPECT_EQ(user.numbers(), (std::vector<int>{1030}));
    EXPECT_EQ(quits, 0);
}

TEST_F(Program, ReadingTheSameFileAgainChangesNothing)
{
    ASSERT_TRUE(shell_start("sample.wp"));
    const std::vector<wayp_rec> before = store.wp;
    const std::vector<int> order = hooks.list_order();
    cmd_open("sample.wp", false);
    EXPECT_EQ(store.wp.size(), before.size());
    EXPECT_EQ(hooks.list_order(), order);
}

TEST_F(Program, WhatIsNotInstalledStaysDisabled)
{
    ASSERT_TRUE(shell_start("sample.wp"));
    Form1.B_alle.click();
    tick(1);
    for (const control* c :
         {&Form1.gar_off, &Form1.druck, &Form1.Routen_akt, &Form1.zeich_akt, &Form1.R_W_einfüg})
        EXPECT_FALSE(c->enabled) << c->name;
    EXPECT_TRUE(Form1.B_lösch.enabled);
    EXPECT_TRUE(Form1.suchen.enabled);
}

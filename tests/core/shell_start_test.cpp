#include "tests/core/shell_fixture.h"

#include "core/hooks.h"
#include "core/sellang.h"

#include <algorithm>
#include <stdexcept>

using namespace velkoro;

namespace {

class ShellStart : public ShellTest {};

} // namespace

TEST_F(ShellStart, TakesItsStepsInTheToldOrder)
{
    ini("");
    EXPECT_TRUE(shell_start(""));
    EXPECT_EQ(shell.trail,
              (lines{"folders",          "stores",   "ins_files", "ini_path",   "on_screen",
                     "month_names",      "language", "texts",     "last_files", "second_instance",
                     "position_formats", "profiles", "settings",  "port",       "list_zone",
                     "datums",           "scale",    "options",   "layout",     "command_line"}));
    EXPECT_EQ(shell.step, 20);
    EXPECT_TRUE(user.messages.empty()) << user.messages[0].text;
    EXPECT_TRUE(Form1.form.shown);
    EXPECT_TRUE(Form1.wayp_big_timer.enabled);
}

TEST_F(ShellStart, StepsOfUpperFoldersRunBehindTheShellsOwnOfThatNumber)
{
    ini("");
    shell_add(shell.start, 16, "user_grids", [] {
        Form1.posform.items.push_back("my grid");
        return true;
    });
    shell_start("");
    const auto at = std::ranges::find(shell.trail, "user_grids");
    ASSERT_NE(at, shell.trail.end());
    EXPECT_EQ(*(at - 1), "datums");
    EXPECT_EQ(*(at + 1), "scale");
}

TEST_F(ShellStart, AFailingStepIsNamedByItsNumberAndTheWindowOpens)
{
    ini("");
    shell_add(shell.start, 13, "bad", []() -> bool { throw std::runtime_error("no luck"); });
    EXPECT_TRUE(shell_start(""));
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "no luck in Form_Load at 13");
    EXPECT_EQ(shell.trail.back(), "bad");
    EXPECT_TRUE(Form1.form.shown);
}

TEST_F(ShellStart, WorksInTheProgramFolderAndRemembersWhereItCameFrom)
{
    ini("");
    const std::string from = std::filesystem::current_path().string() + "/";
    shell_start("");
    EXPECT_EQ(folders.start, from);
    EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), home.path));
}

TEST_F(ShellStart, EmptiesTheStores)
{
    ini("");
    store.wp.resize(3);
    store.wp_top = 2;
    store.refp_name = "ZUG";
    shell_start("");
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(store.rou_top, -1);
    EXPECT_EQ(store.trk_top, -1);
    EXPECT_EQ(store.wp_cur, -1);
    EXPECT_EQ(store.refp_name, "??????");
}

TEST_F(ShellStart, NewTableFilesAreActivatedBeforeTheyAreNeeded)
{
    ini("");
    std::filesystem::remove(home.path / "Datum.ini");
    home.put("Datum.ins", "new");
    home.put("SYMBOL_2.INS", "new");
    home.put("SYMBOL_3.INS", "new");
    home.put("SYMBOL_3.INI", "mine");
    shell_start("");
    EXPECT_EQ(home.get("Datum.ini"), "new");
    EXPECT_EQ(home.get("SYMBOL_2.ini"), "new");
    EXPECT_EQ(home.get("SYMBOL_3.INI"), "mine");
    EXPECT_EQ(user.count(1010), 0);
}

TEST_F(ShellStart, OwnMonthNamesStandAheadOfTheBuiltInOnes)
{
    ini("Month=ENE,FEB\r\n");
    shell_start("");
    EXPECT_EQ(settings.month_names.substr(0, 12), "ENE,FEB,JAN,");
    EXPECT_EQ(std::ranges::count(settings.month_names, ','), 2 + 47);

    ini("Month=ENE,FEB,\r\n");
    shell_start("");
    EXPECT_EQ(settings.month_names.substr(0, 12), "ENE,FEB,JAN,");

    ini("");
    shell_start("");
    EXPECT_TRUE(settings.month_names.starts_with("JAN,FEB,"));
}

TEST_F(ShellStart, TheOldLanguageKeyBecomesTheNewOneWithTheSidesSwapped)
{
    home.put("velkoro.ini", "[Main]\r\nLang=1\r\n");
    shell_start("");
    EXPECT_EQ(ini_get("Main", "Lang3"), "0");
    EXPECT_EQ(ini_get("Main", "Lang"), "");
    EXPECT_EQ(settings.lang, 0);

    home.put("velkoro.ini", "[Main]\r\nLang=0\r\n");
    shell_start("");
    EXPECT_EQ(ini_get("Main", "Lang3"), "1");
    EXPECT_EQ(text_table.language, 1);
}

TEST_F(ShellStart, TheNewLanguageKeyWinsOverTheOldOne)
{
    home.put("velkoro.ini", "[Main]\r\nLang3=1\r\nLang=1\r\n");
    shell_start("");
    EXPECT_EQ(settings.lang, 1);
    EXPECT_EQ(ini_get("Main", "Lang"), "1");
}

TEST_F(ShellStart, WithoutALanguageTheUserChoosesOne)
{
    screen(1920, 1080);
    platform.locale_language = [] { return std::string("de"); };
    std::vector<std::string> offered;
    platform.wait_closed = [&](window& w) {
        ASSERT_EQ(&w, &sellang.form);
        for (const list_row& r : sellang.sprachen.rows.rows)
            offered.push_back(r.cells.at(0));
        EXPECT_EQ(sellang.sprachen.rows.current, 1) << "the desktop's language is proposed";
        sellang.sprachen.row_click(0);
        sellang.OKButton.click();
    };
    shell_start("");
    EXPECT_EQ(offered, text_table.languages);
    EXPECT_GE(offered.size(), 2U);
    EXPECT_EQ(ini_get("Main", "Lang3"), "0");
    EXPECT_FALSE(sellang.form.shown);
}

TEST_F(ShellStart, ADoubleClickChoosesTheLanguageToo)
{
    screen(1920, 1080);
    platform.wait_closed = [&](window&) { sellang.sprachen.row_open(1); };
    shell_start("");
    EXPECT_EQ(ini_get("Main", "Lang3"), "1");
    EXPECT_EQ(Form1.datei.caption, "&Datei");
}

TEST_F(ShellStart, WithoutAScreenTheLanguageIsTheDesktopsAndNothingIsStored)
{
    platform.locale_language = [] { return std::string("de"); };
    platform.wait_closed = [&](window&) { FAIL(); };
    shell_start("");
    EXPECT_EQ(ini_get("Main", "Lang3"), "");
    EXPECT_EQ(Form1.datei.caption, "&Datei");
}

TEST_F(ShellStart, TheChosenLanguageIsTickedUnderItsOwnName)
{
    ini("");
    shell_start("");
    ASSERT_EQ(Form1.m_lang_sel.size(), text_table.languages.size());
    EXPECT_EQ(Form1.m_lang_sel[0]->caption, text(11));
    EXPECT_TRUE(Form1.m_lang_sel[0]->checked);
    EXPECT_FALSE(Form1.m_lang_sel[1]->checked);
    EXPECT_EQ(Form1.m_lang_sel[1]->caption, text_table.languages[1]);
}

TEST_F(ShellStart, MissingNamesOfLastFilesAreWritten)
{
    ini("Last_W0=mine.wp|/data\r\n");
    shell_start("");
    EXPECT_EQ(ini_get("Main", "Last_W0"), "mine.wp|/data");
    EXPECT_EQ(ini_get("Main", "Last_T0"), "sample.t|Track");
    EXPECT_EQ(ini_get("Main", "Last_K0"), "sample.cal|maps");
}

TEST_F(ShellStart, TheFixedPositionFormatsStandInOrder)
{
    ini("");
    shell_start("");
    EXPECT_EQ(Form1.posform.items,
              (lines{"hddd.ddddd°"_w, "hddd°mm.mmm'"_w, "hddd°mm'ss.s\""_w, "UTM", "MGRS",
                     "(D) Gauß-Krüger"_w, "(CH) Swiss Grid", "(F) Lambert", "(GB) British Grid",
                     "(IRL) Irish Grid", "(NZ) New Zealand Grid"}));
}

TEST_F(ShellStart, ProfilesStandInTheMenuWithTheActiveOneTicked)
{
    ini("Pr_act=Boat\r\nPr_0=Standard\r\nPr_1=Boat\r\nPr_2=R&D\r\n");
    shell_start("");
    ASSERT_EQ(Form1.prof.size(), 3U);
    EXPECT_EQ(Form1.prof[1]->caption, "Boat");
    EXPECT_EQ(Form1.prof[2]->caption, "R&&D");
    EXPECT_FALSE(Form1.prof[0]->checked);
    EXPECT_TRUE(Form1.prof[1]->checked);
    EXPECT_NE(Form1.profil_anz.caption.find("Boat"), std::string::npos);
    EXPECT_TRUE(Form1.prof_lösch.enabled);
    std::vector<std::string> menu; // as the binder walks it
    for (const control* c : Form1.form.controls)
        if (c->in == &Form1.pr)
            menu.push_back(c->name);
    EXPECT_EQ(menu, (lines{"prof", "prof", "prof", "pr_s1", "prof_lösch", "prof_neu"}));
}

TEST_F(ShellStart, AnActiveProfileThatIsNotListedFallsBackOnStandard)
{
    ini("Pr_act=Gone\r\nPr_0=Standard\r\nPr_1=Boat\r\n");
    shell_start("");
    EXPECT_EQ(settings.profile, "Standard");
    EXPECT_TRUE(Form1.prof[0]->checked);
}

TEST_F(ShellStart, TheOldPortMovesIntoEveryProfile)
{
    ini("Pr_act=Boat\r\nPr_0=Standard\r\nPr_1=Boat\r\nPort=3\r\n");
    shell_start("");
    EXPECT_EQ(ini_get("Main", "Port"), "");
    EXPECT_EQ(ini_get("Standard", "Port"), "3");
    EXPECT_EQ(ini_get("Boat", "Port"), "3");
    EXPECT_EQ(settings.port, 3);
    for (const control& c : Form1.menu_com)
        EXPECT_EQ(c.checked, c.index == 3) << c.index;
}

TEST_F(ShellStart, ThePortOfTheProfileIsTicked)
{
    ini("Pr_act=Standard\r\nPr_0=Standard\r\n[Standard]\r\nPort=100\r\n");
    shell_start("");
    for (const control& c : Form1.menu_com)
        EXPECT_EQ(c.checked, c.index == 100) << c.index;
}

TEST_F(ShellStart, TheListTakesTheTimeZoneOfHome)
{
    ini("Pr_act=Standard\r\nPr_0=Standard\r\n[Standard]\r\nTime=+1 L3 L10\r\n");
    shell_start("");
    EXPECT_EQ(settings.list_zone, "+1 L3 L10");
}

TEST_F(ShellStart, AMissingDatumTableIsReportedAndTheProgramGoesOn)
{
    ini("");
    std::filesystem::remove(home.path / "Datum.ini");
    bool read = false;
    hooks.read_datums = [&] { read = true; };
    EXPECT_TRUE(shell_start(""));
    ASSERT_EQ(user.numbers(), (std::vector<int>{1010}));
    EXPECT_NE(user.messages[0].text.find(folders.program), std::string::npos);
    EXPECT_TRUE(user.messages[0].text.ends_with(
        " - please follow the instructions in the file readme.txt"));
    EXPECT_EQ(user.messages[0].icon, icon::critical);
    EXPECT_FALSE(read);
    EXPECT_EQ(shell.step, 20);
}

TEST_F(ShellStart, AnExistingDatumTableIsReadWhateverItsCase)
{
    ini("");
    std::filesystem::rename(home.path / "Datum.ini", home.path / "DATUM.INI");
    int reads = 0;
    hooks.read_datums = [&] { ++reads; };
    shell_start("");
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(user.count(1010), 0);
}

TEST_F(ShellStart, TheScaleIsClampedAndDefaultsWhenAbsent)
{
    for (const auto& [key, scale] : std::vector<std::pair<std::string, int>>{{"", 50000},
                                                                             {"25000", 25000},
                                                                             {"7", 100},
                                                                             {"-5", 100},
                                                                             {"text", 50000},
                                                                             {"1e99", 100000000}}) {
        ini(key.empty() ? "" : "scale=" + key + "\r\n");
        shell_start("");
        EXPECT_EQ(settings.scale, scale) << key;
    }
}

TEST_F(ShellStart, StoredChoicesOutsideTheirListsAreLeftOut)
{
    hooks.read_datums = [] {
        Form1.Datum.items = {"WGS 84", "Potsdam"};
        Form1.Datum.selected = 0;
    };
    ini("Opt=13 2 1\r\n");
    shell_start("");
    EXPECT_EQ(Form1.sort.selected, 13);
    EXPECT_EQ(Form1.posform.selected, 2);
    EXPECT_EQ(Form1.Datum.selected, 1);

    ini("Opt=14 -1 2\r\n");
    program_folder::reset_form1();
    shell_start("");
    EXPECT_EQ(Form1.sort.selected, 0);
    EXPECT_EQ(Form1.posform.selected, 0);
    EXPECT_EQ(Form1.Datum.selected, 0);

    ini("Opt=3\r\n");
    program_folder::reset_form1();
    shell_start("");
    EXPECT_EQ(Form1.sort.selected, 3);
    EXPECT_EQ(Form1.posform.selected, 0);
}

TEST_F(ShellStart, TheWindowComesBackWhereItWasWithItsColumns)
{
    Form1.Waypl2.rows.columns = {{.width = 100}, {.width = 100}, {.width = 100}};
    screen(1920, 1080);
    ini("pos_main=10.5 20.0 1100.0 700.0,620\r\nPr_act=Standard\r\nPr_0=Standard\r\n"
        "[Standard]\r\ncol_main=120 0 333\r\n");
    shell_start("");
    EXPECT_EQ(Form1.form.left, 10.5);
    EXPECT_EQ(Form1.form.top, 20);
    EXPECT_EQ(Form1.form.width, 1100);
    EXPECT_EQ(Form1.form.height, 700);
    EXPECT_EQ(Form1.Waypl2.rows.columns[0].width, 120);
    EXPECT_EQ(Form1.Waypl2.rows.columns[1].width, 100);
    EXPECT_EQ(Form1.Waypl2.rows.columns[2].width, 333);
}

TEST_F(ShellStart, AWindowOffTheScreenIsMovedOntoIt)
{
    screen(1000, 600);
    ini("pos_main=1500.0 -900.0 1200.0 500.0,0\r\n");
    shell_start("");
    EXPECT_EQ(Form1.form.width, 1000);
    EXPECT_EQ(Form1.form.left, 0);
    EXPECT_EQ(Form1.form.top, 0);
    EXPECT_EQ(Form1.form.height, 500);
}

TEST_F(ShellStart, AWindowWhoseRightEdgeLiesOffTheScreenMovesLeftByTheExcess)
{
    screen(1000, 600);
    ini("");
    Form1.form.left = 300;
    Form1.form.width = 800;
    shell_start("");
    EXPECT_EQ(Form1.form.left, 200);
}

TEST_F(ShellStart, AQuotedCommandLineWithBlanksOpensTheFile)
{
    ini("");
    shell_start("\"/my files/tour 1.wp\"");
    EXPECT_EQ(opened, (lines{"/my files/tour 1.wp"}));
}

TEST_F(ShellStart, TheCommandLineIsOpenedWithTheWindowOnTheScreen)
{
    ini("");
    bool shown = false;
    Form1.Wayp_Datei_lesen.click = [&] {
        shown = Form1.form.shown;
        settings.wp_pending.clear();
    };
    shell_start("/x.wp");
    EXPECT_TRUE(shown);
}

// Two instances
// ----------------------------------------------------------------------------------------------

TEST_F(ShellStart, NoHandsTheCommandLineToTheRunningInstanceAndEnds)
{
    ini("");
    home.put("a tour.wp", "");
    platform.instance_running = [] { return true; };
    std::vector<std::string> sent;
    platform.instance_send = [&](const std::string& t) { return sent.push_back(t), true; };
    user.answers = {answer::no};
    EXPECT_FALSE(shell_start("\"/data/a tour.wp\""));
    EXPECT_EQ(sent, (lines{"\"/data/a tour.wp\""}));
    ASSERT_EQ(user.numbers(), (std::vector<int>{990}));
    EXPECT_EQ(user.messages[0].title, "VELkoro");
    EXPECT_EQ(user.messages[0].buttons, buttons::yes_no);
    EXPECT_EQ(user.messages[0].preset, 2);
    EXPECT_FALSE(Form1.form.shown);
    EXPECT_TRUE(opened.empty());
    EXPECT_EQ(shell.step, 10);
}

TEST_F(ShellStart, NoWithAnEmptyCommandLineBringsNoFileAndEnds)
{
    ini("");
    platform.instance_running = [] { return true; };
    std::vector<std::string> sent;
    platform.instance_send = [&](const std::string& t) { return sent.push_back(t), true; };
    user.answers = {answer::no};
    EXPECT_FALSE(shell_start(""));
    EXPECT_EQ(sent, (lines{""}));
}

TEST_F(ShellStart, AFailedLinkEndsTheSecondInstanceInSilence)
{
    ini("");
    platform.instance_running = [] { return true; };
    platform.instance_send = [](const std::string&) -> bool { throw std::runtime_error("gone"); };
    user.answers = {answer::no};
    EXPECT_FALSE(shell_start("/x.wp"));
    EXPECT_EQ(user.messages.size(), 1U);
}

TEST_F(ShellStart, YesStartsASecondProgramUnderAnotherCaption)
{
    ini("");
    platform.instance_running = [] { return true; };
    bool listens = false;
    platform.instance_listen = [&](const std::function<void(const std::string&)>&) {
        listens = true;
    };
    user.answers = {answer::yes};
    EXPECT_TRUE(shell_start("/x.wp"));
    EXPECT_EQ(Form1.form.caption, "VELkoro2");
    EXPECT_EQ(opened, (lines{"/x.wp"}));
    EXPECT_FALSE(listens) << "the first instance is the one that listens";
}

TEST_F(ShellStart, ATextFromAnotherInstanceIsOpenedAndBringsTheWindowForward)
{
    ini("");
    std::function<void(const std::string&)> link;
    platform.instance_listen = [&](std::function<void(const std::string&)> f) {
        link = std::move(f);
    };
    shell_start("");
    ASSERT_TRUE(link);
    int raised = 0;
    platform.show = [&](window& w) { raised += &w == &Form1.form; };
    link("\"/data/b.wp\"");
    EXPECT_EQ(opened, (lines{"/data/b.wp"}));
    EXPECT_EQ(Form1.DDE_1.text, "\"/data/b.wp\"");
    EXPECT_EQ(raised, 1);
    link("");
    EXPECT_EQ(opened.size(), 1U);
    EXPECT_EQ(raised, 2);
}

TEST_F(ShellStart, ATextThatComesDuringStartUpWaitsForItsEnd)
{
    ini("");
    std::function<void(const std::string&)> link;
    platform.instance_listen = [&](std::function<void(const std::string&)> f) {
        link = std::move(f);
    };
    shell_add(shell.start, 12, "early", [&] {
        link("/b.wp");
        EXPECT_TRUE(opened.empty());
        return true;
    });
    shell_start("/a.wp");
    EXPECT_EQ(opened, (lines{"/a.wp"}));
    Form1.wayp_big_timer.tick();
    EXPECT_EQ(opened, (lines{"/a.wp", "/b.wp"}));
}

TEST_F(ShellStart, TheTextTableIsBuiltAnewOnItsCommand)
{
    ini("");
    home.put("velkoro.txt", read_file(VELKORO_SOURCE_DIR "/data/velkoro.txt").value());
    const auto res = home.path / "velkoro.res";
    std::filesystem::last_write_time(res,
                                     std::filesystem::last_write_time(res) - std::chrono::hours(1));
    EXPECT_TRUE(shell_start("$$$res_gen$$$"));
    ASSERT_FALSE(user.messages.empty());
    EXPECT_EQ(user.messages[0].text, "File velkoro.res updated");
    EXPECT_EQ(user.beeps, 1);
    EXPECT_TRUE(store.wp_top < 0 && settings.wp_pending.empty()) << "it is no file to be opened";
}

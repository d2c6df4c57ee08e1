#include "interchange/selfil.h"

#include "core/files.h"
#include "core/ini_file.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "interchange/export_job.h"
#include "tests/interchange/file_fixture.h"

#include <algorithm>
#include <functional>

using namespace velkoro;

namespace {

class FileWindow : public FileTest {
protected:
    /// What the user does while the window is open; then it is closed.
    void use(const control& entry, const std::function<void()>& act)
    {
        int opened = 0;
        platform.wait_closed = [&](window& w) {
            if (&w == &selfil.form) {
                ++opened;
                act();
            }
            w.shown = false;
        };
        entry.click();
        EXPECT_EQ(opened, 1);
    }
    void open(const std::function<void()>& act) { use(Form1.Wayp_Datei_lesen, act); }
    void save_as(const std::function<void()>& act) { use(Form1.Wayp_Datei_Speich[1], act); }

    static void choose_row(std::string_view word)
    {
        auto& f = selfil.filform;
        const auto hit = std::ranges::find_if(
            f.items, [&](const std::string& row) { return row.find(word) != std::string::npos; });
        ASSERT_NE(hit, f.items.end()) << word;
        f.selected = static_cast<int>(hit - f.items.begin());
        f.click();
    }
    static void choose(control& option)
    {
        for (control* c :
             {&selfil.ausw_w, &selfil.ausw_wm, &selfil.ausw_r, &selfil.ausw_rm, &selfil.ausw_b})
            c->checked = c == &option;
        option.click();
    }
};

const std::string geo = "ALPHA,N48.12345\xB0,E011.56789\xB0\r\n";

} // namespace

TEST_F(FileWindow, ListsNativeRowsAndThoseThatCanBeRead)
{
    open([] {
        EXPECT_EQ(selfil.form.tag, "7655");
        const auto& rows = selfil.filform.items;
        ASSERT_GT(rows.size(), 3U);
        EXPECT_EQ(rows[0], "VELkoro Waypoints *.wp");
        EXPECT_EQ(rows[1], "VELkoro Waypoints Backup *.wpb");
        EXPECT_EQ(rows[2], "IMPORT VELkoro Text *.txt");
        EXPECT_NE(std::ranges::find(rows, "IMPORT Geocaching *.loc"), rows.end());
        EXPECT_FALSE(selfil.inhalt.visible);
        EXPECT_FALSE(selfil.gestalt.visible);
    });
}

TEST_F(FileWindow, ListsTheRowsThatCanBeWritten)
{
    save_as([] {
        EXPECT_EQ(selfil.form.tag, "7656");
        const auto& rows = selfil.filform.items;
        EXPECT_EQ(rows[0], "VELkoro Waypoints *.wp");
        EXPECT_EQ(rows[1], "EXPORT VELkoro Text *.txt");
        EXPECT_EQ(std::ranges::count_if(rows, [](auto& r) { return r.starts_with("IMPORT"); }), 0);
        EXPECT_TRUE(selfil.inhalt.visible);
    });
}

TEST_F(FileWindow, ReadsWhatWasBrowsedByTheRowOfTheFile)
{
    home.put("points.geo", geo);
    outside.files_to_open = {{file("points.geo")}};
    open([&] {
        selfil.durch.click();
        EXPECT_EQ(selfil.filnam.text, "points.geo");
        EXPECT_EQ(selfil.pathnam.text, home.path.string() + "/");
        EXPECT_TRUE(
            selfil.filform.items[static_cast<std::size_t>(selfil.filform.selected)].starts_with(
                "IMPORT CORPSCON"));
        selfil.OK.click();
        EXPECT_FALSE(selfil.form.shown);
    });
    ASSERT_EQ(store.wp_top, 0);
    EXPECT_EQ(store.wp[0].nam, "ALPHA");
}

TEST_F(FileWindow, ReadsSeveralFilesAndCountsThem)
{
    home.put("one.geo", geo);
    home.put("two.geo", "BETA,N49\xB0,E012\xB0\r\n");
    outside.files_to_open = {{file("one.geo"), file("two.geo")}};
    open([] {
        selfil.durch.click();
        EXPECT_EQ(selfil.akt.caption, text(8009, 2));
        selfil.OK.click();
    });
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(FileWindow, ReadsATypedNameFromTheFolder)
{
    home.put("points.geo", geo);
    open([&] {
        selfil.pathnam.text = home.path.string();
        selfil.filnam.text = "points.geo";
        selfil.OK.click();
    });
    EXPECT_EQ(store.wp_top, 0);
}

TEST_F(FileWindow, StaysOpenWithoutANameAndForAMissingFile)
{
    open([&] {
        selfil.filnam.text.clear();
        selfil.OK.click();
        EXPECT_TRUE(selfil.form.shown);
        selfil.filnam.text = "none.geo";
        selfil.OK.click();
        EXPECT_TRUE(selfil.form.shown);
    });
    EXPECT_EQ(outside.numbers(), (std::vector<int>{8013, 7740}));
}

TEST_F(FileWindow, KeepsRowAndFolderPerUse)
{
    home.put("points.geo", geo);
    outside.files_to_open = {{file("points.geo")}};
    open([] {
        selfil.durch.click();
        selfil.OK.click();
    });
    EXPECT_EQ(ini_get("Main", "Last_W_O"),
              "IMPORT CORPSCON *.geo;*.utm|" + home.path.string() + "/");
    save_as([] { EXPECT_EQ(selfil.filform.selected, 0); });
    open([&] {
        EXPECT_EQ(selfil.filform.items[static_cast<std::size_t>(selfil.filform.selected)],
                  "IMPORT CORPSCON *.geo;*.utm");
        EXPECT_EQ(selfil.pathnam.text, home.path.string() + "/");
    });
}

TEST_F(FileWindow, ReadsNativeFilesAsBefore)
{
    add("ALPHA", 48, 11);
    native_job.flags = "WR";
    ASSERT_TRUE(native_write(file("list.wp")));
    store_reset();
    outside.files_to_open = {{file("list.wp")}};
    open([] {
        selfil.durch.click();
        EXPECT_EQ(selfil.filform.selected, 0);
        selfil.OK.click();
    });
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_EQ(settings.wp_file, file("list.wp"));
}

TEST_F(FileWindow, IsNotShownForFilesNamedFromOutside)
{
    settings.wp_pending = file("none.wp");
    platform.wait_closed = [](window& w) {
        EXPECT_NE(&w, &selfil.form);
        w.shown = false;
    };
    Form1.Wayp_Datei_lesen.click();
    EXPECT_EQ(outside.numbers(), (std::vector<int>{7740}));
}

TEST_F(FileWindow, ShowsTheOptionsOfTheFormat)
{
    save_as([] {
        for (const format_row& row : formats()) {
            if (!row.write)
                continue;
            SCOPED_TRACE(row.name);
            choose_row(export_text(row));
            EXPECT_EQ(selfil.posform.visible, (row.options & opt_posform) != 0);
            EXPECT_EQ(selfil.Trenn.visible, (row.options & opt_separator) != 0);
            EXPECT_EQ(selfil.Zeitf.visible, (row.options & opt_time) != 0);
            EXPECT_EQ(selfil.naml.visible, (row.options & opt_name_length) != 0);
            EXPECT_EQ(selfil.beschr.visible, (row.options & opt_comment) != 0);
        }
        choose_row("VELkoro Waypoints");
        EXPECT_FALSE(selfil.posform.visible);
    });
}

TEST_F(FileWindow, OffersTheSignedFormAndTheFormsOfDegrees)
{
    save_as([] {
        choose_row("CORPSCON");
        EXPECT_EQ(selfil.posform.items,
                  (std::vector<std::string>{"+ddd.ddddd\xB0", "hddd.ddddd\xB0", "hddd\xB0mm.mmm'",
                                            "hddd\xB0mm'ss.s\""}));
        EXPECT_EQ(selfil.posform.selected, 1);
    });
    Form1.posform.selected = 3;
    save_as([] {
        choose_row("VELkoro Text");
        ASSERT_EQ(selfil.posform.items.size(), 5U);
        EXPECT_EQ(selfil.posform.items[4], "UTM");
        EXPECT_EQ(selfil.posform.selected, 4);
    });
}

TEST_F(FileWindow, OffersWhatTheFormatCanHold)
{
    add("A", 48, 11);
    add("B", 49, 12);
    add_route("TOUR", "A$B$");
    save_as([] {
        EXPECT_TRUE(selfil.ausw_b.checked);
        EXPECT_EQ(selfil.akt.caption, text(8008, 2, 1));
        EXPECT_FALSE(selfil.ausw_wm.enabled);
        choose_row("CORPSCON"); // no routes
        EXPECT_FALSE(selfil.ausw_r.enabled);
        EXPECT_FALSE(selfil.ausw_b.enabled);
        EXPECT_TRUE(selfil.ausw_w.checked);
        EXPECT_EQ(selfil.akt.caption, text(8004, 2));
        choose_row("TerrainNavigator"); // routes in files of their own
        EXPECT_TRUE(selfil.ausw_r.enabled);
        EXPECT_FALSE(selfil.ausw_b.enabled);
        selfil.filnam.text = "tour.mxf";
        choose(selfil.ausw_r);
        EXPECT_EQ(selfil.filnam.text, "tour.rxf");
        choose(selfil.ausw_w);
        EXPECT_EQ(selfil.filnam.text, "tour.mxf");
        choose(selfil.ausw_rm);
        EXPECT_TRUE(selfil.routen_m.enabled);
        ASSERT_EQ(selfil.routen_m.rows.rows.size(), 1U);
        EXPECT_EQ(selfil.routen_m.rows.rows[0].cells[0], "00: TOUR");
        EXPECT_EQ(selfil.akt.caption, text(8007, 0));
        selfil.routen_m.rows.rows[0].marked = true;
        selfil.routen_m.row_click(0);
        EXPECT_EQ(selfil.akt.caption, text(8007, 1));
    });
    hooks.marked_rows = [] { return std::vector<int>{1}; };
    save_as([] {
        EXPECT_TRUE(selfil.ausw_wm.enabled);
        choose(selfil.ausw_wm);
        EXPECT_EQ(selfil.akt.caption, text(8005, 1));
    });
}

TEST_F(FileWindow, WritesTheSelectionInTheChosenForm)
{
    add("ALPHA", 48.5, 11.25);
    add("BETA", -12.5, -45.75);
    hooks.marked_rows = [] { return std::vector<int>{1}; };
    save_as([&] {
        choose_row("CORPSCON");
        choose(selfil.ausw_wm);
        selfil.posform.selected = 2; // degrees and minutes
        selfil.naml.text = "3";
        selfil.pathnam.text = home.path.string();
        selfil.filnam.text = "out";
        selfil.OK.click();
        EXPECT_FALSE(selfil.form.shown);
    });
    const std::string written = home.get("out.geo");
    EXPECT_EQ(written.find("ALP"), std::string::npos);
    EXPECT_NE(written.find("BET,"), std::string::npos) << written;
    EXPECT_NE(written.find("12\xB0"
                           "30.000'"),
              std::string::npos)
        << written;
    EXPECT_EQ(settings.wp_file, "") << "an export is not the file in use";
}

TEST_F(FileWindow, AsksBeforeItReplacesAFile)
{
    add("ALPHA", 48.5, 11.25);
    home.put("out.geo", "old");
    const auto write = [&] {
        choose_row("CORPSCON");
        selfil.pathnam.text = home.path.string();
        selfil.filnam.text = "out.geo";
        selfil.OK.click();
    };
    outside.answers = {answer::no};
    save_as(write);
    EXPECT_EQ(home.get("out.geo"), "old");
    save_as(write);
    EXPECT_EQ(outside.numbers(), (std::vector<int>{1970, 1970}));
    EXPECT_NE(home.get("out.geo"), "old");
    outside.files_to_save = {file("out.geo")};
    save_as([] {
        choose_row("CORPSCON");
        selfil.durch.click(); // the dialog has asked
        selfil.OK.click();
    });
    EXPECT_EQ(outside.messages.size(), 2U);
}

TEST_F(FileWindow, SavesTheWholeListAsTheFileInUse)
{
    add("ALPHA", 48.5, 11.25);
    save_as([&] {
        selfil.pathnam.text = home.path.string();
        selfil.filnam.text = "list";
        selfil.OK.click();
    });
    EXPECT_EQ(settings.wp_file, file("list.wp"));
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_TRUE(home.has("list.wp"));
}

TEST_F(FileWindow, SavesAPartOfTheListBesideTheFileInUse)
{
    add("ALPHA", 48.5, 11.25);
    add("BETA", 49.5, 12.25);
    settings.wp_file = file("list.wp");
    hooks.marked_rows = [] { return std::vector<int>{0}; };
    const auto write = [&](const char* name) {
        save_as([&] {
            choose(selfil.ausw_wm);
            selfil.pathnam.text = home.path.string();
            selfil.filnam.text = name;
            selfil.OK.click();
        });
    };
    write("part.wp");
    EXPECT_EQ(settings.wp_file, file("list.wp"));
    EXPECT_TRUE(home.has("part.wp"));
    write("list.wp");
    EXPECT_FALSE(home.has("list.wp"));
    EXPECT_EQ(outside.numbers(), (std::vector<int>{8012}));
}

TEST_F(FileWindow, CancelReadsAndWritesNothing)
{
    home.put("points.geo", geo);
    outside.files_to_open = {{file("points.geo")}};
    open([] {
        selfil.durch.click();
        selfil.Abbr.click();
        EXPECT_FALSE(selfil.form.shown);
    });
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(ini_get("Main", "Last_W_O"), "");
}

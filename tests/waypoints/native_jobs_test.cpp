#include "waypoints/native_jobs.h"

#include "core/files.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/store.h"
#include "tests/waypoints/native_support.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

struct jobs_fixture : native_fixture {
    jobs_fixture() { native_files_install(); }
    std::string put(const std::string& name, std::string_view bytes) const
    {
        write_file(folder + name, bytes);
        return folder + name;
    }
    std::string put_golden(const std::string& kind, const std::string& name) const
    {
        return put(name, golden_bytes(kind, name));
    }
};

void add(const std::string& nam, std::int32_t lat)
{
    wayp_rec w;
    w.nam = nam;
    w.pos = {lat, 5};
    wayp_insert(w, 0);
}

} // namespace

TEST(NativeJobs, OpenReadsSeveralFilesOfBothKindsInOrder)
{
    jobs_fixture f;
    f.user.files_to_open = {{f.put_golden("wp", "v204.wp"), f.put_golden("t", "v203.t"),
                             f.put_golden("t", "append.t")}};
    Form1.Wayp_Datei_lesen.click();
    EXPECT_EQ(store.wp_top, 3);
    EXPECT_EQ(store.trk_top, 14);
    EXPECT_EQ(settings.wp_file, f.folder + "v204.wp");
    EXPECT_EQ(settings.trk_file, f.folder + "v203.t");
    EXPECT_EQ(last_path("Last_W0"), f.folder + "v204.wp");
    EXPECT_TRUE(f.user.messages.empty());
}

TEST(NativeJobs, APendingFileIsReadWithoutADialog)
{
    jobs_fixture f;
    settings.wp_pending = f.put_golden("wp", "v204.wp");
    bool asked = false;
    platform.open_files = [&](const file_request&) {
        asked = true;
        return std::vector<std::string>{};
    };
    Form1.Wayp_Datei_lesen.click();
    EXPECT_FALSE(asked);
    EXPECT_EQ(store.wp_top, 3);
    EXPECT_EQ(settings.wp_pending, "");
}

TEST(NativeJobs, ABackupIsReadButIsNotTheFileInUse)
{
    jobs_fixture f;
    native_read({f.put("a.wpb", golden_bytes("wp", "v204.wp")),
                 f.put("a.tb", golden_bytes("t", "v203.t"))});
    EXPECT_EQ(store.wp_top, 3);
    EXPECT_EQ(store.trk_top, 8);
    EXPECT_EQ(settings.wp_file, "");
    EXPECT_EQ(settings.trk_file, "");
}

TEST(NativeJobs, AFileReadInPartIsNotTheFileInUse)
{
    jobs_fixture f;
    EXPECT_FALSE(native_read({f.put_golden("wp", "cut_in_record.wp")}));
    EXPECT_EQ(f.user.numbers(), std::vector<int>{2430});
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_EQ(settings.wp_file, "");
}

TEST(NativeJobs, AFileAddedToAListLeavesTheFileInUse)
{
    jobs_fixture f;
    native_read({f.put_golden("wp", "v204.wp"), f.put_golden("wp", "v110.wp")});
    EXPECT_EQ(settings.wp_file, f.folder + "v204.wp");
}

TEST(NativeJobs, RefusedFilesLeaveTheStoreUnchanged)
{
    jobs_fixture f;
    EXPECT_FALSE(
        native_read({f.put_golden("wp", "bad_magic.wp"), f.put_golden("wp", "newer_205.wp"),
                     f.put_golden("t", "bad_magic.t"), f.put_golden("t", "newer_204.t")}));
    EXPECT_EQ(f.user.numbers(), (std::vector<int>{2520, 2520, 2380, 2390}));
    for (const message_box& m : f.user.messages)
        EXPECT_EQ(m.icon, icon::critical);
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(store.trk_top, -1);
}

TEST(NativeJobs, AMissingFileIsTold)
{
    jobs_fixture f;
    EXPECT_FALSE(native_read({f.folder + "none.wp"}));
    EXPECT_EQ(f.user.numbers(), std::vector<int>{7740});
}

TEST(NativeJobs, AReportIsShownInTheResultWindow)
{
    jobs_fixture f;
    const std::string path = f.put_golden("wp", "v204.wp");
    native_read({path});
    EXPECT_EQ(op2.anz.caption, "");
    std::string shown;
    platform.wait_closed = [&](window& w) {
        if (&w == &op2.form)
            shown = op2.anz.caption;
    };
    native_read({path});
    EXPECT_NE(shown.find("2030 4"), std::string::npos) << shown;
}

TEST(NativeJobs, CancelStopsTheFilesBehindToo)
{
    jobs_fixture f;
    std::string many = golden_bytes("t", "v203.t");
    for (int i = 0; i < 500; ++i)
        many += golden_bytes("t", "v203.t").substr(29);
    const std::string path = f.put("many.t", many);
    f.user.on_pump = [] { job.op_cancel = true; };
    platform.ticks = [t = 0.0]() mutable { return t += 1.0; };
    EXPECT_FALSE(native_read({path, path}));
    EXPECT_EQ(f.user.numbers(), std::vector<int>{2420});
}

TEST(NativeJobs, SaveWritesTheFileInUseAndKeepsABackup)
{
    jobs_fixture f;
    const std::string path = f.put_golden("wp", "v110.wp");
    native_read({path});
    add("NEW", 123456789);
    ASSERT_TRUE(store.wp_dirty);
    EXPECT_TRUE(wayp_save(0));
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(wp_info(read_file(path).value_or("")).waypoints, 5);
    EXPECT_EQ(read_file(path + "b"), golden_bytes("wp", "v110.wp"));
    EXPECT_TRUE(f.user.messages.empty());
}

TEST(NativeJobs, SaveAsAsksForANameAndMakesItTheFileInUse)
{
    jobs_fixture f;
    add("A", 1000000);
    file_request asked;
    last_put("Last_W0", f.folder + "before.wp");
    platform.save_file = [&](const file_request& r) {
        asked = r;
        return f.folder + "mine";
    };
    EXPECT_TRUE(wayp_save(0)); // no file in use: asked all the same
    EXPECT_EQ(asked.title, "1950 # # #");
    EXPECT_EQ(asked.name, "before.wp");
    EXPECT_EQ(asked.folder, f.folder);
    EXPECT_EQ(settings.wp_file, f.folder + "mine.wp");
    EXPECT_EQ(last_path("Last_W0"), f.folder + "mine.wp");
    EXPECT_TRUE(file_exists(f.folder + "mine.wp"));
}

TEST(NativeJobs, ACancelledDialogWritesNothing)
{
    jobs_fixture f;
    add("A", 1000000);
    EXPECT_FALSE(wayp_save(1));
    EXPECT_FALSE(track_save(1));
    EXPECT_TRUE(store.wp_dirty);
}

TEST(NativeJobs, ANameThatTheDialogDidNotAskAboutIsAskedAbout)
{
    jobs_fixture f;
    add("A", 1000000);
    f.put("mine.wp", "old");
    f.user.files_to_save = {f.folder + "mine", f.folder + "mine"};
    f.user.answers = {answer::no};
    EXPECT_FALSE(wayp_save(1));
    EXPECT_EQ(f.user.numbers(), std::vector<int>{1970});
    EXPECT_EQ(read_file(f.folder + "mine.wp"), "old");
    EXPECT_TRUE(wayp_save(1));
    EXPECT_EQ(read_file(f.folder + "mine.wpb"), "old");
}

TEST(NativeJobs, TheOtherFileInUseIsNoTarget)
{
    jobs_fixture f;
    add("A", 1000000);
    settings.wp_file = settings.trk_file = f.put("x.t", "track");
    EXPECT_FALSE(wayp_save(0));
    EXPECT_EQ(f.user.numbers(), std::vector<int>{1960});
    EXPECT_EQ(read_file(f.folder + "x.t"), "track");
}

TEST(NativeJobs, AFailedWriteKeepsTheOldFileAndTheChangedMark)
{
    jobs_fixture f;
    add("A", 1000000);
    settings.wp_file = f.put("a.wp", "old");
    std::filesystem::create_directory(f.folder + "a.wp.new");
    EXPECT_FALSE(wayp_save(0));
    ASSERT_EQ(f.user.messages.size(), 1U);
    EXPECT_NE(f.user.messages[0].text.find(" in D_W_Schreiben"), std::string::npos);
    EXPECT_EQ(read_file(f.folder + "a.wp"), "old");
    EXPECT_TRUE(store.wp_dirty);
}

TEST(NativeJobs, ABrokenOffSaveStaysChanged)
{
    jobs_fixture f;
    for (int i = 0; i < 2000; ++i)
        track_append({.pos = {i, 5}});
    settings.trk_file = f.folder + "a.t";
    f.user.on_pump = [] { job.op_cancel = true; };
    platform.ticks = [t = 0.0]() mutable { return t += 1.0; };
    EXPECT_FALSE(track_save(0));
    EXPECT_EQ(f.user.numbers(), std::vector<int>{2500});
    EXPECT_TRUE(store.trk_dirty);
    const t_summary left = t_info(read_file(f.folder + "a.t").value_or(""));
    EXPECT_EQ(left.end, native_end::whole);
    EXPECT_GE(left.points, 1);
}

TEST(NativeJobs, TracksAreSavedUnderTheirOwnKey)
{
    jobs_fixture f;
    track_append({.pos = {1, 2}});
    f.user.files_to_save = {f.folder + "my.track"};
    EXPECT_TRUE(track_save(1));
    EXPECT_EQ(settings.trk_file, f.folder + "my.track.t");
    EXPECT_EQ(last_path("Last_T0"), f.folder + "my.track.t");
    EXPECT_FALSE(store.trk_dirty);
}

TEST(NativeJobs, AppendingAddsASectionAndTouchesNothingElse)
{
    jobs_fixture f;
    const std::string path = f.put_golden("wp", "v203.wp");
    add("LONGNAME12", 1000000);
    native_job = {.flags = "WRA"};
    EXPECT_TRUE(native_write(path));
    const std::string bytes = read_file(path).value_or("");
    EXPECT_TRUE(bytes.starts_with(golden_bytes("wp", "v203.wp")));
    EXPECT_EQ(wp_info(bytes).append_sections, 1);
    EXPECT_EQ(wp_info(bytes).waypoints, 5);
    EXPECT_FALSE(file_exists(path + "b"));
}

TEST(NativeJobs, AppendingToNothingMakesAFile)
{
    jobs_fixture f;
    add("A", 1000000);
    track_append({.pos = {1, 2}});
    native_job = {.flags = "WU"};
    EXPECT_TRUE(native_write(f.folder + "new.wp"));
    EXPECT_TRUE(native_write(f.put("empty.t", "")));
    EXPECT_EQ(wp_info(read_file(f.folder + "new.wp").value_or("")).reconcile_sections, 0);
    EXPECT_EQ(t_info(read_file(f.folder + "empty.t").value_or("")).sections, 0);
}

TEST(NativeJobs, NothingIsAppendedToAFileThatCannotBeReadToItsEnd)
{
    jobs_fixture f;
    add("A", 1000000);
    for (const char* name : {"bad_magic.wp", "newer_205.wp", "cut_in_record.wp"}) {
        const std::string path = f.put_golden("wp", name);
        native_job = {.flags = "WA"};
        EXPECT_FALSE(native_write(path)) << name;
        EXPECT_EQ(read_file(path), golden_bytes("wp", name));
    }
    EXPECT_EQ(f.user.numbers(), (std::vector<int>{2520, 2520, 2430}));
}

TEST(NativeJobs, AnOldTrackFileTakesASection)
{
    jobs_fixture f;
    const std::string path = f.put_golden("t", "v202.t");
    track_append({.pos = {1, 2}, .alt = 55});
    native_job = {.flags = "A"};
    EXPECT_TRUE(native_write(path));
    track_clear();
    EXPECT_TRUE(native_read({path}));
    EXPECT_EQ(store.trk_top, 9);
    EXPECT_EQ(store.trk[9].alt, 55);
}

TEST(NativeJobs, AnotherFormatIsNotTheirs)
{
    jobs_fixture f;
    native_job.path = f.put_golden("wp", "v204.wp");
    native_job.format = "OziExplorer";
    D_W_Lesen();
    D_T_Lesen();
    D_W_Schreiben();
    D_T_Schreiben();
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(read_file(native_job.path), golden_bytes("wp", "v204.wp"));
}

TEST(NativeJobs, TracksAreToldByExtensionElseByContent)
{
    jobs_fixture f;
    EXPECT_TRUE(is_track_file("x.T"));
    EXPECT_TRUE(is_track_file("x.tb"));
    EXPECT_FALSE(is_track_file("x.wp"));
    EXPECT_TRUE(is_track_file(f.put("a.dat", golden_bytes("t", "v203.t"))));
    EXPECT_FALSE(is_track_file(f.put("b.dat", golden_bytes("wp", "v204.wp"))));
    EXPECT_FALSE(is_track_file(f.folder + "none"));
}

#include "core/cmd_open.h"

#include "core/job.h"
#include "core/shell.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

using namespace velkoro;

namespace {

struct CmdOpen : testing::Test {
    scripted_platform user{};
    program_folder home{};
    std::vector<std::string> waypoints{}, tracks{}; // pending paths as the handlers found them

    CmdOpen()
    {
        shell = {};
        Form1.Wayp_Datei_lesen.click = [this] {
            waypoints.push_back(settings.wp_pending);
            settings.wp_pending.clear();
        };
        Form1.zeich_akt.click = [this] {
            tracks.push_back(settings.trk_pending);
            settings.trk_pending.clear();
        };
    }
    ~CmdOpen() override { Form1.Wayp_Datei_lesen.click = Form1.zeich_akt.click = {}; }
    using paths = std::vector<std::string>;
};

} // namespace

TEST_F(CmdOpen, AQuotedPathWithBlanksOpensTheFile)
{
    cmd_open("\"/my files/old tour.WP\"", false);
    EXPECT_EQ(waypoints, (paths{"/my files/old tour.WP"}));
    EXPECT_TRUE(tracks.empty());
}

TEST_F(CmdOpen, ABareNameLiesInTheFolderOfTheLastFile)
{
    ini_put("Main", "Last_W0", "old.wp|C:\\data");
    cmd_open("x.wp", false);
    ASSERT_EQ(waypoints.size(), 1U);
    EXPECT_EQ(waypoints[0].substr(0, 7), "C:\\data");
    EXPECT_EQ(waypoints[0].substr(8), "x.wp");
}

TEST_F(CmdOpen, ABareTrackNameLiesInTheFolderOfTheLastTrack)
{
    ini_put("Main", "Last_T0", "old.t|/data/tracks");
    cmd_open("x.t", false);
    EXPECT_EQ(tracks, (paths{"/data/tracks/x.t"}));
    EXPECT_TRUE(waypoints.empty());
}

TEST_F(CmdOpen, ABareNameThatTheLibraryLacksIsTakenFromTheStartFolder)
{
    std::filesystem::create_directory(home.path / "elsewhere");
    home.put("elsewhere/x.wp", "");
    folders.start = home.path.string() + "/elsewhere/";
    ini_put("Main", "Last_W0", "old.wp|/data");
    cmd_open("x.wp", false);
    EXPECT_EQ(waypoints, (paths{folders.start + "x.wp"}));
}

TEST_F(CmdOpen, APathWithAFolderCountsFromTheStartFolder)
{
    std::filesystem::create_directory(home.path / "tours");
    home.put("tours/x.wp", "");
    folders.start = home.path.string() + "/";
    cmd_open("tours/x.wp", false);
    EXPECT_EQ(waypoints, (paths{folders.start + "tours/x.wp"}));
}

TEST_F(CmdOpen, WithoutAMapWindowTheFileReadTakesTheTrack)
{
    Form1.zeich_akt.click = {};
    Form1.Wayp_Datei_lesen.click = [this] {
        tracks.push_back(settings.trk_pending);
        settings.trk_pending.clear();
    };
    cmd_open("/data/x.t", false);
    EXPECT_EQ(tracks, (paths{"/data/x.t"}));
}

TEST_F(CmdOpen, AnEmptyTextOpensNothing)
{
    cmd_open("", false);
    cmd_open("\"\"", false);
    EXPECT_TRUE(waypoints.empty());
    EXPECT_TRUE(tracks.empty());
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(CmdOpen, AFileOfAnotherKindIsToldByItsName)
{
    cmd_open("\"/my files/readme.txt\"", false);
    EXPECT_TRUE(waypoints.empty());
    EXPECT_TRUE(tracks.empty());
    ASSERT_EQ(user.numbers(), (std::vector<int>{7910}));
    EXPECT_EQ(user.messages[0].text, text(7910, "readme.txt"));
}

TEST_F(CmdOpen, ForceRunsTheWaypointReadWithoutAFile)
{
    cmd_open("", true);
    EXPECT_EQ(waypoints, (paths{""}));
}

TEST_F(CmdOpen, DuringAJobTheFileWaits)
{
    job.code = "W_O";
    cmd_open("/a.wp", false);
    EXPECT_TRUE(waypoints.empty());
    EXPECT_EQ(shell.waiting, (paths{"/a.wp"}));
}

TEST_F(CmdOpen, AnotherInstanceIsToldAnAbsolutePath)
{
    home.put("my tour.wp", "");
    folders.start = home.path.string() + "/";
    EXPECT_EQ(cmd_for_others("my tour.wp"), '"' + folders.start + "my tour.wp\"");
    EXPECT_EQ(cmd_for_others("absent.wp"), "absent.wp");
    EXPECT_EQ(cmd_for_others(""), "");
}

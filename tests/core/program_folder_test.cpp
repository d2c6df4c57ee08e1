#include "core/program_folder.h"

#include "core/files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

using namespace velkoro;
namespace fs = std::filesystem;

namespace {

void put(const fs::path& path, const std::string& text)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string get(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void make_older(const fs::path& path)
{
    fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(1));
}

class ProgramFolder : public testing::Test {
protected:
    void SetUp() override
    {
        root = fs::path(testing::TempDir()) /
               ("velkoro_" +
                std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(root);
        fs::create_directories(root / "bin");
        question.executable = (root / "bin").string();
        question.data_home = (root / "home").string();
        question.installed = {(root / "none").string(), (root / "share").string()};
        put(root / "share/velkoro.res", "table");
        put(root / "share/Datum.ins", "new datums");
        put(root / "share/SYMBOL_2.INS", "symbols");
        put(root / "share/Garmin.ini", "receivers");
        put(root / "share/Waypoints/sample.wp", "waypoints");
    }
    void TearDown() override { fs::remove_all(root); }

    fs::path root{};
    folder_question question{};
};

} // namespace

TEST_F(ProgramFolder, IsTheNamedOneAheadOfAllOthers)
{
    put(root / "bin/velkoro.res", "table");
    question.named = (root / "mine").string();
    EXPECT_EQ(find_program_folder(question), (root / "mine/").string());
    EXPECT_FALSE(fs::exists(root / "mine")); // taken as it is, not filled
    EXPECT_FALSE(fs::exists(root / "home"));
}

TEST_F(ProgramFolder, IsTheFolderOfTheExecutableWhenThatHoldsTheTextTable)
{
    put(root / "bin/velkoro.res", "table");
    EXPECT_EQ(find_program_folder(question), (root / "bin/").string());
    EXPECT_FALSE(fs::exists(root / "home"));
}

TEST_F(ProgramFolder, IsElseTheUsersOwnCompletedFromTheInstallation)
{
    EXPECT_EQ(find_program_folder(question), (root / "home/velkoro/").string());
    const fs::path own = root / "home/velkoro";
    EXPECT_EQ(get(own / "velkoro.res"), "table");
    EXPECT_EQ(get(own / "Datum.ins"), "new datums");
    EXPECT_EQ(get(own / "Garmin.ini"), "receivers");
    EXPECT_EQ(get(own / "Waypoints/sample.wp"), "waypoints");
}

TEST_F(ProgramFolder, OfAnInstallationThatIsNowhereIsStillTheUsersOwn)
{
    question.installed = {(root / "none").string()};
    EXPECT_EQ(find_program_folder(question), (root / "home/velkoro/").string());
}

TEST_F(ProgramFolder, KeepsTheUsersTablesAndData)
{
    const fs::path own = root / "home/velkoro";
    put(own / "DATUM.INI", "my datums");
    put(own / "symbol_2.ini", "my symbols");
    put(own / "garmin.INI", "my receivers");
    put(own / "Waypoints/sample.wp", "my waypoints");
    find_program_folder(question);
    EXPECT_EQ(get(own / "DATUM.INI"), "my datums");
    EXPECT_EQ(get(own / "garmin.INI"), "my receivers");
    EXPECT_EQ(get(own / "Waypoints/sample.wp"), "my waypoints");
    EXPECT_FALSE(fs::exists(own / "Datum.ins"));
    EXPECT_FALSE(fs::exists(own / "SYMBOL_2.INS"));
    EXPECT_FALSE(fs::exists(own / "Garmin.ini"));
}

TEST_F(ProgramFolder, TakesANewerTextTableAndLeavesAnOlderOne)
{
    const fs::path own = root / "home/velkoro";
    put(own / "velkoro.res", "old table");
    make_older(own / "velkoro.res");
    find_program_folder(question);
    EXPECT_EQ(get(own / "velkoro.res"), "table");

    put(own / "velkoro.res", "own table");
    make_older(root / "share/velkoro.res");
    find_program_folder(question);
    EXPECT_EQ(get(own / "velkoro.res"), "own table");
}

TEST_F(ProgramFolder, OfThisProcessFollowsTheEnvironment)
{
    setenv("VELKORO_HOME", "/somewhere/else", 1);
    EXPECT_EQ(folder_question_of_process("").named, "/somewhere/else");
    EXPECT_EQ(folder_question_of_process("/option").named, "/option");
    unsetenv("VELKORO_HOME");
    EXPECT_EQ(folder_question_of_process("").named, "");

    setenv("XDG_DATA_HOME", "/data/home", 1);
    setenv("XDG_DATA_DIRS", "/first:/second", 1);
    const folder_question q = folder_question_of_process("");
    EXPECT_EQ(q.data_home, "/data/home");
    ASSERT_EQ(q.installed.size(), 3U);
    EXPECT_EQ(q.installed[0], q.executable + "/../share/velkoro");
    EXPECT_EQ(q.installed[1], "/first/velkoro");
    EXPECT_EQ(q.installed[2], "/second/velkoro");

    setenv("XDG_DATA_HOME", "not/absolute", 1);
    setenv("HOME", "/home/anna", 1);
    EXPECT_EQ(folder_question_of_process("").data_home, "/home/anna/.local/share");
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_DATA_DIRS");
}

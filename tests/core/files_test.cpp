#include "core/files.h"

#include "core/code_page.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

using namespace velkoro;

namespace {

/// A folder of its own, removed with all it holds.
class Files : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "filesXXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        dir = name + "/";
        folders.program = dir;
    }
    void TearDown() override
    {
        std::filesystem::remove_all(dir);
        folders = {};
    }
    std::size_t entries() const
    {
        std::size_t n = 0;
        for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(dir))
            ++n;
        return n;
    }
    std::string dir;
};

} // namespace

TEST_F(Files, AFileWrittenIsReadBackByteByByte)
{
    const std::string bytes("\0\x1A\r\n\xFF"
                            "x",
                            6);
    write_file(dir + "a.bin", bytes);
    EXPECT_EQ(read_file(dir + "a.bin"), bytes);
    write_file(dir + "empty", "");
    EXPECT_EQ(read_file(dir + "empty"), "");
}

TEST_F(Files, ALargeFileIsReadWhole)
{
    const std::string bytes(3'000'001, 'q');
    write_file(dir + "big", bytes);
    EXPECT_EQ(read_file(dir + "big"), bytes);
}

TEST_F(Files, AMissingFileOrAFolderGivesNothing)
{
    EXPECT_EQ(read_file(dir + "none"), std::nullopt);
    EXPECT_EQ(read_file(dir), std::nullopt);
    EXPECT_FALSE(file_exists(dir + "none"));
    EXPECT_FALSE(file_exists(dir));
    EXPECT_EQ(file_time(dir + "none"), -1);
    EXPECT_FALSE(delete_file(dir + "none"));
}

TEST_F(Files, NamesOfTheProgramFolderAreFoundCaseBlind)
{
    write_file(dir + "Datum.ini", "x");
    EXPECT_EQ(program_path("DATUM.INI"), dir + "Datum.ini");
    EXPECT_EQ(program_path("datum.ini"), dir + "Datum.ini");
    EXPECT_EQ(program_path("Datum.ini"), dir + "Datum.ini");
    EXPECT_EQ(program_path("other.ini"), dir + "other.ini");
}

TEST_F(Files, AnAbsolutePathStaysAbsolute)
{
    EXPECT_EQ(program_path("/nowhere/x"), "/nowhere/x");
}

TEST_F(Files, FoldersOfAStoredPathAreFoundCaseBlindWithBothSeparators)
{
    std::filesystem::create_directories(dir + "Waypoints/Old");
    write_file(dir + "Waypoints/Old/Sample.wp", "x");
    EXPECT_EQ(program_path("waypoints\\OLD\\sample.WP"), dir + "Waypoints/Old/Sample.wp");
    EXPECT_EQ(program_path("waypoints\\new\\b.wp"), dir + "Waypoints/new/b.wp");
}

TEST_F(Files, TheSpellingAsWrittenComesFirst)
{
    write_file(dir + "A.INI", "1");
    write_file(dir + "a.ini", "2");
    EXPECT_EQ(program_path("a.ini"), dir + "a.ini");
    EXPECT_EQ(program_path("A.ini"), dir + "A.INI") << "the first by its bytes";
}

TEST_F(Files, UmlautsMatchInBothEncodingsAndCases)
{
    write_file(dir + "Hütte.wp", "x");
    EXPECT_EQ(program_path("HÜTTE.WP"_w), dir + "Hütte.wp");
    EXPECT_EQ(program_path("hütte.wp"), dir + "Hütte.wp");
}

TEST_F(Files, NamesOutsideTheCodePageDoNotMatchEachOther)
{
    write_file(dir + "\xE2\x98\x83.wp", "x"); // a snowman
    EXPECT_EQ(program_path("\xE2\x98\x82.wp"), dir + "\xE2\x98\x82.wp");
    EXPECT_EQ(program_path("?.wp"), dir + "?.wp");
}

TEST_F(Files, OperationsTakeTheNameAsWritten)
{
    write_file(dir + "a.wp", "small");
    write_file(dir + "A.wp", "capital");
    EXPECT_EQ(read_file(dir + "a.wp"), "small");
    EXPECT_FALSE(file_exists(dir + "A.WP"));
}

TEST_F(Files, BackslashesSeparateFoldersWhereNoSuchFileExists)
{
    std::filesystem::create_directories(dir + "Track");
    write_file(dir + "Track\\t.t", "x");
    EXPECT_TRUE(file_exists(dir + "Track/t.t"));
    EXPECT_EQ(read_file(dir + "Track\\t.t"), "x");
}

TEST_F(Files, WritingLeavesNoTemporaryFileAndKeepsPermissions)
{
    write_file(dir + "a", "1");
    ASSERT_EQ(::chmod((dir + "a").c_str(), 0640), 0);
    write_file(dir + "a", "2");
    struct stat st {};
    ASSERT_EQ(::stat((dir + "a").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640U);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(Files, WritingThroughALinkKeepsTheLink)
{
    write_file(dir + "target", "1");
    std::filesystem::create_symlink(dir + "target", dir + "link");
    write_file(dir + "link", "2");
    EXPECT_TRUE(std::filesystem::is_symlink(dir + "link"));
    EXPECT_EQ(read_file(dir + "target"), "2");
}

TEST_F(Files, AWriteThatFailsNamesThePathAndTheReason)
{
    try {
        write_file(dir + "none/a", "x");
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), dir + "none/a: No such file or directory");
    }
}

TEST_F(Files, AFullDiskIsReported)
{
    ASSERT_TRUE(file_exists("/dev/full")); // every Linux has it
    EXPECT_THROW(write_file("/dev/full", "x"), std::runtime_error);
    EXPECT_THROW(append_file("/dev/full", "x"), std::runtime_error);
}

TEST_F(Files, AFailedWriteLeavesTheOldFile)
{
    // A folder under the target's name lets the last step, the renaming, fail.
    std::filesystem::create_directories(dir + "a/b");
    EXPECT_THROW(write_file(dir + "a", "x"), std::runtime_error);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(Files, AppendingMakesTheFileAndAddsToIt)
{
    append_file(dir + "log", "a");
    append_file(dir + "log", "b");
    EXPECT_EQ(read_file(dir + "log"), "ab");
}

TEST_F(Files, DeletingAndRenaming)
{
    write_file(dir + "a", "x");
    rename_file(dir + "a", dir + "b");
    EXPECT_FALSE(file_exists(dir + "a"));
    EXPECT_TRUE(delete_file(dir + "b"));
    EXPECT_THROW(rename_file(dir + "a", dir + "b"), std::runtime_error);
}

TEST_F(Files, TheTimeIsThatOfTheLastChange)
{
    write_file(dir + "a", "x");
    EXPECT_GT(file_time(dir + "a"), 1'600'000'000);
}

TEST(Paths, AreSplitAtBothSeparators)
{
    EXPECT_EQ(path_folder("C:\\data\\x.WP"), "C:\\data\\");
    EXPECT_EQ(path_name("C:\\data\\x.WP"), "x.WP");
    EXPECT_EQ(path_extension("C:\\data\\x.WP"), ".wp");
    EXPECT_EQ(path_folder("a/b.c/d"), "a/b.c/");
    EXPECT_EQ(path_extension("a/b.c/d"), "");
    EXPECT_EQ(path_folder("d"), "");
    EXPECT_EQ(path_name("a/"), "");
}

TEST(Paths, AreShownInTheProgramsCodePage)
{
    EXPECT_EQ(shown_path("Hütte"), "Hütte"_w);
    EXPECT_EQ(shown_path("Hütte"_w), "Hütte"_w);
}

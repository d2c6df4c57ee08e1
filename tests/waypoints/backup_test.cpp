#include "waypoints/backup.h"

#include "core/files.h"
#include "core/settings.h"
#include "tests/waypoints/native_support.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace velkoro;

TEST(BackupName, AddsAB)
{
    EXPECT_EQ(backup_name("/x/list.wp"), "/x/list.wpb");
    EXPECT_EQ(backup_name("a.t"), "a.tb");
    EXPECT_EQ(backup_name("/x/LIST.WP"), "/x/LIST.WPb");
}

TEST(BackupName, ALongExtensionKeepsItsLength)
{
    EXPECT_EQ(backup_name("map.cal"), "map.cab");
}

TEST(BackupRename, DoesNothingWithoutAFile)
{
    const native_fixture f;
    backup_rename(f.folder + "none.wp");
    EXPECT_FALSE(file_exists(f.folder + "none.wpb"));
}

TEST(BackupRename, KeepsOneGeneration)
{
    const native_fixture f;
    write_file(f.folder + "a.wp", "new");
    write_file(f.folder + "a.wpb", "older");
    backup_rename(f.folder + "a.wp");
    EXPECT_FALSE(file_exists(f.folder + "a.wp"));
    EXPECT_EQ(read_file(f.folder + "a.wpb"), "new");
}

TEST(BackupRename, TakesTheExtensionCaseBlind)
{
    const native_fixture f;
    write_file(f.folder + "A.T", "track");
    backup_rename(f.folder + "A.T");
    EXPECT_EQ(read_file(f.folder + "A.Tb"), "track");
}

TEST(BackupRename, DeletesOtherFiles)
{
    const native_fixture f;
    write_file(f.folder + "a.txt", "text");
    backup_rename(f.folder + "a.txt");
    EXPECT_FALSE(file_exists(f.folder + "a.txt"));
    EXPECT_FALSE(file_exists(f.folder + "a.txtb"));
}

TEST(BackupRename, DeletesWhileBackupsAreOff)
{
    const native_fixture f;
    settings.backup_on = false;
    write_file(f.folder + "a.wp", "x");
    backup_rename(f.folder + "a.wp");
    EXPECT_FALSE(file_exists(f.folder + "a.wp"));
    EXPECT_FALSE(file_exists(f.folder + "a.wpb"));
}

TEST(ReplaceFile, LeavesTheOldFileWhenTheNewOneCannotBeWritten)
{
    const native_fixture f;
    EXPECT_THROW(replace_file(f.folder + "missing/a.wp", "x"), std::runtime_error);
    write_file(f.folder + "a.wp", "old");
    write_file(f.folder + "a.wpb", "older");
    std::filesystem::create_directory(f.folder + "a.wp.new");
    EXPECT_THROW(replace_file(f.folder + "a.wp", "new"), std::runtime_error);
    EXPECT_EQ(read_file(f.folder + "a.wp"), "old");
    EXPECT_EQ(read_file(f.folder + "a.wpb"), "older");
}

TEST(ReplaceFile, LeavesNothingBesideFileAndBackup)
{
    const native_fixture f;
    write_file(f.folder + "a.wp", "old");
    replace_file(f.folder + "a.wp", "new");
    EXPECT_EQ(read_file(f.folder + "a.wp"), "new");
    EXPECT_EQ(read_file(f.folder + "a.wpb"), "old");
    EXPECT_FALSE(file_exists(f.folder + "a.wp.new"));
}

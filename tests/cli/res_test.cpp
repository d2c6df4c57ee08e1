#include "tests/cli/run_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velkoro;
using nlohmann::json;

TEST(CliRes, ATableBuiltFromItsSourceDumpsAsRows)
{
    const std::string folder = test_folder();
    write_text(folder + "a.txt", "206\tVELkoro\tEnglish\tDeutsch\r\n"
                                 "7\tcomment\tseven\tsieben\r\n"
                                 "\r\n"
                                 "30000\tcomment\tlarge\tgro\xDF\r\n");
    const cli_result build = run_cli({"res", "build", folder + "a.txt", folder + "a.res"});
    EXPECT_EQ(build.code, 0) << build.err;
    EXPECT_EQ(build.out, "");

    const cli_result dump = run_cli({"res", "dump", folder + "a.res"});
    EXPECT_EQ(dump.code, 0) << dump.err;
    EXPECT_EQ(dump.out, "7\tseven\tsieben\n30000\tlarge\tgro\xC3\x9F\n");

    const json document = json::parse(run_cli({"--json", "res", "dump", folder + "a.res"}).out);
    EXPECT_EQ(document["header"], (json{"206", "VELkoro", "English", "Deutsch"}));
    EXPECT_EQ(document["rows"][1]["number"], 30000);
    EXPECT_EQ(document["rows"][1]["texts"], (json{"large", "gro\xC3\x9F"}));
}

TEST(CliRes, TheShippedTableHoldsEveryLineOfItsSource)
{
    const cli_result dump = run_cli({"res", "dump", test_home() + "velkoro.res"});
    ASSERT_EQ(dump.code, 0) << dump.err;
    const std::string source = read_text(source_path("data/velkoro.txt"));
    EXPECT_EQ(std::count(dump.out.begin(), dump.out.end(), '\n') + 1,
              std::count(source.begin(), source.end(), '\n'));
    EXPECT_NE(dump.out.find("\n7311\tChoose the language\tSprache w\xC3\xA4hlen\n"),
              std::string::npos);
}

TEST(CliRes, ADamagedTableGivesTheRowsBeforeTheDamageAndFails)
{
    const std::string folder = test_folder();
    write_text(folder + "a.txt", "206\tVELkoro\tEnglish\n7\tc\tseven\n8\tc\teight\n");
    ASSERT_EQ(run_cli({"res", "build", folder + "a.txt", folder + "a.res"}).code, 0);
    const std::string whole = read_text(folder + "a.res");
    write_text(folder + "cut.res", whole.substr(0, whole.size() - 2));
    const cli_result r = run_cli({"res", "dump", folder + "cut.res"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, "7\tseven\n");
    EXPECT_EQ(r.err.rfind("velkoro-cli: ", 0), 0U) << r.err;
}

TEST(CliRes, ABadSourceFailsAndLeavesTheTarget)
{
    const std::string folder = test_folder();
    write_text(folder + "a.txt", "206\tVELkoro\tEnglish\nseven\tc\tseven\n");
    write_text(folder + "a.res", "old");
    const cli_result r = run_cli({"res", "build", folder + "a.txt", folder + "a.res"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err.rfind("velkoro-cli: ", 0), 0U) << r.err;
    EXPECT_EQ(read_text(folder + "a.res"), "old");
}

TEST(CliRes, AMissingFileFails)
{
    const std::string folder = test_folder();
    EXPECT_EQ(run_cli({"res", "build", folder + "none.txt", folder + "a.res"}).code, 1);
    const cli_result r = run_cli({"--json", "res", "dump", folder + "none.res"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("none.res"), std::string::npos);
    EXPECT_TRUE(json::parse(r.out).contains("error"));
}

#include "tests/cli/run_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velkoro;
using nlohmann::json;

TEST(CliText, PrintsTheTextOfTheLanguage)
{
    const std::string home = test_home();
    EXPECT_EQ(run_cli({"--home", home, "text", "7301"}).out, "Cancel\n");
    EXPECT_EQ(run_cli({"--home", home, "--lang", "1", "text", "7301"}).out, "Abbrechen\n");
    EXPECT_EQ(run_cli({"--home", home, "--lang", "1", "text", "7311"}).out,
              "Sprache w\xC3\xA4hlen\n"); // UTF-8
}

TEST(CliText, ALanguageThatTheTableLacksIsTheFirst)
{
    EXPECT_EQ(run_cli({"--home", test_home(), "--lang", "5", "text", "7301"}).out, "Cancel\n");
}

TEST(CliText, FillsParametersInOrder)
{
    const std::string home = test_home();
    write_text(home + "source.txt", "206\tVELkoro\tEnglish\n1\tc\t# of # from #\n");
    ASSERT_EQ(run_cli({"res", "build", home + "source.txt", home + "velkoro.res"}).code, 0);
    EXPECT_EQ(run_cli({"--home", home, "text", "1", "3", "4"}).out, "3 of 4 from #\n");
    EXPECT_EQ(run_cli({"--home", home, "text", "1", "3", "4", "\xC3\xBC"}).out,
              "3 of 4 from \xC3\xBC\n");
}

TEST(CliText, AnUnknownNumberSaysSo)
{
    EXPECT_EQ(run_cli({"--home", test_home(), "text", "19999"}).out, "Missing text 19999\n");
}

TEST(CliText, GivesOneJsonDocument)
{
    const cli_result r = run_cli({"--home", test_home(), "--json", "--lang", "1", "text", "7311"});
    ASSERT_EQ(r.code, 0);
    const json document = json::parse(r.out);
    EXPECT_EQ(document["number"], 7311);
    EXPECT_EQ(document["text"], "Sprache w\xC3\xA4hlen");
    EXPECT_EQ(document["messages"], json::array());
}

TEST(CliText, AMissingTableIsReported)
{
    const std::string home = test_folder() + "empty/";
    const cli_result r = run_cli({"--home", home, "--json", "text", "7301"});
    EXPECT_NE(r.err.find("File velkoro.res not found"), std::string::npos) << r.err;
    const json document = json::parse(r.out);
    ASSERT_FALSE(document["messages"].empty());
    EXPECT_EQ(document["text"], "Missing text 7301");
}

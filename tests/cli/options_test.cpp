#include "tests/cli/run_cli.h"

#include "cli/options.h"

#include <gtest/gtest.h>

using namespace velkoro;
using testing::Test;

TEST(CliOptions, TheVersionIsPrintedWithoutAProgramFolder)
{
    const cli_result r = run_cli({"--home", "/nowhere", "--version"});
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "velkoro-cli " VELKORO_VERSION "\n");
    EXPECT_EQ(r.err, "");
}

TEST(CliOptions, TheHelpNamesEveryCommandAndOption)
{
    const cli_result r = run_cli({"--help"});
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.err, "");
    for (const char* word : {"info", "dump", "convert", "text", "res", "--home", "--json", "--lang",
                             "--set", "--on-conflict", "--yes", "--no", "--version"})
        EXPECT_NE(r.out.find(word), std::string::npos) << word;
}

TEST(CliOptions, ACommandHasItsOwnHelp)
{
    const cli_result r = run_cli({"convert", "--help"});
    EXPECT_EQ(r.code, 0);
    EXPECT_NE(r.out.find("--append"), std::string::npos);
}

TEST(CliOptions, AnUnknownCommandIsWrongUsage)
{
    const cli_result r = run_cli({"frobnicate"});
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find("velkoro-cli: "), std::string::npos);
    EXPECT_NE(r.err.find("\nusage: velkoro-cli "), std::string::npos);
}

TEST(CliOptions, NoCommandIsWrongUsage)
{
    EXPECT_EQ(run_cli({}).code, 2);
    EXPECT_EQ(run_cli({"--json"}).code, 2);
}

TEST(CliOptions, WrongOptionsAreWrongUsageWithTheUsageOfTheCommand)
{
    const cli_result unknown = run_cli({"text", "--frob", "11"});
    EXPECT_EQ(unknown.code, 2);
    EXPECT_NE(unknown.err.find("\nusage: velkoro-cli text"), std::string::npos) << unknown.err;

    EXPECT_EQ(run_cli({"text"}).code, 2);
    EXPECT_EQ(run_cli({"text", "eleven"}).code, 2);
    EXPECT_EQ(run_cli({"text", "11", "a", "b", "c", "d"}).code, 2);
    EXPECT_EQ(run_cli({"--lang", "-1", "text", "11"}).code, 2);
    EXPECT_EQ(run_cli({"--lang", "de", "text", "11"}).code, 2);
    EXPECT_EQ(run_cli({"--on-conflict", "maybe", "text", "11"}).code, 2);
    EXPECT_EQ(run_cli({"--set", "Units", "text", "11"}).code, 2);
    EXPECT_EQ(run_cli({"--yes", "--no", "text", "11"}).code, 2);
    EXPECT_EQ(run_cli({"res"}).code, 2);
    EXPECT_EQ(run_cli({"res", "build", "only-one"}).code, 2);
}

TEST(CliOptions, AFileMayBearTheNameOfACommand)
{
    const cli_result r = run_cli({"--home", test_home(), "info", "text"});
    EXPECT_EQ(r.code, 1); // it is not there, but it was looked for
    EXPECT_NE(r.err.find("text"), std::string::npos);
}

TEST(CliOptions, StandAheadOfTheCommandOrBehindIt)
{
    const std::string home = test_home();
    const cli_result ahead = run_cli({"--home", home, "--lang", "1", "--json", "text", "11"});
    const cli_result behind = run_cli({"text", "11", "--json", "--lang", "1", "--home", home});
    EXPECT_EQ(ahead.code, 0) << ahead.err;
    EXPECT_EQ(ahead.out, behind.out);
}

TEST(CliOptions, TheProgramLinksNoWindowToolkit)
{
    EXPECT_EQ(read_text(VELKORO_CLI).find("libQt"), std::string::npos);
}

TEST(CliSetting, IsCutAtItsFirstEqualsSign)
{
    using parts = std::pair<std::string, std::string>;
    EXPECT_EQ(split_setting("Units=9"), (parts{"Units", "9"}));
    EXPECT_EQ(split_setting("Time=+1 L3 L10"), (parts{"Time", "+1 L3 L10"}));
    EXPECT_EQ(split_setting("Time=\"+1 L3 L10\""), (parts{"Time", "+1 L3 L10"}));
    EXPECT_EQ(split_setting("a=b=c"), (parts{"a", "b=c"}));
    EXPECT_EQ(split_setting("a="), (parts{"a", ""}));
    EXPECT_EQ(split_setting("=b").first, "");
    EXPECT_EQ(split_setting("ab").first, "");
    EXPECT_EQ(split_setting("Print_head=Stra\xC3\x9F"
                            "e"),
              (parts{"Print_head", "Stra\xDF"
                                   "e"}));
}

TEST(CliSetting, BelongsToMainByItsKey)
{
    for (const char* key : {"Lang3", "LAST_W0", "Pr_act", "pr_0", "Scale", "scale", "pos_main",
                            "map_options", "Month", "Opt"})
        EXPECT_TRUE(is_main_key(key)) << key;
    for (const char* key : {"Flags", "Units", "Garmin", "Time", "Port", "Map_w", "Print_head"})
        EXPECT_FALSE(is_main_key(key)) << key;
}

TEST(CliSetting, HoldsForTheRunAndIsNotStored)
{
    const std::string home = test_home();
    const std::string ini = "[Main]\r\nPr_act=Standard\r\nPr_0=Standard\r\nLang3=0\r\n"
                            "[Standard]\r\nTime=+1\r\n";
    write_text(home + "velkoro.ini", ini);
    const cli_result r = run_cli({"--home", home, "--set", "Lang3=1", "text", "7302"});
    EXPECT_EQ(r.code, 0);
    const cli_result german = run_cli({"--home", home, "--lang", "1", "text", "7301"});
    const cli_result set = run_cli({"--home", home, "--set", "Lang3=1", "text", "7301"});
    EXPECT_EQ(set.out, german.out);
    EXPECT_EQ(set.out, "Abbrechen\n");
    EXPECT_EQ(read_text(home + "velkoro.ini"), ini);
}

#include "tests/cli/run_cli.h"

#include <gtest/gtest.h>

namespace velkoro {
namespace {

cli_result coord_run(std::vector<std::string> arguments, const std::string& input = {})
{
    arguments.insert(arguments.begin(), {"--home", test_home()});
    return run_cli(arguments, input);
}

TEST(CliCoord, ConvertsOneLineEach)
{
    const cli_result r = coord_run({"coord", "--from", "0", "--to", "UTM"},
                                   "|E009.90000\xC2\xB0|N 51.50000\xC2\xB0\n"
                                   "|151.2153|-33.8568\r\n"
                                   "nonsense\n"
                                   "|E10|N89\n"
                                   "|9.9|51.5");
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "32U|0562.471|5705.813\n56H|0334.901|6252.289\n||\n||\n"
                     "32U|0562.471|5705.813\n");
}

TEST(CliCoord, TakesCoordinatesAsArguments)
{
    const cli_result r =
        coord_run({"coord", "--from", "UTM", "--to", "0", "32U|0562.471|5705.813"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "|E009.90000\xC2\xB0|N 51.50000\xC2\xB0\n");
}

TEST(CliCoord, KnowsSemicirclesAndDatums)
{
    const cli_result r =
        coord_run({"coord", "--from", "semi", "--to", "5", "--to-datum", "Potsdam"},
                  "|118111600|614418500\n|1|2147483647\n||\n");
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out.substr(0, 6), "|3562.");
    EXPECT_EQ(r.out.substr(r.out.find('\n')), "\n||\n||\n");
    const cli_result back = coord_run({"coord", "--from", "0", "--to", "semi"}, "|180|90\n");
    EXPECT_EQ(back.out, "|-2147483648|1073741824\n");
}

TEST(CliCoord, RefusesUnknownFormatsAndDatums)
{
    EXPECT_EQ(coord_run({"coord", "--from", "99", "--to", "0"}).code, 1);
    EXPECT_EQ(coord_run({"coord", "--from", "0", "--to", "0", "--to-datum", "Atlantis"}).code, 1);
    EXPECT_EQ(coord_run({"coord", "--from", "0"}).code, 2);
}

TEST(CliCoord, PrintsJson)
{
    const cli_result r = coord_run({"--json", "coord", "--from", "0", "--to", "3"}, "|9.9|51.5\n");
    EXPECT_EQ(r.code, 0);
    EXPECT_NE(r.out.find("\"32U|0562.471|5705.813\""), std::string::npos) << r.out;
}

TEST(CliDistance, MeasuresWithNineDigits)
{
    const cli_result r = coord_run({"distance", "--method", "flat"},
                                   "584584584|119304647|572662306|119304647\n1|2|3\n");
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out.substr(0, 6), "111.24");
    EXPECT_EQ(r.out.substr(r.out.find('\n')), "\n|\n");
    EXPECT_EQ(coord_run({"distance", "--method", "round"}).code, 2);
}

TEST(CliProject, ProjectsPositions)
{
    const cli_result r = coord_run({"project", "--method", "to_wgs", "--unit", "nm"},
                                   "572662306|119304647|0|90\n572662306|119304647|x|90\n");
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "572662306|119304647\n|\n");
}

} // namespace
} // namespace velkoro

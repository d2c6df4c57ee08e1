#include "tests/cli/native_bytes.h"
#include "tests/cli/run_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

using namespace velkoro;
using nlohmann::json;

namespace {

std::string put_file(const std::string& name, const std::string& bytes)
{
    const std::string path = test_folder() + name;
    write_text(path, bytes);
    return path;
}

cli_result convert(const std::vector<std::string>& arguments)
{
    std::vector<std::string> all = {"--home", test_home(), "convert"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return run_cli(all);
}

json dump(const std::string& file)
{
    return json::parse(run_cli({"--home", test_home(), "dump", file}).out);
}

std::vector<std::string> names(const json& document, const char* list = "waypoints")
{
    std::vector<std::string> all;
    for (const json& record : document[list])
        all.push_back(record["nam"]);
    return all;
}

using texts = std::vector<std::string>;

const std::string one = wp_waypoint("ONE", "FIRST", 1000000, 0);
const std::string two = wp_waypoint("TWO", "SECOND", 2000000, 0);
const std::string three = wp_waypoint("THREE", "THIRD", 3000000, 0);
const std::string route = wp_route("Tour", "ONE$TWO$", "$$", "$$", "$$");

} // namespace

TEST(CliConvert, ANativeFileOfTheNewestVersionComesOutAsItWentIn)
{
    const std::string bytes = wp_head("Alps") + one + two + route;
    const std::string in = put_file("in.wp", bytes);
    const std::string out = test_folder() + "out.wp";
    const cli_result r = convert({in, out});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_text(out), bytes);
}

TEST(CliConvert, ATrackOfTheNewestVersionComesOutAsItWentIn)
{
    const std::string bytes = t_head("Monday") + t_point(1, 2, 1000, 3, "H\xFCtte", 1200) +
                              t_point(3, 4, 1010) + t_point(5, 6, 0, 5);
    const std::string out = test_folder() + "out.t";
    const cli_result r = convert({put_file("in.t", bytes), out});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(read_text(out), bytes);
}

TEST(CliConvert, SeveralFilesBecomeOne)
{
    const std::string a = put_file("a.wp", wp_head("A") + one + two + route);
    const std::string b = put_file("b.wp", wp_head("B") + three);
    const std::string out = test_folder() + "out.wp";
    EXPECT_EQ(convert({a, b, out}).code, 0);
    const json d = dump(out);
    EXPECT_EQ(names(d), (texts{"ONE", "TWO", "THREE"}));
    EXPECT_EQ(names(d, "routes"), (texts{"Tour"}));
    EXPECT_EQ(d["title"], "A & B");
}

TEST(CliConvert, TheExtensionOfTheTargetChoosesWhatIsWritten)
{
    const std::string a = put_file("a.wp", wp_head("A") + one);
    const std::string t = put_file("b.t", t_head("T") + t_point(1, 2, 3));
    const std::string out_t = test_folder() + "out.t", out_wp = test_folder() + "out.WP";
    EXPECT_EQ(convert({a, t, out_t}).code, 0);
    EXPECT_EQ(dump(out_t)["track"].size(), 1U);
    EXPECT_EQ(convert({a, t, out_wp}).code, 0);
    EXPECT_EQ(names(dump(out_wp)), (texts{"ONE"}));
    const cli_result r = convert({a, test_folder() + "out.xyz"});
    EXPECT_EQ(r.code, 2);
    EXPECT_FALSE(std::filesystem::exists(test_folder() + "out.xyz"));
}

TEST(CliConvert, SelectTakesWaypointsOrRoutesOrMarkedOnes)
{
    const std::string a = put_file("a.wp", wp_head("A") + one + two + three + route);
    const std::string b = put_file("b.wp", wp_head("B") + wp_waypoint("FOUR", "", 4000000, 0));
    const std::string out = test_folder() + "out.wp";

    EXPECT_EQ(convert({a, out, "--select", "W"}).code, 0);
    EXPECT_EQ(names(dump(out)), (texts{"ONE", "TWO", "THREE"}));
    EXPECT_EQ(names(dump(out), "routes"), texts{});

    // Routes take the waypoints along that they run through.
    EXPECT_EQ(convert({a, out, "--select", "R"}).code, 0);
    EXPECT_EQ(names(dump(out)), (texts{"ONE", "TWO"}));
    EXPECT_EQ(names(dump(out), "routes"), (texts{"Tour"}));

    // Marked is what a later file brought in.
    EXPECT_EQ(convert({a, b, out, "--select", "WM"}).code, 0);
    EXPECT_EQ(names(dump(out)), (texts{"FOUR"}));

    EXPECT_EQ(convert({a, out, "--select", "X"}).code, 2);
}

TEST(CliConvert, AppendAddsASectionToTheTarget)
{
    const std::string out = put_file("out.wp", wp_head("Old") + one);
    const std::string a = put_file("a.wp", wp_head("A") + two);
    EXPECT_EQ(convert({a, out, "--append"}).code, 0);
    EXPECT_EQ(read_text(out), wp_head("Old") + one + section('A', 204) + two);
    EXPECT_FALSE(std::filesystem::exists(test_folder() + "out.wpb"));

    const std::string track = put_file("out.t", t_head("Old") + t_point(1, 2, 3, 3));
    const std::string t = put_file("b.t", t_head("T") + t_point(5, 6, 7, 3));
    EXPECT_EQ(convert({t, track, "--append"}).code, 0);
    EXPECT_EQ(read_text(track),
              t_head("Old") + t_point(1, 2, 3, 3) + section('A', 203) + t_point(5, 6, 7, 3));
}

TEST(CliConvert, AppendToATargetThatIsNotThereMakesAWholeFile)
{
    const std::string a = put_file("a.wp", wp_head("A") + two);
    const std::string out = test_folder() + "out.wp";
    EXPECT_EQ(convert({a, out, "--append"}).code, 0);
    EXPECT_EQ(read_text(out), wp_head("A") + two);
}

TEST(CliConvert, ReconcileAddsASectionWithoutRoutesThatUpdatesOnly)
{
    const std::string out = put_file("out.wp", wp_head("Old") + one);
    const std::string a =
        put_file("a.wp", wp_head("A") + wp_waypoint("ONE", "LATER", 1000000, 0) + two + route);
    EXPECT_EQ(convert({a, out, "--reconcile"}).code, 0);
    EXPECT_EQ(read_text(out), wp_head("Old") + one + section('U', 204) +
                                  wp_waypoint("ONE", "LATER", 1000000, 0) + two);
    const json d = dump(out);
    EXPECT_EQ(names(d), (texts{"ONE"})); // TWO has nothing to update
    EXPECT_EQ(d["waypoints"][0]["kom"], "LATER");
}

TEST(CliConvert, AppendAndReconcileExcludeEachOther)
{
    const std::string a = put_file("a.wp", wp_head("A") + one);
    EXPECT_EQ(convert({a, test_folder() + "out.wp", "--append", "--reconcile"}).code, 2);
}

TEST(CliConvert, TheOldTargetBecomesTheBackup)
{
    const std::string old = wp_head("Old") + one;
    const std::string out = put_file("out.wp", old);
    const std::string a = put_file("a.wp", wp_head("A") + two);
    EXPECT_EQ(convert({a, out}).code, 0);
    EXPECT_EQ(read_text(out), wp_head("A") + two);
    EXPECT_EQ(read_text(test_folder() + "out.wpb"), old);
}

TEST(CliConvert, AFileMayBeConvertedOntoItself)
{
    const std::string out = put_file("same.wp", wp_head("A") + one + section('A', 204) + two);
    EXPECT_EQ(convert({out, out}).code, 0);
    EXPECT_EQ(read_text(out), wp_head("A") + one + two);
}

TEST(CliConvert, TheHeadsOfFilesLeaveTheSettingsAlone)
{
    const std::string a = put_file("a.wp", wp_head("A") + one); // of format UTM
    const std::string ini = test_home() + "velkoro.ini";
    EXPECT_EQ(convert({a, test_folder() + "out.wp", "--format", "5"}).code, 0);
    EXPECT_FALSE(std::filesystem::exists(ini));
    const std::string settings = "[Main]\r\nOpt=0 2 7\r\n";
    write_text(ini, settings);
    EXPECT_EQ(convert({a, test_folder() + "out.wp", "--format", "5"}).code, 0);
    EXPECT_EQ(read_text(ini), settings);
    EXPECT_EQ(dump(test_folder() + "out.wp")["datum"], "Potsdam");
}

TEST(CliConvert, TitleFormatAndDatumGoIntoTheHead)
{
    const std::string a = put_file("a.wp", wp_head("A") + one);
    const std::string out = test_folder() + "out.wp";
    const cli_result r = convert(
        {a, out, "--title", "H\xC3\xBCtten", "--format", "(CH) Swiss Grid", "--datum", "WGS 84"});
    EXPECT_EQ(r.code, 0) << r.err;
    const json d = dump(out);
    EXPECT_EQ(d["title"], "H\xC3\xBCtten");
    EXPECT_EQ(d["posform"], "(CH) Swiss Grid");
    EXPECT_EQ(d["datum"], "WGS 84");
    EXPECT_EQ(convert({a, out, "--format", "4"}).code, 0);
    EXPECT_EQ(dump(out)["posform"], "MGRS");

    // A format brings its usual datum along, as in the window.
    EXPECT_EQ(convert({a, out, "--format", "(F) Lambert"}).code, 0);
    EXPECT_EQ(dump(out)["datum"], "NTF (France)");

    const cli_result no_datum = convert({a, out, "--datum", "Atlantis"});
    EXPECT_EQ(no_datum.code, 1);
    EXPECT_NE(no_datum.err.find("Atlantis"), std::string::npos);
    EXPECT_EQ(convert({a, out, "--format", "Atlantis"}).code, 1);

    const std::string t = put_file("a.t", t_head("T") + t_point(1, 2, 3));
    EXPECT_EQ(convert({t, test_folder() + "out.t", "--title", "Day"}).code, 0);
    EXPECT_EQ(dump(test_folder() + "out.t")["title"], "Day");
}

TEST(CliConvert, ADamagedFileIsWrittenAsFarAsItWasReadAndFails)
{
    const std::string bytes = wp_head("A") + one + two;
    const std::string a = put_file("a.wp", bytes.substr(0, bytes.size() - 1));
    const std::string out = test_folder() + "out.wp";
    const cli_result r = convert({a, out});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("[2430] "), std::string::npos) << r.err;
    EXPECT_EQ(read_text(out), wp_head("A") + one);
}

TEST(CliConvert, WithoutAReadableFileNothingIsWritten)
{
    const std::string out = put_file("out.wp", "precious");
    EXPECT_EQ(convert({test_folder() + "none.wp", out}).code, 1);
    EXPECT_EQ(convert({put_file("bad.wp", "no waypoints at all"), out}).code, 1);
    EXPECT_EQ(read_text(out), "precious");
}

TEST(CliConvert, ATargetThatCannotBeWrittenFails)
{
    const std::string a = put_file("a.wp", wp_head("A") + one);
    const cli_result r = convert({a, test_folder() + "no/such/folder/out.wp"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("velkoro-cli: "), std::string::npos) << r.err;
}

TEST(CliConvert, TwoPathsAreNeeded)
{
    EXPECT_EQ(convert({put_file("a.wp", wp_head("A") + one)}).code, 2);
}

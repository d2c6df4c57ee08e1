#include "tests/cli/native_bytes.h"
#include "tests/cli/run_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velkoro;
using nlohmann::json;

namespace {

const std::string two_waypoints =
    wp_head("Alps") +
    wp_waypoint("ZUG", "Zugspitze, H\xFCtte", 565742592, 131072000, 100, 5, 258, 2962) +
    wp_waypoint("H\xDCTTE", "@ABCKnorr", -1, -2);

json dump(const std::string& home, const std::vector<std::string>& files, int code = 0)
{
    std::vector<std::string> arguments = {"--home", home, "dump"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    const cli_result r = run_cli(arguments);
    EXPECT_EQ(r.code, code) << r.err;
    return json::parse(r.out);
}

std::string put_file(const std::string& name, const std::string& bytes)
{
    const std::string path = test_folder() + name;
    write_text(path, bytes);
    return path;
}

} // namespace

TEST(CliDump, GivesEveryFieldOfWaypointsAsStored)
{
    const json d = dump(test_home(), {put_file("a.wp", two_waypoints)});
    ASSERT_EQ(d["waypoints"].size(), 2U);
    EXPECT_EQ(
        d["waypoints"][0],
        json::parse(R"({"nam": "ZUG", "kom": "Zugspitze, Hütte", "lat": 565742592, "lon": 131072000,
                              "dat": 100, "prox": 5, "symb": 2, "symbmode": 1, "alt": 2962})"));
    EXPECT_EQ(d["waypoints"][1]["nam"], "HUTTE"); // names have no umlauts
    EXPECT_EQ(d["waypoints"][1]["kom"], "@ABCKnorr");
    EXPECT_EQ(d["waypoints"][1]["lat"], -1);
    EXPECT_EQ(d["waypoints"][1]["alt"], -32768);
    EXPECT_EQ(d["routes"], json::array());
    EXPECT_EQ(d["track"], json::array());
}

TEST(CliDump, GivesTheHeadOfTheFile)
{
    const json d = dump(test_home(), {put_file("a.wp", two_waypoints)});
    EXPECT_EQ(d["title"], "Alps");
    EXPECT_EQ(d["datum"], "WGS 84");
    EXPECT_EQ(d["posform"], "UTM");
    EXPECT_EQ(d["zeit_text"], "+1 L3 L10");
    EXPECT_EQ(d["sort"], 1);
    EXPECT_EQ(d["refp_name"], "REF");
    EXPECT_EQ(d["refp_pos"], (json{{"lat", 560000000}, {"lon", 100000000}}));
    EXPECT_EQ(d["scale"], 25000);
}

TEST(CliDump, GivesRoutesWithTrimmedNamesAndSplitLists)
{
    const std::string file =
        two_waypoints + wp_route("Tour", "ZUG$@ABCH\xDCTTE$", "$4.5$", "$$", "up$\xFC$", 3);
    const json d = dump(test_home(), {put_file("a.wp", file)});
    EXPECT_EQ(d["routes"],
              json::parse("[{\"nam\": \"Tour\", \"wps\": [\"ZUG\", \"@ABCHUTTE\"],"
                          "\"farbe\": 3, \"speed\": [\"\", \"4.5\"], \"korr\": [\"\", \"\"],"
                          "\"anw\": [\"up\", \"\xC3\xBC\"]}]"));
}

TEST(CliDump, GivesTrackPoints)
{
    const std::string file = t_head("Monday") + t_point(1, 2, 1000, 3, "H\xFCtte", 1200) +
                             t_point(3, 4, 1010, 2) + t_point(5, 6, 2147483647, 5);
    const json d = dump(test_home(), {put_file("a.t", file)});
    EXPECT_EQ(d["title"], "Monday");
    EXPECT_EQ(d["track"], json::parse(R"([
        {"lat": 1, "lon": 2, "zeit": 1000, "neu": -1, "art": 1, "kom": "Hütte", "alt": 1200},
        {"lat": 3, "lon": 4, "zeit": 1010, "neu": 0, "art": 1, "kom": "", "alt": -32768},
        {"lat": 5, "lon": 6, "zeit": 0, "neu": -1, "art": 2, "kom": "", "alt": -32768}])"));
}

TEST(CliDump, KeepsTheOrderOfTheKeys)
{
    const cli_result r = run_cli({"--home", test_home(), "dump", put_file("a.wp", two_waypoints)});
    std::size_t at = 0;
    for (const char* key : {"title", "datum", "posform", "zeit_text", "sort", "refp_name",
                            "refp_pos", "scale", "waypoints", "routes", "track", "messages"}) {
        const std::size_t next = r.out.find("\"" + std::string(key) + "\":", at);
        ASSERT_NE(next, std::string::npos) << key;
        at = next;
    }
}

TEST(CliDump, ReadsSeveralFilesInOrderIntoOneStore)
{
    const std::string a = put_file("a.wp", wp_head("A") + wp_waypoint("ONE", "", 1000000, 0));
    const std::string b = put_file("b.wp", wp_head("B") + wp_waypoint("TWO", "", 2000000, 0));
    const std::string t = put_file("c.t", t_head("C") + t_point(1, 2, 3));
    const json d = dump(test_home(), {a, b, t});
    EXPECT_EQ(d["title"], "A & B");
    ASSERT_EQ(d["waypoints"].size(), 2U);
    EXPECT_EQ(d["waypoints"][1]["nam"], "TWO");
    EXPECT_EQ(d["track"].size(), 1U);
}

TEST(CliDump, AnswersConflictsByItsOption)
{
    const std::string home = test_home();
    const std::string a = put_file("a.wp", wp_head("A") + wp_waypoint("ONE", "OLD", 1000000, 0));
    const std::string b = put_file("b.wp", wp_head("B") + wp_waypoint("ONE", "NEW", 1000000, 0));
    const auto comments = [&](std::vector<std::string> options) {
        options.insert(options.end(), {"--home", home, "dump", a, b});
        const cli_result r = run_cli(options);
        EXPECT_EQ(r.code, 0) << r.err;
        std::vector<std::string> all;
        const json document = json::parse(r.out);
        for (const json& w : document["waypoints"])
            all.push_back(w["kom"]);
        return all;
    };
    using texts = std::vector<std::string>;
    EXPECT_EQ(comments({}), (texts{"NEW"}));
    EXPECT_EQ(comments({"--on-conflict", "new"}), (texts{"NEW"}));
    EXPECT_EQ(comments({"--on-conflict", "old"}), (texts{"OLD"}));
    EXPECT_EQ(comments({"--on-conflict", "both"}), (texts{"OLD", "NEW"}));
}

TEST(CliDump, ADamagedFileKeepsWhatWasReadAndFails)
{
    const std::string home = test_home();
    const std::string cut = put_file("cut.wp", two_waypoints.substr(0, two_waypoints.size() - 3));
    const cli_result r = run_cli({"--home", home, "dump", cut});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("[2430] "), std::string::npos) << r.err;
    const json d = json::parse(r.out);
    EXPECT_EQ(d["waypoints"].size(), 1U);
    ASSERT_EQ(d["messages"].size(), 1U);
    EXPECT_EQ(d["messages"][0]["number"], 2430);

    const std::string track = t_head("T") + t_point(1, 2, 3) + "Z";
    EXPECT_EQ(dump(home, {put_file("bad.t", track)}, 1)["track"].size(), 1U);
}

TEST(CliDump, AForeignOrMissingFileFailsAndTheOthersAreRead)
{
    const std::string home = test_home();
    const std::string good = put_file("good.wp", two_waypoints);
    const std::string bad = put_file("bad.wp", "VELkoro waypoints\xCD\x01"); // version 461
    const cli_result r = run_cli({"--home", home, "dump", bad, test_folder() + "none.wp", good});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("[2520] "), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("none.wp"), std::string::npos) << r.err;
    EXPECT_EQ(json::parse(r.out)["waypoints"].size(), 2U);

    EXPECT_EQ(run_cli({"--home", home, "dump", put_file("a.xyz", "hello")}).code, 1);
    EXPECT_EQ(run_cli({"--home", home, "dump"}).code, 2);
}

TEST(CliDump, SectionsAreReadOrLeftOutByYesAndNo)
{
    const std::string home = test_home();
    const std::string file =
        put_file("a.wp", wp_head("A") + wp_waypoint("ONE", "", 1000000, 0) + section('A', 204) +
                             wp_waypoint("TWO", "", 2000000, 0));
    const cli_result yes = run_cli({"--home", home, "dump", file});
    EXPECT_EQ(yes.code, 0);
    EXPECT_EQ(json::parse(yes.out)["waypoints"].size(), 2U);
    EXPECT_NE(yes.err.find("[2540] "), std::string::npos) << yes.err;
    const cli_result no = run_cli({"--home", home, "--no", "dump", file});
    EXPECT_EQ(no.code, 0);
    EXPECT_EQ(json::parse(no.out)["waypoints"].size(), 1U);
}

TEST(CliDump, KnowsAFileByItsContentWhateverItsName)
{
    const json d = dump(test_home(), {put_file("waypoints.bak", two_waypoints),
                                      put_file("track.bak", t_head("T") + t_point(1, 2, 3))});
    EXPECT_EQ(d["waypoints"].size(), 2U);
    EXPECT_EQ(d["track"].size(), 1U);
}

TEST(CliDump, AnEmptyWaypointFileIsAnEmptyStore)
{
    const json d = dump(test_home(), {put_file("a.wp", wp_head("Nothing"))});
    EXPECT_EQ(d["title"], "Nothing");
    EXPECT_EQ(d["waypoints"], json::array());
}

TEST(CliDump, WorksWithoutADatumTable)
{
    const std::string text = put_file("a.txt", read_text(source_path("data/velkoro.txt")));
    const std::string file = put_file("a.wp", two_waypoints);
    ASSERT_EQ(run_cli({"res", "build", text, test_folder() + "velkoro.res"}).code, 0);
    const cli_result r = run_cli({"--home", test_folder(), "dump", file});
    EXPECT_EQ(r.code, 0) << r.err; // positions need no datum
    EXPECT_NE(r.err.find("[1010] "), std::string::npos) << r.err;
    EXPECT_EQ(json::parse(r.out)["waypoints"].size(), 2U);
}

// Files of other programs on the command line.
#include "core/files.h"
#include "interchange/formats.h"
#include "tests/cli/run_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>

using namespace velkoro;
using nlohmann::json;

namespace {

std::string sample(const std::string& name)
{
    return source_path("tests/interchange/samples/" + name);
}

cli_result run(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"--home", test_home()});
    return run_cli(arguments);
}

json dump(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "dump");
    return json::parse(run(arguments).out);
}

std::string put_file(const std::string& name, const std::string& bytes)
{
    const std::string path = test_folder() + name;
    write_text(path, bytes);
    return path;
}

/// A file with waypoints for every row that can be read.
std::vector<std::string> one_of_each()
{
    const json all = json::parse(read_text(sample("expected.json")));
    std::set<std::string> rows;
    std::vector<std::string> files;
    for (const auto& [name, content] : all.items()) {
        const format_row* row = format_of_text(content["row"].get<std::string>(), true);
        if (row && row->read && content.contains("waypoints") && rows.emplace(row->name).second)
            files.push_back(sample(name));
    }
    // Our own text form, which nobody else writes.
    const std::string native = test_folder() + "native.txt";
    EXPECT_EQ(run({"convert", sample("gardown.gd"), native}).code, 0);
    files.push_back(native);
    return files;
}

const std::string points = "##Name,Latitude,Longitude\r\nALPHA,N48.12345\xB0,E011.56789\xB0\r\n"
                           "BETA,S12.50000\xB0,W045.25000\xB0\r\n";

} // namespace

TEST(CliForeign, EveryFormatIsConvertedToEveryFormat)
{
    const std::vector<std::string> files = one_of_each();
    std::size_t readers = 0;
    for (const format_row& row : formats())
        readers += row.read ? 1U : 0U;
    EXPECT_EQ(files.size(), readers) << "a format has no sample";
    for (const std::string& from : files) {
        const std::size_t expected = dump({from})["waypoints"].size();
        EXPECT_GE(expected, 7U) << from;
        const std::string list = test_folder() + "list.wp";
        std::filesystem::remove(list);
        EXPECT_EQ(run({"convert", from, list}).code, 0) << from;
        EXPECT_EQ(dump({list})["waypoints"].size(), expected) << from;
        for (const format_row& row : formats()) {
            if (!row.write)
                continue;
            const std::string name(row.name);
            SCOPED_TRACE(from + " to " + name);
            const std::string extension(
                row.export_patterns.substr(1, row.export_patterns.find(';') - 1));
            const std::string out = test_folder() + "out" + extension;
            const cli_result r = run({"convert", from, "--to", name, out});
            EXPECT_EQ(r.code, 0) << r.err;
            EXPECT_EQ(dump({"--from", name, out})["waypoints"].size(), expected);
        }
    }
}

TEST(CliForeign, RoutesTravelWithTheirPoints)
{
    const json before = dump({sample("gardown.gd")});
    ASSERT_EQ(before["routes"].size(), 2U);
    const std::string out = test_folder() + "tour.rte";
    EXPECT_EQ(
        run({"convert", sample("gardown.gd"), "--to", "OziExplorer", "--select", "R", out}).code,
        0);
    const json after = dump({out});
    ASSERT_EQ(after["routes"].size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(after["routes"][i]["nam"], before["routes"][i]["nam"]);
        EXPECT_EQ(after["routes"][i]["wps"], before["routes"][i]["wps"]);
    }
}

TEST(CliForeign, ManyFilesBecomeOne)
{
    const std::string one = put_file("one.geo", points);
    const std::string two = put_file("two.geo", "GAMMA,N10\xB0,E010\xB0\r\n");
    const std::string out = test_folder() + "out.bna";
    EXPECT_EQ(run({"convert", one, two, sample("gardown.gd"), out}).code, 0);
    EXPECT_EQ(dump({out})["waypoints"].size(), 15U) << "ALPHA stands in two of them";
}

TEST(CliForeign, TheFormatIsToldByExtensionContentOrName)
{
    const std::string text = put_file("points.txt", "48.12345 011.56789 ALPHA\r\n");
    EXPECT_EQ(dump({text})["waypoints"].size(), 1U);
    EXPECT_EQ(dump({"--from", "StreetAtlas", text})["waypoints"].size(), 1U);
    const std::string odd = put_file("points.odd", points);
    EXPECT_EQ(run({"dump", odd}).code, 1);
    EXPECT_EQ(dump({"--from", "CORPSCON", odd})["waypoints"].size(), 2U);
    EXPECT_EQ(run({"convert", odd, "--from", "corpscon", test_folder() + "x.bna"}).code, 0);
}

TEST(CliForeign, AnUnknownNameOrExtensionIsWrongUsage)
{
    const std::string in = put_file("in.geo", points);
    const cli_result unknown = run({"convert", in, "--to", "Nonsense", test_folder() + "x.txt"});
    EXPECT_EQ(unknown.code, 2);
    EXPECT_NE(unknown.err.find("OziExplorer"), std::string::npos) << unknown.err;
    EXPECT_EQ(run({"convert", in, "--to", "Geocaching", test_folder() + "x.loc"}).code, 2);
    EXPECT_EQ(run({"convert", in, test_folder() + "x.loc"}).code, 2);
    EXPECT_EQ(run({"dump", "--from", "Nonsense", in}).code, 2);
}

TEST(CliForeign, OptionsShapeTheFile)
{
    const std::string in = put_file("in.geo", points);
    const std::string out = test_folder() + "out.geo";
    EXPECT_EQ(run({"convert", in, "--format", "1", "--name-length", "2", out}).code, 0);
    EXPECT_NE(read_text(out).find("AL,N48\xB0"
                                  "07.407'"),
              std::string::npos)
        << read_text(out);
    const std::string text = test_folder() + "out.txt";
    EXPECT_EQ(run({"convert", in, "--separator", "tab", "--no-comments", text}).code, 0);
    EXPECT_NE(read_text(text).find('\t'), std::string::npos);
    EXPECT_EQ(run({"convert", in, "--separator", "ab", text}).code, 2);
    EXPECT_EQ(dump({text})["waypoints"].size(), 2U);
}

TEST(CliForeign, AFormatOnWgs84TakesNoOtherDatum)
{
    const std::string in = put_file("in.geo", points);
    EXPECT_EQ(run({"convert", in, "--datum", "European 1950", test_folder() + "x.ovl"}).code, 1);
    EXPECT_EQ(run({"convert", in, "--datum", "European 1950", test_folder() + "x.bna"}).code, 0);
}

TEST(CliForeign, AppendingKeepsWhatTheFileHolds)
{
    const std::string out = put_file("out.geo", points);
    const std::string more = put_file("more.geo", "GAMMA,N10\xB0,E010\xB0\r\n");
    EXPECT_EQ(run({"convert", more, out, "--append"}).code, 0);
    EXPECT_EQ(dump({out})["waypoints"].size(), 3U);
    EXPECT_EQ(run({"convert", more, out}).code, 0);
    EXPECT_EQ(dump({out})["waypoints"].size(), 1U);
}

TEST(CliForeign, MalformedLinesAreToldAndTheRestIsRead)
{
    const std::string in = put_file("in.geo", points + "GAMMA,here,there\r\n");
    const cli_result r = run({"--json", "dump", in});
    EXPECT_EQ(r.code, 0);
    EXPECT_NE(r.err.find("[7960]"), std::string::npos) << r.err;
    const json document = json::parse(r.out);
    EXPECT_EQ(document["waypoints"].size(), 2U);
    EXPECT_EQ(document["messages"][0]["number"], 7960);
}

TEST(CliForeign, InfoCountsWithoutTheStore)
{
    const cli_result r = run({"--json", "info", sample("gardown.gd"), sample("atlas.bna")});
    EXPECT_EQ(r.code, 0) << r.err;
    const json files = json::parse(r.out)["files"];
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0]["format"], "Gardown");
    EXPECT_EQ(files[0]["waypoints"], 13);
    EXPECT_EQ(files[0]["routes"], 2);
    EXPECT_EQ(files[0]["bad_lines"], 0);
    EXPECT_EQ(files[0]["whole"], true);
    EXPECT_EQ(files[1]["format"], "Atlas GIS");
}

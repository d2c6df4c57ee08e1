#include "interchange/formats.h"

#include "core/files.h"
#include "core/text_tools.h"

#include <gtest/gtest.h>

#include <set>

using namespace velkoro;

namespace {

using lines = std::vector<std::string>;

std::string docs_row(const format_row& row)
{
    const auto patterns = [](std::string_view p, bool there) {
        return there ? "`" + std::string(p) + "`" : std::string("-");
    };
    const format_holds& h = row.holds;
    const std::string routes = !h.routes                     ? "-"
                               : row.route_extension.empty() ? "the same file"
                                                             : std::string(row.route_extension);
    std::string keeps;
    const auto keep = [&keeps](bool it, const char* what) {
        if (it)
            keeps.append(keeps.empty() ? "" : ", ").append(what);
    };
    keep(h.comment, "comment");
    keep(h.altitude, "altitude");
    keep(h.proximity, "proximity");
    keep(h.time == time_step::second, "time");
    keep(h.time == time_step::minute, "time to the minute");
    keep(h.time == time_step::day, "day");
    keep(h.route_names, "names of routes");
    return "| " + std::string(row.name) + " | " +
           patterns(row.import_patterns, row.read != nullptr) + " | " +
           patterns(row.export_patterns, row.write != nullptr) + " | " + routes + " | " +
           (!row.write          ? "the file's"
            : row.datum.empty() ? "the list's"
                                : std::string(row.datum)) +
           " | " + (keeps.empty() ? "-" : keeps) + " |\n";
}

} // namespace

TEST(Formats, HaveTheRowTextsOfTheFileWindowInTheirOrder)
{
    lines texts;
    for (const format_row& row : formats())
        if (!row.import_patterns.empty())
            texts.push_back(import_text(row));
    for (const format_row& row : formats())
        if (!row.export_patterns.empty())
            texts.push_back(export_text(row));
    EXPECT_EQ(texts, (lines{"IMPORT VELkoro Text *.txt",
                            "IMPORT Fugawi Text *.txt",
                            "IMPORT Gardown *.gd",
                            "IMPORT Garlink *.swp",
                            "IMPORT OziExplorer *.wpt;*.rte",
                            "IMPORT Geocaching *.loc",
                            "IMPORT PCX5 *.wpt;*.prx;*.rte;*.grm",
                            "IMPORT Waypoint+ Text *.txt",
                            "IMPORT StreetAtlas 7.0 *.txt",
                            "IMPORT Mapsource *.txt",
                            "IMPORT Atlas GIS *.bna",
                            "IMPORT GeogridViewer *.ovl;*.coo",
                            "IMPORT TerrainNavigator *.mxf;*.rxf",
                            "IMPORT CORPSCON *.geo;*.utm",
                            "EXPORT VELkoro Text *.txt",
                            "EXPORT Fugawi Text *.txt",
                            "EXPORT Gardown *.gd",
                            "EXPORT Garlink *.swp",
                            "EXPORT OziExplorer *.wpt;*.rte",
                            "EXPORT PCX5 *.wpt;*.rte",
                            "EXPORT Waypoint+ Text *.txt",
                            "EXPORT StreetAtlas 7.0 *.txt",
                            "EXPORT Atlas GIS *.bna",
                            "EXPORT GeogridViewer *.ovl",
                            "EXPORT TerrainNavigator *.mxf;*.rxf",
                            "EXPORT CORPSCON *.geo;*.utm"}));
}

TEST(Formats, AreFoundByTheWordsOfTheirRowTexts)
{
    for (const format_row& row : formats()) {
        EXPECT_EQ(format_of_text(import_text(row)), &row);
        EXPECT_EQ(format_of_text(row.name, true), &row);
        EXPECT_EQ(format_of_text(upper(row.name), true), &row);
    }
    EXPECT_EQ(format_of_text("IMPORT StreetAtlas 7.0 *.txt")->name, "StreetAtlas 7.0");
    EXPECT_EQ(format_of_text("EXPORT Atlas GIS *.bna")->name, "Atlas GIS");
    EXPECT_EQ(format_of_text("something else")->name, "VELkoro Text");
    EXPECT_EQ(format_of_text("something else", true), nullptr);
}

TEST(Formats, OfTheListAreAllInstalled)
{
    for (const format_row& row : formats()) {
        EXPECT_EQ(row.read != nullptr, !row.import_patterns.empty()) << row.name;
        EXPECT_EQ(row.write != nullptr, !row.export_patterns.empty()) << row.name;
    }
}

TEST(Formats, AreOfferedWhenTheirProceduresAreThere)
{
    std::size_t readers = 0, writers = 0;
    std::set<std::string_view> names;
    for (const format_row& row : formats()) {
        readers += row.read ? 1U : 0U;
        writers += row.write ? 1U : 0U;
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        EXPECT_FALSE(row.read && row.import_patterns.empty()) << row.name;
        EXPECT_FALSE(row.write && row.export_patterns.empty()) << row.name;
        if (!row.route_extension.empty()) {
            EXPECT_TRUE(has_pattern(row.export_patterns, row.route_extension));
            EXPECT_TRUE(row.holds.routes || !row.write) << row.name;
        }
    }
    EXPECT_EQ(import_rows().size(), readers);
    EXPECT_EQ(export_rows().size(), writers);
}

TEST(Formats, OfATextFileAreToldByItsContent)
{
    struct {
        const char* extension;
        const char* text;
        const char* name;
    } const rows[] = {
        {".wpt", "OziExplorer Waypoint File Version 1.1\r\nWGS 84\r\n", "OziExplorer"},
        {".wpt", "H  SOFTWARE NAME & VERSION\r\nI  PCX5 2.08\r\n", "PCX5"},
        {".rte", "OziExplorer Route File Version 1.0\r\n", "OziExplorer"},
        {".txt", "Datum,WGS84,WGS84,0,0,0,0,0\r\nWP,D,ALPHA,48.1,11.5,,,\r\n", "Waypoint+ Text"},
        {".txt", "Grid\tLat/Lon hddd.ddddd\xB0\r\nDatum\tWGS 84\r\n", "Mapsource"},
        {".txt", "# Fugawi Export\r\nALPHA,48.1,11.5,20030502\r\n", "Fugawi Text"},
        {".txt", "48.12345 011.56789 ALPHA\r\n", "StreetAtlas 7.0"},
        {".txt", "Waypoints Alps; hddd.ddddd\xB0\r\n", "VELkoro Text"},
        {".TXT", "Waypoints Alps; hddd.ddddd\xB0\r\n", "VELkoro Text"},
        {".gd", "", "Gardown"},
        {".loc", "", "Geocaching"},
    };
    for (const auto& row : rows) {
        const format_row* expected = format_of_text(row.name, true);
        ASSERT_NE(expected, nullptr) << row.name;
        EXPECT_EQ(format_of_file(row.extension, row.text), expected) << row.text;
    }
    EXPECT_EQ(format_of_file(".xyz", ""), nullptr);
    EXPECT_EQ(format_of_file("", ""), nullptr);
}

TEST(Formats, AreWrittenByTheFirstRowOfAnExtension)
{
    EXPECT_EQ(format_to_write(".geo")->name, "CORPSCON");
    EXPECT_EQ(format_to_write(".txt")->name, "VELkoro Text");
    EXPECT_EQ(format_to_write(".loc"), nullptr);
    EXPECT_EQ(format_to_write(""), nullptr);
}

TEST(Formats, StandInTheDocumentation)
{
    const std::string docs = read_file(VELKORO_SOURCE_DIR "/docs/interchange.md").value_or("");
    std::string table;
    for (const format_row& row : formats())
        if (row.read || row.write)
            table += docs_row(row);
    EXPECT_NE(docs.find("|---|---|---|---|---|---|\n" + table + "\n"), std::string::npos) << table;
}

// Every sample file, read by the row that it belongs to, gives the expected records.
#include "coords/times.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/text_tools.h"
#include "interchange/import_job.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

using namespace velkoro;
using nlohmann::json;

namespace {

const std::string folder = VELKORO_SOURCE_DIR "/tests/interchange/samples/";

const json& samples()
{
    static const json all = json::parse(read_file(folder + "expected.json").value_or("{}"));
    return all;
}

double degrees(std::int32_t semicircles)
{
    return semicircles * (180.0 / 2147483648.0);
}

void expect_place(const pos_rec& pos, double lat, double lon)
{
    EXPECT_NEAR(degrees(pos.lat), lat, 3e-5);
    EXPECT_NEAR(degrees(pos.lon), lon, 3e-5);
}

void expect_time(std::int32_t dat, const json& date)
{
    if (date.is_null()) {
        EXPECT_EQ(dat, 0);
        return;
    }
    const auto expected = to_time(date.get<std::string>());
    ASSERT_TRUE(expected.has_value()) << date;
    EXPECT_NEAR(dat, *expected, 1) << date;
}

void expect_altitude(std::int16_t alt, const json& metres)
{
    if (metres.is_null())
        EXPECT_EQ(alt, alt_unknown);
    else
        EXPECT_NEAR(alt, metres.get<double>(), 1);
}

void expect_waypoint(const wayp_rec& w, const json& expected)
{
    EXPECT_EQ(w.nam, from_utf8(expected["name"].get<std::string>()));
    EXPECT_EQ(w.kom, from_utf8(expected["comment"].get<std::string>()));
    expect_place(w.pos, expected["lat"].get<double>(), expected["lon"].get<double>());
    expect_altitude(w.alt, expected["alt"]);
    expect_time(w.dat, expected["date"]);
}

void expect_route(const import_content::route& route, const json& expected, bool named)
{
    if (named)
        EXPECT_EQ(route.name, from_utf8(expected["name"].get<std::string>()));
    else
        EXPECT_NE(route.name, "");
    ASSERT_EQ(route.points.size(), expected["points"].size());
    for (std::size_t i = 0; i < route.points.size(); ++i) {
        SCOPED_TRACE(i);
        expect_place(route.points[i].pos, expected["points"][i][0].get<double>(),
                     expected["points"][i][1].get<double>());
    }
}

const format_row* row_of(const json& sample)
{
    const std::string name = sample["row"].get<std::string>();
    for (const format_row& row : formats())
        if (name == row.name || name == std::string(row.name) + " Track")
            return &row;
    return nullptr;
}

/// Names in these formats are the reader's.
bool routes_are_named(const format_row& row)
{
    return row.name != "GeogridViewer" && row.name != "TerrainNavigator";
}

class Samples : public testing::Test {
protected:
    scripted_platform outside{};
    program_folder home{};
};

} // namespace

TEST_F(Samples, BelongToRowsOfTheTable)
{
    ASSERT_GT(samples().size(), 50U);
    for (const auto& [name, sample] : samples().items()) {
        EXPECT_NE(row_of(sample), nullptr) << name;
        EXPECT_TRUE(file_exists(folder + name)) << name;
    }
}

TEST_F(Samples, OfWaypointsAndRoutesAreReadWithTheirValues)
{
    for (const auto& [name, sample] : samples().items()) {
        SCOPED_TRACE(name);
        const format_row* row = row_of(sample);
        ASSERT_NE(row, nullptr);
        if (!sample.contains("waypoints") && !sample.contains("routes"))
            continue;
        ASSERT_NE(row->read, nullptr);
        const std::string bytes = read_file(folder + name).value_or("");
        import_content content;
        const import_result result =
            import_bytes(*row, bytes, path_extension(name), false, &content);
        EXPECT_EQ(result.end, native_end::whole);
        EXPECT_EQ(result.remarks, "");
        EXPECT_EQ(format_of_file(path_extension(name), bytes), row);
        const json waypoints = sample.value("waypoints", json::array());
        const json routes = sample.value("routes", json::array());
        // Points of lines alone are the reader's.
        ASSERT_TRUE(!sample.contains("waypoints") || content.waypoints.size() == waypoints.size());
        for (std::size_t i = 0; i < waypoints.size(); ++i) {
            SCOPED_TRACE(waypoints[i].dump());
            expect_waypoint(content.waypoints[i], waypoints[i]);
        }
        ASSERT_EQ(content.routes.size(), routes.size());
        for (std::size_t i = 0; i < routes.size(); ++i)
            expect_route(content.routes[i], routes[i], routes_are_named(*row));
    }
}

TEST_F(Samples, OfTracksAreReadWithTheirValues)
{
    for (const auto& [name, sample] : samples().items()) {
        SCOPED_TRACE(name);
        const format_row* row = row_of(sample);
        ASSERT_NE(row, nullptr);
        if (!row->read_track || !sample.contains("track"))
            continue;
        const std::string bytes = read_file(folder + name).value_or("");
        import_content content;
        const import_result result =
            import_bytes(*row, bytes, path_extension(name), true, &content);
        EXPECT_EQ(result.end, native_end::whole);
        EXPECT_EQ(result.remarks, "");
        const json& track = sample["track"];
        ASSERT_EQ(content.track.size(), track.size());
        for (std::size_t i = 0; i < track.size(); ++i) {
            SCOPED_TRACE(track[i].dump());
            const trackp_rec& p = content.track[i];
            expect_place(p.pos, track[i]["lat"].get<double>(), track[i]["lon"].get<double>());
            expect_altitude(p.alt, track[i]["alt"]);
            expect_time(p.zeit, track[i]["date"]);
            EXPECT_EQ(p.neu, track[i]["new"].get<bool>() ? -1 : 0);
        }
    }
}

TEST_F(Samples, AreReadInEveryFormOfLineEnds)
{
    for (const auto& [name, sample] : samples().items()) {
        SCOPED_TRACE(name);
        const format_row* row = row_of(sample);
        if (!row || !row->read || !sample.contains("waypoints"))
            continue;
        const std::string as_it_is = read_file(folder + name).value_or("");
        std::string lf;
        for (const std::string_view line : split_lines(as_it_is))
            lf.append(line) += '\n';
        lf.pop_back(); // the last line without its end
        std::string crlf;
        for (const char c : lf)
            crlf.append(c == '\n' ? "\r\n" : std::string(1, c));
        for (const std::string& bytes : {lf, crlf, crlf + "\r\n\r\n"}) {
            import_content content;
            const import_result result =
                import_bytes(*row, bytes, path_extension(name), false, &content);
            EXPECT_EQ(result.remarks, "");
            EXPECT_EQ(content.waypoints.size(), sample["waypoints"].size());
        }
    }
}

TEST_F(Samples, EnterTheStoreWithTheirRoutes)
{
    for (const auto& [name, sample] : samples().items()) {
        SCOPED_TRACE(name);
        const format_row* row = row_of(sample);
        if (!row || !row->read || !sample.contains("waypoints"))
            continue;
        store_reset();
        import_bytes(*row, read_file(folder + name).value_or(""), path_extension(name));
        EXPECT_GE(store.wp_top + 1, static_cast<int>(sample["waypoints"].size()));
        const json routes = sample.value("routes", json::array());
        ASSERT_EQ(store.rou_top + 1, static_cast<int>(routes.size()));
        for (std::size_t i = 0; i < routes.size(); ++i)
            EXPECT_EQ(list_tokens(store.rou[i].wps).size(), routes[i]["points"].size());
        const int before = store.wp_top;
        import_bytes(*row, read_file(folder + name).value_or(""), path_extension(name));
        EXPECT_EQ(store.wp_top, before) << "reading a file again adds nothing";
    }
}

// Every version of both native formats, and their damaged forms, against checked expectations.
#include "core/files.h"
#include "core/job.h"
#include "core/store.h"
#include "tests/waypoints/native_support.h"
#include "waypoints/native_jobs.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <gtest/gtest.h>

#include <random>

using namespace velkoro;

namespace {

std::string stem(const std::string& name)
{
    return name.substr(0, name.rfind('.'));
}

std::string test_name(const testing::TestParamInfo<std::string>& info)
{
    return stem(info.param);
}

class WaypointFile : public testing::TestWithParam<std::string> {};
class TrackFile : public testing::TestWithParam<std::string> {};

} // namespace

TEST_P(WaypointFile, ReadsAsExpectedAndIsSavedInTheNewestVersion)
{
    const native_fixture f;
    const std::string bytes = golden_bytes("wp", GetParam());
    native_files_install();
    write_file(f.folder + "in.wp", bytes);
    native_read({f.folder + "in.wp"});
    const std::string report = op2.anz.caption;
    expect_golden("wp", stem(GetParam()) + ".dump",
                  dump_waypoints(f.user) + (report.empty() ? "" : "report " + report + "\n"));

    const wp_write_result saved = write_wp({});
    expect_golden("wp", stem(GetParam()) + ".204", saved.bytes);
    EXPECT_EQ(wp_info(saved.bytes).end, native_end::whole);
}

TEST_P(WaypointFile, SavedAgainReadsBackTheSame)
{
    std::string first, second;
    {
        native_fixture f;
        Form1.wayp_titel.text = "stays when the file is refused";
        read_wp(golden_bytes("wp", GetParam()));
        f.user.messages.clear();
        first = write_wp({}).bytes;
    }
    {
        native_fixture f;
        const wp_read_result r = read_wp(first);
        EXPECT_EQ(r.end, native_end::whole);
        second = write_wp({}).bytes;
    }
    EXPECT_EQ(first, second);
}

TEST_P(WaypointFile, TheSummaryCountsWhatTheReaderReads)
{
    const native_fixture f;
    const std::string bytes = golden_bytes("wp", GetParam());
    const wp_summary sum = wp_info(bytes);
    const wp_read_result r = read_wp(bytes);
    EXPECT_EQ(sum.end, r.end);
    EXPECT_EQ(sum.waypoints, r.waypoints);
    EXPECT_EQ(sum.routes, r.routes);
    EXPECT_EQ(sum.head.version, r.version);
}

TEST_P(WaypointFile, CutAnywhereKeepsTheCompleteRecords)
{
    const std::string bytes = golden_bytes("wp", GetParam());
    const wp_summary all = wp_info(bytes);
    int waypoints = 0, routes = 0;
    for (std::size_t n = 0; n <= bytes.size(); ++n) {
        const wp_summary cut = wp_info(std::string(bytes.substr(0, n)));
        EXPECT_GE(cut.waypoints, waypoints) << n;
        EXPECT_GE(cut.routes, routes) << n;
        waypoints = cut.waypoints;
        routes = cut.routes;
        if (n < wp_magic.size()) {
            EXPECT_EQ(cut.end, native_end::not_native) << n;
        }
    }
    EXPECT_EQ(waypoints, all.waypoints);
    EXPECT_EQ(routes, all.routes);
    const native_fixture f;
    for (std::size_t n = 0; n <= bytes.size(); ++n) {
        wayp_clear();
        read_wp(std::string(bytes.substr(0, n)));
    }
}

TEST_P(WaypointFile, SurvivesFlippedBytes)
{
    const native_fixture f;
    const std::string bytes = golden_bytes("wp", GetParam());
    std::mt19937 random(4711);
    for (int round = 0; round < 60; ++round) {
        std::string hostile = bytes;
        for (unsigned flips = random() % 4 + 1; flips > 0; --flips)
            hostile[random() % hostile.size()] = static_cast<char>(random());
        wayp_clear();
        const wp_read_result r = read_wp(hostile);
        EXPECT_LE(store.wp_top + 1, r.waypoints);
        EXPECT_EQ(wp_info(hostile).waypoints, r.waypoints);
    }
}

INSTANTIATE_TEST_SUITE_P(Golden, WaypointFile, testing::ValuesIn(golden_files("wp", ".wp")),
                         test_name);

TEST_P(TrackFile, ReadsAsExpectedAndIsSavedInTheNewestVersion)
{
    const native_fixture f;
    native_files_install();
    write_file(f.folder + "in.t", golden_bytes("t", GetParam()));
    native_read({f.folder + "in.t"});
    expect_golden("t", stem(GetParam()) + ".dump", dump_track(f.user));

    const t_write_result saved = write_t({});
    expect_golden("t", stem(GetParam()) + ".203", saved.bytes);
    EXPECT_EQ(t_info(saved.bytes).end, native_end::whole);
}

TEST_P(TrackFile, SavedAgainReadsBackTheSame)
{
    const native_fixture f;
    store.trk_title = "stays when the file is refused";
    read_t(golden_bytes("t", GetParam()));
    const std::string first = write_t({}).bytes;
    track_clear();
    EXPECT_EQ(read_t(first).end, native_end::whole);
    EXPECT_EQ(write_t({}).bytes, first);
}

TEST_P(TrackFile, TheSummaryCountsWhatTheReaderReads)
{
    const native_fixture f;
    const std::string bytes = golden_bytes("t", GetParam());
    const t_summary sum = t_info(bytes);
    const t_read_result r = read_t(bytes);
    EXPECT_EQ(sum.end, r.end);
    EXPECT_EQ(sum.points, r.points);
    std::int64_t segments = 0;
    for (std::int32_t i = 0; i <= store.trk_top; ++i)
        segments += store.trk[static_cast<std::size_t>(i)].neu != 0;
    EXPECT_EQ(sum.segments, segments);
}

TEST_P(TrackFile, CutAnywhereIsReadUpToTheCut)
{
    const native_fixture f;
    const std::string bytes = golden_bytes("t", GetParam());
    const std::int64_t all = t_info(bytes).points;
    const bool old = t_info(bytes).version < 200; // their recovery looks ahead
    std::int64_t points = 0;
    for (std::size_t n = 0; n <= bytes.size(); ++n) {
        track_clear();
        const t_read_result r = read_t(std::string(bytes.substr(0, n)));
        EXPECT_EQ(store.trk_top + 1, r.points);
        if (old)
            continue;
        EXPECT_GE(r.points, points) << n;
        EXPECT_LE(r.points, all) << n;
        points = r.points;
    }
}

TEST_P(TrackFile, SurvivesFlippedBytes)
{
    const native_fixture f;
    const std::string bytes = golden_bytes("t", GetParam());
    std::mt19937 random(815);
    for (int round = 0; round < 100; ++round) {
        std::string hostile = bytes;
        for (unsigned flips = random() % 4 + 1; flips > 0; --flips)
            hostile[random() % hostile.size()] = static_cast<char>(random());
        track_clear();
        const t_read_result r = read_t(hostile);
        EXPECT_EQ(store.trk_top + 1, r.points);
        EXPECT_EQ(t_info(hostile).points, r.points);
    }
}

INSTANTIATE_TEST_SUITE_P(Golden, TrackFile, testing::ValuesIn(golden_files("t", ".t")), test_name);

#include "interchange/import_job.h"

#include "coords/coord_text.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/names.h"
#include "core/reset.h"
#include "core/text_tools.h"
#include "core/wayp_insert.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

/// "datum NAME", "W name lat lon comment", "R name", "P name lat lon", "N name", "U lat lon".
void read_toy(import_job& in)
{
    std::array<std::string_view, 5> f;
    for (std::string_view line; next_full_line(in, line);) {
        split_fields(line, ' ', f);
        pos_rec pos;
        if (f[0] == "datum") {
            if (!set_datum(in, line.substr(6)))
                return;
        } else if (f[0] == "W" && file_position(in, f[2], f[3], pos)) {
            add_waypoint(in, f[1], f[4], pos);
        } else if (f[0] == "R") {
            begin_route(in, f[1]);
        } else if (f[0] == "P" && file_position(in, f[2], f[3], pos)) {
            add_route_point(in, f[1], f[4], pos);
        } else if (f[0] == "N" && add_route_point(in, f[1])) {
        } else if (f[0] == "U" && file_position(in, f[1], f[2], pos)) {
            add_unnamed_point(in, pos);
        } else if (f[0] == "X") {
            refuse(in);
            return;
        } else {
            bad_line(in);
        }
    }
}

const format_row toy{.name = "Toy", .import_patterns = "*.toy", .read = read_toy};

class ImportJob : public testing::Test {
protected:
    scripted_platform outside{};
    program_folder home{};

    void SetUp() override
    {
        reset_all();
        datums = datum_parse("WGS 84\r\nCH-1903,739.845,0.10037483,674,15,405\r\n"
                             "European 1950,-251,-0.14192702,-87,-98,-121\r\nWGS 84,0,0,0,0,0\r\n");
        Form1.Datum.items = {"CH-1903", "European 1950", "WGS 84"};
        Form1.Datum.selected = 0; // the files' own datum counts, not the chosen one
    }
    void TearDown() override
    {
        datums = {};
        reset_all();
    }
    static import_result read(std::string_view text) { return import_bytes(toy, text, ".toy"); }
    static const wayp_rec& wp(std::size_t i) { return store.wp[i]; }
};

} // namespace

TEST_F(ImportJob, LinesEndInAnyWayAndAMarkIsSkipped)
{
    for (const char* text : {"W A 1 2\r\nW B 3 4\r\n", "W A 1 2\nW B 3 4", "W A 1 2\rW B 3 4\r",
                             "\xEF\xBB\xBFW A 1 2\n\n\nW B 3 4\n"}) {
        store_reset();
        EXPECT_EQ(read(text).end, native_end::whole);
        ASSERT_EQ(store.wp_top, 1) << text;
        EXPECT_EQ(wp(0).nam, "A");
        EXPECT_EQ(wp(1).nam, "B");
        EXPECT_NEAR(wp(1).pos.lat * 180.0 / 2147483648.0, 3, 1e-6);
        EXPECT_NEAR(wp(1).pos.lon * 180.0 / 2147483648.0, 4, 1e-6);
    }
}

TEST_F(ImportJob, AFileWithTheUtf8MarkIsUtf8)
{
    read("\xEF\xBB\xBFW A 1 2 K\xC3\xB6ln");
    ASSERT_EQ(store.wp_top, 0);
    EXPECT_EQ(wp(0).kom, "K\xF6ln");
}

TEST_F(ImportJob, MalformedLinesAreCountedNamedAndLeftOut)
{
    std::string text = "W A 1 2\nrubbish\n\nW B 99 4\nW C 5 6\n";
    import_result result = read(text);
    EXPECT_EQ(store.wp_top, 1);
    EXPECT_EQ(result.bad_lines, 2);
    EXPECT_EQ(result.remarks, velkoro::text(7960, "2", "2, 4"));
    EXPECT_EQ(result.end, native_end::whole);
    text.clear();
    for (int i = 0; i < 25; ++i)
        text += "rubbish\n";
    result = read(text);
    EXPECT_EQ(result.remarks, velkoro::text(7960, "25", "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, ..."));
}

TEST_F(ImportJob, ARoutePointWithNameAndPositionOfAPointReadBeforeIsThatPoint)
{
    read("W A 1 2\nW B 3 4\nR TOUR\nP B 3 4\nP A 1 2\nP C 5 6\nP C 5 6\n");
    ASSERT_EQ(store.wp_top, 2);
    ASSERT_EQ(store.rou_top, 0);
    EXPECT_EQ(store.rou[0].wps, "B$A$C$C$");
    EXPECT_EQ(trim(store.rou[0].nam), "TOUR");
}

TEST_F(ImportJob, ARoutePointOfTheSameNameElsewhereIsAnotherWaypoint)
{
    hooks.conflict_ask = [](conflict_question& q) {
        name_unique(q.incoming->nam, q.incoming->kom, -1);
        return conflict_answer::keep_both;
    };
    read("W A 1 2\nR TOUR\nP A 50 60 elsewhere\nP A 1 2\n");
    ASSERT_EQ(store.wp_top, 1);
    EXPECT_EQ(store.rou[0].wps, "A1$A$");
    hooks = {};
}

TEST_F(ImportJob, RoutePointsByNameAreThoseOfThisFile)
{
    wayp_rec other;
    other.nam = "B";
    other.pos = {1000000, 2000000};
    wp_append(other);
    const import_result result = read("W A 1 2\nR TOUR\nN A\nN B\n");
    EXPECT_EQ(store.rou[0].wps, "A$");
    EXPECT_EQ(result.bad_lines, 1);
}

TEST_F(ImportJob, UnnamedPointsAreThoseAtTheSamePlaceOrGetANameFromTheRoute)
{
    read("W A 1 2\nR TOUR\nU 1 2\nU 7 8\n");
    ASSERT_EQ(store.wp_top, 1);
    EXPECT_EQ(store.rou[0].wps, "A$TOU2$");
}

TEST_F(ImportJob, ARouteWithoutPointsIsNone)
{
    EXPECT_EQ(read("R EMPTY\nR TOUR\nP A 1 2\n").routes, 1);
    EXPECT_EQ(store.rou_top, 0);
}

TEST_F(ImportJob, PositionsAreShiftedFromTheDatumOfTheFile)
{
    read("datum European 1950\nW A 48 11\ndatum WGS84\nW B 48 11\n");
    ASSERT_EQ(store.wp_top, 1);
    EXPECT_GT(std::abs(wp(0).pos.lat - wp(1).pos.lat), 5000); // about 100 m
    pos_rec direct;
    text_to_pos("", "11", "48", direct, 0, 1);
    EXPECT_EQ(wp(0).pos, direct);
    text_to_pos("", "11", "48", direct, 0, 2);
    EXPECT_EQ(wp(1).pos, direct);
}

TEST_F(ImportJob, ADatumIsKnownByTheNamesOfOtherPrograms)
{
    for (const char* name : {"WGS 84", "wgs84", "WGS-84", "WGS 1984", "CH1903", "European 1950",
                             "EUROPEAN 1950", "ED50"}) {
        store_reset();
        read(std::string("datum ") + name + "\nW A 48 11\n");
        EXPECT_EQ(store.wp_top, 0) << name;
    }
    EXPECT_TRUE(outside.messages.empty());
}

TEST_F(ImportJob, AnUnknownDatumIsToldAndNothingIsShifted)
{
    outside.answers = {answer::yes};
    read("datum Atlantis\nW A 48 11\n");
    ASSERT_EQ(store.wp_top, 0);
    pos_rec direct;
    text_to_pos("", "11", "48", direct, 0, 2);
    EXPECT_EQ(wp(0).pos, direct);
    store_reset();
    outside.answers = {answer::no};
    const import_result result = read("datum Atlantis\nW A 48 11\n");
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(result.end, native_end::not_native);
    EXPECT_EQ(result.remarks, velkoro::text(7963, "Atlantis"));
}

TEST_F(ImportJob, ARefusedFileKeepsWhatWasRead)
{
    const import_result result = read("W A 1 2\nX\nW B 3 4\n");
    EXPECT_EQ(result.end, native_end::not_native);
    EXPECT_EQ(result.remarks, velkoro::text(7962));
    EXPECT_EQ(store.wp_top, 0);
}

TEST_F(ImportJob, TheBatchIsClosedAndReports)
{
    read("W A 1 2\n");
    EXPECT_FALSE(batch.open);
    const import_result again = read("W A 1 2\nW B 3 4\n");
    EXPECT_FALSE(batch.open);
    EXPECT_NE(again.report, "");
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(ImportJob, TheStoreStaysWhenTheContentIsOnlyLookedAt)
{
    import_content content;
    import_bytes(toy, "W long-name-kept 1 2\nR TOUR\nP B 3 4\n", ".toy", false, &content);
    EXPECT_EQ(store.wp_top, -1);
    ASSERT_EQ(content.waypoints.size(), 2U);
    EXPECT_EQ(content.waypoints[0].nam, "long-name-kept");
    ASSERT_EQ(content.routes.size(), 1U);
    EXPECT_EQ(content.routes[0].points.size(), 1U);
}

TEST_F(ImportJob, AFullStoreKeepsWhatWasRead)
{
    for (int i = 0; i < wp_limit - 1; ++i) {
        wayp_rec w;
        w.nam = "N" + std::to_string(i);
        w.pos = {i * 30000, 5};
        wp_append(w);
    }
    const import_result result = read("W A -10 20\nW B -30 40\n");
    EXPECT_EQ(result.end, native_end::full);
    EXPECT_EQ(store.wp_top, wp_limit - 1);
}

// The sample library, read byte by byte from the description of the formats.

#include "core/byte_io.h"
#include "core/text_tools.h"
#include "tests/data/data_files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <set>
#include <string>
#include <vector>

using namespace velkoro;

namespace {

double degrees(std::int32_t semicircles)
{
    return semicircles * (180.0 / 2147483648.0);
}

// Seconds from 31 December 1989 to 1 January of 2025 and 2026, and to 14 June 2025.
constexpr std::int32_t year_2025 = 12785 * 86400;
constexpr std::int32_t year_2026 = year_2025 + 365 * 86400;
constexpr std::int32_t june_14 = year_2025 + 164 * 86400;

struct sample_wp {
    std::string name{}, comment{};
    double lat = 0, lon = 0;
    std::int32_t date = 0;
    int prox = 0, symbol = 0, alt = 0;
};
struct sample_route {
    std::string name{};
    std::vector<std::string> points{};
    int colour = 0;
    std::string lists[3]{}; // speed, correction, instruction
};
struct sample_library {
    std::string datum{}, format{}, zone{}, ref{}, title{};
    std::int32_t ref_lat = 0, ref_lon = 0, scale = 0;
    std::vector<sample_wp> wps{};
    std::vector<sample_route> routes{};
    bool whole = false;
};

sample_library read_library()
{
    const std::string bytes = data_file("Waypoints/sample.wp");
    byte_reader in(bytes);
    sample_library s;
    EXPECT_EQ(in.fixed(17), "VELkoro waypoints");
    EXPECT_EQ(in.i16(), 204);
    s.datum = in.lstr();
    s.format = in.lstr();
    s.zone = in.lstr();
    EXPECT_EQ(in.i16(), 0); // order: by name
    s.ref = in.lstr();
    s.ref_lat = in.i32();
    s.ref_lon = in.i32();
    s.scale = in.i32();
    s.title = in.lstr();
    while (in.ok() && !in.at_end()) {
        const std::string_view tag = in.fixed(1);
        if (tag == "W") {
            sample_wp w;
            w.name = in.lstr();
            w.comment = in.lstr();
            w.lat = degrees(in.i32());
            w.lon = degrees(in.i32());
            w.date = in.i32();
            w.prox = in.i16();
            w.symbol = in.i16();
            w.alt = in.i16();
            s.wps.push_back(w);
        } else if (tag == "R") {
            sample_route r;
            r.name = trim_right(in.fixed(16));
            r.points = list_tokens(in.lstr());
            r.colour = in.i16();
            for (std::string& list : r.lists)
                list = in.lstr();
            s.routes.push_back(r);
        } else {
            return s;
        }
    }
    s.whole = in.ok();
    return s;
}

struct sample_point {
    double lat = 0, lon = 0;
    std::int32_t time = 0;
    int flags = 0;
    std::string comment{};
    int alt = 0;
};

std::vector<sample_point> read_track()
{
    const std::string bytes = data_file("Track/sample.t");
    byte_reader in(bytes);
    EXPECT_EQ(in.fixed(13), "VELkoro track");
    EXPECT_EQ(in.i16(), 203);
    EXPECT_EQ(in.lstr(), "Schwarzwald, Hochtouren 2025");
    std::vector<sample_point> points;
    while (in.ok() && !in.at_end()) {
        EXPECT_EQ(in.fixed(1), "T");
        sample_point p;
        p.lat = degrees(in.i32());
        p.lon = degrees(in.i32());
        p.time = in.i32();
        p.flags = in.u8();
        p.comment = in.lstr();
        p.alt = in.i16();
        points.push_back(p);
    }
    EXPECT_TRUE(in.ok());
    return points;
}

double metres(double lat1, double lon1, double lat2, double lon2)
{
    constexpr double degree_m = 111195.0;
    return degree_m *
           std::hypot(lat2 - lat1, (lon2 - lon1) * std::cos(lat1 * std::numbers::pi / 180));
}

} // namespace

TEST(SampleLibrary, HasAWholeFileWithAFilledHeader)
{
    const sample_library s = read_library();
    EXPECT_TRUE(s.whole);
    EXPECT_EQ(s.datum, "WGS 84");
    EXPECT_EQ(s.format, "hddd\xB0mm.mmm'");
    EXPECT_EQ(s.zone, "+1 L3 L10");
    EXPECT_EQ(s.scale, 50000);
    EXPECT_EQ(s.title, "Schwarzwald, Hochtouren 2025");
    ASSERT_FALSE(s.wps.empty());
    EXPECT_EQ(s.ref, s.wps[0].name);
    EXPECT_NEAR(degrees(s.ref_lat), s.wps[0].lat, 1e-9);
    EXPECT_NEAR(degrees(s.ref_lon), s.wps[0].lon, 1e-9);
}

TEST(SampleLibrary, HoldsPlausibleWaypointsWithShortUniqueNames)
{
    const sample_library s = read_library();
    EXPECT_GE(s.wps.size(), 60U);
    std::set<std::string> names;
    std::set<int> symbols;
    int with_prox = 0, without_alt = 0, with_umlaut = 0;
    for (const sample_wp& w : s.wps) {
        EXPECT_TRUE(names.insert(w.name).second) << w.name;
        EXPECT_LE(w.name.size(), 6U) << w.name;
        EXPECT_EQ(w.name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"),
                  std::string::npos)
            << w.name;
        EXPECT_NE(w.comment, "") << w.name;
        EXPECT_TRUE(w.lat > 47.7 && w.lat < 48.2 && w.lon > 7.7 && w.lon < 8.4) << w.name;
        EXPECT_TRUE(w.date >= year_2025 && w.date < year_2026 && w.date % 86400 == 0) << w.name;
        EXPECT_TRUE(w.alt == -32768 || (w.alt > 200 && w.alt < 1500)) << w.name;
        EXPECT_LE(w.symbol & 0xFF, 40) << w.name;
        EXPECT_LE(w.symbol >> 8, 2) << w.name;
        symbols.insert(w.symbol & 0xFF);
        with_prox += w.prox != 0;
        without_alt += w.alt == -32768;
        with_umlaut += w.comment.find_first_of("\xE4\xF6\xFC\xC4\xD6\xDC\xDF") != std::string::npos;
    }
    EXPECT_GE(symbols.size(), 12U);
    EXPECT_GE(with_prox, 5);
    EXPECT_GE(without_alt, 1);
    EXPECT_GE(with_umlaut, 15);
}

TEST(SampleLibrary, HasRoutesOfKnownWaypointsWithParallelLists)
{
    const sample_library s = read_library();
    std::set<std::string> names;
    for (const sample_wp& w : s.wps)
        names.insert(w.name);
    EXPECT_EQ(s.routes.size(), 4U);
    bool instructed = false;
    for (const sample_route& r : s.routes) {
        EXPECT_GE(r.points.size(), 4U) << r.name;
        for (const std::string& point : r.points)
            EXPECT_TRUE(names.contains(point)) << r.name << ' ' << point;
        EXPECT_TRUE(r.colour >= 1 && r.colour <= 4) << r.name;
        for (const std::string& list : r.lists)
            EXPECT_EQ(list_tokens(list).size(), r.points.size()) << r.name << ' ' << list;
        instructed = instructed || r.lists[2].size() > r.points.size();
    }
    EXPECT_TRUE(instructed);
}

TEST(SampleTrack, CoversTwoDaysInSeveralSegments)
{
    const auto points = read_track();
    EXPECT_GE(points.size(), 2000U);
    EXPECT_LE(points.size(), 3000U);
    EXPECT_EQ(points[0].flags & 1, 1);
    std::map<int, int> segments_of_day;
    int comments = 0;
    for (const sample_point& p : points) {
        EXPECT_LE(p.flags, 15);
        const int day = (p.time - june_14) / 86400;
        EXPECT_TRUE(p.time >= june_14 && day < 2) << p.time;
        segments_of_day[day] += p.flags & 1;
        comments += !p.comment.empty();
        EXPECT_TRUE(p.alt > 650 && p.alt < 1510) << p.alt;
    }
    EXPECT_GE(segments_of_day[0], 2);
    EXPECT_GE(segments_of_day[1], 2);
    EXPECT_GE(comments, 10);
}

TEST(SampleTrack, WalksAtTheSpeedOfAHiker)
{
    const auto points = read_track();
    double way_m = 0, slow = 0, walked = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const sample_point &a = points[i - 1], &b = points[i];
        ASSERT_GT(b.time, a.time) << i;
        if (b.flags & 1)
            continue;
        const double d = metres(a.lat, a.lon, b.lat, b.lon);
        const double kmh = d / (b.time - a.time) * 3.6;
        way_m += d;
        EXPECT_LT(kmh, 6.0) << i;
        if (d > 8) { // not a rest, where the fix wanders by less
            ++walked;
            slow += kmh < 2;
            EXPECT_LT(std::abs(b.alt - a.alt) / d, 0.5) << i;
        }
    }
    EXPECT_LT(slow, walked / 50);
    EXPECT_TRUE(way_m > 30000 && way_m < 60000) << way_m;
}

TEST(SampleTrack, PassesTheWaypointsOfTheRoundTourAtTheirAltitude)
{
    const auto points = read_track();
    const sample_library s = read_library();
    for (const std::string& name : s.routes.at(0).points)
        for (const sample_wp& w : s.wps)
            if (w.name == name) {
                double nearest = 1e9;
                int alt = 0;
                for (const sample_point& p : points)
                    if (const double d = metres(w.lat, w.lon, p.lat, p.lon); d < nearest) {
                        nearest = d;
                        alt = p.alt;
                    }
                EXPECT_LT(nearest, 50) << name;
                EXPECT_NEAR(alt, w.alt, 10) << name;
            }
}

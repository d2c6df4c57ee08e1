// What is written is read by gpsbabel (a package of the test machine) where it knows the format.
#include "core/text_tools.h"
#include "interchange/export_job.h"
#include "interchange/fields.h"
#include "tests/interchange/file_fixture.h"

#include <array>
#include <cstdlib>
#include <map>

using namespace velkoro;

namespace {

struct read_point {
    std::string name{};
    double lat = 0, lon = 0;
    std::optional<double> altitude{};
    std::string date{}, time{};
};

class GpsBabel : public FileTest {
protected:
    void SetUp() override
    {
        FileTest::SetUp();
        const double places[][2] = {{48.12345, 11.56789},   {-22.95192, -43.21049},
                                    {-33.85678, 151.2153},  {71.29056, -156.78861},
                                    {-0.00221, -78.45583},  {0.00005, -0.00005},
                                    {-16.57819, 179.98765}, {89.5, -179.99999}};
        const std::int16_t altitudes[] = {519, 30, alt_unknown, -422, 2850, 0, 1, 8848};
        for (std::size_t i = 0; i < std::size(places); ++i) {
            const int at = add("WP" + std::to_string(i), places[i][0], places[i][1],
                               i == 1 ? "Start, Nordtor" : "plain");
            store.wp[static_cast<std::size_t>(at)].alt = altitudes[i];
            store.wp[static_cast<std::size_t>(at)].dat =
                static_cast<std::int32_t>(420797730 + i * 86461);
        }
        add_route("ONE", "WP0$WP1$WP2$WP0$");
        add_route("TWO", "WP3$WP4$");
    }
    /// The points that gpsbabel finds in a file of ours. `what`: "-w", "-r" or "-t".
    std::vector<read_point> points(const char* format, const std::string& extension,
                                   const char* type, const char* what)
    {
        const format_row& row = *format_of_text(format, true);
        export_options options = export_defaults(row);
        if (std::string_view(what) == "-r")
            options.flags = row.route_extension.empty() ? "WR" : "R";
        home.put("in" + extension, export_bytes(row, options, extension).bytes);
        const std::string command = std::string("gpsbabel ") + what + " -i " + type + " -f '" +
                                    file("in" + extension) + "' -o unicsv,utc=0 -F '" +
                                    file("out.csv") + "' 2> '" + file("errors") + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << home.get("errors");
        const std::string csv = home.get("out.csv");
        const std::vector<std::string_view> lines = split_lines(csv);
        std::map<std::string, std::size_t> column;
        std::array<std::string_view, 24> f;
        std::vector<read_point> found;
        for (const std::string_view line : lines) {
            split_quoted(line, ',', f);
            if (column.empty()) {
                for (std::size_t i = 0; i < f.size(); ++i)
                    column.try_emplace(std::string(f[i]), i);
                continue;
            }
            const auto field = [&](const char* name) {
                const auto at = column.find(name);
                return at == column.end() ? std::string_view{} : f[at->second];
            };
            read_point p{.name = std::string(field("Name"))};
            EXPECT_TRUE(to_number(field("Latitude"), p.lat)) << line;
            EXPECT_TRUE(to_number(field("Longitude"), p.lon)) << line;
            if (double metres = 0; to_number(field("Altitude"), metres))
                p.altitude = metres;
            p.date = field("Date");
            p.time = field("Time");
            found.push_back(p);
        }
        return found;
    }
    static void expect_place(const read_point& p, const wayp_rec& w)
    {
        EXPECT_NEAR(p.lat, w.pos.lat * (180 / 2147483648.0), 1.1e-5) << w.nam;
        EXPECT_NEAR(p.lon, w.pos.lon * (180 / 2147483648.0), 1.1e-5) << w.nam;
    }
};

} // namespace

TEST_F(GpsBabel, ReadsOurOziExplorerWaypoints)
{
    ASSERT_NE(format_of_text("OziExplorer")->write, nullptr);
    const auto found = points("OziExplorer", ".wpt", "ozi", "-w");
    ASSERT_EQ(found.size(), 8U);
    for (std::size_t i = 0; i < found.size(); ++i) {
        const wayp_rec& w = store.wp[i];
        EXPECT_EQ(found[i].name, w.nam);
        expect_place(found[i], w);
        EXPECT_EQ(found[i].altitude.has_value(), w.alt != alt_unknown) << w.nam;
        if (found[i].altitude) {
            EXPECT_NEAR(*found[i].altitude, w.alt, 0.5) << w.nam;
        }
        EXPECT_NEAR(to_time(found[i].date, found[i].time, date_order::year_month_day).value_or(0),
                    w.dat, 1);
    }
}

TEST_F(GpsBabel, ReadsOurOziExplorerRoutes)
{
    const auto found = points("OziExplorer", ".rte", "ozi", "-r");
    const int expected[] = {0, 1, 2, 0, 3, 4};
    ASSERT_EQ(found.size(), std::size(expected));
    for (std::size_t i = 0; i < found.size(); ++i) {
        const wayp_rec& w = store.wp[static_cast<std::size_t>(expected[i])];
        EXPECT_EQ(found[i].name, w.nam);
        expect_place(found[i], w);
    }
}

TEST_F(GpsBabel, ReadsThePlacesOfOurTerrainNavigatorPoints)
{
    const auto found = points("TerrainNavigator", ".mxf", "mxf", "-w");
    ASSERT_EQ(found.size(), 8U);
    for (std::size_t i = 0; i < found.size(); ++i)
        expect_place(found[i], store.wp[i]);
}

TEST_F(GpsBabel, ReadsOurGeogridLines)
{
    const auto found = points("GeogridViewer", ".ovl", "ggv_ovl", "-t");
    const int expected[] = {0, 1, 2, 0, 3, 4};
    ASSERT_EQ(found.size(), std::size(expected));
    for (std::size_t i = 0; i < found.size(); ++i)
        expect_place(found[i], store.wp[static_cast<std::size_t>(expected[i])]);
}

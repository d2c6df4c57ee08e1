// What is written in a format and read again is what the format can hold.
#include "coords/coord_text.h"
#include "core/code_page.h"
#include "core/hooks.h"
#include "core/text_tools.h"
#include "interchange/export_job.h"
#include "interchange/import_job.h"
#include "tests/interchange/file_fixture.h"

#include <cmath>
#include <cstdlib>
#include <random>

using namespace velkoro;

namespace {

constexpr int waypoints = 250, routes = 6;
/// What the two ways through a datum may differ by: 0.25 m, in semicircles.
constexpr double datum_slack = 14;
/// Half of the last digit in degrees, of each coordinate format of a file.
constexpr double half_digit[] = {0.5e-5, 0.5e-3 / 60, 0.05 / 3600};

class RoundTrip : public FileTest {
protected:
    std::mt19937 random{20030502};

    int up_to(int most) { return std::uniform_int_distribution<int>(0, most)(random); }
    std::string letters(std::string_view from, int least, int most)
    {
        std::string out;
        for (int n = least + up_to(most - least); n > 0; --n)
            out += from[static_cast<std::size_t>(up_to(static_cast<int>(from.size()) - 1))];
        return out;
    }
    /// What the list may hold: capitals and, with the extended set, punctuation and blanks inside.
    std::string name(int number)
    {
        std::string out = std::to_string(number);
        if (number % 5 == 0)
            out = letters("&',.():;?!# ABC", 0, 2) + out;
        else
            out = letters("ABCXYZ-", 1, 2) + out;
        return std::string(trim(out));
    }
    std::string comment()
    {
        if (up_to(5) == 0)
            return {};
        const std::string middle =
            letters("abcdefghijklmnopqrstuvwxyz   ,,;:.\"'/()<>&%+-_=\xC4\xD6\xDC\xE4\xF6\xFC\xDF"
                    "0123456789",
                    0, 30);
        return letters("ABCabc\xE4\xDC", 1, 2) + middle + letters("ABCabc\xE4\xDC", 1, 2);
    }
    pos_rec position()
    {
        const double lat = up_to(178000) / 1000.0 - 89, lon = up_to(359998) / 1000.0 - 179.999;
        return {static_cast<std::int32_t>(std::lround(lat / 180 * 2147483648.0) + up_to(9999)),
                static_cast<std::int32_t>(std::lround(lon / 180 * 2147483648.0) + up_to(9999))};
    }
    void fill_store()
    {
        store_reset();
        for (int i = 0; i < waypoints; ++i) {
            wayp_rec w;
            w.nam = name(i);
            w.kom = comment();
            w.pos = position();
            w.dat = up_to(9) == 0 ? 0 : 1 + up_to(1500000000);
            w.alt = up_to(4) == 0 ? alt_unknown : static_cast<std::int16_t>(up_to(9000) - 420);
            w.prox = up_to(2) == 0 ? static_cast<std::int16_t>(up_to(500)) : std::int16_t{0};
            wp_append(w);
        }
        // Edges: near the equator, the meridian and the date line, on both sides.
        const pos_rec edges[] = {
            {-240, 240}, {240, -240}, {1, 2147483000}, {-1, -2147483000}, {0, 0}};
        for (std::size_t i = 0; i < std::size(edges); ++i)
            wp_move(static_cast<int>(i), edges[i]);
        for (int r = 0; r < routes; ++r) {
            std::string keys;
            for (int n = 2 + up_to(18); n > 0; --n)
                keys += wp_key(up_to(waypoints - 1)) + "$";
            add_route("TOUR-" + std::to_string(r), keys);
        }
    }

    static std::string masked(std::string_view text, std::string_view lacks, int width)
    {
        std::string out(width > 0 ? text.substr(0, static_cast<std::size_t>(width)) : text);
        for (char& c : out)
            if (lacks.find(c) != std::string_view::npos)
                c = '-';
        return std::string(trim(out));
    }
    /// The same places of both texts count as equal where the format has no such character.
    static void expect_text(std::string now, std::string_view was, std::string_view lacks,
                            int width)
    {
        const std::string expected = masked(was, lacks, width);
        const std::string_view whole =
            trim(width > 0 ? was.substr(0, static_cast<std::size_t>(width)) : was);
        for (std::size_t i = 0; i < now.size() && i < whole.size(); ++i)
            if (lacks.find(whole[i]) != std::string_view::npos)
                now[i] = '-';
        EXPECT_EQ(now, expected);
    }
    static void expect_place(const pos_rec& now, const pos_rec& was, double tolerance)
    {
        constexpr double degree = 2147483648.0 / 180;
        EXPECT_LE(std::abs(now.lat - was.lat), tolerance * degree + datum_slack);
        const auto apart = static_cast<std::int32_t>(static_cast<std::uint32_t>(now.lon) -
                                                     static_cast<std::uint32_t>(was.lon));
        EXPECT_LE(std::abs(apart), tolerance * degree + datum_slack);
    }
    static std::int32_t time_of(std::int32_t dat, time_step step)
    {
        const int unit = step == time_step::day ? 86400 : step == time_step::minute ? 60 : 1;
        return step == time_step::none ? 0 : dat / unit * unit;
    }
    static void expect_record(const wayp_rec& now, const wayp_rec& was, const format_holds& h,
                              double tolerance)
    {
        SCOPED_TRACE(was.nam + " / " + to_utf8(was.kom));
        expect_text(now.nam, was.nam, h.name_lacks, h.name_width);
        if (h.comment)
            expect_text(now.kom, was.kom, h.comment_lacks, h.comment_width);
        expect_place(now.pos, was.pos, tolerance);
        EXPECT_EQ(now.dat, time_of(was.dat, h.time));
        EXPECT_EQ(now.alt, h.altitude ? was.alt : alt_unknown);
        EXPECT_EQ(now.prox, h.proximity ? was.prox : 0);
    }

    import_content written_and_read(const format_row& row, const export_options& options,
                                    std::string_view extension)
    {
        const export_result out = export_bytes(row, options, extension);
        EXPECT_EQ(out.end, native_end::whole);
        import_content content;
        const import_result in = import_bytes(row, out.bytes, extension, false, &content);
        EXPECT_EQ(in.end, native_end::whole);
        EXPECT_EQ(in.remarks, "");
        EXPECT_EQ(format_of_file(extension, out.bytes), &row) << out.bytes.substr(0, 200);
        for (std::size_t at = out.bytes.find('\n'); at != std::string::npos;
             at = out.bytes.find('\n', at + 1))
            if (at == 0 || out.bytes[at - 1] != '\r') {
                ADD_FAILURE() << "a line does not end in CR LF";
                break;
            }
        return content;
    }
    void expect_routes(const import_content& content, const format_row& row, double tolerance)
    {
        ASSERT_EQ(content.routes.size(), static_cast<std::size_t>(routes));
        for (std::size_t r = 0; r < content.routes.size(); ++r) {
            if (row.holds.route_names) {
                EXPECT_EQ(content.routes[r].name, std::string(trim(store.rou[r].nam)));
            }
            const std::vector<int> points = route_points(store.rou[r]);
            ASSERT_EQ(content.routes[r].points.size(), points.size());
            for (std::size_t k = 0; k < points.size(); ++k) {
                const wayp_rec& was = store.wp[static_cast<std::size_t>(points[k])];
                const wayp_rec& now = content.routes[r].points[k];
                expect_place(now.pos, was.pos, tolerance);
                if (row.holds.point_names)
                    expect_text(now.nam, was.nam, row.holds.name_lacks, row.holds.name_width);
            }
        }
    }
    void try_format(const format_row& row, const export_options& options, double tolerance)
    {
        fill_store();
        const std::string first(row.export_patterns.substr(1, row.export_patterns.find(';') - 1));
        const import_content content = written_and_read(row, options, first);
        ASSERT_EQ(content.waypoints.size(), static_cast<std::size_t>(waypoints));
        for (std::size_t i = 0; i < content.waypoints.size() && !HasFailure(); ++i)
            expect_record(content.waypoints[i], store.wp[i], row.holds, tolerance);
        if (!row.holds.routes)
            return;
        if (row.route_extension.empty()) {
            expect_routes(content, row, tolerance);
            return;
        }
        export_options of_routes = options;
        of_routes.flags = "R";
        expect_routes(written_and_read(row, of_routes, row.route_extension), row, tolerance);
    }
};

} // namespace

TEST_F(RoundTrip, EveryFormatGivesBackWhatItCanHold)
{
    for (const format_row& row : formats()) {
        if (!row.read || !row.write)
            continue;
        SCOPED_TRACE(row.name);
        if ((row.options & opt_posform) == 0) {
            try_format(row, export_defaults(row), row.holds.position_step * 0.51);
            continue;
        }
        for (int fmt = fmt_degrees; fmt <= fmt_seconds; ++fmt) {
            SCOPED_TRACE(fmt);
            export_options options = export_defaults(row);
            options.fmt = fmt;
            try_format(row, options, half_digit[fmt] * 1.02);
        }
        SCOPED_TRACE("sign");
        export_options options = export_defaults(row);
        options.sign = true;
        try_format(row, options, half_digit[0] * 1.02);
    }
}

TEST_F(RoundTrip, EverySeparatorAndTimeFormOfTheTextFormatComesBack)
{
    for (const format_row& row : formats()) {
        if (!row.write || (row.options & opt_separator) == 0)
            continue;
        for (const char separator : {';', ',', '\t'})
            for (const char* picture :
                 {"yyyy-mm-dd hh:nn:ss", "dd.mm.yyyy hh:nn:ss", "dd-mmm-yy hh:nn:ss"}) {
                SCOPED_TRACE(std::string(row.name) + separator + picture);
                export_options options = export_defaults(row);
                options.separator = separator;
                options.time_picture = picture;
                try_format(row, options, half_digit[0] * 1.02);
            }
    }
}

TEST_F(RoundTrip, AnotherDatumOfTheListIsWrittenAndReadWhereTheFormatNamesIt)
{
    // Formats that do not name the datum are on the list's; nobody else can know it.
    for (const format_row& row : formats()) {
        if (!row.read || !row.write || row.datum.empty())
            continue;
        SCOPED_TRACE(row.name);
        Form1.Datum.selected = 0;
        try_format(row, export_defaults(row), row.holds.position_step * 0.51 + half_digit[0]);
    }
}

TEST_F(RoundTrip, DegreesAreWrittenAsTheTextsOfTheListHaveThem)
{
    for (const int datum : {0, 1}) {
        Form1.Datum.selected = datum;
        export_job out;
        out.datum_index = datum;
        out.datum = datum_at(datum);
        for (int i = 0; i < 20000; ++i) {
            const pos_rec pos = position();
            for (int fmt = fmt_degrees; fmt <= fmt_seconds; ++fmt) {
                std::string zone, east, north;
                pos_to_text(pos, zone, east, north, -1, fmt);
                coordinate_texts(out, pos, fmt);
                ASSERT_EQ(out.east, east);
                ASSERT_EQ(out.north, north);
                const geo_degrees g = on_datum(out, pos);
                ASSERT_EQ(split_angle(g.lon, 'E', fmt).text, east);
            }
        }
    }
}

TEST_F(RoundTrip, TextsInAGridAreThoseOfTheListOnTheDatumOfTheFile)
{
    export_job out;
    out.datum_index = 0;
    out.datum = datum_at(0);
    Form1.Datum.selected = 1;
    const pos_rec pos{574136345, 138013435};
    coordinate_texts(out, pos, fmt_utm);
    EXPECT_EQ(Form1.Datum.selected, 1);
    const auto [zone, east, north] = std::tuple(out.zone, out.east, out.north);
    Form1.Datum.selected = 0;
    std::string z, e, n;
    pos_to_text(pos, z, e, n, -1, fmt_utm);
    EXPECT_EQ(zone, z);
    EXPECT_EQ(east, e);
    EXPECT_EQ(north, n);
}

TEST_F(RoundTrip, PositionsInDegreesAreReadAsTheTextsOfTheListAre)
{
    import_job in;
    in.datum = datum_at(0);
    in.datum_row = 0;
    for (int i = 0; i < 20000; ++i) {
        const pos_rec pos = position();
        Form1.Datum.selected = 0;
        std::string zone, east, north;
        pos_to_text(pos, zone, east, north, -1, i % 3);
        pos_rec fast, plain;
        ASSERT_TRUE(file_position(in, north, east, fast)) << north << east;
        ASSERT_TRUE(text_to_pos(zone, east, north, plain, i % 3, 0));
        ASSERT_LE(std::abs(fast.lat - plain.lat), 1) << north;
        ASSERT_LE(std::abs(fast.lon - plain.lon), 1) << east;
    }
}

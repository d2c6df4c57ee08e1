#include "coords/datum.h"

#include "tests/coords/coord_fixture.h"

#include <cmath>
#include <random>
#include <stdexcept>

namespace velkoro {
namespace {

const std::string eleven = "A,B,C,D,E,F,G,H,I,J,K\r\n";

TEST(DatumTable, TenFieldsGiveMgrsTheDatumOfUtm)
{
    const datum_state t = datum_parse("A,B,C, D ,F,G,H,I,J,K\n");
    ASSERT_EQ(t.grid_datum.size(), 11U);
    EXPECT_EQ(t.grid_datum[3], "D");
    EXPECT_EQ(t.grid_datum[4], "D");
    EXPECT_EQ(t.grid_datum[5], "F");
    EXPECT_EQ(t.grid_datum[10], "K");
}

TEST(DatumTable, ElevenFieldsStandForThemselves)
{
    const datum_state t = datum_parse(eleven);
    EXPECT_EQ(t.grid_datum[4], "E");
    EXPECT_EQ(t.grid_datum[10], "K");
}

TEST(DatumTable, FlatteningMayBeTimesTenThousand)
{
    const datum_state t = datum_parse(eleven + "p,0,-0.0000001,0,0,0\nq,0,0.37,0,0,0\n");
    ASSERT_EQ(t.rows.size(), 2U);
    EXPECT_EQ(t.rows[0].f, static_cast<float>(0.003352810665 + 0.0000001));
    EXPECT_EQ(t.rows[1].f, static_cast<float>(0.003352810665 - 0.000037));
    EXPECT_EQ(t.wgs_datum, -1);
}

TEST(DatumTable, Nad83WithADecimalCommaIsRepaired)
{
    const datum_state t = datum_parse(eleven + "NAD83,0, -0 ,0000001,1,2,3\nNAD83,0,-0.1,1,2,3\n");
    ASSERT_EQ(t.rows.size(), 2U);
    EXPECT_EQ(t.rows[0].f, static_cast<float>(0.003352810665 + 0.0000001));
    EXPECT_EQ(t.rows[0].dz, 3);
    EXPECT_EQ(t.rows[1].dz, 3);
    EXPECT_EQ(datum_parse(eleven + "NAD83,0,-0,0000001,0,0,0").wgs_datum, -1);
}

TEST(DatumTable, TheLastAllZeroRowIsWgs84)
{
    const datum_state t = datum_parse(eleven + "a,0,0,0,0,0\nb,1,0,0,0,0\nc,0,0,0,0,0\n\n  \n");
    EXPECT_EQ(t.rows.size(), 3U);
    EXPECT_EQ(t.wgs_datum, 2);
}

TEST(DatumTable, UserGridsTakeTheFollowingFormats)
{
    const datum_state t =
        datum_parse(eleven + "#My grid, Potsdam,10.5,0,0.9996,500000.4,-5000000\n");
    ASSERT_EQ(t.grids.size(), 1U);
    EXPECT_EQ(t.grid_names[0], "My grid");
    EXPECT_EQ(t.grid_datum[11], "Potsdam");
    EXPECT_EQ(t.grids[0], (grid_rec{10.5F, 0, 0.9996F, 500000, -5000000}));
}

TEST(DatumTable, EachValueReadsTheRoundedOnesBeforeIt)
{
    const datum_rec d = datum_make("Bessel", 739.845, 0.10037483, 0, 0, 0);
    const float a = static_cast<float>(6378137 - 739.845);
    const float f = static_cast<float>(0.003352810665 - 0.000010037483);
    EXPECT_EQ(d.a, a);
    EXPECT_EQ(d.f, f);
    const double da = a, df = f;
    EXPECT_EQ(d.e2, static_cast<float>(2 * df - df * df));
    EXPECT_EQ(d.b, static_cast<float>(da * (1 - df)));
    const double b = d.b;
    EXPECT_EQ(d.ep2, static_cast<float>((da / b) * (da / b) - 1));
    EXPECT_EQ(d.n, static_cast<float>((da - b) / (da + b)));
}

TEST(DatumTable, AShiftBeyondSixteenBitsIsRefused)
{
    EXPECT_THROW(datum_parse(eleven + "x,0,0,40000,0,0"), std::overflow_error);
}

TEST(DatumTable, NothingGivesAnEmptyTable)
{
    EXPECT_TRUE(datum_parse("").rows.empty());
    EXPECT_EQ(datum_parse("").wgs_datum, -1);
}

class Datum : public CoordTest {};

TEST_F(Datum, TheShippedTableIsWhole)
{
    EXPECT_EQ(datums.rows.size(), 223U);
    EXPECT_EQ(datums.grids.size(), 27U);
    EXPECT_EQ(datums.wgs_datum, 222);
    for (const std::string& name : datums.grid_datum)
        EXPECT_GE(datum_find(name), 0) << name;
    for (std::size_t i = 0; i < datums.rows.size(); ++i)
        EXPECT_EQ(datum_find(datums.rows[i].name), static_cast<int>(i)) << datums.rows[i].name;
}

TEST_F(Datum, ThereAndBackClosesOnEveryRow)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> lat(-89.9, 89.9), lon(-180, 180);
    for (const datum_rec& d : datums.rows)
        for (int i = 0; i < 500; ++i) {
            const pos_rec p = at(lat(random), lon(random));
            pos_rec back;
            ASSERT_TRUE(datum_to_wgs(wgs_to_datum(p, d), d, back));
            ASSERT_LT(apart(p, back), 0.6) << d.name;
        }
}

TEST_F(Datum, TheRowOfWgs84KeepsPositionsToTheLastBit)
{
    std::mt19937 random(4);
    const datum_rec& d = datum_at(datums.wgs_datum);
    int moved = 0;
    for (int i = 0; i < 10000; ++i) {
        const pos_rec p = {static_cast<std::int32_t>(random()) / 2,
                           static_cast<std::int32_t>(random())};
        pos_rec back;
        ASSERT_TRUE(datum_to_wgs(wgs_to_datum(p, d), d, back));
        ASSERT_LT(apart(p, back), 0.25); // single precision of the row
        moved += p != back;
    }
    RecordProperty("moved", moved);
}

// Shift of known places, against the exact formulas of another library (PROJ 9.1.1, EPSG best
// operation): direction and size show that the signs are right.
TEST_F(Datum, ShiftsKnownPlacesOfEachCountryByTheRightAmount)
{
    const struct {
        const char* name;
        double lat, lon, shift_m;
    } rows[] = {{"Potsdam", 51, 10, 163.9},
                {"CH-1903", 46.95, 7.44, 163.7},
                {"NTF (France)", 46.5, 2.5, 52.7},
                {"Ord Srvy GB", 52.65, -1.5, 107.3},
                {"Ireland 1965", 53.35, -7.5, 60.3},
                {"Geodetic Datum 1949", -41.3, 174.8, 191.8},
                {"European 1950 Central", 50, 8, 122.9},
                {"NAD27 CONUS", 39, -98, 30.3},
                {"Tokyo Japan", 35.7, 139.7, 464.7},
                {"Cape", -29, 24, 59.7},
                {"Pulkovo 1942", 55.7, 37.6, 119.7},
                {"Austria (MGI)", 47.5, 14.5, 88.5}};
    for (const auto& r : rows) {
        const pos_rec p = at(r.lat, r.lon);
        const geo_rec g = wgs_to_datum(p, datum_at(datum_find(r.name)));
        const pos_rec moved = {rad_to_semi(g.lat), rad_to_semi(g.lon)};
        EXPECT_NEAR(apart(p, moved), r.shift_m, 9) << r.name;
    }
}

// IGN, NTG 88, worked example of the way from NTF to RGF93: the published place is met to 2 m, as
// the row has its shift in whole metres.
TEST_F(Datum, ShiftsThePublishedPlaceInParis)
{
    constexpr double rad = 3.14159265358979323846 / 180;
    pos_rec found;
    ASSERT_TRUE(datum_to_wgs(
        {(48 + 50 / 60.0 + 40.2441 / 3600) * rad, (2 + 25 / 60.0 + 32.4187 / 3600) * rad},
        datum_at(datum_find("NTF (France)")), found));
    EXPECT_LT(apart(found, at(48.844445839, 2.424971108)), 2);
}

TEST_F(Datum, PolesAndTheDateLineStayWhereTheyAre)
{
    const datum_rec& d = datum_at(datums.wgs_datum);
    for (const pos_rec p : {pos_rec{1 << 30, 0}, pos_rec{-(1 << 30), 77}, pos_rec{0, INT32_MIN},
                            pos_rec{500000000, INT32_MAX}, pos_rec{500000000, INT32_MIN}}) {
        pos_rec back;
        ASSERT_TRUE(datum_to_wgs(wgs_to_datum(p, d), d, back));
        EXPECT_LT(apart(p, back), 0.25);
    }
}

TEST_F(Datum, WhatIsNoNumberLeavesThePositionAlone)
{
    pos_rec p = {1, 2};
    EXPECT_FALSE(datum_to_wgs({std::nan(""), 0}, datum_at(0), p));
    EXPECT_FALSE(datum_to_wgs({0, HUGE_VAL}, datum_at(0), p));
    EXPECT_EQ(p, (pos_rec{1, 2}));
}

TEST_F(Datum, WithoutATablePositionsAreOnWgs84)
{
    datums = {};
    EXPECT_EQ(datum_at(-1).name, "WGS 84");
    EXPECT_EQ(datum_at(5).a, 6378137.0F);
    EXPECT_EQ(line(at(48, 11), fmt_degrees), "|E011.00000\xB0|N 48.00000\xB0");
}

TEST_F(Datum, ReadingFillsTheListsAndChoosesTheLastRow)
{
    Form1.posform.items.resize(11);
    Form1.posform.items.push_back("old");
    folders.program = std::string(VELKORO_BINARY_DIR) + "/datum_read/";
    const std::string path = folders.program + "Datum.ini";
    ASSERT_EQ(std::system(("mkdir -p '" + folders.program + "'").c_str()), 0);
    write_file(path, shipped_datum_table());
    datum_read();
    EXPECT_EQ(Form1.Datum.items.size(), 223U);
    EXPECT_EQ(Form1.Datum.selected, 222);
    ASSERT_EQ(Form1.posform.items.size(), 38U);
    EXPECT_EQ(Form1.posform.items[11], "(A) BMN M28");
    EXPECT_EQ(Form1.posform.selected, 0);
    EXPECT_TRUE(user.messages.empty());

    write_file(path, eleven + "x,1,0,0,0,0\n");
    datum_read();
    EXPECT_EQ(user.count(1020), 1);
    EXPECT_EQ(Form1.Datum.selected, 0);
    delete_file(path);
    folders.program.clear();
}

} // namespace
} // namespace velkoro

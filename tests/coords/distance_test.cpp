#include "coords/distance.h"

#include "core/num_text.h"
#include "core/settings.h"
#include "tests/support/scripted_platform.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace velkoro {
namespace {

constexpr double pi = 3.14159265358979323846;

pos_rec at(double lat, double lon)
{
    return {rad_to_semi(lat * pi / 180), rad_to_semi(lon * pi / 180)};
}

// The start is rounded, so the end may be off by a few semicircles (9 mm on the ground).
void expect_near(const pos_rec& a, const pos_rec& b)
{
    EXPECT_LE(std::abs(a.lat - b.lat), 4) << a.lat << " " << b.lat;
    EXPECT_LE(std::abs(a.lon - b.lon), 4) << a.lon << " " << b.lon;
}

double haversine_m(const pos_rec& a, const pos_rec& b)
{
    const double la = a.lat * semi_to_rad, lb = b.lat * semi_to_rad;
    const double s = std::sin((la - lb) / 2);
    const double t = std::sin((a.lon - static_cast<double>(b.lon)) * semi_to_rad / 2);
    const double h = s * s + std::cos(la) * std::cos(lb) * t * t;
    return 2 * std::atan2(std::sqrt(h), std::sqrt(1 - h)) * earth_radius;
}

double off_north(double bearing, double want)
{
    return std::fabs(std::remainder(bearing - want, 360.0));
}

class Distance : public testing::Test {
protected:
    scripted_platform user{}; // settings as at the start: kilometres
    std::mt19937 random{7};
    pos_rec anywhere(double most_lat = 89)
    {
        std::uniform_real_distribution<double> lat(-most_lat, most_lat), lon(-180, 180);
        return at(lat(random), lon(random));
    }
};

TEST_F(Distance, OneDegreeOfLatitudeHasItsLengthOnTheSphere)
{
    const dist_bear d = dist_flat(at(49, 10), at(48, 10));
    EXPECT_NEAR(d.distance, 111.31949, 1e-4);
    EXPECT_EQ(d.bearing, 0);
    EXPECT_NEAR(dist_chord(at(49, 10), at(48, 10)).distance, 111.31949, 1e-4);
    settings.dist_unit = 1852.0F;
    EXPECT_NEAR(dist_flat(at(49, 10), at(48, 10)).distance, 111319.49 / 1852, 1e-4);
}

TEST_F(Distance, TheSamePointTwiceHasDistanceAndBearingZero)
{
    const pos_rec p = at(48.1, 11.5);
    EXPECT_EQ(dist_flat(p, p), (dist_bear{0, 0}));
    EXPECT_EQ(dist_chord(p, p), (dist_bear{0, 0}));
}

TEST_F(Distance, BearingsRunFromTheOriginToTheTarget)
{
    const pos_rec o = at(10, 20);
    EXPECT_NEAR(dist_flat(at(10, 20.1), o).bearing, 90, 0.01);
    EXPECT_NEAR(dist_flat(at(10, 19.9), o).bearing, 270, 0.01);
    EXPECT_EQ(dist_flat(at(10.1, 20), o).bearing, 0);
    EXPECT_EQ(dist_chord(at(10.1, 20), o).bearing, 0);
    EXPECT_EQ(dist_chord(at(9.9, 20), o).bearing, 180);
    for (int i = 0; i < 20000; ++i) {
        const pos_rec a = anywhere(60);
        std::uniform_int_distribution<std::int32_t> near(-20000, 20000);
        const pos_rec b{a.lat + near(random), a.lon + near(random) / 2};
        if (std::abs(b.lat - a.lat) < 100 || std::abs(b.lon - a.lon) < 100)
            continue;
        const double flat = dist_flat(b, a).bearing, chord = dist_chord(b, a).bearing;
        ASSERT_LT(off_north(flat, chord), 0.05)
            << a.lat << " " << a.lon << " " << b.lat << " " << b.lon;
        ASSERT_GE(flat, 0);
        ASSERT_LT(flat, 360);
        ASSERT_GE(chord, 0);
        ASSERT_LT(chord, 360);
    }
}

TEST_F(Distance, DueSouthHasBearingZeroInTheFlatForm)
{
    EXPECT_EQ(dist_flat(at(9, 20), at(10, 20)).bearing, 0);
}

TEST_F(Distance, VeryNearPointsAreQuantisedInTheFlatFormOnly)
{
    const pos_rec a{1000000000, 5000}, b{1000000001, 5000};
    EXPECT_EQ(dist_flat(b, a).distance, 0);
    EXPECT_NEAR(dist_chord(b, a).distance * 1000, 0.00933, 1e-4);
}

TEST_F(Distance, TheFlatFormIsExactToOnePartInAThousandUpTo100Km)
{
    for (int i = 0; i < 20000; ++i) {
        const pos_rec a = anywhere(65);
        std::uniform_int_distribution<std::int32_t> near(-8000000, 8000000);
        const pos_rec b{a.lat + near(random),
                        static_cast<std::int32_t>(static_cast<std::uint32_t>(a.lon) +
                                                  static_cast<std::uint32_t>(near(random)))};
        const double want = haversine_m(a, b);
        if (want < 100 || want > 100000)
            continue;
        ASSERT_NEAR(dist_flat(b, a).distance * 1000, want, want * 1e-3);
    }
}

TEST_F(Distance, TheChordFormHoldsAtAllRanges)
{
    for (int i = 0; i < 50000; ++i) {
        const pos_rec a = anywhere(), b = anywhere();
        const double want = haversine_m(a, b);
        ASSERT_NEAR(dist_chord(b, a).distance * 1000, want, want * 2e-7 + 1e-3);
    }
    EXPECT_NEAR(dist_chord(at(0, 180), at(0, 0)).distance, pi * 6378.137, 0.01);
    EXPECT_NEAR(dist_chord(at(-90, 0), at(90, 0)).distance, pi * 6378.137, 0.01);
}

TEST_F(Distance, TheChordBearingHasItsOwnBranchOnTheEquator)
{
    EXPECT_EQ(dist_chord(at(0, 10), at(0, 5)).bearing, 90);
    EXPECT_EQ(dist_chord(at(0, 5), at(0, 10)).bearing, 270);
    EXPECT_NEAR(dist_chord(at(45, 90), at(0, 0)).bearing, 45, 1e-4);
    EXPECT_NEAR(dist_chord(at(45, 90), at(1e-4, 0)).bearing, 45, 1e-3);
}

TEST_F(Distance, LongitudesMeetAtTheDateLine)
{
    const dist_bear flat = dist_flat(at(0, -179.95), at(0, 179.95));
    EXPECT_NEAR(flat.distance, 11.131949, 1e-4);
    EXPECT_NEAR(flat.bearing, 90, 1e-4);
    const dist_bear chord = dist_chord(at(0, 179.95), at(0, -179.95));
    EXPECT_NEAR(chord.distance, 11.131949, 1e-4);
    EXPECT_NEAR(chord.bearing, 270, 1e-4);
}

TEST_F(Distance, AnglesBetweenTheStepsAreSinglePrecision)
{
    // The steps one by one with the library's functions, narrowed where the form narrows: the same
    // floats. One in a million may sit on the edge between two of them.
    int other = 0;
    const auto step_by_step = [](const pos_rec& t, const pos_rec& o) {
        const double lt = t.lat * semi_to_rad, lo = o.lat * semi_to_rad;
        const auto dla = static_cast<float>(lt - lo);
        const auto c = static_cast<float>(std::cos((lt + lo) / 2));
        const auto diff = static_cast<std::int32_t>(static_cast<std::uint32_t>(t.lon) -
                                                    static_cast<std::uint32_t>(o.lon));
        const auto dlo = static_cast<float>(diff * semi_to_rad * c);
        const double x = std::cos(static_cast<double>(dla)) * std::cos(static_cast<double>(dlo));
        const float arc = x >= 1 ? 0.0F
                          : x <= -1
                              ? 3.14159265F
                              : static_cast<float>(std::atan(-x / std::sqrt(1 - x * x)) + pi / 2);
        double b =
            atan2_own(std::tan(static_cast<double>(dlo)), std::sin(static_cast<double>(dla))) *
            180 / pi;
        if (b < 0)
            b += 360;
        const auto bearing = static_cast<float>(b);
        return dist_bear{static_cast<float>(arc * earth_radius / 1000),
                         bearing < 360.0F ? bearing : 0.0F};
    };
    std::uniform_int_distribution<std::int32_t> some(-2000000, 2000000), few(-9000, 9000);
    for (int i = 0; i < 100000; ++i) {
        const pos_rec o = anywhere();
        const auto beside = [&](std::int32_t lat, std::int32_t lon) {
            return pos_rec{o.lat + lat,
                           static_cast<std::int32_t>(static_cast<std::uint32_t>(o.lon) +
                                                     static_cast<std::uint32_t>(lon))};
        };
        for (const pos_rec t :
             {anywhere(), beside(some(random), some(random)), beside(few(random), few(random)),
              beside(few(random), 0), beside(0, few(random))})
            other += dist_flat(t, o) != step_by_step(t, o);
    }
    EXPECT_LE(other, 2);
    // Poles, the antipode and the equator.
    constexpr std::int32_t pole = 1 << 30, half = std::numeric_limits<std::int32_t>::min();
    const pos_rec ends[] = {{pole, 0}, {-pole, 0},    {pole, 77},   {0, 0},    {0, half},
                            {0, pole}, {0, -pole},    {pole, half}, {1, 1},    {-1, -1},
                            {0, 1},    {pole - 1, 5}, {7, -1},      {-pole, 9}};
    for (const pos_rec& t : ends)
        for (const pos_rec& o : ends)
            EXPECT_EQ(dist_flat(t, o), step_by_step(t, o))
                << t.lat << " " << t.lon << " from " << o.lat << " " << o.lon << ": "
                << dist_flat(t, o).distance << " " << dist_flat(t, o).bearing << " for "
                << step_by_step(t, o).distance << " " << step_by_step(t, o).bearing;
}

TEST_F(Distance, DistanceZeroProjectsToTheStart)
{
    const pos_rec p = at(48, 11);
    EXPECT_EQ(dist_to_wgs(0, 77, p), p);
    EXPECT_EQ(dist_to_wgs_dir(0, 77, p), p);
}

TEST_F(Distance, NothingThatIsNoNumberReachesAPosition)
{
    const pos_rec p = at(48, 11);
    const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(dist_to_wgs(nan, 0, p), p);
    EXPECT_EQ(dist_to_wgs(5, inf, p), p);
    EXPECT_EQ(dist_to_wgs_dir(inf, 0, p), p);
    EXPECT_EQ(dist_to_wgs_dir(1, nan, p), p);
}

TEST_F(Distance, ProjectingAndMeasuringAgree)
{
    std::uniform_real_distribution<double> length(0.01, 19000), bearing(0, 360);
    for (int i = 0; i < 50000; ++i) {
        const pos_rec a = anywhere(85);
        const double d = length(random), b = bearing(random);
        const pos_rec p = dist_to_wgs(d, b, a);
        const dist_bear back = dist_chord(p, a);
        ASSERT_NEAR(back.distance, d, d * 3e-7 + 2e-5) << d << " " << b;
        if (d > 50) {
            ASSERT_LT(off_north(back.bearing, b) * std::sin(d / 6378.137), 2e-4) << d << " " << b;
        }
    }
}

TEST_F(Distance, ADistanceOfExactlyOneUnitUsesTheDirectForm)
{
    const pos_rec p = at(60, 11);
    EXPECT_EQ(dist_to_wgs(1, 33, p), dist_to_wgs_dir(1, 33, p));
    settings.dist_unit = 1e6F; // the two forms lie apart here
    EXPECT_EQ(dist_to_wgs(1, 33, p), dist_to_wgs_dir(1, 33, p));
    const double over = std::nextafter(1.0, 2.0);
    EXPECT_NE(dist_to_wgs(over, 33, p), dist_to_wgs_dir(over, 33, p));
}

TEST_F(Distance, DueNorthAndSouthRunAlongTheMeridianAndOverThePole)
{
    const double degree = earth_radius * pi / 180 / 1000;
    expect_near(dist_to_wgs(2 * degree, 0, at(48, 11)), at(50, 11));
    expect_near(dist_to_wgs(2 * degree, 180, at(48, 11)), at(46, 11));
    expect_near(dist_to_wgs(2 * degree, 360, at(48, 11)), at(50, 11));
    expect_near(dist_to_wgs(2 * degree, -180, at(48, 11)), at(46, 11));
    expect_near(dist_to_wgs(2 * degree, 0, at(89, 11)), at(89, -169));
    expect_near(dist_to_wgs(2 * degree, 180, at(-89, 11)), at(-89, -169));
    expect_near(dist_to_wgs(190 * degree, 0, at(0, 10)), at(-10, -170));
}

TEST_F(Distance, TheDirectFormCrossesPolesAndTheDateLine)
{
    const double degree = earth_radius * pi / 180 / 1000;
    expect_near(dist_to_wgs_dir(degree, 0, at(89.5, 11)), at(89.5, -169));
    expect_near(dist_to_wgs_dir(degree, 180, at(-89.5, 11)), at(-89.5, -169));
    expect_near(dist_to_wgs_dir(degree, 90, at(0, 179.5)), at(0, -179.5));
    expect_near(dist_to_wgs_dir(degree, 270, at(0, -179.5)), at(0, 179.5));
    for (const double b : {0.0, 45.0, 90.0, 200.0}) {
        const pos_rec p = dist_to_wgs_dir(0.5, b, at(90, 0));
        EXPECT_LE(std::abs(static_cast<std::int64_t>(p.lat)), std::int64_t{1} << 30);
    }
}

TEST_F(Distance, NegativeDistancesGoBackwards)
{
    const double degree = earth_radius * pi / 180 / 1000;
    expect_near(dist_to_wgs(-degree, 0, at(48, 11)), at(47, 11));
}

TEST_F(Distance, AcrossTheLineBehindItAndPastIt)
{
    const pos_rec a = at(0, 0), b = at(0, 1);
    const double degree = earth_radius * pi / 180 / 1000;
    EXPECT_NEAR(dist_cross(at(0.1, 0.5), a, b), 0.1 * degree, 1e-2);
    EXPECT_NEAR(dist_cross(at(-0.1, 0.5), a, b), 0.1 * degree, 1e-2);
    EXPECT_NEAR(dist_cross(at(0.1, -0.5), a, b), dist_flat(a, at(0.1, -0.5)).distance, 1e-9);
    EXPECT_NEAR(dist_cross(at(0.1, 1.5), a, b), dist_flat(b, at(0.1, 1.5)).distance, 1e-9);
    EXPECT_NEAR(dist_cross(at(0, 0.5), a, b), 0, 1e-3);
}

TEST(Atan2Own, KeepsItsTwoSpecialCases)
{
    EXPECT_EQ(atan2_own(0, -5), 0);
    EXPECT_EQ(atan2_own(0, 0), 0);
    EXPECT_EQ(atan2_own(2, 0), pi / 2);
    EXPECT_EQ(atan2_own(-2, 0), -pi / 2);
    EXPECT_NEAR(atan2_own(1, -1), 3 * pi / 4, 1e-15);
    EXPECT_NEAR(atan2_own(-1, -1), -3 * pi / 4, 1e-15);
    EXPECT_NEAR(atan2_own(1, 1), pi / 4, 1e-15);
}

TEST(RadToSemi, WrapsPlus180DegreesToTheLowestValue)
{
    EXPECT_EQ(rad_to_semi(pi), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(rad_to_semi(-pi), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(rad_to_semi(pi / 2), 1 << 30);
    EXPECT_EQ(rad_to_semi(0), 0);
}

} // namespace
} // namespace velkoro

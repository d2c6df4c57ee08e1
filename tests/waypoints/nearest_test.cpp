#include "waypoints/nearest.h"

#include "coords/distance.h"
#include "core/reset.h"

#include <gtest/gtest.h>

#include <random>

using namespace velkoro;

namespace {

constexpr std::int32_t quarter = 1073741824;

struct Nearest : testing::Test {
    Nearest() { reset_all(); }
    ~Nearest() override { reset_all(); }
};

std::optional<float> walked(const std::vector<place>& places, const pos_rec& from,
                            std::int32_t skip)
{
    std::optional<float> best;
    for (const place& p : places) {
        if (p.id == skip && skip >= 0)
            continue;
        const float d = dist_flat(p.pos, from).distance;
        if (!best || d < *best)
            best = d;
    }
    return best;
}

std::int32_t anywhere(std::mt19937& random)
{
    return static_cast<std::int32_t>(random());
}

std::int32_t near(std::mt19937& random, std::int64_t middle, std::int64_t spread)
{
    const std::int64_t d =
        static_cast<std::int64_t>(random() % (2ULL * static_cast<std::uint64_t>(spread))) - spread;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(middle + d));
}

void agrees(const std::vector<place>& places, const std::vector<pos_rec>& from)
{
    const place_tree tree = place_tree_of(places);
    ASSERT_EQ(tree.places.size(), places.size());
    for (const place& p : places)
        ASSERT_EQ(nearest_distance(tree, p.pos, p.id), walked(places, p.pos, p.id))
            << p.pos.lat << ' ' << p.pos.lon;
    for (const pos_rec& f : from)
        ASSERT_EQ(nearest_distance(tree, f), walked(places, f, -1)) << f.lat << ' ' << f.lon;
}

} // namespace

TEST_F(Nearest, NoOtherPlaceGivesNothing)
{
    EXPECT_FALSE(nearest_distance(place_tree_of({}), {1, 2}));
    const place_tree one = place_tree_of({{{5, 6}, 3}});
    EXPECT_FALSE(nearest_distance(one, {5, 6}, 3));
    EXPECT_EQ(nearest_distance(one, {5, 6}), 0.0F);
}

TEST_F(Nearest, EqualsTheWalkOverPlacesAllOverTheEarth)
{
    std::mt19937 random(7);
    std::vector<place> places;
    std::vector<pos_rec> from;
    for (int i = 0; i < 700; ++i) {
        places.push_back({{near(random, 0, quarter), anywhere(random)}, i});
        from.push_back({near(random, 0, quarter), anywhere(random)});
    }
    agrees(places, from);
}

TEST_F(Nearest, EqualsTheWalkInATownAndOnTheOtherSideOfTheEarth)
{
    std::mt19937 random(8);
    std::vector<place> places;
    std::vector<pos_rec> from;
    for (int i = 0; i < 500; ++i) {
        places.push_back({{near(random, 565742592, 300000), near(random, 131072000, 300000)}, i});
        from.push_back({near(random, -565742592, 3000000), near(random, -2016411648, 3000000)});
        from.push_back({near(random, -400000000, 3000000), near(random, 1700000000, 3000000)});
    }
    agrees(places, from);
}

TEST_F(Nearest, EqualsTheWalkAroundThePolesAndTheDateLine)
{
    std::mt19937 random(9);
    std::vector<place> places;
    std::vector<pos_rec> from;
    for (int i = 0; i < 300; ++i) {
        places.push_back(
            {{quarter - static_cast<std::int32_t>(random() % 5000000), anywhere(random)}, 3 * i});
        places.push_back(
            {{-quarter + static_cast<std::int32_t>(random() % 5000000), anywhere(random)},
             3 * i + 1});
        places.push_back(
            {{near(random, 100000000, 2000000), near(random, 2147483648LL, 2000000)}, 3 * i + 2});
        from.push_back({quarter, anywhere(random)});
        from.push_back({-quarter, anywhere(random)});
        from.push_back({near(random, 100000000, 2000000), near(random, 2147483648LL, 2000000)});
    }
    agrees(places, from);
}

TEST_F(Nearest, EqualsTheWalkWherePlacesLieTooCloseToTellApart)
{
    std::mt19937 random(10);
    std::vector<place> places;
    for (int i = 0; i < 400; ++i)
        places.push_back({{near(random, 565742592, 60), near(random, 131072000, 60)}, i});
    agrees(places, {{565742592, 131072000}, {565742700, 131072000}});
}

TEST_F(Nearest, ManyPlacesAtOnePointAreAllThere)
{
    std::vector<place> places;
    for (int i = 0; i < 100; ++i)
        places.push_back({{1000, 1000}, i});
    const place_tree tree = place_tree_of(places);
    EXPECT_EQ(nearest_distance(tree, {1000, 1000}, 5), 0.0F);
    EXPECT_EQ(tree.places.size(), 100U);
}

TEST_F(Nearest, LatitudesThatDoNotExistAreWalkedOver)
{
    std::mt19937 random(11);
    std::vector<place> places;
    std::vector<pos_rec> from;
    for (int i = 0; i < 100; ++i) {
        places.push_back({{anywhere(random), anywhere(random)}, i});
        from.push_back({anywhere(random), anywhere(random)});
    }
    agrees(places, from);
}

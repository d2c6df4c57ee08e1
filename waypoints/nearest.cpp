#include "waypoints/nearest.h"

#include "coords/distance.h"
#include "core/settings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <span>

namespace velkoro {
namespace {

constexpr std::size_t leaf_places = 16;
constexpr std::int64_t lat_limit = 1073741824; // 90 degrees
constexpr std::uint32_t half_turn = 2147483648U;
constexpr double pi = 3.14159265358979323846;

// dist_flat holds its angles in 32-bit floats and takes an arc cosine: what it returns differs from
// the formula by less than these, relative and in radians.
constexpr double relative_slack = 1e-6, absolute_slack = 1e-6;

std::uint32_t turn_from(std::int32_t a, std::int32_t b)
{
    return static_cast<std::uint32_t>(b) - static_cast<std::uint32_t>(a);
}

/// Shortest way round, 0 to half a turn.
std::uint32_t shortest(std::uint32_t turn)
{
    return std::min(turn, 0U - turn);
}

place_box box_of(std::span<const place> places)
{
    place_box box{places[0].pos.lat, places[0].pos.lat, 0, 0};
    const std::int32_t start = places[0].pos.lon;
    std::int64_t west = 0, east = 0; // of the first place
    for (const place& p : places) {
        box.lat_low = std::min(box.lat_low, p.pos.lat);
        box.lat_high = std::max(box.lat_high, p.pos.lat);
        const std::int64_t d = static_cast<std::int32_t>(turn_from(start, p.pos.lon));
        west = std::min(west, d);
        east = std::max(east, d);
    }
    box.lon = static_cast<std::int32_t>(static_cast<std::uint32_t>(start) +
                                        static_cast<std::uint32_t>(west));
    box.lon_width = static_cast<std::uint32_t>(east - west);
    return box;
}

bool is_leaf(std::size_t count)
{
    return count <= leaf_places;
}

void grow(place_tree& tree, std::size_t node, std::size_t first, std::size_t count)
{
    const std::span<place> places(tree.places.data() + first, count);
    if (tree.boxes.size() <= node)
        tree.boxes.resize(node + 1);
    const place_box box = tree.boxes[node] = box_of(places);
    if (is_leaf(count))
        return;
    const double middle = (static_cast<double>(box.lat_low) + box.lat_high) / 2 * semi_to_rad;
    const double height = static_cast<double>(box.lat_high) - box.lat_low;
    const bool by_lat = height > box.lon_width * std::cos(middle);
    const auto half = static_cast<std::ptrdiff_t>(count / 2);
    std::nth_element(
        places.begin(), places.begin() + half, places.end(), [&](const place& a, const place& b) {
            return by_lat ? a.pos.lat < b.pos.lat
                          : turn_from(box.lon, a.pos.lon) < turn_from(box.lon, b.pos.lon);
        });
    grow(tree, 2 * node + 1, first, count / 2);
    grow(tree, 2 * node + 2, first + count / 2, count - count / 2);
}

struct search {
    const place_tree& tree;
    pos_rec from{};
    std::int32_t skip = -1;
    double lat = 0; ///< of `from`, radians
    float best = std::numeric_limits<float>::infinity();
    double enough = -2; ///< a box below this cosine of the arc holds nothing nearer

    void found(float distance)
    {
        best = distance;
        const double arc = distance * static_cast<double>(settings.dist_unit) / earth_radius;
        enough = std::cos(std::min(pi, arc * (1 + relative_slack) + absolute_slack));
    }

    void look(const place& p)
    {
        if (p.id == skip && skip >= 0)
            return;
        const float d = dist_flat(p.pos, from).distance;
        if (d < best)
            found(d);
    }

    /// The largest cosine of an arc to any place of the box: cos(difference of latitudes) x
    /// cos(difference of longitudes x cos(middle latitude)), each factor taken over its range.
    double reach(const place_box& box) const
    {
        const double low = box.lat_low * semi_to_rad, high = box.lat_high * semi_to_rad;
        const double below = std::fabs(lat - low), above = std::fabs(lat - high);
        const double lat_least = lat >= low && lat <= high ? 0 : std::min(below, above);
        const double lat_1 = std::cos(std::max(below, above)), lat_2 = std::cos(lat_least);
        if (std::max(std::fabs(lat_1), std::fabs(lat_2)) < enough)
            return -1;

        const std::uint32_t along = turn_from(box.lon, from.lon);
        const std::uint32_t to_west = shortest(along), to_east = shortest(along - box.lon_width);
        const std::uint32_t lon_least = along <= box.lon_width ? 0 : std::min(to_west, to_east);
        const std::uint32_t lon_most =
            along + half_turn <= box.lon_width ? half_turn : std::max(to_west, to_east);
        const double middle_1 = (lat + low) / 2, middle_2 = (lat + high) / 2;
        const double narrow_1 = std::cos(middle_1), narrow_2 = std::cos(middle_2);
        const double widest = middle_1 <= 0 && middle_2 >= 0 ? 1.0 : std::max(narrow_1, narrow_2);
        const double lon_1 = std::cos(lon_most * semi_to_rad * widest);
        const double lon_2 =
            std::cos(lon_least * semi_to_rad * std::max(0.0, std::min(narrow_1, narrow_2)));
        return std::max({lat_1 * lon_1, lat_1 * lon_2, lat_2 * lon_1, lat_2 * lon_2});
    }

    void go(std::size_t node, std::size_t first, std::size_t count)
    {
        if (is_leaf(count)) {
            for (const place& p : std::span(tree.places).subspan(first, count))
                look(p);
            return;
        }
        struct child {
            std::size_t node, first, count;
            double reach;
        };
        child a{2 * node + 1, first, count / 2, 0};
        child b{2 * node + 2, first + count / 2, count - count / 2, 0};
        a.reach = reach(tree.boxes[a.node]);
        b.reach = reach(tree.boxes[b.node]);
        if (b.reach > a.reach)
            std::swap(a, b);
        for (const child& c : {a, b})
            if (c.reach >= enough && best > 0)
                go(c.node, c.first, c.count);
    }
};

bool valid_latitude(const place& p)
{
    return std::llabs(p.pos.lat) <= lat_limit;
}

} // namespace

place_tree place_tree_of(std::vector<place> places)
{
    place_tree tree;
    tree.places = std::move(places);
    tree.regular = std::ranges::all_of(tree.places, valid_latitude);
    if (tree.regular && !tree.places.empty())
        grow(tree, 0, 0, tree.places.size());
    return tree;
}

std::optional<float> nearest_distance(const place_tree& tree, const pos_rec& from,
                                      std::int32_t skip)
{
    search s{.tree = tree, .from = from, .skip = skip, .lat = from.lat * semi_to_rad};
    if (!tree.regular || !valid_latitude({from, 0}))
        for (const place& p : tree.places)
            s.look(p);
    else if (!tree.places.empty())
        s.go(0, 0, tree.places.size());
    if (s.best == std::numeric_limits<float>::infinity())
        return std::nullopt;
    return s.best;
}

} // namespace velkoro

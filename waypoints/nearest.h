/// The distance to the nearest of many positions, as the cheap distance of lists measures it
/// (dist_flat). The places stand in a tree of boxes; a search leaves a box aside only when no place
/// in it can be nearer by that very formula, rounding included. So the result is, to the last
/// digit, the least of the distances that a walk over all places gives, everywhere on earth.
#pragma once

#include "core/store.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velkoro {

struct place {
    pos_rec pos{};
    std::int32_t id = -1; ///< what a search may leave out, such as the store index
};

/// A range of latitudes and of longitudes eastwards from `lon`, semicircles.
struct place_box {
    std::int32_t lat_low = 0, lat_high = 0, lon = 0;
    std::uint32_t lon_width = 0;
};

struct place_tree {
    std::vector<place> places{};    ///< in the order of the leaves
    std::vector<place_box> boxes{}; ///< node n has the children 2n + 1 and 2n + 2
    bool regular = true;            ///< all latitudes are valid; else searches walk over all places
};

/// Puts places into a tree; n places take about n log n steps.
place_tree place_tree_of(std::vector<place> places);

/// Distance from a position to the nearest place, in the selected distance unit; places with the
/// id `skip` are left out. Nothing when there is no other place.
std::optional<float> nearest_distance(const place_tree& tree, const pos_rec& from,
                                      std::int32_t skip = -1);

} // namespace velkoro

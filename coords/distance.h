/// Distances, bearings and projected positions on the ground.
/// All lengths use a sphere of radius 6378137 metres, never the ellipsoid. Distances come and go in
/// the selected distance unit (settings.dist_unit metres); bearings are degrees, 0 north, growing
/// eastwards, in 0 up to 360. Measured results are 32-bit floats, projections run in double.
#pragma once

#include "core/store.h"

namespace velkoro {

inline constexpr double earth_radius = 6378137.0; ///< metres

struct dist_bear {
    float distance = 0; ///< selected distance unit
    float bearing = 0;  ///< degrees, from the origin to the target
    bool operator==(const dist_bear&) const = default;
};

/// The cheap form, for lists and tracks. Angles between the steps are 32-bit floats and the arc
/// comes from an arc cosine, so very near points (below about 0.1 m) give distance 0. Due south
/// gives bearing 0, as atan2_own tells.
dist_bear dist_flat(const pos_rec& target, const pos_rec& origin);

/// The form that holds at short and long range alike: the distance from the chord between the
/// points, the bearing from spherical trigonometry.
dist_bear dist_chord(const pos_rec& target, const pos_rec& origin);

/// Great circle from a start: the position at a distance and a bearing. Distance 0 gives the start,
/// one of at most 1 unit goes through dist_to_wgs_dir, due north and south run along the meridian
/// and over the pole. Distance or bearing that is no finite number gives the start.
pos_rec dist_to_wgs(double distance, double bearing, const pos_rec& from);

/// The direct form for small distances; no finite number gives the start.
pos_rec dist_to_wgs_dir(double distance, double bearing, const pos_rec& from);

/// Distance of p from the line a to b, in the selected distance unit: behind a the distance to a,
/// past b the distance to b, between them the distance across.
double dist_cross(const pos_rec& p, const pos_rec& a, const pos_rec& b);

/// atan2 as all positions here use it: x = 0 gives sgn(y) times 90 degrees, x below 0 adds
/// sgn(y) times 180 degrees to atan(y/x). So y = 0 with x below 0 gives 0, not 180 degrees.
double atan2_own(double y, double x);

/// Radians as semicircles: rounded; a value of +180 degrees or more wraps round.
std::int32_t rad_to_semi(double rad);

} // namespace velkoro

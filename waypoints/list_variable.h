/// The variable column of the waypoint list: what the order in force is about.
/// Distances to many places are searched in trees, and the routes of all waypoints are found in one
/// walk; both are made when first asked for and kept until the list tells of a change.
#pragma once

#include "waypoints/nearest.h"
#include "waypoints/row_text.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace velkoro {

/// Distance that stands for none, in sort texts: no other waypoint, no route chosen, no track.
inline constexpr double no_distance = 10000;

struct variable_state {
    std::optional<place_tree> waypoints{}, route_points{}, track_points{};
    std::int32_t track_top = -1;      ///< top of the track that `track_points` was made from
    std::vector<int> chosen{};        ///< routes that `route_points` was made from
    std::vector<std::string> lists{}; ///< keys of each route that `routes` was made from
    std::unordered_map<std::string, std::string> routes{}; ///< route numbers by key
    bool held = false; ///< a sort is under way: what is kept is taken as it stands
};
inline variable_state variable;

/// Display and sort text of a stored waypoint in the variable column, for an order that has one:
///   ref_distance   distance and bearing from the reference, ordered by the distance
///   ref_bearing    the same, ordered by the bearing
///   nearest_wp     distance to the nearest other waypoint
///   routes         numbers of the routes that hold it, or twenty times "-"
///   route_distance, track_distance   distance to the nearest point of the chosen routes, the track
/// Any other order shows the date. Distances that do not exist show "-.-".
row_text variable_text(int index, sort_entry entry);

/// Waypoints, routes or tracks have changed: what is kept is made anew.
void variable_forget();

} // namespace velkoro

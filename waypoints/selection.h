/// Which records a writer's flags mean, for native and foreign files alike.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// All waypoints, by store index: those of the list in its order, then what the list has not taken
/// up yet.
std::vector<int> waypoints_in_order();

/// Routes of the flags: "RM" those of `chosen` that exist, "R" all, else none.
std::vector<int> selected_routes(std::string_view flags, const std::vector<int>& chosen);

/// Waypoints of the flags, by store index: "WM" the marked ones, "W" all, and in any case those of
/// the routes.
std::vector<bool> selected_waypoints(std::string_view flags, const std::vector<int>& routes);

} // namespace velkoro

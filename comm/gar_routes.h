/// Routes from and to a Garmin receiver: the jobs "R_L" and "R_S".
#pragma once

#include "core/store.h"

#include <string>
#include <utility>
#include <vector>

namespace velkoro {

/// Reads the receiver's routes with their waypoints into the store. The packets are kept whole
/// until the transfer has ended. A waypoint that the store has at the same place, under whatever
/// name, is used as it is; others are inserted, and a facility takes the place of the stored one
/// of its name.
void G_R_Lesen();

/// Writes the routes of transfer.choice with their waypoints.
void G_R_Schreiben();

/// Routes being received: their points are store indexes, so that a waypoint that is renamed while
/// the list is merged stays in them.
struct received_route {
    route_rec route{};                                 ///< without points
    std::vector<std::pair<int, std::string>> points{}; ///< index, instruction of the leg to it
};
/// Appends the routes to the store and tells their number in the result window.
void add_received(const std::vector<received_route>& routes);
/// Tells how many routes came in.
void routes_added(int count);

/// Store index of a waypoint that a route brings: the stored one at its place, else the one that
/// it became by insertion into the batch under way; -1 when it became none.
int merge_route_waypoint(wayp_rec rec);

} // namespace velkoro

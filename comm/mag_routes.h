/// Routes from and to a Magellan receiver. A route is a list of names: the waypoints travel by
/// themselves, and ahead of the routes.
#pragma once

#include "core/store.h"

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// Takes the place of G_R_Lesen and G_R_Schreiben when the receiver speaks sentences. Reading looks
/// the names up in the store; with transfer.waypoints_first the receiver's waypoints are read ahead
/// of the routes in the same session.
void M_R_lesen();
void M_R_schreiben();

/// The routes of a list of lines "$PMGNRTE"; `wps` holds the names as received.
std::vector<route_rec> mag_routes_decode(const std::vector<std::string>& lines);
/// The texts of a route's lines, two points a line, the last one filled up with the empty link.
std::vector<std::string> mag_route_encode(const route_rec& route, int number);

} // namespace velkoro

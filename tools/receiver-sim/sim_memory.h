/// What the simulated receiver holds: the stores of the program, as packets or sentences.
/// The records of a Garmin go through the program's own codecs, since a receiver and its host agree
/// on them; those of a Magellan are built here.
#pragma once

#include "core/store.h"
#include "tools/receiver-sim/sim_garmin.h"
#include "tools/receiver-sim/sim_magellan.h"
#include "tools/receiver-sim/sim_walk.h"

#include <map>
#include <string>

namespace velkoro {

/// Tells the codecs what the receiver speaks. Call it before the others of a Garmin.
void sim_speak(const sim_identity& identity);

/// The stores as packets of the receiver's record types.
void sim_fill(sim_garmin& receiver);
/// Takes a list that has arrived into the stores, where it replaces records of the same name, and
/// fills the memory anew. A track replaces the one that was there.
void sim_keep(sim_garmin& receiver, sim_list list);

/// Route sentences of the host, by their route number, until the list is whole.
struct sim_route_draft {
    std::string points{}; ///< "$"-ended names
    std::string name{};
};
using sim_route_drafts = std::map<int, sim_route_draft>;

/// The stores as sentences.
void sim_fill(sim_magellan& receiver);
/// Takes a record that has arrived: waypoints and track points into the stores, route sentences
/// into the drafts. False for one that cannot be read.
bool sim_keep(const std::string& body, sim_route_drafts& drafts);
/// Puts the routes of a list into the store, where they replace those of the same number, and
/// empties the drafts. Points without a waypoint are left out.
void sim_keep_routes(sim_route_drafts& drafts);

/// A waypoint that has arrived: it replaces the one of its key, or is appended.
void sim_keep_waypoint(const wayp_rec& rec);

/// The track of the store as a walk; without one the circle stays.
void sim_fill(sim_walk& walk);

} // namespace velkoro

/// Waypoints from and to a Magellan receiver.
#pragma once

#include "comm/transfer.h"
#include "core/store.h"

#include <optional>
#include <string>
#include <string_view>

namespace velkoro {

/// Takes the place of G_W_lesen and G_W_schreiben when the receiver speaks sentences.
void M_W_lesen();
void M_W_schreiben();

/// A waypoint of a line "$PMGNWPL" or "$GPWPL". Nothing when the line has no position.
std::optional<wayp_rec> mag_wp_decode(std::string_view line);
/// The text of a line: "WPL,4828.413,N,00912.746,E,0000412,M,HUT,Hut above the lake,a".
std::string mag_wp_encode(const wayp_rec& w);

/// Asks for the waypoints and inserts them: a part of M_W_lesen, and of a route list whose points
/// are names only. Returns how the list ended.
transfer_end mag_take_waypoints();

} // namespace velkoro

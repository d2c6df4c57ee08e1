/// Tracks from and to a Garmin receiver: the jobs "T_L" and "T_S".
#pragma once

#include "core/hooks.h"
#include "core/store.h"

#include <string>
#include <vector>

namespace velkoro {

/// Reads the receiver's tracks behind the points of the store. Each packet is decoded as it comes:
/// tracks are the longest lists, and their decoding is cheap. Afterwards the tracks are offered by
/// hooks.tracks_received.
void G_T_Lesen();

/// Writes the points of transfer.choice. Under A301 and A302 each named track goes out behind a
/// header. A track without a name is the receiver's active log, or gets a numbered name, as the
/// user decides; its further segments follow under the same header.
void G_T_schreiben();

/// Tracks that come in: names and the ranges of their points.
struct track_receiver {
    std::vector<received_track> tracks{};
    std::string name{};   ///< for the next first point
    std::int16_t art = 1; ///< and its class
    bool first = true;    ///< the next point is the first one of a track

    /// A header was read.
    void start(const std::string& track_name, std::int16_t track_art);
    /// Appends a point; the first one of a track bears the name and starts a segment.
    void append(trackp_rec p, const std::string& comment);
};

/// Name that the first point of a track bears: its comment without a depth.
std::string track_name(const trackp_rec& p);

/// Range of the points of transfer.choice: first, and one past the last.
std::pair<std::int32_t, std::int32_t> chosen_points();

/// What the end of a track read has in common for all receivers.
void tracks_read(const track_receiver& in);

} // namespace velkoro

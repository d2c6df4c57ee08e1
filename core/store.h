/// The data store: the single in-memory copy of everything that the user works on.
/// One growing array of waypoints, one of routes, one of track points, and a handful of scalars.
/// Windows and transfers read the arrays directly; whoever touches a record's identity (its name
/// and comment) goes through the procedures here, since routes refer to waypoints by key text and
/// never by index. Positions are semicircles on WGS 84, times seconds since 31 December 1989 00:00.
#pragma once

#include "core/names.h"
#include "core/store_index.h"
#include "core/text_pool.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

inline constexpr std::int16_t alt_unknown = -32768;
inline constexpr double semi_to_rad =
    3.14159265358979323846 / 2147483648.0; ///< 2^31 semicircles are 180 degrees
inline constexpr int wp_limit = 32767;     ///< most records that a 16-bit index can reach

/// A position: signed 32-bit semicircles, north and east positive. A valid latitude is at most 2^30
/// in size.
struct pos_rec {
    std::int32_t lat = 0, lon = 0;
    bool operator==(const pos_rec&) const = default;
};

struct wayp_rec {
    std::string nam{}; ///< upper case, trimmed; empty only during deletion
    std::string kom{}; ///< comment; "@" and three characters at its start are part of the key
    pos_rec pos{};
    std::int32_t dat = 0; ///< creation or change, seconds since date_base
    std::int16_t prox =
        0; ///< proximity distance in 100 m; 0 none; negative: kept while the alarm is off
    std::int16_t symb = 0;          ///< number in the symbol table
    std::int16_t symbmode = 0;      ///< 0 symbol only, 1, 2 with name or comment
    std::int16_t alt = alt_unknown; ///< metres
    // Scratch, never saved.
    float dist = 0;
    std::int16_t bear = 0;
    std::int32_t mapx = 0, mapy = 0;
    std::int16_t drawn = 0;
    bool operator==(const wayp_rec&) const = default;
};

/// A route: four parallel "$"-ended lists; a missing token is empty.
struct route_rec {
    std::string nam = std::string(16, ' '); ///< 16 characters, blank-padded
    std::string wps{};                      ///< keys
    std::int16_t farbe = 0;                 ///< colour on the map, 1 to 4
    std::string speed{};                    ///< km/h of the leg that ends at the point
    std::string korr{};
    std::string anw{};
    bool operator==(const route_rec&) const = default;
};

/// A track point: 24 bytes; comments stand once each in the text pool. Scratch values of evaluation
/// and drawing live in arrays of their own that exist only while needed.
struct trackp_rec {
    pos_rec pos{};
    std::int32_t zeit =
        0; ///< seconds since date_base; 0 unknown; negative: flagged by the track operations
    pooled_text kom{};
    std::int16_t alt = alt_unknown; ///< metres
    std::int16_t neu = 0;           ///< -1 when a new segment starts here
    std::int16_t art = 0;           ///< point class
    bool operator==(const trackp_rec&) const = default;
};

struct store_state {
    std::vector<wayp_rec> wp{};
    std::int16_t wp_top = -1; ///< highest used index; raised only when the record is complete
    std::int16_t wp_cur = -1; ///< waypoint in the editor
    bool wp_dirty = false;    ///< waypoints or routes changed since last saved
    std::vector<route_rec> rou{};
    std::int16_t rou_top = -1, rou_cur = -1;
    std::vector<trackp_rec>
        trk{}; ///< grows in steps of 1000 and holds more records than trk_top + 1
    std::int32_t trk_top = -1;
    bool trk_dirty = false;
    std::string refp_name = "??????";
    pos_rec refp_pos{};
    std::int16_t wp_name_max = 6;
    bool wp_ext_chars = false;
    std::string trk_title{}; ///< title of the track
    store_index index{};     ///< search tables over wp, kept by the procedures below
};
inline store_state store;

/// Empties all stores, the scalars and the text pool.
void store_reset();
/// Empties waypoints and routes (a new list); wp_dirty is cleared, tracks and settings stay.
void wayp_clear();
/// Empties the tracks with the texts that they share; trk_dirty is cleared.
void track_clear();

// Searching (keys and names: core/names.h)
// ---------------------------------------------------------------------------------------------------------------

/// Index of the first waypoint in 0 to last_index, leaving out skip_index, whose key equals the key
/// of name and comment; else -1. The result is that of the linear search from 0; the work is that
/// of a hash look-up.
int wp_find_key(std::string_view name, std::string_view comment, int skip_index, int last_index);

/// Index of the first waypoint in 0 to last_index whose latitude and longitude equal `pos` once
/// their ten lowest bits are cleared (about ten metres); else -1.
int wp_find_pos(const pos_rec& pos, int last_index);

/// True for the reference waypoint: its name and its position are those of refp_name and refp_pos.
bool is_reference(const wayp_rec& w);

// Changing records
// ---------------------------------------------------------------------------------------------------------------

/// Stores new name and comment of a waypoint and rewrites the routes that hold its old key. A
/// renamed reference takes refp_name along. Returns the numbers of the routes, comma-separated,
/// counted from 1. The row is the caller's to refresh.
std::string wp_rename(int index, const std::string& nam, const std::string& kom);
/// Stores a new position and keeps the position index; a moved reference takes refp_pos along.
void wp_move(int index, const pos_rec& pos);

/// The only way in for batches. Modes: -20 opens a reconciling batch, -10 a normal one; 0, -1, -2,
/// -3 insert one record (-1 and -3 widen the comparison to the whole store first, below -1 marks
/// the row); 1, 2, 3 close the batch and leave the report in rec.kom (names for the modes and the
/// batch's memory: core/wayp_insert.h). A mode of -10 or -20 within an open batch goes on with its
/// counts. Returns the index where the record ended, -1 when it was dropped. `rec` comes back as
/// the store holds it (cleaned, renamed). Throws batch_cancelled when the user ends the batch, and
/// std::overflow_error when the store is full; what was entered so far stays, and the caller closes
/// the batch all the same.
int wayp_insert(wayp_rec& rec, int mode);

/// Appends a route, after the rename lists of the batch under way have been applied. Points that
/// are no stored keys are dropped with message 1640. An empty list of points ends it; so does one
/// of which nothing is left. Returns the new index or -1.
int route_add(route_rec route);

/// Deletes: an index not negative that waypoint, -1 all marked ones after questions, -2 all marked
/// ones without.
void wayp_delete(int index);

/// Drops routes without points, trimming the names of the rest; rou_cur follows.
void route_cleanup();
/// Removes one route; rou_cur follows.
void route_delete(int index);

/// Appends a track point; the array grows in steps of 1000.
void track_append(const trackp_rec& point);

} // namespace velkoro

/// Track headers (D310 to D312) and track points (D300 to D302) of Garmin receivers.
/// Source: Garmin interface document 001-00063-00.
#pragma once

#include "core/store.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

inline constexpr std::string_view gar_active_log = "ACTIVE LOG";

struct gar_track_in {
    std::string name{};        ///< with its colour code; empty for the active log
    std::int16_t colour = 255; ///< 0 to 15, 255 default
    bool operator==(const gar_track_in&) const = default;
};

/// Decodes a track header; the name of D311 is its first bytes as hexadecimal text. False, with a
/// blank result, for another type or a field that holds nothing.
bool gar_track_decode(std::string_view data, int type, gar_track_in& result);
/// Encodes a track header; D311 takes the number that the name begins with as its index. Empty for
/// an unknown type.
std::string gar_track_encode(std::string_view name, int colour, int type);

/// Colour of a track that is sent: that of the code at the end of its name, which is stripped; else
/// that of its colour index 1 to 7 (trackp_rec::art); else the setting `track_defcol`.
int gar_track_colour(std::string& name, int index);
/// Name of a track without one: a running number, then the first 10 characters of `title`, or
/// "VELKORO".
std::string gar_track_auto_name(int number, std::string_view title);

struct gar_point_in {
    pos_rec pos{};
    std::int32_t time = 0; ///< seconds since date_base, 0 unknown
    std::int16_t alt = alt_unknown;
    float depth = 1.0E25F; ///< metres, gar_no_value
    bool segment = false;  ///< a new segment starts here
    bool operator==(const gar_point_in&) const = default;
};

/// The type of the points, a D number, by the track protocol of receiver.gar_proto; 0 without one.
int gar_point_type();
/// Decodes a track point (D300 to D302). False, with a blank result, for another type, for a field
/// that ends ahead of the position, and for a latitude that is none.
bool gar_point_decode(std::string_view data, int type, gar_point_in& result);
/// Encodes a track point (D300 to D302); `segment`: a new one starts here. Empty for an unknown
/// type.
std::string gar_point_encode(const trackp_rec& point, int type, bool segment);

/// The four bytes behind a D301 of a receiver with A302 as hexadecimal text, "/" behind it: what
/// goes in front of the track's name at its first point. Empty when there are none.
std::string gar_point_tag(std::string_view data);
/// The depth as comment of a point: by the setting `track_depth` that of every point (2) or of the
/// first one of a track only (1). Empty otherwise, and without a depth.
std::string gar_point_comment(const gar_point_in& point, bool first);

} // namespace velkoro

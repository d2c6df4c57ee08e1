/// Waypoint records of Garmin receivers: the data field of a packet to store fields and back.
/// One decoder and one encoder serve all types (D100 to D110, D150 to D155, D400 to D450) from the
/// table of layouts in gar_codec_layout.h. What a record holds and the store does not (class of a
/// facility, depth, colour) stands in the comment as marker texts, see gar_codec_comment.h.
/// Source: Garmin interface document 001-00063-00.
#pragma once

#include "core/store.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

/// A waypoint as it came from the receiver.
struct gar_wp_in {
    std::string name{};             ///< cut at its first 0 byte and trimmed, otherwise as received
    std::string comment{};          ///< with its markers
    std::int32_t lat = 0, lon = 0;  ///< semicircles
    std::int32_t time = 0;          ///< seconds since date_base, UTC; 0 unknown
    std::int16_t prox = 0;          ///< 100 m, 0 none
    std::uint16_t symbol = 0;       ///< low byte: table number, high byte: display mode 0 to 2
    std::int16_t alt = alt_unknown; ///< metres
    bool operator==(const gar_wp_in&) const = default;
};

struct gar_codec_state {
    bool unknown_told = false; ///< text 1115 was shown in this session; garmin_ident clears it
};
inline gar_codec_state gar_codec;

/// Decodes the data field of a waypoint packet; `type` is the D number. False, with a blank result,
/// when the type is unknown (text 1115, once a session), when the data end ahead of name and
/// position, or when the latitude is none. Fields that a short record lacks keep the values for
/// "none". An unknown symbol may extend the symbol table after a question.
bool gar_wp_decode(std::string_view data, int type, gar_wp_in& result);

/// Encodes a waypoint as the data field of a packet. `proximity`: it goes out as a proximity
/// waypoint; with the option `AVD` the facility marker of its comment then becomes class and
/// country. An unknown type gives an empty field (text 1115, once a session).
void gar_wp_encode(const wayp_rec& rec, int type, bool proximity, std::string& result);

/// The record of the store: the packed word is taken apart.
wayp_rec gar_wp_record(const gar_wp_in& in);

/// True when decoder and encoder know the D number.
bool gar_wp_known(int type);
/// Tells of an unknown type (text 1115), once a session.
void gar_unknown_type(int type);

} // namespace velkoro

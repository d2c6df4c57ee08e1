/// Tracks from and to a Magellan receiver.
#pragma once

#include "core/store.h"

#include <optional>
#include <string>
#include <string_view>

namespace velkoro {

/// Takes the place of G_T_Lesen and G_T_schreiben when the receiver speaks sentences.
void M_T_lesen();
void M_T_schreiben();

struct mag_point {
    trackp_rec point{};
    std::string name{};
    bool valid = true; ///< the receiver had a position
};

/// The point of a line "$PMGNTRK"; fields that are missing at its end are unknown. A time needs a
/// date. Nothing when the line has no position.
std::optional<mag_point> mag_point_decode(std::string_view line);
/// The text of a line: "TRK,4828.413,N,00912.746,E,00412,M,,A".
std::string mag_point_encode(const trackp_rec& p);

} // namespace velkoro

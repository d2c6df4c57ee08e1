/// What is known of the receiver: its protocol table and the abilities that follow from it.
#pragma once

#include <array>
#include <cstdint>

namespace velkoro {

/// gar_proto[column][row]. Column 0: link protocol (1 L001, 2 L002), 65535 when the receiver told
/// the table itself, product id, software version times 100. Columns 1 to 5: the A number of
/// command, waypoint, route, track and proximity protocol, then up to three D numbers.
using gar_table = std::array<std::array<std::uint16_t, 4>, 6>;

struct receiver_state {
    gar_table gar_proto{};
    bool gar_has_prox = false;       ///< waypoints carry a proximity distance
    bool gar_has_alt = false;        ///< waypoints carry a height
    bool gar_has_avd = false;        ///< enables the option `AVD`
    std::int16_t gar_symbol_set = 0; ///< 0, 1 or 2: numbering of the waypoint symbols
};
inline receiver_state receiver;

} // namespace velkoro

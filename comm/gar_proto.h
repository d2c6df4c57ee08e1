/// What is known of the receiver: its protocol table and the abilities that follow from it.
/// The table comes from the receiver itself or, for one too old to tell, from Garmin.ini in the
/// program folder. A line of that file is a product id, an optional limit ("<3.01": for software
/// below that version) and protocols ("L001 A010 A100 D103"), all separated by blanks; the first
/// line that matches counts, and the first empty line ends the file.
/// Source: Garmin interface document 001-00063-00, protocol capability.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

/// gar_proto[column][row]. Column 0: link protocol (1 L001, 2 L002), 65535 when the receiver told
/// the table itself, product id, software version times 100. Columns 1 to 5: the A number of
/// command, waypoint, route, track and proximity protocol, then up to three D numbers.
using gar_table = std::array<std::array<std::uint16_t, 4>, 6>;

inline constexpr std::uint16_t told_by_receiver = 65535;

struct receiver_state {
    gar_table gar_proto{};
    bool gar_has_prox = false;       ///< waypoints carry a proximity distance
    bool gar_has_alt = false;        ///< waypoints carry a height
    bool gar_has_avd = false;        ///< enables the option `AVD`
    std::int16_t gar_symbol_set = 0; ///< 0, 1 or 2: numbering of the waypoint symbols
};
inline receiver_state receiver;

/// Takes protocols into a table one by one; a D number belongs to the A number ahead of it.
class gar_proto_filler {
public:
    explicit gar_proto_filler(gar_table& into) : table(into) {}
    /// Tags other than L, A and D are passed over, and so are protocols without a column and what
    /// belongs to them. Throws std::out_of_range at the fourth D number of a column.
    void take(char tag, std::uint16_t number);

private:
    gar_table& table;
    unsigned column = 0, row = 0;
};

/// Takes the items of a protocol array: a tag letter and two bytes each; a rest is passed over.
void gar_proto_from_array(std::string_view data, gar_table& into);
/// Takes the protocols of a product from the text of Garmin.ini. False when no line matches.
bool gar_proto_from_ini(std::string_view text, int product, int version, gar_table& into);

/// Sets the abilities by the types of waypoint and proximity records. Types from D110 on that the
/// published table of abilities lacks count as without height, proximity and symbols.
void gar_flags_set();
/// Chooses the numbering of the symbols, 0 none, 1 the 16 symbols, 2 all; the symbol table of that
/// level is loaded and the list shows its names.
void gar_symbols_use(std::int16_t set);

/// The protocols as one line: "L001 A010 A100 D108"; 0 stands for nothing.
std::string gar_proto_text(const gar_table& table);

} // namespace velkoro

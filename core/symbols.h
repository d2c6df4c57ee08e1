/// Waypoint symbols: small numbers whose meaning depends on the receiver; SYMBOL_2.INI (16 symbols)
/// and SYMBOL_3.INI map them to names.
#pragma once

#include "core/window.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct symbol_row {
    std::string name = "??"; ///< "??": unused number
    std::uint16_t raw = 0;   ///< the receiver's value
    std::uint16_t flags = 0; ///< 1: the line gave a receiver value; 2: met in this run and appended
    bool operator==(const symbol_row&) const = default;
};

struct symbol_state {
    int level = -1;                 ///< loaded level: -1 none yet, 0, 2, 3
    std::vector<symbol_row> rows{}; ///< by number
    std::vector<int> order{};       ///< numbers in file order
    std::map<std::string, int, std::less<>> by_name{};
    std::optional<bool> extend{}; ///< the answer to "extend the file?", asked once per run
};
inline symbol_state symbols;

/// Loads the table of the level in the settings when it is not the loaded one. A missing file gives
/// a message, symbols stay empty.
void symbols_load();
/// Parses a table's text; for tests and the loader.
void symbols_parse(std::string_view text, symbol_state& into);

/// Name of a table number; "?" when outside the table.
std::string symb_ext(int number);
/// Table number of a name, -1 when unknown.
int symb_ext(std::string_view name);
/// Table number for a receiver's value. An unknown value may extend the table and its file after a
/// question; else it comes back as it is.
int symb_from_receiver(int raw);
/// The receiver's value of a table number.
int symb_to_receiver(int number);
/// Fills a drop-down or list with the names, in file order.
void symb_list(control& list);

} // namespace velkoro

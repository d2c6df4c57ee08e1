/// What the columns of the waypoint list say about one waypoint.
/// Texts are built when a row is shown; sort texts are made so that comparing them as plain text
/// gives the order of the numbers behind them.
#pragma once

#include "core/form1.h"
#include "core/store.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velkoro {

/// Columns of `Waypl2`.
enum class list_col { name, comment, altitude, symbol, variable, proximity, position };
inline constexpr int list_cols = 7;

/// One column of one waypoint.
struct row_text {
    std::string sort{};    ///< order of the column; empty: the column has none
    std::string shown{};   ///< text on display
    std::string heading{}; ///< of the column
    bool operator==(const row_text&) const = default;
};

/// Texts of a stored waypoint in a column. The variable column (list_variable.h) shows what
/// `entry`, the order in force, is about; orders that have no column of their own leave it to the
/// date. An index outside the store gives empty texts.
row_text wp_row_text(int index, list_col column, sort_entry entry);

/// What a column shows of a record that need not be stored. The variable column shows the date.
std::string wp_shown_text(const wayp_rec& w, list_col column);

/// Sort text of a waypoint for an order.
std::string wp_sort_text(int index, sort_entry entry);

/// Heading of a column.
std::string list_heading(list_col column, sort_entry entry);

/// True when the variable column shows the order's own matter instead of the date.
bool has_variable_column(sort_entry entry);

/// Symbol of the selected distance unit.
const char* distance_unit();

/// The calendar date of a number of seconds since 31 December 1989: "14.06.2025" in German, else
/// "2025-06-14"; empty for 0.
std::string wp_date_text(std::int32_t seconds);

/// Name of the picture of a symbol ("g_flag"), "" without a symbol table.
std::string symbol_glyph(int symbol);
/// The glyph table as text: one line "level;number;glyph" and further fields per symbol. For each
/// number of the symbol level the picture to show, "g_" and the glyph; "g_dot" for a number without
/// one. Every glyph of the shipped table has its picture.
std::vector<std::string> glyphs_parse(std::string_view table, int level);

struct glyph_state {
    int level = -1; ///< symbol level that `by_symbol` belongs to, -1 none
    std::vector<std::string> by_symbol{};
};
inline glyph_state glyphs;

} // namespace velkoro

#include "waypoints/row_text.h"

#include "coords/times.h"
#include "coords/units.h"
#include "core/files.h"
#include "core/hooks.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "waypoints/list_variable.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace velkoro {
namespace {

constexpr const char* glyph_file = "glyphs.csv";
constexpr std::size_t glyph_numbers = 1000; // table numbers are small; a wrong one is not believed

std::string digits(long long value, int width)
{
    char out[32];
    std::snprintf(out, sizeof out, "%0*lld", width, value);
    return out;
}

// A coordinate counted from the lowest one, so that text order is number order.
std::string biased(std::int32_t semicircles)
{
    return digits(static_cast<long long>(semicircles) + 2147483648LL, 10);
}

std::string altitude_text(const wayp_rec& w)
{
    if (w.alt == alt_unknown)
        return {};
    return pic(static_cast<double>(w.alt) / static_cast<double>(settings.alt_unit), "0 ") +
           alt_label();
}

std::string altitude_sort(const wayp_rec& w)
{
    return w.alt == alt_unknown ? "999999" : digits(w.alt + 32768, 6);
}

std::string symbol_text(const wayp_rec& w)
{
    if (!hooks.symbols_in_use() || symbols.rows.empty())
        return {};
    constexpr std::string_view modes = " '\"";
    const auto mode = static_cast<std::size_t>(std::clamp<int>(w.symbmode, 0, 2));
    return modes[mode] + symb_ext(w.symb);
}

std::string proximity_text(const wayp_rec& w)
{
    if (w.prox == 0)
        return "-.-";
    if (w.prox < 0)
        return "'''";
    return pic(w.prox * 100.0 / static_cast<double>(settings.dist_unit), "##0.0");
}

// Waypoints without a distance stand behind all others, as unknown altitudes do.
std::string proximity_sort(const wayp_rec& w)
{
    return w.prox == 0 ? "99999" : digits(std::abs(int{w.prox}), 5);
}

const wayp_rec* record(int index)
{
    return index >= 0 && index <= store.wp_top ? &store.wp[static_cast<std::size_t>(index)]
                                               : nullptr;
}

bool is_distance(sort_entry entry)
{
    return entry == sort_entry::nearest_wp || entry == sort_entry::route_distance ||
           entry == sort_entry::track_distance;
}

std::string variable_heading(sort_entry entry)
{
    std::string heading = [&] {
        switch (entry) {
        case sort_entry::ref_distance: return text(7265);
        case sort_entry::nearest_wp: return text(7266);
        case sort_entry::ref_bearing: return text(7752);
        case sort_entry::routes: return text(7270);
        case sort_entry::route_distance: return text(7271);
        case sort_entry::track_distance: return text(7272);
        default: return text(7273);
        }
    }();
    return is_distance(entry) ? heading + " (" + dist_label() + ")" : heading;
}

} // namespace

const char* distance_unit()
{
    return dist_label();
}

row_text wp_row_text(int index, list_col column, sort_entry entry)
{
    const wayp_rec* w = record(index);
    if (!w)
        return {.heading = list_heading(column, entry)};
    row_text t;
    switch (column) {
    case list_col::name: t = {.sort = upper(w->nam), .shown = w->nam}; break;
    case list_col::comment: t = {.sort = lower(w->kom) + " ", .shown = w->kom}; break;
    case list_col::altitude: t = {.sort = altitude_sort(*w), .shown = altitude_text(*w)}; break;
    case list_col::symbol: t = {.sort = symbol_text(*w), .shown = symbol_text(*w)}; break;
    case list_col::variable: t = variable_text(index, entry); break;
    case list_col::proximity: t = {.sort = proximity_sort(*w), .shown = proximity_text(*w)}; break;
    case list_col::position: t = {.shown = "  " + hooks.position_text(w->pos)}; break;
    }
    t.heading = list_heading(column, entry);
    return t;
}

std::string wp_shown_text(const wayp_rec& w, list_col column)
{
    switch (column) {
    case list_col::name: return w.nam;
    case list_col::comment: return w.kom;
    case list_col::altitude: return altitude_text(w);
    case list_col::symbol: return symbol_text(w);
    case list_col::variable: return wp_date_text(w.dat);
    case list_col::proximity: return proximity_text(w);
    case list_col::position: return hooks.position_text(w.pos);
    }
    return {};
}

std::string wp_sort_text(int index, sort_entry entry)
{
    const wayp_rec* w = record(index);
    if (!w)
        return {};
    switch (entry) {
    case sort_entry::name: return upper(w->nam);
    case sort_entry::comment: return lower(w->kom) + " ";
    case sort_entry::altitude: return altitude_sort(*w);
    case sort_entry::symbol: return symbol_text(*w);
    case sort_entry::proximity: return proximity_sort(*w);
    case sort_entry::latitude: return biased(w->pos.lat);
    case sort_entry::longitude: return biased(w->pos.lon);
    default: return variable_text(index, entry).sort;
    }
}

bool has_variable_column(sort_entry entry)
{
    return is_distance(entry) || entry == sort_entry::ref_distance ||
           entry == sort_entry::ref_bearing || entry == sort_entry::routes ||
           entry == sort_entry::date;
}

std::string list_heading(list_col column, sort_entry entry)
{
    switch (column) {
    case list_col::name: return text(1650);
    case list_col::comment: return text(180);
    case list_col::altitude: return text(2345);
    case list_col::symbol: return text(7260);
    case list_col::variable: return variable_heading(entry);
    case list_col::proximity: return text(7261);
    case list_col::position: break;
    }
    const auto format = static_cast<std::size_t>(std::max(0, Form1.posform.selected));
    return format < Form1.posform.items.size() ? Form1.posform.items[format] : std::string{};
}

std::string wp_date_text(std::int32_t seconds)
{
    if (seconds == 0)
        return {};
    const auto column = static_cast<std::size_t>(std::max(0, text_table.language));
    const bool german =
        column < text_table.languages.size() && text_table.languages[column].starts_with("Deutsch");
    return date_pic(seconds_date(seconds), german ? "dd.mm.yyyy" : "yyyy-mm-dd");
}

std::vector<std::string> glyphs_parse(std::string_view table, int level)
{
    std::vector<std::string> out;
    for (std::string_view line : split_lines(table)) {
        const std::string_view of_level = next_field(line, ';');
        const std::string_view number = next_field(line, ';');
        const std::string_view glyph = next_field(line, ';');
        const double n = val(number);
        if (glyph.empty() || !is_number(of_level) || val(of_level) != level || !is_number(number) ||
            n < 0 || n >= static_cast<double>(glyph_numbers))
            continue;
        const auto at = static_cast<std::size_t>(n);
        if (out.size() <= at)
            out.resize(at + 1, "g_dot");
        out[at] = "g_" + std::string(glyph);
    }
    return out;
}

std::string symbol_glyph(int symbol)
{
    if (!hooks.symbols_in_use() || symbols.rows.empty())
        return {};
    if (glyphs.level != symbols.level) {
        glyphs.level = symbols.level;
        glyphs.by_symbol =
            glyphs_parse(read_file(program_path(glyph_file)).value_or(""), symbols.level);
    }
    const auto n = static_cast<std::size_t>(symbol);
    return symbol >= 0 && n < glyphs.by_symbol.size() ? glyphs.by_symbol[n] : "g_dot";
}

} // namespace velkoro

#include "waypoints/editor.h"

#include "coords/coord_text.h"
#include "coords/distance.h"
#include "coords/times.h"
#include "coords/units.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/names.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/symbols.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "waypoints/list.h"
#include "waypoints/row_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace velkoro {

waypoint_window WAYPOINT;

namespace {

constexpr std::uint32_t colour_fault = 0x0000FF, colour_good = 0xFFFFFF;
constexpr int mode_entries = 3; // of Symbmode, which counts down: 2 with comment, 1, 0 symbol only

double number_in(const control& c)
{
    return val(comma_to_dot(c.text));
}

// Filling the window
// -------------------------------------------------------------------------------------------------

wayp_rec new_record()
{
    wayp_rec w;
    w.symb = to_i16(std::int64_t{editor.last_symb});
    w.symbmode = to_i16(std::int64_t{editor.last_symbmode});
    if (editor.start)
        w.pos = *editor.start;
    return w;
}

void komlen_show()
{
    WAYPOINT.komlen.caption = std::to_string(kom_room - static_cast<int>(WAYPOINT.kom.text.size()));
}

double map_scale()
{
    return std::max(1.0, number_in(WAYPOINT.Maßstab_feld));
}

void prox_show()
{
    const bool on_map = WAYPOINT.Maßstab_akt.checked;
    const double shown = on_map ? editor.prox_val * 100000.0 / map_scale()
                                : editor.prox_val * 100.0 / static_cast<double>(settings.dist_unit);
    WAYPOINT.Prox_feld.text = editor.prox_val == 0 ? std::string{} : pic(shown, "0.0");
    WAYPOINT.Prox_feld.back = colour_good;
    WAYPOINT.Prox_feld.tooltip = text(7857);
    WAYPOINT.prox_km.caption = on_map ? "mm" : dist_label();
    WAYPOINT.Maßstab_feld.enabled = on_map;
}

void prox_load(int prox)
{
    WAYPOINT.Maßstab_akt.checked = editor.map_scale_on;
    WAYPOINT.Maßstab_feld.text =
        editor.map_scale.empty() ? std::to_string(settings.scale) : editor.map_scale;
    WAYPOINT.Prox_akt.checked = prox >= 0;
    editor.prox_val = std::min(std::abs(prox), prox_most);
    prox_show();
}

void symbols_load_into(const wayp_rec& w)
{
    row_list& rows = WAYPOINT.symb.rows;
    symb_list(WAYPOINT.symb);
    rows.columns = {{.heading = {}, .width = 180, .stretch = true}};
    rows.glyph = [](int row, int) {
        const auto& all = WAYPOINT.symb.rows.rows;
        return row >= 0 && row < static_cast<int>(all.size())
                   ? symbol_glyph(all[static_cast<std::size_t>(row)].data)
                   : std::string{};
    };
    const auto hit = std::ranges::find(rows.rows, std::int32_t{w.symb}, &list_row::data);
    rows.current = hit == rows.rows.end() ? -1 : static_cast<int>(hit - rows.rows.begin());
    rows.show_row = rows.current;
    rows.changed();
    WAYPOINT.symb.enabled = WAYPOINT.Symbmode.enabled = symbols_active();
    WAYPOINT.Symbmode.selected = mode_entries - 1 - std::clamp<int>(w.symbmode, 0, 2);
}

void words_show()
{
    WAYPOINT.Symbmode.items = {text(7827), text(7828), text(7829)};
    WAYPOINT.nächst.rows.columns = {{.heading = text(1650), .width = 110, .stretch = true},
                                    {.heading = text(7831), .width = 84, .right = true},
                                    {.heading = text(7832), .width = 76, .right = true}};
    WAYPOINT.nächst.rows.changed();
    position_labels();
}

void editor_load()
try {
    editor_show();
    WAYPOINT.form.focus = &WAYPOINT.nam;
} catch (...) {
    trap("WAYPOINT_Load");
}

// Handlers
// -------------------------------------------------------------------------------------------------

void prox_typed()
try {
    const double factor = WAYPOINT.Maßstab_akt.checked
                              ? map_scale() / 100000
                              : static_cast<double>(settings.dist_unit) / 100;
    const std::string& typed = WAYPOINT.Prox_feld.text;
    const double value = std::round(number_in(WAYPOINT.Prox_feld) * factor);
    const bool readable = trim(typed).empty() || is_number(comma_to_dot(typed));
    const bool good = readable && value >= 0 && value <= prox_most;
    editor.prox_val = static_cast<int>(std::clamp(value, 0.0, double{prox_most}));
    WAYPOINT.Prox_feld.back = good ? colour_good : colour_fault;
    // A colour alone says too little.
    const double most = prox_most * 100.0 / static_cast<double>(settings.dist_unit);
    WAYPOINT.Prox_feld.tooltip =
        good ? text(7857) : text(7867, pic(most, "0.0") + " " + dist_label());
} catch (...) {
    trap("Prox_feld");
}

void map_scale_click()
try {
    editor.map_scale_on = WAYPOINT.Maßstab_akt.checked;
    prox_show();
    if (WAYPOINT.Maßstab_akt.checked)
        WAYPOINT.form.focus = &WAYPOINT.Prox_feld;
} catch (...) {
    trap("Massstab_akt");
}

void map_scale_typed()
{
    editor.map_scale = WAYPOINT.Maßstab_feld.text;
    prox_typed();
}

void open_nearest(int row)
try {
    const auto& rows = WAYPOINT.nächst.rows.rows;
    if (row < 0 || row >= static_cast<int>(rows.size()))
        return;
    const int index = rows[static_cast<std::size_t>(row)].data;
    if (index < 0 || index > store.wp_top)
        return;
    if (editor_changed() && say(7835, buttons::ok_cancel, icon::question, trim(WAYPOINT.nam.text),
                                store.wp[static_cast<std::size_t>(index)].nam) != answer::ok) {
        WAYPOINT.nächst.rows.current = -1;
        WAYPOINT.nächst.rows.changed();
        return;
    }
    if (index > store.wp_top) // gone while the question stood
        return;
    store.wp_cur = to_i16(std::int64_t{index});
    editor.start.reset();
    editor_show();
    WAYPOINT.form.focus = &WAYPOINT.nam;
} catch (...) {
    trap("nächst");
}

// Keys move along the rows without opening them; Enter opens.
bool nearest_key(int key, bool ctrl, bool)
{
    constexpr int key_home = 0x01000010, key_end = 0x01000011, key_up = 0x01000013,
                  key_down = 0x01000015;
    row_list& rows = WAYPOINT.nächst.rows;
    const int last = static_cast<int>(rows.rows.size()) - 1;
    int to = rows.current;
    switch (key) {
    case key_home: to = 0; break;
    case key_end: to = last; break;
    case key_up: --to; break;
    case key_down: ++to; break;
    default: return !ctrl && key >= ' ' && key <= 0xFF; // typing searches nothing here
    }
    rows.current = last < 0 ? -1 : std::clamp(to, 0, last);
    rows.changed();
    return true;
}

bool run_editor()
{
    if (WAYPOINT.form.shown)
        return false;
    editor.stored = false;
    run_window(WAYPOINT.form);
    if (store.wp_cur > store.wp_top)
        store.wp_cur = -1;
    return editor.stored;
}

// Place of the window, kept from one run to the next
// -------------------------------------------------------------------------------------------------

bool place_read()
{
    std::string line = ini_get("Main", "pos_wp");
    const std::string left = cut_token(line, " ");
    if (is_number(left) && is_number(line)) {
        WAYPOINT.form.left = val(left);
        WAYPOINT.form.top = val(line);
    }
    return true;
}

bool place_write()
{
    const window& w = WAYPOINT.form;
    if (w.left >= 0 && w.top >= 0) // it has been open, in this run or an earlier one
        ini_put("Main", "pos_wp", pic(w.left, "0.0") + " " + pic(w.top, "0.0"));
    return true;
}

/// The waypoint that a command of the main window means.
int current_waypoint()
{
    const int index = wp_index(Form1.Waypl2.rows.current);
    if (index >= 0)
        return index;
    if (store.wp_cur >= 0 && store.wp_cur <= store.wp_top)
        return store.wp_cur;
    const std::vector<int> marked = hooks.marked_rows();
    return marked.empty() ? -1 : marked.front();
}

} // namespace

waypoint_window::waypoint_window()
{
    form.load = editor_load;
    form.translated = words_show;
}

bool symbols_active()
{
    return hooks.symbols_in_use() && !symbols.rows.empty();
}

int symbol_chosen()
{
    const row_list& rows = WAYPOINT.symb.rows;
    if (rows.current >= 0 && rows.current < static_cast<int>(rows.rows.size()))
        return rows.rows[static_cast<std::size_t>(rows.current)].data;
    const bool kept = std::ranges::find(rows.rows, std::int32_t{editor.loaded.symb},
                                        &list_row::data) == rows.rows.end();
    return kept && !editor.is_new ? -1 : 0;
}

int symbol_mode_chosen()
{
    return std::clamp(mode_entries - 1 - WAYPOINT.Symbmode.selected, 0, mode_entries - 1);
}

void editor_show()
{
    editor.is_new = store.wp_cur < 0 || store.wp_cur > store.wp_top;
    editor.loaded = editor.is_new ? new_record() : store.wp[static_cast<std::size_t>(store.wp_cur)];
    const wayp_rec& w = editor.loaded;
    editor.coordinate_state = 0;
    editor.to_marked = {};
    editor.pos = editor.is_new ? editor.start : std::optional(w.pos);

    WAYPOINT.nam.text = w.nam;
    WAYPOINT.kom.text = w.kom;
    komlen_show();
    WAYPOINT.dat_type.caption = wp_date_text(w.dat);
    WAYPOINT.alt_feld.text = w.alt == alt_unknown
                                 ? std::string{}
                                 : pic(w.alt / static_cast<double>(settings.alt_unit), "0");
    editor.alt_loaded = WAYPOINT.alt_feld.text;
    WAYPOINT.alt_m.caption = alt_label();
    prox_load(w.prox);
    symbols_load_into(w);

    WAYPOINT.Vorgabe.checked = editor.preset;
    if (editor.held_format != Form1.posform.selected || coord.zone_held[1].empty())
        coord.zone_halt = false;
    WAYPOINT.zone_halt.checked = coord.zone_halt;
    WAYPOINT.zone.text.clear();
    position_labels();
    if (editor.pos)
        position_show();
    else
        preset_show();
    relative_show();
    nearest_show();
}

bool editor_changed()
{
    const wayp_rec& w = editor.loaded;
    const int prox = std::min(std::abs(int{w.prox}), prox_most);
    const int symbol = symbol_chosen();
    return WAYPOINT.nam.text != w.nam || WAYPOINT.kom.text != w.kom ||
           editor.coordinate_state >= 2 || WAYPOINT.alt_feld.text != editor.alt_loaded ||
           editor.prox_val != prox || WAYPOINT.Prox_akt.checked != (w.prox >= 0) ||
           (symbols_active() && ((symbol >= 0 && symbol != w.symb) ||
                                 symbol_mode_chosen() != std::clamp<int>(w.symbmode, 0, 2)));
}

void nearest_show()
{
    row_list& rows = WAYPOINT.nächst.rows;
    rows.rows.clear();
    rows.current = -1;
    if (editor.pos) {
        struct near_wp {
            dist_bear way{};
            int index = -1;
        };
        std::vector<near_wp> nearest;
        for (int i = 0; i <= store.wp_top; ++i) {
            if (i == store.wp_cur)
                continue;
            const dist_bear way = dist_flat(store.wp[static_cast<std::size_t>(i)].pos, *editor.pos);
            if (static_cast<double>(way.distance) > nearest_limit ||
                (nearest.size() == nearest_rows && way.distance >= nearest.back().way.distance))
                continue;
            const auto at = std::ranges::upper_bound(
                nearest, way.distance, {}, [](const near_wp& n) { return n.way.distance; });
            nearest.insert(at, {way, i});
            if (nearest.size() > nearest_rows)
                nearest.pop_back();
        }
        for (const near_wp& n : nearest)
            rows.rows.push_back(
                {.data = n.index,
                 .cells = {store.wp[static_cast<std::size_t>(n.index)].nam,
                           pic(n.way.distance, "0.00") + " " + dist_label(),
                           pic(std::fmod(std::round(static_cast<double>(n.way.bearing)), 360.0),
                               "000\xB0")}});
    }
    rows.changed();
}

bool waypoint_edit(int index)
try {
    if (index < 0 || index > store.wp_top || WAYPOINT.form.shown)
        return false;
    store.wp_cur = to_i16(std::int64_t{index});
    editor.start.reset();
    return run_editor();
} catch (...) {
    trap("waypoint_edit");
    return false;
}

int waypoint_new(std::optional<pos_rec> start)
try {
    if (WAYPOINT.form.shown)
        return -1;
    store.wp_cur = to_i16(std::int64_t{store.wp_top} + 1);
    editor.start = start;
    return run_editor() ? store.wp_cur : -1;
} catch (...) {
    trap("waypoint_new");
    return -1;
}

void editor_install()
{
    editor = {};
    waypoint_window& w = WAYPOINT;
    w.nam.change = [] { WAYPOINT.nam.text = name_typed(WAYPOINT.nam.text); };
    w.kom.change = komlen_show;
    w.Prox_feld.change = prox_typed;
    w.Maßstab_akt.click = map_scale_click;
    w.Maßstab_feld.change = map_scale_typed;
    w.symb.row_click = [](int row) { WAYPOINT.symb.rows.current = row; };
    w.nächst.row_click = w.nächst.row_open = open_nearest;
    w.nächst.key = nearest_key;
    w.OK.click = editor_confirm;
    w.Abbr.click = [] { close_window(WAYPOINT.form); };
    position_handlers();
    shell_add(shell.start, 19, "pos_wp", place_read);
    shell_add(shell.shutdown, 5, "pos_wp", place_write);

    Form1.Edit_w[0].click = [] { waypoint_new(); };
    Form1.Edit_w[1].click = [] { waypoint_edit(current_waypoint()); };
    Form1.Waypl2.row_open = [](int row) { waypoint_edit(wp_index(row)); };
    list_states();
}

} // namespace velkoro

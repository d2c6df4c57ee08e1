// Confirming the waypoint editor: checks in a fixed order, each with its message, then the store.
#include "waypoints/editor.h"

#include "coords/coord_text.h"
#include "coords/distance.h"
#include "coords/times.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/names.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"
#include "waypoints/list.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace velkoro {
namespace {

/// How a check ended.
enum class outcome { go_on, stay, cancel };

answer ask(int number, enum buttons b, enum icon i, const std::string& name,
           std::string_view p2 = "#")
{
    return platform.message({.text = text(number, name, p2),
                             .title = text(1650),
                             .buttons = b,
                             .icon = i,
                             .number = number});
}

outcome stay_at(control& field)
{
    WAYPOINT.form.focus = &field;
    return outcome::stay;
}

bool blank(const control& c)
{
    return trim(c.text).empty();
}

bool touched()
{
    return editor.coordinate_state >= 2;
}

// Checks
// -------------------------------------------------------------------------------------------------

/// What a name holds past the limit goes to the front of the comment, as in a batch.
void cut_name(wayp_rec& draft)
{
    const std::string typed = draft.nam;
    if (!name_cut(draft.nam, draft.kom))
        return;
    ask(2035, buttons::ok, icon::exclamation, std::to_string(store.wp_name_max), typed);
    WAYPOINT.nam.text = draft.nam;
    WAYPOINT.kom.text = draft.kom;
    WAYPOINT.kom.change();
}

outcome check_fields(const wayp_rec& draft)
{
    if (!touched() && draft.nam.empty())
        return outcome::cancel;
    if (!touched() && editor.pos)
        return outcome::go_on;
    control* missing = nullptr;
    if (format_has_zone() && blank(WAYPOINT.zone))
        missing = &WAYPOINT.zone;
    if (blank(WAYPOINT.lon))
        missing = &WAYPOINT.lon;
    if (blank(WAYPOINT.lat) || (!missing && !touched())) // a preset start is no position
        missing = &WAYPOINT.lat;
    if (!missing)
        return outcome::go_on;
    ask(4310, buttons::ok, icon::critical, draft.nam);
    return stay_at(*missing);
}

outcome check_zone_letter(const wayp_rec& draft)
{
    const int fmt = Form1.posform.selected;
    if (!touched() || (fmt != fmt_utm && fmt != fmt_mgrs))
        return outcome::go_on;
    std::string zone(trim(WAYPOINT.zone.text));
    const char last = upper(zone.back());
    if (last >= 'A' && last <= 'Z')
        return outcome::go_on;
    const answer south = ask(4316, buttons::yes_no, icon::question, draft.nam);
    WAYPOINT.zone.text = zone + (south == answer::yes ? "C" : "X");
    editor.pos = position_read();
    return outcome::go_on;
}

outcome check_hemispheres(const wayp_rec& draft)
{
    if (!touched() || !format_is_angle())
        return outcome::go_on;
    constexpr std::string_view letters = "NSEW+-";
    for (control* c : {&WAYPOINT.lat, &WAYPOINT.lon}) {
        if (letters.find(upper(trim(c->text).front())) != std::string_view::npos)
            continue;
        return ask(4315, buttons::ok_cancel, icon::question, draft.nam) == answer::ok
                   ? outcome::go_on
                   : stay_at(*c);
    }
    return outcome::go_on;
}

void clean_name(wayp_rec& draft)
{
    const std::string clean = name_clean(draft.nam, 0);
    if (clean != draft.nam)
        WAYPOINT.nam.text = draft.nam = clean;
}

/// The field that cannot be read, as far as one can tell.
control& faulty_field()
{
    bool good = true;
    if (format_is_angle()) {
        text_to_angle(WAYPOINT.lat.text, "NS", &good);
        return good ? WAYPOINT.lon : WAYPOINT.lat;
    }
    constexpr std::string_view digits = "0123456789";
    if (WAYPOINT.lat.text.find_first_of(digits) == std::string::npos)
        return WAYPOINT.lat;
    if (WAYPOINT.lon.text.find_first_of(digits) == std::string::npos)
        return WAYPOINT.lon;
    return format_has_zone() ? WAYPOINT.zone : WAYPOINT.lon;
}

outcome take_position(wayp_rec& draft)
{
    if (!editor.pos)
        editor.pos = position_read();
    if (editor.pos) {
        draft.pos = *editor.pos;
        return outcome::go_on;
    }
    ask(4320, buttons::ok, icon::critical, draft.nam);
    return stay_at(faulty_field());
}

outcome take_altitude(wayp_rec& draft)
{
    if (WAYPOINT.alt_feld.text == editor.alt_loaded)
        return outcome::go_on; // feet would not come back to the same metres
    draft.alt = alt_unknown;
    if (blank(WAYPOINT.alt_feld))
        return outcome::go_on;
    const std::string number = comma_to_dot(WAYPOINT.alt_feld.text);
    const double metres = round_even(val(number) * static_cast<double>(settings.alt_unit));
    if (is_number(number) && metres >= -32768 && metres <= 32767) {
        draft.alt = to_i16(metres);
        return outcome::go_on;
    }
    ask(4330, buttons::ok, icon::critical, draft.nam);
    return stay_at(WAYPOINT.alt_feld);
}

outcome check_key(wayp_rec& draft)
{
    const int own = editor.is_new ? -1 : store.wp_cur;
    const int other = wp_find_key(draft.nam, draft.kom, own, store.wp_top);
    if (other < 0 || draft.nam.empty())
        return outcome::go_on;
    conflict_question question{
        .old_index = other, .incoming = &draft, .silent = true, .skip_index = own};
    if (hooks.conflict_ask(question) != conflict_answer::keep_both)
        return stay_at(WAYPOINT.nam);
    draft.nam = name_clean(draft.nam, 0);
    name_unique(draft.nam, draft.kom, own);
    WAYPOINT.nam.text = draft.nam;
    WAYPOINT.kom.text = draft.kom;
    return outcome::go_on;
}

/// A comment serves as name where there is none; its part that belongs to the key stays out.
outcome check_name(wayp_rec& draft)
{
    if (!draft.nam.empty())
        return outcome::go_on;
    std::string_view from = draft.kom;
    if (const std::size_t prefix = key_prefix(from).size(); prefix > 0)
        from.remove_prefix(prefix < from.size() ? prefix : 1);
    draft.nam = name_clean(from, 0);
    if (store.wp_name_max > 0)
        draft.nam.resize(std::min(draft.nam.size(), static_cast<std::size_t>(store.wp_name_max)));
    draft.nam = trim_right(draft.nam);
    if (!draft.nam.empty())
        name_unique(draft.nam, draft.kom, editor.is_new ? -1 : store.wp_cur);
    else if (!editor.is_new) {
        ask(7836, buttons::ok, icon::critical, editor.loaded.nam);
        return stay_at(WAYPOINT.nam);
    }
    return outcome::go_on;
}

void take_values(wayp_rec& draft)
{
    const int prox = std::clamp(editor.prox_val, 0, prox_most);
    draft.prox = to_i16(std::int64_t{WAYPOINT.Prox_akt.checked ? prox : -prox});
    if (!symbols_active())
        return;
    if (const int symbol = symbol_chosen(); symbol >= 0)
        draft.symb = to_i16(std::int64_t{symbol});
    draft.symbmode = to_i16(std::int64_t{symbol_mode_chosen()});
}

// Storing
// -------------------------------------------------------------------------------------------------

std::int32_t today()
{
    const date_time now = platform.now();
    return day_number(now.year, now.month, now.day) * day_seconds;
}

/// Writes the draft to its record; returns the routes that a new key changed.
std::string store_record(const wayp_rec& draft)
{
    const int index = store.wp_cur;
    std::string routes = wp_rename(index, draft.nam, draft.kom);
    if (touched() || editor.is_new)
        wp_move(index, draft.pos);
    wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
    w.prox = draft.prox;
    w.alt = draft.alt;
    w.symb = draft.symb;
    w.symbmode = draft.symbmode;
    if (touched() || editor.is_new) {
        const dist_bear way = dist_flat(w.pos, store.refp_pos);
        w.dist = way.distance;
        w.bear = to_i16(round_even(static_cast<double>(way.bearing)));
        w.mapx = 0;
        w.dat = today();
    }
    store.wp_dirty = true;
    return routes;
}

void follow_reference(const std::string& nam, const pos_rec& pos)
{
    if (nam != store.refp_name)
        return;
    store.refp_pos = pos;
    hooks.row_changed(-1, false); // all distances
}

/// Marked waypoints other than the one in the window.
std::vector<int> others_marked()
{
    std::vector<int> marked = hooks.marked_rows();
    std::erase_if(marked, [](int i) { return i == store.wp_cur || i < 0 || i > store.wp_top; });
    return marked;
}

/// Asks for each value that changed whether all marked waypoints get it.
void offer_to_marked(const wayp_rec& draft)
{
    editor.to_marked = {};
    if (editor.is_new || others_marked().empty())
        return;
    const wayp_rec& before = editor.loaded;
    const std::pair<int, bool> questions[] = {{4350, draft.symb != before.symb},
                                              {4360, draft.symbmode != before.symbmode},
                                              {4370, draft.prox != before.prox}};
    for (std::size_t i = 0; i < editor.to_marked.size(); ++i)
        editor.to_marked[i] = questions[i].second && ask(questions[i].first, buttons::yes_no,
                                                         icon::question, draft.nam) == answer::yes;
    const auto& [symbol, mode, prox] = editor.to_marked;
    if (!symbol && !mode && !prox)
        return;
    for (const int i : others_marked()) {
        wayp_rec& w = store.wp[static_cast<std::size_t>(i)];
        if (symbol)
            w.symb = draft.symb;
        if (mode)
            w.symbmode = draft.symbmode;
        if (prox)
            w.prox = draft.prox;
        hooks.row_changed(i, false);
    }
    hooks.sort_rows();
}

void remember(const wayp_rec& draft)
{
    editor.last_symb = draft.symb;
    editor.last_symbmode = draft.symbmode;
    if (touched() || editor.is_new)
        editor.last_pos = draft.pos;
}

/// Brings a new waypoint's row into view.
void show_new_row()
{
    row_list& rows = Form1.Waypl2.rows;
    rows.current = rows.show_row = wp_row(store.wp_cur);
    rows.changed();
}

void store_draft(wayp_rec draft)
{
    if (!editor.is_new && (store.wp_cur < 0 || store.wp_cur > store.wp_top))
        return; // the record went while a question stood
    const bool dirty = store.wp_dirty;
    if (editor.is_new)
        store.wp_cur = to_i16(std::int64_t{wp_append(draft)});
    const std::string routes = store_record(draft);
    hooks.row_changed(store.wp_cur, false);
    follow_reference(draft.nam, draft.pos);
    if (!routes.empty())
        ask(4340, buttons::ok, icon::information, draft.nam, routes);
    hooks.route_refresh();
    hooks.map_changed();
    offer_to_marked(draft);
    if (editor.is_new && draft.nam.empty()) { // given up: nobody could find it
        wp_rename(store.wp_cur, "$", draft.kom);
        wayp_delete(store.wp_cur);
        store.wp_dirty = dirty;
        return;
    }
    remember(draft);
    if (editor.is_new)
        show_new_row();
    editor.stored = true;
}

/// The checks in their order, up to the one that stops.
outcome check(wayp_rec& draft)
{
    cut_name(draft);
    for (const auto step : {check_fields, check_zone_letter, check_hemispheres})
        if (const outcome o = step(draft); o != outcome::go_on)
            return o;
    clean_name(draft);
    for (const auto step : {take_position, take_altitude, check_key, check_name})
        if (const outcome o = step(draft); o != outcome::go_on)
            return o;
    take_values(draft);
    return outcome::go_on;
}

} // namespace

void editor_confirm()
try {
    wayp_rec draft = editor.loaded;
    draft.nam = trim(WAYPOINT.nam.text);
    draft.kom = WAYPOINT.kom.text;
    const outcome end = check(draft);
    if (end == outcome::stay)
        return;
    if (end == outcome::go_on)
        store_draft(draft);
    close_window(WAYPOINT.form);
} catch (...) {
    trap("WAYPOINT_OK");
}

} // namespace velkoro

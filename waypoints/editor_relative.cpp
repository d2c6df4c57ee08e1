// The position fields of the waypoint editor: as text in the chosen format, in a held zone, by the
// preset start, and relative to the reference waypoint by every method in both directions.
#include "waypoints/editor.h"

#include "coords/coord_text.h"
#include "coords/distance.h"
#include "coords/units.h"
#include "core/form1.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "waypoints/coord_preset.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velkoro {
namespace {

/// No beeps about texts that are half typed.
struct no_beep {
    std::function<void()> saved = std::exchange(platform.beep, [] {});
    no_beep() = default;
    ~no_beep() { platform.beep = std::move(saved); }
    no_beep(const no_beep&) = delete;
    no_beep& operator=(const no_beep&) = delete;
};

bool has_reference()
{
    return store.refp_name != "??????";
}

bool readable(const control& c)
{
    return is_number(comma_to_dot(c.text));
}

double number_in(const control& c)
{
    return val(comma_to_dot(c.text));
}

int zone_letters(std::string_view zone)
{
    return static_cast<int>(
        std::ranges::count_if(zone, [](char c) { return upper(c) >= 'A' && upper(c) <= 'Z'; }));
}

// Offsets to the reference waypoint
// -------------------------------------------------------------------------------------------------

struct ground_offset {
    double north = 0, east = 0; // metres
};

/// The grid texts of the reference waypoint as the held ones, at a scale where a millimetre on the
/// map is a metre: grid texts then tell and take offsets in metres, across zones and squares.
struct held_reference {
    coord_state saved = coord;
    std::int32_t saved_scale = std::exchange(settings.scale, 1000);
    bool reached = false;
    held_reference()
    {
        std::string zone, east, north;
        pos_to_text(store.refp_pos, zone, east, north, -1);
        reached = !east.empty() && !north.empty();
        coord.zone_halt = true;
        coord.zone_held = {zone, north, east};
    }
    ~held_reference()
    {
        coord = std::move(saved);
        settings.scale = saved_scale;
    }
    held_reference(const held_reference&) = delete;
    held_reference& operator=(const held_reference&) = delete;
};

std::optional<ground_offset> offset_of(const pos_rec& pos)
{
    const pos_rec& ref = store.refp_pos;
    if (format_is_angle()) {
        const auto lon = static_cast<std::int32_t>(static_cast<std::uint32_t>(pos.lon) -
                                                   static_cast<std::uint32_t>(ref.lon));
        return ground_offset{(static_cast<double>(pos.lat) - ref.lat) * semi_to_rad * earth_radius,
                             lon * semi_to_rad * std::cos(ref.lat * semi_to_rad) * earth_radius};
    }
    const held_reference held;
    if (!held.reached)
        return std::nullopt;
    std::string zone = coord.zone_held[0], east, north;
    pos_to_text(pos, zone, east, north);
    const std::size_t e = east.find(map_tab), n = north.find(map_tab);
    if (e == std::string::npos || n == std::string::npos)
        return std::nullopt;
    return ground_offset{val(north.substr(n + 1)), val(east.substr(e + 1))};
}

std::optional<pos_rec> offset_pos(const ground_offset& offset)
{
    const pos_rec& ref = store.refp_pos;
    if (format_is_angle()) {
        const double unit = settings.dist_unit;
        return dist_to_wgs_dir(offset.north / unit, 0,
                               dist_to_wgs_dir(offset.east / unit, 90, ref));
    }
    const held_reference held;
    if (!held.reached)
        return std::nullopt;
    const auto& [zone, north, east] = coord.zone_held;
    pos_rec pos;
    const bool good = text_to_pos(zone, east + map_tab + pic(offset.east, "0"),
                                  north + map_tab + pic(offset.north, "0"), pos);
    return good ? std::optional(pos) : std::nullopt;
}

/// Metres for one unit of the offset fields.
double offset_unit()
{
    return editor.method == rel_method::map_mm ? settings.scale / 1000.0 : 1.0;
}

/// Selected distance units for one unit of the field `dist`.
double dist_field_unit()
{
    return editor.method == rel_method::map_mm
               ? settings.scale / 1000.0 / static_cast<double>(settings.dist_unit)
               : 1.0;
}

// The preset start
// -------------------------------------------------------------------------------------------------

/// Texts of the place whose start is preset: that of the waypoint stored last, else the reference.
struct sample_texts {
    std::string zone{}, north{}, east{};
};
std::optional<sample_texts> sample()
{
    std::optional<pos_rec> from = editor.last_pos;
    if (!from && has_reference())
        from = store.refp_pos;
    if (!from && !editor.is_new)
        from = editor.loaded.pos;
    if (!from)
        return std::nullopt;
    const coord_state saved = coord; // a look at the texts must not choose a zone
    sample_texts s;
    pos_to_text(*from, s.zone, s.east, s.north, -1);
    coord = saved;
    return s;
}

void guide_typing(control& field, std::string& before, const std::string& pattern)
{
    field.text = preset_typed(before, field.text, pattern);
    before = field.text;
}

// Handlers
// -------------------------------------------------------------------------------------------------

void moved(bool polar, bool offset)
{
    position_touched();
    position_show();
    relative_show(polar, offset);
    nearest_show();
}

void position_typed()
try {
    if (WAYPOINT.Vorgabe.checked && !WAYPOINT.zone_halt.checked)
        if (const auto s = sample()) {
            guide_typing(WAYPOINT.lat, editor.typed[0], s->north);
            guide_typing(WAYPOINT.lon, editor.typed[1], s->east);
        }
    editor.typed = {WAYPOINT.lat.text, WAYPOINT.lon.text};
    position_touched();
    editor.pos = position_read();
    relative_show();
    nearest_show();
} catch (...) {
    trap("WAYPOINT_lat");
}

void offset_typed()
try {
    if (!readable(WAYPOINT.lat_rel) || !readable(WAYPOINT.lon_rel))
        return;
    const double unit = offset_unit();
    const auto pos =
        offset_pos({number_in(WAYPOINT.lat_rel) * unit, number_in(WAYPOINT.lon_rel) * unit});
    if (!pos)
        return;
    editor.pos = pos;
    moved(true, false);
} catch (...) {
    trap("WAYPOINT_rel");
}

void method_chosen()
{
    editor.method = static_cast<rel_method>(std::clamp(WAYPOINT.relativ.selected, 0, 2));
    position_labels();
    relative_show();
}

void zone_halt_click()
try {
    if (!WAYPOINT.zone_halt.checked) {
        coord.zone_halt = false;
        if (editor.pos)
            position_show();
        else
            preset_show();
        return;
    }
    const std::optional<pos_rec> named = position_read();
    if (!named) { // nothing to hold
        WAYPOINT.zone_halt.checked = false;
        say(4310, buttons::ok, icon::critical);
        WAYPOINT.form.focus = &WAYPOINT.lat;
        return;
    }
    if (!editor.pos)
        editor.pos = named;
    coord.zone_held = {WAYPOINT.zone.text, WAYPOINT.lat.text, WAYPOINT.lon.text};
    coord.zone_halt = true;
    editor.held_format = Form1.posform.selected;
    position_show();
} catch (...) {
    trap("zone_halt");
}

void preset_click()
try {
    editor.preset = WAYPOINT.Vorgabe.checked;
    if (!editor.pos && editor.coordinate_state < 2)
        preset_show();
    if (editor.preset)
        WAYPOINT.form.focus = &WAYPOINT.lat;
} catch (...) {
    trap("Vorgabe");
}

} // namespace

bool format_is_angle()
{
    return Form1.posform.selected <= fmt_seconds;
}

bool format_has_zone()
{
    switch (Form1.posform.selected) {
    case fmt_utm:
    case fmt_mgrs:
    case fmt_lambert:
    case fmt_british:
    case fmt_irish: return true;
    default: return false;
    }
}

std::optional<pos_rec> position_read()
{
    const auto blank = [](const control& c) { return trim(c.text).empty(); };
    if (blank(WAYPOINT.lat) || blank(WAYPOINT.lon) || (format_has_zone() && blank(WAYPOINT.zone)))
        return std::nullopt;
    if (Form1.posform.selected == fmt_mgrs && zone_letters(WAYPOINT.zone.text) < 3)
        return std::nullopt; // band, column, row
    const no_beep quiet;
    pos_rec pos;
    return text_to_pos(WAYPOINT.zone.text, WAYPOINT.lon.text, WAYPOINT.lat.text, pos)
               ? std::optional(pos)
               : std::nullopt;
}

void position_touched()
{
    editor.coordinate_state = std::max(editor.coordinate_state, 1) + 1;
}

void position_show()
{
    if (!editor.pos)
        return;
    std::string zone = WAYPOINT.zone.text, east, north;
    pos_to_text(*editor.pos, zone, east, north);
    WAYPOINT.zone.text = zone;
    WAYPOINT.lat.text = north;
    WAYPOINT.lon.text = east;
    editor.typed = {north, east};
}

void preset_show()
{
    std::string north, east;
    if (coord.zone_halt) {
        WAYPOINT.zone.text = coord.zone_held[0];
        north = coord.zone_held[1].substr(0, coord.zone_held[1].find(map_tab)) + map_tab;
        east = coord.zone_held[2].substr(0, coord.zone_held[2].find(map_tab)) + map_tab;
    } else if (const auto s = sample()) {
        WAYPOINT.zone.text = s->zone; // the next point mostly lies in the same zone
        if (WAYPOINT.Vorgabe.checked) {
            north = s->north.substr(0, preset_length(s->north, format_is_angle()));
            east = s->east.substr(0, preset_length(s->east, format_is_angle()));
        }
    }
    WAYPOINT.lat.text = north;
    WAYPOINT.lon.text = east;
    editor.typed = {north, east};
}

void relative_show(bool polar, bool offset)
{
    const bool possible = has_reference() && editor.pos;
    if (polar) {
        const dist_bear way = possible ? dist_chord(*editor.pos, store.refp_pos) : dist_bear{};
        const double bearing = std::fmod(std::round(static_cast<double>(way.bearing)), 360.0);
        WAYPOINT.bear.text = possible ? pic(bearing, "0") : std::string{};
        const bool on_map = editor.method == rel_method::map_mm;
        WAYPOINT.dist.text = possible ? pic(static_cast<double>(way.distance) / dist_field_unit(),
                                            on_map ? "0.0" : "0.00")
                                      : std::string{};
    }
    if (!offset)
        return;
    WAYPOINT.lat_rel.text.clear();
    WAYPOINT.lon_rel.text.clear();
    if (!possible || editor.method == rel_method::polar)
        return;
    if (const auto o = offset_of(*editor.pos)) {
        const char* picture = editor.method == rel_method::map_mm ? "0.0" : "0";
        WAYPOINT.lat_rel.text = pic(o->north / offset_unit(), picture);
        WAYPOINT.lon_rel.text = pic(o->east / offset_unit(), picture);
    }
}

void get_dist()
try {
    if (!has_reference() || !readable(WAYPOINT.bear) || !readable(WAYPOINT.dist))
        return;
    editor.pos = dist_to_wgs(number_in(WAYPOINT.dist) * dist_field_unit(), number_in(WAYPOINT.bear),
                             store.refp_pos);
    moved(false, true);
} catch (...) {
    trap("get_dist");
}

void position_labels()
{
    waypoint_window& w = WAYPOINT;
    w.T_lat.caption = format_is_angle() ? text(7804) : text(7806);
    w.T_lon.caption = format_is_angle() ? text(7805) : text(7807);
    w.T_zone.enabled = w.zone.enabled = format_has_zone();
    const auto row = static_cast<std::size_t>(std::max(0, Form1.Datum.selected));
    w.Dat.caption = row < Form1.Datum.items.size() ? Form1.Datum.items[row] : std::string{};

    const bool reference = has_reference();
    w.refp.caption = reference ? store.refp_name : std::string("\x96"); // a dash
    if (reference)
        for (int i = 0; i <= store.wp_top; ++i)
            if (const wayp_rec& r = store.wp[static_cast<std::size_t>(i)];
                is_reference(r) && !r.kom.empty()) {
                w.refp.caption += " \xB7 " + r.kom;
                break;
            }
    w.relativ.items = {text(7816), text(7817), text(7818, settings.scale)};
    w.relativ.selected = static_cast<int>(editor.method);
    const bool on_map = editor.method == rel_method::map_mm;
    w.dist_km.caption = on_map ? "mm" : dist_label();
    w.lat_rel_e.caption = w.lon_rel_e.caption = on_map ? "mm" : "m";
    w.bear.enabled = w.dist.enabled = w.relativ.enabled = reference;
    for (control* c :
         {&w.TT_lat_rel, &w.lat_rel, &w.lat_rel_e, &w.TT_lon_rel, &w.lon_rel, &w.lon_rel_e})
        c->enabled = reference && editor.method != rel_method::polar;
}

void position_handlers()
{
    waypoint_window& w = WAYPOINT;
    w.lat.change = w.lon.change = w.zone.change = position_typed;
    w.bear.change = w.dist.change = get_dist;
    w.lat_rel.change = w.lon_rel.change = offset_typed;
    w.relativ.change = method_chosen;
    w.zone_halt.click = zone_halt_click;
    w.Vorgabe.click = preset_click;
}

} // namespace velkoro

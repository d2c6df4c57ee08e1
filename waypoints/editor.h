/// `WAYPOINT`, the window that shows and edits one waypoint, and makes new ones.
/// It works on store.wp_cur; store.wp_top + 1 stands for a waypoint that is being entered. What the
/// user types becomes fields of the record only when he confirms (editor_confirm.cpp); until then
/// the store is as it was. A position is typed in the chosen format, or follows from bearing and
/// distance, or from an offset to the reference waypoint (editor_relative.cpp).
#pragma once

#include "core/code_page.h"
#include "core/store.h"
#include "core/window.h"

#include <array>
#include <optional>
#include <string>

namespace velkoro {

inline constexpr int prox_most = 999;         ///< units of 100 m
inline constexpr int kom_room = 40;           ///< characters of a comment that receivers keep
inline constexpr double nearest_limit = 1000; ///< selected distance unit: what lies beyond is left
                                              ///< out of the nearest ones
inline constexpr int nearest_rows = 6;

struct waypoint_window {
    window form{"WAYPOINT", "Waypoint", "7800"};
    control nam{form, kind::text, "nam", {.tag = "0 7840"}};
    control dat_type{form, kind::label, "dat_type", {.tag = "0 7865"}};
    control kom{form, kind::text, "kom", {.tag = "0 7841"}};
    control komlen{form, kind::label, "komlen", {.tag = "0 7842"}};
    // Position: `lat` holds latitude or northing, `lon` longitude or easting.
    control T_lat{form, kind::label, "T_lat", {.caption = "B&reite", .tag = "7804"}};
    control lat{form, kind::text, "lat", {.tag = "0 7843"}};
    control Dat{form, kind::label, "Dat", {.tag = "0 7845"}};
    control T_lon{form, kind::label, "T_lon", {.caption = "&Länge"_w, .tag = "7805"}};
    control lon{form, kind::text, "lon", {.tag = "0 7844"}};
    control T_zone{form, kind::label, "T_zone", {.caption = "&Zone", .tag = "7808"}};
    control zone{form, kind::text, "zone", {.tag = "0 7846"}};
    control zone_halt{
        form, kind::check, "zone_halt", {.caption = "Zone &festhalten", .tag = "7809 7847"}};
    control Vorgabe{form,
                    kind::check,
                    "Vorgabe",
                    {.caption = "Anfang der Koordinaten &vorgeben", .tag = "7810 7848"}};
    // Relative to the reference waypoint
    control refp{form, kind::label, "refp", {.tag = "0 7849"}};
    control bear{form, kind::text, "bear", {.tag = "0 7850"}};
    control dist{form, kind::text, "dist", {.tag = "0 7851"}};
    control dist_km{form, kind::label, "dist_km", {.tag = "0 7944"}};
    control relativ{form, kind::combo, "relativ", {.tag = "0 7852"}};
    control TT_lat_rel{form, kind::label, "TT_lat_rel", {.caption = "nach Nor&den", .tag = "7819"}};
    control lat_rel{form, kind::text, "lat_rel", {.tag = "0 7853"}};
    control lat_rel_e{form, kind::label, "lat_rel_e", {.tag = "0 7944"}}; ///< unit
    control TT_lon_rel{form, kind::label, "TT_lon_rel", {.caption = "nach Os&ten", .tag = "7820"}};
    control lon_rel{form, kind::text, "lon_rel", {.tag = "0 7854"}};
    control lon_rel_e{form, kind::label, "lon_rel_e", {.tag = "0 7944"}};
    control alt{form, kind::frame, "alt"};
    control alt_feld{form, kind::text, "alt_feld", {.tag = "0 7855"}};
    control alt_m{form, kind::label, "alt_m", {.tag = "0 7944"}};
    control prox{form, kind::frame, "prox"};
    control Prox_akt{form, kind::check, "Prox_akt", {.caption = "&Proximity", .tag = "7823 7856"}};
    control Prox_feld{form, kind::text, "Prox_feld", {.tag = "0 7857"}};
    control prox_km{form, kind::label, "prox_km", {.tag = "0 7944"}};
    control Maßstab_akt{
        form, kind::check, "Maßstab_akt", {.caption = "in mm, &Karte 1 :", .tag = "7824 7858"}};
    control Maßstab_feld{form, kind::text, "Maßstab_feld", {.tag = "0 7859"}};
    control symb_r{form, kind::frame, "symb_r"};
    control symb{form, kind::list, "symb", {.tag = "0 7860"}};
    control Symbmode{form, kind::combo, "Symbmode", {.tag = "0 7861"}};
    control f_nächst{form, kind::frame, "f_nächst"};
    control nächst{form, kind::list, "nächst", {.tag = "0 7862"}};
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7833 7863"}};
    control Abbr{form, kind::button, "Abbr", {.caption = "Abbr", .tag = "7834 7864"}};
    waypoint_window();
};
extern waypoint_window WAYPOINT;

/// Entries of `relativ`. Bearing and distance can be typed with each of them; in millimetres on the
/// map of the scale `Scale` with the last one.
enum class rel_method { polar, metres, map_mm };

struct editor_state {
    // The waypoint in the window
    bool is_new = false;
    bool stored = false;             ///< the last opening ended with its waypoint in the store
    wayp_rec loaded{};               ///< as it came into the window
    std::optional<pos_rec> pos{};    ///< the place that the fields name; none while they name none
    int prox_val = 0;                ///< 0 to prox_most, kept up to date as the user types
    int coordinate_state = 0;        ///< 2 and more: the user changed the position
    std::string alt_loaded{};        ///< text of the altitude as it came into the window
    std::array<bool, 3> to_marked{}; ///< give symbol, symbol mode, proximity to all marked ones
    std::array<std::string, 2> typed{}; ///< texts of lat and lon at the last change
    std::optional<pos_rec> start{};     ///< where a new waypoint lies from the outset
    // Kept from one opening to the next
    std::optional<pos_rec> last_pos{}; ///< of the waypoint stored last
    int last_symb = 0, last_symbmode = 0;
    bool preset = false; ///< `Vorgabe`
    bool map_scale_on = false;
    std::string map_scale{}; ///< text of `Maßstab_feld`
    rel_method method = rel_method::polar;
    int held_format = -1; ///< format of the held texts
};
inline editor_state editor;

/// Opens the window for a stored waypoint. True when it was confirmed.
bool waypoint_edit(int index);
/// Opens it for a new waypoint, at a place when one is given. Its store index, -1 when cancelled.
int waypoint_new(std::optional<pos_rec> start = {});

/// Puts handlers on the window, on the list and on the buttons of the main window.
void editor_install();

// Between the files of the editor
// -------------------------------------------------------------------------------------------------

/// Fills the window from store.wp_cur.
void editor_show();
/// True when a field no longer says what it said when the waypoint came into the window.
bool editor_changed();
/// True when a symbol table is in use.
bool symbols_active();
/// Table number of the chosen symbol, 0 none; -1 when the window holds a number without an entry.
int symbol_chosen();
/// 0, 1 or 2 by the entry of `Symbmode`.
int symbol_mode_chosen();

/// Shows editor.pos in the position fields: in the chosen format, in the held zone when it is held.
void position_show();
/// Shows bearing, distance and offset; `polar` and `offset` leave out what the user is typing.
void relative_show(bool polar = true, bool offset = true);
void nearest_show();
/// What a new waypoint without a place shows: the preset start, or the held texts.
void preset_show();
/// The user changed the position.
void position_touched();
/// Reads bearing and distance and moves the position there.
void get_dist();
/// Labels and choices that depend on format, units and reference.
void position_labels();
/// Handlers of the position and relative fields.
void position_handlers();

/// True when the chosen format shows angles.
bool format_is_angle();
/// True when the chosen format has a zone text.
bool format_has_zone();
/// The place that zone, lat and lon name, without a beep; none when they name none.
std::optional<pos_rec> position_read();

/// The OK button: checks, asks and stores, and closes the window unless something is wrong.
void editor_confirm();

} // namespace velkoro

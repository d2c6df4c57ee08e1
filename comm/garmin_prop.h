/// `Garmin_prop`, the window of the receiver's properties: who answered, the protocols in use, what
/// the receiver can hold, and the options of transfers.
/// Protocols and symbols hold as soon as they are chosen; everything is written with OK, and a
/// window that is closed otherwise leaves all as it was.
#pragma once

#include "core/code_page.h"
#include "core/window.h"

#include <array>
#include <cstdint>
#include <string>

namespace velkoro {

inline constexpr int mnaml_least = 6; ///< shortest name length that OK takes

struct garmin_prop_window {
    window form{"Garmin_prop", "Eigenschaften und Übertragungsprotokolle des Empfängers"_w, "8080"};
    control msg{form, kind::label, "msg", {.tag = "0 8116"}};
    control f_wp{form, kind::combo, "f_wp", {.tag = "0 8100"}};
    control f_pos{form, kind::combo, "f_pos", {.tag = "0 8101"}};
    control Label7{form,
                   kind::label,
                   "Label7",
                   {.caption = "GRMN arbeitet nicht mit Magellan Empfänger."_w,
                    .tag = "8083 8117",
                    .visible = false}};
    control mwp{form, kind::text, "mwp", {.tag = "0 8102"}};
    control mprox{form, kind::text, "mprox", {.tag = "0 8103"}};
    control mrou{form, kind::text, "mrou", {.tag = "0 8104"}};
    control mwp_rou{form, kind::text, "mwp_rou", {.tag = "0 8105"}};
    control mtrack{form, kind::text, "mtrack", {.tag = "0 8106"}};
    control mnaml{form, kind::text, "mnaml", {.tag = "0 8107"}};
    control r_unique{form,
                     kind::check,
                     "r_unique",
                     {.caption = "Routennamen müssen eindeuti&g sein"_w, .tag = "8090 8108"}};
    control AVD{form, kind::check, "AVD", {.caption = "mit A&VD", .tag = "8091 8109"}};
    control Lokalz{form,
                   kind::check,
                   "Lokalz",
                   {.caption = "mit Lokalzeit in Waypoint-&Beschreibung", .tag = "8092 8110"}};
    control Zeichen{form,
                    kind::check,
                    "Zeichen",
                    {.caption = "erweiterter &Zeichensatz für Waypoints"_w, .tag = "8093 8111"}};
    control alt_kom{form,
                    kind::check,
                    "alt_kom",
                    {.caption = "&Höhe in Beschreibung zeigen"_w, .tag = "8094 8112"}};
    /// Three states, as receiver.gar_symbol_set counts them; the caption follows.
    control symb{form,
                 kind::check,
                 "symb",
                 {.caption = "&mit mehr als 16 Waypoint-Symbolen (Datei SYMBOL_3.INI)",
                  .tag = "8095 8113",
                  .max = 2}};
    control Command1{form, kind::button, "Command1", {.caption = "OK", .tag = "7302 8114"}};
    garmin_prop_window();
};
extern garmin_prop_window Garmin_prop;

struct garmin_prop_state {
    bool asking = false; ///< the entry is at work: while the receiver is asked, the menu is alive
    std::string who{};   ///< who answered, for `msg`
    bool confirmed = false;
    // As it was when the window opened.
    std::array<int, 12> garmin{};
    std::int16_t symbol_set = 0;
    std::int16_t name_max = 0;
    bool ext_chars = false;
};
inline garmin_prop_state garmin_prop_run;

/// The menu entry `gar_ident`: identifies the receiver, shows the window with what it told, and
/// puts the port away. When names must be shorter or of other characters now, the waypoints are
/// renamed.
void gar_ident_click();

/// Brings all waypoint names under the present rule: characters, length (after question 2035; the
/// rest goes to the comment), uniqueness. Routes follow and are told of (text 2040).
void gar_names_check();

void garmin_prop_install();

} // namespace velkoro

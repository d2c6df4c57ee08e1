/// `selwp`, the window that chooses what goes to the receiver: waypoints of the list, and routes
/// with the waypoints that they run through.
/// It counts the choice against what the receiver holds, each waypoint once however many routes
/// it lies on.
#pragma once

#include "comm/transfer.h"
#include "core/code_page.h"
#include "core/window.h"

#include <string>

namespace velkoro {

struct selwp_window {
    window form{"selwp", "Zum Empfänger schreiben"_w, "8127"};
    control ausw_w{form, kind::check, "ausw_w", {.caption = "Waypoints", .tag = "8128 8135"}};
    control ausw_wm{form, kind::check, "ausw_wm", {.caption = "nur markierte", .tag = "8129 8136"}};
    control ausw_r{form, kind::check, "ausw_r", {.caption = "Routen", .tag = "8130 8137"}};
    control ausw_rm{form, kind::check, "ausw_rm", {.caption = "nur markierte", .tag = "8131 8138"}};
    control routen_m{form, kind::list, "routen_m", {.tag = "0 8139"}};
    control r_b{form,
                kind::option,
                "r_b",
                {.caption = "Beschreibung", .tag = "8132 8140", .checked = true}};
    control r_k{form, kind::option, "r_k", {.caption = "Koordinaten", .tag = "8133 8141"}};
    control gar_t{form, kind::label, "gar_t", {.tag = "0 8147"}};
    control gar_v{form, kind::bar, "gar_v", {.tag = "0 8147"}};
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7302 8142"}};
    control Abbr{form, kind::button, "Abbr", {.caption = "Abbr", .tag = "7301 8143"}};
    selwp_window();
};
extern selwp_window selwp;

struct selwp_state {
    bool accepted = false; ///< OK was pressed
};
inline selwp_state selwp_run;

/// Opens the window. True when something was chosen, which then stands in transfer.choice.
bool selwp_open();

/// What the controls say at the moment.
transfer_choice selwp_choice();
/// Shows how much the choice holds, and whether the receiver takes it.
void selwp_recount();

/// "00: TOUR": a route in a list.
std::string route_line(int index);
/// What a route runs through: its first and last point and how many there are.
std::string route_comment(int index);
/// The positions of its first and last point.
std::string route_positions(int index);

} // namespace velkoro

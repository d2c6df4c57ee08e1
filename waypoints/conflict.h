/// `einfüg_q`, the window that decides what happens when an incoming waypoint meets a stored one.
/// It shows both records side by side in one layout and takes one of three answers: keep the stored
/// one, take the new one, or keep both under a name of the user's. Whether there is anything to ask
/// is the batch's business (core/wayp_insert.h); the window is open only while it asks.
#pragma once

#include "core/code_page.h"
#include "core/hooks.h"
#include "core/window.h"

#include <string>

namespace velkoro {

/// Places of `wp_sel`.
inline constexpr int sel_both = 0, sel_old = 1, sel_new = 2;

struct einfüg_q_window {
    window form{"einfüg_q", "Waypoint schon vorhanden", "720"};
    control entf{form, kind::label, "entf", {.tag = "0 7945"}}; ///< distance with unit
    control wp_sel[3] = {
        {form,
         kind::option,
         "wp_sel",
         {.caption = "beide Waypoints übernehmen, neuen Waypoint umbenennen"_w, .tag = "721 722"},
         sel_both},
        {form,
         kind::option,
         "wp_sel",
         {.caption = "nur alten Waypoint behalten:", .tag = "723 724"},
         sel_old},
        {form,
         kind::option,
         "wp_sel",
         {.caption = "nur neuen Waypoint übernehmen:"_w, .tag = "725 726"},
         sel_new}};
    control beschr_a{form, kind::label, "beschr_a"}; ///< summary of the stored record
    control beschr_n{form, kind::label, "beschr_n"}; ///< summary of the new record
    control neunam{form, kind::text, "neunam", {.tag = "0 727"}};
    control Bezeichnung2{
        form, kind::label, "Bezeichnung2", {.caption = "Beschreibung", .tag = "728"}};
    control kom{form, kind::text, "kom", {.tag = "0 729"}};
    control ohne{
        form, kind::check, "ohne", {.caption = "künftig ohne Rückfrage"_w, .tag = "730 731"}};
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7302 732"}};
    control Abbr{form, kind::button, "Abbr", {.caption = "Abbr", .tag = "7301 733"}};
    einfüg_q_window();
};
extern einfüg_q_window einfüg_q;

struct conflict_state {
    int option = sel_both;                 ///< of wp_sel, as chosen last
    conflict_question* question = nullptr; ///< the one that the window asks, nullptr none
    bool answered = false;                 ///< OK was accepted
};
inline conflict_state conflicts;

/// Opens the window and returns the answer. With both kept, name and comment of the incoming record
/// are those of the user, the name being free. Cancel ends the batch; a question of the editor
/// (`silent`) has no Cancel: closing the window keeps the stored one. A question that comes while
/// another one stands ends its own batch. An index outside the store keeps the stored one.
conflict_answer conflict_ask(conflict_question& question);

struct conflict_summary {
    std::string old_text{}, new_text{};
    bool operator==(const conflict_summary&) const = default;
};
/// Both records as text for a font of fixed pitch: altitude, proximity, symbol, date and position,
/// each in a column that fits both, and on further lines the comment.
conflict_summary conflict_summaries(const wayp_rec& old_rec, const wayp_rec& new_rec);

/// Puts the window in place as the one who decides.
void conflict_install();

} // namespace velkoro

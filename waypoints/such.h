/// `such`, the search window: finds waypoints by a piece of their name or description and marks
/// their rows.
/// Names are compared as they stand, capital letters; at the beginning of a description, too, the
/// text counts as it was typed. Anywhere in a field capital and small letters are alike.
#pragma once

#include "core/code_page.h"
#include "core/window.h"

#include <string>
#include <string_view>

namespace velkoro {

struct such_window {
    window form{"such", "suchen", "700"};
    control stext{form, kind::text, "stext", {.tag = "0 703"}};
    control nam[2] = {
        {form,
         kind::option,
         "nam",
         {.caption = "des &Namens", .tag = "701 704", .checked = true},
         0},
        {form, kind::option, "nam", {.caption = "der &Beschreibung", .tag = "702 705"}, 1}};
    control Anf[2] = {
        {form,
         kind::option,
         "Anf",
         {.caption = "am &Anfang", .tag = "706 708", .checked = true},
         0},
        {form, kind::option, "Anf", {.caption = "an &beliebiger Stelle", .tag = "707 709"}, 1}};
    control mark{form,
                 kind::check,
                 "mark",
                 {.caption = "zur bestehenden &Markierung hinzufügen"_w, .tag = "710 711"}};
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7302 712"}};
    control Abbr{form, kind::button, "Abbr", {.caption = "Abbr", .tag = "7301 713"}};
    such_window();
};
extern such_window such;

/// Opens the window. Text and options are those of the last search, the marks are replaced unless
/// the user asks otherwise.
void such_open();

/// OK: marks what is found, brings the first match into view, counts the marks and closes the
/// window; without a match a message comes and the window stays. A blank text closes it at once.
/// Serves events once a second; a window closed meanwhile ends the search.
void such_OK();

/// True when `part` stands at the beginning of the field, exactly, or anywhere in it, in any case.
bool such_matches(std::string_view field, std::string_view part, bool anywhere);

struct such_state {
    bool searching = false; ///< such_OK is under way and may be pumping
};
inline such_state such_run;

/// Serves the menu entry `suchen`.
void such_install();

} // namespace velkoro

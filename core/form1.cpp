#include "core/form1.h"

#include <algorithm>

namespace velkoro {

form1_window Form1;

void disable_uninstalled(window& w)
{
    for (control* c : w.controls) {
        const bool is_menu = c->kind == kind::menu;
        if (!is_menu && c->kind != kind::button)
            continue;
        // A menu with entries of its own opens; only its entries act.
        const bool has_entries = is_menu && std::ranges::any_of(w.controls, [&](const control* e) {
                                     return e->in == c;
                                 });
        const bool dynamic_menu = c == &Form1.m_lang || c == &Form1.pr;
        if (!has_entries && !dynamic_menu && c->caption != "-" && !c->click)
            c->enabled = false;
    }
}

} // namespace velkoro

#include "core/window.h"

#include "core/platform.h"
#include "core/texts.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velkoro {
namespace {

std::vector<window*>& window_list()
{
    // Windows are global objects of several files: the list is made by the first of them.
    static std::vector<window*> list;
    return list;
}

void reopen_from_design(window& w)
{
    for (control* c : w.controls)
        static_cast<look&>(*c) = c->design;
}

} // namespace

control::control(window& w, enum kind k, const char* n, look l, int i)
    : look(std::move(l)), name(n), index(i), kind(k), form(&w), design(*this)
{
    w.controls.push_back(this);
}

control::control(window& w, control& menu, const char* n, look l, int i)
    : control(w, kind::menu, n, std::move(l), i)
{
    in = &menu;
}

control::~control()
{
    std::erase(form->controls, this);
}

window::window(const char* n, std::string cap, std::string tag_numbers) : name(n)
{
    caption = std::move(cap);
    tag = std::move(tag_numbers);
    design = *this;
    window_list().push_back(this);
}

window::~window()
{
    std::erase(window_list(), this);
}

control* window::find(std::string_view control_name, int control_index) const
{
    const auto hit = std::ranges::find_if(controls, [&](const control* c) {
        return c->name == control_name && c->index == control_index;
    });
    return hit == controls.end() ? nullptr : *hit;
}

const std::vector<window*>& all_windows()
{
    return window_list();
}

void open_window(window& w)
{
    if (!w.shown) {
        if (!w.keeps_state)
            reopen_from_design(w);
        translate_form(w);
        if (w.load)
            w.load();
        w.shown = true;
    }
    platform.show(w);
}

void run_window(window& w)
{
    w.modal = true;
    open_window(w);
    if (w.activate)
        w.activate();
    if (w.shown)
        platform.wait_closed(w);
    w.shown = false;
    platform.show(w);
    if (w.closed)
        w.closed();
}

bool close_window(window& w)
{
    if (w.query_close ? !w.query_close() : w.no_close)
        return false;
    w.shown = false;
    platform.show(w);
    if (!w.modal && w.closed)
        w.closed();
    return true;
}

} // namespace velkoro

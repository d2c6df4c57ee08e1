#include "waypoints/such.h"

#include "core/form1.h"
#include "core/platform.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "waypoints/list.h"

#include <cstdint>

namespace velkoro {
namespace {

constexpr double pump_every_s = 1.0;

row_list& list()
{
    return Form1.Waypl2.rows;
}

struct searching {
    searching() { such_run.searching = true; }
    ~searching() { such_run.searching = false; }
    searching(const searching&) = delete;
    searching& operator=(const searching&) = delete;
};

/// What the options said when the search began: they may change while events are served.
struct search_order {
    std::string part{};
    bool in_comments = false, anywhere = false, add = false;
};

search_order read_order()
{
    return {.part = std::string(trim(such.stext.text)),
            .in_comments = such.nam[1].checked,
            .anywhere = such.Anf[1].checked,
            .add = such.mark.checked};
}

void clear_marks()
{
    for (list_row& r : list().rows)
        r.marked = false;
}

struct search_result {
    int matches = 0;
    int first = -1; ///< store index of the first match in the list
    bool stopped = false;
};

search_result mark_matches(const search_order& order)
{
    search_result found;
    double last_pump = platform.ticks();
    // The rows are looked up anew for each: they may come, go and move while events are served.
    for (int row = 0; row < static_cast<int>(list().rows.size()); ++row) {
        const int index = wp_index(row);
        if (index < 0 || index > store.wp_top)
            continue;
        const wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
        if (such_matches(order.in_comments ? w.kom : w.nam, order.part, order.anywhere)) {
            list().rows[static_cast<std::size_t>(row)].marked = true;
            if (found.matches++ == 0)
                found.first = index;
        }
        if (const double now = platform.ticks(); now - last_pump >= pump_every_s) {
            last_pump = now;
            list().changed();
            platform.pump(0);
            if (!such.form.shown) {
                found.stopped = true;
                break;
            }
        }
    }
    list().changed();
    return found;
}

void show_first(int index)
{
    const int row = wp_row(index);
    if (row < 0)
        return;
    list().current = list().show_row = row;
    store.wp_cur = static_cast<std::int16_t>(index);
}

void capitals_for_names()
{
    if (such.nam[0].checked)
        such.stext.text = upper(such.stext.text);
}

} // namespace

such_window such;

such_window::such_window()
{
    form.keeps_state = true;
    form.load = [] {
        such.mark.checked = false;
        such.form.focus = &such.stext;
    };
    stext.change = capitals_for_names;
    for (control& option : nam)
        option.click = capitals_for_names;
    OK.click = such_OK;
    Abbr.click = [] { close_window(such.form); };
}

void such_open()
try {
    run_window(such.form);
} catch (...) {
    trap("such_open");
}

void such_OK()
try {
    if (such_run.searching)
        return;
    const searching now;
    const search_order order = read_order();
    if (order.part.empty()) {
        close_window(such.form);
        return;
    }
    if (!order.add)
        clear_marks();
    const search_result found = mark_matches(order);
    mark_count();
    if (found.matches > 0)
        show_first(found.first);
    if (found.stopped)
        return;
    if (found.matches == 0) {
        say(7730, buttons::ok, icon::critical, order.part);
        such.form.focus = &such.stext;
        return;
    }
    close_window(such.form);
} catch (...) {
    trap("such_OK");
}

bool such_matches(std::string_view field, std::string_view part, bool anywhere)
{
    return anywhere ? find_nocase(field, part) != std::string_view::npos : field.starts_with(part);
}

void such_install()
{
    such_run = {};
    Form1.suchen.click = such_open;
}

} // namespace velkoro

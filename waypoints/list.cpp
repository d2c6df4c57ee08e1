#include "waypoints/list.h"

#include "core/cmd_open.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/texts.h"
#include "core/trap.h"
#include "waypoints/list_sort.h"
#include "waypoints/list_variable.h"

#include <algorithm>

namespace velkoro {
namespace {

// Beyond this a drop-down is no help: it then offers the marked waypoints only.
constexpr std::size_t refp_most = 2000;

// Key numbers of the platform.
constexpr int key_escape = 0x01000000, key_delete = 0x01000007, key_backspace = 0x01000003;

row_list& list()
{
    return Form1.Waypl2.rows;
}

int row_count()
{
    return static_cast<int>(list().rows.size());
}

list_row* row_at(int row)
{
    return row >= 0 && row < row_count() ? &list().rows[static_cast<std::size_t>(row)] : nullptr;
}

void press(control& c)
{
    if (c.enabled && c.click)
        c.click();
}

void row_added(int index, bool marked)
{
    list().rows.push_back({.data = index, .marked = marked});
    if (wayp_list.row_of_good) {
        if (wayp_list.row_of.size() <= static_cast<std::size_t>(index))
            wayp_list.row_of.resize(static_cast<std::size_t>(index) + 1, -1);
        wayp_list.row_of[static_cast<std::size_t>(index)] = row_count() - 1;
    }
    if (marked)
        shell.mark_defer = std::max(platform.clock(), 0.001);
    variable_forget();
    list().changed();
}

void rows_compacted(const std::vector<int>& new_index)
{
    const auto moved = [&](int index) {
        return index >= 0 && index < static_cast<int>(new_index.size())
                   ? new_index[static_cast<std::size_t>(index)]
                   : -1;
    };
    std::vector<char> snapshot(wayp_list.snapshot.size());
    for (std::size_t i = 0; i < wayp_list.snapshot.size(); ++i) {
        const int to = moved(static_cast<int>(i));
        if (to >= 0 && wayp_list.snapshot[i])
            snapshot[static_cast<std::size_t>(to)] = 1;
    }
    wayp_list.snapshot = std::move(snapshot);

    // The row behind the ones that went becomes the current one, so that the keyboard goes on.
    int kept_before = 0, row = 0;
    for (list_row& r : list().rows) {
        r.data = moved(r.data);
        if (row++ < list().current && r.data >= 0)
            ++kept_before;
    }
    std::erase_if(list().rows, [](const list_row& r) { return r.data < 0; });
    if (list().current >= 0)
        list().current = std::min(kept_before, row_count() - 1);
    wayp_list.row_of_good = false;
    variable_forget();
    marks_changed();
}

std::vector<int> marked_indexes()
{
    std::vector<int> out;
    for (const list_row& r : list().rows)
        if (r.marked)
            out.push_back(r.data);
    return out;
}

std::vector<int> all_indexes()
{
    std::vector<int> out;
    out.reserve(list().rows.size());
    for (const list_row& r : list().rows)
        out.push_back(r.data);
    return out;
}

bool timer_task()
{
    if (!job.code.empty() || list_sort.sorting) // the batch makes its rows itself
        return true;
    if (store.wp_dirty)
        list_update();
    refp_fill();
    list_states();
    status_line();
    return true;
}

// Handlers
// ----------------------------------------------------------------------------------------------

void mark_all_click()
{
    for (list_row& r : list().rows)
        r.marked = true;
    marks_changed();
    mark_count();
}

void mark_inv_click()
{
    for (list_row& r : list().rows)
        r.marked = !r.marked;
    marks_changed();
    mark_count();
}

void mark_recover_click()
{
    for (list_row& r : list().rows) {
        const auto index = static_cast<std::size_t>(r.data);
        r.marked = index < wayp_list.snapshot.size() && wayp_list.snapshot[index] != 0;
    }
    marks_changed();
    mark_count();
}

void delete_click()
try {
    wayp_delete(-1);
    mark_count();
} catch (...) {
    trap("B_lösch");
}

void wayp_neu_click()
try {
    if (store.wp_dirty && (store.wp_top >= 0 || store.rou_top >= 0) &&
        say(7742, buttons::ok_cancel, icon::question) != answer::ok)
        return;
    wayp_clear();
    settings.wp_file.clear();
    Form1.wayp_titel.text.clear();
    list_refill();
    mark_count();
    hooks.route_refresh();
    hooks.map_changed();
    shell_show_state();
} catch (...) {
    trap("wayp_neu");
}

void refp_change()
try {
    const auto n = static_cast<std::size_t>(std::max(0, Form1.refp.selected));
    if (Form1.refp.selected < 0 || n >= wayp_list.refp_index.size())
        return;
    const int index = wayp_list.refp_index[n];
    if (index > store.wp_top)
        return; // deleted since the entries were made
    const wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
    store.refp_name = w.nam;
    store.refp_pos = w.pos;
    if (order_in_force() == sort_entry::ref_distance || order_in_force() == sort_entry::ref_bearing)
        sort_apply();
    list().changed();
} catch (...) {
    trap("refp");
}

bool list_key(int key, bool ctrl, bool)
{
    if (!ctrl && (key == key_delete || key == key_backspace)) {
        press(Form1.B_lösch);
        return true;
    }
    if (key == key_escape && list_sort.sorting) {
        list_sort.break_sort = true;
        return true;
    }
    if (!ctrl)
        return false;
    switch (key) {
    case 'A': press(Form1.B_alle); return true;
    case 'C': press(Form1.B_kop); return true;
    case 'V': press(Form1.B_einfüg); return true;
    case 'X': press(Form1.B_aus); return true;
    default: return false;
    }
}

void files_dropped(const std::vector<std::string>& paths)
{
    for (const std::string& path : paths)
        cmd_open(path, false);
}

void make_columns()
{
    list().columns = {{.width = 110},
                      {.width = 240, .stretch = true},
                      {.width = 80, .right = true},
                      {.width = 150},
                      {.width = 110},
                      {.width = 70, .right = true},
                      {.width = 220}};
    list().cell = [](int row, int column) {
        return wp_row_text(wp_index(row), static_cast<list_col>(column), order_in_force()).shown;
    };
    list().glyph = [](int row, int column) {
        const int index = wp_index(row);
        if (column != static_cast<int>(list_col::symbol) || index < 0 || index > store.wp_top)
            return std::string{};
        return symbol_glyph(store.wp[static_cast<std::size_t>(index)].symb);
    };
    list().dim = [](int row, int column) {
        const int index = wp_index(row);
        return column == static_cast<int>(list_col::proximity) && index >= 0 &&
               index <= store.wp_top && store.wp[static_cast<std::size_t>(index)].prox == 0;
    };
}

} // namespace

void wayp_list_install()
{
    wayp_list = {};
    variable = {};
    list() = {};
    make_columns();
    list_sort_install();

    hooks.row_added = row_added;
    hooks.row_changed = row_refresh;
    hooks.rows_compacted = rows_compacted;
    hooks.rows_reset = list_refill;
    hooks.marked_rows = marked_indexes;
    hooks.list_order = all_indexes;
    hooks.mark_count = mark_count;
    hooks.language_changed = [] {
        show_headings();
        mark_count(); // its words stand in the status line
    };

    control& w = Form1.Waypl2;
    w.row_click = [](int row) {
        store.wp_cur = static_cast<std::int16_t>(wp_index(row));
        list().current = row;
        marks_changed();
    };
    w.change = marks_changed;
    w.key = list_key;
    w.right_click = [] { platform.popup(Form1.bbb); };
    w.files_dropped = files_dropped;

    Form1.refp.change = refp_change;
    Form1.B_alle.click = mark_all_click;
    Form1.mark_inv.click = mark_inv_click;
    Form1.mark_recover.click = mark_recover_click;
    Form1.B_lösch.click = delete_click;
    Form1.Edit_w[2].click = delete_click;
    Form1.wayp_neu.click = wayp_neu_click;
    Form1.wayp_titel.change = [] { store.wp_dirty = true; };
    const auto format_change = [] {
        options_write();
        row_refresh(-1, false);
    };
    for (control* c : {&Form1.posform, &Form1.Datum})
        if (!c->change) // the coordinates may have put theirs first
            c->change = format_change;

    shell_add(shell.start, 18, "list_headings", [] {
        list_refill();
        return true;
    });
    shell_add(shell.periodic, 2, "list", timer_task);
    list_states();
}

bool wp_mark(int row)
{
    const list_row* r = row_at(row);
    return r && r->marked;
}

int wp_index(int row)
{
    const list_row* r = row_at(row);
    return r ? r->data : -1;
}

int wp_row(int index)
{
    if (!wayp_list.row_of_good) {
        wayp_list.row_of.assign(list().rows.size(), -1);
        int row = 0;
        for (const list_row& r : list().rows) {
            if (r.data >= static_cast<int>(wayp_list.row_of.size()))
                wayp_list.row_of.resize(static_cast<std::size_t>(r.data) + 1, -1);
            if (r.data >= 0)
                wayp_list.row_of[static_cast<std::size_t>(r.data)] = row;
            ++row;
        }
        wayp_list.row_of_good = true;
    }
    return index >= 0 && index < static_cast<int>(wayp_list.row_of.size())
               ? wayp_list.row_of[static_cast<std::size_t>(index)]
               : -1;
}

void row_refresh(int index, bool mark)
{
    if (index < 0) {
        show_headings();
        return;
    }
    variable_forget();
    list_row* r = mark ? row_at(wp_row(index)) : nullptr;
    if (r && !r->marked) {
        r->marked = true;
        shell.mark_defer = std::max(platform.clock(), 0.001);
    }
    list().changed();
}

void list_refill()
{
    list().rows.assign(static_cast<std::size_t>(store.wp_top + 1), {});
    for (int i = 0; i <= store.wp_top; ++i)
        list().rows[static_cast<std::size_t>(i)].data = i;
    list().current = row_count() > 0 ? 0 : -1;
    wayp_list.row_of_good = false;
    wayp_list.snapshot.clear();
    variable_forget();
    sort_apply();
}

void list_update()
{
    const int all = store.wp_top + 1;
    if (row_count() == all)
        return;
    std::erase_if(list().rows, [&](const list_row& r) { return r.data >= all; });
    wayp_list.row_of_good = false;
    for (int i = 0; i < all; ++i)
        if (wp_row(i) < 0)
            row_added(i, false);
    list().current = std::min(list().current, row_count() - 1);
    list().changed();
}

void mark_count()
{
    if (row_count() != store.wp_top + 1)
        return; // the rows are being refilled; the count comes after that
    wayp_list.marks = static_cast<int>(
        std::ranges::count_if(list().rows, [](const list_row& r) { return r.marked; }));
    Form1.anz.caption = row_count() == 0      ? text(7602)
                        : wayp_list.marks > 1 ? text(7651, wayp_list.marks, row_count())
                                              : std::string{};
    wayp_list.said_empty = row_count() == 0;
    if (wayp_list.marks > 1)
        mark_snapshot();
    shell.mark_defer = 0;
    list_states();
}

void marks_changed()
{
    list().changed();
    shell.mark_defer = std::max(platform.clock(), 0.001); // 0 stands for nothing pending
    list_states();
}

void mark_snapshot()
{
    wayp_list.snapshot.assign(static_cast<std::size_t>(store.wp_top + 1), 0);
    for (const list_row& r : list().rows)
        if (r.marked && r.data <= store.wp_top)
            wayp_list.snapshot[static_cast<std::size_t>(r.data)] = 1;
}

void list_states()
{
    const bool rows = !list().rows.empty();
    if (wayp_list.states_version != list().version) {
        wayp_list.states_version = list().version;
        wayp_list.marked_now = static_cast<int>(
            std::ranges::count_if(list().rows, [](const list_row& r) { return r.marked; }));
    }
    const bool marked = wayp_list.marked_now > 0;
    const bool data = rows || store.rou_top >= 0;
    const std::pair<control*, bool> needs[] = {
        {&Form1.Wayp_Datei_Speich[0], data},
        {&Form1.Wayp_Datei_Speich[1], data},
        {&Form1.druck, data},
        {&Form1.wayp_neu, data},
        {&Form1.suchen, rows},
        {&Form1.B_alle, rows},
        {&Form1.mark_inv, rows},
        {&Form1.mark_g, rows},
        {&Form1.mark_recover, rows && !wayp_list.snapshot.empty()},
        {&Form1.sort_oben, marked},
        {&Form1.neu_mitt, wayp_list.marked_now > 1},
        {&Form1.B_lösch, marked},
        {&Form1.B_aus, marked},
        {&Form1.B_kop, marked},
        {&Form1.R_W_einfüg, marked},
        {&Form1.Edit_w[1], rows},
        {&Form1.Edit_w[2], marked}};
    for (const auto& [c, possible] : needs)
        c->enabled = possible && c->click;
}

void status_line()
{
    const bool empty = list().rows.empty();
    if (wayp_list.said_empty == empty)
        return;
    wayp_list.said_empty = empty;
    Form1.anz.caption = empty ? text(7602) : std::string{};
}

void refp_fill()
{
    if (wayp_list.refp_version == list().version)
        return;
    wayp_list.refp_version = list().version;
    const bool few = list().rows.size() <= refp_most;
    std::vector<int> offered;
    for (const list_row& r : list().rows)
        if ((few || r.marked) && r.data <= store.wp_top && offered.size() < refp_most)
            offered.push_back(r.data);
    const auto name_of = [](int index) -> const std::string& {
        return store.wp[static_cast<std::size_t>(index)].nam;
    };
    std::ranges::stable_sort(offered, [&](int a, int b) { return name_of(a) < name_of(b); });
    Form1.refp.items.clear();
    Form1.refp.selected = -1;
    for (const int index : offered) {
        if (name_of(index) == store.refp_name)
            Form1.refp.selected = static_cast<int>(Form1.refp.items.size());
        Form1.refp.items.push_back(name_of(index));
    }
    wayp_list.refp_index = std::move(offered);
    Form1.refp.enabled = !Form1.refp.items.empty();
}

} // namespace velkoro

#include "waypoints/list_sort.h"

#include "core/hooks.h"
#include "core/job.h"
#include "core/platform.h"
#include "core/shell.h"
#include "core/texts.h"
#include "core/trap.h"
#include "waypoints/list.h"
#include "waypoints/list_variable.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

namespace velkoro {
namespace {

row_list& list()
{
    return Form1.Waypl2.rows;
}

int row_count()
{
    return static_cast<int>(list().rows.size());
}

int column_of(sort_entry order)
{
    switch (order) {
    case sort_entry::name: return static_cast<int>(list_col::name);
    case sort_entry::comment: return static_cast<int>(list_col::comment);
    case sort_entry::altitude: return static_cast<int>(list_col::altitude);
    case sort_entry::symbol: return static_cast<int>(list_col::symbol);
    case sort_entry::proximity: return static_cast<int>(list_col::proximity);
    case sort_entry::latitude:
    case sort_entry::longitude: return static_cast<int>(list_col::position);
    default: return static_cast<int>(list_col::variable);
    }
}

sort_entry order_of(list_col column)
{
    switch (column) {
    case list_col::comment: return sort_entry::comment;
    case list_col::altitude: return sort_entry::altitude;
    case list_col::symbol: return sort_entry::symbol;
    case list_col::proximity: return sort_entry::proximity;
    case list_col::position: return sort_entry::latitude;
    case list_col::variable:
        return has_variable_column(order_in_force()) ? order_in_force() : sort_entry::date;
    default: return sort_entry::name;
    }
}

// What a long sort shows, once a second, while it prepares the texts; events are served twice as
// often. False: stop.
bool sort_progress(int done, int all, std::uint64_t version)
{
    if (!op_due())
        return true;
    const double now = platform.ticks();
    if (now >= list_sort.progress_due) {
        list_sort.progress_due = now + 1;
        Form1.anz.caption = text(7753, 100LL * done / all);
    }
    platform.pump(0);
    return !list_sort.break_sort && list().version == version && row_count() == all;
}

void sort_rows(sort_entry order)
{
    const int n = row_count();
    const std::uint64_t version = list().version;
    op_restart();
    list_sort.progress_due = 0;
    variable_forget(); // routes and tracks change without a word to the list
    std::vector<std::string> texts(static_cast<std::size_t>(n));
    for (int row = 0; row < n; ++row) {
        texts[static_cast<std::size_t>(row)] = wp_sort_text(wp_index(row), order);
        if (!sort_progress(row, n, version))
            return;
    }
    std::vector<int> from(texts.size());
    std::iota(from.begin(), from.end(), 0);
    const auto text_of = [&](int row) -> const std::string& {
        return texts[static_cast<std::size_t>(row)];
    };
    const bool down = list().sort_down;
    std::ranges::stable_sort(from, [&](int a, int b) {
        return down ? text_of(b) < text_of(a) : text_of(a) < text_of(b);
    });

    std::vector<list_row> sorted(texts.size());
    int current = -1;
    for (std::size_t to = 0; to < from.size(); ++to) {
        const auto row = static_cast<std::size_t>(from[to]);
        if (from[to] == list().current)
            current = static_cast<int>(to);
        sorted[to] = std::move(list().rows[row]);
        sorted[to].sort = std::move(texts[row]);
    }
    list().rows = std::move(sorted);
    list().current = current;
    wayp_list.row_of_good = false;
    list().changed();
}

struct wait_cursor {
    wait_cursor() { platform.busy(true); }
    ~wait_cursor() { platform.busy(false); }
    wait_cursor(const wait_cursor&) = delete;
    wait_cursor& operator=(const wait_cursor&) = delete;
};

// Handlers
// ----------------------------------------------------------------------------------------------

void sort_change()
try {
    list().sort_down = false;
    options_write();
    sort_apply();
} catch (...) {
    trap("sort");
}

void header_click(int column)
try {
    if (column < 0 || column >= list_cols)
        return;
    const bool again = list().sort_column == column;
    if (!again)
        Form1.sort.selected = static_cast<int>(order_of(static_cast<list_col>(column)));
    list().sort_down = again && !list().sort_down;
    options_write();
    sort_apply();
} catch (...) {
    trap("Waypl2_ColumnClick");
}

void sort_oben_click()
try {
    const int current_index = wp_index(list().current);
    std::stable_partition(list().rows.begin(), list().rows.end(),
                          [](const list_row& r) { return r.marked; });
    wayp_list.row_of_good = false;
    list().current = wp_row(current_index);
    list().show_row = row_count() > 0 ? 0 : -1;
    list().sort_column = -1;
    list().changed();
} catch (...) {
    trap("sort_oben");
}

} // namespace

void list_sort_install()
{
    list_sort = {};
    hooks.sort_rows = sort_apply;
    hooks.units_changed = [] {
        if (depends_on_unit(order_in_force()))
            sort_apply();
        else // an order made by hand stays
            show_headings();
    };
    Form1.sort.change = sort_change;
    Form1.Waypl2.header_click = header_click;
    Form1.sort_oben.click = sort_oben_click;
}

sort_entry order_in_force()
{
    const int n = Form1.sort.selected;
    return n >= 0 && n < sort_entries ? static_cast<sort_entry>(n) : sort_entry::name;
}

bool depends_on_unit(sort_entry order)
{
    return has_variable_column(order) && order != sort_entry::date && order != sort_entry::routes;
}

void show_headings()
{
    const sort_entry order = order_in_force();
    std::vector<list_column>& columns = list().columns;
    for (int c = 0; c < std::min(list_cols, static_cast<int>(columns.size())); ++c)
        columns[static_cast<std::size_t>(c)].heading =
            list_heading(static_cast<list_col>(c), order);
    // Distances are numbers, dates and lists of routes are not.
    columns[static_cast<std::size_t>(list_col::variable)].right = depends_on_unit(order);
    list().sort_column = column_of(order);
    list().changed();
}

void wayp_sort_do(sort_entry order)
try {
    if (list_sort.sorting) { // asked for by an event that a long sort has served
        list_sort.break_sort = list_sort.sort_again = true;
        return;
    }
    if (store.wp_top < 0 || row_count() == 0)
        return;
    list_sort.sorting = true;
    const std::string status = Form1.anz.caption;
    const wait_cursor shown;
    variable.held = true;
    do {
        list_sort.break_sort = list_sort.sort_again = false;
        sort_rows(order);
        order = order_in_force();
    } while (list_sort.sort_again);
    Form1.anz.caption = status;
    variable.held = false;
    list_sort.sorting = false;
} catch (...) {
    list_sort.sorting = false;
    variable.held = false;
    trap("wayp_sort_do");
}

void sort_apply()
{
    if (list_sort.no_sort)
        return;
    show_headings();
    wayp_sort_do(order_in_force());
    list_states();
    status_line();
}

} // namespace velkoro

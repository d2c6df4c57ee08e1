#include "comm/selrou.h"

#include "comm/selwp.h"
#include "comm/transfer.h"
#include "core/job.h"
#include "core/route_lists.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>

namespace velkoro {
namespace {

enum { column_name, column_comment };

row_list& list()
{
    return selrou.routen_m.rows;
}

void sort_rows()
{
    const int column = selrou_run.sort_column;
    const bool down = selrou_run.sort_down;
    const auto key = [column](const list_row& r) {
        return column < 0 ? std::string{} : upper(r.cells[static_cast<std::size_t>(column)]);
    };
    std::ranges::stable_sort(list().rows, {}, &list_row::data);
    std::ranges::stable_sort(list().rows, [&](const list_row& a, const list_row& b) {
        return down ? key(b) < key(a) : key(a) < key(b);
    });
    list().sort_column = column;
    list().sort_down = down;
    list().changed();
}

void show_comment()
{
    const int row = list().current;
    const bool known = row >= 0 && row < static_cast<int>(list().rows.size());
    std::string names;
    if (known)
        for (const int i : route_points(store.rou[static_cast<std::size_t>(
                 list().rows[static_cast<std::size_t>(row)].data)]))
            names += (names.empty() ? "" : " ") + store.wp[static_cast<std::size_t>(i)].nam;
    selrou.com.caption = names;
}

void fill()
{
    if (selrou_run.title > 0)
        selrou.form.caption = text(selrou_run.title);
    std::vector<list_row> rows;
    for (int r = 0; r <= store.rou_top; ++r) {
        const bool marked = std::ranges::any_of(
            list().rows, [r](const list_row& old) { return old.data == r && old.marked; });
        rows.push_back({.data = r, .marked = marked, .cells = {route_line(r), route_comment(r)}});
    }
    list().rows = std::move(rows);
    list().columns = {{.heading = text(8134), .width = 170},
                      {.heading = text(8132), .stretch = true}};
    sort_rows();
}

void selrou_load()
{
    selrou_run.accepted = false;
    list() = {};
    fill();
    if (!list().rows.empty())
        list().current = list().show_row = 0;
    show_comment();
    selrou.OK.enabled = false;
    selrou.form.focus = &selrou.routen_m;
}

void row_chosen(int row)
{
    list().current = row;
    show_comment();
    selrou.OK.enabled = std::ranges::any_of(list().rows, &list_row::marked);
}

void sort_by(int column)
{
    if (column == selrou_run.sort_column)
        selrou_run.sort_down = !selrou_run.sort_down;
    else
        selrou_run.sort_down = false;
    selrou_run.sort_column = column;
    sort_rows();
}

void accept()
{
    selrou_run.accepted = true;
    close_window(selrou.form);
}

} // namespace

selrou_window selrou;

selrou_window::selrou_window()
{
    form.load = selrou_load;
    form.translated = [] {
        if (selrou.form.shown)
            fill();
        else if (selrou_run.title > 0)
            selrou.form.caption = text(selrou_run.title);
    };
    routen_m.row_click = row_chosen;
    routen_m.row_open = [](int row) {
        list().rows[static_cast<std::size_t>(row)].marked = true;
        accept();
    };
    routen_m.header_click = sort_by;
    OK.click = accept;
}

std::vector<int> selrou_open(int title)
{
    selrou_run.title = title;
    selrou_run.accepted = false;
    run_window(selrou.form);
    std::vector<int> chosen;
    if (!selrou_run.accepted)
        return chosen;
    for (const list_row& r : list().rows)
        if (r.marked && r.data <= store.rou_top)
            chosen.push_back(r.data);
    return chosen;
}

void selrou_send()
try {
    const std::vector<int> chosen = selrou_open();
    if (chosen.empty())
        return;
    transfer.choice = {};
    transfer.choice.waypoints = false;
    transfer.choice.routes = true;
    transfer.choice.route_marks.assign(static_cast<std::size_t>(store.rou_top + 1), '0');
    for (const int r : chosen)
        transfer.choice.route_marks[static_cast<std::size_t>(r)] = '1';
    run_job("R_S");
} catch (...) {
    trap("selrou");
}

} // namespace velkoro

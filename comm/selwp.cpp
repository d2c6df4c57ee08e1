#include "comm/selwp.h"

#include "coords/coord_text.h"
#include "core/hooks.h"
#include "core/num_text.h"
#include "core/route_lists.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr std::uint32_t warning_ground = 0xB4B4FF; // a light red

/// The texts of the second column.
std::string shown_beside(int index)
{
    return selwp.r_k.checked ? route_positions(index) : route_comment(index);
}

void fill_rows()
{
    row_list& list = selwp.routen_m.rows;
    std::vector<list_row> rows;
    for (int r = 0; r <= store.rou_top; ++r) {
        const bool marked = static_cast<std::size_t>(r) < list.rows.size() &&
                            list.rows[static_cast<std::size_t>(r)].marked;
        rows.push_back({.data = r, .marked = marked, .cells = {route_line(r), shown_beside(r)}});
    }
    list.rows = std::move(rows);
    list.columns = {{.heading = text(8134), .width = 170},
                    {.heading = text(selwp.r_k.checked ? 8133 : 8132), .stretch = true}};
    list.changed();
}

/// What can be chosen depends on what there is.
void states()
{
    const bool routes = store.rou_top >= 0;
    selwp.ausw_w.enabled = store.wp_top >= 0;
    selwp.ausw_wm.enabled = selwp.ausw_w.checked && !hooks.marked_rows().empty();
    selwp.ausw_r.enabled = routes;
    selwp.ausw_rm.enabled = selwp.routen_m.enabled = routes && selwp.ausw_r.checked;
}

void selwp_load()
{
    selwp_run.accepted = false;
    const bool marks = !hooks.marked_rows().empty();
    selwp.ausw_w.checked = store.wp_top >= 0;
    selwp.ausw_wm.checked = marks;
    selwp.ausw_r.checked = selwp.ausw_rm.checked = false;
    selwp.routen_m.rows = {};
    fill_rows();
    selwp_recount();
}

bool over_route_limits(const std::vector<int>& routes)
{
    const auto long_route = [](int r) {
        const route_rec& route = store.rou[static_cast<std::size_t>(r)];
        return static_cast<int>(list_tokens(route.wps).size()) > gar_option(gar_place::mwp_rou);
    };
    return static_cast<int>(routes.size()) > gar_option(gar_place::mrou) ||
           std::ranges::any_of(routes, long_route);
}

void choice_changed()
try {
    selwp_recount();
} catch (...) {
    trap("selwp");
}

/// Marks in the list say which routes are meant.
void list_marked(int)
{
    if (std::ranges::any_of(selwp.routen_m.rows.rows, &list_row::marked))
        selwp.ausw_rm.checked = true;
    choice_changed();
}

void accept()
{
    transfer.choice = selwp_choice();
    selwp_run.accepted = true;
    close_window(selwp.form);
}

} // namespace

selwp_window selwp;

selwp_window::selwp_window()
{
    form.load = selwp_load;
    form.translated = [] {
        if (!selwp.form.shown)
            return;
        fill_rows();
        selwp_recount();
    };
    for (control* c : {&ausw_w, &ausw_wm, &ausw_r, &ausw_rm})
        c->click = choice_changed;
    routen_m.row_click = list_marked;
    for (control* c : {&r_b, &r_k})
        c->click = fill_rows;
    OK.click = accept;
    Abbr.click = [] { close_window(selwp.form); };
}

bool selwp_open()
{
    selwp_run.accepted = false;
    run_window(selwp.form);
    return selwp_run.accepted;
}

transfer_choice selwp_choice()
{
    transfer_choice c;
    c.waypoints = selwp.ausw_w.checked;
    c.marked_only = selwp.ausw_wm.checked && selwp.ausw_wm.enabled;
    c.routes = selwp.ausw_r.checked;
    const std::vector<list_row>& rows = selwp.routen_m.rows.rows;
    for (int r = 0; r <= store.rou_top; ++r) {
        const auto i = static_cast<std::size_t>(r);
        const bool sent = !selwp.ausw_rm.checked || (i < rows.size() && rows[i].marked);
        c.route_marks += c.routes && sent ? '1' : '0';
    }
    return c;
}

void selwp_recount()
{
    states();
    const transfer_choice choice = selwp_choice();
    const std::vector<int> routes = chosen_routes(choice);
    const int waypoints = static_cast<int>(chosen_waypoints(choice).size());
    const int limit = gar_option(gar_place::mwp);
    const bool too_many_routes = over_route_limits(routes);
    std::string shown = text(3860, waypoints, static_cast<long long>(routes.size()));
    if (waypoints > limit)
        shown = text(3870, waypoints);
    else if (too_many_routes)
        shown = text(3880, static_cast<long long>(routes.size()));
    selwp.gar_t.caption = shown;
    selwp.gar_t.back = waypoints > limit || too_many_routes ? warning_ground : own_colour;
    selwp.gar_v.min = 0;
    selwp.gar_v.max = std::max(limit, 1);
    selwp.gar_v.value = std::min(waypoints, selwp.gar_v.max);
    selwp.OK.enabled = waypoints > 0 || !routes.empty();
}

std::string route_line(int index)
{
    return pic(index, "00") + ": " +
           std::string(trim(store.rou[static_cast<std::size_t>(index)].nam));
}

std::string route_comment(int index)
{
    const std::vector<int> points = route_points(store.rou[static_cast<std::size_t>(index)]);
    if (points.empty())
        return {};
    const std::string& first = store.wp[static_cast<std::size_t>(points.front())].nam;
    const std::string& last = store.wp[static_cast<std::size_t>(points.back())].nam;
    return text(8150, first, last, std::to_string(points.size()));
}

std::string route_positions(int index)
{
    const std::vector<int> points = route_points(store.rou[static_cast<std::size_t>(index)]);
    if (points.empty())
        return {};
    return position_line(store.wp[static_cast<std::size_t>(points.front())].pos) + " - " +
           position_line(store.wp[static_cast<std::size_t>(points.back())].pos);
}

} // namespace velkoro

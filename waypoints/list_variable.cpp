#include "waypoints/list_variable.h"

#include "coords/distance.h"
#include "coords/units.h"
#include "core/hooks.h"
#include "core/num_text.h"
#include "core/text_tools.h"

#include <algorithm>
#include <utility>

namespace velkoro {
namespace {

constexpr std::size_t no_route_width = 20;

const wayp_rec& stored(int index)
{
    return store.wp[static_cast<std::size_t>(index)];
}

// Reference
// ----------------------------------------------------------------------------------------------

double ref_bearing(const wayp_rec& w)
{
    return static_cast<double>(dist_flat(w.pos, store.refp_pos).bearing);
}

std::string bearing_text(double bearing)
{
    const std::string whole = pic(bearing, "000");
    return (whole == "360" ? "000" : whole) + "°  "_w;
}

row_text reference_text(const wayp_rec& w, bool by_bearing)
{
    const double distance = hooks.distance(w.pos, store.refp_pos), bearing = ref_bearing(w);
    return {.sort = pic(by_bearing ? bearing : distance, "00000.000"),
            .shown = pic(distance, "0.00") + " " + dist_label() + "  " + bearing_text(bearing)};
}

// Routes
// ----------------------------------------------------------------------------------------------

bool routes_are_known()
{
    if (variable.held && !variable.lists.empty())
        return true;
    const auto count = static_cast<std::size_t>(store.rou_top + 1);
    return variable.lists.size() == count &&
           std::equal(variable.lists.begin(), variable.lists.end(), store.rou.begin(),
                      [](const std::string& a, const route_rec& b) { return a == b.wps; });
}

void find_routes()
{
    variable.lists.clear();
    variable.routes.clear();
    std::unordered_map<std::string, int> last; // a route may hold a waypoint twice
    for (int r = 0; r <= store.rou_top; ++r) {
        variable.lists.push_back(store.rou[static_cast<std::size_t>(r)].wps);
        std::string_view keys = variable.lists.back();
        while (!keys.empty()) {
            const std::string key(next_field(keys, '$'));
            if (std::exchange(last[key], r + 1) == r + 1)
                continue;
            std::string& numbers = variable.routes[key];
            numbers += (numbers.empty() ? "" : ",") + std::to_string(r + 1);
        }
    }
}

row_text routes_text(int index)
{
    if (!routes_are_known())
        find_routes();
    const auto it = variable.routes.find(wp_key(index));
    const std::string shown =
        it == variable.routes.end() ? std::string(no_route_width, '-') : it->second;
    return {.sort = shown, .shown = shown};
}

// Nearest of many
// ----------------------------------------------------------------------------------------------

row_text distance_text(std::optional<float> distance)
{
    if (!distance)
        return {.sort = pic(no_distance, "00000.000"), .shown = "-.-"};
    const auto d = static_cast<double>(*distance);
    return {.sort = pic(d, "00000.000"), .shown = pic(d, "0.00")};
}

const place_tree& waypoint_tree()
{
    if (!variable.waypoints) {
        std::vector<place> places;
        places.reserve(static_cast<std::size_t>(store.wp_top + 1));
        for (int i = 0; i <= store.wp_top; ++i)
            places.push_back({stored(i).pos, i});
        variable.waypoints = place_tree_of(std::move(places));
    }
    return *variable.waypoints;
}

const place_tree& track_tree()
{
    if (!variable.held && variable.track_top != store.trk_top)
        variable.track_points.reset();
    if (!variable.track_points) {
        std::vector<place> places;
        places.reserve(static_cast<std::size_t>(store.trk_top + 1));
        for (std::int32_t i = 0; i <= store.trk_top; ++i)
            places.push_back({store.trk[static_cast<std::size_t>(i)].pos, i});
        variable.track_top = store.trk_top;
        variable.track_points = place_tree_of(std::move(places));
    }
    return *variable.track_points;
}

const place_tree& route_tree()
{
    if (!variable.route_points || !variable.held) {
        std::vector<int> chosen = hooks.chosen_routes();
        const bool known = routes_are_known();
        if (!known)
            find_routes();
        if (!known || chosen != variable.chosen)
            variable.route_points.reset();
        variable.chosen = std::move(chosen);
    }
    if (!variable.route_points) {
        std::vector<place> places;
        for (const int route : variable.chosen) {
            if (route < 0 || route > store.rou_top)
                continue;
            std::string_view keys = store.rou[static_cast<std::size_t>(route)].wps;
            while (!keys.empty()) {
                const int index = wp_find_key(next_field(keys, '$'), {}, -1, store.wp_top);
                if (index >= 0)
                    places.push_back({stored(index).pos, index});
            }
        }
        variable.route_points = place_tree_of(std::move(places));
    }
    return *variable.route_points;
}

} // namespace

row_text variable_text(int index, sort_entry entry)
{
    const wayp_rec& w = stored(index);
    switch (entry) {
    case sort_entry::ref_distance: return reference_text(w, false);
    case sort_entry::ref_bearing: return reference_text(w, true);
    case sort_entry::nearest_wp:
        return distance_text(nearest_distance(waypoint_tree(), w.pos, index));
    case sort_entry::routes: return routes_text(index);
    case sort_entry::route_distance: return distance_text(nearest_distance(route_tree(), w.pos));
    case sort_entry::track_distance: return distance_text(nearest_distance(track_tree(), w.pos));
    default: return {.sort = pic(w.dat, "00000000000"), .shown = wp_date_text(w.dat)};
    }
}

void variable_forget()
{
    variable = {.held = variable.held};
}

} // namespace velkoro

#include "waypoints/selection.h"

#include "core/hooks.h"
#include "core/names.h"
#include "core/store.h"
#include "core/text_tools.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace velkoro {
namespace {

bool has(std::string_view flags, std::string_view part)
{
    return flags.find(part) != std::string_view::npos;
}

} // namespace

std::vector<int> waypoints_in_order()
{
    const auto n = static_cast<std::size_t>(store.wp_top + 1);
    std::vector<int> order;
    order.reserve(n);
    std::vector<bool> there(n, false);
    if (hooks.list_order)
        for (const int i : hooks.list_order())
            if (i >= 0 && i <= store.wp_top && !there[static_cast<std::size_t>(i)]) {
                there[static_cast<std::size_t>(i)] = true;
                order.push_back(i);
            }
    for (std::size_t i = 0; i < n; ++i)
        if (!there[i])
            order.push_back(static_cast<int>(i));
    return order;
}

std::vector<int> selected_routes(std::string_view flags, const std::vector<int>& chosen)
{
    std::vector<int> routes;
    if (has(flags, "RM")) {
        std::ranges::copy_if(chosen, std::back_inserter(routes),
                             [](int r) { return r >= 0 && r <= store.rou_top; });
    } else if (has(flags, "R")) {
        for (int r = 0; r <= store.rou_top; ++r)
            routes.push_back(r);
    }
    return routes;
}

std::vector<bool> selected_waypoints(std::string_view flags, const std::vector<int>& routes)
{
    const auto n = static_cast<std::size_t>(store.wp_top + 1);
    const bool marked_only = has(flags, "WM");
    std::vector<bool> wanted(n, has(flags, "W") && !marked_only);
    if (marked_only)
        for (const int i : hooks.marked_rows())
            if (i >= 0 && i <= store.wp_top)
                wanted[static_cast<std::size_t>(i)] = true;
    std::unordered_set<std::string> keys;
    for (const int r : routes)
        for (std::string& key : list_tokens(store.rou[static_cast<std::size_t>(r)].wps))
            keys.insert(std::move(key));
    if (!keys.empty())
        for (std::size_t i = 0; i < n; ++i)
            if (!wanted[i] && keys.count(wp_key(static_cast<int>(i))) != 0)
                wanted[i] = true;
    return wanted;
}

} // namespace velkoro

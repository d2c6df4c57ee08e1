// Deleting waypoints; declared in core/store.h.
#include "core/hooks.h"
#include "core/route_lists.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <unordered_set>

namespace velkoro {
namespace {

constexpr int delete_marked = -1;
constexpr int delete_marked_silently = -2;

/// A waypoint to be deleted. Its index holds until the next question; its key finds it again.
struct victim {
    int index = -1;
    std::string key{};
};
using key_set = std::unordered_set<std::string_view>;

std::vector<victim> victims_of(int index)
{
    std::vector<int> indexes;
    if (index >= 0)
        indexes.push_back(index);
    else
        indexes = hooks.marked_rows();
    std::vector<victim> out;
    std::vector<bool> seen(static_cast<std::size_t>(store.wp_top + 1));
    for (const int i : indexes) {
        if (i < 0 || i > store.wp_top || seen[static_cast<std::size_t>(i)])
            continue;
        seen[static_cast<std::size_t>(i)] = true;
        out.push_back({i, wp_key(i)});
    }
    return out;
}

/// After a question: records may have moved or gone while it stood.
void find_again(std::vector<victim>& victims)
{
    for (victim& v : victims)
        if (v.index > store.wp_top || wp_key(v.index) != v.key)
            v.index = wp_find_key(v.key, {}, -1, store.wp_top);
    // Two of one key may have found the same record.
    std::ranges::sort(victims, {}, &victim::index);
    const auto same = [](const victim& a, const victim& b) { return a.index == b.index; };
    victims.erase(std::unique(victims.begin(), victims.end(), same), victims.end());
    std::erase_if(victims, [](const victim& v) { return v.index < 0; });
}

std::string names_of(const std::vector<victim>& victims)
{
    std::string names;
    for (const victim& v : victims) {
        if (names.size() > name_list_limit)
            break;
        names.append(names.empty() ? "" : " ")
            .append(store.wp[static_cast<std::size_t>(v.index)].nam);
    }
    return shown_names(names);
}

/// Which points of a list stay.
std::vector<bool> points_kept(std::string_view wps, const key_set& keys)
{
    std::vector<bool> keep;
    while (!wps.empty())
        keep.push_back(!keys.contains(next_field(wps, '$')));
    return keep;
}

bool holds_any(const route_rec& route, const key_set& keys)
{
    std::string_view wps = route.wps;
    while (!wps.empty())
        if (keys.contains(next_field(wps, '$')))
            return true;
    return false;
}

bool confirmed(std::vector<victim>& victims, const key_set& keys)
{
    if (say(2060, buttons::ok_cancel, icon::question, names_of(victims)) != answer::ok)
        return false;
    find_again(victims);
    std::vector<int> used;
    for (int r = 0; r <= store.rou_top; ++r)
        if (holds_any(store.rou[static_cast<std::size_t>(r)], keys))
            used.push_back(r + 1);
    if (used.empty())
        return true;
    if (say(2070, buttons::ok_cancel, icon::question, number_list(used)) != answer::ok)
        return false;
    find_again(victims);
    return true;
}

/// Fills the gaps from the records above the new top, in the order of the list, and tells where
/// every record went. Routes need no change: they hold keys.
std::vector<int> wayp_compact(const std::vector<victim>& victims)
{
    const int old_top = store.wp_top;
    const int new_top = old_top - static_cast<int>(victims.size());
    std::vector<int> new_index(static_cast<std::size_t>(old_top + 1));
    for (int i = 0; i <= old_top; ++i)
        new_index[static_cast<std::size_t>(i)] = i;
    for (const victim& v : victims)
        new_index[static_cast<std::size_t>(v.index)] = -1;
    int gap = 0;
    const auto fill_gap_from = [&](int row) {
        if (row <= new_top || row > old_top || new_index[static_cast<std::size_t>(row)] != row)
            return;
        while (new_index[static_cast<std::size_t>(gap)] >= 0)
            ++gap;
        store.wp[static_cast<std::size_t>(gap)] =
            std::move(store.wp[static_cast<std::size_t>(row)]);
        new_index[static_cast<std::size_t>(row)] = gap++;
    };
    if (hooks.list_order)
        for (const int row : hooks.list_order())
            fill_gap_from(row);
    for (int row = new_top + 1; row <= old_top; ++row) // without a row in the list
        fill_gap_from(row);
    store.wp_top = static_cast<std::int16_t>(new_top);
    store.wp.resize(static_cast<std::size_t>(new_top + 1));
    index_rebuild();
    return new_index;
}

} // namespace

void wayp_delete(int index)
try {
    std::vector<victim> victims = victims_of(index);
    if (victims.empty()) {
        if (index == delete_marked)
            say(2050);
        return;
    }
    const std::vector<victim> asked_for = victims;
    key_set keys;
    for (const victim& v : asked_for)
        keys.insert(v.key);
    // A new waypoint that the editor gives up bears the name "$"; nobody needs to be asked.
    const bool given_up = index >= 0 && store.wp[static_cast<std::size_t>(index)].nam == "$";
    if (index != delete_marked_silently && !given_up && !confirmed(victims, keys))
        return;
    for (int r = 0; r <= store.rou_top; ++r) {
        route_rec& route = store.rou[static_cast<std::size_t>(r)];
        if (holds_any(route, keys))
            route_keep(route, points_kept(route.wps, keys));
    }
    const std::vector<int> new_index = wayp_compact(victims);
    store.wp_dirty = true;
    store.wp_cur = -1;
    hooks.rows_compacted(new_index);
    hooks.map_changed();
    hooks.route_refresh();
} catch (...) {
    trap("wayp_delete");
}

} // namespace velkoro

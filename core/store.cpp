#include "core/store.h"

#include "core/hooks.h"
#include "core/route_lists.h"
#include "core/text_tools.h"

#include <algorithm>

namespace velkoro {

void store_reset()
{
    store = {};
    pool_reset();
}

void wayp_clear()
{
    store.wp.clear();
    store.wp_top = store.wp_cur = -1;
    store.rou.clear();
    store.rou_top = store.rou_cur = -1;
    store.index = {};
    store.wp_dirty = false;
}

void track_clear()
{
    store.trk = {};
    store.trk_top = -1;
    store.trk_dirty = false;
    store.trk_title.clear();
    pool_reset();
}

int wp_find_key(std::string_view name, std::string_view comment, int skip_index, int last_index)
{
    return index_find_key(name, comment, skip_index, std::min<int>(last_index, store.wp_top));
}

int wp_find_pos(const pos_rec& pos, int last_index)
{
    return index_find_pos(pos, std::min<int>(last_index, store.wp_top));
}

bool is_reference(const wayp_rec& w)
{
    return w.nam == store.refp_name && w.pos == store.refp_pos;
}

std::string wp_rename(int index, const std::string& nam, const std::string& kom)
{
    wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
    const std::string old_key = wp_key(w.nam, w.kom);
    if (w.nam == nam && w.kom == kom)
        return {};
    if (is_reference(w))
        store.refp_name = nam;
    index_drop(index);
    w.nam = nam;
    w.kom = kom;
    index_put(index);
    store.wp_dirty = true;
    const std::vector<int> changed = routes_rename(old_key, wp_key(nam, kom));
    if (!changed.empty())
        hooks.route_refresh();
    return number_list(changed);
}

void wp_move(int index, const pos_rec& pos)
{
    wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
    if (w.pos == pos)
        return;
    if (is_reference(w))
        store.refp_pos = pos;
    index_drop(index);
    w.pos = pos;
    index_put(index);
    store.wp_dirty = true;
}

void track_append(const trackp_rec& point)
{
    const auto at = static_cast<std::size_t>(store.trk_top + 1);
    if (at >= store.trk.size()) {
        const std::size_t size = store.trk.empty() ? 1 : store.trk.size() + 1000;
        // Room for a quarter more: steps alone would copy the whole array every 1000 points, and
        // doubling would keep up to half of the memory idle.
        if (size > store.trk.capacity())
            store.trk.reserve(size + size / 4);
        store.trk.resize(size);
    }
    store.trk[at] = point;
    ++store.trk_top;
    store.trk_dirty = true;
}

} // namespace velkoro

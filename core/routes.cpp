// Appending, dropping and cleaning up of routes; declared in core/store.h.
#include "core/hooks.h"
#include "core/route_lists.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/wayp_insert.h"

#include <stdexcept>

namespace velkoro {
namespace {

/// A key as a file or receiver wrote it, as the store may hold it.
std::string stored_key(const std::string& token)
{
    std::string key(batch_key(std::string(trim(token))));
    for (std::size_t at = key.find(" @"); at != key.npos; at = key.find(" @", at))
        key.erase(at, 1);
    return std::string(trim(key));
}

} // namespace

int route_add(route_rec route)
{
    if (route.wps.empty())
        return -1;
    if (store.rou_top + 1 >= wp_limit)
        throw std::overflow_error("Overflow");
    std::string keys;
    std::string missing;
    std::vector<bool> keep;
    bool any = false;
    bool all = true;
    for (const std::string& token : list_tokens(route.wps)) {
        const std::string key = stored_key(token);
        const bool found = wp_find_key(key, {}, -1, store.wp_top) >= 0;
        keep.push_back(found);
        any = any || found;
        all = all && found;
        keys.append(key) += '$';
        if (!found && !key.empty())
            missing.append(missing.empty() ? "" : " ").append(key);
    }
    route.wps = std::move(keys);
    if (!all)
        route_keep(route, keep);
    const int index = store.rou_top + 1;
    route.nam = fixed_text(route.nam, 16);
    const std::string name(trim(route.nam));
    if (any) {
        if (route.farbe == 0)
            route.farbe = static_cast<std::int16_t>(((index + 1) & 3) + 1);
        store.rou.resize(static_cast<std::size_t>(index));
        store.rou.push_back(std::move(route));
        store.rou_top = static_cast<std::int16_t>(index);
        store.wp_dirty = true;
    }
    if (!missing.empty())
        say(1640, buttons::ok, icon::exclamation, name, missing);
    return any ? index : -1;
}

void route_cleanup()
{
    for (int r = store.rou_top; r >= 0; --r) {
        route_rec& route = store.rou[static_cast<std::size_t>(r)];
        route.nam = fixed_text(trim(route.nam), 16);
        if (route.wps.empty())
            route_delete(r);
    }
}

void route_delete(int index)
{
    if (index < 0 || index > store.rou_top)
        return;
    store.rou.erase(store.rou.begin() + index);
    --store.rou_top;
    // The editor keeps its route; when that one goes, the one behind it takes its place.
    if (store.rou_cur > index || store.rou_cur > store.rou_top)
        --store.rou_cur;
    store.wp_dirty = true;
}

} // namespace velkoro

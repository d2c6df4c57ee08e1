#include "tools/receiver-sim/sim_memory.h"

#include "core/wayp_insert.h"

namespace velkoro {

void sim_keep_waypoint(const wayp_rec& rec)
{
    const int index = wp_find_key(rec.nam, rec.kom, -1, store.wp_top);
    if (index < 0) {
        wp_append(rec);
        return;
    }
    wp_rename(index, rec.nam, rec.kom);
    wp_move(index, rec.pos);
    wayp_rec& stored = store.wp[static_cast<std::size_t>(index)];
    stored.dat = rec.dat;
    stored.prox = rec.prox;
    stored.symb = rec.symb;
    stored.symbmode = rec.symbmode;
    stored.alt = rec.alt;
}

void sim_fill(sim_walk& walk)
{
    constexpr double degrees_per_semi = 180.0 / 2147483648.0;
    walk.points.clear();
    for (std::int32_t i = 0; i <= store.trk_top; ++i) {
        const trackp_rec& point = store.trk[static_cast<std::size_t>(i)];
        walk.points.push_back({point.pos.lat * degrees_per_semi, point.pos.lon * degrees_per_semi,
                               static_cast<double>(point.alt), point.alt != alt_unknown, 0});
    }
}

} // namespace velkoro

/// Waypoints and routes for the tests of the store.
#pragma once

#include "core/route_lists.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/wayp_insert.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velkoro {

/// A waypoint at a place of its own: places of different numbers differ beyond the ten low bits.
inline wayp_rec waypoint(const std::string& nam, int place, const std::string& kom = {})
{
    wayp_rec w;
    w.nam = nam;
    w.kom = kom;
    w.pos = {place * 4096, place * 8192};
    return w;
}

inline int insert(wayp_rec rec, int mode = 0)
{
    return wayp_insert(rec, mode);
}

inline void open_batch(int mode = batch_open)
{
    wayp_rec rec;
    wayp_insert(rec, mode);
}

/// The report.
inline std::string close_batch(int mode = batch_close)
{
    wayp_rec rec;
    wayp_insert(rec, mode);
    return rec.kom;
}

inline std::vector<std::string> names()
{
    std::vector<std::string> out;
    for (int i = 0; i <= store.wp_top; ++i)
        out.push_back(store.wp[static_cast<std::size_t>(i)].nam);
    return out;
}

inline wayp_rec& wp(int index)
{
    return store.wp.at(static_cast<std::size_t>(index));
}

inline route_rec& rou(int index)
{
    return store.rou.at(static_cast<std::size_t>(index));
}

inline int add_route(const std::string& nam, const std::string& wps)
{
    route_rec r;
    r.nam = nam;
    r.wps = wps;
    return route_add(r);
}

/// Every token of every route is the key of a stored waypoint.
inline void expect_routes_resolve()
{
    for (int r = 0; r <= store.rou_top; ++r)
        for (const std::string& token : list_tokens(rou(r).wps))
            EXPECT_GE(wp_find_key(token, "", -1, store.wp_top), 0)
                << "route " << r << " holds " << token;
}

class Store : public testing::Test {
protected:
    Store() { scripted_platform::plain_texts(); }
    scripted_platform user{};
};

} // namespace velkoro

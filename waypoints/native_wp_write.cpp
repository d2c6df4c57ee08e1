// The store into waypoint files.
#include "core/form1.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "waypoints/native_wp.h"
#include "waypoints/selection.h"

#include <algorithm>

namespace velkoro {
namespace {

bool has(const std::string& flags, std::string_view part)
{
    return flags.find(part) != std::string::npos;
}

std::string chosen_caption(const control& drop_down)
{
    const int i = drop_down.selected;
    return i >= 0 && i < static_cast<int>(drop_down.items.size())
               ? drop_down.items[static_cast<std::size_t>(i)]
               : std::string();
}

/// Orders that are computed while they are shown are not kept: a reader would have to compute them
/// over a store that is not complete yet.
std::int16_t kept_order(int order)
{
    const bool computed = order == static_cast<int>(sort_entry::nearest_wp) ||
                          order == static_cast<int>(sort_entry::route_distance) ||
                          order == static_cast<int>(sort_entry::track_distance);
    return static_cast<std::int16_t>(computed || order < 0 ? 0 : order);
}

void put_pos(byte_writer& out, const pos_rec& pos)
{
    out.i32(pos.lat);
    out.i32(pos.lon);
}

void put_head(byte_writer& out)
{
    out.fixed(wp_magic, wp_magic.size());
    out.i16(wp_version);
    out.lstr(chosen_caption(Form1.Datum));
    out.lstr(chosen_caption(Form1.posform));
    out.lstr(settings.list_zone);
    out.i16(kept_order(Form1.sort.selected));
    out.lstr(store.refp_name);
    put_pos(out, store.refp_pos);
    out.i32(settings.scale);
    out.lstr(Form1.wayp_titel.text);
}

/// The comment without blanks around it. Those ahead of an "@" stay, as the key would change
/// without them.
std::string_view file_comment(const std::string& kom)
{
    const std::string_view bare = trim(kom);
    return bare.starts_with('@') ? trim_right(kom) : bare;
}

void put_waypoint(byte_writer& out, const wayp_rec& w)
{
    out.u8('W');
    out.lstr(w.nam);
    out.lstr(file_comment(w.kom));
    put_pos(out, w.pos);
    out.i32(w.dat);
    out.i16(w.prox);
    out.u8(static_cast<std::uint8_t>(w.symb));
    out.u8(static_cast<std::uint8_t>(w.symbmode));
    out.i16(w.alt);
}

void put_route(byte_writer& out, const route_rec& r)
{
    out.u8('R');
    out.fixed(r.nam, 16);
    out.lstr(r.wps);
    out.i16(r.farbe);
    out.lstr(r.speed);
    out.lstr(r.korr);
    out.lstr(r.anw);
}

bool progress(std::size_t done, std::size_t all, int waypoints)
{
    op_progress(static_cast<double>(done) / static_cast<double>(std::max<std::size_t>(all, 1)));
    op.anz.caption = text(2570, waypoints);
    return op_pump();
}

} // namespace

wp_write_result write_wp(const wp_write_options& options)
{
    wp_write_result result;
    byte_writer out;
    if (options.section) {
        out.u8(has(options.flags, "U") ? 'U' : 'A');
        out.i16(wp_version);
    } else {
        put_head(out);
    }
    const std::vector<int> order = waypoints_in_order();
    const std::vector<int> routes = selected_routes(options.flags, options.routes);
    const std::vector<bool> wanted = selected_waypoints(options.flags, routes);
    const std::size_t all = order.size() + routes.size();
    std::size_t done = 0;
    const auto goes_on = [&] {
        ++done;
        if (!op_due() || progress(done, all, result.waypoints))
            return true;
        result.end = native_end::broken_off;
        return false;
    };
    for (const int i : order) {
        // The progress point serves events: the store may have become smaller.
        if (wanted[static_cast<std::size_t>(i)] && i <= store.wp_top) {
            put_waypoint(out, store.wp[static_cast<std::size_t>(i)]);
            ++result.waypoints;
        }
        if (!goes_on())
            break;
    }
    // Behind all waypoints, so that a route's points are there when it is read.
    if (result.end == native_end::whole && !has(options.flags, "U")) {
        for (const int r : routes) {
            if (r <= store.rou_top) {
                put_route(out, store.rou[static_cast<std::size_t>(r)]);
                ++result.routes;
            }
            if (!goes_on())
                break;
        }
    }
    result.bytes = std::move(out.out);
    return result;
}

} // namespace velkoro

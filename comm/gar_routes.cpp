#include "comm/gar_routes.h"

#include "comm/gar_codec_route.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_proto.h"
#include "comm/gar_session.h"
#include "comm/garmin_link.h"
#include "comm/mag_routes.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/log.h"
#include "core/route_lists.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"

#include <set>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr int text_reading = 2660, text_writing = 8123;

int header_type()
{
    return receiver.gar_proto[3][1];
}

int waypoint_type()
{
    return receiver.gar_proto[3][2];
}

bool has_routes()
{
    return receiver.gar_proto[3][0] == 200 || receiver.gar_proto[3][0] == 201;
}

bool has_links()
{
    return receiver.gar_proto[3][3] == 210;
}

bool same_place(const pos_rec& a, const pos_rec& b)
{
    return (a.lat >> 10) == (b.lat >> 10) && (a.lon >> 10) == (b.lon >> 10);
}

/// A facility takes the place of the stored waypoint of its name, with all that it brings.
void overwrite(int index, const wayp_rec& rec)
{
    wp_rename(index, rec.nam, rec.kom);
    wp_move(index, rec.pos);
    wayp_rec& old = store.wp[static_cast<std::size_t>(index)];
    old.dat = rec.dat;
    old.prox = rec.prox;
    old.symb = rec.symb;
    old.symbmode = rec.symbmode;
    old.alt = rec.alt;
    old.mapx = 0;
    store.wp_dirty = true;
    ++batch.changed_by_name;
    hooks.row_changed(index, false);
}

/// Takes the packets of the list apart in their order.
std::vector<received_route> decode(const std::vector<std::string>& frames)
{
    std::vector<received_route> routes;
    std::string leg;
    std::string last;
    std::size_t done = 0;
    for (const std::string& frame : frames) {
        const bool twice = frame == last; // a leg to where one is, or a packet sent twice
        last = frame;
        const int id = twice ? 0 : gar_id(frame);
        const std::string data = gar_data(frame);
        if (id == pid_map(pid_rte_hdr)) {
            gar_route_in in;
            gar_route_decode(data, header_type(), in);
            routes.push_back({});
            routes.back().route.nam = in.name;
            if (trim(in.name).empty())
                routes.back().route.nam = fixed_text(text(8124, in.number), 16);
            leg.clear();
        } else if (id == pid_map(pid_rte_waypoint) && !routes.empty()) {
            gar_wp_in in;
            if (gar_wp_decode(data, waypoint_type(), in))
                if (const int i = merge_route_waypoint(gar_wp_record(in)); i >= 0)
                    routes.back().points.emplace_back(i, leg);
            leg.clear();
        } else if (id == pid_map(pid_rte_link) && has_links()) {
            leg = gar_link_decode(data);
        }
        ++done;
        if (op_due()) {
            op_progress(static_cast<double>(done) / static_cast<double>(frames.size()));
            op_pump(); // what has been received is kept whatever Cancel says
        }
    }
    return routes;
}

void end_batch()
{
    wayp_rec none;
    wayp_insert(none, batch_close);
    hooks.sort_rows();
}

void decode_and_add(const std::vector<std::string>& frames)
{
    wayp_rec none;
    wayp_insert(none, batch_open);
    std::vector<received_route> routes;
    try {
        routes = decode(frames);
    } catch (...) {
        end_batch();
        throw;
    }
    end_batch();
    add_received(routes);
}

// Writing
// ---------------------------------------------------------------------------------------------------------------

/// True when the receiver takes so many routes with so many points, or the user wants to try.
bool within_limits(const std::vector<int>& routes)
{
    const int most_routes = gar_option(gar_place::mrou);
    const int most_points = gar_option(gar_place::mwp_rou);
    if (static_cast<int>(routes.size()) > most_routes &&
        !transfer_over_limit(2750, std::to_string(routes.size()), std::to_string(most_routes)))
        return false;
    std::string long_ones;
    for (const int r : routes) {
        const route_rec& route = store.rou[static_cast<std::size_t>(r)];
        if (static_cast<int>(list_tokens(route.wps).size()) > most_points)
            long_ones.append(long_ones.empty() ? "" : ", ").append(trim(route.nam));
    }
    return long_ones.empty() ||
           transfer_over_limit(2770, shown_names(long_ones), std::to_string(most_points));
}

/// The name under which a route goes out: with the option `r_unique` one that no route ahead of it
/// has, since the receiver would take the two for one.
std::string sent_name(const route_rec& route, std::set<std::string>& taken)
{
    constexpr std::size_t longest = 16;
    const std::string name(trim(route.nam));
    std::string unique = name;
    if (gar_option(gar_place::r_unique) != 0)
        for (int n = 2; !taken.insert(upper(unique)).second; ++n) {
            const std::string number = " " + std::to_string(n);
            unique = name.substr(0, longest - number.size()) + number;
        }
    return unique;
}

void add_packets(const route_rec& route, const std::string& name, int number,
                 std::vector<gar_packet>& packets)
{
    packets.push_back({pid_rte_hdr, gar_route_encode(name, number, header_type())});
    const std::vector<std::string> legs = list_tokens(route.anw);
    const std::vector<std::string> keys = list_tokens(route.wps);
    bool first = true;
    for (std::size_t n = 0; n < keys.size(); ++n) {
        const int i = wp_find_key(keys[n], {}, -1, store.wp_top);
        if (i < 0)
            continue;
        gar_packet point{.id = pid_rte_waypoint};
        gar_wp_encode(store.wp[static_cast<std::size_t>(i)], waypoint_type(), false, point.data);
        if (point.data.empty())
            continue;
        if (!first && has_links())
            packets.push_back({pid_rte_link, gar_link_encode(n < legs.size() ? legs[n] : "")});
        packets.push_back(std::move(point));
        first = false;
    }
}

} // namespace

int merge_route_waypoint(wayp_rec rec)
{
    // The store's own way of writing the name, without its warnings.
    std::string name(trim(rec.nam));
    std::string comment = rec.kom;
    name_cut(name, comment);
    name = name_clean(name, 0);
    const int named = wp_find_key(name, comment, -1, store.wp_top);
    if (named >= 0 && same_place(store.wp[static_cast<std::size_t>(named)].pos, rec.pos))
        return named;
    if (const int i = wp_find_pos(rec.pos, store.wp_top); i >= 0)
        return i;
    if (named >= 0 && rec.kom.starts_with('@')) {
        rec.nam = name;
        rec.kom = comment;
        overwrite(named, rec);
        return named;
    }
    return wayp_insert(rec, store.wp_top < 0 ? -1 : -3);
}

void add_received(const std::vector<received_route>& routes)
{
    int added = 0;
    for (const received_route& r : routes) {
        route_rec route = r.route;
        bool any_leg = false;
        for (const auto& [index, leg] : r.points) {
            if (index > store.wp_top)
                continue;
            route.wps.append(wp_key(index)) += '$';
            route.anw.append(leg) += '$';
            any_leg = any_leg || !leg.empty();
        }
        if (!any_leg)
            route.anw.clear();
        if (route_add(std::move(route)) >= 0)
            ++added;
    }
    routes_added(added);
}

void routes_added(int count)
{
    op2.anz.caption = text(8125, count);
    hooks.route_refresh();
    hooks.map_changed();
}

void G_R_Lesen()
try {
    log_line(" read routes command");
    if (gar_option(gar_place::gar_wp_format) > 0) {
        M_R_lesen();
        return;
    }
    if (!transfer_begin())
        return;
    std::vector<std::string> frames;
    const gar_sink sink{.begin = [&frames](std::size_t count) { frames.reserve(count); },
                        .take = [&frames](const std::string& frame) { frames.push_back(frame); },
                        .forget =
                            [&frames](std::size_t n) {
                                frames.erase(frames.begin() + static_cast<std::ptrdiff_t>(n));
                            }};
    transfer.end = gar_read_list(cmd_routes, any_packet, text_reading, true, sink);
    if (frames.empty())
        return;
    if (!has_routes()) {
        transfer_unsupported();
        return;
    }
    decode_and_add(frames);
} catch (const batch_cancelled&) {
    transfer.end = transfer_end::cancelled;
} catch (const std::overflow_error&) {
    say(2033, buttons::ok, icon::exclamation, std::to_string(wp_limit));
} catch (...) {
    trap("G_R_Lesen");
}

void G_R_Schreiben()
try {
    log_line(" write routes command");
    if (gar_option(gar_place::gar_wp_format) > 0) {
        M_R_schreiben();
        return;
    }
    if (!transfer_begin())
        return;
    if (!has_routes() || !gar_wp_known(waypoint_type())) {
        transfer_unsupported();
        return;
    }
    const std::vector<int> routes = chosen_routes(transfer.choice);
    if (routes.empty()) {
        transfer.end = transfer_end::empty;
        op2.anz.caption = text(8122);
        return;
    }
    if (!within_limits(routes))
        return;
    std::vector<gar_packet> packets;
    std::set<std::string> names;
    for (const int r : routes) { // number 0 is the route that the receiver is following
        const route_rec& route = store.rou[static_cast<std::size_t>(r)];
        add_packets(route, sent_name(route, names), r + 1, packets);
    }
    transfer.end = gar_write_list(cmd_routes, packets, text_writing);
} catch (...) {
    trap("G_R_Schreiben");
}

} // namespace velkoro

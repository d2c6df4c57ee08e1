#include "comm/gar_codec_route.h"
#include "comm/gar_codec_track.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_proto.h"
#include "core/names.h"
#include "core/text_tools.h"
#include "tools/receiver-sim/sim_memory.h"

#include <utility>

namespace velkoro {
namespace {

constexpr int pid_proximity = 19, pid_route_header = 29, pid_route_waypoint = 30,
              pid_track_point = 34, pid_waypoint = 35, pid_route_link = 98, pid_track_header = 99;

int waypoint_type(const sim_identity& id)
{
    return sim_record(id, 1, 1);
}

int route_waypoint_type(const sim_identity& id)
{
    return sim_record(id, 2, 2);
}

/// Track headers exist from A301 on, where the points are the second record.
bool has_track_headers(const sim_identity& id)
{
    return sim_protocol(id, 'A', 3) > 300;
}

int point_type(const sim_identity& id)
{
    return sim_record(id, 3, has_track_headers(id) ? 2 : 1);
}

sim_packet waypoint_packet(int id, const wayp_rec& w, int type)
{
    sim_packet packet{id, {}};
    gar_wp_encode(w, type, id == pid_proximity, packet.data);
    return packet;
}

std::vector<sim_packet> waypoint_packets(const sim_identity& id)
{
    std::vector<sim_packet> out;
    for (int i = 0; i <= store.wp_top; ++i)
        out.push_back(waypoint_packet(pid_waypoint, store.wp[static_cast<std::size_t>(i)],
                                      waypoint_type(id)));
    return out;
}

std::vector<sim_packet> proximity_packets(const sim_identity& id)
{
    std::vector<sim_packet> out;
    for (int i = 0; i <= store.wp_top; ++i) {
        const wayp_rec& w = store.wp[static_cast<std::size_t>(i)];
        if (w.prox > 0 && gar_wp_known(sim_record(id, 4, 1)))
            out.push_back(waypoint_packet(pid_proximity, w, sim_record(id, 4, 1)));
    }
    return out;
}

std::vector<sim_packet> route_packets(const sim_identity& id)
{
    std::vector<sim_packet> out;
    const bool has_links = sim_record(id, 2, 3) == 210;
    for (int i = 0; i <= store.rou_top; ++i) {
        const route_rec& route = store.rou[static_cast<std::size_t>(i)];
        const std::vector<std::string> points = list_tokens(route.wps),
                                       legs = list_tokens(route.anw);
        out.push_back(
            {pid_route_header, gar_route_encode(trim(route.nam), i + 1, sim_record(id, 2, 1))});
        for (std::size_t n = 0; n < points.size(); ++n) {
            int index = -1; // points name waypoints by key
            for (int k = 0; k <= store.wp_top && index < 0; ++k)
                if (wp_key(k) == points[n])
                    index = k;
            if (index < 0)
                continue;
            if (has_links && n > 0)
                out.push_back({pid_route_link, gar_link_encode(n < legs.size() ? legs[n] : "")});
            out.push_back(waypoint_packet(pid_route_waypoint,
                                          store.wp[static_cast<std::size_t>(index)],
                                          route_waypoint_type(id)));
        }
    }
    return out;
}

std::vector<sim_packet> track_packets(const sim_identity& id)
{
    std::vector<sim_packet> out;
    if (has_track_headers(id) && store.trk_top >= 0)
        out.push_back(
            {pid_track_header, gar_track_encode(gar_active_log, 255, sim_record(id, 3, 1))});
    for (std::int32_t i = 0; i <= store.trk_top; ++i) {
        const trackp_rec& point = store.trk[static_cast<std::size_t>(i)];
        out.push_back({pid_track_point, gar_point_encode(point, point_type(id), point.neu != 0)});
    }
    return out;
}

void keep_waypoint(const std::string& data, int type)
{
    gar_wp_in in;
    if (gar_wp_decode(data, type, in))
        sim_keep_waypoint(gar_wp_record(in));
}

/// Routes of the host replace those of the same name.
void keep_route(route_rec route)
{
    for (int i = 0; i <= store.rou_top; ++i)
        if (store.rou[static_cast<std::size_t>(i)].nam == route.nam) {
            store.rou[static_cast<std::size_t>(i)] = std::move(route);
            return;
        }
    route_add(std::move(route));
}

void keep_routes(const sim_identity& id, const std::vector<sim_packet>& packets)
{
    route_rec route;
    bool open = false;
    const auto close = [&] {
        if (open)
            keep_route(std::exchange(route, {}));
        open = false;
    };
    std::string leg;
    for (const sim_packet& packet : packets) {
        gar_route_in header;
        gar_wp_in in;
        if (packet.id == pid_route_header &&
            gar_route_decode(packet.data, sim_record(id, 2, 1), header)) {
            close();
            open = true;
            route.nam = trim(header.name).empty()
                            ? fixed_text("ROUTE " + std::to_string(header.number), 16)
                            : header.name;
        } else if (packet.id == pid_route_link) {
            leg = gar_link_decode(packet.data);
        } else if (packet.id == pid_route_waypoint &&
                   gar_wp_decode(packet.data, route_waypoint_type(id), in)) {
            const wayp_rec w = gar_wp_record(in);
            sim_keep_waypoint(w);
            route.wps += wp_key(w.nam, w.kom) + "$";
            route.anw += std::exchange(leg, {}) + "$";
        }
    }
    close();
}

void keep_track(const sim_identity& id, const std::vector<sim_packet>& packets)
{
    track_clear();
    bool first = true;
    for (const sim_packet& packet : packets) {
        gar_point_in in;
        if (packet.id == pid_track_header)
            first = true;
        if (packet.id != pid_track_point || !gar_point_decode(packet.data, point_type(id), in))
            continue;
        trackp_rec point;
        point.pos = in.pos;
        point.zeit = in.time;
        point.alt = in.alt;
        point.neu = static_cast<std::int16_t>(in.segment || first ? -1 : 0);
        track_append(point);
        first = false;
    }
}

} // namespace

void sim_speak(const sim_identity& identity)
{
    gar_table& table = receiver.gar_proto;
    table = {};
    table[0] = {static_cast<std::uint16_t>(sim_protocol(identity, 'L', 0)), 0,
                static_cast<std::uint16_t>(identity.product),
                static_cast<std::uint16_t>(identity.version)};
    for (int hundreds = 0; hundreds <= 4; ++hundreds) {
        auto& column = table[static_cast<std::size_t>(hundreds + 1)];
        column[0] = static_cast<std::uint16_t>(sim_protocol(identity, 'A', hundreds));
        for (int n = 1; n <= 3; ++n)
            column[static_cast<std::size_t>(n)] =
                static_cast<std::uint16_t>(sim_record(identity, hundreds, n));
    }
    gar_flags_set();
}

void sim_fill(sim_garmin& sim)
{
    const sim_identity& id = sim.identity;
    sim.memory[sim_list::waypoints] = waypoint_packets(id);
    sim.memory[sim_list::proximity] = proximity_packets(id);
    sim.memory[sim_list::routes] = route_packets(id);
    sim.memory[sim_list::track] = track_packets(id);
}

void sim_keep(sim_garmin& sim, sim_list list)
{
    const sim_identity& id = sim.identity;
    const std::vector<sim_packet> packets = std::exchange(sim.arrived[list], {});
    switch (list) {
    case sim_list::waypoints:
    case sim_list::proximity:
        for (const sim_packet& packet : packets)
            keep_waypoint(packet.data,
                          list == sim_list::waypoints ? waypoint_type(id) : sim_record(id, 4, 1));
        break;
    case sim_list::routes: keep_routes(id, packets); break;
    case sim_list::track: keep_track(id, packets); break;
    }
    sim_fill(sim);
}

} // namespace velkoro

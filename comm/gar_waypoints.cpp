#include "comm/gar_waypoints.h"

#include "comm/gar_codec_wp.h"
#include "comm/gar_proto.h"
#include "comm/gar_routes.h"
#include "comm/gar_session.h"
#include "comm/garmin_link.h"
#include "comm/mag_waypoints.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/log.h"
#include "core/settings.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"

#include <algorithm>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr int text_reading = 2840, text_writing = 2570;

int waypoint_type()
{
    return receiver.gar_proto[2][1];
}

int proximity_type()
{
    return receiver.gar_proto[5][1];
}

bool has_proximity_list()
{
    return receiver.gar_proto[5][0] != 0;
}

gar_sink sink_into(std::vector<std::string>& frames)
{
    const std::size_t base = frames.size();
    return {.begin = [&frames, base](std::size_t count) { frames.reserve(base + count); },
            .take = [&frames](const std::string& frame) { frames.push_back(frame); },
            .forget =
                [&frames, base](std::size_t n) {
                    frames.erase(frames.begin() + static_cast<std::ptrdiff_t>(base + n));
                }};
}

/// Records without a symbol of their own leave that of the stored waypoint.
void keep_symbol(wayp_rec& w, int type)
{
    if (type != 400 && type != 450)
        return;
    const int i = wp_find_key(w.nam, w.kom, -1, store.wp_top);
    if (i < 0)
        return;
    w.symb = store.wp[static_cast<std::size_t>(i)].symb;
    w.symbmode = store.wp[static_cast<std::size_t>(i)].symbmode;
}

void decode_and_insert(const std::vector<std::string>& frames)
{
    std::vector<wayp_rec> plain;
    std::vector<wayp_rec> proximity;
    std::string last;
    for (const std::string& frame : frames) {
        if (frame == last) // the same waypoint once more
            continue;
        last = frame;
        const bool prox = gar_id(frame) == pid_prx_waypoint;
        gar_wp_in in;
        if (gar_wp_decode(gar_data(frame), prox ? proximity_type() : waypoint_type(), in))
            (prox ? proximity : plain).push_back(gar_wp_record(in));
    }
    insert_received(std::move(plain), std::move(proximity));
}

/// Closes the batch and tells the totals in the result window.
void close_and_tell(int read)
{
    op2.anz.caption =
        text(2890, read) + "\n" +
        text(2900, static_cast<long long>(batch.changed_by_name + batch.changed_by_position)) +
        "\n" + text(2910, batch.unchanged);
    const bool elsewhere = !batch.elsewhere.empty();
    wayp_rec report;
    wayp_insert(report, batch_close);
    if (elsewhere) // its line comes last
        op2.anz2.caption +=
            (op2.anz2.caption.empty() ? "" : "\n") + report.kom.substr(report.kom.rfind('\n') + 1);
    hooks.route_refresh();
    hooks.map_changed();
    hooks.sort_rows();
}

/// Packets of the waypoints; what the type cannot carry is left out.
std::vector<gar_packet> packets_of(const std::vector<int>& indexes, int id, int type)
{
    std::vector<gar_packet> packets;
    packets.reserve(indexes.size());
    for (const int i : indexes) {
        gar_packet p{.id = id};
        gar_wp_encode(store.wp[static_cast<std::size_t>(i)], type, id == pid_prx_waypoint, p.data);
        if (!p.data.empty())
            packets.push_back(std::move(p));
    }
    return packets;
}

bool within(std::size_t count, gar_place limit, int number)
{
    const int most = gar_option(limit);
    return static_cast<int>(count) <= most ||
           transfer_over_limit(number, std::to_string(count), std::to_string(most));
}

/// Sends one of the two lists. An empty one is no list.
transfer_end write_waypoints(const std::vector<int>& indexes, int id, int type, int command)
{
    const std::vector<gar_packet> packets = packets_of(indexes, id, type);
    return packets.empty() ? transfer_end::unsupported
                           : gar_write_list(command, packets, text_writing);
}

transfer_end write_chosen(std::vector<int> indexes)
{
    std::vector<int> proximity;
    if (has_proximity_list() && receiver.gar_has_prox) {
        const auto no_distance = [](int i) {
            return store.wp[static_cast<std::size_t>(i)].prox <= 0;
        };
        const auto rest = std::stable_partition(indexes.begin(), indexes.end(), no_distance);
        proximity.assign(rest, indexes.end());
        indexes.erase(rest, indexes.end());
    }
    if (!within(proximity.size(), gar_place::mprox, 2920) ||
        !within(indexes.size(), gar_place::mwp, 2950))
        return transfer_end::declined;
    if (!proximity.empty()) {
        // The reply only shows that the receiver answers; the list that follows takes its place.
        if (garmin_comm(pid_command, cmd_proximity, pid_records, false).empty()) {
            transfer_no_answer();
            return transfer_end::no_receiver;
        }
        const transfer_end end =
            write_waypoints(proximity, pid_prx_waypoint, proximity_type(), cmd_proximity);
        if (end != transfer_end::whole || indexes.empty())
            return end;
    }
    return write_waypoints(indexes, pid_waypoint, waypoint_type(), cmd_waypoints);
}

} // namespace

void G_W_lesen()
try {
    log_line(" read waypoints command");
    if (gar_option(gar_place::gar_wp_format) > 0) {
        M_W_lesen();
        return;
    }
    if (!transfer_begin())
        return;
    std::vector<std::string> frames;
    transfer.end =
        gar_read_list(cmd_waypoints, pid_waypoint, text_reading, true, sink_into(frames));
    if (transfer.end == transfer_end::no_receiver || transfer.end == transfer_end::empty)
        return;
    if (transfer.end == transfer_end::whole && has_proximity_list()) {
        const transfer_end second =
            gar_read_list(cmd_proximity, pid_prx_waypoint, text_reading, false, sink_into(frames));
        if (second != transfer_end::empty && second != transfer_end::no_receiver)
            transfer.end = second;
    }
    decode_and_insert(frames);
} catch (const batch_cancelled&) {
    transfer.end = transfer_end::cancelled;
} catch (...) {
    trap("G_W_lesen");
}

void G_W_schreiben()
try {
    log_line(" write waypoints command");
    if (gar_option(gar_place::gar_wp_format) > 0) {
        M_W_schreiben();
        return;
    }
    if (!transfer_begin())
        return;
    const std::vector<int> indexes = chosen_waypoints(transfer.choice);
    if (indexes.empty()) {
        transfer.end = transfer_end::empty;
        op2.anz.caption = text(8122);
        return;
    }
    transfer.end = write_chosen(indexes);
    if (transfer.end == transfer_end::unsupported)
        transfer_unsupported();
} catch (...) {
    trap("G_W_schreiben");
}

void insert_received(std::vector<wayp_rec> waypoints, std::vector<wayp_rec> again)
{
    const std::size_t all = waypoints.size() + again.size();
    const int mark = store.wp_top < 0 ? 0 : -2; // what came in is marked, unless it is all there is
    wayp_rec none;
    wayp_insert(none, batch_open);
    int done = 0;
    const auto insert = [&](wayp_rec& w, int mode) {
        wayp_insert(w, mode);
        ++done;
        if (op_due()) {
            op_progress(done / static_cast<double>(all));
            op_pump(); // what has been received is kept whatever Cancel says
        }
    };
    try {
        for (wayp_rec& w : waypoints)
            insert(w, mark);
        for (wayp_rec& w : again) {
            keep_symbol(w, proximity_type());
            insert(w, mark - 1); // compare with the whole store: it holds the first list now
        }
    } catch (const std::overflow_error&) {
        close_and_tell(done);
        say(2033, buttons::ok, icon::exclamation, std::to_string(wp_limit));
        return;
    } catch (...) {
        close_and_tell(done);
        throw;
    }
    close_and_tell(done);
}

} // namespace velkoro

#include "comm/transfer.h"

#include "comm/comm.h"
#include "comm/gar_ident.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/platform.h"
#include "core/route_lists.h"
#include "core/texts.h"

#include <numeric>

namespace velkoro {
namespace {

// Each wait for a packet serves events too; this is for transports that do not wait.
constexpr double pump_every_s = 0.05;

} // namespace

bool transfer_begin()
{
    transfer.end = transfer_end::no_receiver;
    transfer.records = 0;
    op.anz.caption = text(2658);
    transfer.receiver = garmin_ident(false);
    if (transfer.receiver.empty()) {
        if (gar_ident_run.told.empty()) // else it has answered, and its protocols are unknown
            transfer_no_answer();
        return false;
    }
    op.akt.caption = transfer.receiver;
    return true;
}

bool transfer_step(std::size_t done, std::size_t of)
{
    op_progress(of > 0 ? static_cast<double>(done) / static_cast<double>(of) : -1);
    if (const double now = platform.ticks(); now - transfer.last_pump >= pump_every_s) {
        transfer.last_pump = now;
        platform.pump(0);
    }
    return !job.op_cancel;
}

void transfer_no_answer()
{
    transfer.end = transfer_end::no_receiver;
    // Without a port, or with one that could not be opened, the reason has been told.
    if (comm.comm_port != 0 && !comm.refused)
        op2.anz.caption = text(1110);
}

void transfer_nothing_there()
{
    transfer.end = transfer_end::empty;
    op2.anz.caption = text(2670, transfer.receiver);
}

void transfer_unsupported()
{
    transfer.end = transfer_end::unsupported;
    op2.anz.caption = text(8120, transfer.receiver);
}

void transfer_silent_at(std::size_t sent)
{
    transfer.end = transfer_end::broken_off;
    op2.anz.caption = text(2730, static_cast<long long>(sent));
}

bool transfer_over_limit(int number, const std::string& p1, const std::string& p2)
{
    const message_box question{.text = text(number, p1, p2) + " " + text(2760),
                               .buttons = buttons::yes_no,
                               .icon = icon::exclamation,
                               .number = number};
    if (platform.message(question) == answer::yes)
        return true;
    transfer.end = transfer_end::declined;
    return false;
}

std::vector<int> chosen_waypoints(const transfer_choice& choice)
{
    std::vector<bool> taken(static_cast<std::size_t>(store.wp_top + 1));
    std::vector<int> out;
    const auto take = [&](int index) {
        const auto i = static_cast<std::size_t>(index);
        if (index < 0 || i >= taken.size() || taken[i])
            return;
        taken[i] = true;
        out.push_back(index);
    };
    if (choice.waypoints && choice.marked_only) {
        for (const int i : hooks.marked_rows())
            take(i);
    } else if (choice.waypoints) {
        if (hooks.list_order)
            for (const int i : hooks.list_order())
                take(i);
        for (int i = 0; i <= store.wp_top; ++i)
            take(i);
    }
    for (const int r : chosen_routes(choice))
        for (const int i : route_points(store.rou[static_cast<std::size_t>(r)]))
            take(i);
    return out;
}

std::vector<int> chosen_routes(const transfer_choice& choice)
{
    std::vector<int> out;
    if (!choice.routes)
        return out;
    for (int r = 0; r <= store.rou_top; ++r) {
        const auto i = static_cast<std::size_t>(r);
        if (choice.route_marks.empty() ||
            (i < choice.route_marks.size() && choice.route_marks[i] == '1'))
            out.push_back(r);
    }
    return out;
}

} // namespace velkoro

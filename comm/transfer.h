/// What the transfers between the stores and a receiver share: what is to be written, how the last
/// one ended, and the steps that every session begins and goes on with.
/// A session is one job under `op`: it identifies the receiver, exchanges packets or sentences
/// (gar_*.h, mag_*.h) and merges what it got into the stores. It leaves the port open; the end of
/// the job closes it.
#pragma once

#include "core/store.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velkoro {

/// What goes to the receiver.
struct transfer_choice {
    bool waypoints = true;    ///< waypoints of the list
    bool marked_only = false; ///< only the marked ones of them
    bool routes = false;      ///< routes, and the waypoints that they run through
    /// "1" for a route that is sent, "0" for one that is not, by store index; routes past its end
    /// are not sent. Empty: all routes.
    std::string route_marks{};
    std::int32_t first = 0, last = -1; ///< range of track points; last -1: to the end
};

enum class transfer_end {
    nothing_yet, ///< no session has run
    whole,
    empty,      ///< the receiver holds no such data, or there was nothing to write
    cancelled,  ///< by the user; what had gone over stays
    incomplete, ///< the list ended short of what was announced, and packets had been damaged
    broken_off, ///< the receiver fell silent on the way; what had gone over stays
    too_many,   ///< the receiver sent more than it had announced
    declined,   ///< the user said No to a question before anything was written
    no_receiver,
    unsupported ///< the receiver has no protocol for such data
};

struct transfer_state {
    transfer_choice choice{};
    /// A Magellan receiver's routes are names only: its waypoints are read in the same session,
    /// ahead of them.
    bool waypoints_first = false;

    std::string receiver{}; ///< its name in the last session
    transfer_end end = transfer_end::nothing_yet;
    int records = 0; ///< records that the last session took or sent, of whatever kind

    double last_pump = 0; ///< platform.ticks when a session last served events
};
inline transfer_state transfer;

/// Starts a session: says what is going on and asks the receiver who it is. False when it does not
/// answer; the result window then says so.
bool transfer_begin();

/// A progress point, one a packet: shows how far the session is and serves events, often enough for
/// Cancel and rarely enough for the line. False when the job was cancelled.
bool transfer_step(std::size_t done, std::size_t of);

/// The result window says that the receiver does not answer.
void transfer_no_answer();
/// The result window says that the receiver holds no such data.
void transfer_nothing_there();
/// The result window says that the receiver has no protocol for such data.
void transfer_unsupported();
/// The result window says how many records had been sent when the receiver fell silent.
void transfer_silent_at(std::size_t sent);

/// Asks with a question about a limit, joined with "go on all the same?". False on No.
bool transfer_over_limit(int number, const std::string& p1, const std::string& p2);

/// Store indexes of the waypoints chosen, each once, in the order of the list; then those that only
/// routes hold, in the order of the routes.
std::vector<int> chosen_waypoints(const transfer_choice& choice);
/// Store indexes of the routes chosen.
std::vector<int> chosen_routes(const transfer_choice& choice);

} // namespace velkoro

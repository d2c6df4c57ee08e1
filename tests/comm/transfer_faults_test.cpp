// Every session on a bad line: it ends in bounded time, keeps what it got and closes the port.
#include "comm/comm.h"
#include "comm/gar_codec_route.h"
#include "comm/gar_codec_wp.h"
#include "comm/mag_waypoints.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <stdexcept>

using namespace velkoro;

namespace {

constexpr int items = 7;

struct session {
    const char* code;
    bool reads, sentences;
};
constexpr session sessions[] = {{"W_L", true, false},  {"R_L", true, false},  {"T_L", true, false},
                                {"W_S", false, false}, {"R_S", false, false}, {"T_S", false, false},
                                {"W_L", true, true},   {"R_L", true, true},   {"T_L", true, true},
                                {"W_S", false, true},  {"R_S", false, true},  {"T_S", false, true}};

constexpr sim_fault all_faults[] = {sim_fault::drop,  sim_fault::delay,  sim_fault::corrupt,
                                    sim_fault::split, sim_fault::repeat, sim_fault::shorten};

std::string route_keys(int count)
{
    std::string keys;
    for (int n = 0; n < count; ++n)
        keys += some_waypoint(n).nam + "$";
    return keys;
}

/// Fills the program's side for a writing session, the receiver's for a reading one.
void prepare(transfer_rig& rig, const session& s, int count = items)
{
    settings.garmin[static_cast<std::size_t>(gar_place::mtrack)] = 9999;
    settings.garmin[static_cast<std::size_t>(gar_place::mwp_rou)] = 9999;
    store.wp_name_max = 8;
    if (s.sentences)
        rig.speak_sentences();
    rig.protocols("L001 A010 A100 D103 A201 D202 D103 D210 A301 D310 D301");
    transfer.choice = {.waypoints = true, .routes = s.code[0] == 'R'};
    const bool routes_of_names = s.reads && s.sentences && s.code[0] == 'R';
    if (!s.reads || routes_of_names)
        for (int n = 0; n < count; ++n) {
            wayp_rec w = some_waypoint(n);
            wayp_insert(w, 0);
        }
    if (!s.reads) {
        route_add({.nam = "HOME", .wps = route_keys(count)});
        for (int n = 0; n < count; ++n) {
            trackp_rec p = some_point(n);
            if (n == 0) {
                p.neu = -1;
                p.kom = "TOUR";
            }
            track_append(p);
        }
        return;
    }
    rig.holds(sim_list::waypoints, waypoint_packets(count, 103));
    std::vector<sim_packet> route{{29, gar_route_encode("HOME", 1, 202)}};
    std::vector<sim_packet> track{header_packet("TOUR")};
    for (int n = 0; n < count; ++n) {
        if (n > 0)
            route.push_back({98, gar_link_encode("")});
        sim_packet p{.id = 30};
        gar_wp_encode(some_waypoint(n), 103, false, p.data);
        route.push_back(p);
        track.push_back(point_packet(n, 301));
        rig.magellan.waypoints.push_back("PMGN" + mag_wp_encode(some_waypoint(n)));
        rig.magellan.routes.push_back("PMGNRTE," + std::to_string(count) + "," +
                                      std::to_string(n + 1) + ",c,01," + some_waypoint(n).nam +
                                      ",a");
        rig.magellan.track.push_back("PMGNTRK,4828." + std::to_string(100 + n) +
                                     ",N,00912.746,E,00412,M,101502.00,A,TOUR,140601");
    }
    rig.holds(sim_list::routes, route);
    rig.holds(sim_list::track, track);
}

/// How many items of the list stand in the store, in their order and without any other; -1 when
/// they are not a beginning of the list.
int stored_items(const session& s)
{
    int n = 0;
    switch (s.code[0]) {
    case 'W':
        for (; n <= store.wp_top; ++n)
            if (store.wp[static_cast<std::size_t>(n)].nam != some_waypoint(n).nam)
                return -1;
        return n;
    case 'R':
        if (store.rou_top < 0)
            return 0;
        if (store.rou_top > 0)
            return -1;
        for (n = items; n > 0; --n)
            if (store.rou[0].wps == route_keys(n))
                return n;
        return store.rou[0].wps.empty() ? 0 : -1;
    default:
        for (int i = 0; i <= store.trk_top; ++i) {
            const pos_rec& p = store.trk[static_cast<std::size_t>(i)].pos;
            // Two points may be alike: of a list that broke off nobody can tell whether they were.
            const bool twice = transfer.end != transfer_end::whole && n > 0 &&
                               p == some_point(n - 1).pos && !s.sentences;
            if (!twice && !s.sentences && p != some_point(n).pos)
                return -1;
            n += twice ? 0 : 1;
        }
        return n;
    }
}

/// The names or places of what is stored come in the order of the list, though not all of them.
bool stored_in_order(const session& s)
{
    std::vector<int> numbers;
    const auto take = [&numbers](const std::string& name) {
        numbers.push_back(std::stoi(name.substr(1)));
    };
    if (s.code[0] == 'W')
        for (int n = 0; n <= store.wp_top; ++n)
            take(store.wp[static_cast<std::size_t>(n)].nam);
    else if (s.code[0] == 'R' && store.rou_top == 0)
        for (const std::string& key : list_tokens(store.rou[0].wps))
            take(key);
    else if (s.code[0] == 'T')
        for (int n = 0; n <= store.trk_top; ++n)
            numbers.push_back((store.trk[static_cast<std::size_t>(n)].pos.lat - 500000000) / 64);
    return std::ranges::is_sorted(numbers) && (numbers.empty() || numbers.back() < items);
}

std::string said(const session& s, const std::string& more)
{
    return std::string(s.code) + (s.sentences ? " of sentences " : " of packets ") + more;
}

/// What the receiver sends in a session without faults.
int packets_of(const session& s)
{
    transfer_rig rig;
    prepare(rig, s);
    rig.run(s.code);
    EXPECT_EQ(transfer.end, transfer_end::whole) << said(s, rig.transcript);
    return rig.faults.count;
}

int writes_of(const session& s)
{
    transfer_rig rig;
    prepare(rig, s);
    rig.run(s.code);
    return rig.writes;
}

/// A session behind the one that went wrong finds the line in order.
void expect_next_session_whole(transfer_rig& rig, const session& s, const std::string& what)
{
    rig.faults = {};
    rig.on_write = {};
    job.op_cancel = false;
    if (s.reads) {
        store_reset();
        store.wp_name_max = 8;
        if (s.sentences && s.code[0] == 'R')
            for (int n = 0; n < items; ++n) {
                wayp_rec w = some_waypoint(n);
                wayp_insert(w, 0);
            }
    }
    rig.user.time_s += 5; // a receiver forgets what it was about
    rig.run(s.code);
    EXPECT_EQ(transfer.end, transfer_end::whole) << what;
    if (s.reads) {
        EXPECT_EQ(stored_items(s), items) << what;
    }
}

} // namespace

TEST(TransferFaults, EachFaultAtTheFirstAMiddleAndTheLastPacketEndsInTimeAndKeepsWhatCame)
{
    for (const session& s : sessions) {
        const int packets = packets_of(s);
        for (const sim_fault fault : all_faults)
            for (const int at : {1, packets / 2, packets})
                for (const answer again : {answer::yes, answer::no}) {
                    transfer_rig rig;
                    prepare(rig, s);
                    rig.faults.rules = {{.what = fault, .at = at}};
                    rig.user.answers.assign(20, again);
                    const double seconds = rig.run(s.code);
                    const std::string what =
                        said(s, "fault " + std::to_string(static_cast<int>(fault)) + " at " +
                                    std::to_string(at) + " of " + std::to_string(packets) +
                                    (again == answer::yes ? " again\n" : "\n") + rig.transcript);
                    EXPECT_LT(seconds, 20) << what;
                    EXPECT_FALSE(rig.line.opened) << what;
                    EXPECT_TRUE(job.code.empty()) << what;
                    if (!s.reads)
                        continue;
                    const int got = stored_items(s);
                    EXPECT_GE(got, 0) << what;
                    // Only the packet that was hit may be missing, and what would have come after.
                    if (transfer.end == transfer_end::whole) {
                        EXPECT_EQ(got, items) << what;
                    }
                    expect_next_session_whole(rig, s, what);
                }
    }
}

TEST(TransferFaults, CancelAtEveryPacketEndsTheSessionAndKeepsWhatCame)
{
    for (const session& s : sessions) {
        const int writes = writes_of(s);
        for (int at = 1; at <= writes; ++at) {
            transfer_rig rig;
            prepare(rig, s);
            rig.on_write = [at](int write, const std::string&) {
                if (write == at)
                    op.Abbr.click();
                return true;
            };
            const double seconds = rig.run(s.code);
            const std::string what =
                said(s, "cancelled at " + std::to_string(at) + "\n" + rig.transcript);
            EXPECT_LT(seconds, 2.5) << what;
            EXPECT_FALSE(rig.line.opened) << what;
            EXPECT_EQ(rig.user.count(1530), 0) << what;
            if (s.reads) {
                EXPECT_GE(stored_items(s), 0) << what;
            }
            EXPECT_LE(rig.writes, writes + 3) << what;
            expect_next_session_whole(rig, s, what);
        }
    }
}

TEST(TransferFaults, ADeviceThatGoesAwayEndsTheSessionAtOnce)
{
    for (const session& s : sessions) {
        transfer_rig rig;
        prepare(rig, s);
        rig.on_write = [&rig](int write, const std::string&) {
            if (write != 6)
                return true;
            rig.line.hang_up();
            return false;
        };
        rig.line.refuse = "";
        rig.user.answers.assign(20, answer::no);
        const double seconds = rig.run(s.code);
        EXPECT_LT(seconds, 20) << said(s, rig.transcript);
        EXPECT_FALSE(rig.line.opened);
    }
}

TEST(TransferFaults, AThousandRandomSessionsLoseNothing)
{
    std::mt19937 random(20010614);
    std::set<transfer_end> ends;
    int whole = 0;
    for (int n = 0; n < 1000; ++n) {
        const session& s = sessions[random() % std::size(sessions)];
        transfer_rig rig;
        prepare(rig, s);
        rig.faults.seed = random();
        const double probability = static_cast<double>(random() % 15) / 100;
        for (int k = 0; k < 2; ++k)
            rig.faults.rules.push_back({.what = all_faults[random() % std::size(all_faults)],
                                        .seconds = static_cast<double>(random() % 30) / 10,
                                        .probability = probability});
        rig.line.piece = random() % 3 == 0 ? 1 + random() % 9 : 0;
        rig.line.byte_time_s = random() % 2 == 0 ? 0.00104 : 0;
        for (int k = 0; k < 50; ++k)
            rig.user.answers.push_back(random() % 8 == 0 ? answer::no : answer::yes);
        const int cancel_at = random() % 10 == 0 ? static_cast<int>(random() % 20) : 0;
        rig.on_write = [&](int write, const std::string&) {
            if (write == cancel_at)
                op.Abbr.click();
            return true;
        };
        const double seconds = rig.run(s.code);
        const std::string what = said(s, "number " + std::to_string(n) + "\n" + rig.transcript);
        ASSERT_LT(seconds, 200) << what;
        ASSERT_FALSE(rig.line.opened) << what;
        ends.insert(transfer.end);
        whole += transfer.end == transfer_end::whole;
        if (!s.reads)
            continue;
        if (transfer.end == transfer_end::incomplete) { // and the user was told
            ASSERT_TRUE(stored_in_order(s)) << what;
            ASSERT_EQ(op2.anz2.caption.substr(0, 4), "8151") << what;
            continue;
        }
        ASSERT_GE(stored_items(s), 0) << what;
        if (transfer.end == transfer_end::whole) {
            ASSERT_EQ(stored_items(s), items) << what;
        }
    }
    EXPECT_GT(whole, 300);
    EXPECT_GE(ends.size(), 4U); // all ways to end occur
}

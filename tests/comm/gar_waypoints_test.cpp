// Waypoints from and to a Garmin receiver, as whole sessions over the line.
#include "comm/comm.h"
#include "comm/gar_proto.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/trap.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

using namespace velkoro;

namespace {

class GarWaypoints : public testing::Test {
protected:
    transfer_rig rig{};

    void fill_store(int count)
    {
        for (int n = 0; n < count; ++n) {
            wayp_rec w = some_waypoint(n);
            wayp_insert(w, 0);
        }
        store.wp_dirty = false;
    }
    static void limit(gar_place place, int value)
    {
        settings.garmin[static_cast<std::size_t>(place)] = value;
    }
    /// How often a line stands in the transcript.
    int lines(const std::string& part) const
    {
        int n = 0;
        for (std::size_t at = rig.transcript.find(part); at != std::string::npos;
             at = rig.transcript.find(part, at + 1))
            ++n;
        return n;
    }
    std::string arrived_names(sim_list list)
    {
        std::string out;
        for (const sim_packet& p : rig.garmin.arrived[list])
            out += (out.empty() ? "" : " ") + p.data.substr(0, 6);
        return out;
    }
};

constexpr const char* first_ack = "> 10 06 02 1B 00 DD 10 03"; // names 27

} // namespace

TEST_F(GarWaypoints, AreReadIntoTheStoreAndCounted)
{
    rig.holds(sim_list::waypoints, waypoint_packets(5, 103));
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002 W0003 W0004");
    EXPECT_EQ(store.wp[3].kom, "POINT 3");
    EXPECT_EQ(store.wp[3].pos, some_waypoint(3).pos);
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_EQ(op2.anz.caption, "2890 5 # #\n2900 0 # #\n2910 0 # #");
    EXPECT_EQ(rig.user.messages.size(), 0U);
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(GarWaypoints, OfAnEmptyReceiverGiveOneAcknowledgementAndAMessage)
{
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::empty);
    EXPECT_EQ(op2.anz.caption, "2670 " + transfer.receiver + " # #");
    EXPECT_EQ(lines(first_ack), 1);
    // Behind the count the receiver closes the list; that is taken and not acknowledged.
    EXPECT_TRUE(rig.transcript.ends_with("< 10 0C 02 07 00 EB 10 03\n")) << rig.transcript;
}

TEST_F(GarWaypoints, ATransferClosedInPlaceOfTheCountIsAnEmptyList)
{
    rig.on_write = [&](int, const std::string& bytes) {
        if (bytes != wire(10, le16(7)))
            return true;
        rig.line.send(wire_ack(10) + wire(12, le16(7)));
        return false;
    };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::empty);
    EXPECT_EQ(lines(first_ack), 0);
    EXPECT_EQ(op2.anz.caption, "2670 " + transfer.receiver + " # #");
}

TEST_F(GarWaypoints, OfAReceiverThatDoesNotAnswerEndWithAMessage)
{
    rig.on_write = [](int, const std::string&) { return false; };
    const double seconds = rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::no_receiver);
    EXPECT_EQ(op2.anz.caption, "1110 # # #");
    EXPECT_LT(seconds, 1.2);
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(GarWaypoints, WithoutAPortOnlyTheMissingPortIsTold)
{
    comm.comm_port = 0;
    rig.run("W_L");
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{1000}));
    EXPECT_EQ(op2.anz.caption, "");
}

TEST_F(GarWaypoints, ACommandWithoutAnAnswerEndsTheSession)
{
    rig.on_write = [](int, const std::string& bytes) { return bytes != wire(10, le16(7)); };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::no_receiver);
    EXPECT_EQ(op2.anz.caption, "1110 # # #");
}

TEST_F(GarWaypoints, MoreThanAnnouncedEndTheReadingBehindTheAnnouncedOnes)
{
    rig.holds(sim_list::waypoints, waypoint_packets(101, 103));
    // The receiver announces 100 and sends 101.
    rig.garmin.send = [&](const std::string& frame) {
        rig.line.send(frame == wire(27, le16(101)) ? wire(27, le16(100)) : frame);
    };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::too_many);
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{2690}));
    EXPECT_EQ(store.wp_top, 99);
    EXPECT_EQ(store.wp[99].nam, "W0099");
}

TEST_F(GarWaypoints, AnEarlyEndFromTheReceiverIsANormalEnd)
{
    rig.holds(sim_list::waypoints, waypoint_packets(4, 103));
    rig.garmin.send = [&](const std::string& frame) {
        rig.line.send(frame == wire(27, le16(4)) ? wire(27, le16(40)) : frame);
    };
    const double seconds = rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(store.wp_top, 3);
    EXPECT_LT(seconds, 1);
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarWaypoints, ProximityDistancesComeFromTheSecondList)
{
    rig.holds(sim_list::waypoints, waypoint_packets(3, 103));
    rig.holds(sim_list::proximity, {waypoint_packet(1, 403, 19)});
    rig.run("W_L");
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002");
    EXPECT_EQ(store.wp[1].prox, 2);
    EXPECT_EQ(store.wp[0].prox, 0);
    EXPECT_EQ(op2.anz.caption, "2890 4 # #\n2900 0 # #\n2910 1 # #");
}

TEST_F(GarWaypoints, AProximityRecordWithoutASymbolLeavesTheSymbol)
{
    rig.protocols("L001 A010 A100 D155 A400 D450");
    wayp_rec w = some_waypoint(1);
    w.symb = 3;
    wayp_insert(w, 0);
    rig.holds(sim_list::waypoints, {waypoint_packet(2, 155)});
    rig.holds(sim_list::proximity, {waypoint_packet(1, 450, 19)});
    hooks.conflict_ask = [](conflict_question&) {
        ADD_FAILURE() << "nothing differs";
        return conflict_answer::take_new;
    };
    rig.run("W_L");
    EXPECT_EQ(store.wp[0].symb, 3);
    EXPECT_EQ(store.wp[0].prox, 2);
}

TEST_F(GarWaypoints, ASilentSecondListDoesNotSpoilTheFirst)
{
    rig.holds(sim_list::waypoints, waypoint_packets(3, 103));
    rig.on_write = [](int, const std::string& bytes) { return bytes != wire(10, le16(3)); };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(store.wp_top, 2);
    EXPECT_EQ(op2.anz.caption, "2890 3 # #\n2900 0 # #\n2910 0 # #");
}

TEST_F(GarWaypoints, APacketRepeatedAfterANakIsAcknowledgedAndTakenOnce)
{
    rig.holds(sim_list::waypoints, waypoint_packets(4, 103));
    // The receiver misses the acknowledgement of the second record; asked again, it repeats it.
    const std::string ack = wire(6, le16(35));
    int acks = 0;
    rig.on_write = [&](int, const std::string& bytes) { return bytes != ack || ++acks != 2; };
    rig.run("W_L");
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{1530}));
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002 W0003");
    EXPECT_EQ(acks, 5);
}

TEST_F(GarWaypoints, EqualPacketsWithoutANakAreBothTakenAndMakeOneWaypoint)
{
    rig.holds(sim_list::waypoints, {waypoint_packet(0, 103), waypoint_packet(0, 103)});
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(transfer.records, 2);
    EXPECT_EQ(store.wp_top, 0);
}

TEST_F(GarWaypoints, APacketThatTheReceiverRepeatsOnItsOwnCostsNoOtherOne)
{
    rig.holds(sim_list::waypoints, waypoint_packets(4, 103));
    rig.protocols("L001 A010 A100 D103");
    const std::string twice = wire(35, waypoint_packet(1, 103).data);
    rig.garmin.send = [&](const std::string& frame) {
        rig.line.send(frame);
        if (frame == twice)
            rig.line.send(frame);
    };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002 W0003");
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarWaypoints, AListThatBreaksOffIsKeptAsFarAsItCame)
{
    rig.holds(sim_list::waypoints, waypoint_packets(9, 103));
    int acks = 0;
    rig.on_write = [&](int, const std::string& bytes) {
        return bytes != wire(6, le16(35)) || ++acks < 4;
    };
    rig.user.answers = {answer::no};
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::broken_off);
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{1530}));
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002 W0003");
    EXPECT_EQ(lines("> 10 0C 02 07 00 EB 10 03"), 1);
    EXPECT_EQ(op2.anz.caption, "2890 4 # #\n2900 0 # #\n2910 0 # #");
}

TEST_F(GarWaypoints, CancelOnReadingSendsTheCloseAndKeepsWhatCame)
{
    rig.holds(sim_list::waypoints, waypoint_packets(9, 103));
    int acks = 0;
    rig.on_write = [&](int, const std::string& bytes) {
        if (bytes == wire(6, le16(35)) && ++acks == 3)
            op.Abbr.click();
        return true;
    };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002 W0003");
    // Once as the session's own, and once more when nothing follows its acknowledgement.
    EXPECT_EQ(lines("> 10 0C 02 07 00 EB 10 03"), 2);
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarWaypoints, CancelBeforeTheFirstPacketEndsTheJobAtItsFirstCheck)
{
    rig.holds(sim_list::waypoints, waypoint_packets(9, 103));
    rig.on_write = [&](int write, const std::string&) {
        if (write == 1)
            op.Abbr.click();
        return true;
    };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_EQ(op.anz.caption.substr(0, 4), "2840");
}

TEST_F(GarWaypoints, AConflictIsAskedAboutAndTheAnswerRemembered)
{
    for (int n = 0; n < 3; ++n) {
        wayp_rec w = some_waypoint(n);
        w.kom = "OLD";
        wayp_insert(w, 0);
    }
    rig.holds(sim_list::waypoints, waypoint_packets(4, 103));
    int asked = 0;
    hooks.conflict_ask = [&](conflict_question& q) {
        ++asked;
        q.remember = true;
        return conflict_answer::take_new;
    };
    rig.run("W_L");
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(store.wp[2].kom, "POINT 2");
    EXPECT_EQ(op2.anz.caption, "2890 4 # #\n2900 3 # #\n2910 0 # #");
}

TEST_F(GarWaypoints, EndingTheBatchInTheQuestionKeepsWhatWasTaken)
{
    wayp_rec w = some_waypoint(2);
    w.kom = "OLD";
    wayp_insert(w, 0);
    rig.holds(sim_list::waypoints, waypoint_packets(5, 103));
    hooks.conflict_ask = [](conflict_question&) { return conflict_answer::cancel_batch; };
    rig.run("W_L");
    EXPECT_EQ(rig.names(), "W0002 W0000 W0001");
    EXPECT_EQ(store.wp[0].kom, "OLD");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(op2.anz.caption, "2890 2 # #\n2900 0 # #\n2910 0 # #");
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(GarWaypoints, AnUnsupportedRecordTypeIsToldOnceAndLeftOut)
{
    rig.protocols("L001 A010 A100 D199");
    rig.holds(sim_list::waypoints, waypoint_packets(3, 103));
    rig.run("W_L");
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{1115}));
    EXPECT_EQ(store.wp_top, -1);
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(GarWaypoints, OfAnotherLinkProtocolAreAcknowledgedUnderItsNumbers)
{
    rig.protocols("L002 A011 A100 D150");
    rig.holds(sim_list::waypoints, waypoint_packets(3, 150));
    rig.run("W_L");
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002");
    EXPECT_EQ(lines("> " + hex(wire(6, le16(35)))), 1); // the count
    EXPECT_EQ(lines("> " + hex(wire(6, le16(43)))), 3); // the waypoints
    EXPECT_EQ(lines("> " + hex(wire(11, le16(21)))), 1);
}

TEST_F(GarWaypoints, GoOutInTheOrderOfTheList)
{
    fill_store(4);
    hooks.list_order = [] { return std::vector<int>{3, 2, 1, 0}; };
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(transfer.records, 4);
    EXPECT_EQ(arrived_names(sim_list::waypoints), "W0003  W0002  W0001  W0000 ");
    EXPECT_EQ(op2.anz.caption, "");
    EXPECT_EQ(lines("> " + hex(wire(27, le16(4)))), 1);
    EXPECT_EQ(lines("> " + hex(wire(12, le16(7)))), 1);
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(GarWaypoints, OnlyTheMarkedOnesGoOut)
{
    fill_store(4);
    hooks.marked_rows = [] { return std::vector<int>{2, 0}; };
    transfer.choice.marked_only = true;
    rig.run("W_S");
    EXPECT_EQ(arrived_names(sim_list::waypoints), "W0002  W0000 ");
}

TEST_F(GarWaypoints, OfRoutesGoOutOnceEachWithTheRoutesBehindThem)
{
    fill_store(5);
    route_add({.nam = "ONE", .wps = "W0003$W0001$"});
    route_add({.nam = "TWO", .wps = "W0001$W0004$"});
    transfer.choice.waypoints = false;
    transfer.choice.routes = true;
    rig.run("W_S");
    EXPECT_EQ(arrived_names(sim_list::waypoints), "W0003  W0001  W0004 ");
    EXPECT_EQ(rig.garmin.arrived[sim_list::routes].size(), 2U + 4U + 2U);
    rig.garmin.arrived.clear();
    transfer.choice.route_marks = "01";
    rig.run("W_S");
    EXPECT_EQ(arrived_names(sim_list::waypoints), "W0001  W0004 ");
    EXPECT_EQ(rig.garmin.arrived[sim_list::routes].size(), 1U + 2U + 1U);
}

TEST_F(GarWaypoints, WithAProximityDistanceGoOutFirstAndAsSuch)
{
    fill_store(4);
    store.wp[1].prox = 5;
    store.wp[3].prox = -5; // the alarm is off
    limit(gar_place::mprox, 10);
    rig.run("W_S");
    EXPECT_EQ(arrived_names(sim_list::proximity), "W0001 ");
    EXPECT_EQ(arrived_names(sim_list::waypoints), "W0000  W0002  W0003 ");
    const std::size_t first = rig.transcript.find("> " + hex(wire(12, le16(3))));
    const std::size_t second = rig.transcript.find("> " + hex(wire(12, le16(7))));
    EXPECT_LT(first, second);
    EXPECT_NE(second, std::string::npos);
}

TEST_F(GarWaypoints, WithoutAProximityProtocolAllGoOutAsWaypoints)
{
    rig.protocols("L001 A010 A100 D108");
    fill_store(3);
    store.wp[1].prox = 5;
    rig.run("W_S");
    EXPECT_EQ(rig.garmin.arrived[sim_list::waypoints].size(), 3U);
    EXPECT_EQ(rig.garmin.arrived.count(sim_list::proximity), 0U);
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarWaypoints, MoreThanTheReceiverHoldsAreAskedAbout)
{
    fill_store(4);
    limit(gar_place::mwp, 3);
    rig.user.answers = {answer::no};
    rig.run("W_S");
    EXPECT_EQ(rig.user.messages.at(0).text, "2950 4 3 # 2760 # # #");
    EXPECT_EQ(rig.user.messages.at(0).buttons, buttons::yes_no);
    EXPECT_EQ(transfer.end, transfer_end::declined);
    EXPECT_TRUE(rig.garmin.arrived.empty());
    EXPECT_FALSE(rig.line.opened);

    rig.user.answers = {answer::yes};
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.garmin.arrived[sim_list::waypoints].size(), 4U);
}

TEST_F(GarWaypoints, MoreProximityWaypointsThanTheReceiverHoldsAreAskedAbout)
{
    fill_store(2);
    store.wp[1].prox = 5;
    rig.user.answers = {answer::no};
    rig.run("W_S");
    EXPECT_EQ(rig.user.messages.at(0).text, "2920 1 0 # 2760 # # #");
    EXPECT_TRUE(rig.garmin.arrived.empty());
}

TEST_F(GarWaypoints, NothingChosenIsSaid)
{
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::empty);
    EXPECT_EQ(op2.anz.caption, "8122 # # #");
}

TEST_F(GarWaypoints, ACountWithoutAnAnswerEndsTheWriting)
{
    fill_store(2);
    rig.on_write = [](int, const std::string& bytes) { return bytes != wire(27, le16(2)); };
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::no_receiver);
    EXPECT_EQ(op2.anz.caption, "1110 # # #");
    EXPECT_EQ(lines("> 10 0C"), 0);
}

TEST_F(GarWaypoints, AReceiverThatFallsSilentIsToldWithTheNumberSent)
{
    fill_store(5);
    int records = 0;
    rig.on_write = [&](int, const std::string& bytes) {
        records += bytes.size() > 2 && bytes[1] == 35;
        return records < 3;
    };
    rig.user.answers = {answer::no};
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::broken_off);
    EXPECT_EQ(op2.anz.caption, "2730 2 # #");
    EXPECT_EQ(rig.user.count(1530), 1);
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(GarWaypoints, CancelOnWritingStopsAndStillClosesTheTransfer)
{
    fill_store(9);
    int records = 0;
    rig.on_write = [&](int, const std::string& bytes) {
        if (bytes[1] == 35 && ++records == 3)
            op.Abbr.click();
        return true;
    };
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(rig.garmin.arrived[sim_list::waypoints].size(), 3U);
    EXPECT_EQ(lines("> " + hex(wire(12, le16(7)))), 1);
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarWaypoints, AFailureInsideIsReportedUnderTheSessionsName)
{
    rig.holds(sim_list::waypoints, waypoint_packets(2, 103));
    hooks.row_added = [](int, bool) { throw std::runtime_error("broken"); };
    rig.run("W_L");
    ASSERT_EQ(rig.user.messages.size(), 1U);
    EXPECT_EQ(rig.user.messages[0].text, "broken in G_W_lesen");
    EXPECT_FALSE(rig.line.opened);
}

#include "tools/receiver-sim/sim_garmin.h"

#include <gtest/gtest.h>

namespace velkoro {
namespace {

using strings = std::vector<std::string>;

/// A receiver whose frames are collected as packets.
struct SimGarmin : testing::Test {
    sim_garmin r{};
    std::vector<sim_packet> sent{};
    std::vector<sim_list> received{};

    SimGarmin()
    {
        r.identity.protocols = {"L001", "A010", "A100", "D103", "A200", "D201", "D103"};
        r.send = [this](const std::string& frame) {
            sim_unframer in;
            for (const char c : frame)
                if (in.take(c) == sim_take::packet)
                    sent.push_back(in.packet);
        };
        r.received = [this](sim_list list) { received.push_back(list); };
    }
    /// What the receiver answers to a packet.
    std::vector<sim_packet> ask(int id, std::string data)
    {
        sent.clear();
        sim_garmin_take(r, sim_frame({id, std::move(data)}));
        return sent;
    }
};

std::string w(int value)
{
    return {static_cast<char>(value & 255), static_cast<char>(value >> 8)};
}

TEST_F(SimGarmin, TellsProductAndVersionAndNothingElseWithoutAProtocolArray)
{
    const std::string product = w(77) + w(350) + "GPS 12 Software Version 3.50" + '\0';
    EXPECT_EQ(ask(254, ""), (std::vector<sim_packet>{{6, w(254)}, {255, product}}));
    EXPECT_EQ(ask(6, w(255)), std::vector<sim_packet>{});
}

TEST_F(SimGarmin, FollowsWithItsProtocolsWhenItReportsThem)
{
    r.identity.reports_protocols = true;
    r.identity.extended_packets = 1;
    ask(254, "");
    EXPECT_EQ(ask(6, w(255)).at(0).id, 248);
    const std::string array = "L" + w(1) + "A" + w(10) + "A" + w(100) + "D" + w(103) + "A" +
                              w(200) + "D" + w(201) + "D" + w(103);
    EXPECT_EQ(ask(6, w(248)), (std::vector<sim_packet>{{253, array}}));
    EXPECT_EQ(ask(6, w(253)), std::vector<sim_packet>{});
}

TEST_F(SimGarmin, SendsAListPacketByPacketAsTheHostAcknowledges)
{
    r.memory[sim_list::waypoints] = {{35, "A"}, {35, "B"}};
    EXPECT_EQ(ask(10, w(7)), (std::vector<sim_packet>{{6, w(10)}, {27, w(2)}}));
    EXPECT_EQ(ask(6, w(27)), (std::vector<sim_packet>{{35, "A"}}));
    EXPECT_EQ(ask(6, w(35)), (std::vector<sim_packet>{{35, "B"}}));
    EXPECT_EQ(ask(6, w(35)), (std::vector<sim_packet>{{12, w(7)}}));
    EXPECT_EQ(ask(6, w(12)), std::vector<sim_packet>{});
}

TEST_F(SimGarmin, SaysAListIsEmptyAndIsSilentOnListsThatItLacks)
{
    EXPECT_EQ(ask(10, w(4)), (std::vector<sim_packet>{{6, w(10)}, {27, w(0)}}));
    EXPECT_EQ(ask(10, w(6)), (std::vector<sim_packet>{{6, w(10)}})); // no A3xx
}

TEST_F(SimGarmin, RepeatsTheLastPacketWhenTheHostHasNotUnderstoodIt)
{
    r.memory[sim_list::waypoints] = {{35, "A"}};
    ask(10, w(7));
    EXPECT_EQ(ask(21, w(34)), (std::vector<sim_packet>{{27, w(1)}}));
    EXPECT_EQ(ask(6, w(27)), (std::vector<sim_packet>{{35, "A"}}));
}

TEST_F(SimGarmin, AnswersADamagedPacketWithANegativeAcknowledgement)
{
    std::string frame = sim_frame({35, "ABC"});
    frame[4] = 'X';
    sim_garmin_take(r, frame);
    EXPECT_EQ(sent, (std::vector<sim_packet>{{21, w(35)}}));
}

TEST_F(SimGarmin, KeepsAListThatTheHostSends)
{
    EXPECT_EQ(ask(27, w(2)), (std::vector<sim_packet>{{6, w(27)}}));
    EXPECT_EQ(ask(35, "A"), (std::vector<sim_packet>{{6, w(35)}}));
    ask(35, "B");
    ask(12, w(7));
    EXPECT_EQ(received, std::vector{sim_list::waypoints});
    EXPECT_EQ(r.arrived[sim_list::waypoints], (std::vector<sim_packet>{{35, "A"}, {35, "B"}}));
}

TEST_F(SimGarmin, KeepsWhatHasArrivedOfAListThatTheHostBreaksOff)
{
    ask(27, w(9));
    ask(29, "R");
    ask(30, "A");
    ask(12, w(7));
    EXPECT_EQ(received, std::vector{sim_list::routes});
    EXPECT_EQ(r.arrived[sim_list::routes].size(), 2U);
}

TEST_F(SimGarmin, StopsSendingWhenTheHostBreaksOff)
{
    r.memory[sim_list::waypoints] = {{35, "A"}, {35, "B"}};
    ask(10, w(7));
    EXPECT_EQ(ask(12, w(7)), (std::vector<sim_packet>{{6, w(12)}}));
    EXPECT_EQ(ask(6, w(27)), std::vector<sim_packet>{});
}

TEST_F(SimGarmin, SpeaksTheNumbersOfTheSecondLinkAndCommandProtocols)
{
    r.identity.protocols = {"L002", "A011", "A100", "D150", "A400", "D450"};
    r.memory[sim_list::waypoints] = {{35, "A"}};
    r.memory[sim_list::proximity] = {{19, "P"}};
    EXPECT_EQ(ask(11, w(21)), (std::vector<sim_packet>{{6, w(11)}, {35, w(1)}}));
    EXPECT_EQ(ask(6, w(35)), (std::vector<sim_packet>{{43, "A"}}));
    EXPECT_EQ(ask(6, w(43)), (std::vector<sim_packet>{{12, w(21)}}));
    ask(11, w(17));
    EXPECT_EQ(ask(6, w(35)), (std::vector<sim_packet>{{27, "P"}}));
    ask(12, w(0));
    EXPECT_EQ(ask(11, w(7)), (std::vector<sim_packet>{{6, w(11)}})); // no such command there
    ask(35, w(1));
    ask(43, "B");
    ask(12, w(21));
    EXPECT_EQ(r.arrived[sim_list::waypoints], (std::vector<sim_packet>{{35, "B"}}));
}

TEST_F(SimGarmin, TellsAndTakesTheTimeAndSwitchesOff)
{
    r.clock_data = [] { return std::string("TIME"); };
    std::string set;
    r.clock_set = [&](const std::string& data) { set = data; };
    EXPECT_EQ(ask(10, w(5)), (std::vector<sim_packet>{{6, w(10)}, {14, "TIME"}}));
    ask(6, w(14));
    ask(14, "NEW");
    EXPECT_EQ(set, "NEW");
    EXPECT_EQ(ask(10, w(8)), (std::vector<sim_packet>{{6, w(10)}}));
    EXPECT_FALSE(r.powered);
    EXPECT_EQ(ask(254, ""), std::vector<sim_packet>{});
}

TEST_F(SimGarmin, SendsItsPositionOnceASecondWhileTheHostWantsIt)
{
    r.live_data = [] { return std::string("LIVE"); };
    ask(10, w(49));
    sent.clear();
    sim_garmin_second(r);
    EXPECT_EQ(sent, std::vector<sim_packet>{}); // no A800
    r.identity.protocols.emplace_back("A800");
    ask(10, w(49));
    sent.clear();
    sim_garmin_second(r);
    EXPECT_EQ(sent, (std::vector<sim_packet>{{51, "LIVE"}}));
    ask(6, w(51));
    ask(10, w(50));
    sent.clear();
    sim_garmin_second(r);
    EXPECT_EQ(sent, std::vector<sim_packet>{});
}

TEST_F(SimGarmin, FindsItsProtocolsAndTheirRecords)
{
    EXPECT_EQ(sim_protocol(r.identity, 'L', 0), 1);
    EXPECT_EQ(sim_protocol(r.identity, 'A', 0), 10);
    EXPECT_EQ(sim_protocol(r.identity, 'A', 2), 200);
    EXPECT_EQ(sim_protocol(r.identity, 'A', 3), 0);
    EXPECT_EQ(sim_record(r.identity, 2, 1), 201);
    EXPECT_EQ(sim_record(r.identity, 2, 2), 103);
    EXPECT_EQ(sim_record(r.identity, 2, 3), 0);
}

} // namespace
} // namespace velkoro

#include "comm/mag_link.h"
#include "core/settings.h"
#include "tests/comm/scripted_line.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

class MagComm : public testing::Test {
protected:
    scripted_platform user{};
    scripted_line line{user};
    void SetUp() override
    {
        scripted_platform::plain_texts();
        set_format(1);
    }
    static void set_format(int n)
    {
        settings.garmin[static_cast<std::size_t>(gar_place::gar_wp_format)] = n;
    }
};

} // namespace

TEST(MagSentence, TheCommandsAreThoseOfTheDocument)
{
    const std::pair<const char*, const char*> commands[] = {
        {"CMD,HANDON", "70"}, {"CMD,HANDOFF", "3E"}, {"CMD,VERSION", "28"}, {"CMD,WAYPOINT", "71"},
        {"CMD,ROUTE", "2B"},  {"CMD,TRACK", "3D"},   {"CMD,STOP", "6A"},    {"CSM,1D", "10"}};
    for (const auto& [text, digits] : commands)
        EXPECT_EQ(mag_sentence(text), "$PMGN" + std::string(text) + "*" + digits + "\r\n");
}

TEST(MagSentence, AChecksumBelowSixteenKeepsItsZero)
{
    EXPECT_EQ(mag_sentence("WPL,4828.413,N,00912.746,E,0000000,M,LOW,,a"),
              "$PMGNWPL,4828.413,N,00912.746,E,0000000,M,LOW,,a*0F\r\n");
}

TEST_F(MagComm, TheReplyIsReturnedWithoutItsEnd)
{
    line.play(R"(> "$PMGNCMD,VERSION*28"
                 < "$PMGNVER,024,1.10,MAP 330*1D")");
    EXPECT_EQ(mag_comm("CMD,VERSION", "VER"), "$PMGNVER,024,1.10,MAP 330*1D");
    EXPECT_EQ(line.settings, "4800,n,8,1");
}

TEST_F(MagComm, ThePortOpensAtTheSpeedOfTheFormat)
{
    const char* speeds[] = {"4800", "9600", "19200", "28800", "56000", "128000"};
    line.on_output = [](const std::string&) {};
    for (int i = 1; i <= 6; ++i) {
        set_format(i);
        mag_comm("CMD,HANDON", "");
        EXPECT_EQ(line.settings, std::string(speeds[i - 1]) + ",n,8,1");
        comm_port_set(false);
    }
}

TEST_F(MagComm, AnOpenPortStaysAsItIs)
{
    line.on_output = [](const std::string&) {};
    mag_comm("CMD,HANDON", "");
    set_format(2);
    mag_comm("CMD,HANDON", "");
    EXPECT_EQ(line.settings, "4800,n,8,1");
    EXPECT_EQ(line.opens, 1);
}

TEST_F(MagComm, WithoutAPortNothingHappens)
{
    comm.comm_port = 0;
    EXPECT_EQ(mag_comm("CMD,VERSION", "VER"), "");
    EXPECT_EQ(line.opens, 0);
    EXPECT_EQ(user.pumps, 0);
}

TEST_F(MagComm, WithoutATagNothingIsWaitedFor)
{
    line.play(R"(> "$PMGNCMD,HANDON*70")");
    EXPECT_EQ(mag_comm("CMD,HANDON", ""), "");
    EXPECT_EQ(user.pumps, 0);
}

TEST_F(MagComm, WithoutAReceiverTheWaitIsThreeSeconds)
{
    const double begin = user.time_s;
    line.play(R"(> "$PMGNCMD,VERSION*28")");
    EXPECT_EQ(mag_comm("CMD,VERSION", "VER"), "");
    EXPECT_GT(user.time_s - begin, 3.0);
    EXPECT_LT(user.time_s - begin, 3.1);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(MagComm, ADamagedReplyIsNoReply)
{
    line.play(R"(> "$PMGNCMD,VERSION*28"
                 < "$PMGNVER,024,1.10,MAP 331*1D")");
    EXPECT_EQ(mag_comm("CMD,VERSION", "VER"), "");
}

TEST_F(MagComm, TheEndLineIsAReplyToEveryTag)
{
    line.play(R"(> "$PMGNCMD,ROUTE*2B"
                 < "$PMGNCMD,END*3D")");
    EXPECT_EQ(mag_comm("CMD,ROUTE", "RTE"), "$PMGNCMD,END*3D");
}

TEST_F(MagComm, AWaypointMayComeAsTheGeneralSentence)
{
    const std::string general = sentence("GPWPL,4828.413,N,00912.746,E,HUT");
    line.expect("$PMGNCMD,WAYPOINT*71\r\n", general);
    EXPECT_EQ(mag_comm("CMD,WAYPOINT", "WPL") + "\r\n", general);
    line.expect("$PMGNCMD,ROUTE*2B\r\n", general);
    EXPECT_EQ(mag_comm("CMD,ROUTE", "RTE"), "");
}

TEST_F(MagComm, OfTwoSentencesInOneEventTheOneWithTheTagIsTakenAndTheRestIsLost)
{
    line.expect("$PMGNCMD,VERSION*28\r\n", sentence("PMGNCSM,28") +
                                               sentence("PMGNVER,024,1.10,MAP 330") +
                                               sentence("PMGNWPL,x"));
    EXPECT_EQ(mag_comm("CMD,VERSION", "VER"), "$PMGNVER,024,1.10,MAP 330*1D");
    EXPECT_EQ(comm.comm_rx_frame, "$PMGNVER,024,1.10,MAP 330*1D");
}

TEST_F(MagComm, AReplyMayComeInPiecesAndLate)
{
    line.piece = 5;
    line.byte_time_s = 0.002;
    line.play(R"(> "$PMGNCMD,VERSION*28"
                 ! 2.5
                 < "$PMGNVER,024,1.10,MAP 330*1D")");
    EXPECT_EQ(mag_comm("CMD,VERSION", "VER"), "$PMGNVER,024,1.10,MAP 330*1D");
}

TEST_F(MagComm, AnAcknowledgementOfTheLineSentIsTaken)
{
    line.play(R"(> "$PMGNWPL,4828.413,N,00912.746,E,0000412,M,HUT,Hut above the lake,a*79"
                 < "$PMGNCSM,79*6B")");
    EXPECT_EQ(mag_comm("WPL,4828.413,N,00912.746,E,0000412,M,HUT,Hut above the lake,a", "CSM"),
              "$PMGNCSM,79*6B");
}

TEST_F(MagComm, AnAcknowledgementOfAnotherLineIsAFailure)
{
    line.play(R"(> "$PMGNWPL,4828.413,N,00912.746,E,0000412,M,HUT,Hut above the lake,a*79"
                 < "$PMGNCSM,52*62")");
    EXPECT_EQ(mag_comm("WPL,4828.413,N,00912.746,E,0000412,M,HUT,Hut above the lake,a", "CSM"), "");
}

TEST_F(MagComm, AnAcknowledgementWithoutDigitsIsAFailure)
{
    line.on_output = [&](const std::string&) { line.send(sentence("PMGNCSM")); };
    EXPECT_EQ(mag_comm("CMD,HANDON", "CSM"), "");
}

TEST_F(MagComm, ARefusedSpeedIsToldOnceAndEndsTheJob)
{
    set_format(6);
    line.refused_settings = {"128000,n,8,1"};
    EXPECT_EQ(mag_comm("CMD,HANDON", ""), "");
    EXPECT_EQ(mag_comm("CMD,WAYPOINT", "WPL"), "");
    EXPECT_EQ(user.numbers(), std::vector<int>{8040});
    EXPECT_EQ(user.pumps, 0);
}

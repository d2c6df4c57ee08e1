#include "core/byte_io.h"
#include "tools/receiver-sim/sim_magellan.h"
#include "tools/receiver-sim/sim_walk.h"

#include <gtest/gtest.h>

#include <bit>
#include <numbers>

namespace velkoro {
namespace {

using strings = std::vector<std::string>;

struct SimMagellan : testing::Test {
    sim_magellan r{};
    strings sent{}, received{};

    SimMagellan()
    {
        r.send = [this](const std::string& line) { sent.push_back(line); };
        r.received = [this](const std::string& body) { received.push_back(body); };
    }
    strings ask(const std::string& body)
    {
        sent.clear();
        sim_magellan_take(r, sim_sentence(body));
        return sent;
    }
};

constexpr const char* hut = "PMGNWPL,4828.413,N,00912.746,E,0000412,M,HUT,Hut above the lake,a";
constexpr const char* quay = "PMGNWPL,3351.274,S,15112.909,E,0000059,F,QUAY,,b";

TEST_F(SimMagellan, BuildsThePublishedSentences)
{
    EXPECT_EQ(sim_sentence("PMGNCMD,END"), "$PMGNCMD,END*3D\r\n");
    EXPECT_EQ(sim_sentence("PMGNWPL,4828.413,N,00912.746,E,0000000,M,LOW,,a").substr(48),
              "*0F\r\n");
    EXPECT_EQ(sim_sentence("PMGNRTE,4,1,c,1,DAD,a,Anna,a"), "$PMGNRTE,4,1,c,1,DAD,a,Anna,a*61\r\n");
}

TEST_F(SimMagellan, TellsItsVersion)
{
    EXPECT_EQ(ask("PMGNCMD,VERSION"), strings{"$PMGNVER,024,1.10,MAP 330*1D\r\n"});
}

TEST_F(SimMagellan, SendsAListLineByLineWithHandshake)
{
    r.waypoints = {hut, quay};
    ask("PMGNCMD,HANDON");
    EXPECT_EQ(ask("PMGNCMD,WAYPOINT"), (strings{sim_sentence("PMGNCSM,71"), sim_sentence(hut)}));
    EXPECT_EQ(ask("PMGNCSM,00"), strings{}); // not that line's
    EXPECT_EQ(ask("PMGNCSM,79"), strings{sim_sentence(quay)});
    EXPECT_EQ(ask("PMGNCSM,52"), strings{"$PMGNCMD,END*3D\r\n"});
    EXPECT_EQ(ask("PMGNCSM,3D"), strings{});
}

TEST_F(SimMagellan, SendsAListInOneGoWithoutHandshake)
{
    r.track = {"PMGNTRK,1"};
    EXPECT_EQ(ask("PMGNCMD,TRACK,2"), (strings{sim_sentence("PMGNTRK,1"), "$PMGNCMD,END*3D\r\n"}));
}

TEST_F(SimMagellan, StopsAListWhenTheHostAsks)
{
    r.waypoints = {hut, quay};
    ask("PMGNCMD,HANDON");
    ask("PMGNCMD,WAYPOINT");
    ask("PMGNCMD,STOP");
    EXPECT_EQ(ask("PMGNCSM,79"), strings{});
}

TEST_F(SimMagellan, KeepsAndAcknowledgesWhatTheHostSends)
{
    ask("PMGNCMD,HANDON");
    EXPECT_EQ(ask(hut), strings{"$PMGNCSM,79*6B\r\n"});
    ask("PMGNCMD,HANDOFF");
    EXPECT_EQ(ask(quay), strings{});
    EXPECT_EQ(received, (strings{hut, quay}));
}

TEST_F(SimMagellan, DropsADamagedLine)
{
    sim_magellan_take(r, "$PMGNCMD,VERSION*29\r\n");
    EXPECT_EQ(sent, strings{});
    EXPECT_EQ(r.damaged_in, 1);
}

TEST_F(SimMagellan, RefusesACommandThatItDoesNotKnow)
{
    EXPECT_EQ(ask("PMGNCMD,DANCE"), strings{sim_sentence("PMGNCMD,UNABLE")});
}

sim_walk standing()
{
    sim_walk walk;
    walk.points = {{48.47355, 9.2124333333, 412.3, true, 0}};
    walk.start_time = 361448102; // 14 June 2001 10:15:02 UTC
    return walk;
}

TEST(SimWalk, TellsAFixInThreeSentences)
{
    EXPECT_EQ(sim_nmea(standing(), 0),
              sim_sentence("GPGGA,101502,4828.413,N,00912.746,E,1,07,1.4,412.3,M,47.9,M,,") +
                  sim_sentence("GPRMC,101502,A,4828.413,N,00912.746,E,000.0,000.0,140601,,") +
                  "$PGRMM,WGS 84*06\r\n");
}

TEST(SimWalk, SaysWhenThereIsNoFix)
{
    sim_walk walk = standing();
    walk.has_fix = false;
    EXPECT_EQ(sim_nmea(walk, 28), "$GPGGA,101530,,,,,0,00,,,M,,M,,*60\r\n" +
                                      sim_sentence("GPRMC,101530,V,,,,,,,140601,,") +
                                      "$PGRMM,WGS 84*06\r\n");
}

TEST(SimWalk, TurnsTheYearAtMidnight)
{
    sim_walk walk = standing();
    walk.start_time = 315532799; // 30 December 1999 23:59:59 UTC, then the last day begins
    EXPECT_NE(sim_nmea(walk, 0).find("235959"), std::string::npos);
    EXPECT_NE(sim_nmea(walk, 1).find("GPRMC,000000,"), std::string::npos);
    EXPECT_NE(sim_nmea(walk, 1).find(",311299,"), std::string::npos);
    EXPECT_NE(sim_nmea(walk, 86401).find(",010100,"), std::string::npos);
}

TEST(SimWalk, WritesAnglesWithoutSixtyMinutes)
{
    EXPECT_EQ(sim_angle(48.9999999, true), "4900.000,N");
    EXPECT_EQ(sim_angle(-0.5, true), "0030.000,S");
    EXPECT_EQ(sim_angle(-151.21515, false), "15112.909,W");
}

TEST(SimWalk, GoesAlongItsPointsAndBeginsAgain)
{
    sim_walk walk;
    walk.points = {{0, 0, 10, true, 0}, {0, 0.001, 11, true, 0}, {0.001, 0.001, 12, false, 0}};
    EXPECT_NEAR(sim_fix_at(walk, 0).course, 90, 1e-6);
    EXPECT_NEAR(sim_fix_at(walk, 0).speed_m_s, 111.19, 0.01);
    EXPECT_NEAR(sim_fix_at(walk, 1).course, 0, 1e-6);
    EXPECT_NEAR(sim_fix_at(walk, 2).course, 225, 1e-3);
    EXPECT_EQ(sim_fix_at(walk, 3).place.lon, 0);
    EXPECT_EQ(sim_nmea(walk, 2).find(",0.0,M,47.9"), std::string::npos); // no height there
}

TEST(SimWalk, WritesThePublishedClockAndPositionRecords)
{
    EXPECT_EQ(sim_d600(361448102), std::string("\x06\x0E\xD1\x07\x0A\x00\x0F\x02", 8));
    const std::string position = sim_d700(standing(), 0);
    byte_reader in(position);
    EXPECT_DOUBLE_EQ(std::bit_cast<double>(in.le<std::uint64_t>()),
                     48.47355 * std::numbers::pi / 180);
}

TEST(SimWalk, WritesALiveRecordOfItsSizeWithTheTimeInTheWeek)
{
    const std::string record = sim_d800(standing(), 0);
    ASSERT_EQ(record.size(), 64U);
    byte_reader in(record);
    in.seek(16);
    EXPECT_EQ(in.i16(), 3);
    const double of_week = std::bit_cast<double>(in.le<std::uint64_t>());
    in.seek(58);
    const int leap = in.i16();
    const int week_days = in.i32();
    EXPECT_EQ(week_days % 7, 0);
    EXPECT_EQ(week_days * 86400 + static_cast<int>(of_week) - leap, 361448102);
}

} // namespace
} // namespace velkoro

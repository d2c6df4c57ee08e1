#include "comm/garmin_link.h"
#include "comm/mag_link.h"
#include "core/log.h"
#include "core/settings.h"
#include "tests/comm/scripted_line.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

const std::string gga = "$GPGGA,101502,4828.413,N,00912.746,E,1,07,1.4,412.3,M,47.9,M,,*46\r\n";
const std::string rmc = "$GPRMC,101502,A,4828.413,N,00912.746,E,003.2,087.5,140601,001.1,E*77\r\n";

class NmeaPath : public testing::Test {
protected:
    scripted_platform user{};
    scripted_line line{user};
    void SetUp() override
    {
        comm.nmea_live = true;
        comm_port_set(true);
    }
};

} // namespace

TEST_F(NmeaPath, ASentenceIsTakenWholeWithItsEnd)
{
    Garmin_OnComm(gga);
    EXPECT_EQ(comm.comm_rx_frame, gga);
    EXPECT_EQ(comm.comm_rx_buf, "");
}

TEST_F(NmeaPath, ASentenceMayComeInPieces)
{
    for (const char c : gga) {
        EXPECT_EQ(comm.comm_rx_frame, "");
        Garmin_OnComm(std::string(1, c));
    }
    EXPECT_EQ(comm.comm_rx_frame, gga);
}

TEST_F(NmeaPath, SeveralSentencesAreInTheSlotTogether)
{
    Garmin_OnComm(gga + rmc);
    EXPECT_EQ(comm.comm_rx_frame, gga + rmc);
    Garmin_OnComm(rmc + gga.substr(0, 10));
    EXPECT_EQ(comm.comm_rx_frame, gga + rmc) << "the batch does not end in CR, LF yet";
    Garmin_OnComm(gga.substr(10));
    EXPECT_EQ(comm.comm_rx_frame, rmc + gga);
}

TEST_F(NmeaPath, WhatStandsAheadOfASentenceIsDropped)
{
    Garmin_OnComm("502,A*1\r\n" + gga);
    EXPECT_EQ(comm.comm_rx_frame, gga);
    Garmin_OnComm("\r\nnoise");
    EXPECT_EQ(comm.comm_rx_buf, "");
    EXPECT_EQ(comm.comm_rx_frame, gga);
}

TEST_F(NmeaPath, OneBadSentenceDiscardsTheBatch)
{
    std::string bad = rmc;
    bad[20] = '9';
    Garmin_OnComm(gga);
    Garmin_OnComm(gga + bad + rmc);
    EXPECT_EQ(comm.comm_rx_frame, "");
    EXPECT_EQ(comm.comm_rx_buf, "");
}

TEST_F(NmeaPath, ASentenceWithoutAChecksumIsTaken)
{
    Garmin_OnComm("$GPGGA,anything\r\n");
    EXPECT_EQ(comm.comm_rx_frame, "$GPGGA,anything\r\n");
    Garmin_OnComm("$A\r\n" + gga + "$B,*,\r\n");
    EXPECT_EQ(comm.comm_rx_frame, "") << "a star without digits counts as the checksum 0";
}

TEST_F(NmeaPath, TheDigitsMayBeSmallLetters)
{
    Garmin_OnComm("$PMGNCMD,END*3d\r\n");
    EXPECT_EQ(comm.comm_rx_frame, "$PMGNCMD,END*3d\r\n");
}

TEST_F(NmeaPath, BytesBehindTheChecksumDoNoHarm)
{
    Garmin_OnComm("$PMGNCMD,END*3D junk\r\n");
    EXPECT_EQ(comm.comm_rx_frame, "$PMGNCMD,END*3D junk\r\n");
}

TEST_F(NmeaPath, AStarAtTheVeryEndOfABatchReadsNoByteBeyondIt)
{
    comm.comm_rx_frame = "old";
    Garmin_OnComm("$\r\n*\r\n");
    EXPECT_EQ(comm.comm_rx_frame, "");
    comm.comm_rx_frame = "old";
    Garmin_OnComm("$*\r\n"); // nothing before the star: its checksum is 0
    EXPECT_EQ(comm.comm_rx_frame, "$*\r\n");
}

TEST_F(NmeaPath, TheMagellanFormatTakesSentencesToo)
{
    comm.nmea_live = false;
    Garmin_OnComm(gga);
    EXPECT_EQ(comm.comm_rx_frame, "") << "binary frames are expected";
    settings.garmin[static_cast<std::size_t>(gar_place::gar_wp_format)] = 1;
    Garmin_OnComm(gga);
    EXPECT_EQ(comm.comm_rx_frame, gga);
}

TEST_F(NmeaPath, ThePublishedLinesAreGood)
{
    for (const char* text :
         {"PGRMM,WGS 84*06", "PMGNVER,015,4.01,GPS3000XL*05",
          "PMGNTRK,3605.259,N,08644.389,W,00151,M,201444.61,A,,020302*66",
          "PMGNRTE,4,1,c,1,DAD,a,Anna,a*61", "PMGNCMD,END*3D",
          "PMGNWPL,4828.413,N,00912.746,E,0000000,M,LOW,,a*0F", "PMGNRTE,2,2,c,01,PASS,a,<<>>,a*24",
          "GPGGA,101530,,,,,0,00,,,M,,M,,*60"}) {
        const std::string bytes = "$" + std::string(text) + "\r\n";
        Garmin_OnComm(bytes);
        EXPECT_EQ(comm.comm_rx_frame, bytes);
    }
}

TEST(NmeaChecksum, IsTheXorOfAllBytes)
{
    EXPECT_EQ(nmea_checksum(""), 0);
    EXPECT_EQ(nmea_checksum("PMGNCMD,END"), 0x3D);
    EXPECT_EQ(nmea_checksum("PGRMM,WGS 84"), 0x06);
}

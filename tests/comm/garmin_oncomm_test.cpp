#include "comm/garmin_link.h"
#include "core/log.h"
#include "tests/comm/scripted_line.h"
#include "tests/support/program_folder.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

const std::string records = wire(27, le16(3));
const std::string point = wire(34, "0123456789");

class GarminOnComm : public testing::Test {
protected:
    scripted_platform user{};
    scripted_line line{user};
    program_folder home{};
    void SetUp() override
    {
        comm.comm_strip_ack = true;
        comm_port_set(true);
        scripted_platform::plain_texts();
    }
    static std::string frame() { return hex(comm.comm_rx_frame); }
    static std::string rest() { return hex(comm.comm_rx_buf); }
    std::string log_of(const std::function<void()>& what)
    {
        log_open();
        what();
        log_close();
        return home.get("velkoro.log");
    }
};

} // namespace

TEST_F(GarminOnComm, OneEventWithAWholeFrameCompletesIt)
{
    Garmin_OnComm(records);
    EXPECT_EQ(frame(), hex(records));
    EXPECT_EQ(rest(), "");
}

TEST_F(GarminOnComm, AFrameMayComeByteByByte)
{
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(frame(), "") << i;
        Garmin_OnComm(records.substr(i, 1));
    }
    EXPECT_EQ(frame(), hex(records));
}

TEST_F(GarminOnComm, TheThresholdIsTheNumberOfBytesStillMissing)
{
    Garmin_OnComm(point.substr(0, 2));
    EXPECT_EQ(line.threshold, 1); // the size is not there yet
    Garmin_OnComm(point.substr(2, 1));
    EXPECT_EQ(line.threshold, 13);
    Garmin_OnComm(point.substr(3, 7));
    EXPECT_EQ(line.threshold, 6);
    Garmin_OnComm(point.substr(10));
    EXPECT_EQ(line.threshold, 1);
    EXPECT_EQ(frame(), hex(point));
}

TEST_F(GarminOnComm, ALongFrameCostsTwoEvents)
{
    const std::string long_frame = wire(35, std::string(200, 'x'));
    line.byte_time_s = 0.001;
    line.piece = 1;
    line.on_output = [&](const std::string&) { line.send(long_frame); };
    EXPECT_EQ(hex(garmin_comm(10, 7, 35, false)), hex(long_frame));
    EXPECT_LE(line.events, 4); // one for each of the first three bytes, one for the rest
}

TEST_F(GarminOnComm, DoubledBytesAreHalved)
{
    const std::string data = "\x10\x10\x01\x10\x03\x10";
    Garmin_OnComm(wire(34, data));
    EXPECT_EQ(frame(),
              hex("\x10\x22\x06" + data + wire(34, data).substr(wire(34, data).size() - 3)));
    EXPECT_EQ(hex(gar_data(comm.comm_rx_frame)), hex(data));
}

TEST_F(GarminOnComm, AChecksumOfSixteenIsHalved)
{
    Garmin_OnComm(unhex("10 22 01 CD 10 10 10 03"));
    EXPECT_EQ(frame(), "10 22 01 CD 10 10 03");
}

TEST_F(GarminOnComm, ASizeOfSixteenIsReadBeforeItIsHalvedAndCostsOneEventMore)
{
    const std::string data(16, 'a');
    const std::string bytes = wire(17, data);
    Garmin_OnComm(bytes.substr(0, bytes.size() - 1));
    EXPECT_EQ(frame(), "");
    EXPECT_EQ(line.threshold, 1); // the doubled byte was counted as one of the frame's own
    Garmin_OnComm(bytes.substr(bytes.size() - 1));
    EXPECT_EQ(gar_data(comm.comm_rx_frame), data);
}

TEST_F(GarminOnComm, AllDataBytesSixteenComeThroughAtEveryLength)
{
    for (std::size_t n = 0; n < 256; ++n) {
        const std::string data(n, '\x10');
        comm.comm_rx_frame.clear();
        Garmin_OnComm(wire(35, data));
        EXPECT_EQ(hex(gar_data(comm.comm_rx_frame)), hex(data)) << n;
        EXPECT_EQ(rest(), "") << n;
    }
}

TEST_F(GarminOnComm, BytesAheadOfAFrameAreCut)
{
    Garmin_OnComm("noise" + records);
    EXPECT_EQ(frame(), hex(records));
}

TEST_F(GarminOnComm, NoiseAloneLeavesAnEmptyBuffer)
{
    Garmin_OnComm("noise");
    EXPECT_EQ(rest(), "");
    EXPECT_EQ(frame(), "");
}

TEST_F(GarminOnComm, AnAcknowledgementAheadOfADataFrameIsCutAndTheFrameIsDeliveredInTheSameCall)
{
    Garmin_OnComm(wire_ack(10) + records);
    EXPECT_EQ(frame(), hex(records));
    EXPECT_EQ(rest(), "");
}

TEST_F(GarminOnComm, AnAcknowledgementAloneIsCut)
{
    Garmin_OnComm(wire_ack(10));
    EXPECT_EQ(frame(), "");
    EXPECT_EQ(rest(), "");
}

TEST_F(GarminOnComm, AnAcknowledgementIsAFrameForAWaiterThatWantsIt)
{
    comm.comm_strip_ack = false;
    Garmin_OnComm(wire_ack(10) + records);
    EXPECT_EQ(frame(), hex(wire_ack(10)));
    EXPECT_EQ(rest(), hex(records));
}

TEST_F(GarminOnComm, AnAcknowledgementOfOneByteIsCutOnceEightBytesAreThere)
{
    const std::string ack = wire(6, "\x0A");
    Garmin_OnComm(ack + records);
    EXPECT_EQ(frame(), hex(records));
    comm.comm_rx_frame.clear();
    Garmin_OnComm(ack); // seven bytes are read as a frame
    EXPECT_EQ(frame(), hex(ack));
}

TEST_F(GarminOnComm, AnAcknowledgementThatMiscountsIsTakenForOneOfOneByte)
{
    for (const char size : {'\x00', '\x05', '\x7F'}) {
        const std::string ack = {'\x10', '\x06', size, '\x0A', '\xF0', '\x10', '\x03'};
        comm.comm_rx_frame.clear();
        Garmin_OnComm(ack + records);
        EXPECT_EQ(frame(), hex(records)) << int(size);
    }
}

TEST_F(GarminOnComm, AnAcknowledgementOfFourBytesIsCutWhole)
{
    Garmin_OnComm(wire(6, "abcd") + records);
    EXPECT_EQ(frame(), hex(records));
}

TEST_F(GarminOnComm, TheSecondOfTwoAcknowledgementsIsReadAsAFrame)
{
    Garmin_OnComm(wire_ack(10) + wire_ack(11) + records);
    EXPECT_EQ(frame(), hex(wire_ack(11)));
    EXPECT_EQ(rest(), hex(records));
}

TEST_F(GarminOnComm, OneEventCompletesOneFrameAndTheNextWaitsForMoreBytes)
{
    Garmin_OnComm(records + point);
    EXPECT_EQ(frame(), hex(records));
    EXPECT_EQ(rest(), hex(point));
    Garmin_OnComm("\x10");
    EXPECT_EQ(frame(), hex(point));
    EXPECT_EQ(rest(), "10");
}

TEST_F(GarminOnComm, AFrameThatWaitsInTheBufferComesOutWithTheRepeatAfterTheTimeOut)
{
    comm.comm_retry = true;
    line.expect(wire(6, le16(27)),
                records + point); // both in one event; the first was seen already
    line.expect(unhex("10 15 02 22 00 C7 10 03"), point);
    EXPECT_EQ(hex(garmin_comm(6, 27, 34, true)), hex(point));
    EXPECT_TRUE(line.done());
    EXPECT_EQ(rest(), hex(point)); // the repeat itself
}

TEST_F(GarminOnComm, AFrameWithoutItsEndIsSearchedForTheNextOne)
{
    std::string broken = point;
    broken[broken.size() - 2] = 'x';
    Garmin_OnComm(broken + records);
    EXPECT_EQ(frame(), hex(records));
    EXPECT_EQ(rest(), "");
}

TEST_F(GarminOnComm, TheClosingByteOfADamagedFrameIsTakenForABeginningUntilRepeatsFillIt)
{
    std::string broken = point;
    broken.erase(5, 1); // lost on the line
    Garmin_OnComm(broken);
    EXPECT_EQ(frame(), "") << "one byte is missing: the handler waits";
    int repeats = 0;
    for (; repeats < 4 && comm.comm_rx_frame.empty(); ++repeats)
        Garmin_OnComm(records);
    EXPECT_EQ(frame(), hex(records));
    EXPECT_EQ(repeats, 3); // 10 03 and 10 as size: 22 bytes
}

TEST_F(GarminOnComm, AWrongChecksumDropsTheFrameAndTheBuffer)
{
    comm.comm_rx_frame = "old";
    std::string broken = records;
    broken[3] = '\x44';
    Garmin_OnComm(broken + point);
    EXPECT_EQ(frame(), "");
    EXPECT_EQ(rest(), "");
    EXPECT_TRUE(line.sent.empty());
}

TEST_F(GarminOnComm, AWrongChecksumAsksForTheFrameAgainOnceTheUserHasAgreedToRetry)
{
    comm.comm_retry = true;
    std::string broken = records;
    broken[3] = '\x44';
    line.expect(unhex("10 15 02 22 00 C7 10 03"));
    Garmin_OnComm(broken);
    EXPECT_TRUE(line.done());
    EXPECT_EQ(frame(), "");
}

TEST_F(GarminOnComm, TheChecksumOfTheFixedFrameOfANakIsGood)
{
    Garmin_OnComm(unhex("10 15 02 22 00 C7 10 03"));
    EXPECT_EQ(frame(), "10 15 02 22 00 C7 10 03");
}

TEST_F(GarminOnComm, NothingComesOfNothing)
{
    Garmin_OnComm("");
    EXPECT_EQ(frame(), "");
    EXPECT_TRUE(line.thresholds.empty());
}

TEST_F(GarminOnComm, EveryFrameOfARandomStreamInRandomPiecesArrives)
{
    unsigned seed = 12345;
    const auto random = [&seed](unsigned n) {
        seed = seed * 1664525U + 1013904223U;
        return (seed >> 8U) % n;
    };
    for (int round = 0; round < 300; ++round) {
        std::string data;
        for (unsigned n = random(60); n > 0; --n)
            data += static_cast<char>(random(3) == 0 ? 0x10 : random(256));
        const std::string bytes = wire(34, data);
        comm.comm_rx_frame.clear();
        for (std::size_t i = 0; i < bytes.size();) {
            const std::size_t n = 1 + random(8);
            Garmin_OnComm(bytes.substr(i, n));
            i += n;
        }
        ASSERT_EQ(hex(gar_data(comm.comm_rx_frame)), hex(data)) << round;
        ASSERT_EQ(rest(), "") << round;
    }
}

TEST_F(GarminOnComm, TheLogShowsWhatCameAndWhatWasWrongWithIt)
{
    const std::string log = log_of([&] {
        Garmin_OnComm("x" + wire_ack(10) + records);
        std::string broken = records;
        broken[3] = '\x44';
        Garmin_OnComm(broken);
        broken = point;
        broken[14] = 'x';
        Garmin_OnComm(broken);
    });
    for (const std::string& line_text :
         {"cut 78 10 06 02 0A 00 EE 10 03 " + hex(records),
          "OKcut 10 06 02 0A 00 EE 10 03 " + hex(records), " receive " + hex(records),
          std::string(" checksum error 10 1B 02 44 00 E0 10 03"),
          std::string(" Frame Error 10 22 0A 30 31 32")})
        EXPECT_NE(log.find(line_text), std::string::npos) << line_text << "\n" << log;
}

TEST_F(GarminOnComm, TheLogShowsWhatWasSentAndEveryTimeOut)
{
    line.on_output = [](const std::string&) {};
    const std::string log = log_of([&] { garmin_comm(10, 7, 27, true); });
    for (const char* words : {" transmit 10 0A 02 07 00 ED 10 03", " Garmin timeout",
                              " transmit nak", " transmit Xfer_Cmplt"})
        EXPECT_NE(log.find(words), std::string::npos) << words << "\n" << log;
}

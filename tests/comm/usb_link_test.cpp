#include "comm/garmin_link.h"
#include "comm/usb_link.h"
#include "core/log.h"
#include "tests/comm/scripted_line.h"
#include "tests/comm/simulated_pipes.h"
#include "tests/support/program_folder.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

const std::string data_available = usb_wire(0, 2, "");

class UsbLink : public testing::Test {
protected:
    scripted_platform user{};
    simulated_pipes usb{};
    program_folder home{};
    std::vector<std::string> boxes() const
    {
        std::vector<std::string> all;
        for (const message_box& m : user.messages)
            all.push_back(m.text);
        return all;
    }
};

} // namespace

TEST_F(UsbLink, OpeningStartsTheSessionAndIgnoresTheAnswer)
{
    usb.interrupt = {usb_wire(0, 6, le32(0x12345678))};
    EXPECT_TRUE(comm_port_set(true));
    EXPECT_EQ(comm.usb_handle, 7);
    ASSERT_EQ(usb.written.size(), 1U);
    EXPECT_EQ(hex(usb.written[0]), "00 00 00 00 05 00 00 00 00 00 00 00");
    EXPECT_EQ(usb.reads, "i");
    EXPECT_FALSE(comm.usb_bulk);
    EXPECT_EQ(comm.usb_packet_size, 64U);
}

TEST_F(UsbLink, TheSecondClassIsTriedWhenTheFirstHasNoDevice)
{
    usb.on_class[0] = std::nullopt;
    usb.on_class[1] = "/dev/bus/usb/001/003";
    EXPECT_TRUE(comm_port_set(true));
    EXPECT_EQ(usb.asked, (std::vector<std::string>{"{2C9C45C2-8E7D-4C08-A12D-816BBAE722C0}",
                                                   "{A12A4C5A-E1A3-4151-9927-7F724CA5DC92}"}));
}

TEST_F(UsbLink, WithoutADeviceEveryExchangeIsEmpty)
{
    usb.on_class[0] = std::nullopt;
    EXPECT_FALSE(comm_port_set(true));
    EXPECT_EQ(garmin_comm(254, "", 255, false), "");
    EXPECT_EQ(usb_comm(254, "", 255), "");
    EXPECT_TRUE(usb.written.empty());
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(UsbLink, ADeviceThatCannotBeOpenedLeavesTheHandleZero)
{
    usb.opens = false;
    EXPECT_FALSE(comm_port_set(true));
    EXPECT_EQ(comm.usb_handle, 0);
    EXPECT_TRUE(usb.written.empty());
}

TEST_F(UsbLink, ThePacketSizeIsReadOnceAProgramRun)
{
    comm_port_set(true);
    comm_port_set(false);
    EXPECT_EQ(comm.usb_handle, 0);
    comm_port_set(true);
    EXPECT_EQ(usb.sizes_read, 1);
    EXPECT_EQ(usb.closes, 1);
    comm_port_set(true); // held already
    EXPECT_EQ(usb.written.size(), 2U);
}

TEST_F(UsbLink, AMissingPacketSizeIsTold)
{
    usb.size = std::nullopt;
    comm_port_set(true);
    EXPECT_EQ(boxes(), std::vector<std::string>{"PacketSize not received"});
    EXPECT_EQ(user.messages[0].icon, icon::critical);
    usb.written.clear();
    EXPECT_EQ(usb_comm(10, std::string(60, 'x'), no_wait), ""); // still ends
    EXPECT_EQ(usb.written.size(), 2U);
}

TEST_F(UsbLink, ASessionThatCannotBeStartedIsTold)
{
    usb.write_result = 11;
    comm_port_set(true);
    EXPECT_EQ(boxes(), std::vector<std::string>{"WriteFile error"});
}

TEST_F(UsbLink, APacketHasAHeadOfTwelveBytes)
{
    usb.open();
    EXPECT_EQ(usb_comm(10, le16(7), no_wait), "");
    ASSERT_EQ(usb.written.size(), 1U);
    EXPECT_EQ(hex(usb.written[0]), "14 00 00 00 0A 00 00 00 02 00 00 00 07 00");
    EXPECT_EQ(usb.reads, "");
}

TEST_F(UsbLink, APacketGoesOutInPiecesOfThePacketSize)
{
    usb.open();
    usb_comm(35, std::string(100, 'x'), no_wait);
    ASSERT_EQ(usb.written.size(), 2U);
    EXPECT_EQ(usb.written[0].size(), 64U);
    EXPECT_EQ(usb.written[1].size(), 48U);
}

TEST_F(UsbLink, APacketThatFillsItsLastPieceIsFollowedByAnEmptyWrite)
{
    usb.open();
    usb_comm(35, std::string(64 - 12, 'x'), no_wait);
    ASSERT_EQ(usb.written.size(), 2U);
    EXPECT_EQ(usb.written[0].size(), 64U);
    EXPECT_EQ(usb.written[1].size(), 0U);
}

TEST_F(UsbLink, AFailedWriteIsToldAndTheRestGoesOutAllTheSame)
{
    usb.open();
    usb.write_result = -1;
    usb_comm(35, std::string(100, 'x'), no_wait);
    EXPECT_EQ(boxes(), (std::vector<std::string>{"WriteFile error", "WriteFile error"}));
    EXPECT_EQ(usb.written.size(), 2U);
}

TEST_F(UsbLink, AnAcknowledgementIsNotSentAndTheNextPacketIsRead)
{
    usb.open();
    usb.interrupt = {usb_wire(20, 253, "PLA")};
    const std::string frame = garmin_comm(6, 255, 253, false);
    EXPECT_EQ(hex(frame), "10 FD 03 50 4C 41 00 00 00");
    EXPECT_TRUE(usb.written.empty());
    EXPECT_EQ(gar_data(frame), "PLA");
}

TEST_F(UsbLink, AnAcknowledgementThatIsExpectedComesAtOnce)
{
    usb.open();
    const std::string frame = garmin_comm(27, le16(3), pid_ack, true);
    EXPECT_EQ(frame, " \x06");
    EXPECT_EQ(gar_id(frame), pid_ack);
    EXPECT_EQ(usb.written.size(), 1U);
    EXPECT_EQ(usb.reads, "");
}

TEST_F(UsbLink, APacketIsGatheredFromPiecesOfSixtyFourBytes)
{
    usb.open();
    const std::string packet = usb_wire(20, 35, std::string(90, 'w'));
    usb.interrupt = {packet.substr(0, 64), packet.substr(64)};
    EXPECT_EQ(gar_data(usb_comm(6, "", 35)), std::string(90, 'w'));
    EXPECT_EQ(usb.reads, "ii");
}

TEST_F(UsbLink, APacketThatEndsWithAFullPieceIsReadUntilTwoEmptyTransfers)
{
    usb.open();
    const std::string packet = usb_wire(20, 35, std::string(64 - 12, 'w'));
    usb.interrupt = {packet};
    EXPECT_EQ(gar_data(usb_comm(6, "", 35)), std::string(52, 'w'));
    EXPECT_EQ(usb.reads, "iii");
}

TEST_F(UsbLink, AFurtherPieceThatLooksLikeAnAnnouncementIsData)
{
    usb.open();
    const std::string packet = usb_wire(20, 35, std::string(52, 'w') + data_available);
    usb.interrupt = {packet.substr(0, 64), packet.substr(64)};
    EXPECT_EQ(gar_data(usb_comm(6, "", 35)), std::string(52, 'w') + data_available);
    EXPECT_FALSE(comm.usb_bulk);
}

TEST_F(UsbLink, AnAnnouncementMovesTheReadingToTheBulkPipe)
{
    usb.open();
    usb.interrupt = {data_available};
    usb.bulk = {usb_wire(20, 35, std::string(1000, 'w'))};
    const std::string frame = garmin_comm(10, 7, 35, true);
    EXPECT_EQ(gar_data(frame), std::string(1000, 'w'));
    EXPECT_EQ(hex(frame.substr(0, 3)), "10 23 E8"); // the low byte of 1000
    EXPECT_EQ(usb.reads, "ib");
    usb.bulk = {usb_wire(20, 35, "x")};
    EXPECT_EQ(gar_data(garmin_comm(6, 35, 35, true)), "x");
    EXPECT_EQ(usb.reads, "ibb") << "the bulk pipe is read until the next session";
    comm_port_set(false);
    comm_port_set(true);
    EXPECT_FALSE(comm.usb_bulk);
}

TEST_F(UsbLink, AnAnnouncementWithoutDataEndsAfterOneEmptyTransfer)
{
    usb.open();
    usb.interrupt = {data_available};
    EXPECT_EQ(usb_comm(10, le16(7), 27), "");
    EXPECT_EQ(usb.reads, "ib");
}

TEST_F(UsbLink, ASilentReceiverGivesNothingAfterTwoEmptyTransfers)
{
    usb.open();
    EXPECT_EQ(usb_comm(254, "", 255), "");
    EXPECT_EQ(usb.reads, "ii");
}

TEST_F(UsbLink, AFailedReadGivesNothing)
{
    usb.open();
    usb.interrupt = {std::nullopt, usb_wire(20, 255, "abcd")};
    EXPECT_EQ(usb_comm(254, "", 255), "");
    EXPECT_EQ(usb.reads, "i");
}

TEST_F(UsbLink, APacketShorterThanItsHeadSaysGivesNothing)
{
    usb.open();
    std::string packet = usb_wire(20, 255, "abcd");
    packet.pop_back();
    usb.interrupt = {packet};
    EXPECT_EQ(usb_comm(254, "", 255), "");
    usb.interrupt = {usb_wire(20, 255, "abcd").substr(0, 9)}; // not even a head
    EXPECT_EQ(usb_comm(254, "", 255), "");
    usb.interrupt = {usb_wire(20, 255, "abcd") + "more"};
    EXPECT_EQ(usb_comm(254, "", 255), "");
}

TEST_F(UsbLink, APacketWithoutDataIsAFrameOfItsIdAlone)
{
    usb.open();
    usb.interrupt = {usb_wire(20, 12, "")};
    EXPECT_EQ(hex(usb_comm(6, "", 12)), "10 0C 00 00 00 00");
}

TEST_F(UsbLink, AnotherPacketThanExpectedIsEmptied)
{
    usb.open();
    usb.interrupt = {usb_wire(20, 34, "x"), usb_wire(20, 12, le16(7)), usb_wire(20, 34, "x")};
    EXPECT_EQ(garmin_comm(6, 35, 35, true), "");
    EXPECT_EQ(gar_id(garmin_comm(6, 35, 35, true)), pid_xfer_cmplt)
        << "the end of a transfer is kept";
    EXPECT_EQ(gar_id(garmin_comm(6, 255, any_packet, true)), 34) << "anything was expected";
}

TEST_F(UsbLink, ClosingClosesTheHandleOnceAndSaysSoInTheLog)
{
    log_open();
    comm_port_set(true);
    comm_port_set(false);
    comm_port_set(false);
    log_close();
    EXPECT_EQ(usb.closes, 1);
    const std::string log = home.get("velkoro.log");
    for (const char* words : {" USB open: SetupDiGetClassDevs", "SetupDiEnumDeviceInterfaces",
                              "SetupDiGetDeviceInterfaceDetail", "HidName /dev/bus/usb/001/002",
                              "USBHandle 7", "USBPacketSize 64", "APIVersion 300", " USB closed"})
        EXPECT_NE(log.find(words), std::string::npos) << words << "\n" << log;
}

TEST_F(UsbLink, TheLogShowsTransfersWithTheirPipes)
{
    usb.open();
    usb.interrupt = {data_available};
    usb.bulk = {usb_wire(20, 27, le16(5))};
    log_open();
    garmin_comm(10, 7, 27, true);
    log_close();
    const std::string log = home.get("velkoro.log");
    for (const char* words : {" USB transmit 14 00 00 00 0A 00 00 00 02 00 00 00 07 00",
                              " USB receive Int 12 00 00 00 00 02 00 00 00 00 00 00 00",
                              " USB receive Bulk 14 14 00 00 00 1B 00 00 00 02 00 00 00 05 00"})
        EXPECT_NE(log.find(words), std::string::npos) << words << "\n" << log;
}

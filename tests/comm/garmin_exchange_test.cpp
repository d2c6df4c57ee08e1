#include "comm/gar_proto.h"
#include "comm/garmin_link.h"
#include "core/job.h"
#include "core/settings.h"
#include "tests/comm/scripted_line.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

constexpr const char* nak = "10 15 02 22 00 C7 10 03";
constexpr const char* closing = "10 0C 02 07 00 EB 10 03";

class GarminExchange : public testing::Test {
protected:
    scripted_platform user{};
    scripted_line line{user};
    void SetUp() override { scripted_platform::plain_texts(); }
};

} // namespace

TEST_F(GarminExchange, TheProductRequestGoesOutAndTheProductDataComeBack)
{
    const std::string product = wire(255, le16(77) + le16(350) + "GPS 12" + std::string(1, '\0'));
    line.expect(unhex("10 FE 00 02 10 03"), wire_ack(254) + product);
    EXPECT_EQ(hex(garmin_comm(254, "", 255, false)), hex(product));
    EXPECT_TRUE(line.done());
    EXPECT_EQ(line.settings, "9600,n,8,1");
    EXPECT_EQ(line.device, "/dev/scripted1");
}

TEST_F(GarminExchange, WithoutAPortNothingHappens)
{
    comm.comm_port = 0;
    comm.comm_rx_frame = "kept";
    EXPECT_EQ(garmin_comm(254, "", 255, true), "");
    EXPECT_EQ(garmin_comm(10, 7, 27, true), "");
    EXPECT_EQ(line.opens, 0);
    EXPECT_EQ(comm.comm_rx_frame, "kept");
    EXPECT_EQ(user.pumps, 0);
}

TEST_F(GarminExchange, AnIntegerIsACommandOfTwoBytes)
{
    line.expect(unhex("10 0A 02 07 00 ED 10 03"));
    garmin_comm(10, 7, no_wait, false);
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, OtherLinkAndCommandProtocolsTranslateIdsAndCommands)
{
    receiver.gar_proto[0][0] = 2;
    receiver.gar_proto[1][0] = 11;
    const std::string records = wire(35, le16(3)); // 27 of L001
    line.expect(unhex("10 0B 02 15 00 DE 10 03"), wire_ack(11) + records);
    EXPECT_EQ(hex(garmin_comm(10, 7, 27, true)), hex(records));
}

TEST_F(GarminExchange, EveryTranslatedIdIsTheOneOfTheTableAndAllOthersPass)
{
    const std::pair<int, int> ids[] = {{10, 11}, {14, 20}, {17, 24}, {27, 35},
                                       {29, 37}, {30, 39}, {35, 43}};
    const std::pair<int, int> commands[] = {{4, 8}, {5, 20}, {7, 21}, {8, 26}};
    for (int id = -2; id < 256; ++id) {
        SCOPED_TRACE(id);
        int wanted_id = id, wanted_command = id;
        for (const auto& [from, to] : ids)
            if (from == id)
                wanted_id = to;
        for (const auto& [from, to] : commands)
            if (from == id)
                wanted_command = to;
        receiver = {};
        EXPECT_EQ(pid_map(id), id);
        EXPECT_EQ(cmd_map(id), id);
        receiver.gar_proto[0][0] = 1;
        receiver.gar_proto[1][0] = 10;
        EXPECT_EQ(pid_map(id), id);
        EXPECT_EQ(cmd_map(id), id);
        receiver.gar_proto[0][0] = 2;
        receiver.gar_proto[1][0] = 11;
        EXPECT_EQ(pid_map(id), wanted_id);
        EXPECT_EQ(cmd_map(id), wanted_command);
    }
}

TEST_F(GarminExchange, TheIdNamedByAnAcknowledgementIsTranslatedAsACommand)
{
    receiver.gar_proto[1][0] = 11;
    line.expect(wire(6, le16(26)));
    garmin_comm(6, 8, no_wait, false);
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, AByteStringIsNotTranslated)
{
    receiver.gar_proto[1][0] = 11;
    line.expect(wire(27, le16(7)));
    garmin_comm(27, le16(7), no_wait, false);
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, BytesOfTheValueSixteenAreDoubledAndTheSizeKeepsTheSingleLength)
{
    line.expect(unhex("10 1B 02 10 10 00 D3 10 03"));
    garmin_comm(27, le16(16), no_wait, false);
    line.expect(unhex("10 22 01 CD 10 10 10 03")); // the checksum itself
    garmin_comm(34, "\xCD", no_wait, false);
    const std::string sixteen(16, '\x10'); // and the size
    std::string wanted = "\x10\x22\x10\x10";
    wanted += std::string(32, '\x10') + "\xCE\x10\x03";
    line.expect(wanted);
    garmin_comm(34, sixteen, no_wait, false);
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, AnAcknowledgementThatIsExpectedIsReturned)
{
    line.expect(wire(27, le16(1)), wire_ack(27));
    EXPECT_EQ(hex(garmin_comm(27, le16(1), pid_ack, true)), hex(wire_ack(27)));
    EXPECT_FALSE(comm.comm_strip_ack);
}

TEST_F(GarminExchange, TheClosingFrameEndsAWaitForSomethingElse)
{
    const std::string complete = wire(12, le16(7));
    line.expect(wire(6, le16(35)), complete);
    EXPECT_EQ(hex(garmin_comm(6, 35, 35, true)), hex(complete));
}

TEST_F(GarminExchange, ProductDataEndAWaitForTheProtocolsAndTransferCompleteDoesNot)
{
    const std::string product = wire(255, "abcd");
    line.expect(wire(6, le16(248)), wire(12, le16(7)) + product);
    line.piece = wire(12, le16(7)).size();
    EXPECT_EQ(hex(garmin_comm(6, 248, 253, false)), hex(product));
}

TEST_F(GarminExchange, AnyPacketWillDoWhenAnyIsExpected)
{
    const std::string array = wire(253, "P");
    line.expect(wire(6, le16(255)), array);
    EXPECT_EQ(hex(garmin_comm(6, 255, any_packet, false)), hex(array));
}

TEST_F(GarminExchange, NothingIsWaitedForWhenNothingIsExpected)
{
    line.expect(wire(6, le16(253)));
    EXPECT_EQ(garmin_comm(6, 253, no_wait, false), "");
    EXPECT_EQ(user.pumps, 0);
}

TEST_F(GarminExchange, ASilentReceiverEndsAWaitThatMayNotAskAfterOneSecond)
{
    const double begin = user.time_s;
    line.expect(unhex("10 FE 00 02 10 03"));
    EXPECT_EQ(garmin_comm(254, "", 255, false), "");
    EXPECT_TRUE(line.done()); // neither a NAK nor a closing frame went out
    EXPECT_GT(user.time_s - begin, 1.0);
    EXPECT_LT(user.time_s - begin, 1.1);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(GarminExchange, TheUserIsAskedAndANoSendsTheClosingFrame)
{
    user.answers = {answer::no};
    line.expect(wire(10, le16(7)));
    line.expect(unhex(closing));
    EXPECT_EQ(garmin_comm(10, 7, 27, true), "");
    EXPECT_EQ(user.numbers(), std::vector<int>{1530});
    EXPECT_EQ(user.messages[0].icon, icon::critical);
    EXPECT_EQ(user.messages[0].buttons, buttons::yes_no);
    EXPECT_FALSE(comm.comm_retry);
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, AYesRepeatsTheQuestionToTheReceiverThreeTimes)
{
    const double begin = user.time_s;
    user.answers = {answer::yes};
    line.expect(wire(10, le16(7)));
    for (int i = 0; i < 3; ++i)
        line.expect(unhex(nak));
    line.expect(unhex(closing));
    EXPECT_EQ(garmin_comm(10, 7, 27, true), "");
    EXPECT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(comm.comm_retry);
    EXPECT_GT(user.time_s - begin, 4.0);
    EXPECT_LT(user.time_s - begin, 4.4);
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, AnAnswerToTheThirdRepeatIsTaken)
{
    user.answers = {answer::yes};
    line.expect(wire(10, le16(7)));
    line.expect(unhex(nak));
    line.expect(unhex(nak));
    line.expect(unhex(nak), wire(27, le16(0)));
    EXPECT_EQ(hex(garmin_comm(10, 7, 27, true)), hex(wire(27, le16(0))));
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, OnceAgreedRetriesRunForWaitsThatMayNotAskToo)
{
    comm.comm_retry = true;
    line.expect(unhex("10 FE 00 02 10 03"));
    for (int i = 0; i < 3; ++i)
        line.expect(unhex(nak));
    EXPECT_EQ(garmin_comm(254, "", 255, false), ""); // and no closing frame
    EXPECT_TRUE(user.messages.empty());
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, CancelEndsTheWaitAtItsNextTimeOutWithTheClosingFrame)
{
    comm.comm_retry = true;
    user.on_pump = [] { job.op_cancel = true; };
    const double begin = user.time_s;
    line.expect(wire(10, le16(7)));
    line.expect(unhex(closing));
    EXPECT_EQ(garmin_comm(10, 7, 27, true), "");
    EXPECT_LT(user.time_s - begin, 1.1);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_TRUE(line.done());
}

TEST_F(GarminExchange, CancelDoesNotKeepAnAnswerFromBeingTaken)
{
    job.op_cancel = true;
    line.play("> 10 0A 02 07 00 ED 10 03\n! 0.5\n< " + hex(wire(27, le16(9))));
    EXPECT_EQ(hex(garmin_comm(10, 7, 27, true)), hex(wire(27, le16(9))));
}

TEST_F(GarminExchange, AClockThatPassesMidnightHoldsTheTimeOutBack)
{
    user.time_s = 86399.5;
    user.on_pump = [&] {
        if (user.time_s >= 86400)
            user.time_s -= 86400; // 1.5 seconds are over at 1.0
        if (user.time_s > 3 && user.time_s < 100 && line.on_output == nullptr) {
            line.on_output = [](const std::string&) {};
            line.send(wire(27, le16(2)));
        }
    };
    line.expect(wire(10, le16(7)));
    EXPECT_EQ(hex(garmin_comm(10, 7, 27, false)), hex(wire(27, le16(2))));
    EXPECT_GT(user.time_s, 3);
}

TEST_F(GarminExchange, SendingLeavesWhatCameInBeforeInTheBuffer)
{
    const std::string late = wire(27, le16(4));
    comm.comm_rx_buf = late.substr(0, 4);
    line.expect(wire(10, le16(7)), late.substr(4));
    EXPECT_EQ(hex(garmin_comm(10, 7, 27, false)), hex(late));
}

TEST_F(GarminExchange, AnOpenPortKeepsItsSettings)
{
    ASSERT_TRUE(comm_serial_open("4800,n,8,1"));
    line.expect(wire(10, le16(7)), wire(27, le16(0)));
    garmin_comm(10, 7, 27, false);
    EXPECT_EQ(line.settings, "4800,n,8,1");
    EXPECT_EQ(line.opens, 1);
    EXPECT_FALSE(comm_port_set(false));
    EXPECT_FALSE(line.opened);
    EXPECT_EQ(line.closes, 1);
    comm_port_set(false);
    EXPECT_EQ(line.closes, 1);
}

TEST_F(GarminExchange, ADeviceThatRefusesIsToldOnceAJobAndEndsIt)
{
    line.refused_settings = {"9600,n,8,1"};
    EXPECT_EQ(garmin_comm(254, "", 255, true), "");
    EXPECT_EQ(garmin_comm(10, 7, 27, true), "");
    EXPECT_EQ(user.numbers(), std::vector<int>{8040});
    EXPECT_EQ(user.messages[0].text, "8040 COM1 (/dev/scripted1) the speed is refused #");
    EXPECT_EQ(user.messages[0].icon, icon::critical);
    EXPECT_EQ(line.opens, 1);
    comm_port_set(false); // the end of the job
    garmin_comm(254, "", 255, true);
    EXPECT_EQ(user.messages.size(), 2U);
}

TEST_F(GarminExchange, APortWithoutADeviceIsToldToo)
{
    platform.serial.devices = [] { return std::vector<serial_device>{}; };
    comm.comm_port = 5;
    EXPECT_EQ(garmin_comm(254, "", 255, false), "");
    ASSERT_EQ(user.numbers(), std::vector<int>{8040});
    EXPECT_EQ(user.messages[0].text, "8040 COM5 8041 # # # #");
    EXPECT_EQ(line.opens, 0);
}

TEST_F(GarminExchange, ADeviceThatGoesAwayEndsTheWaitAtItsTimeOut)
{
    user.on_pump = [&] { line.hang_up(); };
    line.expect(wire(10, le16(7)));
    EXPECT_EQ(garmin_comm(10, 7, 27, false), "");
    EXPECT_FALSE(platform.serial.is_open());
}

TEST_F(GarminExchange, TheFramesOfTheInterfaceDocumentAreMade)
{
    EXPECT_EQ(hex(gar_frame(21, hex_to_bytes("22 00"))), nak);
    EXPECT_EQ(hex(gar_frame(12, hex_to_bytes("07 00"))), closing);
    EXPECT_EQ(hex(gar_frame(254, "")), "10 FE 00 02 10 03");
    EXPECT_EQ(hex(gar_frame(6, le16(255))), "10 06 02 FF 00 F9 10 03");
    EXPECT_EQ(hex(gar_frame(14, hex_to_bytes("06 0E D1 07 0A 00 0F 02"))),
              "10 0E 08 06 0E D1 07 0A 00 0F 02 E3 10 03");
    EXPECT_EQ(hex(gar_frame(17, hex_to_bytes("FC 78 27 ED 9E 12 EB 3F 8E 4D 47 17 AD 94 C4 3F"))),
              "10 11 10 10 FC 78 27 ED 9E 12 EB 3F 8E 4D 47 17 AD 94 C4 3F 00 10 03");
}

TEST_F(GarminExchange, HexadecimalTextBecomesBytes)
{
    EXPECT_EQ(hex_to_bytes(""), "");
    EXPECT_EQ(hex_to_bytes("41 42"), "AB");
    EXPECT_EQ(hex_to_bytes("4142 c3"), "AB\xC3");
}

TEST_F(GarminExchange, TheDataFieldStandsBetweenTheSizeAndTheClosingBytes)
{
    EXPECT_EQ(gar_id(""), 0);
    EXPECT_EQ(gar_id("\x10"), 0);
    EXPECT_EQ(gar_id(wire(255, "abc")), 255);
    EXPECT_EQ(gar_data(wire(255, "abc")), "abc");
    EXPECT_EQ(gar_data(wire(254, "")), "");
    EXPECT_EQ(gar_data("\x10\x0C"), "");
    EXPECT_EQ(gar_data(std::string(" \x06")), ""); // an acknowledgement over USB
}

TEST_F(GarminExchange, TheSpeedsOfTheSentenceFormats)
{
    const char* speeds[] = {"9600", "4800", "9600", "19200", "28800", "56000", "128000"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(comm_settings(i), std::string(speeds[i]) + ",n,8,1");
    EXPECT_EQ(comm_settings(7), "9600,n,8,1");
    EXPECT_EQ(comm_settings(-1), "9600,n,8,1");
}

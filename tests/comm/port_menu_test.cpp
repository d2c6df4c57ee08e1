#include "comm/port_menu.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/log.h"
#include "core/profiles.h"
#include "core/settings.h"
#include "core/shell.h"
#include "tests/comm/scripted_line.h"
#include "tests/support/program_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace velkoro;

namespace {

class PortMenu : public testing::Test {
protected:
    scripted_platform user{};
    program_folder home{};
    scripted_line line{user};
    std::string receiver_at{};         ///< device with a receiver behind it
    std::vector<std::string> opened{}; ///< devices that were asked, in order
    int shown = 0;                     ///< calls of the receiver's properties
    std::function<void()> before = Form1.gar_ident.click;

    void SetUp() override
    {
        home.put("velkoro.ini", "[Main]\r\nPr_act=Tour\r\nPr_0=Standard\r\nPr_1=Tour\r\n"
                                "[Standard]\r\nPort=1\r\n[Tour]\r\nPort=2\r\n");
        scripted_platform::plain_texts();
        profiles_load();
        settings_read();
        port_menu_install();
        comm.comm_port = 0;
        Form1.gar_ident.click = [this] {
            ++shown;
            opened_port = comm.comm_port;
            comm_port_set(false);
        };
        line.on_output = [this](const std::string& bytes) { answer_as_receiver(bytes); };
    }
    void TearDown() override
    {
        Form1.gar_ident.click = before;
        job.jobs.erase("COM");
        shell = {};
        for (control& entry : Form1.menu_com)
            entry.click = nullptr;
    }
    void answer_as_receiver(const std::string& bytes)
    {
        if (opened.empty() || opened.back() != line.device)
            opened.push_back(line.device);
        if (line.device != receiver_at)
            return;
        if (bytes == wire(254, ""))
            line.send(wire_ack(254) +
                      wire(255, le16(77) + le16(350) + "GPS 12 Software" + std::string(1, '\0')));
        else if (bytes == wire_ack(255))
            line.send(
                wire(253, "L" + le16(1) + "A" + le16(10) + "A" + le16(100) + "D" + le16(100)));
    }
    static void choose(int index)
    {
        const auto entry = std::ranges::find_if(
            Form1.menu_com, [index](const control& c) { return c.index == index; });
        entry->click();
    }
    static std::vector<int> ticked()
    {
        std::vector<int> all;
        for (const control& c : Form1.menu_com)
            if (c.checked)
                all.push_back(c.index);
        return all;
    }
    static void run_steps(const std::vector<shell_step>& steps)
    {
        for (const shell_step& s : steps)
            s.run();
    }
    int opened_port = -1;
};

} // namespace

TEST_F(PortMenu, AnEntryChoosesItsPortAndShowsTheReceiverBehindIt)
{
    user.answers = {answer::no};
    choose(5);
    EXPECT_EQ(comm.comm_port, 5);
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(opened_port, 5);
    EXPECT_EQ(ticked(), std::vector<int>{5});
    EXPECT_EQ(ini_get("Tour", "Port"), "5");
    EXPECT_EQ(ini_get("Standard", "Port"), "1");
    EXPECT_EQ(settings.port, 5);
}

TEST_F(PortMenu, APortInUseIsPutAwayFirst)
{
    comm.comm_port = 2;
    comm_port_set(true);
    choose(3);
    EXPECT_FALSE(line.opened);
    EXPECT_EQ(line.closes, 1);
}

TEST_F(PortMenu, TheUserIsAskedWhetherThePortHoldsForAllProfiles)
{
    user.answers = {answer::yes};
    choose(7);
    ASSERT_EQ(user.numbers(), std::vector<int>{1181});
    EXPECT_EQ(user.messages[0].text, "1181 7 # #");
    EXPECT_EQ(user.messages[0].buttons, buttons::yes_no);
    EXPECT_EQ(ini_get("Tour", "Port"), "7");
    EXPECT_EQ(ini_get("Standard", "Port"), "7");
}

TEST_F(PortMenu, UsbIsNamedInTheQuestion)
{
    choose(100);
    EXPECT_EQ(comm.comm_port, 100);
    EXPECT_EQ(user.messages.back().text, "1181 USB # #");
    EXPECT_EQ(ticked(), std::vector<int>{100});
    EXPECT_EQ(ini_get("Tour", "Port"), "100");
}

TEST_F(PortMenu, UsbWithMagellanOrNmeaIsSetAndWarnedAbout)
{
    for (const gar_place place : {gar_place::gar_wp_format, gar_place::gar_pos_format}) {
        settings.garmin = garmin_defaults;
        settings.garmin[static_cast<std::size_t>(place)] = 1;
        user.messages.clear();
        choose(100);
        EXPECT_EQ(user.numbers(), (std::vector<int>{1125, 1181}));
        EXPECT_EQ(user.messages[0].icon, icon::critical);
        EXPECT_EQ(comm.comm_port, 100);
    }
}

TEST_F(PortMenu, TheSearchGoesFromTheHighestPortDownToTheFirstWithAReceiver)
{
    receiver_at = "/dev/scripted6";
    choose(9);
    EXPECT_EQ(user.numbers(), (std::vector<int>{1180, 1181}));
    EXPECT_EQ(user.messages[0].buttons, buttons::ok_cancel);
    EXPECT_EQ(opened,
              (std::vector<std::string>{"/dev/scripted8", "/dev/scripted7", "/dev/scripted6"}));
    EXPECT_EQ(comm.comm_port, 6);
    EXPECT_EQ(ticked(), std::vector<int>{6});
    EXPECT_EQ(ini_get("Tour", "Port"), "6");
    EXPECT_FALSE(line.opened);
}

TEST_F(PortMenu, ASearchWithoutAReceiverEndsWithoutAPort)
{
    comm.comm_port = 4;
    choose(9);
    EXPECT_EQ(opened.size(), 8U);
    EXPECT_EQ(comm.comm_port, 0);
    EXPECT_EQ(ticked(), std::vector<int>{});
    EXPECT_EQ(ini_get("Tour", "Port"), "0");
    EXPECT_EQ(user.count(1181), 0) << "there is no port to hold for all";
}

TEST_F(PortMenu, ASearchThatIsNotWantedChangesNothing)
{
    comm.comm_port = 4;
    user.answers = {answer::cancel};
    choose(9);
    EXPECT_EQ(comm.comm_port, 4);
    EXPECT_TRUE(opened.empty());
    EXPECT_EQ(shown, 0);
    EXPECT_EQ(ini_get("Tour", "Port"), "2");
}

TEST_F(PortMenu, CancelEndsTheSearchWithoutAPort)
{
    receiver_at = "/dev/scripted1";
    user.on_pump = [&] {
        if (line.device == "/dev/scripted7")
            op.Abbr.click();
    };
    choose(9);
    EXPECT_EQ(opened, (std::vector<std::string>{"/dev/scripted8", "/dev/scripted7"}));
    EXPECT_EQ(comm.comm_port, 0);
    EXPECT_FALSE(line.opened);
}

TEST_F(PortMenu, TheSearchSaysWhichPortIsTried)
{
    std::vector<std::string> said;
    user.on_pump = [&] {
        if (said.empty() || said.back() != op.anz.caption)
            said.push_back(op.anz.caption);
    };
    choose(9);
    ASSERT_EQ(said.size(), 8U);
    EXPECT_EQ(said.front(), "2370 8 # #");
    EXPECT_EQ(said.back(), "2370 1 # #");
}

TEST_F(PortMenu, TheSearchPassesOverPortsWithoutADeviceAndDevicesThatRefuse)
{
    platform.serial.devices = [] {
        return std::vector<serial_device>{{"/dev/scripted1"}, {"/dev/scripted2"}};
    };
    line.refuse = "another program uses the device";
    choose(9);
    EXPECT_EQ(user.count(8040), 0);
    EXPECT_EQ(line.opens, 2);
    EXPECT_FALSE(comm.quiet);
    EXPECT_FALSE(comm.refused);
}

TEST_F(PortMenu, TheEntriesNameTheDevicesAndTheSimulator)
{
    platform.serial.devices = [] {
        return std::vector<serial_device>{{"/dev/serial/by-id/usb-A&B-port0"},
                                          {"/run/user/1/velkoro-simulator", true}};
    };
    port_menu_show();
    EXPECT_EQ(Form1.menu_com[0].caption, "COM&1: usb-A&&B-port0");
    EXPECT_EQ(Form1.menu_com[0].tooltip, "/dev/serial/by-id/usb-A&B-port0");
    EXPECT_EQ(Form1.menu_com[1].caption, "COM&2");
    EXPECT_EQ(Form1.menu_com[7].caption, "COM&8: 8045 # # #");
    EXPECT_EQ(Form1.menu_com[8].caption, Form1.menu_com[8].design.caption);
}

TEST_F(PortMenu, ADeviceThatIsPluggedInShowsItselfWithinTwoSeconds)
{
    std::vector<serial_device> all;
    int looks = 0;
    platform.serial.devices = [&] {
        ++looks;
        return all;
    };
    run_steps(shell.periodic);
    all = {{"/dev/ttyUSB0"}};
    for (int i = 0; i < 11; ++i) {
        user.time_s += 0.2;
        run_steps(shell.periodic);
    }
    EXPECT_EQ(Form1.menu_com[0].caption, "COM&1: ttyUSB0");
    EXPECT_EQ(looks, 2);
    job.code = "W_L";
    user.time_s += 5;
    run_steps(shell.periodic);
    EXPECT_EQ(looks, 2) << "not while a job is under way";
    job.code.clear();
}

TEST_F(PortMenu, ThePortOfTheProfileIsInForceAtTheStartAndAfterASwitch)
{
    run_steps(shell.start);
    EXPECT_EQ(comm.comm_port, 2);
    comm_port_set(true);
    settings.port = 100;
    run_steps(shell.profile_in);
    EXPECT_EQ(comm.comm_port, 100);
    EXPECT_FALSE(line.opened);
    for (const int wrong : {-1, 9, 50, 101}) {
        settings.port = wrong;
        run_steps(shell.profile_in);
        EXPECT_EQ(comm.comm_port, 0) << wrong;
    }
}

TEST_F(PortMenu, TheCommandStandsInTheLog)
{
    log_open();
    choose(3);
    log_close();
    EXPECT_NE(home.get("velkoro.log").find(" com port command 3"), std::string::npos);
}

#include "comm/com_ports.h"
#include "comm/comm.h"
#include "core/settings.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

class ComPorts : public testing::Test {
protected:
    scripted_platform user{};
    std::vector<serial_device> found{};
    void SetUp() override
    {
        platform.serial.devices = [this] { return found; };
    }
    static std::vector<std::string> devices()
    {
        std::vector<std::string> all;
        for (const com_port& p : com_ports())
            all.push_back(p.device);
        return all;
    }
};

} // namespace

TEST_F(ComPorts, WithoutDevicesTheyAreEmpty)
{
    EXPECT_EQ(devices(), std::vector<std::string>(8));
}

TEST_F(ComPorts, FoundDevicesTakeTheNumbersInOrder)
{
    found = {{"/dev/x/usb"}, {"/dev/x/acm"}};
    EXPECT_EQ(devices(),
              (std::vector<std::string>{"/dev/x/usb", "/dev/x/acm", "", "", "", "", "", ""}));
    EXPECT_EQ(comm_device(2), "/dev/x/acm");
    EXPECT_EQ(comm_device(3), "");
    EXPECT_EQ(comm_device(0), "");
    EXPECT_EQ(comm_device(9), "");
    EXPECT_EQ(comm_device(100), "");
}

TEST_F(ComPorts, AKeyNamesTheDeviceOfItsNumberAndTheFoundOnesGoAroundIt)
{
    ini_put("Main", "Com1", "/dev/x/mine");
    ini_put("Main", "Com3", "/dev/x/acm");
    found = {{"/dev/x/usb"}, {"/dev/x/acm"}, {"/dev/x/board"}};
    EXPECT_EQ(devices(), (std::vector<std::string>{"/dev/x/mine", "/dev/x/usb", "/dev/x/acm",
                                                   "/dev/x/board", "", "", "", ""}));
}

TEST_F(ComPorts, TheSimulatorTakesTheHighestFreeNumber)
{
    found = {{"/dev/x/usb"}, {"/run/simulator", true}};
    EXPECT_EQ(com_ports()[7], (com_port{"/run/simulator", true}));
    EXPECT_EQ(com_ports()[0], (com_port{"/dev/x/usb", false}));
    ini_put("Main", "Com8", "/dev/x/mine");
    EXPECT_EQ(com_ports()[6], (com_port{"/run/simulator", true}));
}

TEST_F(ComPorts, MoreThanEightDevicesLeaveTheSimulatorItsPlace)
{
    for (int i = 0; i < 12; ++i)
        found.push_back({"/dev/x/usb" + std::to_string(i)});
    found.push_back({"/run/simulator", true});
    EXPECT_EQ(com_ports()[6].device, "/dev/x/usb6");
    EXPECT_EQ(com_ports()[7].device, "/run/simulator");
}

TEST_F(ComPorts, ASimulatorThatAKeyNamesIsAPortLikeAnyOther)
{
    ini_put("Main", "Com1", "/run/simulator");
    found = {{"/run/simulator", true}};
    EXPECT_EQ(devices(), (std::vector<std::string>{"/run/simulator", "", "", "", "", "", "", ""}));
}

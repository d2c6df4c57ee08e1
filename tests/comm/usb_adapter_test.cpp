// The adapter to the system's USB library, against a device that umockdev plays from a recording
// made here.
#include "comm/comm.h"
#include "comm/gar_proto.h"
#include "comm/garmin_link.h"
#include "comm/libusb_pipes.h"
#include "tests/comm/scripted_line.h"
#include "tests/comm/simulated_pipes.h"
#include "tests/support/program_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

using namespace velkoro;

namespace {

constexpr const char* sys_path = "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1";
constexpr int ep_interrupt_in = 0x81, ep_bulk_out = 0x02, ep_bulk_in = 0x83;

// USB descriptors: device 091E:0003, one interface of the maker's own class, three pipes.
const std::string descriptors = unhex("12 01 10 01 FF FF FF 40 1E 09 03 00 01 00 00 00 00 01 "
                                      "09 02 27 00 01 01 00 80 32 "
                                      "09 04 00 00 03 FF FF FF 00 "
                                      "07 05 81 03 40 00 01 "
                                      "07 05 02 02 40 00 00 "
                                      "07 05 83 02 40 00 00");

std::string device_description()
{
    std::string hex_bytes;
    for (const char c : hex(descriptors))
        if (c != ' ')
            hex_bytes += c;
    return "P: " + std::string(sys_path).substr(4) +
           "\nN: bus/usb/001/002\n"
           "E: BUSNUM=001\nE: DEVNAME=/dev/bus/usb/001/002\nE: DEVNUM=002\n"
           "E: DEVTYPE=usb_device\nE: MAJOR=189\nE: MINOR=1\nE: SUBSYSTEM=usb\n"
           "A: bConfigurationValue=1\\n\nA: busnum=1\\n\nA: devnum=2\\n\nA: speed=12\\n\n"
           "A: idVendor=091e\\n\nA: idProduct=0003\\n\n"
           "H: descriptors=" +
           hex_bytes + "\n\n";
}

/// A recording in the form of pcap with usbmon headers of 64 bytes.
struct recording {
    std::string bytes =
        le32(0xA1B2C3D4) + le16(2) + le16(4) + le32(0) + le32(0) + le32(65535) + le32(220);
    int number = 0;

    void record(char type, int endpoint, int transfer, int status, std::size_t length,
                const std::string& data)
    {
        const std::int64_t us = 1000 * number;
        std::string h = le32(number / 2 + 1) + le32(0); // one URB at a time: submit and completion
        h += type;
        h += static_cast<char>(transfer);
        h += static_cast<char>(endpoint);
        h += '\x02';  // device
        h += le16(1); // bus
        h += '-';     // no set-up packet
        h += data.empty() ? (type == 'S' ? '<' : '>') : '\0';
        h += le32(us / 1000000) + le32(0) + le32(us % 1000000) + le32(status);
        h += le32(static_cast<std::int64_t>(length));
        h += le32(static_cast<std::int64_t>(data.size()));
        h += std::string(8, '\0') + le32(0) + le32(0) + le32(0) + le32(0);
        bytes += le32(us / 1000000) + le32(us % 1000000) +
                 le32(static_cast<std::int64_t>(h.size() + data.size())) +
                 le32(static_cast<std::int64_t>(h.size() + data.size())) + h + data;
        ++number;
    }
    void out(const std::string& data)
    {
        record('S', ep_bulk_out, 3, -115, data.size(), data);
        record('C', ep_bulk_out, 3, 0, data.size(), {});
    }
    void in(int endpoint, std::size_t asked, const std::string& data)
    {
        const int transfer = endpoint == ep_interrupt_in ? 1 : 3;
        record('S', endpoint, transfer, -115, asked, {});
        record('C', endpoint, transfer, 0, data.size(), data);
    }
};

const std::string product =
    le16(694) + le16(250) + "Handheld Software Version 2.50" + std::string(1, '\0');
const std::string waypoint(52 + 30, 'w');

std::string session()
{
    recording r;
    r.out(usb_wire(0, 5, ""));
    r.in(ep_interrupt_in, 64, usb_wire(0, 6, le32(0x12345678)));
    r.out(usb_wire(20, 254, ""));
    r.in(ep_interrupt_in, 64, usb_wire(20, 255, product));
    r.out(usb_wire(20, 10, le16(7)));
    r.in(ep_interrupt_in, 64, usb_wire(0, 2, ""));
    r.in(ep_bulk_in, 4096, usb_wire(20, 35, waypoint));
    return r.bytes;
}

constexpr const char* in_testbed = "VELKORO_TEST_IN_TESTBED";

/// What happens within the testbed, in a process of its own.
void exchange_packets()
{
    const scripted_platform user;
    comm = {};
    receiver = {};
    comm.comm_port = usb_port;
    libusb_pipes_install();
    ASSERT_TRUE(comm_port_set(true)) << platform.usb.error_text();
    EXPECT_EQ(comm.usb_packet_size, 64U);
    EXPECT_EQ(gar_data(garmin_comm(254, "", 255, false)), product);
    EXPECT_EQ(gar_data(garmin_comm(10, 7, 35, true)), waypoint);
    EXPECT_TRUE(comm.usb_bulk);
    const double begin = platform_table().ticks();
    EXPECT_EQ(garmin_comm(6, 35, 35, true), "") << "the receiver is silent now";
    EXPECT_LT(platform_table().ticks() - begin, 10.0);
    comm_port_set(false);
    EXPECT_TRUE(user.messages.empty());
    comm = {};
}

/// Runs a test of this program in a process of its own, where the devices of the testbed are all
/// that the system has.
void run_in_testbed(const program_folder& home, const std::string& devices, const std::string& test)
{
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = std::string(in_testbed) +
                                "=1 GTEST_TOTAL_SHARDS=1 GTEST_SHARD_INDEX=0 "
                                "ASAN_OPTIONS=verify_asan_link_order=0 umockdev-run " +
                                devices + " -- " + self + " --gtest_filter=" + test + " > " +
                                home.path.string() + "/log 2>&1";
    const int status = std::system(command.c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << home.get("log");
    EXPECT_NE(home.get("log").find("[  PASSED  ] 1 test."), std::string::npos) << home.get("log");
}

bool within_testbed()
{
    return std::getenv(in_testbed) != nullptr;
}

} // namespace

TEST(UsbAdapter, ExchangesPacketsWithADeviceOfTheSystem)
{
    if (within_testbed()) {
        exchange_packets();
        return;
    }
    const scripted_platform user;
    const program_folder home;
    home.put("device.umockdev", device_description());
    home.put("session.pcap", session());
    const std::string folder = home.path.string();
    run_in_testbed(
        home, "-d " + folder + "/device.umockdev -p " + sys_path + "=" + folder + "/session.pcap",
        "UsbAdapter.ExchangesPacketsWithADeviceOfTheSystem");
}

TEST(UsbAdapter, WithoutAReceiverNothingIsFound)
{
    const scripted_platform user;
    if (!within_testbed()) {
        const program_folder home;
        run_in_testbed(home, "", "UsbAdapter.WithoutAReceiverNothingIsFound");
        return;
    }
    comm = {};
    comm.comm_port = usb_port;
    libusb_pipes_install();
    EXPECT_FALSE(comm_port_set(true));
    EXPECT_EQ(garmin_comm(254, "", 255, false), "");
    comm = {};
}

TEST(UsbAdapter, TheShippedRuleGivesTheDeviceToTheUserAtTheMachine)
{
    std::ifstream in(VELKORO_SOURCE_DIR "/comm/70-velkoro.rules");
    const std::string rule(std::istreambuf_iterator<char>(in), {});
    for (const char* part : {"SUBSYSTEM==\"usb\"", "ATTR{idVendor}==\"091e\"",
                             "ATTR{idProduct}==\"0003\"", "TAG+=\"uaccess\""})
        EXPECT_NE(rule.find(part), std::string::npos) << part;
    // The system grants the access in its rules number 73, so ours stands ahead of them.
}

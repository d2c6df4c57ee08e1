#include "comm/garmin_link.h"
#include "tests/comm/pty_line.h"
#include "tests/comm/scripted_line.h"
#include "tests/support/program_folder.h"

#include <gtest/gtest.h>

#include <asm/termbits.h>
#include <sys/file.h>
#include <sys/ioctl.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>

using namespace velkoro;

namespace {

class SerialLine : public testing::Test {
protected:
    scripted_platform user{};
    pty_line pty{};
    std::vector<std::string> events{}; ///< bytes of each
    void SetUp() override
    {
        scripted_platform::plain_texts();
        platform.serial.received = [this] { events.push_back(platform.serial.input()); };
    }
    std::string open(const std::string& settings = "9600,n,8,1") const
    {
        return platform.serial.open(pty.path, settings);
    }
    termios2 state() const
    {
        termios2 t{};
        EXPECT_EQ(::ioctl(pty.far, TCGETS2, &t), 0);
        return t;
    }
    static double process_seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }
};

} // namespace

TEST_F(SerialLine, EveryByteTravelsUnchangedInBothDirections)
{
    ASSERT_EQ(open(), "");
    std::string all;
    for (int c = 0; c < 256; ++c)
        all += static_cast<char>(c);
    platform.serial.output(all);
    EXPECT_EQ(hex(pty.take()), hex(all));
    pty.put(all);
    for (int i = 0; i < 50 && events.empty(); ++i)
        platform.pump(20);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(hex(events[0]), hex(all));
    EXPECT_EQ(pty.take(), "") << "nothing is echoed";
}

TEST_F(SerialLine, AnySpeedIsSet)
{
    for (const unsigned speed : {300U, 4800U, 9600U, 19200U, 28800U, 56000U, 128000U, 12345U}) {
        ASSERT_EQ(open(std::to_string(speed) + ",n,8,1"), "");
        const termios2 t = state();
        EXPECT_EQ(t.c_ospeed, speed);
        EXPECT_EQ(t.c_ispeed, speed);
        EXPECT_EQ(t.c_cflag & CSIZE, unsigned{CS8});
        EXPECT_EQ(t.c_lflag, 0U);
        EXPECT_EQ(t.c_cc[VMIN], 1);
        platform.serial.close();
    }
}

TEST_F(SerialLine, ParityAndStopBitsAreThoseOfTheSettings)
{
    ASSERT_EQ(open("4800,e,7,2"), "");
    const unsigned flags = state().c_cflag;
    EXPECT_EQ(flags & CSTOPB, unsigned{CSTOPB});
    EXPECT_EQ(flags & PARODD, 0U);
}

TEST_F(SerialLine, ASpeedThatIsNoneIsRefused)
{
    EXPECT_EQ(open("0,n,8,1"), "8042 0 # #");
    EXPECT_EQ(open("fast"), "8042 0 # #");
    EXPECT_FALSE(platform.serial.is_open());
}

TEST_F(SerialLine, AMissingDeviceAndAPlainFileAreRefusedWithTheReason)
{
    EXPECT_NE(platform.serial.open("/nowhere/ttyUSB0", "9600,n,8,1"), "");
    const program_folder home;
    home.put("file", "x");
    scripted_platform::plain_texts();
    EXPECT_EQ(platform.serial.open((home.path / "file").string(), "9600,n,8,1"), "8043 # # #");
    EXPECT_FALSE(platform.serial.is_open());
}

TEST_F(SerialLine, ADeviceInUseIsRefused)
{
    const int other = ::open(pty.path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_EQ(open(), "8044 # # #");
    ::close(other);
    EXPECT_EQ(open(), "");
}

TEST_F(SerialLine, TheThresholdHoldsTheEventBack)
{
    ASSERT_EQ(open(), "");
    platform.serial.threshold(5);
    pty.put("abc");
    platform.pump(20);
    platform.pump(20);
    EXPECT_TRUE(events.empty());
    pty.put("def");
    for (int i = 0; i < 50 && events.empty(); ++i)
        platform.pump(20);
    EXPECT_EQ(events, std::vector<std::string>{"abcdef"});
}

TEST_F(SerialLine, AThresholdLoweredToWhatIsWaitingRaisesTheEventInTheNextPump)
{
    ASSERT_EQ(open(), "");
    platform.serial.threshold(5);
    pty.put("abc");
    platform.pump(20);
    platform.serial.threshold(3);
    EXPECT_TRUE(events.empty());
    platform.pump(20);
    EXPECT_EQ(events, std::vector<std::string>{"abc"});
    platform.pump(0);
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(SerialLine, ADeviceThatGoesAwayIsClosedAndWatchedNoMore)
{
    ASSERT_EQ(open(), "");
    pty.put("last");
    pty.drop();
    for (int i = 0; i < 50 && platform.serial.is_open(); ++i)
        platform.pump(20);
    EXPECT_FALSE(platform.serial.is_open());
    platform.serial.output("lost");
    platform.serial.threshold(1);
    const double begin = platform.ticks();
    platform.pump(50);
    EXPECT_GT(platform.ticks() - begin, 0.04) << "a dead descriptor would end the wait at once";
}

TEST_F(SerialLine, OutputDoesNotWaitForADeviceThatTakesNothing)
{
    ASSERT_EQ(open(), "");
    const std::string much(200000, 'x');
    const double begin = platform.ticks();
    platform.serial.output(much);
    EXPECT_LT(platform.ticks() - begin, 0.5);
    std::string got;
    for (int i = 0; i < 2000 && got.size() < much.size() + 3; ++i) {
        got += pty.take();
        platform.serial.output(i == 0 ? "end" : "");
    }
    EXPECT_EQ(got.size(), much.size() + 3);
    EXPECT_TRUE(got.ends_with("xend"));
}

TEST_F(SerialLine, AnOpenLineCanBeOpenedAnewAtAnotherSpeed)
{
    ASSERT_EQ(open("4800,n,8,1"), "");
    ASSERT_EQ(open("9600,n,8,1"), "");
    EXPECT_EQ(state().c_ospeed, 9600U);
    pty.put("x");
    for (int i = 0; i < 50 && events.empty(); ++i)
        platform.pump(20);
    EXPECT_EQ(events, std::vector<std::string>{"x"});
}

TEST_F(SerialLine, APacketIsExchangedOverATerminal)
{
    comm_listen();
    const std::string product = wire(255, le16(77) + le16(350) + "GPS 12" + std::string(1, '\0'));
    std::string asked;
    pty.receiver_turn = [&] {
        asked += pty.take();
        if (asked == unhex("10 FE 00 02 10 03")) {
            pty.put(wire_ack(254) + product);
            asked.clear();
        }
    };
    EXPECT_EQ(hex(garmin_comm(254, "", 255, false)), hex(product));
    comm_port_set(false);
    EXPECT_FALSE(platform.serial.is_open());
}

TEST_F(SerialLine, WaitingCostsNextToNoProcessorTimeAndServesEventsEveryTwentyMilliseconds)
{
    comm_listen();
    double longest = 0, last = platform.ticks();
    pty.receiver_turn = [&] {
        const double now = platform.ticks();
        longest = std::max(longest, now - last);
        last = now;
    };
    const double begin = platform.ticks(), cpu = process_seconds();
    EXPECT_EQ(garmin_comm(254, "", 255, false), "");
    EXPECT_GT(platform.ticks() - begin, 0.99);
    EXPECT_LT(process_seconds() - cpu, 0.1);
    EXPECT_LT(longest, 0.1) << "this is how late Cancel is seen";
}

TEST_F(SerialLine, BytesEndTheWaitOfAPump)
{
    ASSERT_EQ(open(), "");
    const std::jthread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        pty.put("x");
    });
    const double begin = platform.ticks();
    platform.pump(5000);
    EXPECT_LT(platform.ticks() - begin, 4.0);
    EXPECT_EQ(events, std::vector<std::string>{"x"});
}

namespace {

/// A root folder with made-up devices.
struct device_folder {
    program_folder home{};
    void device(const std::string& name) const { put("dev/" + name, ""); }
    void circuit(const std::string& name, const std::string& type) const
    {
        device(name);
        put("sys/class/tty/" + name + "/type", type + "\n");
    }
    void put(const std::string& name, const std::string& text) const
    {
        std::filesystem::create_directories((home.path / name).parent_path());
        std::ofstream(home.path / name) << text;
    }
    void link(const std::string& name, const std::string& target) const
    {
        std::filesystem::create_directories((home.path / name).parent_path());
        std::filesystem::create_symlink(target, home.path / name);
    }
    std::vector<std::string> found() const
    {
        std::vector<std::string> names;
        for (const serial_device& d : serial_devices(home.path.string())) {
            if (!d.simulator)
                names.push_back(d.path.substr(home.path.string().size()));
        }
        return names;
    }
};

} // namespace

TEST(SerialDevices, NamesOfTheMakerComeFirstAndNoDeviceComesTwice)
{
    const scripted_platform user;
    const device_folder root;
    for (const char* name : {"ttyUSB10", "ttyUSB2", "ttyACM0", "tty1", "ttyUSB", "ttyUSBx"})
        root.device(name);
    root.link("dev/serial/by-id/usb-Maker_Cable-if00", "../../ttyUSB10");
    EXPECT_EQ(root.found(), (std::vector<std::string>{"/dev/serial/by-id/usb-Maker_Cable-if00",
                                                      "/dev/ttyUSB2", "/dev/ttyACM0"}));
}

TEST(SerialDevices, LinesOfTheBoardCountWhenACircuitIsBehindThem)
{
    const scripted_platform user;
    const device_folder root;
    root.circuit("ttyS0", "4");
    root.circuit("ttyS1", "0");
    root.device("ttyS2");
    root.circuit("ttyS3", "4");
    EXPECT_EQ(root.found(), (std::vector<std::string>{"/dev/ttyS0", "/dev/ttyS3"}));
}

TEST(SerialDevices, AFolderWithoutDevicesHasNone)
{
    const scripted_platform user;
    const device_folder root;
    EXPECT_EQ(root.found(), std::vector<std::string>{});
}

TEST(SerialDevices, TheSimulatedReceiverOfTheUserIsOfferedWhileItRuns)
{
    const scripted_platform user;
    const device_folder root;
    const char* before = std::getenv("XDG_RUNTIME_DIR");
    const std::string kept = before ? before : "";
    ::setenv("XDG_RUNTIME_DIR", root.home.path.c_str(), 1);
    const std::string path = root.home.path.string() + "/velkoro-simulator";
    EXPECT_EQ(simulator_path(), path);
    EXPECT_TRUE(serial_devices(root.home.path.string()).empty());
    root.link("velkoro-simulator", "pts");
    EXPECT_TRUE(serial_devices(root.home.path.string()).empty()) << "the link leads nowhere";
    root.put("pts", "");
    EXPECT_EQ(serial_devices(root.home.path.string()), (std::vector<serial_device>{{path, true}}));
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(simulator_path(), "/tmp/velkoro-simulator-" + std::to_string(::geteuid()));
    if (before)
        ::setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
}

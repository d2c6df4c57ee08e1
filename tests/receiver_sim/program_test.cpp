// The program as a whole, and a program that knows receivers on the other end of its line.
#include "core/files.h"
#include "core/reset.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "tools/receiver-sim/sim_frame.h"
#include "tools/receiver-sim/sim_magellan.h"
#include "tools/receiver-sim/sim_pty.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace velkoro {
namespace {

namespace fs = std::filesystem;

const std::string source = VELKORO_SOURCE_DIR;
const std::string built = VELKORO_BINARY_DIR;

/// Files and the running receiver of one test.
struct ReceiverSim : testing::Test {
    fs::path folder =
        fs::temp_directory_path() / ("velkoro_sim_" + std::to_string(getpid()) + "_" +
                                     testing::UnitTest::GetInstance()->current_test_info()->name());
    pid_t child = -1;
    std::string line{}; ///< path of the receiver's line

    ReceiverSim()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        reset_all();
    }
    ~ReceiverSim() override
    {
        stop();
        fs::remove_all(folder);
    }
    std::string file(const std::string& name) const { return (folder / name).string(); }

    /// Starts the receiver and waits for the path of its line.
    void start(std::vector<std::string> options)
    {
        line = file("line");
        options.insert(options.begin(), {built + "/velkoro-receiver-sim", "--link", line});
        options.insert(options.end(), {"--home", built});
        std::vector<char*> arguments;
        for (std::string& option : options)
            arguments.push_back(option.data());
        arguments.push_back(nullptr);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        close(ends[1]);
        std::string printed;
        char c = 0;
        while (read(ends[0], &c, 1) == 1 && c != '\n')
            printed += c;
        close(ends[0]);
        ASSERT_EQ(printed, line);
    }
    /// Ends the receiver, which writes its files; its exit code.
    int stop()
    {
        if (child <= 0)
            return -1;
        kill(child, SIGTERM);
        return wait_for_end();
    }
    int wait_for_end()
    {
        int status = 0;
        waitpid(child, &status, 0);
        child = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// Runs a command with its output thrown away; its exit code.
    static int run(const std::string& command)
    {
        return std::system(("timeout 60 " + command + " >/dev/null 2>&1").c_str());
    }
};

void read_sample()
{
    reset_all();
    store.wp_name_max = 20;
    ASSERT_EQ(read_wp(*read_file(source + "/data/Waypoints/sample.wp")).end, native_end::whole);
    ASSERT_EQ(read_t(*read_file(source + "/data/Track/sample.t")).end, native_end::whole);
}

double degrees(std::int32_t semi)
{
    return semi * (180.0 / 2147483648.0);
}

/// Rows of a comma-separated file without its head; the first columns are number, latitude,
/// longitude and name.
std::vector<std::vector<std::string>> rows_of(const std::string& path)
{
    std::vector<std::vector<std::string>> rows;
    const std::string text = read_file(path).value_or("");
    for (const std::string_view row : split_lines(text)) {
        if (row.starts_with("No,"))
            continue;
        std::vector<std::string> fields;
        std::string_view rest = row;
        while (!rest.empty())
            fields.emplace_back(next_field(rest, ','));
        rows.push_back(std::move(fields));
    }
    return rows;
}

const std::string sample_wp = source + "/data/Waypoints/sample.wp";
const std::string sample_t = source + "/data/Track/sample.t";

/// The sample with a height for every waypoint: GPSBabel's reader of Magellan sentences needs one.
void write_sample_with_heights(const std::string& path)
{
    read_sample();
    for (wayp_rec& w : store.wp)
        if (w.alt == alt_unknown)
            w.alt = 1000;
    write_file(path, write_wp({}).bytes);
}

struct receiver_kind {
    const char* name;
    std::vector<std::string> options;
    const char* input; ///< for GPSBabel
};

const std::vector<receiver_kind> kinds = {
    {"old", {"--kind", "old"}, "garmin"},
    {"new", {"--kind", "new"}, "garmin"},
    {"D100", {"--product", "7", "--version", "2.00"}, "garmin"},
    {"D108",
     {"--protocols", "L001 A010 A100 D108 A201 D202 D108 D210 A301 D310 D301", "--array"},
     "garmin"},
    {"D110",
     {"--protocols", "L001 A010 A100 D110 A201 D202 D110 D210 A301 D312 D302", "--array"},
     "garmin"},
    {"Magellan", {"--protocol", "magellan"}, "magellan,baud=4800"},
};

TEST_F(ReceiverSim, GivesItsWaypointsToGpsBabelAsEachKindOfReceiver)
{
    const std::string held = file("held.wp");
    write_sample_with_heights(held);
    for (const receiver_kind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        std::vector<std::string> options = kind.options;
        options.insert(options.end(), {"--load", held});
        start(options);
        ASSERT_EQ(run("gpsbabel -w -i " + std::string(kind.input) + " -f " + line +
                      " -o unicsv -F " + file("out.csv")),
                  0);
        EXPECT_EQ(stop(), 0);
        read_sample();
        const auto rows = rows_of(file("out.csv"));
        ASSERT_EQ(static_cast<int>(rows.size()), store.wp_top + 1);
        for (int i = 0; i <= store.wp_top; ++i) {
            const wayp_rec& w = store.wp[static_cast<std::size_t>(i)];
            const auto& row = rows[static_cast<std::size_t>(i)];
            ASSERT_GE(row.size(), 4U);
            EXPECT_NEAR(std::atof(row[1].c_str()), degrees(w.pos.lat), 2e-5);
            EXPECT_NEAR(std::atof(row[2].c_str()), degrees(w.pos.lon), 2e-5);
            EXPECT_EQ(row[3], "\"" + w.nam + "\"");
        }
    }
}

TEST_F(ReceiverSim, TakesWaypointsFromGpsBabelAsEachKindOfReceiver)
{
    write_file(file("in.csv"), "48.47355, 9.21243, HUT\n-33.85456, 151.21515, QUAY\n"
                               "0.5, -0.25, EQUATR\n");
    for (const receiver_kind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        std::vector<std::string> options = kind.options;
        const std::string kept = file("kept.wp");
        options.insert(options.end(), {"--save", kept});
        start(options);
        ASSERT_EQ(
            run("gpsbabel -w -i csv -f " + file("in.csv") + " -o " + kind.input + " -F " + line),
            0);
        EXPECT_EQ(stop(), 0);
        reset_all();
        ASSERT_EQ(read_wp(read_file(kept).value_or("")).end, native_end::whole);
        ASSERT_EQ(store.wp_top, 2);
        EXPECT_EQ(store.wp[0].nam, "HUT");
        EXPECT_NEAR(degrees(store.wp[0].pos.lat), 48.47355, 2e-5);
        EXPECT_EQ(store.wp[1].nam, "QUAY");
        EXPECT_NEAR(degrees(store.wp[1].pos.lat), -33.85456, 2e-5);
        EXPECT_NEAR(degrees(store.wp[1].pos.lon), 151.21515, 2e-5);
        EXPECT_EQ(store.wp[2].nam, "EQUATR");
        EXPECT_NEAR(degrees(store.wp[2].pos.lon), -0.25, 2e-5);
        fs::remove(kept);
    }
}

TEST_F(ReceiverSim, GivesItsRoutesAndItsTrackToGpsBabel)
{
    start({"--kind", "new", "--load", sample_wp, "--load", sample_t});
    ASSERT_EQ(run("gpsbabel -r -i garmin -f " + line + " -x transform,wpt=rte -o unicsv -F " +
                  file("routes.csv")),
              0);
    ASSERT_EQ(run("gpsbabel -t -i garmin -f " + line + " -x transform,wpt=trk -o unicsv -F " +
                  file("track.csv")),
              0);
    EXPECT_EQ(stop(), 0);
    read_sample();
    std::size_t points = 0;
    for (int i = 0; i <= store.rou_top; ++i)
        points += list_tokens(store.rou[static_cast<std::size_t>(i)].wps).size();
    EXPECT_EQ(rows_of(file("routes.csv")).size(), points);
    const auto track = rows_of(file("track.csv"));
    ASSERT_EQ(static_cast<std::int32_t>(track.size()), store.trk_top + 1);
    EXPECT_NEAR(std::atof(track.back()[1].c_str()),
                degrees(store.trk[static_cast<std::size_t>(store.trk_top)].pos.lat), 2e-5);
}

TEST_F(ReceiverSim, IsUnderstoodWhenItsPacketsComeInPieces)
{
    start(
        {"--kind", "old", "--load", sample_wp, "--fault", "split=0.01@every7", "--baud", "115200"});
    ASSERT_EQ(run("gpsbabel -w -i garmin -f " + line + " -o unicsv -F " + file("out.csv")), 0);
    EXPECT_EQ(stop(), 0);
    read_sample();
    EXPECT_EQ(static_cast<int>(rows_of(file("out.csv")).size()), store.wp_top + 1);
}

/// Reads the line until the text has come, or five seconds have passed.
std::string read_until(int descriptor, const std::string& text)
{
    std::string got;
    const double end = sim_now() + 5;
    while (got.find(text) == std::string::npos && sim_now() < end) {
        pollfd ready{descriptor, POLLIN, 0};
        char buffer[512];
        if (poll(&ready, 1, 100) > 0)
            if (const ssize_t n = read(descriptor, buffer, sizeof buffer); n > 0)
                got.append(buffer, static_cast<std::size_t>(n));
    }
    return got;
}

TEST_F(ReceiverSim, StreamsSentencesOnceASecond)
{
    start({"--protocol", "nmea", "--start", "2001-06-14 10:15:01", "--load", sample_t});
    const int host = open(line.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(host, 0);
    const std::string got = read_until(host, "101503");
    close(host);
    EXPECT_NE(got.find("$GPGGA,101502,"), std::string::npos);
    EXPECT_NE(got.find("$GPRMC,101502,A,"), std::string::npos);
    EXPECT_NE(got.find("$PGRMM,WGS 84*06\r\n"), std::string::npos);
}

TEST_F(ReceiverSim, EndsWhenTheHostSwitchesItOff)
{
    start({"--kind", "new"});
    const int host = open(line.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(host, 0);
    const std::string off = sim_frame({10, std::string("\x08\0", 2)});
    ASSERT_EQ(write(host, off.data(), off.size()), static_cast<ssize_t>(off.size()));
    EXPECT_EQ(wait_for_end(), 0);
    close(host);
    EXPECT_FALSE(fs::exists(fs::symlink_status(line)));
}

TEST_F(ReceiverSim, RefusesOptionsThatMakeNoSense)
{
    const std::string program = built + "/velkoro-receiver-sim --home " + built;
    for (const char* options : {"--fault lose@3", "--product 9999", "--start yesterday",
                                "--kind future", "--load /nowhere.wp"})
        EXPECT_EQ(WEXITSTATUS(run(program + " " + options)), 2) << options;
}

} // namespace
} // namespace velkoro

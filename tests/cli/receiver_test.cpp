// velkoro-cli receiver, against a simulated receiver on a real pseudo terminal.
#include "tests/cli/run_cli.h"
#include "tools/receiver-sim/sim_faults.h"
#include "tools/receiver-sim/sim_garmin.h"
#include "tools/receiver-sim/sim_magellan.h"
#include "tools/receiver-sim/sim_pty.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <atomic>
#include <functional>
#include <thread>

using namespace velkoro;

namespace {

/// A receiver that answers on a pseudo terminal, in a thread of its own, until it goes away.
class receiver_on_line {
public:
    sim_garmin garmin{};
    sim_magellan magellan{};
    sim_faults faults{};
    std::vector<std::string> sentences{};

    explicit receiver_on_line(bool speaks_sentences = false) : by_sentence(speaks_sentences)
    {
        const auto send = [this](const std::string& bytes) {
            sim_put(line, sim_send(faults, bytes));
        };
        garmin.send = magellan.send = send;
        magellan.received = [this](const std::string& body) { sentences.push_back(body); };
        garmin.identity.product = 111;
        garmin.identity.version = 240;
        garmin.identity.description = "eTrex Legend Software Version 2.40";
        garmin.identity.reports_protocols = true;
        garmin.identity.protocols = {"L001", "A010", "A100", "D108", "A201", "D202", "D108",
                                     "D210", "A301", "D310", "D301", "A600", "D600"};
    }
    ~receiver_on_line() { stop(); }
    receiver_on_line(const receiver_on_line&) = delete;
    receiver_on_line& operator=(const receiver_on_line&) = delete;

    /// From here on its memory is the thread's, until stop.
    void start()
    {
        thread = std::thread([this] {
            while (!ended) {
                const std::string bytes = sim_read(line, 0.02);
                if (by_sentence)
                    sim_magellan_take(magellan, bytes);
                else
                    sim_garmin_take(garmin, bytes);
                sim_write_due(line);
            }
        });
    }
    void stop()
    {
        ended = true;
        if (thread.joinable())
            thread.join();
        ended = false;
    }
    /// Runs velkoro-cli with the receiver at the other end of the line.
    cli_result run(const std::vector<std::string>& command, std::vector<std::string> more = {})
    {
        std::vector<std::string> all{"--home", test_home()};
        all.insert(all.end(), more.begin(), more.end());
        all.insert(all.end(), {"receiver", "--port", line.path});
        if (by_sentence)
            all.insert(all.end(), {"--protocol", "magellan"});
        all.insert(all.end(), command.begin(), command.end());
        start();
        cli_result result = run_cli(all);
        stop();
        return result;
    }

private:
    bool by_sentence;
    sim_line line = sim_open_line();
    std::atomic<bool> ended = false;
    std::thread thread{};
};

nlohmann::json dump(const std::string& file)
{
    const cli_result r = run_cli({"--home", test_home(), "dump", file});
    EXPECT_EQ(r.code, 0) << r.err;
    return nlohmann::json::parse(r.out);
}

class Receiver : public testing::Test {
protected:
    std::string folder = test_folder();
    std::string waypoints = source_path("data/Waypoints/sample.wp");
    std::string track = source_path("data/Track/sample.t");
    /// A receiver with room for all, names of 20 characters and any characters.
    std::vector<std::string> room{"--set", "Garmin=9999 0 99 99 99999 0 0 20 0 0 0 1"};
};

} // namespace

TEST_F(Receiver, IsIdentified)
{
    receiver_on_line sim;
    const cli_result r = sim.run({"ident"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("eTrex Legend Software Version 2.40"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("product    111\nversion    2.40\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("L001 A010 A100 D108"), std::string::npos) << r.out;
}

TEST_F(Receiver, IsIdentifiedAsJson)
{
    receiver_on_line sim;
    const cli_result r = sim.run({"ident"}, {"--json"});
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["product"], 111);
    EXPECT_EQ(j["version"], 2.4);
    EXPECT_EQ(j["protocols"].size(), 11U);
    EXPECT_EQ(j["altitude"], true);
    EXPECT_EQ(j["reported"], true);
}

TEST_F(Receiver, GivesBackTheWaypointsThatItWasSent)
{
    receiver_on_line sim;
    cli_result r = sim.run({"put", "waypoints", waypoints}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    sim.garmin.memory[sim_list::waypoints] = sim.garmin.arrived[sim_list::waypoints];
    r = sim.run({"get", "waypoints", folder + "out.wp"}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    const auto sent = dump(waypoints);
    const auto got = dump(folder + "out.wp");
    ASSERT_EQ(got["waypoints"].size(), sent["waypoints"].size());
    EXPECT_GT(got["waypoints"].size(), 10U);
    for (std::size_t n = 0; n < got["waypoints"].size(); ++n) {
        EXPECT_EQ(got["waypoints"][n]["nam"], sent["waypoints"][n]["nam"]);
        EXPECT_EQ(got["waypoints"][n]["lat"], sent["waypoints"][n]["lat"]);
        EXPECT_EQ(got["waypoints"][n]["alt"], sent["waypoints"][n]["alt"]);
    }
}

TEST_F(Receiver, GivesBackTheRoutesThatItWasSent)
{
    receiver_on_line sim;
    cli_result r = sim.run({"put", "routes", waypoints}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_TRUE(sim.garmin.arrived[sim_list::waypoints].empty()); // the route carries its points
    sim.garmin.memory[sim_list::routes] = sim.garmin.arrived[sim_list::routes];
    r = sim.run({"get", "routes", folder + "out.wp"}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    const auto sent = dump(waypoints);
    const auto got = dump(folder + "out.wp");
    ASSERT_EQ(got["routes"].size(), sent["routes"].size());
    for (std::size_t n = 0; n < got["routes"].size(); ++n)
        EXPECT_EQ(got["routes"][n]["wps"], sent["routes"][n]["wps"]);
}

TEST_F(Receiver, GivesBackTheTrackThatItWasSent)
{
    receiver_on_line sim;
    cli_result r = sim.run({"put", "tracks", track}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    sim.garmin.memory[sim_list::track] = sim.garmin.arrived[sim_list::track];
    r = sim.run({"get", "tracks", folder + "out.t"}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    const auto sent = dump(track)["track"];
    const auto got = dump(folder + "out.t")["track"];
    ASSERT_EQ(got.size(), sent.size());
    for (std::size_t n = 0; n < got.size(); ++n) {
        EXPECT_EQ(got[n]["lat"], sent[n]["lat"]) << n;
        EXPECT_EQ(got[n]["lon"], sent[n]["lon"]) << n;
        EXPECT_EQ(got[n]["zeit"], sent[n]["zeit"]) << n;
        EXPECT_EQ(got[n]["neu"], sent[n]["neu"]) << n;
    }
}

TEST_F(Receiver, OfTheOtherMakerGivesBackWhatItWasSent)
{
    receiver_on_line sim(true);
    cli_result r = sim.run({"put", "routes", waypoints}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    for (const std::string& s : sim.sentences)
        (s.starts_with("PMGNWPL") ? sim.magellan.waypoints : sim.magellan.routes).push_back(s);
    EXPECT_FALSE(sim.magellan.routes.empty());
    r = sim.run({"get", "routes", folder + "out.wp"}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    const auto sent = dump(waypoints);
    const auto got = dump(folder + "out.wp");
    ASSERT_EQ(got["routes"].size(), sent["routes"].size());
    for (std::size_t n = 0; n < got["routes"].size(); ++n)
        EXPECT_EQ(got["routes"][n]["wps"].size(), sent["routes"][n]["wps"].size());
    r = sim.run({"ident"}, {"--json"});
    EXPECT_EQ(nlohmann::json::parse(r.out)["name"], "1.10 MAP 330");
}

TEST_F(Receiver, ThatIsEmptyGivesAnEmptyFile)
{
    receiver_on_line sim;
    const cli_result r = sim.run({"get", "waypoints", folder + "out.wp"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.err.find("holds no such data"), std::string::npos) << r.err;
    EXPECT_EQ(dump(folder + "out.wp")["waypoints"].size(), 0U);
}

TEST_F(Receiver, ThatDoesNotAnswerFailsInBoundedTime)
{
    receiver_on_line sim;
    sim.faults.rules = {{.what = sim_fault::drop, .every = 1}};
    const double before = sim_now();
    const cli_result r = sim.run({"get", "waypoints", folder + "out.wp"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("velkoro-cli: "), std::string::npos) << r.err;
    EXPECT_LT(sim_now() - before, 20);
    EXPECT_EQ(read_text(folder + "out.wp"), "");
}

TEST_F(Receiver, ThatFallsSilentKeepsWhatCameAndFails)
{
    receiver_on_line sim;
    cli_result r = sim.run({"put", "waypoints", waypoints}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    sim.garmin.memory[sim_list::waypoints] = sim.garmin.arrived[sim_list::waypoints];
    sim.faults = {};
    for (int n = 0; n < 40; ++n) // from the tenth packet on
        sim.faults.rules.push_back({.what = sim_fault::drop, .at = 10 + n});
    r = sim.run({"--no", "get", "waypoints", folder + "out.wp"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("[1530]"), std::string::npos) << r.err;
    const auto got = dump(folder + "out.wp")["waypoints"].size();
    EXPECT_GT(got, 0U);
    EXPECT_LT(got, 10U);
}

TEST_F(Receiver, ThatHasToBeAskedTwiceHasNotFailed)
{
    receiver_on_line sim;
    cli_result r = sim.run({"put", "waypoints", waypoints}, room);
    ASSERT_EQ(r.code, 0) << r.err;
    sim.garmin.memory[sim_list::waypoints] = sim.garmin.arrived[sim_list::waypoints];
    sim.faults = {};
    sim.faults.rules = {{.what = sim_fault::drop, .at = 9}, {.what = sim_fault::corrupt, .at = 20}};
    r = sim.run({"get", "waypoints", folder + "out.wp"}, room);
    EXPECT_NE(r.err.find("[1530]"), std::string::npos) << r.err;
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(dump(folder + "out.wp")["waypoints"].size(), dump(waypoints)["waypoints"].size());
}

TEST_F(Receiver, WithADeviceThatIsNoneFailsWithItsName)
{
    const cli_result r =
        run_cli({"--home", test_home(), "receiver", "--port", folder + "none", "ident"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("none"), std::string::npos) << r.err;
}

TEST_F(Receiver, TellsItsClock)
{
    receiver_on_line sim;
    sim.garmin.clock_data = [] { return std::string("\x06\x0E\xD1\x07\x0A\x00\x0F\x02", 8); };
    EXPECT_EQ(sim.run({"time"}).out, "2001-06-14 10:15:02 UTC\n");
    const auto j = nlohmann::json::parse(sim.run({"time"}, {"--json"}).out);
    EXPECT_EQ(j["time"], "2001-06-14T10:15:02Z");
    EXPECT_EQ(j["seconds"], 361448102);
}

TEST_F(Receiver, IsSwitchedOff)
{
    receiver_on_line sim;
    EXPECT_EQ(sim.run({"off"}).code, 0);
    EXPECT_FALSE(sim.garmin.powered);
}

TEST_F(Receiver, RefusesWrongUsage)
{
    const auto code = [](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "receiver");
        return run_cli(arguments).code;
    };
    EXPECT_EQ(code({"ident"}), 2); // no port
    EXPECT_EQ(code({"--port", "x"}), 2);
    EXPECT_EQ(code({"--port", "x", "get", "waypoints"}), 2);
    EXPECT_EQ(code({"--port", "x", "get", "maps", "a.wp"}), 2);
    EXPECT_EQ(code({"--port", "x", "get", "waypoints", "a.t"}), 2);
    EXPECT_EQ(code({"--port", "x", "get", "tracks", "a.wp"}), 2);
    EXPECT_EQ(code({"--port", "x", "--protocol", "other", "ident"}), 2);
    EXPECT_EQ(code({"--port", "x", "--protocol", "magellan", "--baud", "1200", "ident"}), 2);
    EXPECT_EQ(code({"--port", "x", "--baud", "4800", "ident"}), 2);
    EXPECT_EQ(code({"--port", "usb", "--protocol", "magellan", "ident"}), 2);
}

// Whole transfers with a simulated receiver on a line without delay: what the protocol costs.
#include "comm/comm.h"
#include "comm/gar_codec_track.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_session.h"
#include "comm/install.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/reset.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "core/texts.h"
#include "tools/receiver-sim/sim_garmin.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

using namespace velkoro;

namespace {

/// The receiver's bytes are there as soon as the program serves events.
struct direct_line {
    sim_garmin receiver_on_line{};
    std::string waiting{};
    bool opened = false;

    direct_line()
    {
        reset_all();
        hooks = {};
        comm = {};
        transfer = {};
        text_table.loaded = 0; // no text is looked up, so none is loaded
        text_table.texts.assign(10000, "text");
        comm_install();
        comm.comm_port = 1;
        settings.garmin[static_cast<std::size_t>(gar_place::mwp)] = 100000;
        settings.garmin[static_cast<std::size_t>(gar_place::mtrack)] = 100000;
        settings.symbol_level = 0;
        serial_seam& s = platform.serial;
        s.open = [this](const std::string&, const std::string&) {
            opened = true;
            return std::string{};
        };
        s.close = [this] { opened = false; };
        s.is_open = [this] { return opened; };
        s.devices = [] { return std::vector<serial_device>{{"/dev/direct"}}; };
        s.output = [this](const std::string& bytes) { sim_garmin_take(receiver_on_line, bytes); };
        s.input = [this] { return std::exchange(waiting, {}); };
        receiver_on_line.send = [this](const std::string& bytes) { waiting += bytes; };
        receiver_on_line.identity.protocols = {"L001", "A010", "A100", "D100", "A300",
                                               "D300", "A201", "D202", "D100", "D210"};
        receiver_on_line.identity.reports_protocols = true;
        platform.pump = [this](int) {
            if (!waiting.empty())
                platform.serial.received();
        };
    }
    ~direct_line()
    {
        platform.serial = {};
        platform.pump = [](int) {};
    }
    direct_line(const direct_line&) = delete;
    direct_line& operator=(const direct_line&) = delete;
};

wayp_rec waypoint(int n)
{
    wayp_rec w;
    char name[16];
    std::snprintf(name, sizeof name, "W%05d", n);
    w.nam = name;
    w.kom = "POINT " + std::to_string(n);
    w.pos = {500000000 + n * 4099, 90000000 + n % 181 * 65537};
    return w;
}

trackp_rec point(int n)
{
    trackp_rec p;
    p.pos = {500000000 + n * 64, 90000000 + n * 32};
    p.zeit = 361448102 + n;
    return p;
}

void check(benchmark::State& state)
{
    if (transfer.end != transfer_end::whole)
        state.SkipWithError("the transfer did not come to its end");
}

void ReadWaypoints(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    direct_line line;
    for (int n = 0; n < count; ++n) {
        sim_packet p{.id = pid_waypoint};
        gar_wp_encode(waypoint(n), 100, false, p.data);
        line.receiver_on_line.memory[sim_list::waypoints].push_back(std::move(p));
    }
    for (auto _ : state) {
        store_reset();
        run_job("W_L");
        check(state);
    }
}
BENCHMARK(ReadWaypoints)->Arg(5000)->Unit(benchmark::kMillisecond);

void WriteWaypoints(benchmark::State& state)
{
    direct_line line;
    for (int n = 0; n < static_cast<int>(state.range(0)); ++n) {
        wayp_rec w = waypoint(n);
        wayp_insert(w, 0);
    }
    for (auto _ : state) {
        line.receiver_on_line.arrived.clear();
        run_job("W_S");
        check(state);
    }
}
BENCHMARK(WriteWaypoints)->Arg(5000)->Unit(benchmark::kMillisecond);

void ReadTrack(benchmark::State& state)
{
    direct_line line;
    for (int n = 0; n < static_cast<int>(state.range(0)); ++n)
        line.receiver_on_line.memory[sim_list::track].push_back(
            {pid_trk_point, gar_point_encode(point(n), 300, n == 0)});
    for (auto _ : state) {
        track_clear();
        run_job("T_L");
        check(state);
    }
}
BENCHMARK(ReadTrack)->Arg(50000)->Unit(benchmark::kMillisecond);

void WriteTrack(benchmark::State& state)
{
    direct_line line;
    for (int n = 0; n < static_cast<int>(state.range(0)); ++n)
        track_append(point(n));
    for (auto _ : state) {
        line.receiver_on_line.arrived.clear();
        run_job("T_S");
        check(state);
    }
}
BENCHMARK(WriteTrack)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace

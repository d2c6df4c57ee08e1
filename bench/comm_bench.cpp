// A receiver without a line's delay: how long the link itself takes for the packets of a transfer.
// A second process answers each acknowledgement with the next packet over a pseudo terminal.
#include "comm/comm.h"
#include "comm/garmin_link.h"
#include "comm/serial_line.h"
#include "core/poll_watch.h"
#include "core/reset.h"
#include "core/settings.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>

using namespace velkoro;

namespace {

/// Writes the packet for every frame that comes in. Ends when it is killed.
[[noreturn]] void play(int terminal, const std::string& packet)
{
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t n = ::read(terminal, bytes.data(), bytes.size());
        for (ssize_t i = 1; i < n; ++i)
            if (bytes[static_cast<std::size_t>(i - 1)] == dle &&
                bytes[static_cast<std::size_t>(i)] == etx &&
                ::write(terminal, packet.data(), packet.size()) < 0)
                ::_exit(1);
    }
}

void transfer(benchmark::State& state, const std::string& packet, int packets)
{
    reset_all();
    comm = {};
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ::grantpt(terminal);
    ::unlockpt(terminal);
    settings.overrides[{"main", "com1"}] = ::ptsname(terminal);
    comm.comm_port = 1;
    poll_watch_install();
    platform.pump = poll_serve;
    serial_line_install();
    comm_listen();
    comm_port_set(true); // sets the terminal to raw before the other end speaks
    const pid_t receiver_process = ::fork();
    if (receiver_process == 0)
        play(terminal, packet);
    for (auto _ : state)
        for (int i = 0; i < packets; ++i)
            if (garmin_comm(pid_ack, 34, 34, false).empty())
                state.SkipWithError("a packet did not come");
    ::kill(receiver_process, SIGKILL);
    ::waitpid(receiver_process, nullptr, 0);
    comm_port_set(false);
    ::close(terminal);
    platform = {};
}

void fifty_thousand_track_points(benchmark::State& state)
{
    transfer(state, gar_frame(34, std::string(21, 't')), 50000);
}
BENCHMARK(fifty_thousand_track_points)->Unit(benchmark::kMillisecond)->UseRealTime();

void five_thousand_waypoints(benchmark::State& state)
{
    transfer(state, gar_frame(34, std::string(100, 'w')), 5000);
}
BENCHMARK(five_thousand_waypoints)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

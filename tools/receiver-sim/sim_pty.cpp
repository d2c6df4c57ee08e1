#include "tools/receiver-sim/sim_pty.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>

namespace velkoro {
namespace {

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

sim_line sim_open_line()
{
    sim_line line;
    line.controller = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (line.controller < 0 || grantpt(line.controller) != 0 || unlockpt(line.controller) != 0)
        fail("no pseudo terminal");
    std::array<char, 256> name{};
    if (ptsname_r(line.controller, name.data(), name.size()) != 0)
        fail("no name of the pseudo terminal");
    line.path = name.data();
    line.kept_open = open(line.path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (line.kept_open < 0)
        fail("the pseudo terminal cannot be opened");
    termios raw{};
    if (tcgetattr(line.kept_open, &raw) != 0)
        fail("the pseudo terminal has no settings");
    cfmakeraw(&raw);
    if (tcsetattr(line.kept_open, TCSANOW, &raw) != 0)
        fail("the pseudo terminal keeps its settings");
    return line;
}

void sim_close_line(sim_line& line)
{
    if (line.controller >= 0)
        close(line.controller);
    if (line.kept_open >= 0)
        close(line.kept_open);
    line = {};
}

double sim_now()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void sim_put(sim_line& line, const std::vector<sim_chunk>& chunks)
{
    double at = line.waiting.empty() ? sim_now() : line.waiting.back().at;
    for (const sim_chunk& chunk : chunks) {
        at += chunk.delay_s;
        if (line.bytes_per_s > 0)
            at += static_cast<double>(chunk.bytes.size()) / line.bytes_per_s;
        line.waiting.push_back({at, chunk.bytes});
    }
}

double sim_write_due(sim_line& line)
{
    while (!line.waiting.empty()) {
        sim_line::due_bytes& next = line.waiting.front();
        const double wait = next.at - sim_now();
        if (wait > 0)
            return wait;
        const ssize_t n = write(line.controller, next.bytes.data(), next.bytes.size());
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            fail("the line takes no bytes");
        next.bytes.erase(0, static_cast<std::size_t>(std::max<ssize_t>(n, 0)));
        if (!next.bytes.empty())
            return 0.01; // the host does not read: its side of the line is full
        line.waiting.pop_front();
    }
    return -1;
}

std::string sim_read(sim_line& line, double seconds)
{
    pollfd descriptor{line.controller, POLLIN, 0};
    const int ms = static_cast<int>(std::ceil(std::clamp(seconds, 0.0, 3600.0) * 1000));
    if (poll(&descriptor, 1, ms) <= 0)
        return {};
    std::string bytes(4096, '\0');
    const ssize_t n = read(line.controller, bytes.data(), bytes.size());
    if (n < 0 && errno != EAGAIN && errno != EINTR && errno != EIO)
        fail("the line gives no bytes");
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(n, 0)));
    return bytes;
}

} // namespace velkoro

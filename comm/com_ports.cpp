#include "comm/com_ports.h"

#include "comm/comm.h"
#include "core/ini_file.h"
#include "core/platform.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace velkoro {
namespace {

/// One device has several paths: "/dev/serial/by-id/..." leads to "/dev/ttyUSB0".
std::filesystem::path true_path(const std::string& path)
{
    std::error_code gone;
    std::filesystem::path real = std::filesystem::canonical(path, gone);
    return gone ? std::filesystem::path(path) : real;
}

} // namespace

std::array<com_port, 8> com_ports()
{
    std::array<com_port, 8> ports{};
    std::vector<std::filesystem::path> taken;
    for (std::size_t i = 0; i < ports.size(); ++i) {
        ports[i].device = ini_get("Main", "Com" + std::to_string(i + 1));
        if (!ports[i].device.empty())
            taken.push_back(true_path(ports[i].device));
    }
    const std::vector<serial_device> found = platform.serial.devices();
    const auto is_free = [](const com_port& p) { return p.device.empty(); };
    for (const bool simulator : {true, false})
        for (const serial_device& d : found) {
            if (d.simulator != simulator)
                continue;
            const std::filesystem::path real = true_path(d.path);
            if (std::ranges::find(taken, real) != taken.end())
                continue;
            taken.push_back(real);
            if (simulator) {
                const auto last = std::find_if(ports.rbegin(), ports.rend(), is_free);
                if (last != ports.rend())
                    *last = {d.path, true};
            } else {
                const auto first = std::ranges::find_if(ports, is_free);
                if (first != ports.end())
                    *first = {d.path, false};
            }
        }
    return ports;
}

std::string comm_device(int port)
{
    if (port < 1 || port > serial_ports)
        return {};
    return com_ports()[static_cast<std::size_t>(port - 1)].device;
}

} // namespace velkoro

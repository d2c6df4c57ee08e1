/// Which device stands behind COM1 to COM8.
/// The keys `Com1` to `Com8` of `Main` name devices. The numbers without a key are taken by the
/// devices found, in order from the lowest; a simulated receiver takes the highest one, so that it
/// moves nobody.
#pragma once

#include <array>
#include <string>

namespace velkoro {

struct com_port {
    std::string device{};
    bool simulator = false;
    bool operator==(const com_port&) const = default;
};

/// [0] is COM1. A port without a device has an empty path.
std::array<com_port, 8> com_ports();

} // namespace velkoro

// Transfers of any content and length from the pipes of a USB receiver: the reading ends, and what
// comes out is a packet whose data has the length of its head.
#include "comm/comm.h"
#include "comm/garmin_link.h"
#include "comm/usb_link.h"
#include "core/platform.h"
#include "core/reset.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace velkoro;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

std::string_view rest;

/// The next transfer: one byte says how long it is, 255 that the call fails.
std::optional<std::string> next(std::size_t most)
{
    if (rest.empty())
        return std::string{};
    const std::size_t n = static_cast<unsigned char>(rest[0]);
    rest.remove_prefix(1);
    if (n == 255)
        return std::nullopt;
    const std::string piece(rest.substr(0, std::min(n, most)));
    rest.remove_prefix(piece.size());
    return piece;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    rest = std::string_view(reinterpret_cast<const char*>(data), size);
    reset_all();
    comm = {};
    comm.usb_handle = 1;
    comm.usb_packet_size = 64;
    platform.usb.write = [](int, const std::string& b) { return static_cast<int>(b.size()); };
    platform.usb.read_interrupt = [](int, std::size_t most) { return next(most); };
    platform.usb.read_bulk = [](int, std::size_t most) { return next(most); };
    do {
        const std::string frame = usb_comm(6, "", 35);
        require(frame.empty() || frame.size() >= 6);
        if (!frame.empty())
            require(static_cast<unsigned char>(frame[2]) == (gar_data(frame).size() & 0xFFU));
    } while (!rest.empty());
    return 0;
}

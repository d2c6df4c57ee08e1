// Any bytes from the serial line in events of any size: what comes out as a frame is whole, and a
// good frame behind any noise arrives in the end.
#include "comm/comm.h"
#include "comm/garmin_link.h"
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

bool whole(std::string_view frame)
{
    const std::size_t size = frame.size();
    unsigned sum = 0;
    // Behind an acknowledgement that was cut the next byte is taken for the head as it is.
    if (size < 6 || (frame[0] != dle && !comm.comm_strip_ack) || frame[size - 2] != dle ||
        frame[size - 1] != etx)
        return false;
    for (const char c : frame.substr(1, size - 3))
        sum += static_cast<unsigned char>(c);
    // Nobody sends a packet with the id 10h, whose doubling would hide the size.
    return (sum & 0xFFU) == 0 &&
           (frame[1] == dle || static_cast<unsigned char>(frame[2]) + std::size_t{6} == size);
}

void feed(std::string_view bytes)
{
    while (bytes.size() > 1) {
        const std::size_t n =
            std::min<std::size_t>(1 + static_cast<unsigned char>(bytes[0]) % 64, bytes.size() - 1);
        Garmin_OnComm(bytes.substr(1, n));
        require(comm.comm_rx_frame.empty() || whole(comm.comm_rx_frame));
        bytes.remove_prefix(n + 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.size() < 2)
        return 0;
    reset_all();
    comm = {};
    comm.comm_strip_ack = (bytes[0] & 1) != 0;
    comm.comm_retry = (bytes[0] & 2) != 0;
    feed(bytes.substr(1));

    // The receiver repeats its frame after each NAK until it is understood. (One whose data hold
    // 10 06 may be taken for an acknowledgement from its middle on, over and over.)
    const std::string known = gar_frame(34, "0123456789");
    comm.comm_rx_frame.clear();
    int repeats = 0;
    while (comm.comm_rx_frame != known && repeats < 5000) {
        Garmin_OnComm(known);
        ++repeats;
    }
    require(repeats < 5000);

    const std::string frame = gar_frame(34, bytes.substr(0, 255));
    comm = {};
    Garmin_OnComm(frame);
    require(gar_data(comm.comm_rx_frame) == bytes.substr(0, 255));
    return 0;
}

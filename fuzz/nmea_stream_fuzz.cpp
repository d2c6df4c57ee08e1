// Any bytes from a line that carries sentences, in events of any size: a batch is whole or not
// there, and a good sentence behind any noise is understood.
#include "comm/comm.h"
#include "comm/garmin_link.h"
#include "comm/mag_link.h"
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    reset_all();
    comm = {};
    comm.nmea_live = true;
    while (bytes.size() > 1) {
        const std::size_t n =
            std::min<std::size_t>(1 + static_cast<unsigned char>(bytes[0]) % 64, bytes.size() - 1);
        Garmin_OnComm(bytes.substr(1, n));
        const std::string& got = comm.comm_rx_frame;
        require(got.empty() || (got.front() == '$' && got.ends_with("\r\n")));
        require(comm.comm_rx_buf.empty() || comm.comm_rx_buf.front() == '$');
        bytes.remove_prefix(n + 1);
    }

    std::string text(reinterpret_cast<const char*>(data), size);
    std::erase_if(text, [](char c) { return c == '$' || c == '*' || c == '\r' || c == '\n'; });
    const std::string line = mag_sentence(text);
    Garmin_OnComm("\r\n"); // what was begun is a batch of its own
    Garmin_OnComm(line);
    require(comm.comm_rx_frame == line && comm.comm_rx_buf.empty());
    return 0;
}
